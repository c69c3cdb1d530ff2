#include "platform/TextConversion.h"

#include "platform/Exceptions.h"

#include <QLocale>

#include <charconv>
#include <cmath>

qint32 StrToInt(const QString& AText) {
    bool ok = false;
    const qint32 value = AText.trimmed().toInt(&ok, 10);
    if (!ok)
        throw EConvertError(QStringLiteral("'%1' is not a valid integer value").arg(AText));
    return value;
}

double StrToFloat(const QString& AText) {
    QString text = AText.trimmed();
    text.replace(QLocale().decimalPoint(), QStringLiteral("."));
    bool ok = false;
    const double value = QLocale::c().toDouble(text, &ok);
    if (!ok || !std::isfinite(value) || text.contains(QLatin1Char(',')))
        throw EConvertError(QStringLiteral("'%1' is not a valid floating point value").arg(AText));
    return value;
}

bool StrToBool(const QString& AText) {
    const QString text = AText.trimmed();
    if (text.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
        return true;
    if (text.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0)
        return false;
    bool ok = false;
    const double number = QLocale::c().toDouble(text, &ok);
    if (!ok)
        throw EConvertError(QStringLiteral("'%1' is not a valid Boolean value").arg(AText));
    return number != 0;
}

QString FloatToStr(double AValue) {
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, AValue);
    QString text = QString::fromLatin1(buffer, result.ptr - buffer);
    const QString point = QLocale().decimalPoint();
    if (point != QLatin1String("."))
        text.replace(QLatin1Char('.'), point);
    return text;
}

QString BoolToStr(bool AValue) { return AValue ? QStringLiteral("True") : QStringLiteral("False"); }
