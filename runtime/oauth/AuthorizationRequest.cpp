#include "runtime/oauth/AuthorizationRequest.h"

#include "runtime/oauth/OAuthAnswer_p.h"
#include "runtime/oauth/OAuthUrl_p.h"

#include "runtime/types/Failures.h"

#include <QCryptographicHash>
#include <QRandomGenerator>

#include <array>

namespace {

QByteArray UrlBase64(const QByteArray& ABytes) {
    return ABytes.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
}

/// 256 bits as 43 characters that need no encoding anywhere.
QByteArray RandomText() {
    std::array<quint32, 8> words{};
    QRandomGenerator::system()->fillRange(words.data(), words.size());
    return UrlBase64(QByteArray(reinterpret_cast<const char*>(words.data()), sizeof words));
}

/// Takes the same time wherever the texts differ.
bool IsSame(const QByteArray& ALeft, const QByteArray& ARight) {
    if (ALeft.size() != ARight.size())
        return false;
    int difference = 0;
    for (qsizetype i = 0; i < ALeft.size(); ++i)
        difference |= ALeft[i] ^ ARight[i];
    return difference == 0;
}

/// The answer's parameters. One that comes twice can be read in two ways (RFC 6749, section 3.1).
QHash<QByteArray, QByteArray> Unambiguous(const QByteArray& AQuery, const QString& APlace) {
    QHash<QByteArray, QByteArray> params;
    for (const auto& [name, value] : OAuthUrl::Parsed(AQuery)) {
        if (params.contains(name))
            throw EZOSignOnAnswerError(QStringLiteral("The answer to the sign-on at %1 holds \"%2\" twice.")
                                           .arg(APlace, OAuthAnswer::ErrorText(QString::fromUtf8(name), {})));
        params.insert(name, value);
    }
    return params;
}

} // namespace

TZOAuthorizationRequest::TZOAuthorizationRequest(const TParams& AParams)
    : FParams(AParams), FState(RandomText()), FVerifier(RandomText()) {}

QByteArray TZOAuthorizationRequest::Url() const {
    const QByteArray challenge = UrlBase64(QCryptographicHash::hash(FVerifier, QCryptographicHash::Sha256));
    OAuthUrl::TParams params = {{"response_type", "code"},
                                {"client_id", FParams.ClientId.toUtf8()},
                                {"redirect_uri", FParams.RedirectUri.toUtf8()},
                                {"state", FState},
                                {"code_challenge", challenge},
                                {"code_challenge_method", "S256"}};
    if (!FParams.Scopes.isEmpty())
        params.append({"scope", FParams.Scopes.join(u' ').toUtf8()});
    const QByteArray url = QUrl(FParams.AuthorizationUrl, QUrl::StrictMode).toEncoded();
    return url + (url.contains('?') ? '&' : '?') + OAuthUrl::Form(params);
}

QByteArray TZOAuthorizationRequest::TakeCode(const QByteArray& AQuery) {
    if (FState.isEmpty())
        throw EZOSignOnAnswerError(
            QStringLiteral("The sign-on at %1 has been answered already.").arg(Place()));
    const QByteArray state = std::exchange(FState, {});
    const auto params = Unambiguous(AQuery, Place());
    if (!IsSame(params.value("state"), state))
        throw EZOSignOnAnswerError(
            QStringLiteral("The answer to the sign-on at %1 belongs to another request: its state is not the "
                           "one that was sent.")
                .arg(Place()));
    CheckIssuer(params.value("iss"), params.contains("iss"));
    if (params.contains("error"))
        throw EZOSignOnRefusedError(
            QStringLiteral("The sign-on at %1 was refused: %2.")
                .arg(Place(), OAuthAnswer::ErrorText(QString::fromUtf8(params.value("error")),
                                                     QString::fromUtf8(params.value("error_description")))));
    if (params.value("code").isEmpty())
        throw EZOSignOnAnswerError(
            QStringLiteral("The answer to the sign-on at %1 holds no code.").arg(Place()));
    return params.value("code");
}

QString TZOAuthorizationRequest::Place() const { return OAuthUrl::Place(QUrl(FParams.AuthorizationUrl)); }

void TZOAuthorizationRequest::CheckIssuer(const QByteArray& AIssuer, bool AIsGiven) const {
    if (!AIsGiven && FParams.IsIssuerRequired)
        throw EZOSignOnAnswerError(
            QStringLiteral("The answer to the sign-on at %1 does not say which server gave it.")
                .arg(Place()));
    if (AIsGiven && !FParams.Issuer.isEmpty() && AIssuer != FParams.Issuer.toUtf8())
        throw EZOSignOnAnswerError(
            QStringLiteral("The answer to the sign-on at %1 was given by another server: %2.")
                .arg(Place(), OAuthAnswer::ErrorText(QString::fromUtf8(AIssuer), {})));
}
