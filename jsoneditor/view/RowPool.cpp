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

bool IsFull(const TChunk* AChunk, std::size_t AStride) {
    return !AChunk->Free && AChunk->Fresh + AStride > reinterpret_cast<const char*>(AChunk) + ChunkBytes;
}

TChunk* NewChunk() {
    void* memory = ::operator new(ChunkBytes);
    return new (memory) TChunk{nullptr, nullptr, nullptr, static_cast<char*>(memory) + sizeof(TChunk), 0};
}

} // namespace

void* RowPool::Take(std::size_t ASize) {
    const std::size_t grains = (ASize + Grain - 1) / Grain;
    if (grains >= Shelves.size())
        return ::operator new(ASize);
    const std::size_t stride = (grains + 1) * Grain;
    TShelf& shelf = Shelves[grains];
    if (!shelf.First)
        shelf.Link(NewChunk());
    TChunk* chunk = shelf.First;
    TSlot* slot = chunk->Free;
    if (slot) {
        chunk->Free = slot->NextFree;
    } else {
        slot = reinterpret_cast<TSlot*>(chunk->Fresh);
        slot->Chunk = chunk;
        chunk->Fresh += stride;
    }
    ++chunk->Live;
    if (IsFull(chunk, stride))
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
    if (IsFull(chunk, (grains + 1) * Grain))
        shelf.Link(chunk);
    slot->NextFree = chunk->Free;
    chunk->Free = slot;
    // The last one with room stays, or a single row that comes and goes would take a chunk along each time.
    if (--chunk->Live == 0 && (chunk->Next || chunk->Prev)) {
        shelf.Unlink(chunk);
        ::operator delete(chunk);
    }
}

#endif
