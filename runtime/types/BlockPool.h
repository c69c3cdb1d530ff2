// Memory for many blocks of one size.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

/// Hands out blocks from slabs, which costs a few instructions and no memory beside the blocks. All slabs
/// are freed together when the last block has come back. Not for use by several threads at once.
class TZOBlockPool {
public:
    /// Memory of ASize bytes, aligned to 8; ASize is the same in every call.
    void* Allocate(std::size_t ASize);
    void Free(void* ABlock) noexcept;

private:
    struct TFreeBlock {
        TFreeBlock* Next;
    };
    void AddSlab(std::size_t ASize);

    std::vector<std::unique_ptr<std::byte[]>> FSlabs;
    TFreeBlock* FFree = nullptr;
    std::byte* FFresh = nullptr; // the part of the last slab that was never handed out
    std::byte* FFreshEnd = nullptr;
    std::size_t FNextCount = 4; // blocks of the next slab
    std::size_t FInUse = 0;
};
