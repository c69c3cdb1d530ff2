#include "runtime/types/SlotArray.h"

#include "runtime/types/Storage.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

/// Storage of any kind may be moved with memmove, so growing is one realloc.
template <class T>
T* Resized(T* AMemory, std::size_t ABytes) {
    void* memory = std::realloc(AMemory, ABytes);
    if (!memory)
        throw std::bad_alloc();
    return static_cast<T*>(memory);
}

} // namespace

void TZOSlotArray::Reserve(const TZOTypeInfo* AType, int ACapacity) {
    if (FBlock && ACapacity <= FBlock->Capacity)
        return;
    const std::size_t stride = ZOStorage::Size(AType);
    const auto capacity = static_cast<std::size_t>(ACapacity);
    const bool isNew = !FBlock;
    FBlock = Resized(FBlock, sizeof(TBlock) + capacity * stride);
    if (isNew)
        new (FBlock) TBlock{nullptr, 0, 0, stride};
    if (FBlock->Absent)
        FBlock->Absent = Resized(FBlock->Absent, capacity);
    FBlock->Capacity = ACapacity;
}

void TZOSlotArray::EnsureAbsentFlags() {
    if (FBlock->Absent)
        return;
    FBlock->Absent = Resized(FBlock->Absent, static_cast<std::size_t>(FBlock->Capacity));
    std::fill_n(FBlock->Absent, FBlock->Count, false);
}

void TZOSlotArray::SetPresent(const TZOTypeInfo* AType, int AIndex, bool AHasValue) {
    if (IsPresent(AIndex) == AHasValue)
        return;
    EnsureAbsentFlags();
    if (AHasValue)
        ZOStorage::Construct(AType, At(AIndex));
    else
        ZOStorage::Destroy(AType, At(AIndex));
    FBlock->Absent[AIndex] = !AHasValue;
}

void TZOSlotArray::Grow(const TZOTypeInfo* AType) {
    if (!FBlock || FBlock->Count == FBlock->Capacity)
        Reserve(AType, FBlock ? std::max(4, FBlock->Capacity + FBlock->Capacity / 2) : 2);
}

void* TZOSlotArray::Append(const TZOTypeInfo* AType) {
    Grow(AType);
    void* const place = At(FBlock->Count);
    ZOStorage::Construct(AType, place);
    if (FBlock->Absent)
        FBlock->Absent[FBlock->Count] = false;
    ++FBlock->Count;
    return place;
}

void TZOSlotArray::Insert(const TZOTypeInfo* AType, int AIndex, bool AHasValue) {
    Grow(AType);
    if (!AHasValue)
        EnsureAbsentFlags();
    // Constructed aside: a failure here must leave no hole.
    alignas(ZOStorage::MaxAlign) std::byte fresh[ZOStorage::MaxSize];
    if (AHasValue)
        ZOStorage::Construct(AType, fresh);
    const auto behind = static_cast<std::size_t>(FBlock->Count - AIndex);
    const std::size_t stride = FBlock->Stride;
    auto* place = static_cast<std::byte*>(At(AIndex));
    std::memmove(place + stride, place, behind * stride);
    if (AHasValue)
        std::memcpy(place, fresh, stride);
    if (FBlock->Absent) {
        std::memmove(FBlock->Absent + AIndex + 1, FBlock->Absent + AIndex, behind);
        FBlock->Absent[AIndex] = !AHasValue;
    }
    ++FBlock->Count;
}

void TZOSlotArray::Delete(const TZOTypeInfo* AType, int AIndex) {
    if (IsPresent(AIndex))
        ZOStorage::Destroy(AType, At(AIndex));
    const auto behind = static_cast<std::size_t>(FBlock->Count - AIndex - 1);
    const std::size_t stride = FBlock->Stride;
    auto* place = static_cast<std::byte*>(At(AIndex));
    std::memmove(place, place + stride, behind * stride);
    if (FBlock->Absent)
        std::memmove(FBlock->Absent + AIndex, FBlock->Absent + AIndex + 1, behind);
    --FBlock->Count;
}

void TZOSlotArray::Clear(const TZOTypeInfo* AType) noexcept {
    if (!FBlock)
        return;
    for (int i = 0; i < FBlock->Count && !ZOStorage::IsPlain(AType->Kind()); ++i) {
        if (IsPresent(i))
            ZOStorage::Destroy(AType, At(i));
    }
    std::free(FBlock->Absent);
    std::free(FBlock);
    FBlock = nullptr;
}

void TZOSlotArray::CopyFrom(const TZOTypeInfo* AType, const TZOSlotArray& ASource) {
    if (ASource.Count() == 0)
        return;
    Reserve(AType, ASource.Count());
    for (int i = 0; i < ASource.Count(); ++i) {
        const bool isPresent = ASource.IsPresent(i);
        if (isPresent)
            ZOStorage::CopyConstruct(AType, At(i), ASource.At(i));
        else
            EnsureAbsentFlags();
        if (FBlock->Absent)
            FBlock->Absent[i] = !isPresent;
        FBlock->Count = i + 1;
    }
}
