#include "hosts/standalone/AppIcon.h"

#include <QIcon>
#include <QIconEngine>
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

class TAppIcon final : public QIconEngine {
public:
    QIconEngine* clone() const override { return new TAppIcon(*this); }

    void paint(QPainter* APainter, const QRect& ARect, QIcon::Mode, QIcon::State) override {
        APainter->save();
        APainter->setRenderHint(QPainter::Antialiasing);
        APainter->translate(ARect.topLeft());
        APainter->scale(ARect.width() / 64.0, ARect.height() / 64.0);
        PaintBridge(*APainter);
        APainter->restore();
    }

    QPixmap pixmap(const QSize& ASize, QIcon::Mode AMode, QIcon::State AState) override {
        QPixmap pixmap(ASize);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), ASize), AMode, AState);
        return pixmap;
    }

    // What window managers are offered.
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override {
        QList<QSize> sizes;
        for (const int size : {16, 24, 32, 48, 64, 128, 256})
            sizes.append(QSize(size, size));
        return sizes;
    }
};

} // namespace

QIcon AppIcon() { return QIcon(new TAppIcon); }
