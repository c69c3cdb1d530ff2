// Colours, and drawing one row at a time off-screen.
#include "jsoneditor/view/ChunkText_p.h"
#include "jsoneditor/view/InplaceEditor.h"
#include "jsoneditor/view/Marks_p.h"
#include "jsoneditor/view/RestView.h"
#include "jsoneditor/view/ShapedText_p.h"

#include <QPaintEvent>
#include <QPainter>
#include <QTransform>

#include <algorithm>
#include <cmath>

namespace {

const QColor DefaultErrorColor(255, 0, 0);
const QColor DefaultSymbolColor(0, 102, 204);

/// How far ink can stand out beyond the width that text takes.
constexpr int TextOverhang = 32;

bool RunsRightToLeft(QChar AChar) {
    return AChar.direction() == QChar::DirR || AChar.direction() == QChar::DirAL;
}

/// The start of AText that can reach into AWidth pixels: no character is narrower than one. Text that runs
/// right to left anywhere is left whole, as its end may be what stands in sight.
QString VisiblePart(const QString& AText, int AWidth) {
    constexpr int combining = 64;
    qsizetype size = AWidth + combining;
    if (AText.size() <= size || std::any_of(AText.cbegin(), AText.cend(), RunsRightToLeft))
        return AText;
    if (AText[size].isLowSurrogate())
        --size;
    return AText.left(size);
}

/// Paints into the chunk's bounds, cut with an ellipsis where it does not fit, in the painter's font.
void DrawChunk(QPainter& APainter, const TZORowChunk& AChunk, const QColor& AColor, int ARowWidth,
               int AAscent, const TZOMarks& AMarks) {
    const QRect& bounds = AChunk.Bounds();
    if (!AColor.isValid() || bounds.isEmpty() || bounds.left() >= ARowWidth)
        return;
    // On the font's own base line: another font that stands in for missing characters may be higher.
    const QPoint baseLine(bounds.left(), bounds.top() + AAscent);
    APainter.setPen(AColor);
    if (AChunk.Shaped() && AChunk.Shaped()->Width() <= bounds.width()) {
        if (!AMarks.Text.isEmpty())
            AMarks.Draw(APainter, AChunk, ChunkDisplayText(AChunk.Text()), ARowWidth);
        AChunk.Shaped()->Draw(APainter, baseLine);
        return;
    }
    const QString part = VisiblePart(AChunk.Text(), ARowWidth - bounds.left());
    QString text = ChunkDisplayText(part);
    const QFontMetrics metrics = APainter.fontMetrics();
    if (part.size() == AChunk.Text().size() && metrics.horizontalAdvance(text) > bounds.width())
        text = metrics.elidedText(text, Qt::ElideRight, bounds.width());
    AMarks.Draw(APainter, AChunk, text, ARowWidth);
    APainter.drawText(baseLine, text);
}

} // namespace

QColor TZORestView::Color() const {
    if (FParentColor && parentWidget())
        return parentWidget()->palette().color(QPalette::Window);
    return FColor.isValid() ? FColor : palette().color(QPalette::Base);
}

QColor TZORestView::FontColor() const {
    return FFontColor.isValid() ? FFontColor : palette().color(QPalette::Text);
}

QColor TZORestView::SelectedColor() const {
    return FSelectedColor.isValid() ? FSelectedColor : palette().color(QPalette::Button);
}

QColor TZORestView::ErrorColor() const { return FErrorColor.isValid() ? FErrorColor : DefaultErrorColor; }

QColor TZORestView::GrayColor() const {
    return FGrayColor.isValid() ? FGrayColor : palette().color(QPalette::Disabled, QPalette::Text);
}

QColor TZORestView::SymbolColor() const { return FSymbolColor.isValid() ? FSymbolColor : DefaultSymbolColor; }

void TZORestView::SetAndRepaint(QColor& AColor, const QColor& AValue) {
    if (AColor == AValue)
        return;
    AColor = AValue;
    UpdateEditorsColor();
    update();
}

void TZORestView::SetColor(const QColor& AColor) {
    FParentColor = false;
    SetAndRepaint(FColor, AColor);
}

void TZORestView::SetParentColor(bool AParentColor) {
    if (FParentColor == AParentColor)
        return;
    FParentColor = AParentColor;
    UpdateEditorsColor();
    update();
}

void TZORestView::SetFontColor(const QColor& AColor) { SetAndRepaint(FFontColor, AColor); }
void TZORestView::SetSelectedColor(const QColor& AColor) { SetAndRepaint(FSelectedColor, AColor); }
void TZORestView::SetErrorColor(const QColor& AColor) { SetAndRepaint(FErrorColor, AColor); }
void TZORestView::SetGrayColor(const QColor& AColor) { SetAndRepaint(FGrayColor, AColor); }
void TZORestView::SetSymbolColor(const QColor& AColor) { SetAndRepaint(FSymbolColor, AColor); }

QColor TZORestView::GetChunkTextColor(const TZORowChunk* AChunk) const {
    switch (AChunk->TextToken()) {
    case ctNormal:
        return FontColor();
    case ctGray:
        return GrayColor();
    case ctSymbol:
        return SymbolColor();
    case ctError:
        return ErrorColor();
    }
    return {};
}

void TZORestView::paintEvent(QPaintEvent* AEvent) {
    QPainter painter(this);
    QRegion rest = AEvent->region();
    FUncovered -= rest;
    for (const TZOViewRowLayout* layout = FLayouts.GetFirst(); layout; layout = layout->Next()) {
        if (!layout->Row() || !rest.intersects(layout->Bounds()))
            continue;
        DrawRow(painter, layout);
        rest -= layout->Bounds();
    }
    for (const QRect& rect : rest)
        painter.fillRect(rect, Color());
}

void TZORestView::DrawRow(QPainter& APainter, const TZOViewRowLayout* ALayout) {
    const QRect& row = ALayout->Bounds();
    if (row.isEmpty())
        return;
    const QColor background = FActive && ALayout->Row() == FSelected ? SelectedColor() : Color();
    // Beyond the last chunk there is nothing that could flicker.
    QRect bounds = row;
    if (const int count = ALayout->GetChunkCount())
        bounds.setRight(
            qMin(row.right(), row.left() + ALayout->GetChunks(count - 1)->Bounds().right() + TextOverhang));
    APainter.fillRect(row.adjusted(bounds.width(), 0, 0, 0), background);
    // Rows begin and end at whole pixels of the device, or copying the buffer would blur them.
    const QTransform toDevice = APainter.deviceTransform();
    const qreal ratio = toDevice.m11();
    const QPoint origin = toDevice.map(QPointF(bounds.topLeft())).toPoint();
    const QPoint end = toDevice.map(QPointF(bounds.bottomRight() + QPoint(1, 1))).toPoint();
    const QSize size(end.x() - origin.x(), end.y() - origin.y());
    // It only grows: rows are painted one after the other in their different lengths.
    if (FRowBuffer.width() < size.width() || FRowBuffer.height() < size.height())
        FRowBuffer = QPixmap(size.expandedTo(FRowBuffer.size()));
    FRowBuffer.setDevicePixelRatio(ratio);
    QPainter buffer(&FRowBuffer);
    buffer.fillRect(QRect(QPoint(), bounds.size() + QSize(1, 1)), background);
    buffer.setFont(font());
    const int ascent = fontMetrics().ascent();
    const TZOMarks marks = MarksOf(ALayout->Row());
    for (int i = 0; i < ALayout->GetChunkCount(); ++i) {
        const TZORowChunk* chunk = ALayout->GetChunks(i);
        DrawChunk(buffer, *chunk, GetChunkTextColor(chunk), bounds.width(), ascent, marks);
    }
    buffer.end();
    APainter.drawPixmap(toDevice.inverted().map(QPointF(origin)), FRowBuffer, QRect(QPoint(), size));
}

void TZORestView::ActiveStateChanged() {
    if (FSelected && FSelected->Layout() && HandleExists())
        update(FSelected->Layout()->Bounds());
    UpdateEditorsColor();
}

void TZORestView::UpdateEditorsColor() {
    for (TZOInplaceEditor* editor : {FEditor, FHover}) {
        // The fixed colour of the palette, also where the selected row was given another one.
        const bool onSelected = FActive && FSelected && editor->Row() == FSelected;
        QPalette colors = palette();
        colors.setColor(QPalette::Base, onSelected ? colors.color(QPalette::Button) : Color());
        colors.setColor(QPalette::Text, EditorTextColor(editor));
        if (editor->palette() != colors)
            editor->setPalette(colors);
    }
}

QColor TZORestView::EditorTextColor(const TZOInplaceEditor* AEditor) const {
    // The mouse editor looks like the chunk it covers, so that passing over it changes nothing.
    TZORowChunk* chunk = nullptr;
    if (AEditor == FHover && !AEditor->isHidden() && AEditor->Row() && AEditor->Row()->Layout() &&
        AEditor->Row()->Layout()->TryGetChunk(AEditor->ChunkId(), true, chunk)) {
        if (const QColor color = GetChunkTextColor(chunk); color.isValid())
            return color;
    }
    return FontColor();
}
