#include "jsoneditor/view/ViewScrollBar_p.h"

#include <QStyle>
#include <QStyleOptionSlider>

#include <utility>

namespace {

/// A style's slider may cast a shadow.
constexpr int Shadow = 4;

} // namespace

TZOViewScrollBar::TZOViewScrollBar(QWidget* AParent) : QScrollBar(Qt::Vertical, AParent) {}

void TZOViewScrollBar::sliderChange(SliderChange AChange) {
    const TPlace now{minimum(), maximum(), pageStep(), value()};
    const TPlace old = std::exchange(FShown, now);
    // A style sheet may paint the two sides of the slider apart.
    if (AChange == SliderOrientationChange || old.IsEverything() != now.IsEverything() ||
        style()->inherits("QStyleSheetStyle")) {
        QScrollBar::sliderChange(AChange);
        return;
    }
    if (!isVisible())
        return;
    const QRegion was = PartsAt(old), is = PartsAt(now);
    // Among millions of rows, one more or less does not move the slider by a pixel.
    if (was != is)
        update(was + is);
}

QRegion TZOViewScrollBar::PartsAt(const TPlace& APlace) const {
    QStyleOptionSlider option;
    initStyleOption(&option);
    option.minimum = APlace.Minimum;
    option.maximum = APlace.Maximum;
    option.pageStep = APlace.Page;
    option.sliderValue = option.sliderPosition = APlace.Value;
    const auto part = [&](QStyle::SubControl AControl) {
        const QRect place = style()->subControlRect(QStyle::CC_ScrollBar, &option, AControl, this);
        return QRegion(0, place.top() - Shadow, width(), place.height() + 2 * Shadow);
    };
    QRegion parts = part(QStyle::SC_ScrollBarSlider);
    if (APlace.Value <= APlace.Minimum)
        parts += part(QStyle::SC_ScrollBarSubLine);
    if (APlace.Value >= APlace.Maximum)
        parts += part(QStyle::SC_ScrollBarAddLine);
    return parts;
}
