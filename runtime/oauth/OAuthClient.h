// The flows of OAuth 2.0 (RFC 6749) for a native application (RFC 8252).
#pragma once

#include "runtime/oauth/OAuthScheme.h"
#include "runtime/oauth/OAuthToken.h"

#include <QStringList>

class TZOAuthUI;
class TZOHttpClient;
struct TZOHttpResponse;
struct TZOServerMetadata;

/// Gets tokens for one client of one authorization server. Sends nothing but to that server, which has to be
/// reached by https or be on this machine. All calls run on the calling thread until they are done.
class TZOOAuthClient {
public:
    struct TSettings {
        QString Service; ///< whose name the user is shown
        QString BaseUrl; ///< what addresses of the scheme are relative to
        TZOOAuthScheme Scheme;
        QString ClientId;
        QString Secret; ///< empty or "-": a public client
        QString RedirectUrl;
        QStringList Scopes;
    };

    /// AHttp must outlive this.
    TZOOAuthClient(TZOHttpClient& AHttp, TSettings ASettings);

    /// Asks the user for consent in the browser (authorization code with PKCE). Raises the failures of
    /// runtime/types/Failures.h; EZOCancelledError when AUI gives up.
    TZOAuthToken Authorize(TZOAuthUI& AUI);
    /// Asks in the client's own name.
    TZOAuthToken ClientCredentials();
    /// Renews access. The answer's refresh token is the one to keep: the new one, or else ARefreshToken.
    /// Raises EZOGrantError when the server does not take ARefreshToken any more.
    TZOAuthToken Refresh(const QString& ARefreshToken);

    /// Names the authorization server among all others, by every address to which a token of it may be sent:
    /// what the token is bound to. Asks nobody.
    QString ServerId() const { return ServerId(FSettings); }
    static QString ServerId(const TSettings& ASettings);

private:
    using TParam = std::pair<QByteArray, QByteArray>;

    const TZOOAuthFlow* FindFlow(TZOOAuthFlowKind AFlow) const;
    TZOServerMetadata Metadata();
    QByteArray AwaitCode(TZOAuthUI& AUI, const TZOServerMetadata& AMetadata, QList<TParam>& AParams);
    TZOAuthToken Ask(const QString& ATokenUrl, const TZOServerMetadata& AMetadata, QList<TParam> AParams);
    bool IsPublic() const;

    TZOHttpClient& FHttp;
    TSettings FSettings;
};
