#include "runtime/service/ServiceState.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QIODevice>
#include <QSet>

namespace {

constexpr char Magic[] = "ZOTK";
constexpr int MagicSize = 4;
/// Version 1 did not say what a token was granted for; such a token is not used any more.
constexpr quint8 Version = 2;
constexpr int CheckSize = 32;

QByteArray CheckSum(const QByteArray& ABytes) {
    return QCryptographicHash::hash(ABytes, QCryptographicHash::Sha256);
}

QSet<QString> SetOf(const QStringList& ATexts) { return {ATexts.begin(), ATexts.end()}; }

} // namespace

bool TZOTokenBinding::IsSameGrant(const TZOTokenBinding& AOther) const {
    return ServiceClass == AOther.ServiceClass && ClientId == AOther.ClientId &&
           SetOf(Scopes) == SetOf(AOther.Scopes);
}

QByteArray TZOServiceState::ToBytes() const {
    QByteArray bytes(Magic, MagicSize);
    QDataStream stream(&bytes, QIODevice::Append);
    stream.setVersion(QDataStream::Qt_6_0);
    stream << Version << Token.AccessToken.toUtf8() << Token.RefreshToken.toUtf8() << Token.ExpiresAtMs;
    stream << Binding.ServiceClass << Binding.ClientId << Binding.Server << Binding.Scopes;
    return bytes + CheckSum(bytes);
}

TZOServiceState TZOServiceState::FromBytes(const QByteArray& ABytes) {
    const QByteArray body = ABytes.chopped(qMin(ABytes.size(), qsizetype(CheckSize)));
    if (!body.startsWith(Magic) || CheckSum(body) != ABytes.last(CheckSize))
        return {};
    QDataStream stream(body.sliced(MagicSize));
    stream.setVersion(QDataStream::Qt_6_0);
    quint8 version = 0;
    stream >> version;
    if (version != Version)
        return {};
    QByteArray access, refresh;
    TZOServiceState state;
    TZOTokenBinding& binding = state.Binding;
    stream >> access >> refresh >> state.Token.ExpiresAtMs;
    stream >> binding.ServiceClass >> binding.ClientId >> binding.Server >> binding.Scopes;
    if (stream.status() != QDataStream::Ok || !stream.atEnd())
        return {};
    state.Token.AccessToken = QString::fromUtf8(access);
    state.Token.RefreshToken = QString::fromUtf8(refresh);
    return state;
}
