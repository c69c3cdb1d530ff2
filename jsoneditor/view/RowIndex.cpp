#include "jsoneditor/view/RowIndex_p.h"

#include <algorithm>

namespace {

constexpr int SmallBlock = TZORowIndex::MaxBlock / 8;
constexpr int MergedBlock = TZORowIndex::MaxBlock / 2;

} // namespace

int TZORowIndex::IndexOf(const TZOViewRow* ARow) const {
    const TZORowBlock* block = ARow ? ARow->FBlock : nullptr;
    if (!block || block->Ordinal >= FBlocks.size() || FBlocks[block->Ordinal].get() != block)
        return FCount;
    RefreshStarts();
    // Rows are asked for one after the other where they are laid out.
    if (FFoundRow && FFoundRow->Next() == ARow)
        return Found(ARow, FFoundIndex + 1);
    int index = FStarts[block->Ordinal];
    for (const TZOViewRow* row = block->First; row != ARow; row = row->Next())
        ++index;
    return Found(ARow, index);
}

int TZORowIndex::Found(const TZOViewRow* ARow, int AIndex) const {
    FFoundRow = ARow;
    FFoundIndex = AIndex;
    return AIndex;
}

TZOViewRow* TZORowIndex::At(int AIndex) const {
    if (AIndex < 0 || AIndex >= FCount)
        return nullptr;
    RefreshStarts();
    const auto start = std::prev(std::upper_bound(FStarts.begin(), FStarts.end(), AIndex));
    TZOViewRow* row = FBlocks[static_cast<size_t>(start - FStarts.begin())]->First;
    for (int i = *start; i < AIndex; ++i)
        row = row->Next();
    return row;
}

void TZORowIndex::Inserted(TZOViewRow* ARow) {
    TZORowBlock* block = BlockFor(ARow);
    ARow->FBlock = block;
    Count(block, 1);
    ++FCount;
    if (block->Count > MaxBlock) {
        TZOViewRow* middle = block->First;
        for (int i = 0; i < MaxBlock / 2; ++i)
            middle = middle->Next();
        SplitBefore(middle);
    }
}

void TZORowIndex::RunInserted(TZOViewRow* AStart, TZOViewRow* AEnd) {
    TZOViewRow* prev = AStart->Prev();
    TZOViewRow* next = AEnd->Next();
    TZORowBlock* block = prev ? prev->FBlock : AddBlock(0, AStart);
    if (prev && next && next->FBlock == block)
        SplitBefore(next);
    for (TZOViewRow* row = AStart;; row = row->Next()) {
        if (block->Count >= MaxBlock)
            block = AddBlock(block->Ordinal + 1, row);
        row->FBlock = block;
        Count(block, 1);
        ++FCount;
        if (row == AEnd)
            break;
    }
    MergeAround(AEnd->FBlock);
    MergeAround(AStart->FBlock);
}

void TZORowIndex::Removing(TZOViewRow* ARow) {
    TZORowBlock* block = TakeOut(ARow);
    if (block && block->Count <= SmallBlock)
        MergeAround(block);
}

void TZORowIndex::RemovingRun(TZOViewRow* AStart, TZOViewRow* AEnd) {
    for (TZOViewRow* row = AStart;; row = row->Next()) {
        TakeOut(row);
        if (row == AEnd)
            break;
    }
}

TZORowBlock* TZORowIndex::TakeOut(TZOViewRow* ARow) {
    TZORowBlock* block = ARow->FBlock;
    ARow->FBlock = nullptr;
    Count(block, -1);
    --FCount;
    if (block->Count == 0) {
        DropBlock(block);
        return nullptr;
    }
    if (block->First == ARow)
        block->First = ARow->Next();
    return block;
}

TZORowBlock* TZORowIndex::BlockFor(TZOViewRow* ARow) {
    const TZOViewRow* prev = ARow->Prev();
    const TZOViewRow* next = ARow->Next();
    if (prev && prev->FBlock) {
        // Rows that come one after the other fill their blocks instead of leaving halves behind.
        if (!next && prev->FBlock->Count >= MaxBlock)
            return AddBlock(FBlocks.size(), ARow);
        return prev->FBlock;
    }
    if (next && next->FBlock) {
        next->FBlock->First = ARow;
        return next->FBlock;
    }
    return AddBlock(0, ARow);
}

TZORowBlock* TZORowIndex::AddBlock(size_t AOrdinal, TZOViewRow* AFirst) {
    auto block = std::make_unique<TZORowBlock>();
    block->Index = this;
    block->First = AFirst;
    block->Ordinal = AOrdinal;
    TZORowBlock* added = block.get();
    if (AOrdinal < FBlocks.size() && !FBlocks[AOrdinal]) {
        FBlocks[AOrdinal] = std::move(block);
        --FGaps;
        return added;
    }
    const auto place = static_cast<std::ptrdiff_t>(AOrdinal);
    FBlocks.insert(FBlocks.begin() + place, std::move(block));
    FCounts.insert(FCounts.begin() + place, 0);
    FStarts.insert(FStarts.begin() + place, 0);
    Renumber(AOrdinal);
    return added;
}

void TZORowIndex::DropBlock(TZORowBlock* ABlock) {
    const size_t ordinal = ABlock->Ordinal;
    FCounts[ordinal] = 0;
    FValidStarts = std::min(FValidStarts, ordinal + 1);
    FBlocks[ordinal].reset();
    if (++FGaps > FBlocks.size() / 2)
        CloseGaps();
}

void TZORowIndex::CloseGaps() {
    size_t kept = 0;
    for (size_t i = 0; i < FBlocks.size(); ++i) {
        if (!FBlocks[i])
            continue;
        FCounts[kept] = FCounts[i];
        FBlocks[kept++] = std::move(FBlocks[i]);
    }
    FBlocks.resize(kept);
    FCounts.resize(kept);
    FStarts.resize(kept);
    FGaps = 0;
    Renumber(0);
}

void TZORowIndex::SplitBefore(TZOViewRow* ARow) {
    TZORowBlock* block = ARow->FBlock;
    TZORowBlock* added = AddBlock(block->Ordinal + 1, ARow);
    for (TZOViewRow* row = ARow; row && row->FBlock == block; row = row->Next()) {
        row->FBlock = added;
        Count(added, 1);
        Count(block, -1);
    }
}

void TZORowIndex::MergeAround(TZORowBlock* ABlock) {
    MergeWithNext(ABlock->Ordinal);
    // Merging may have closed gaps, which gives blocks new numbers.
    if (ABlock->Ordinal > 0)
        MergeWithNext(ABlock->Ordinal - 1);
}

void TZORowIndex::MergeWithNext(size_t AOrdinal) {
    TZORowBlock* block = FBlocks[AOrdinal].get();
    TZORowBlock* next = AOrdinal + 1 < FBlocks.size() ? FBlocks[AOrdinal + 1].get() : nullptr;
    if (!block || !next || block->Count + next->Count > MergedBlock)
        return;
    int left = next->Count;
    for (TZOViewRow* row = next->First; left > 0; row = row->Next()) {
        // A row that is on its way out is still linked in and belongs to no block any more.
        if (row->FBlock != next)
            continue;
        row->FBlock = block;
        --left;
    }
    Count(block, next->Count);
    DropBlock(next);
}

void TZORowIndex::Renumber(size_t AFrom) {
    for (size_t i = AFrom; i < FBlocks.size(); ++i) {
        if (FBlocks[i])
            FBlocks[i]->Ordinal = i;
    }
    FValidStarts = std::min(FValidStarts, AFrom);
}

void TZORowIndex::Count(TZORowBlock* ABlock, int ADelta) {
    FFoundRow = nullptr;
    ABlock->Count += ADelta;
    FCounts[ABlock->Ordinal] = ABlock->Count;
    FValidStarts = std::min(FValidStarts, ABlock->Ordinal + 1);
}

void TZORowIndex::RefreshStarts() const {
    for (; FValidStarts < FBlocks.size(); ++FValidStarts) {
        const size_t i = FValidStarts;
        FStarts[i] = i == 0 ? 0 : FStarts[i - 1] + FCounts[i - 1];
    }
}
