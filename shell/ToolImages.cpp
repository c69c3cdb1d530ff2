#include "shell/ToolImages.h"

#include "platform/DrawnIcon.h"

#include <QPainter>

namespace {

void PaintArrow(QPainter& APainter, QColor AColor, QIcon::Mode AMode) {
    if (AMode == QIcon::Disabled)
        AColor.setAlphaF(0.3F);
    APainter.setPen(QPen(AColor, 2.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    APainter.drawPolyline(QPolygonF({{15, 8}, {7, 16}, {15, 24}}));
    APainter.drawLine(QPointF(7.5, 16), QPointF(25, 16));
}

} // namespace

QIcon BackImage(bool AIsDark) {
    const QColor color(AIsDark ? 0xDFE1E5 : 0x33383F);
    return DrawnIcon(32, {32},
                     [color](QPainter& APainter, QIcon::Mode AMode) { PaintArrow(APainter, color, AMode); });
}
