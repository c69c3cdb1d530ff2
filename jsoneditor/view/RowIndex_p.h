// Where a row stands among a million, without walking them.
#pragma once

#include "jsoneditor/view/ViewRow.h"

#include <memory>
#include <vector>

class TZORowIndex;

/// A run of neighbouring rows that are counted together.
struct TZORowBlock {
    const TZORowIndex* Index = nullptr;
    TZOViewRow* First = nullptr;
    int Count = 0;
    /// Its place among the blocks.
    size_t Ordinal = 0;
};

/// Counts the rows of one list in blocks of some hundreds, so that the index of a row and the row at an
/// index cost one look over the blocks and a walk inside one. The owner of the list tells it of every change;
/// it keeps nothing about rows but their block.
class TZORowIndex {
public:
    static constexpr int MaxBlock = 512;

    /// Whose the rows are; a row finds it through its block.
    TZODataSource* Source = nullptr;

    int GetCount() const { return FCount; }
    /// GetCount() for a row that is not here.
    int IndexOf(const TZOViewRow* ARow) const;
    /// Null outside 0 .. GetCount() - 1.
    TZOViewRow* At(int AIndex) const;

    /// Whether the last block takes another row.
    bool HasRoomAtEnd() const {
        return !FBlocks.empty() && FBlocks.back() && FBlocks.back()->Count < MaxBlock;
    }
    /// ARow, which is in no list, is about to be linked in behind the last one, where there is room.
    void Appending(TZOViewRow* ARow) {
        TZORowBlock* last = FBlocks.back().get();
        ARow->FBlock = last;
        FCounts.back() = ++last->Count;
        ++FCount;
    }
    /// ARow, or the run, has just been linked in beside rows that are known here.
    void Inserted(TZOViewRow* ARow);
    void RunInserted(TZOViewRow* AStart, TZOViewRow* AEnd);
    /// ARow, or the run, is about to be unlinked.
    void Removing(TZOViewRow* ARow);
    void RemovingRun(TZOViewRow* AStart, TZOViewRow* AEnd);

private:
    TZORowBlock* AddBlock(size_t AOrdinal, TZOViewRow* AFirst);
    /// Leaves a gap: moving up all that follows, block after block, would cost more than the rows.
    void DropBlock(TZORowBlock* ABlock);
    void CloseGaps();
    TZORowBlock* BlockFor(TZOViewRow* ARow);
    TZORowBlock* TakeOut(TZOViewRow* ARow);
    /// ARow becomes the first row of a new block.
    void SplitBefore(TZOViewRow* ARow);
    void MergeAround(TZORowBlock* ABlock);
    void MergeWithNext(size_t AOrdinal);
    void Renumber(size_t AFrom);
    void Count(TZORowBlock* ABlock, int ADelta);
    void RefreshStarts() const;
    int Found(const TZOViewRow* ARow, int AIndex) const;

    std::vector<std::unique_ptr<TZORowBlock>> FBlocks; // null in a gap, which counts no rows
    /// The count of each block once more, and the index of its first row: side by side, as eight thousand
    /// blocks in different places would take longer to visit than to add up.
    std::vector<int> FCounts;
    mutable std::vector<int> FStarts;
    int FCount = 0;
    size_t FGaps = 0;
    /// Starts are valid for the blocks below this ordinal.
    mutable size_t FValidStarts = 0;
    /// What was asked for last, until rows come or go before it.
    mutable const TZOViewRow* FFoundRow = nullptr;
    mutable int FFoundIndex = 0;
};
