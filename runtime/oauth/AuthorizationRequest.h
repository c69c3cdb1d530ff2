// One question for an authorization code, and the check of its answer.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// Holds the secrets of one sign-on: the state, and the verifier of PKCE with S256 (RFC 7636). Both are fresh
/// and from the system's source of randomness.
class TZOAuthorizationRequest {
public:
    struct TParams {
        QString AuthorizationUrl; ///< absolute
        QString ClientId;
        QString RedirectUri;
        QStringList Scopes;
        QString Issuer;                ///< whom the answer has to name (RFC 9207); empty: unknown
        bool IsIssuerRequired = false; ///< whether an answer without a name is refused
    };

    explicit TZOAuthorizationRequest(const TParams& AParams);

    /// Where the user's browser has to go.
    QByteArray Url() const;
    const QByteArray& Verifier() const noexcept { return FVerifier; }
    /// The code in AQuery, the query that the browser came back with. Can be called once: the state is spent
    /// then, whatever the outcome. Raises EZOSignOnAnswerError for what does not belong to this request,
    /// EZOSignOnRefusedError for an error that the server sent.
    QByteArray TakeCode(const QByteArray& AQuery);

private:
    QString Place() const;
    void CheckIssuer(const QByteArray& AIssuer, bool AIsGiven) const;

    TParams FParams;
    QByteArray FState;
    QByteArray FVerifier;
};
