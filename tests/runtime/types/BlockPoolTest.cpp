#include "runtime/types/BlockPool.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>

TEST(BlockPool, NeverHandsOutMemoryThatIsInUse) {
    TZOBlockPool pool;
    constexpr std::size_t size = 20;
    std::vector<std::pair<unsigned char*, unsigned char>> blocks;
    std::mt19937 random(3);
    for (int step = 0; step < 20'000; ++step) {
        if (blocks.empty() || random() % 5 < 3) {
            auto* block = static_cast<unsigned char*>(pool.Allocate(size));
            ASSERT_EQ(reinterpret_cast<std::uintptr_t>(block) % 8, 0u);
            std::memset(block, step % 251, size);
            blocks.emplace_back(block, static_cast<unsigned char>(step % 251));
        } else {
            const std::size_t chosen = random() % blocks.size();
            const auto [block, mark] = blocks[chosen];
            ASSERT_TRUE(
                std::all_of(block, block + size, [mark = mark](unsigned char b) { return b == mark; }));
            pool.Free(block);
            blocks.erase(blocks.begin() + std::ptrdiff_t(chosen));
        }
    }
    for (const auto& [block, mark] : blocks)
        pool.Free(block);
    pool.Free(pool.Allocate(size));
}
