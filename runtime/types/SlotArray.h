// A contiguous array of value slots of one type, each present or absent: what lists and maps stand on.
#pragma once

#include "runtime/types/TypeInfo.h"

#include <cstddef>

class TZOSlotArray {
public:
    TZOSlotArray() = default;
    TZOSlotArray(const TZOSlotArray&) = delete;
    TZOSlotArray& operator=(const TZOSlotArray&) = delete;

    int Count() const noexcept { return FCount; }
    bool IsPresent(int AIndex) const noexcept { return !FAbsent || !FAbsent[AIndex]; }
    void* At(int AIndex) const noexcept { return FData + static_cast<std::size_t>(AIndex) * FStride; }

    /// Makes slot AIndex present (constructed if it was not) or absent (destroyed). AIndex in range.
    void SetPresent(const TZOTypeInfo* AType, int AIndex, bool AHasValue);
    /// Inserts a slot before AIndex, 0 to Count(). Storage of other slots may move.
    void Insert(const TZOTypeInfo* AType, int AIndex, bool AHasValue);
    void Delete(const TZOTypeInfo* AType, int AIndex);
    /// Makes room for ACapacity slots in all.
    void Reserve(const TZOTypeInfo* AType, int ACapacity);
    /// Destroys all slots and gives the memory back. The owner calls this in its destructor.
    void Clear(const TZOTypeInfo* AType) noexcept;
    /// Fills this empty array with a deep copy of ASource.
    void CopyFrom(const TZOTypeInfo* AType, const TZOSlotArray& ASource);

private:
    void EnsureAbsentFlags();

    std::byte* FData = nullptr;
    bool* FAbsent = nullptr; // made when the first slot is absent: most arrays have none
    int FCount = 0;
    int FCapacity = 0;
    std::size_t FStride = 0;
};
