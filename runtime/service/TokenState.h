// What an authorization server gave, and how it is kept.
#pragma once

#include <QByteArray>
#include <QString>

/// An access token with what is needed to renew it (RFC 6749).
struct TZOTokenState {
    QString AccessToken; ///< empty: there is no token
    QString RefreshToken;
    qint64 ExpiresAtMs = 0; ///< milliseconds since 1970 in UTC; 0: unknown

    /// A versioned form with a check sum.
    QByteArray ToBytes() const;
    /// Bytes that ToBytes did not write, in whole and undamaged, are no token.
    static TZOTokenState FromBytes(const QByteArray& ABytes);
};
