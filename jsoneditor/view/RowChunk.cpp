#include "jsoneditor/view/RowChunk.h"

#include "jsoneditor/view/ViewRowLayout.h"

TZORowChunk::TZORowChunk(int AId) : FId(AId) {}

TZORowChunk::~TZORowChunk() = default;

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
