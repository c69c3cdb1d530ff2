// What an authorization server gives.
#pragma once

#include <QString>

/// An access token with what is needed to renew it (RFC 6749).
struct TZOAuthToken {
    /// A token counts as expired this much before its end, as the request still has to get there.
    static constexpr qint64 SafetyMarginMs = 30'000;

    QString AccessToken; ///< empty: there is no token
    QString RefreshToken;
    qint64 ExpiresAtMs = 0; ///< milliseconds since 1970 in UTC; 0: unknown

    bool IsExpired(qint64 ANowMs) const { return ExpiresAtMs != 0 && ANowMs >= ExpiresAtMs - SafetyMarginMs; }
};
