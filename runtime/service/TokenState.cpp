#include "runtime/service/TokenState.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QIODevice>

namespace {

constexpr char Magic[] = "ZOTK";
constexpr int MagicSize = 4;
constexpr quint8 Version = 1;
constexpr int CheckSize = 32;

QByteArray CheckSum(const QByteArray& ABytes) {
    return QCryptographicHash::hash(ABytes, QCryptographicHash::Sha256);
}

} // namespace

QByteArray TZOTokenState::ToBytes() const {
    QByteArray bytes(Magic, MagicSize);
    QDataStream stream(&bytes, QIODevice::Append);
    stream.setVersion(QDataStream::Qt_6_0);
    stream << Version << AccessToken.toUtf8() << RefreshToken.toUtf8() << ExpiresAtMs;
    return bytes + CheckSum(bytes);
}

TZOTokenState TZOTokenState::FromBytes(const QByteArray& ABytes) {
    const QByteArray body = ABytes.chopped(qMin(ABytes.size(), qsizetype(CheckSize)));
    if (!body.startsWith(Magic) || CheckSum(body) != ABytes.last(CheckSize))
        return {};
    QDataStream stream(body.sliced(MagicSize));
    stream.setVersion(QDataStream::Qt_6_0);
    quint8 version = 0;
    QByteArray access, refresh;
    qint64 expires = 0;
    stream >> version >> access >> refresh >> expires;
    if (version != Version || stream.status() != QDataStream::Ok || !stream.atEnd())
        return {};
    return {QString::fromUtf8(access), QString::fromUtf8(refresh), expires};
}
