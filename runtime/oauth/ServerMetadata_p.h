// What an authorization server says of itself (RFC 8414).
#pragma once

#include "runtime/oauth/OAuthScheme.h"

#include "runtime/http/HttpMessage.h"

#include <functional>

struct TZOServerMetadata {
    QString Issuer; ///< empty: there are no metadata
    QString AuthorizationUrl;
    QString TokenUrl;
    bool NamesIssuerInAnswers = false; ///< RFC 9207
    bool TakesBasic = true;            ///< client_secret_basic; what a server takes that does not say
    bool TakesPost = false;            ///< client_secret_post

    using TFetch = std::function<TZOHttpResponse(const QByteArray& AUrl)>;

    /// The metadata of AScheme's server, which must name an issuer or where they are. Raises
    /// EZODiscoveryError when there are none, or when they are another server's.
    static TZOServerMetadata Discover(const TZOOAuthScheme& AScheme, const QString& ABase,
                                      const TFetch& AFetch);
};
