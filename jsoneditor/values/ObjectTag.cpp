#include "jsoneditor/values/ObjectTag_p.h"

#include "jsoneditor/values/TagChoices_p.h"
#include "jsoneditor/view/RestView.h"

const ZOObject::TTypeInfo* TZOObjectDataSource::TObjectTag::DeclaredType() const {
    return static_cast<const ZOObject::TTypeInfo*>(DataParent()->Type());
}

QString TZOObjectDataSource::TObjectTag::KeyText() const { return DeclaredType()->DiscriminatorName(); }

QString TZOObjectDataSource::TObjectTag::DisplayText() const { return FSubtype ? FSubtype->Name : QString(); }

void TZOObjectDataSource::TObjectTag::Update(const ZOObject* AObject) {
    const ZOObject::TTypeInfo* type = DeclaredType();
    FSubtype = AObject ? type->GetSubtypeByType(ZOObject::TData::Type(AObject)) : nullptr;
    ZOUpdateTagChoices<TObjectTagItem>(this, type->Subtypes());
    SetDisplayValue(!AObject, rvStringRO);
}

void TZOObjectDataSource::TObjectTag::InitInsertMode() {
    SetInsertMode(nullptr);
    // Nothing but this row changes: the rows of the value need not be looked at.
    GetSource()->Updating([this] {
        void* value = nullptr;
        Update(DataParent()->GetValue(value) ? *static_cast<ZOObject**>(value) : nullptr);
    });
}

void TZOObjectDataSource::TObjectTag::SelectValue(const ZOObject::TSubtype* ASubtype) {
    TDataRow* object = DataParent();
    object->InitObjectValue(ASubtype);
    object->SetInsertMode(nullptr);
    ResetlInsertMode();
    UpdateInsertingParents(object);
}

void TZOObjectDataSource::TObjectTag::KeyDown(TZORestView*, int& AKey, Qt::KeyboardModifiers) {
    if (AKey != Qt::Key_Insert)
        return;
    AKey = 0;
    InitInsertMode();
}

void TZOObjectDataSource::TObjectTag::DblClick(TZORestView*) { InitInsertMode(); }

void TZOObjectDataSource::TObjectTagItem::Offer(const ZOObject::TSubtype* AValue) {
    FValue = AValue;
    SetDisplayValue(true, rvStringRO);
}

void TZOObjectDataSource::TObjectTagItem::SelectValue(TZORestView* AView) {
    auto* tagRow = static_cast<TObjectTag*>(Parent());
    tagRow->SelectValue(FValue);
    // This row is gone now; the tag row takes the selection over.
    if (!AView->Selected())
        AView->SelectRow(tagRow, seHide);
}

void TZOObjectDataSource::TObjectTagItem::KeyDown(TZORestView* AView, int& AKey, Qt::KeyboardModifiers) {
    if (AKey != Qt::Key_Return)
        return;
    AKey = 0;
    SelectValue(AView);
}

void TZOObjectDataSource::TObjectTagItem::DblClick(TZORestView* AView) { SelectValue(AView); }
