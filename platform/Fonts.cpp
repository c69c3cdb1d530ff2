#include "platform/Fonts.h"

#include <QStringList>

namespace {

QStringList Families(const QString& AFamily) {
    if (AFamily == QLatin1String("Courier New"))
        return {AFamily, QStringLiteral("Liberation Mono"), QStringLiteral("Cousine"),
                QStringLiteral("DejaVu Sans Mono")};
    if (AFamily == QLatin1String("Tahoma"))
        return {AFamily, QStringLiteral("Verdana"), QStringLiteral("DejaVu Sans"),
                QStringLiteral("Noto Sans")};
    return {AFamily, QStringLiteral("Noto Sans"), QStringLiteral("Open Sans"), QStringLiteral("DejaVu Sans")};
}

} // namespace

QFont UiFont(const QString& AFamily, int APixelSize) {
    QFont font(Families(AFamily));
    const bool isFixed = AFamily == QLatin1String("Courier New");
    font.setStyleHint(isFixed ? QFont::Monospace : QFont::SansSerif);
    font.setFixedPitch(isFixed);
    font.setPixelSize(APixelSize);
    return font;
}
