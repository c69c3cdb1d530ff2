// Sizes and times of transfers, for people.
#pragma once

#include <QString>

namespace TransferText {

/// "1 byte", "999 bytes", "1.2 KiB", "34 MiB"...
QString Size(qint64 ABytes);
/// "3 ms", "0.5 s", "1.2 s", "2 min 5 s".
QString Duration(qint64 AMilliseconds);

} // namespace TransferText
