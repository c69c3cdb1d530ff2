#include "runtime/types/Union.h"

#include "platform/Exceptions.h"

#include <algorithm>

ZOUnion::~ZOUnion() {
    if (FHasValue)
        ZOStorage::Destroy(FType->Tags()[static_cast<std::size_t>(FTag)].Type, FStorage);
}

PTag ZOUnion::TTypeInfo::FindTag(QStringView AName) const {
    const auto found =
        std::find_if(FTags.begin(), FTags.end(), [&](const TTag& t) { return t.Name == AName; });
    return found == FTags.end() ? nullptr : &*found;
}

std::unique_ptr<ZOUnion> ZOUnion::TTypeInfo::CreateInstance() const {
    return std::unique_ptr<ZOUnion>(new ZOUnion(this));
}

const ZOUnion::TTypeInfo* ZOUnion::TData::Type(const ZOUnion* AUnion) { return AUnion->FType; }

PTag ZOUnion::TData::GetTag(const ZOUnion* AUnion) {
    if (!AUnion || AUnion->FTag < 0)
        return nullptr;
    return &AUnion->FType->Tags()[static_cast<std::size_t>(AUnion->FTag)];
}

bool ZOUnion::TData::GetTag(const ZOUnion* AUnion, int ATag, void*& ARef) {
    if (!AUnion || AUnion->FTag != ATag || !AUnion->FHasValue)
        return false;
    ARef = const_cast<std::byte*>(AUnion->FStorage);
    return true;
}

bool ZOUnion::TData::SetTag(ZOUnion* AUnion, int ATag, bool AHasValue, void*& ARef) {
    if (!AUnion || ATag < 0 || ATag >= static_cast<int>(AUnion->FType->Tags().size()))
        return false;
    const auto& tags = AUnion->FType->Tags();
    const TZOTypeInfo* type = tags[static_cast<std::size_t>(ATag)].Type;
    if (type && !AHasValue)
        return true;
    if (AUnion->FTag != ATag || (type && !AUnion->FHasValue)) {
        // Made aside, so that a failure keeps the old value.
        alignas(ZOStorage::MaxAlign) std::byte fresh[ZOStorage::MaxSize];
        if (type)
            ZOStorage::Construct(type, fresh);
        if (AUnion->FHasValue)
            ZOStorage::Destroy(tags[static_cast<std::size_t>(AUnion->FTag)].Type, AUnion->FStorage);
        AUnion->FTag = ATag;
        AUnion->FHasValue = type != nullptr;
        if (type)
            std::copy_n(fresh, ZOStorage::Size(type), AUnion->FStorage);
    }
    if (type)
        ARef = AUnion->FStorage;
    return true;
}

void ZOUnion::TData::GetByRef(ZOUnion* AUnion, int ATag, void*& ARef) {
    if (!SetTag(AUnion, ATag, true, ARef) || !AUnion->FHasValue)
        throw EListError(QStringLiteral("Tag %1 of the union carries no value").arg(ATag));
}

std::unique_ptr<ZOUnion> ZOUnion::TData::Clone(const ZOUnion* AUnion) {
    if (!AUnion)
        return nullptr;
    auto copy = AUnion->FType->CreateInstance();
    copy->FTag = AUnion->FTag;
    if (AUnion->FHasValue) {
        ZOStorage::CopyConstruct(GetTag(AUnion)->Type, copy->FStorage, AUnion->FStorage);
        copy->FHasValue = true;
    }
    return copy;
}
