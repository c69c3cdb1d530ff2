// The token of a service: where it comes from, and what it is good for.
#include "runtime/service/RestService.h"

#include "runtime/http/HttpClient.h"
#include "runtime/types/Failures.h"

#include <QDateTime>
#include <QIODevice>

#include <algorithm>

QString TZORestService::GetToken() const { return FState.Token.AccessToken; }

void TZORestService::SetToken(const QString& AAccessToken, const QString& ARefreshToken,
                              qint64 AExpiresAtMs) {
    FState.Token = {AAccessToken, ARefreshToken, AExpiresAtMs};
    FState.Binding = BindingOfNow({});
    // What cannot be renewed is never shown to an authorization server, so any will do.
    const TZOSecurityScheme* scheme = ARefreshToken.isEmpty() ? nullptr : SchemeToRenewWith();
    if (scheme)
        FState.Binding.Server = OAuthClient(*scheme).ServerId();
    TokenChanged();
}

void TZORestService::SaveToken(QIODevice* AStream) const {
    const QByteArray bytes = FState.ToBytes();
    if (AStream->write(bytes) != bytes.size())
        throw EStreamError(QStringLiteral("The token could not be written: %1").arg(AStream->errorString()));
}

void TZORestService::LoadToken(QIODevice* AStream) {
    FState = TZOServiceState::FromBytes(AStream->readAll());
    if (FState.Binding.ServiceClass != FClass->ClassName())
        FState = {};
    TokenChanged();
}

void TZORestService::ResetToken() {
    FState = {};
    TokenChanged();
}

void TZORestService::RefreshAccess() {
    const bool isOurs = FState.Binding.IsSameGrant(BindingOfNow({}));
    if (!isOurs || FState.Token.RefreshToken.isEmpty())
        throw EZOAuthorizationError(
            QStringLiteral("%1 holds no refresh token to renew its access with.").arg(FClass->ClassName()));
    const TZOSecurityScheme* scheme = SchemeToRenewWith();
    if (!scheme)
        throw EZOAuthorizationError(QStringLiteral("%1 knows no authorization server to renew its access at.")
                                        .arg(FClass->ClassName()));
    try {
        FState.Token = OAuthClient(*scheme).Refresh(FState.Token.RefreshToken);
    } catch (const EZOGrantError&) {
        ResetToken();
        throw;
    }
    // Whoever keeps the token does so now: the old refresh token may be worth nothing any more.
    TokenChanged();
}

bool TZORestService::HasTokenFor(const TZOSecurityScheme& AScheme) const {
    const TZOTokenBinding& binding = FState.Binding;
    if (FState.Token.AccessToken.isEmpty() || !binding.IsSameGrant(BindingOfNow({})))
        return false;
    return binding.Server.isEmpty() || !AScheme.OAuth.IsUsable() ||
           binding.Server == TZOOAuthClient::ServerId(OAuthSettings(AScheme));
}

bool TZORestService::IsTokenExpired() const {
    return FState.Token.IsExpired(QDateTime::currentMSecsSinceEpoch());
}

bool TZORestService::CanObtainToken(const TZOSecurityScheme& AScheme) const {
    const TZOOAuthScheme& oauth = AScheme.OAuth;
    return !FClientId.isEmpty() && (FOAuthFlow ? oauth.Has(*FOAuthFlow) : oauth.IsUsable());
}

void TZORestService::ObtainToken(const TZOSecurityScheme& AScheme) {
    if (HasTokenFor(AScheme) && !FState.Token.RefreshToken.isEmpty()) {
        try {
            RefreshAccess();
            return;
        } catch (const EZOGrantError&) {
            // The grant is over; the user may give another.
        }
    }
    Authorize(AScheme);
}

void TZORestService::Authorize(const TZOSecurityScheme& AScheme) {
    TZOOAuthClient client = OAuthClient(AScheme);
    const TZOOAuthFlowKind flow = FOAuthFlow.value_or(
        AScheme.OAuth.Has(ofAuthorizationCode) ? ofAuthorizationCode : ofClientCredentials);
    const TZOTokenBinding binding = BindingOfNow(client.ServerId());
    if (flow == ofAuthorizationCode && !FAuthUI)
        throw EZOAuthorizationError(
            QStringLiteral("%1 needs the user's consent, which cannot be asked for here.")
                .arg(FClass->ClassName()));
    FState.Token = flow == ofAuthorizationCode ? client.Authorize(*FAuthUI) : client.ClientCredentials();
    FState.Binding = binding;
    TokenChanged();
}

TZOOAuthClient::TSettings TZORestService::OAuthSettings(const TZOSecurityScheme& AScheme) const {
    return {FClass->ClassName(), FServerUrl, AScheme.OAuth, FClientId, FSecret, FRedirectUrl, FScopes};
}

TZOOAuthClient TZORestService::OAuthClient(const TZOSecurityScheme& AScheme) {
    return TZOOAuthClient(HttpClient(), OAuthSettings(AScheme));
}

TZOTokenBinding TZORestService::BindingOfNow(const QString& AServer) const {
    return {FClass->ClassName(), FClientId, AServer, FScopes};
}

/// The scheme whose authorization server gave the token; the first with a server for a token that the host
/// brings.
const TZOSecurityScheme* TZORestService::SchemeToRenewWith() const {
    const auto& schemes = TypeInfo()->Schemes();
    const auto found = std::find_if(schemes.begin(), schemes.end(), [&](const TZOSecurityScheme& s) {
        return s.OAuth.IsUsable() && (FState.Binding.Server.isEmpty() ||
                                      FState.Binding.Server == TZOOAuthClient::ServerId(OAuthSettings(s)));
    });
    return found == schemes.end() ? nullptr : &*found;
}
