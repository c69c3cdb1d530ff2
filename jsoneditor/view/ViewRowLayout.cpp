#include "jsoneditor/view/ViewRowLayout.h"

#include "jsoneditor/view/RestView.h"
#include "jsoneditor/view/RowPool_p.h"
#include "jsoneditor/view/ViewRow.h"
#include "platform/Exceptions.h"

#include <utility>

namespace {

constexpr size_t UsualChunks = 4;

} // namespace

TZOViewRowLayout::TZOViewRowLayout(TZORestView* AView, TZOViewRow* ARow) : FView(AView), FRow(ARow) {
    ARow->FLayout = this;
}

TZOViewRowLayout::~TZOViewRowLayout() { FView->LayoutRemoved(this); }

void* TZOViewRowLayout::operator new(std::size_t ASize) { return RowPool::Take(ASize); }

void TZOViewRowLayout::operator delete(void* ALayout, std::size_t ASize) noexcept {
    RowPool::Give(ALayout, ASize);
}

TZORowChunk* TZOViewRowLayout::AddChunk(int AId) {
    if (FChunks.empty())
        FChunks.reserve(UsualChunks);
    TZORowChunk* chunk = FChunks.emplace_back(std::make_unique<TZORowChunk>(AId)).get();
    chunk->FLayout = this;
    return chunk;
}

TZORowChunk* TZOViewRowLayout::AddChunk(int AId, const QString& AText, bool AIsEditable,
                                        TZOChunkToken ATextToken) {
    TZORowChunk* chunk = AddChunk(AId);
    chunk->SetText(AText);
    chunk->SetEditable(AIsEditable);
    chunk->SetTextToken(ATextToken);
    return chunk;
}

TZORowChunk* TZOViewRowLayout::GetChunks(int AIndex) const {
    if (AIndex < 0 || AIndex >= GetChunkCount())
        throw EListError(QStringLiteral("List index out of bounds (%1)").arg(AIndex));
    return FChunks[static_cast<size_t>(AIndex)].get();
}

int TZOViewRowLayout::IndexOfChunk(const QPoint& APoint) const {
    for (int i = 0; i < GetChunkCount(); ++i) {
        if (FChunks[static_cast<size_t>(i)]->Bounds().contains(APoint))
            return i;
    }
    return -1;
}

int TZOViewRowLayout::IndexOfChunk(int AId) const {
    for (int i = 0; i < GetChunkCount(); ++i) {
        if (FChunks[static_cast<size_t>(i)]->Id() == AId)
            return i;
    }
    return -1;
}

bool TZOViewRowLayout::TryGetChunk(const QPoint& APoint, TZORowChunk*& AChunk) const {
    const int index = IndexOfChunk(APoint);
    if (index < 0)
        return false;
    AChunk = GetChunks(index);
    return true;
}

bool TZOViewRowLayout::TryGetChunk(int AId, bool AEditableOnly, TZORowChunk*& AChunk) const {
    const int index = IndexOfChunk(AId);
    if (index < 0 || (AEditableOnly && !GetChunks(index)->IsEditable()))
        return false;
    AChunk = GetChunks(index);
    return true;
}

bool TZOViewRowLayout::TryGetFirstEditable(TZORowChunk*& AChunk) const {
    return TryGetEditableFrom(0, 1, AChunk);
}

bool TZOViewRowLayout::TryGetLastEditable(TZORowChunk*& AChunk) const {
    return TryGetEditableFrom(GetChunkCount() - 1, -1, AChunk);
}

bool TZOViewRowLayout::TryGetNextEditable(int AId, TZORowChunk*& AChunk) const {
    const int index = IndexOfChunk(AId);
    return index >= 0 && TryGetEditableFrom(index + 1, 1, AChunk);
}

bool TZOViewRowLayout::TryGetPrevEditable(int AId, TZORowChunk*& AChunk) const {
    const int index = IndexOfChunk(AId);
    return index >= 0 && TryGetEditableFrom(index - 1, -1, AChunk);
}

void TZOViewRowLayout::MeasureOnce() {
    if (!std::exchange(FIsMeasured, true))
        FView->MeasureLayout(*this);
}

bool TZOViewRowLayout::TryGetEditableFrom(int AIndex, int AStep, TZORowChunk*& AChunk) const {
    for (int i = AIndex; i >= 0 && i < GetChunkCount(); i += AStep) {
        TZORowChunk* chunk = FChunks[static_cast<size_t>(i)].get();
        if (chunk->IsEditable()) {
            AChunk = chunk;
            return true;
        }
    }
    return false;
}
