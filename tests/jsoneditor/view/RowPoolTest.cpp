#include "jsoneditor/view/RowPool_p.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

namespace {

struct TTaken {
    unsigned char* Slot;
    size_t Size;
    unsigned char Mark;
};

bool IsIntact(const TTaken& ATaken) {
    return std::all_of(ATaken.Slot, ATaken.Slot + ATaken.Size,
                       [&](unsigned char AByte) { return AByte == ATaken.Mark; });
}

} // namespace

TEST(RowPool, SlotsOfAllSizesKeepToThemselvesWhateverComesAndGoes) {
    std::mt19937 random(3);
    std::vector<TTaken> taken;
    for (int i = 0; i < 60000; ++i) {
        // More come at first, more go later.
        const bool comes = taken.empty() || random() % 10 < (i < 30000 ? 7u : 3u);
        if (comes) {
            const size_t size = 8 + random() % 150;
            auto* slot = static_cast<unsigned char*>(RowPool::Take(size));
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(slot) % alignof(void*), 0u);
            taken.push_back({slot, size, static_cast<unsigned char>(i)});
            std::memset(slot, taken.back().Mark, size);
        } else {
            std::swap(taken[random() % taken.size()], taken.back());
            ASSERT_TRUE(IsIntact(taken.back()));
            RowPool::Give(taken.back().Slot, taken.back().Size);
            taken.pop_back();
        }
    }
    for (const TTaken& left : taken) {
        EXPECT_TRUE(IsIntact(left));
        RowPool::Give(left.Slot, left.Size);
    }
}

#ifndef __SANITIZE_ADDRESS__
TEST(RowPool, ASlotThatWasGivenBackIsTakenAgain) {
    void* kept = RowPool::Take(64);
    void* first = RowPool::Take(64);
    RowPool::Give(first, 64);
    EXPECT_EQ(RowPool::Take(64), first);
    RowPool::Give(first, 64);
    RowPool::Give(kept, 64);
}
#endif
