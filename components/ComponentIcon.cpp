#include "components/ComponentIcon.h"

#include "platform/DrawnIcon.h"

#include <QPainter>
#include <QPainterPath>

namespace {

// The letter that tells classes apart: without the "T" or "TZO" that they all start with.
QString LetterOf(const QString& AClassName) {
    for (const QLatin1String prefix : {QLatin1String("TZO"), QLatin1String("T")}) {
        if (AClassName.startsWith(prefix) && AClassName.size() > prefix.size() &&
            AClassName.at(prefix.size()).isUpper())
            return AClassName.mid(prefix.size(), 1);
    }
    return AClassName.left(1).toUpper();
}

// In a square of 64 by 64.
void PaintComponent(QPainter& APainter, const QString& ALetter) {
    QLinearGradient ground(0, 2, 0, 62);
    ground.setColorAt(0, QColor(0x2F86E5));
    ground.setColorAt(1, QColor(0x0A4F9E));
    APainter.setPen(Qt::NoPen);
    APainter.setBrush(ground);
    APainter.drawRoundedRect(QRectF(2, 2, 60, 60), 12, 12);

    APainter.setBrush(Qt::NoBrush);
    APainter.setPen(QPen(QColor(0xBFDDFF), 4, Qt::SolidLine, Qt::RoundCap));
    QPainterPath bridge(QPointF(9, 54));
    bridge.lineTo(QPointF(55, 54));
    bridge.moveTo(QPointF(12, 54));
    bridge.quadTo(QPointF(32, 40), QPointF(52, 54));
    APainter.drawPath(bridge);

    QFont font;
    font.setFamilies({QStringLiteral("Open Sans"), QStringLiteral("DejaVu Sans")});
    font.setStyleHint(QFont::SansSerif);
    font.setBold(true);
    font.setPixelSize(36);
    APainter.setFont(font);
    APainter.setPen(Qt::white);
    APainter.drawText(QRectF(2, 1, 60, 46), Qt::AlignCenter, ALetter);
}

} // namespace

QIcon ComponentIcon(const QString& AClassName) {
    return DrawnIcon(64, {16, 22, 32, 48, 64},
                     [letter = LetterOf(AClassName)](QPainter& APainter, QIcon::Mode AMode) {
                         if (AMode == QIcon::Disabled)
                             APainter.setOpacity(0.4);
                         PaintComponent(APainter, letter);
                     });
}
