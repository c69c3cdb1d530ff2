#include "jsoneditor/view/RowMeasure_p.h"

#include "jsoneditor/view/ChunkText_p.h"
#include "jsoneditor/view/PlainFont_p.h"
#include "jsoneditor/view/ShapedTexts_p.h"
#include "jsoneditor/view/ViewRow.h"
#include "jsoneditor/view/ViewRowLayout.h"

#include <QFont>
#include <QFontMetrics>

namespace {

constexpr int LevelIndent = 24;
constexpr int LeftMargin = 4;
constexpr int EmptyEditableWidth = 8;
constexpr int ChunkGap = 2;
/// A longer text is painted in part only.
constexpr qsizetype MaxShapedLength = 1000;

int TextWidth(TZORowChunk& AChunk, TZOShapedTexts& ATexts, const QFontMetrics& AMetrics) {
    if (const auto& font = ATexts.PlainFont(); font && TZOPlainFont::Holds(AChunk.Text())) {
        AChunk.SetPlainFont(font);
        return font->Width(AChunk.Text());
    }
    const QString text = ChunkDisplayText(AChunk.Text());
    if (text.size() > MaxShapedLength)
        return AMetrics.horizontalAdvance(text);
    AChunk.SetShaped(ATexts.Get(text));
    return AChunk.Shaped()->Width();
}

} // namespace

void MeasureRow(TZOViewRowLayout& ALayout, TZOShapedTexts& ATexts, const QFont& AFont, int ARowHeight) {
    ATexts.UseFont(AFont);
    const QFontMetrics metrics(AFont);
    const int textHeight = metrics.height();
    const int top = (ARowHeight - textHeight) / 2;
    int x = ALayout.Row()->Level() * LevelIndent + LeftMargin;
    for (int i = 0; i < ALayout.GetChunkCount(); ++i) {
        TZORowChunk* chunk = ALayout.GetChunks(i);
        const int width =
            qMax(TextWidth(*chunk, ATexts, metrics), chunk->IsEditable() ? EmptyEditableWidth : 0);
        chunk->SetBounds(QRect(x, top, width, textHeight));
        x += width + ChunkGap;
    }
}
