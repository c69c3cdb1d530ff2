// Texts from bytes in UTF-8 (RFC 3629).
#pragma once

#include <QByteArrayView>
#include <QString>

/// The whole text. QString::fromUtf8 takes a U+FEFF at its start for a byte order mark and leaves it out,
/// which is right for a file and wrong for a text inside of one. Bytes that are no UTF-8 become U+FFFD.
inline QString TextFromUtf8(QByteArrayView AUtf8) {
    QString text = QString::fromUtf8(AUtf8);
    if (AUtf8.startsWith("\xEF\xBB\xBF"))
        text.prepend(QChar::ByteOrderMark);
    return text;
}
