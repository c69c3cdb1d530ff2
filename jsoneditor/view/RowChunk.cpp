#include "jsoneditor/view/RowChunk.h"

#include "jsoneditor/view/ShapedText_p.h"

TZORowChunk::TZORowChunk(int AId) : FId(AId) {}

TZORowChunk::~TZORowChunk() = default;

void TZORowChunk::SetText(const QString& AText) {
    FText = AText;
    FShaped.reset();
}

void TZORowChunk::SetShaped(std::unique_ptr<TZOShapedText> AShaped) { FShaped = std::move(AShaped); }
