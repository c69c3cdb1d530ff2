#include "runtime/types/ValueHolder.h"

namespace {

bool IsReference(const TZOTypeInfo* AType) { return AType->Kind() == vkObject || AType->Kind() == vkUnion; }

bool StartsPresent(const TZOTypeInfo* AType, const void* AValue) {
    return AValue && (!IsReference(AType) || *static_cast<void* const*>(AValue));
}

} // namespace

TZOValueHolder::TZOValueHolder(const TZOTypeInfo* AType, bool AOwns)
    : FType(AType), FStorage(FBuffer), FOwns(AOwns) {}

TZOValueHolder::TZOValueHolder(const TZOTypeInfo* AType, const void* AValue, bool AOwns)
    : FType(AType),
      FStorage(const_cast<void*>(AValue)),
      FHasValue(StartsPresent(AType, AValue)),
      FOwns(AOwns) {}

TZOValueHolder::TZOValueHolder(TZOValueHolder* ASource, bool AOwns)
    : FType(ASource->FType), FSource(ASource), FOwns(AOwns) {}

TZOValueHolder::~TZOValueHolder() {
    if (!FOwns)
        return;
    if (FSource)
        delete FSource;
    else
        Clear();
}

bool TZOValueHolder::GetValue(void*& ARef) const {
    if (FSource)
        return FSource->GetValue(ARef);
    if (FHasValue)
        ARef = FStorage;
    return FHasValue;
}

void TZOValueHolder::GetByRef(void*& ARef) {
    if (!SetValue(true, ARef))
        ARef = nullptr;
}

bool TZOValueHolder::SetValue(bool AHasValue, void*& ARef) {
    if (FSource)
        return FSource->SetValue(AHasValue, ARef);
    if (!FStorage)
        return false;
    if (AHasValue != FHasValue) {
        if (AHasValue)
            ZOStorage::Construct(FType, FStorage);
        FHasValue = AHasValue;
        if (!AHasValue)
            Destroy();
    }
    if (AHasValue)
        ARef = FStorage;
    return true;
}

void TZOValueHolder::Destroy() {
    ZOStorage::Destroy(FType, FStorage);
    // Whoever lent the storage sees a null reference, or an empty value that may be used and destroyed.
    if (IsReference(FType))
        *static_cast<void**>(FStorage) = nullptr;
    else if (FStorage != FBuffer)
        ZOStorage::Construct(FType, FStorage);
}

bool TZOValueHolder::HasValue() const {
    void* ref = nullptr;
    return GetValue(ref);
}

void TZOValueHolder::Clear() {
    void* ref = nullptr;
    SetValue(false, ref);
}
