#include "runtime/types/Object.h"

#include "runtime/types/Storage.h"

#include "platform/Exceptions.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace {

constexpr std::size_t HeaderSize = sizeof(ZOObject);

/// Whoever compares keys reads whole words of them.
constexpr std::size_t KeySlack = 7;

} // namespace

ZOObject::~ZOObject() {
    for (const TTypeInfo::TSlot& slot : FType->FOwning) {
        if (TData::IsPresent(this, slot.Index))
            ZOStorage::Destroy(slot.Type, TData::BlockOf(this) + slot.Offset);
    }
}

void ZOObject::operator delete(ZOObject* AObject, std::destroying_delete_t) {
    TZOBlockPool& instances = AObject->FType->FInstances;
    AObject->~ZOObject();
    instances.Free(AObject);
}

ZOObject::TTypeInfo::TTypeInfo(const QString& AName, const QString& ADescription)
    : TZOTypeInfo(vkObject, AName, ADescription) {}

ZOObject::TTypeInfo::~TTypeInfo() = default;

PProperty ZOObject::TTypeInfo::FindProperty(QStringView AName) const {
    const QByteArray name = AName.toUtf8();
    return FindPropertyUtf8({name.constData(), static_cast<std::size_t>(name.size())});
}

PProperty ZOObject::TTypeInfo::FindPropertyUtf8(std::string_view AName) const {
    const auto& index = Names().Index;
    const auto found = index.find(AName);
    return found == index.end() ? nullptr : Property(found->second);
}

const ZOObject::TSubtype* ZOObject::TTypeInfo::GetSubtypeByType(const TZOTypeInfo* AActual) const {
    const auto found = std::find_if(FSubtypes.begin(), FSubtypes.end(),
                                    [&](const TSubtype& s) { return s.Type == AActual; });
    return found == FSubtypes.end() ? nullptr : &*found;
}

const ZOObject::TSubtype* ZOObject::TTypeInfo::FindSubtype(QStringView AName) const {
    const auto found =
        std::find_if(FSubtypes.begin(), FSubtypes.end(), [&](const TSubtype& s) { return s.Name == AName; });
    return found == FSubtypes.end() ? nullptr : &*found;
}

std::unique_ptr<ZOObject> ZOObject::TTypeInfo::CreateInstance() const {
    if (FInstanceBytes == 0)
        MakeLayout();
    void* block = FInstances.Allocate(FInstanceBytes);
    std::unique_ptr<ZOObject> object(new (block) ZOObject(this));
    std::memset(TData::BlockOf(object.get()) + HeaderSize, 0, FPresenceBytes);
    return object;
}

std::string_view ZOObject::TTypeInfo::KeyOf(const TProperty& AProperty) const {
    const bool isPlain = !AProperty.Name.contains(u'\\') && !AProperty.Name.contains(u'"');
    return isPlain ? std::string_view(Names().Texts[static_cast<std::size_t>(AProperty.Index)])
                   : std::string_view();
}

void ZOObject::TTypeInfo::MakeLayout() const {
    FPresenceBytes = static_cast<quint32>((FProperties.size() + 7) / 8);
    std::size_t offset = HeaderSize + FPresenceBytes;
    FSlots.resize(FProperties.size());
    FOwning.clear();
    // Small properties first fill the space behind the presence bits.
    for (const std::size_t align : {1u, 2u, 4u, 8u}) {
        for (PProperty property : FProperties) {
            if (ZOStorage::Align(property->Type) != align)
                continue;
            offset = (offset + align - 1) / align * align;
            const TSlot slot{property->Type, KeyOf(*property), static_cast<quint32>(offset), property->Index};
            FSlots[static_cast<std::size_t>(property->Index)] = slot;
            if (!ZOStorage::IsPlain(property->Type->Kind()))
                FOwning.push_back(slot);
            offset += ZOStorage::Size(property->Type);
        }
    }
    FInstanceBytes = static_cast<quint32>(offset);
}

void ZOObject::TTypeInfo::AddGroup(const QString& AName) { FGroups.push_back({AName, {}}); }

void ZOObject::TTypeInfo::AddProperty(TProperty AProperty) {
    if (FInstanceBytes > 0)
        throw EListError(QStringLiteral("Type %1 is in use and takes no more properties").arg(Name()));
    if (HasProperty(AProperty.Name))
        throw EListError(QStringLiteral("Type %1 already has a property %2").arg(Name(), AProperty.Name));
    AProperty.Index = PropertyCount();
    std::vector<TProperty>& group = FGroups.back().Properties;
    const TProperty* const before = group.data();
    group.push_back(std::move(AProperty));
    FProperties.push_back(&group.back());
    if (group.data() != before)
        IndexProperties();
}

bool ZOObject::TTypeInfo::HasProperty(const QString& AName) const {
    constexpr int few = 16;
    if (PropertyCount() > few)
        return FindProperty(AName);
    return std::any_of(FProperties.begin(), FProperties.end(), [&](PProperty p) { return p->Name == AName; });
}

const ZOObject::TTypeInfo::TNames& ZOObject::TTypeInfo::MakeNames() const {
    if (!FNames)
        FNames = std::make_unique<TNames>();
    for (int i = static_cast<int>(FNames->Texts.size()); i < PropertyCount(); ++i) {
        std::string& text = FNames->Texts.emplace_back('"' + Property(i)->Name.toStdString() + '"');
        text.reserve(text.size() + KeySlack);
        FNames->Index.emplace(std::string_view(text).substr(1, text.size() - 2), i);
    }
    return *FNames;
}

void ZOObject::TTypeInfo::IndexProperties() {
    FProperties.clear();
    for (const TGroup& group : FGroups) {
        for (const TProperty& property : group.Properties)
            FProperties.push_back(&property);
    }
}

bool ZOObject::TData::GetProp(const ZOObject* AObject, int AIndex, void*& ARef) {
    if (!AObject || !IsPresent(AObject, AIndex))
        return false;
    ARef = BlockOf(AObject) + AObject->FType->Slot(AIndex).Offset;
    return true;
}

bool ZOObject::TData::GetProp(const ZOObject* AObject, QStringView AName, void*& ARef) {
    if (!AObject)
        return false;
    const PProperty property = AObject->FType->FindProperty(AName);
    return property && GetProp(AObject, property->Index, ARef);
}

bool ZOObject::TData::SetProp(ZOObject* AObject, int AIndex, bool AHasValue, void*& ARef) {
    if (!AObject)
        return false;
    const TZOTypeInfo* type = AObject->FType->Slot(AIndex).Type;
    void* storage = BlockOf(AObject) + AObject->FType->Slot(AIndex).Offset;
    if (IsPresent(AObject, AIndex) != AHasValue) {
        if (AHasValue)
            ZOStorage::Construct(type, storage);
        MarkPresent(AObject, AIndex, AHasValue);
        if (!AHasValue)
            ZOStorage::Destroy(type, storage);
    }
    if (AHasValue)
        ARef = storage;
    return true;
}

void ZOObject::TData::GetByRef(ZOObject* AObject, int AIndex, void*& ARef) {
    SetProp(AObject, AIndex, true, ARef);
}

std::unique_ptr<ZOObject> ZOObject::TData::Clone(const ZOObject* AObject) {
    if (!AObject)
        return nullptr;
    const TTypeInfo* type = AObject->FType;
    auto copy = type->CreateInstance();
    for (int i = 0; i < type->PropertyCount(); ++i) {
        void* source = nullptr;
        if (!GetProp(AObject, i, source))
            continue;
        ZOStorage::CopyConstruct(type->Property(i)->Type, BlockOf(copy.get()) + type->Slot(i).Offset, source);
        MarkPresent(copy.get(), i, true);
    }
    return copy;
}
