// Marks of a search in the rows.
#include "jsoneditor/view/Marks_p.h"
#include "jsoneditor/view/RestView.h"

#include <QPainter>

namespace {

/// Dark text stands on the light ones, light text on the dark ones, by a contrast of 4.5 at least.
const QColor LightMark(0xFF, 0xE9, 0x9A), LightCurrentMark(0xFF, 0xB8, 0x4D);
const QColor DarkMark(0x54, 0x47, 0x14), DarkCurrentMark(0x80, 0x56, 0x00);

/// Stands at the end of the text for what is beyond it.
constexpr int EndMark = 8;

} // namespace

void TZOMarks::Draw(QPainter& APainter, const TZORowChunk& AChunk, const QString& AShown,
                    int ARowWidth) const {
    if (Text.isEmpty() || !AChunk.Text().contains(Text, Qt::CaseInsensitive))
        return;
    const QRect& bounds = AChunk.Bounds();
    const QFontMetrics metrics = APainter.fontMetrics();
    const int end = qMin(bounds.right() + 1, ARowWidth);
    bool isInSight = false;
    qsizetype place = AShown.indexOf(Text, 0, Qt::CaseInsensitive);
    for (; place >= 0; place = AShown.indexOf(Text, place + Text.size(), Qt::CaseInsensitive)) {
        const auto x = [&](qsizetype ALength) {
            return bounds.left() + metrics.horizontalAdvance(AShown, static_cast<int>(ALength));
        };
        const int left = x(place);
        if (left >= end)
            break;
        isInSight = true;
        APainter.fillRect(QRect(left, bounds.top(), x(place + Text.size()) - left, bounds.height()), Color);
    }
    if (!isInSight)
        APainter.fillRect(QRect(end - EndMark, bounds.top(), EndMark, bounds.height()), Color);
}

void TZORestView::SetMarks(const QString& AText, const TZOViewRow* ACurrent) {
    if (FMarkText == AText && FMarkRow == ACurrent)
        return;
    FMarkText = AText;
    FMarkRow = ACurrent;
    update();
}

TZOMarks TZORestView::MarksOf(const TZOViewRow* ARow) const {
    if (FMarkText.isEmpty())
        return {};
    const bool isLight = FontColor().lightness() < Color().lightness();
    const bool isCurrent = ARow == FMarkRow;
    if (isLight)
        return {FMarkText, isCurrent ? LightCurrentMark : LightMark};
    return {FMarkText, isCurrent ? DarkCurrentMark : DarkMark};
}
