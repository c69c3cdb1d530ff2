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
    const int old = std::exchange(FShownValue, value());
    // A style sheet may paint the two sides of the slider apart.
    if (AChange != SliderValueChange || style()->inherits("QStyleSheetStyle"))
        QScrollBar::sliderChange(AChange);
    else if (isVisible())
        update(PartsAt(old) + PartsAt(FShownValue));
}

QRegion TZOViewScrollBar::PartsAt(int AValue) const {
    QStyleOptionSlider option;
    initStyleOption(&option);
    option.sliderValue = option.sliderPosition = AValue;
    const auto part = [&](QStyle::SubControl AControl) {
        const QRect place = style()->subControlRect(QStyle::CC_ScrollBar, &option, AControl, this);
        return QRegion(0, place.top() - Shadow, width(), place.height() + 2 * Shadow);
    };
    QRegion parts = part(QStyle::SC_ScrollBarSlider);
    if (AValue == minimum())
        parts += part(QStyle::SC_ScrollBarSubLine);
    if (AValue == maximum())
        parts += part(QStyle::SC_ScrollBarAddLine);
    return parts;
}
