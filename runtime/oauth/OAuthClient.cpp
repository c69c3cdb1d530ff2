#include "runtime/oauth/OAuthClient.h"

#include "runtime/oauth/AuthUI.h"
#include "runtime/oauth/AuthorizationRequest.h"
#include "runtime/oauth/OAuthAnswer_p.h"
#include "runtime/oauth/OAuthUrl_p.h"
#include "runtime/oauth/RedirectListener.h"
#include "runtime/oauth/ServerMetadata_p.h"

#include "runtime/http/HttpClient.h"
#include "runtime/types/Failures.h"

#include <QElapsedTimer>
#include <QScopeGuard>

#include <algorithm>

namespace {

/// No honest answer of an authorization server is longer.
constexpr qint64 MaxAnswerBytes = 1 << 20;
constexpr int WaitMs = 50;

const char* const TokenEndpoint = "address of the token endpoint";
const char* const AuthorizationEndpoint = "address of the authorization endpoint";

TZOHttpResponse Send(TZOHttpClient& AHttp, const TZOHttpRequest& ARequest) {
    const qint64 limit = AHttp.Limits().MaxBodyBytes;
    AHttp.Limits().MaxBodyBytes = MaxAnswerBytes;
    const auto restore = qScopeGuard([&] { AHttp.Limits().MaxBodyBytes = limit; });
    return AHttp.Execute(ARequest);
}

} // namespace

TZOOAuthClient::TZOOAuthClient(TZOHttpClient& AHttp, TSettings ASettings)
    : FHttp(AHttp), FSettings(std::move(ASettings)) {}

const TZOOAuthFlow* TZOOAuthClient::FindFlow(TZOOAuthFlowKind AFlow) const {
    const auto& flows = FSettings.Scheme.Flows;
    const auto found =
        std::find_if(flows.begin(), flows.end(), [&](const auto& f) { return f.Kind == AFlow; });
    return found == flows.end() ? nullptr : &*found;
}

bool TZOOAuthClient::IsPublic() const {
    return FSettings.Secret.isEmpty() || FSettings.Secret == QStringLiteral("-");
}

QString TZOOAuthClient::ServerId(const TSettings& ASettings) {
    const TZOOAuthScheme& scheme = ASettings.Scheme;
    QStringList places{scheme.Issuer, scheme.MetadataUrl};
    for (const TZOOAuthFlow& flow : scheme.Flows)
        places += {flow.TokenUrl, flow.RefreshUrl};
    places.removeAll(QString());
    for (QString& place : places)
        place = QUrl(ASettings.BaseUrl).resolved(QUrl(place)).toString();
    places.removeDuplicates();
    return places.join(u' ');
}

TZOServerMetadata TZOOAuthClient::Metadata() {
    if (FSettings.Scheme.Issuer.isEmpty() && FSettings.Scheme.MetadataUrl.isEmpty())
        return {};
    return TZOServerMetadata::Discover(FSettings.Scheme, FSettings.BaseUrl, [this](const QByteArray& AUrl) {
        TZOHttpRequest request;
        request.Url = AUrl;
        request.Headers.append(TZOHttpHeader{"Accept", "application/json"});
        return Send(FHttp, request);
    });
}

TZOAuthToken TZOOAuthClient::Authorize(TZOAuthUI& AUI) {
    const TZOServerMetadata metadata = Metadata();
    const TZOOAuthFlow* flow = FindFlow(ofAuthorizationCode);
    QList<TParam> params{{"grant_type", "authorization_code"}};
    const QByteArray code = AwaitCode(AUI, metadata, params);
    params.append({"code", code});
    return Ask(flow && !flow->TokenUrl.isEmpty() ? flow->TokenUrl : metadata.TokenUrl, metadata, params);
}

QByteArray TZOOAuthClient::AwaitCode(TZOAuthUI& AUI, const TZOServerMetadata& AMetadata,
                                     QList<TParam>& AParams) {
    const TZOOAuthFlow* flow = FindFlow(ofAuthorizationCode);
    const QUrl where = OAuthUrl::Checked(
        flow && !flow->AuthorizationUrl.isEmpty() ? flow->AuthorizationUrl : AMetadata.AuthorizationUrl,
        FSettings.BaseUrl, QLatin1String(AuthorizationEndpoint));
    TZORedirectListener listener(FSettings.RedirectUrl);
    TZOAuthorizationRequest question({where.toString(QUrl::FullyEncoded), FSettings.ClientId,
                                      listener.RedirectUri(), FSettings.Scopes, AMetadata.Issuer,
                                      AMetadata.NamesIssuerInAnswers});
    AUI.Begin(FSettings.Service, question.Url());
    const auto end = qScopeGuard([&] { AUI.End(); });
    QElapsedTimer clock;
    clock.start();
    for (;;) {
        if (const auto query = listener.Wait(WaitMs)) {
            auto refused = qScopeGuard([&] { listener.Finish(false); });
            const QByteArray code = question.TakeCode(*query);
            refused.dismiss();
            listener.Finish(true);
            AParams.append({"redirect_uri", listener.RedirectUri().toUtf8()});
            AParams.append({"code_verifier", question.Verifier()});
            return code;
        }
        if (!AUI.Wait())
            throw EZOCancelledError(QStringLiteral("The sign-on was cancelled."));
        if (clock.elapsed() >= AUI.TimeLimitMs())
            throw EZOSignOnTimeoutError(
                QStringLiteral("Nobody came back from the sign-on at %1 within %2 seconds.")
                    .arg(OAuthUrl::Place(where))
                    .arg(AUI.TimeLimitMs() / 1000.0));
    }
}

TZOAuthToken TZOOAuthClient::ClientCredentials() {
    if (IsPublic())
        throw EZOAuthorizationError(
            QStringLiteral("%1 needs a secret to ask in its own name.").arg(FSettings.Service));
    const TZOServerMetadata metadata = Metadata();
    const TZOOAuthFlow* flow = FindFlow(ofClientCredentials);
    QList<TParam> params{{"grant_type", "client_credentials"}};
    if (!FSettings.Scopes.isEmpty())
        params.append({"scope", FSettings.Scopes.join(u' ').toUtf8()});
    return Ask(flow && !flow->TokenUrl.isEmpty() ? flow->TokenUrl : metadata.TokenUrl, metadata, params);
}

TZOAuthToken TZOOAuthClient::Refresh(const QString& ARefreshToken) {
    const TZOServerMetadata metadata = Metadata();
    const TZOOAuthFlow* flow = FindFlow(ofAuthorizationCode);
    if (!flow)
        flow = FindFlow(ofClientCredentials);
    const QString url = !flow                         ? metadata.TokenUrl
                        : !flow->RefreshUrl.isEmpty() ? flow->RefreshUrl
                        : !flow->TokenUrl.isEmpty()   ? flow->TokenUrl
                                                      : metadata.TokenUrl;
    TZOAuthToken token =
        Ask(url, metadata, {{"grant_type", "refresh_token"}, {"refresh_token", ARefreshToken.toUtf8()}});
    if (token.RefreshToken.isEmpty())
        token.RefreshToken = ARefreshToken;
    return token;
}

TZOAuthToken TZOOAuthClient::Ask(const QString& ATokenUrl, const TZOServerMetadata& AMetadata,
                                 QList<TParam> AParams) {
    const QUrl url = OAuthUrl::Checked(ATokenUrl, FSettings.BaseUrl, QLatin1String(TokenEndpoint));
    TZOHttpRequest request;
    request.Method = "POST";
    request.Url = url.toEncoded();
    request.Headers.append(TZOHttpHeader{"Accept", "application/json"});
    const QByteArray id = FSettings.ClientId.toUtf8();
    const QByteArray secret = FSettings.Secret.toUtf8();
    const bool isPost =
        FSettings.Scheme.ClientAuth == caPost ||
        (FSettings.Scheme.ClientAuth == caByMetadata && !AMetadata.TakesBasic && AMetadata.TakesPost);
    if (IsPublic() || isPost)
        AParams.append({"client_id", id});
    if (!IsPublic() && isPost)
        AParams.append({"client_secret", secret});
    if (!IsPublic() && !isPost) {
        const QByteArray pair = OAuthUrl::FormText(id) + ':' + OAuthUrl::FormText(secret);
        request.Headers.append({"Authorization", "Basic " + pair.toBase64(), true});
    }
    request.Body.Kind = bkBytes;
    request.Body.ContentType = "application/x-www-form-urlencoded";
    request.Body.Content = OAuthUrl::Form(AParams);
    return OAuthAnswer::Token(Send(FHttp, request), OAuthUrl::Place(url));
}
