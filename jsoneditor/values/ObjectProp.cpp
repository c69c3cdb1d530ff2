#include "jsoneditor/values/ObjectProp_p.h"

bool TZOObjectDataSource::TObjectProp::IsOf(const ZOObject::TTypeInfo* AType) const {
    return FProp->Index < AType->PropertyCount() && AType->Property(FProp->Index) == FProp;
}

ZOObject* TZOObjectDataSource::TObjectProp::ObjectOf(const void* AParentValue) const {
    // An object that was replaced behind our back may be of another subtype.
    ZOObject* object = *static_cast<ZOObject* const*>(AParentValue);
    return object && IsOf(ZOObject::TData::Type(object)) ? object : nullptr;
}

bool TZOObjectDataSource::TObjectProp::DoGetValue(const void* AParentValue, void*& ARef) const {
    return ZOObject::TData::GetProp(ObjectOf(AParentValue), FProp->Index, ARef);
}

bool TZOObjectDataSource::TObjectProp::DoGetByRef(void* AParentValue, void*& ARef) {
    return DoSetValue(AParentValue, true, ARef);
}

bool TZOObjectDataSource::TObjectProp::DoSetValue(void* AParentValue, bool AHasValue, void*& ARef) {
    return ZOObject::TData::SetProp(ObjectOf(AParentValue), FProp->Index, AHasValue, ARef);
}

void TZOObjectDataSource::TObjectProp::KeyDown(TZORestView* AView, int& AKey, Qt::KeyboardModifiers AShift) {
    if (!MoveByKey(AView, AKey, AShift))
        TDataRow::KeyDown(AView, AKey, AShift);
}
