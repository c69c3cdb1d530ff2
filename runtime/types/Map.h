// Maps from text to typed values.
#pragma once

#include "runtime/types/TypeInfo.h"

#include <memory>

/// A map held in place in its slot; 16 bytes. Keys keep the order in which they came; look-up takes
/// constant time, removal time in proportion to the items.
class ZOMap {
public:
    class TTypeInfo;

    explicit ZOMap(const TTypeInfo* AType);
    ZOMap(const ZOMap& ASource);
    ZOMap& operator=(const ZOMap&) = delete;
    ~ZOMap();

    const TTypeInfo* Type() const noexcept { return FType; }
    int Count() const noexcept;
    /// All keys, in the map's order. The list is shared, not copied.
    QStringList Keys() const;
    bool ContainsKey(const QString& AKey) const;
    /// The place of AKey in Keys(); -1 for an unknown key.
    int IndexOf(const QString& AKey) const;

    /// Presence of the item; its storage in ARef when present. False for an unknown key.
    bool GetItem(const QString& AKey, void*& ARef) const;
    /// The item at place AIndex of Keys(), 0 to Count()-1.
    bool GetItemAt(int AIndex, void*& ARef) const;
    /// Storage of the item, added or made present first when needed.
    void GetByRef(const QString& AKey, void*& ARef);
    /// Makes the item present (storage in ARef) or absent; a new key is added at the end. Storage of other
    /// items may move.
    bool SetItem(const QString& AKey, bool AHasValue, void*& ARef);
    /// Adds an item with the new key AKey at place APlace of Keys(). False for a key that is there already
    /// and outside 0..Count(). Takes time in proportion to the items.
    bool Insert(int APlace, const QString& AKey, bool AHasValue, void*& ARef);
    /// Removes the item; an unknown key is ignored.
    void Remove(const QString& AKey);

private:
    struct TItems;

    const TTypeInfo* FType;
    std::unique_ptr<TItems> FItems; // null while empty
};

class ZOMap::TTypeInfo : public TZOTypeInfo {
public:
    const TZOTypeInfo* ItemType() const noexcept { return FItemType; }

private:
    friend class TZOTypeLibrary;
    TTypeInfo(const QString& AName, const QString& ADescription, const TZOTypeInfo* AItemType)
        : TZOTypeInfo(vkMap, AName, ADescription), FItemType(AItemType) {}

    const TZOTypeInfo* FItemType;
};
