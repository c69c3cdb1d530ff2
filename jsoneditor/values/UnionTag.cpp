#include "jsoneditor/values/UnionTag_p.h"

#include "jsoneditor/values/EditHistory_p.h"
#include "jsoneditor/values/TagChoices_p.h"
#include "jsoneditor/view/RestView.h"

const ZOUnion::TTypeInfo* TZOObjectDataSource::TUnionTag::UnionType() const {
    return static_cast<const ZOUnion::TTypeInfo*>(DataParent()->Type());
}

QString TZOObjectDataSource::TUnionTag::KeyText() const { return UnionType()->TagName(); }

void TZOObjectDataSource::TUnionTag::Update(const ZOUnion* AUnion) {
    // A tag that was picked lives no longer than the insert mode it was picked in.
    if (!Parent()->InsertMode())
        FEditingTag = false;
    if (!FEditingTag)
        FTag = ZOUnion::TData::GetTag(AUnion);
    ZOUpdateTagChoices<TUnionTagItem>(this, UnionType()->Tags());
    SetDisplayValue(!FTag || FEditingTag, rvStringRO);
}

void TZOObjectDataSource::TUnionTag::InitInsertMode() {
    SetInsertMode(nullptr);
    // Nothing but this row changes: the rows of the value need not be looked at.
    GetSource()->Updating([this] {
        void* value = nullptr;
        Update(DataParent()->GetValue(value) ? *static_cast<ZOUnion**>(value) : nullptr);
    });
}

void TZOObjectDataSource::TUnionTag::SelectValue(PTag ATag) {
    TDataRow* row = DataParent();
    void* value = nullptr;
    {
        // Only a tag without a value is stored at once; the value it replaces is kept for an undo.
        const bool replaces = row->GetValue(value) && !ATag->Type &&
                              ZOUnion::TData::GetTag(*static_cast<ZOUnion**>(value)) != ATag;
        const TRecording recording(row, replaces ? TRecording::olTaken : TRecording::olUntouched);
        if (!row->GetByRef(value))
            return;
        void* ref = nullptr;
        if (!ZOUnion::TData::SetTag(*static_cast<ZOUnion**>(value), ATag->Index, !ATag->Type, ref))
            return;
    }
    FTag = ATag;
    FEditingTag = ATag->Type != nullptr;
    if (FEditingTag)
        row->SetInsertMode(nullptr);
    else
        row->ResetlInsertMode();
    ResetlInsertMode();
    UpdateInsertingParents(row);
}

void TZOObjectDataSource::TUnionTag::KeyDown(TZORestView*, int& AKey, Qt::KeyboardModifiers) {
    if (AKey != Qt::Key_Insert)
        return;
    AKey = 0;
    InitInsertMode();
}

void TZOObjectDataSource::TUnionTag::DblClick(TZORestView*) { InitInsertMode(); }

void TZOObjectDataSource::TUnionTagItem::Offer(PTag AValue) {
    FValue = AValue;
    SetDisplayValue(true, rvStringRO);
}

void TZOObjectDataSource::TUnionTagItem::SelectValue(TZORestView* AView) {
    auto* tagRow = static_cast<TUnionTag*>(Parent());
    tagRow->SelectValue(FValue);
    // This row is gone now; the tag row takes the selection over.
    if (!AView->Selected())
        AView->SelectRow(tagRow, seHide);
}

void TZOObjectDataSource::TUnionTagItem::KeyDown(TZORestView* AView, int& AKey, Qt::KeyboardModifiers) {
    if (AKey != Qt::Key_Return)
        return;
    AKey = 0;
    SelectValue(AView);
}

void TZOObjectDataSource::TUnionTagItem::DblClick(TZORestView* AView) { SelectValue(AView); }
