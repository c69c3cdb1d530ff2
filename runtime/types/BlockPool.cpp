#include "runtime/types/BlockPool.h"

#include <algorithm>

namespace {

constexpr std::size_t LargestSlabBytes = 64 * 1024;

std::size_t Rounded(std::size_t ASize) { return std::max<std::size_t>((ASize + 7) / 8 * 8, sizeof(void*)); }

} // namespace

void TZOBlockPool::AddSlab(std::size_t ASize) {
    const std::size_t bytes = FNextCount * ASize;
    FSlabs.emplace_back(new std::byte[bytes]);
    FFresh = FSlabs.back().get();
    FFreshEnd = FFresh + bytes;
    if (bytes * 2 <= LargestSlabBytes)
        FNextCount *= 2;
}

#ifdef __SANITIZE_ADDRESS__

// Each block by itself, so that a use after its end is seen.
void* TZOBlockPool::Allocate(std::size_t ASize) { return ::operator new(Rounded(ASize)); }
void TZOBlockPool::Free(void* ABlock) noexcept { ::operator delete(ABlock); }

#else

void* TZOBlockPool::Allocate(std::size_t ASize) {
    const std::size_t size = Rounded(ASize);
    ++FInUse;
    if (FFree) {
        TFreeBlock* block = FFree;
        FFree = block->Next;
        return block;
    }
    if (FFresh == FFreshEnd) {
        try {
            AddSlab(size);
        } catch (...) {
            --FInUse;
            throw;
        }
    }
    std::byte* block = FFresh;
    FFresh += size;
    return block;
}

void TZOBlockPool::Free(void* ABlock) noexcept {
    auto* block = static_cast<TFreeBlock*>(ABlock);
    block->Next = FFree;
    FFree = block;
    if (--FInUse > 0)
        return;
    FSlabs.clear();
    FFree = nullptr;
    FFresh = FFreshEnd = nullptr;
    FNextCount = 4;
}

#endif
