#include "pages/ElidedLabel.h"

#include "platform/TipText.h"
#include "platform/VisibleText.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace {

// More than any screen is wide; beyond it only time would be spent.
constexpr qsizetype MaxShown = 4096;
constexpr int MaxWidthHint = 400;

} // namespace

TZOElidedLabel::TZOElidedLabel(QWidget* AParent) : QLabel(AParent) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

QString TZOElidedLabel::Line() const {
    QString line = text().left(MaxShown);
    for (QChar& character : line)
        if (character.isSpace())
            character = u' ';
    return VisibleText(line);
}

QSize TZOElidedLabel::sizeHint() const {
    // Rounded up: a fraction of a pixel less, and the end would give way to an ellipsis.
    const auto width = int(std::ceil(QFontMetricsF(font()).horizontalAdvance(Line())));
    return {std::min(width, MaxWidthHint), fontMetrics().height()};
}

QSize TZOElidedLabel::minimumSizeHint() const { return {0, fontMetrics().height()}; }

bool TZOElidedLabel::event(QEvent* AEvent) {
    if (AEvent->type() != QEvent::ToolTip)
        return QLabel::event(AEvent);
    if (fontMetrics().horizontalAdvance(Line()) > width() || text().size() > MaxShown)
        QToolTip::showText(static_cast<QHelpEvent*>(AEvent)->globalPos(), TipText(text()), this);
    return true;
}

void TZOElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(Line(), Qt::ElideRight, width()));
}
