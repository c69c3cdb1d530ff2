// Lists of typed values.
#pragma once

#include "runtime/types/SlotArray.h"
#include "runtime/types/TypeInfo.h"

/// A list held in place in its slot; 16 bytes. Copying and destroying go through ZOStorage.
class ZOList {
public:
    class TTypeInfo;

    explicit ZOList(const TTypeInfo* AType);
    ZOList(const ZOList& ASource);
    ZOList& operator=(const ZOList&) = delete;
    ~ZOList();

    const TTypeInfo* Type() const noexcept { return FType; }
    int Count() const noexcept { return FSlots.Count(); }

    /// Presence of element AIndex; its storage in ARef when present. False outside 0..Count()-1.
    bool GetItem(int AIndex, void*& ARef) const;
    /// Storage of element AIndex, made present first when absent. Raises EListError out of range.
    void GetByRef(int AIndex, void*& ARef);
    /// Makes element AIndex present (storage in ARef) or absent. False out of range: nothing changed.
    bool SetItem(int AIndex, bool AHasValue, void*& ARef);
    /// Inserts an element before AIndex (Count() appends). False outside 0..Count(). Storage of other
    /// elements may move.
    bool Insert(int AIndex, bool AHasValue, void*& ARef);
    /// Adds a present element at the end and gives its storage. Storage of other elements may move.
    void* Append();
    /// Removes element AIndex. Raises EListError out of range.
    void Delete(int AIndex);
    /// Makes room for ACount elements in all, so that appending them moves nothing.
    void Reserve(int ACount);

private:
    void CheckIndex(int AIndex) const;

    const TTypeInfo* FType;
    TZOSlotArray FSlots;
};

class ZOList::TTypeInfo : public TZOTypeInfo {
public:
    const TZOTypeInfo* ItemType() const noexcept { return FItemType; }

private:
    friend class TZOTypeLibrary;
    TTypeInfo(const QString& AName, const QString& ADescription, const TZOTypeInfo* AItemType)
        : TZOTypeInfo(vkList, AName, ADescription), FItemType(AItemType) {}

    const TZOTypeInfo* FItemType;
};
