#include "tests/hosts/PaintedTexts.h"

#include <QPaintDevice>
#include <QPaintEngine>
#include <QWidget>

namespace {

class TTextEngine final : public QPaintEngine {
public:
    explicit TTextEngine(QStringList& ATexts) : QPaintEngine(AllFeatures), FTexts(ATexts) {}

    bool begin(QPaintDevice*) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState&) override {}
    void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
    void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
    void drawPolygon(const QPoint*, int, PolygonDrawMode) override {}
    void drawPath(const QPainterPath&) override {}
    void drawImage(const QRectF&, const QImage&, const QRectF&, Qt::ImageConversionFlags) override {}
    void drawTextItem(const QPointF&, const QTextItem& AItem) override { FTexts.append(AItem.text()); }
    Type type() const override { return User; }

private:
    QStringList& FTexts;
};

class TTextDevice final : public QPaintDevice {
public:
    TTextDevice(const QSize& ASize, QStringList& ATexts) : FSize(ASize), FEngine(ATexts) {}
    QPaintEngine* paintEngine() const override { return &FEngine; }

protected:
    int metric(PaintDeviceMetric AMetric) const override {
        constexpr int dotsPerInch = 96;
        switch (AMetric) {
        case PdmWidth:
        case PdmWidthMM:
            return FSize.width();
        case PdmHeight:
        case PdmHeightMM:
            return FSize.height();
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY:
            return dotsPerInch;
        case PdmDepth:
            return 32;
        default:
            return QPaintDevice::metric(AMetric);
        }
    }

private:
    QSize FSize;
    mutable TTextEngine FEngine;
};

} // namespace

QStringList PaintedTexts(QWidget* AWidget) {
    QStringList texts;
    TTextDevice device(AWidget->size(), texts);
    AWidget->render(&device);
    return texts;
}
