#include "jsoneditor/view/RowChunk.h"

#include "jsoneditor/view/RowPool_p.h"
#include "jsoneditor/view/ViewRowLayout.h"

TZORowChunk::TZORowChunk(int AId) : FId(AId) {}

TZORowChunk::~TZORowChunk() = default;

void* TZORowChunk::operator new(std::size_t ASize) { return RowPool::Take(ASize); }

void TZORowChunk::operator delete(void* AChunk, std::size_t ASize) noexcept { RowPool::Give(AChunk, ASize); }

const QRect& TZORowChunk::Bounds() const {
    if (FLayout)
        FLayout->MeasureOnce();
    return FBounds;
}

void TZORowChunk::SetText(const QString& AText) {
    FText = AText;
    FShaped.reset();
    FPlainFont.reset();
}
