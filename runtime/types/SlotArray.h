// A contiguous array of value slots of one type, each present or absent: what lists and maps stand on.
#pragma once

#include "runtime/types/TypeInfo.h"

#include <cstddef>

/// One pointer in size, and one block of memory: a header, the slots, and presence flags once a slot is
/// absent.
class TZOSlotArray {
public:
    TZOSlotArray() = default;
    TZOSlotArray(const TZOSlotArray&) = delete;
    TZOSlotArray& operator=(const TZOSlotArray&) = delete;

    int Count() const noexcept { return FBlock ? FBlock->Count : 0; }
    /// AIndex in range, as below.
    bool IsPresent(int AIndex) const noexcept { return !FBlock->Absent || !FBlock->Absent[AIndex]; }
    void* At(int AIndex) const noexcept {
        return reinterpret_cast<std::byte*>(FBlock + 1) + static_cast<std::size_t>(AIndex) * FBlock->Stride;
    }

    /// Makes slot AIndex present (constructed if it was not) or absent (destroyed).
    void SetPresent(const TZOTypeInfo* AType, int AIndex, bool AHasValue);
    /// Inserts a slot before AIndex, 0 to Count(). Storage of other slots may move.
    void Insert(const TZOTypeInfo* AType, int AIndex, bool AHasValue);
    /// Adds a present slot at the end and gives its storage. Storage of other slots may move.
    void* Append(const TZOTypeInfo* AType);
    void Delete(const TZOTypeInfo* AType, int AIndex);
    /// Makes room for ACapacity slots in all.
    void Reserve(const TZOTypeInfo* AType, int ACapacity);
    /// Destroys all slots and gives the memory back. The owner calls this in its destructor.
    void Clear(const TZOTypeInfo* AType) noexcept;
    /// Fills this empty array with a deep copy of ASource.
    void CopyFrom(const TZOTypeInfo* AType, const TZOSlotArray& ASource);

private:
    struct TBlock {
        bool* Absent = nullptr; // made when the first slot is absent: most arrays have none
        int Count = 0;
        int Capacity = 0;
        std::size_t Stride = 0;
    };
    void EnsureAbsentFlags();
    /// Makes room for one more slot.
    void Grow(const TZOTypeInfo* AType);

    TBlock* FBlock = nullptr; // null while nothing was ever reserved
};
