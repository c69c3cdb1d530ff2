#include "jsoneditor/view/RowMeasure_p.h"

#include "jsoneditor/view/ChunkText_p.h"
#include "jsoneditor/view/ViewRow.h"
#include "jsoneditor/view/ViewRowLayout.h"

#include <QFontMetrics>

namespace {

constexpr int LevelIndent = 24;
constexpr int LeftMargin = 4;
constexpr int EmptyEditableWidth = 8;
constexpr int ChunkGap = 2;

} // namespace

void MeasureRow(TZOViewRowLayout& ALayout, const QFontMetrics& AMetrics, int ARowHeight) {
    const int textHeight = AMetrics.height();
    const int top = (ARowHeight - textHeight) / 2;
    int x = ALayout.Row()->Level() * LevelIndent + LeftMargin;
    for (int i = 0; i < ALayout.GetChunkCount(); ++i) {
        TZORowChunk* chunk = ALayout.GetChunks(i);
        const int width = qMax(AMetrics.horizontalAdvance(ChunkDisplayText(chunk->Text())),
                               chunk->IsEditable() ? EmptyEditableWidth : 0);
        chunk->SetBounds(QRect(x, top, width, textHeight));
        x += width + ChunkGap;
    }
}
