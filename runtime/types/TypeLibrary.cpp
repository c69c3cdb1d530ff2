#include "runtime/types/TypeLibrary.h"

#include "runtime/types/Any.h"
#include "runtime/types/Streams.h"

#include <array>

TZOTypeLibrary::TZOTypeLibrary() = default;
TZOTypeLibrary::~TZOTypeLibrary() = default;

template <class T>
T* TZOTypeLibrary::Keep(T* AType) {
    FTypes.emplace_back(AType);
    return AType;
}

const TZOTypeInfo* TZOTypeLibrary::Scalar(TZOValueKind AKind) {
    using TScalars = std::array<std::unique_ptr<TZOTypeInfo>, vkDownload + 1>;
    // Never destroyed: values in other static objects need their types until the very end.
    static const TScalars& scalars = *[] {
        auto* types = new TScalars;
        for (int kind = vkString; kind <= vkDownload; ++kind) {
            const auto value = static_cast<TZOValueKind>(kind);
            (*types)[value].reset(new TZOTypeInfo(value, KindName(value)));
        }
        return types;
    }();
    return scalars[AKind].get();
}

const TZOTypeInfo* TZOTypeLibrary::NewScalar(TZOValueKind AKind, const QString& AName,
                                             const QString& ADescription, const QStringList& AAllowedValues) {
    return Keep(new TZOTypeInfo(AKind, AName, ADescription, AAllowedValues));
}

const ZOList::TTypeInfo* TZOTypeLibrary::NewList(const TZOTypeInfo* AItemType, const QString& AName,
                                                 const QString& ADescription) {
    return Keep(new ZOList::TTypeInfo(AName, ADescription, AItemType));
}

const ZOMap::TTypeInfo* TZOTypeLibrary::NewMap(const TZOTypeInfo* AItemType, const QString& AName,
                                               const QString& ADescription) {
    return Keep(new ZOMap::TTypeInfo(AName, ADescription, AItemType));
}

ZOList::TTypeInfo* TZOTypeLibrary::NewOpenList(const QString& AName, const QString& ADescription) {
    return Keep(new ZOList::TTypeInfo(AName, ADescription, nullptr));
}

ZOMap::TTypeInfo* TZOTypeLibrary::NewOpenMap(const QString& AName, const QString& ADescription) {
    return Keep(new ZOMap::TTypeInfo(AName, ADescription, nullptr));
}

void TZOTypeLibrary::SetItemType(ZOList::TTypeInfo* AList, const TZOTypeInfo* AItemType) {
    AList->FItemType = AItemType;
}

void TZOTypeLibrary::SetItemType(ZOMap::TTypeInfo* AMap, const TZOTypeInfo* AItemType) {
    AMap->FItemType = AItemType;
}

TZOObjectBuilder TZOTypeLibrary::NewObject(const QString& AName, const QString& ADescription) {
    return TZOObjectBuilder(Keep(new ZOObject::TTypeInfo(AName, ADescription)));
}

TZOUnionBuilder TZOTypeLibrary::NewUnion(const QString& AName, const QString& ATagName, TZOUnionForm AForm,
                                         const QString& ADescription) {
    return TZOUnionBuilder(Keep(new ZOUnion::TTypeInfo(AName, ADescription, ATagName, AForm)));
}

TZOObjectBuilder& TZOObjectBuilder::Base(const ZOObject::TTypeInfo* ABase) {
    for (const ZOObject::TGroup& group : ABase->Groups()) {
        FType->AddGroup(group.Name);
        for (const ZOObject::TProperty& property : group.Properties)
            FType->AddProperty(property);
    }
    return *this;
}

TZOObjectBuilder& TZOObjectBuilder::Property(const QString& AName, const TZOTypeInfo* AType,
                                             const TOptions& AOptions) {
    if (FType->FGroups.empty() || FType->FGroups.back().Name != FGroup)
        FType->AddGroup(FGroup);
    FType->AddProperty({0, AName, AType, AOptions.Description, AOptions.Required, AOptions.ReadOnly});
    return *this;
}

TZOObjectBuilder& TZOObjectBuilder::Property(const QString& AName, const TZOTypeInfo* AType) {
    return Property(AName, AType, {});
}

TZOObjectBuilder& TZOObjectBuilder::Group(const QString& AName) {
    FGroup = AName;
    return *this;
}

TZOObjectBuilder& TZOObjectBuilder::Reserve(int ACount) {
    FType->FProperties.reserve(FType->FProperties.size() + static_cast<std::size_t>(ACount));
    return *this;
}

TZOObjectBuilder& TZOObjectBuilder::Discriminator(const QString& AName) {
    FType->FDiscriminatorName = AName;
    return *this;
}

TZOObjectBuilder& TZOObjectBuilder::Subtype(const QString& AName, const ZOObject::TTypeInfo* AType) {
    FType->FSubtypes.push_back({AName, AType});
    return *this;
}

TZOUnionBuilder& TZOUnionBuilder::Tag(const QString& AName, const TZOTypeInfo* AType) {
    FType->FTags.push_back({static_cast<int>(FType->FTags.size()), AName, AType});
    return *this;
}
