#include "hosts/standalone/AppIcon.h"

#include "platform/DrawnIcon.h"

#include <QPainter>
#include <QPainterPath>

namespace {

// In a square of 64 by 64: the ground, the deck of the bridge, its two towers, and the cables between them.
void PaintBridge(QPainter& APainter) {
    QLinearGradient ground(0, 2, 0, 62);
    ground.setColorAt(0, QColor(0x2F86E5));
    ground.setColorAt(1, QColor(0x0A4F9E));
    APainter.setPen(Qt::NoPen);
    APainter.setBrush(ground);
    APainter.drawRoundedRect(QRectF(2, 2, 60, 60), 13, 13);

    APainter.setBrush(Qt::NoBrush);
    APainter.setPen(QPen(Qt::white, 5, Qt::SolidLine, Qt::RoundCap));
    APainter.drawLine(QPointF(10, 43), QPointF(54, 43));
    APainter.drawLine(QPointF(21, 17), QPointF(21, 52));
    APainter.drawLine(QPointF(43, 17), QPointF(43, 52));
    QPainterPath cables(QPointF(10, 37));
    cables.quadTo(QPointF(17, 33), QPointF(21, 18));
    cables.cubicTo(QPointF(27, 40), QPointF(37, 40), QPointF(43, 18));
    cables.quadTo(QPointF(47, 33), QPointF(54, 37));
    APainter.setPen(QPen(QColor(0xBFDDFF), 3, Qt::SolidLine, Qt::RoundCap));
    APainter.drawPath(cables);
}

} // namespace

QIcon AppIcon() {
    // The sizes that window managers are offered.
    return DrawnIcon(64, {16, 24, 32, 48, 64, 128, 256},
                     [](QPainter& APainter, QIcon::Mode) { PaintBridge(APainter); });
}
