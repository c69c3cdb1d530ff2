// Objects: a fixed set of named properties, each present or absent.
#pragma once

#include "runtime/types/BlockPool.h"
#include "runtime/types/Storage.h"
#include "runtime/types/TypeInfo.h"

#include <deque>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// One object value. An instance is one block of memory: this header, presence bits, then the storage of
/// its properties. The slot that holds the reference owns the instance.
class ZOObject {
public:
    struct TProperty;
    struct TGroup;
    struct TSubtype;
    class TTypeInfo;
    class TData;

    ZOObject(const ZOObject&) = delete;
    ZOObject& operator=(const ZOObject&) = delete;
    ~ZOObject();
    /// Gives the block back to its type, which hands out many of one size.
    static void operator delete(ZOObject* AObject, std::destroying_delete_t);

private:
    explicit ZOObject(const TTypeInfo* AType) : FType(AType) {}

    const TTypeInfo* FType;
};

using PProperty = const struct ZOObject::TProperty*;

/// One property of an object type.
struct ZOObject::TProperty {
    int Index = 0; ///< addresses the property in TData; counts through all groups
    QString Name;  ///< unique within the type
    const TZOTypeInfo* Type = nullptr;
    QString Description;
    bool Required = false;
    bool ReadOnly = false; ///< the server sets it: not offered in requests
};

/// Properties that came into a type together: one group for each base type, then the type's own.
struct ZOObject::TGroup {
    QString Name;
    std::vector<TProperty> Properties;
};

/// One concrete type that a polymorphic object may have.
struct ZOObject::TSubtype {
    QString Name; ///< the discriminator's value
    const TTypeInfo* Type = nullptr;
};

class ZOObject::TTypeInfo : public TZOTypeInfo {
public:
    ~TTypeInfo() override;

    const std::vector<TGroup>& Groups() const { return FGroups; }
    int PropertyCount() const { return static_cast<int>(FProperties.size()); }
    /// AIndex from 0 to PropertyCount()-1.
    PProperty Property(int AIndex) const { return FProperties[static_cast<std::size_t>(AIndex)]; }
    /// The property of that name, or null.
    PProperty FindProperty(QStringView AName) const;
    /// The same for a name in UTF-8.
    PProperty FindPropertyUtf8(std::string_view AName) const;
    /// Property(AIndex)->Type at less cost, of a type that has an instance.
    const TZOTypeInfo* PropertyType(int AIndex) const { return Slot(AIndex).Type; }
    /// Property AIndex's name as a JSON text has it, in quotes; empty when it may have to be escaped. The
    /// type has an instance, and 7 bytes behind the text can be read.
    std::string_view JsonKey(int AIndex) const { return Slot(AIndex).JsonKey; }

    /// The key whose value names the subtype; empty when the type is not polymorphic.
    const QString& DiscriminatorName() const noexcept { return FDiscriminatorName; }
    bool GetHasSubtypes() const noexcept { return !FSubtypes.empty(); }
    const std::vector<TSubtype>& Subtypes() const noexcept { return FSubtypes; }
    /// The entry whose type is AActual, or null.
    const TSubtype* GetSubtypeByType(const TZOTypeInfo* AActual) const;
    /// The entry of that name, or null.
    const TSubtype* FindSubtype(QStringView AName) const;

    /// A new instance of exactly this type, all its properties absent.
    std::unique_ptr<ZOObject> CreateInstance() const;

private:
    friend class TZOTypeLibrary;
    friend class TZOObjectBuilder;
    friend class ZOObject;
    friend class TData;
    TTypeInfo(const QString& AName, const QString& ADescription);

    struct TNames {
        std::deque<std::string> Texts; // the properties' names in UTF-8 and in quotes
        std::unordered_map<std::string_view, int> Index;
    };

    struct TSlot {
        const TZOTypeInfo* Type;
        std::string_view JsonKey;
        quint32 Offset; // of the storage in an instance, in bytes from its start
        int Index;
    };
    const TSlot& Slot(int AIndex) const { return FSlots[static_cast<std::size_t>(AIndex)]; }
    void MakeLayout() const;
    std::string_view KeyOf(const TProperty& AProperty) const;
    void AddGroup(const QString& AName);
    void AddProperty(TProperty AProperty);
    void IndexProperties();
    bool HasProperty(const QString& AName) const;
    const TNames& MakeNames() const;
    const TNames& Names() const {
        return FNames && FNames->Texts.size() == FProperties.size() ? *FNames : MakeNames();
    }

    std::vector<TGroup> FGroups;
    std::vector<PProperty> FProperties;
    // Made when a name is first looked for: most types of a large service are never used.
    mutable std::unique_ptr<TNames> FNames;
    QString FDiscriminatorName;
    std::vector<TSubtype> FSubtypes;
    // Made with the first instance.
    mutable std::vector<TSlot> FSlots;
    mutable std::vector<TSlot> FOwning; // those whose values must be destroyed
    mutable quint32 FPresenceBytes = 0;
    mutable quint32 FInstanceBytes = 0;
    mutable TZOBlockPool FInstances;
};

/// Access to an object's properties. AIndex is TProperty::Index of the object's actual type.
class ZOObject::TData {
public:
    /// The actual type, which may be a subtype of the declared one.
    static const TTypeInfo* Type(const ZOObject* AObject);
    /// Presence of the property; its storage in ARef when present.
    static bool GetProp(const ZOObject* AObject, int AIndex, void*& ARef);
    /// The same by name; false for an unknown name.
    static bool GetProp(const ZOObject* AObject, QStringView AName, void*& ARef);
    /// Makes the property present (storage in ARef) or absent. False for a null object.
    static bool SetProp(ZOObject* AObject, int AIndex, bool AHasValue, void*& ARef);
    /// Makes the property present and empty, whatever it was, and gives its storage.
    static void* Renew(ZOObject* AObject, int AIndex);
    /// Storage of the property, made present first when absent.
    static void GetByRef(ZOObject* AObject, int AIndex, void*& ARef);
    /// A deep copy.
    static std::unique_ptr<ZOObject> Clone(const ZOObject* AObject);

private:
    friend class ZOObject;

    static unsigned char* BlockOf(const ZOObject* AObject) {
        return reinterpret_cast<unsigned char*>(const_cast<ZOObject*>(AObject));
    }
    static unsigned char& PresenceOf(const ZOObject* AObject, int AIndex) {
        return BlockOf(AObject)[sizeof(ZOObject) + static_cast<std::size_t>(AIndex) / 8];
    }
    static unsigned char PresenceBit(int AIndex) {
        return static_cast<unsigned char>(1u << (static_cast<unsigned>(AIndex) % 8));
    }
    static bool IsPresent(const ZOObject* AObject, int AIndex) {
        return PresenceOf(AObject, AIndex) & PresenceBit(AIndex);
    }
    static void MarkPresent(ZOObject* AObject, int AIndex, bool AHasValue) {
        unsigned char& bits = PresenceOf(AObject, AIndex);
        const unsigned char bit = PresenceBit(AIndex);
        bits = static_cast<unsigned char>(AHasValue ? bits | bit : bits & ~bit);
    }
};

inline const ZOObject::TTypeInfo* ZOObject::TData::Type(const ZOObject* AObject) { return AObject->FType; }

inline void* ZOObject::TData::Renew(ZOObject* AObject, int AIndex) {
    const TTypeInfo::TSlot& slot = AObject->FType->Slot(AIndex);
    void* const storage = BlockOf(AObject) + slot.Offset;
    if (IsPresent(AObject, AIndex)) {
        MarkPresent(AObject, AIndex, false);
        ZOStorage::Destroy(slot.Type, storage);
    }
    ZOStorage::Construct(slot.Type, storage);
    MarkPresent(AObject, AIndex, true);
    return storage;
}
