#include "jsoneditor/values/ValuePath_p.h"

#include "runtime/types/List.h"
#include "runtime/types/Map.h"

namespace {

/// The type of the value that AStep leads to; null when there is no such place in the container.
const TZOTypeInfo* TypeOfStep(const TZOTypeInfo* AContainerType, const void* AContainer,
                              const TZOPathStep& AStep) {
    switch (AContainerType->Kind()) {
    case vkList: {
        const auto* list = static_cast<const ZOList*>(AContainer);
        return AStep.Index >= 0 && AStep.Index < list->Count() ? list->Type()->ItemType() : nullptr;
    }
    case vkMap: {
        const auto* map = static_cast<const ZOMap*>(AContainer);
        return map->ContainsKey(AStep.Key) ? map->Type()->ItemType() : nullptr;
    }
    case vkObject: {
        const auto* type = ZOObject::TData::Type(*static_cast<ZOObject* const*>(AContainer));
        const bool isThere = AStep.Prop && AStep.Prop->Index < type->PropertyCount() &&
                             type->Property(AStep.Prop->Index) == AStep.Prop;
        return isThere ? AStep.Prop->Type : nullptr;
    }
    case vkUnion: {
        const PTag tag = ZOUnion::TData::GetTag(*static_cast<ZOUnion* const*>(AContainer));
        return tag && tag == AStep.Tag ? tag->Type : nullptr;
    }
    default:
        return nullptr;
    }
}

} // namespace

bool TZOValueSlot::Get(void*& ARef) const {
    if (!FContainerType)
        return FHolder->GetValue(ARef);
    switch (FContainerType->Kind()) {
    case vkList:
        return static_cast<ZOList*>(FContainer)->GetItem(FStep.Index, ARef);
    case vkMap:
        return static_cast<ZOMap*>(FContainer)->GetItem(FStep.Key, ARef);
    case vkObject:
        return ZOObject::TData::GetProp(*static_cast<ZOObject**>(FContainer), FStep.Prop->Index, ARef);
    default:
        return ZOUnion::TData::GetTag(*static_cast<ZOUnion**>(FContainer), FStep.Tag->Index, ARef);
    }
}

bool TZOValueSlot::Set(bool AHasValue, void*& ARef) {
    if (!FContainerType)
        return FHolder->SetValue(AHasValue, ARef);
    switch (FContainerType->Kind()) {
    case vkList:
        return static_cast<ZOList*>(FContainer)->SetItem(FStep.Index, AHasValue, ARef);
    case vkMap:
        return static_cast<ZOMap*>(FContainer)->SetItem(FStep.Key, AHasValue, ARef);
    case vkObject:
        return ZOObject::TData::SetProp(*static_cast<ZOObject**>(FContainer), FStep.Prop->Index, AHasValue,
                                        ARef);
    default:
        return ZOUnion::TData::SetTag(*static_cast<ZOUnion**>(FContainer), FStep.Tag->Index, AHasValue, ARef);
    }
}

bool TZOValueSlot::Descend(const TZOPathStep& AStep) {
    void* container = nullptr;
    if (AStep.IsNew || !Get(container))
        return false;
    const TZOTypeInfo* type = TypeOfStep(FType, container, AStep);
    if (!type)
        return false;
    FContainerType = FType;
    FContainer = container;
    FType = type;
    FStep = AStep;
    return true;
}

bool TZOValueSlot::Descend(const TZOValuePath& APath) {
    for (const TZOPathStep& step : APath) {
        if (!Descend(step))
            return false;
    }
    return true;
}

TZOHeldValue::~TZOHeldValue() {
    if (FHasValue)
        ZOStorage::Destroy(FType, FBuffer);
}

void TZOHeldValue::Copy(const void* ASource) {
    ZOStorage::CopyConstruct(FType, FBuffer, ASource);
    FHasValue = true;
}

void TZOHeldValue::Take(void* ASource) {
    ZOStorage::Construct(FType, FBuffer);
    FHasValue = true;
    ZOStorage::Swap(FType, FBuffer, ASource);
}

void TZOHeldValue::GiveTo(void* ADest) {
    ZOStorage::Swap(FType, FBuffer, ADest);
    ZOStorage::Destroy(FType, FBuffer);
    FHasValue = false;
}

bool TZOHeldValue::Exchange(TZOValueSlot& ASlot) {
    void* ref = nullptr;
    if (ASlot.Get(ref)) {
        if (FHasValue) {
            ZOStorage::Swap(FType, FBuffer, ref);
            return true;
        }
        Take(ref);
        return ASlot.Set(false, ref);
    }
    if (!FHasValue)
        return true;
    if (!ASlot.Set(true, ref))
        return false;
    GiveTo(ref);
    return true;
}
