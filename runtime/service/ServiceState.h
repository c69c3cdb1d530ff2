// The token of a service, and how it is kept.
#pragma once

#include "runtime/oauth/OAuthToken.h"

#include <QByteArray>
#include <QStringList>

/// What a token was granted for. It is shown nowhere else.
struct TZOTokenBinding {
    QString ServiceClass;
    QString ClientId;
    QString Server; ///< the authorization server; empty: the host got the token elsewhere
    QStringList Scopes;

    /// Whether both are of the same client and scopes, in whatever order, of one service class.
    bool IsSameGrant(const TZOTokenBinding& AOther) const;
};

/// What lasts of a service from one start of the host to the next.
struct TZOServiceState {
    TZOAuthToken Token;
    TZOTokenBinding Binding;

    /// A versioned form with a check sum.
    QByteArray ToBytes() const;
    /// Bytes that this version of ToBytes did not write, in whole and undamaged, hold no token.
    static TZOServiceState FromBytes(const QByteArray& ABytes);
};
