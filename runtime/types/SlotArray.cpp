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
    if (ACapacity <= FCapacity)
        return;
    FStride = ZOStorage::Size(AType);
    const auto capacity = static_cast<std::size_t>(ACapacity);
    FData = Resized(FData, capacity * FStride);
    if (FAbsent)
        FAbsent = Resized(FAbsent, capacity);
    FCapacity = ACapacity;
}

void TZOSlotArray::EnsureAbsentFlags() {
    if (FAbsent)
        return;
    FAbsent = Resized(FAbsent, static_cast<std::size_t>(FCapacity));
    std::fill_n(FAbsent, FCount, false);
}

void TZOSlotArray::SetPresent(const TZOTypeInfo* AType, int AIndex, bool AHasValue) {
    if (IsPresent(AIndex) == AHasValue)
        return;
    if (AHasValue)
        ZOStorage::Construct(AType, At(AIndex));
    else
        ZOStorage::Destroy(AType, At(AIndex));
    EnsureAbsentFlags();
    FAbsent[AIndex] = !AHasValue;
}

void TZOSlotArray::Insert(const TZOTypeInfo* AType, int AIndex, bool AHasValue) {
    if (FCount == FCapacity)
        Reserve(AType, std::max(4, FCapacity + FCapacity / 2));
    if (!AHasValue)
        EnsureAbsentFlags();
    // Constructed aside: a failure here must leave no hole.
    alignas(ZOStorage::MaxAlign) std::byte fresh[ZOStorage::MaxSize];
    if (AHasValue)
        ZOStorage::Construct(AType, fresh);
    const auto behind = static_cast<std::size_t>(FCount - AIndex);
    auto* place = static_cast<std::byte*>(At(AIndex));
    std::memmove(place + FStride, place, behind * FStride);
    if (AHasValue)
        std::memcpy(place, fresh, FStride);
    if (FAbsent) {
        std::memmove(FAbsent + AIndex + 1, FAbsent + AIndex, behind);
        FAbsent[AIndex] = !AHasValue;
    }
    ++FCount;
}

void TZOSlotArray::Delete(const TZOTypeInfo* AType, int AIndex) {
    if (IsPresent(AIndex))
        ZOStorage::Destroy(AType, At(AIndex));
    const auto behind = static_cast<std::size_t>(FCount - AIndex - 1);
    auto* place = static_cast<std::byte*>(At(AIndex));
    std::memmove(place, place + FStride, behind * FStride);
    if (FAbsent)
        std::memmove(FAbsent + AIndex, FAbsent + AIndex + 1, behind);
    --FCount;
}

void TZOSlotArray::Clear(const TZOTypeInfo* AType) noexcept {
    for (int i = 0; i < FCount; ++i) {
        if (IsPresent(i))
            ZOStorage::Destroy(AType, At(i));
    }
    std::free(FData);
    std::free(FAbsent);
    FData = nullptr;
    FAbsent = nullptr;
    FCount = FCapacity = 0;
}

void TZOSlotArray::CopyFrom(const TZOTypeInfo* AType, const TZOSlotArray& ASource) {
    Reserve(AType, ASource.FCount);
    for (int i = 0; i < ASource.FCount; ++i) {
        if (ASource.IsPresent(i)) {
            ZOStorage::CopyConstruct(AType, At(i), ASource.At(i));
            if (FAbsent)
                FAbsent[i] = false;
        } else {
            EnsureAbsentFlags();
            FAbsent[i] = true;
        }
        FCount = i + 1;
    }
}
