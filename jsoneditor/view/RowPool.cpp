#include "jsoneditor/view/RowPool_p.h"

#include <array>
#include <new>

#ifdef __SANITIZE_ADDRESS__

// The sanitizer watches what it has handed out itself.
void* RowPool::Take(std::size_t ASize) { return ::operator new(ASize); }
void RowPool::Give(void* ASlot, std::size_t) noexcept { ::operator delete(ASlot); }

#else

namespace {

constexpr std::size_t ChunkBytes = 64 * 1024 - 64; // what the heap adds still fits into whole pages
constexpr std::size_t Grain = sizeof(void*);
constexpr std::size_t MaxSize = 16 * Grain;

struct TChunk;

struct TSlot {
    TChunk* Chunk;
    // What follows belongs to the user of the slot; in a free one it is the next that is free.
    TSlot* NextFree;
};

/// Slots of one size. Those that were never handed out follow each other from Fresh on.
struct TChunk {
    TChunk* Next;
    TChunk* Prev;
    TSlot* Free;
    char* Fresh;
    int Live;
    int Capacity;
};

/// The chunks of one size that have room.
struct TShelf {
    TChunk* First = nullptr;

    void Link(TChunk* AChunk) {
        AChunk->Prev = nullptr;
        AChunk->Next = First;
        if (First)
            First->Prev = AChunk;
        First = AChunk;
    }
    void Unlink(TChunk* AChunk) {
        (AChunk->Prev ? AChunk->Prev->Next : First) = AChunk->Next;
        if (AChunk->Next)
            AChunk->Next->Prev = AChunk->Prev;
    }
};

std::array<TShelf, MaxSize / Grain + 1> Shelves;

char* FirstSlot(TChunk* AChunk) { return reinterpret_cast<char*>(AChunk) + sizeof(TChunk); }

/// Out of the way of Take, which saves no registers without it.
[[gnu::noinline]] void* TakeFromNewChunk(TShelf& AShelf, std::size_t AStride, std::size_t ASize) {
    auto* chunk = new (::operator new(ChunkBytes)) TChunk{};
    chunk->Fresh = FirstSlot(chunk);
    chunk->Capacity = static_cast<int>((ChunkBytes - sizeof(TChunk)) / AStride);
    AShelf.Link(chunk);
    return RowPool::Take(ASize);
}

} // namespace

void* RowPool::Take(std::size_t ASize) {
    const std::size_t grains = (ASize + Grain - 1) / Grain;
    if (grains >= Shelves.size())
        return ::operator new(ASize);
    const std::size_t stride = (grains + 1) * Grain;
    TShelf& shelf = Shelves[grains];
    if (!shelf.First)
        return TakeFromNewChunk(shelf, stride, ASize);
    TChunk* chunk = shelf.First;
    TSlot* slot = chunk->Free;
    if (slot) {
        chunk->Free = slot->NextFree;
    } else {
        slot = reinterpret_cast<TSlot*>(chunk->Fresh);
        slot->Chunk = chunk;
        chunk->Fresh += stride;
    }
    if (++chunk->Live == chunk->Capacity)
        shelf.Unlink(chunk);
    return &slot->NextFree;
}

void RowPool::Give(void* ASlot, std::size_t ASize) noexcept {
    const std::size_t grains = (ASize + Grain - 1) / Grain;
    if (grains >= Shelves.size())
        return ::operator delete(ASlot);
    auto* slot = reinterpret_cast<TSlot*>(static_cast<char*>(ASlot) - offsetof(TSlot, NextFree));
    TChunk* chunk = slot->Chunk;
    TShelf& shelf = Shelves[grains];
    if (chunk->Live == chunk->Capacity)
        shelf.Link(chunk);
    slot->NextFree = chunk->Free;
    chunk->Free = slot;
    if (--chunk->Live > 0)
        return;
    // The last one with room stays, or a single row that comes and goes would take a chunk along each time.
    if (chunk->Next || chunk->Prev) {
        shelf.Unlink(chunk);
        ::operator delete(chunk);
    } else {
        // Rows that are handed out in the order of their places come out of the cache faster.
        chunk->Free = nullptr;
        chunk->Fresh = FirstSlot(chunk);
    }
}

#endif
