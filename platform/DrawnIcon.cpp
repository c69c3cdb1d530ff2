#include "platform/DrawnIcon.h"

#include <QIconEngine>
#include <QPainter>

namespace {

class TDrawnIcon final : public QIconEngine {
public:
    TDrawnIcon(int AUnits, const QList<int>& ASizes, const TIconDrawing& ADrawing)
        : FUnits(AUnits), FSizes(ASizes), FDrawing(ADrawing) {}

    QIconEngine* clone() const override { return new TDrawnIcon(*this); }

    void paint(QPainter* APainter, const QRect& ARect, QIcon::Mode AMode, QIcon::State) override {
        APainter->save();
        APainter->setRenderHint(QPainter::Antialiasing);
        APainter->translate(ARect.topLeft());
        APainter->scale(ARect.width() / double(FUnits), ARect.height() / double(FUnits));
        FDrawing(*APainter, AMode);
        APainter->restore();
    }

    QPixmap pixmap(const QSize& ASize, QIcon::Mode AMode, QIcon::State AState) override {
        QPixmap pixmap(ASize);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), ASize), AMode, AState);
        return pixmap;
    }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override {
        QList<QSize> sizes;
        for (const int size : FSizes)
            sizes.append(QSize(size, size));
        return sizes;
    }

private:
    int FUnits;
    QList<int> FSizes;
    TIconDrawing FDrawing;
};

} // namespace

QIcon DrawnIcon(int AUnits, const QList<int>& ASizes, const TIconDrawing& ADrawing) {
    return QIcon(new TDrawnIcon(AUnits, ASizes, ADrawing));
}
