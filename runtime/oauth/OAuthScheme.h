// How a service's authorization server gives tokens (RFC 6749), as a class or a document declares it.
#pragma once

#include <QString>

#include <algorithm>
#include <vector>

enum TZOOAuthFlowKind {
    ofAuthorizationCode, ///< the user consents in a browser; with PKCE (RFC 7636)
    ofClientCredentials  ///< the client asks for itself
};

/// How a client with a secret proves who it is at the token endpoint (RFC 6749, section 2.3.1).
enum TZOClientAuth {
    caByMetadata, ///< as the server's metadata say, else caBasic
    caBasic,      ///< client_secret_basic: an Authorization header
    caPost        ///< client_secret_post: fields of the body
};

/// One way to a token. Addresses may be relative to the service's.
struct TZOOAuthFlow {
    TZOOAuthFlowKind Kind = ofAuthorizationCode;
    QString AuthorizationUrl; ///< ofAuthorizationCode only
    QString TokenUrl;
    QString RefreshUrl; ///< empty: TokenUrl
};

/// The authorization server of a security scheme. Where Issuer or MetadataUrl is given, the server's own
/// metadata fill in the addresses that no flow names; a server without declared flows is asked for an
/// authorization code.
struct TZOOAuthScheme {
    QString Issuer;      ///< the server's identifier (RFC 8414)
    QString MetadataUrl; ///< where its metadata are, when that is known instead
    std::vector<TZOOAuthFlow> Flows;
    TZOClientAuth ClientAuth = caByMetadata;

    /// Whether the server gives tokens by that flow, as far as is known before it is asked.
    bool Has(TZOOAuthFlowKind AKind) const {
        return Flows.empty()
                   ? IsUsable()
                   : std::any_of(Flows.begin(), Flows.end(), [&](const auto& f) { return f.Kind == AKind; });
    }
    /// Whether there is a place to get a token from.
    bool IsUsable() const { return !Flows.empty() || !Issuer.isEmpty() || !MetadataUrl.isEmpty(); }
};
