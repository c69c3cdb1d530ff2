#include "jsoneditor/view/RowIndex_p.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

using TList = TZOLinkedListOf<TZOViewRow*>;

/// A list with its index, beside the plain vector that says what they have to be.
class TIndexed {
public:
    explicit TIndexed(unsigned ASeed) : FRandom(ASeed) {}

    size_t Random(size_t ABound) { return std::uniform_int_distribution<size_t>(0, ABound - 1)(FRandom); }
    size_t Count() const { return FModel.size(); }

    void Insert(size_t APlace) {
        auto row = std::make_unique<TZOViewRow>(0);
        TZOViewRow* added = row.get();
        FRows.push_back(std::move(row));
        if (APlace == FModel.size()) {
            if (FIndex.HasRoomAtEnd()) {
                FIndex.Appending(added);
                FList.Add(added);
            } else {
                FList.Add(added);
                FIndex.Inserted(added);
            }
        } else {
            FList.InsertBefore(FModel[APlace], added);
            FIndex.Inserted(added);
        }
        FModel.insert(FModel.begin() + static_cast<std::ptrdiff_t>(APlace), added);
    }
    void Remove(size_t APlace) {
        FIndex.Removing(FModel[APlace]);
        FList.Remove(FModel[APlace]);
        FModel.erase(FModel.begin() + static_cast<std::ptrdiff_t>(APlace));
    }
    /// Moves ACount rows from AFrom so that they begin ATo rows after the start of what is left.
    void Move(size_t AFrom, size_t ACount, size_t ATo) {
        const auto first = FModel.begin() + static_cast<std::ptrdiff_t>(AFrom);
        const std::vector<TZOViewRow*> run(first, first + static_cast<std::ptrdiff_t>(ACount));
        FModel.erase(first, first + static_cast<std::ptrdiff_t>(ACount));
        FIndex.RemovingRun(run.front(), run.back());
        if (ATo < FModel.size())
            FList.MoveRangeBefore(FModel[ATo], run.front(), run.back());
        else
            FList.MoveRangeAfter(FModel.back(), run.front(), run.back());
        FIndex.RunInserted(run.front(), run.back());
        FModel.insert(FModel.begin() + static_cast<std::ptrdiff_t>(ATo), run.begin(), run.end());
    }
    void CheckAt(size_t APlace) const {
        ASSERT_EQ(FIndex.IndexOf(FModel[APlace]), static_cast<int>(APlace));
        ASSERT_EQ(FIndex.At(static_cast<int>(APlace)), FModel[APlace]);
        // Neighbours are found by each other.
        if (APlace + 1 < FModel.size()) {
            ASSERT_EQ(FIndex.IndexOf(FModel[APlace + 1]), static_cast<int>(APlace + 1));
        }
    }
    void CheckAll() const {
        ASSERT_EQ(FIndex.GetCount(), static_cast<int>(FModel.size()));
        for (size_t i = 0; i < FModel.size(); ++i)
            ASSERT_NO_FATAL_FAILURE(CheckAt(i));
        EXPECT_EQ(FIndex.At(-1), nullptr);
        EXPECT_EQ(FIndex.At(FIndex.GetCount()), nullptr);
    }

private:
    std::mt19937 FRandom;
    // Rows go after the list that links them and before the index that knows them.
    TZORowIndex FIndex;
    std::vector<std::unique_ptr<TZOViewRow>> FRows;
    TList FList;
    std::vector<TZOViewRow*> FModel;
};

void RunOperations(TIndexed& AIndexed, int AOperations, size_t AMost) {
    for (int i = 0; i < AOperations; ++i) {
        const size_t count = AIndexed.Count();
        const size_t kind = AIndexed.Random(10);
        if (count < 2 || (kind < 5 && count < AMost)) {
            AIndexed.Insert(AIndexed.Random(count + 1));
        } else if (kind < 8) {
            AIndexed.Remove(AIndexed.Random(count));
        } else {
            const size_t run = 1 + AIndexed.Random(std::min<size_t>(count - 1, kind == 8 ? 3 : 700));
            AIndexed.Move(AIndexed.Random(count - run + 1), run, AIndexed.Random(count - run + 1));
        }
        if (AIndexed.Count() > 0) {
            ASSERT_NO_FATAL_FAILURE(AIndexed.CheckAt(AIndexed.Random(AIndexed.Count())));
        }
    }
}

} // namespace

class RowIndexSeeds : public testing::TestWithParam<unsigned> {};

TEST_P(RowIndexSeeds, AgreesWithAPlainVectorWhateverIsDone) {
    TIndexed indexed(GetParam());
    for (int i = 0; i < 3000; ++i)
        indexed.Insert(indexed.Count());
    ASSERT_NO_FATAL_FAILURE(RunOperations(indexed, 4000, 4000));
    indexed.CheckAll();
    while (indexed.Count() > 5)
        indexed.Remove(indexed.Random(indexed.Count()));
    indexed.CheckAll();
    ASSERT_NO_FATAL_FAILURE(RunOperations(indexed, 2000, 60));
    indexed.CheckAll();
}

INSTANTIATE_TEST_SUITE_P(Seeded, RowIndexSeeds, testing::Range(1u, 9u));

TEST(RowIndex, HoldsNothingAtFirst) {
    const TZORowIndex index;
    TZOViewRow row(0);
    EXPECT_EQ(index.GetCount(), 0);
    EXPECT_EQ(index.At(0), nullptr);
    EXPECT_EQ(index.IndexOf(&row), 0);
    EXPECT_EQ(index.IndexOf(nullptr), 0);
}

TEST(RowIndex, FollowsRowsThatComeAndGoAtTheFront) {
    TIndexed indexed(1);
    for (int i = 0; i < 2000; ++i)
        indexed.Insert(0);
    indexed.CheckAll();
    while (indexed.Count() > 0)
        indexed.Remove(0);
    indexed.CheckAll();
}

TEST(RowIndex, FollowsALongRunThatGoesFromTheMiddleAndComesBack) {
    TIndexed indexed(1);
    for (int i = 0; i < 6000; ++i)
        indexed.Insert(indexed.Count());
    for (int i = 0; i < 3500; ++i) {
        indexed.Remove(1000);
        if (i % 50 == 0) {
            ASSERT_NO_FATAL_FAILURE(indexed.CheckAt(999));
            ASSERT_NO_FATAL_FAILURE(indexed.CheckAt(1000));
            ASSERT_NO_FATAL_FAILURE(indexed.CheckAt(indexed.Count() - 1));
        }
    }
    indexed.CheckAll();
    for (int i = 0; i < 3500; ++i)
        indexed.Insert(1000 + static_cast<size_t>(i));
    indexed.CheckAll();
}
