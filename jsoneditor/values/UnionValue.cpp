#include "jsoneditor/values/UnionValue_p.h"

#include "jsoneditor/values/UnionTag_p.h"

TZOObjectDataSource::TUnionTag* TZOObjectDataSource::TUnionValue::GetTagRow() const {
    TRow* row = Parent()->Next();
    return row->Kind() == rkUTag ? static_cast<TUnionTag*>(row) : nullptr;
}

bool TZOObjectDataSource::TUnionValue::EditingTag() const {
    const TUnionTag* tagRow = GetTagRow();
    return tagRow && tagRow->IsEditingTag();
}

bool TZOObjectDataSource::TUnionValue::DoGetValue(const void* AParentValue, void*& ARef) const {
    return !EditingTag() &&
           ZOUnion::TData::GetTag(*static_cast<ZOUnion* const*>(AParentValue), FTag->Index, ARef);
}

bool TZOObjectDataSource::TUnionValue::DoGetByRef(void* AParentValue, void*& ARef) {
    return DoSetValue(AParentValue, true, ARef);
}

bool TZOObjectDataSource::TUnionValue::DoSetValue(void* AParentValue, bool AHasValue, void*& ARef) {
    ZOUnion* value = *static_cast<ZOUnion**>(AParentValue);
    if (EditingTag())
        return SelectTag(value, AHasValue, ARef);
    return ZOUnion::TData::SetTag(value, FTag->Index, AHasValue, ARef);
}

bool TZOObjectDataSource::TUnionValue::SelectTag(ZOUnion* AUnion, bool AHasValue, void*& ARef) {
    if (!ZOUnion::TData::SetTag(AUnion, FTag->Index, AHasValue, ARef))
        return false;
    Parent()->ResetlInsertMode();
    GetTagRow()->ResetEditingTag();
    return true;
}

bool TZOObjectDataSource::TUnionValue::DoGetInserting(bool) const { return EditingTag(); }

void TZOObjectDataSource::TUnionValue::DoEditAction(TEditAction AAction) {
    if (AAction != eaDelete)
        TDataRow::DoEditAction(AAction);
}
