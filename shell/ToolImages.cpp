#include "shell/ToolImages.h"

#include <QIcon>
#include <QIconEngine>
#include <QPainter>

namespace {

/// Draws the arrow at the size that is asked for, so that it is sharp on every screen.
class TBackImage : public QIconEngine {
public:
    explicit TBackImage(bool AIsDark) : FIsDark(AIsDark) {}

    QIconEngine* clone() const override { return new TBackImage(*this); }

    void paint(QPainter* APainter, const QRect& ARect, QIcon::Mode AMode, QIcon::State) override {
        QColor color(FIsDark ? 0xDFE1E5 : 0x33383F);
        if (AMode == QIcon::Disabled)
            color.setAlphaF(0.3F);
        APainter->save();
        APainter->setRenderHint(QPainter::Antialiasing);
        APainter->translate(ARect.topLeft());
        APainter->scale(ARect.width() / 32.0, ARect.height() / 32.0);
        APainter->setPen(QPen(color, 2.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        APainter->drawPolyline(QPolygonF({{15, 8}, {7, 16}, {15, 24}}));
        APainter->drawLine(QPointF(7.5, 16), QPointF(25, 16));
        APainter->restore();
    }

    QPixmap pixmap(const QSize& ASize, QIcon::Mode AMode, QIcon::State AState) override {
        QPixmap pixmap(ASize);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), ASize), AMode, AState);
        return pixmap;
    }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override { return {QSize(32, 32)}; }

private:
    bool FIsDark;
};

} // namespace

QIcon BackImage(bool AIsDark) { return QIcon(new TBackImage(AIsDark)); }
