#include "pages/TransferText.h"

#include <iterator>

QString TransferText::Size(qint64 ABytes) {
    if (ABytes < 1024)
        return ABytes == 1 ? QStringLiteral("1 byte") : QStringLiteral("%1 bytes").arg(ABytes);
    static const char* const units[] = {"KiB", "MiB", "GiB", "TiB"};
    double size = static_cast<double>(ABytes) / 1024;
    std::size_t unit = 0;
    // From here on three digits would be rounded up to the next unit.
    for (; size >= 1023.5 && unit + 1 < std::size(units); ++unit)
        size /= 1024;
    return QStringLiteral("%1 %2").arg(QString::number(size, 'f', size < 9.95 ? 1 : 0),
                                       QLatin1String(units[unit]));
}

QString TransferText::Duration(qint64 AMilliseconds) {
    if (AMilliseconds < 500)
        return QStringLiteral("%1 ms").arg(AMilliseconds);
    // Cut, not rounded: a minute has no 60.0 seconds.
    if (AMilliseconds < 60'000)
        return QStringLiteral("%1.%2 s").arg(AMilliseconds / 1000).arg(AMilliseconds / 100 % 10);
    return QStringLiteral("%1 min %2 s").arg(AMilliseconds / 60'000).arg(AMilliseconds / 1000 % 60);
}
