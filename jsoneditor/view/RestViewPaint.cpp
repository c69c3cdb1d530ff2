// Colours, and drawing one row at a time off-screen.
#include "jsoneditor/view/ChunkText_p.h"
#include "jsoneditor/view/InplaceEditor.h"
#include "jsoneditor/view/Marks_p.h"
#include "jsoneditor/view/PlainFont_p.h"
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

/// Whether the chunk shows a plain text, and has room for all of it.
bool FillsItsWidth(const TZORowChunk& AChunk) {
    return AChunk.PlainFont() && AChunk.PlainFont()->Width(AChunk.Text()) <= AChunk.Bounds().width();
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
    if (FillsItsWidth(AChunk)) {
        if (!AMarks.Text.isEmpty())
            AMarks.Draw(APainter, AChunk, AChunk.Text(), ARowWidth);
        TZOPlainTexts texts;
        texts.Add(*AChunk.PlainFont(), AChunk.Text(), AColor, baseLine, ARowWidth);
        texts.Draw(APainter);
        return;
    }
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

/// Whether what begins at a whole pixel begins at one on the device too.
bool KeepsPixels(const QTransform& AToDevice) {
    const auto isWhole = [](qreal AValue) { return AValue == std::floor(AValue); };
    return AToDevice.type() <= QTransform::TxScale && AToDevice.m11() == AToDevice.m22() &&
           AToDevice.m11() > 0 && isWhole(AToDevice.m11()) && isWhole(AToDevice.dx()) &&
           isWhole(AToDevice.dy());
}

/// Whether painting the row reaches no other one: it needs no picture of its own then.
bool IsPlain(const TZOViewRowLayout& ALayout, int AAscent) {
    const QSize row = ALayout.Bounds().size();
    for (int i = 0; i < ALayout.GetChunkCount(); ++i) {
        const TZORowChunk& chunk = *ALayout.GetChunks(i);
        const QRect& bounds = chunk.Bounds();
        if (!FillsItsWidth(chunk) || bounds.right() + TextOverhang > row.width())
            return false;
        const int baseLine = bounds.top() + AAscent;
        if (baseLine < chunk.PlainFont()->InkAbove() ||
            baseLine + chunk.PlainFont()->InkBelow() > row.height())
            return false;
    }
    return true;
}

/// The ground of rows: those of one colour that stand together are filled at once.
class TGround {
public:
    TGround(QPainter& APainter, const QRegion& ARegion) : FPainter(APainter), FRest(ARegion) {}

    /// A row that paints its ground itself has no colour.
    void Add(const QRect& ARow, const QColor& AColor) {
        if (AColor == FColor && ARow.top() == FRun.bottom() + 1 && ARow.left() == FRun.left() &&
            ARow.right() == FRun.right()) {
            FRun.setBottom(ARow.bottom());
            return;
        }
        if (FColor.isValid())
            FPainter.fillRect(FRun, FColor);
        FRest -= FRun;
        FRun = ARow;
        FColor = AColor;
    }
    /// What no row covered that was added before the last one.
    const QRegion& Rest() const { return FRest; }

private:
    QPainter& FPainter;
    QRegion FRest;
    QRect FRun;
    QColor FColor;
};

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
    const QRegion region = AEvent->region();
    FUncovered -= region;
    const bool isExact = KeepsPixels(painter.deviceTransform()) && FMarkText.isEmpty();
    TZOPlainTexts texts;
    TGround ground(painter, region);
    for (const TZOViewRowLayout* layout = FLayouts.GetFirst(); layout; layout = layout->Next()) {
        if (!layout->Row() || layout->Bounds().isEmpty() || !region.intersects(layout->Bounds()))
            continue;
        const bool isPlain = isExact && IsPlain(*layout, fontMetrics().ascent());
        ground.Add(layout->Bounds(), isPlain ? RowColor(layout->Row()) : QColor());
        if (isPlain)
            AddTexts(*layout, texts);
        else
            DrawRow(painter, layout);
    }
    ground.Add({}, {});
    for (const QRect& rect : ground.Rest())
        painter.fillRect(rect, Color());
    texts.Draw(painter);
}

QColor TZORestView::RowColor(const TZOViewRow* ARow) const {
    return FActive && ARow == FSelected ? SelectedColor() : Color();
}

void TZORestView::AddTexts(const TZOViewRowLayout& ALayout, TZOPlainTexts& ATexts) const {
    const QRect& row = ALayout.Bounds();
    const int ascent = fontMetrics().ascent();
    for (int i = 0; i < ALayout.GetChunkCount(); ++i) {
        const TZORowChunk* chunk = ALayout.GetChunks(i);
        if (const QColor color = GetChunkTextColor(chunk); color.isValid())
            ATexts.Add(*chunk->PlainFont(), chunk->Text(), color,
                       row.topLeft() + chunk->Bounds().topLeft() + QPoint(0, ascent), row.right() + 1);
    }
}

void TZORestView::DrawRow(QPainter& APainter, const TZOViewRowLayout* ALayout) {
    const QRect& row = ALayout->Bounds();
    const QColor background = RowColor(ALayout->Row());
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
