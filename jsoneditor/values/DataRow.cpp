#include "jsoneditor/values/DataRow_p.h"

#include "jsoneditor/values/EditHistory_p.h"
#include "jsoneditor/values/EndRow_p.h"
#include "jsoneditor/values/ValueText.h"
#include "jsoneditor/view/RestView.h"
#include "runtime/json/JsonCodec.h"

#include <algorithm>
#include <memory>

TZOObjectDataSource::TDataRow::TDataRow(TRow* AParent, TRowKind AKind) : TRow(AParent, AKind) {}

TZOObjectDataSource::TDataRow::~TDataRow() { ClearChildren(); }

bool TZOObjectDataSource::TDataRow::GetValue(void*& ARef) const {
    void* parentValue = nullptr;
    if (TDataRow* parent = DataParent(); parent && !parent->GetValue(parentValue))
        return false;
    return DoGetValue(parentValue, ARef);
}

bool TZOObjectDataSource::TDataRow::GetByRef(void*& ARef) {
    void* parentValue = nullptr;
    if (TDataRow* parent = DataParent(); parent && !parent->GetByRef(parentValue))
        return false;
    return DoGetByRef(parentValue, ARef);
}

bool TZOObjectDataSource::TDataRow::SetValue(bool AHasValue, void*& ARef) {
    void* parentValue = nullptr;
    if (TDataRow* parent = DataParent(); parent && !parent->GetByRef(parentValue))
        return false;
    return DoSetValue(parentValue, AHasValue, ARef);
}

QString TZOObjectDataSource::TDataRow::DisplayText() const {
    const TZOValueKind kind = Type()->Kind();
    void* value = nullptr;
    QString text;
    if (FHasValue) {
        // The value may have gone since the row was updated.
        if (!GetValue(value))
            return text;
        text = ValueText::ToText(Type(), value);
    } else {
        text = IsInserting() ? ValueText::Hint(kind) : QStringLiteral("null");
    }
    if (Value() == rvString)
        GetSource()->DoGetValue(Type(), FHasValue, value, text);
    return text;
}

void TZOObjectDataSource::TDataRow::Edited(int AChunkId, const QString& AText) {
    if (AChunkId == chValue)
        WriteValue(AText);
}

void TZOObjectDataSource::TDataRow::WriteValue(const QString& AText) {
    {
        const TRecording recording(this, TRecording::olCopied);
        // Present first: a text that cannot be read leaves the value present, with what it was before.
        void* value = nullptr;
        if (!SetValue(true, value))
            return;
        if (!GetSource()->DoSetValue(Type(), AText, value))
            ValueText::FromText(Type(), AText, value);
    }
    UpdateInsertingParents(this);
}

void TZOObjectDataSource::TDataRow::KeyDown(TZORestView* AView, int& AKey, Qt::KeyboardModifiers AShift) {
    if (AKey == Qt::Key_Insert) {
        AKey = 0;
        if (AView->TryCloseEditor(true))
            DoEditAction(AShift.testFlag(Qt::ShiftModifier) ? eaInsertBefore : eaInsertAfter);
    } else if (AKey == Qt::Key_Delete && AShift.testFlag(Qt::ControlModifier)) {
        AKey = 0;
        DeleteByUser(AView);
    }
}

void TZOObjectDataSource::TDataRow::DeleteByUser(TZORestView* AView) {
    AView->CancelEditing();
    const int place = AView->IndexOfRow(this);
    DoEditAction(eaDelete);
    // If this row is gone, whatever stands in its place takes the selection over.
    if (!AView->Selected())
        AView->SelectRow(AView->RowAt(std::min(place, AView->GetRowCount() - 1)), seHide);
}

bool TZOObjectDataSource::TDataRow::MoveByKey(TZORestView* AView, int& AKey, Qt::KeyboardModifiers AShift) {
    if (!AShift.testFlag(Qt::AltModifier) || (AKey != Qt::Key_Up && AKey != Qt::Key_Down))
        return false;
    const bool down = AKey == Qt::Key_Down;
    // Consumed even when the edit is refused: the view would only try, and complain, once more.
    AKey = 0;
    if (AView->TryCloseEditor(true) && Move(down, {Kind()}))
        GetSource()->AddChange(std::make_unique<TMoveChange>(Path(), down));
    return true;
}

void TZOObjectDataSource::TDataRow::FreeEntry() {
    TDataRow* parent = DataParent();
    parent->GetSource()->Updating([this, parent] {
        delete this;
        if (!parent->ShowsStoredEntries())
            UpdateInsertingParents(parent);
    });
}

const std::vector<TZOObjectDataSource::TElementShift>* TZOObjectDataSource::TDataRow::ElementShifts() const {
    return FHasShifts ? &GetSource()->FElementShifts.at(this) : nullptr;
}

void TZOObjectDataSource::TDataRow::AddElementShift(int APosition, bool AInserted) {
    FHasShifts = true;
    GetSource()->FElementShifts[this].push_back({APosition, AInserted});
}

void TZOObjectDataSource::TDataRow::DblClick(TZORestView* AView) {
    if (AView->TryCloseEditor(true))
        DoEditAction(eaDblClick);
}

void TZOObjectDataSource::TDataRow::DoEditAction(TEditAction AAction) {
    void* value = nullptr;
    switch (AAction) {
    case eaDelete: {
        const TRecording recording(this, TRecording::olTaken);
        SetValue(false, value);
    }
        ResetlInsertMode();
        UpdateInsertingParents(this);
        break;
    case eaDblClick:
        if (Type()->Kind() == vkUpload)
            ShowUploadDialog();
        else if (ValueText::IsContainer(Type()->Kind()))
            DispatchInsertMode(this, false);
        break;
    case eaInsertBefore:
    case eaInsertAfter:
        DispatchInsertMode(this, AAction == eaInsertBefore);
        break;
    case eaDblClickEOf:
    case eaInsertBeforeEOf:
    case eaInsertAfterEOf:
        EofAction(AAction);
        break;
    }
}

void TZOObjectDataSource::TDataRow::EofAction(TEditAction AAction) {
    // After the outermost closing row nothing can stand.
    if (FEof)
        DispatchInsertMode(FEof, AAction == eaInsertBeforeEOf || !FEof->Next());
}

void TZOObjectDataSource::TDataRow::DispatchInsertMode(TRow* ARow, bool ABefore) {
    TDataRow* data = ARow->AsDataRow();
    TDataRow* target = ARow->DataParent();
    TRow* anchor = ARow;
    if (!ABefore && data && ValueText::IsContainer(data->Type()->Kind())) {
        target = data;
        anchor = ARow->Next();
    } else if (!ABefore) {
        if (ARow->Kind() == rkEOf)
            target = target->DataParent();
        anchor = ARow->SkipChildren();
    }
    if (!target)
        return;
    if (anchor && (anchor->Kind() == rkOTag || anchor->Kind() == rkUTag))
        anchor = anchor->SkipChildren();
    if (anchor && anchor->Parent() != target)
        anchor = nullptr;
    target->InitInsertMode(anchor);
}

void TZOObjectDataSource::TDataRow::InitInsertMode(TRow* AInsertBefore) {
    void* value = nullptr;
    if (Type()->Kind() == vkObject && !GetValue(value)) {
        // Which object a polymorphic value becomes is only known once its subtype has been picked.
        if (!static_cast<const ZOObject::TTypeInfo*>(Type())->GetHasSubtypes())
            InitObjectValue(nullptr);
    }
    SetInsertMode(AInsertBefore);
    if (ShowsStoredEntries())
        ShowOfferedEntries();
    else
        UpdateInsertingParents(this);
}

void TZOObjectDataSource::TDataRow::InitObjectValue(const ZOObject::TSubtype* ASubtype) {
    const auto* type = ASubtype ? ASubtype->Type : static_cast<const ZOObject::TTypeInfo*>(Type());
    const TRecording recording(this, TRecording::olTaken);
    void* value = nullptr;
    if (!SetValue(true, value))
        return;
    std::unique_ptr<ZOObject> object = type->CreateInstance();
    auto& slot = *static_cast<ZOObject**>(value);
    std::unique_ptr<ZOObject> previous(slot);
    slot = object.release();
}

void TZOObjectDataSource::TDataRow::ShowUploadDialog() {
    void* value = nullptr;
    ZOUpload upload;
    if (GetValue(value))
        upload = *static_cast<const ZOUpload*>(value);
    if (!GetSource()->DoUploadDialog(upload))
        return;
    {
        const TRecording recording(this, TRecording::olCopied);
        if (!SetValue(true, value))
            return;
        *static_cast<ZOUpload*>(value) = upload;
    }
    UpdateInsertingParents(this);
}

void TZOObjectDataSource::TDataRow::PasteJson(const QByteArray& AJson) {
    TZOValueHolder pasted(Type(), true);
    TZOJson::Decode(AJson, pasted);
    void* source = nullptr;
    const bool hasValue = pasted.GetValue(source);
    // As for the Delete key: a union's value is not to be taken away from it.
    if (!hasValue && Kind() == rkUVal)
        return;
    {
        const TRecording recording(this, TRecording::olTaken);
        void* dest = nullptr;
        if (!SetValue(hasValue, dest))
            return;
        if (hasValue)
            ZOStorage::Swap(Type(), source, dest);
    }
    ResetlInsertMode();
    UpdateInsertingParents(this);
}
