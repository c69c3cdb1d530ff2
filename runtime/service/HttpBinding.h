// How an operation's request value becomes an HTTP request: declared with the operation, read by ZORequest.
#pragma once

#include "runtime/oauth/OAuthScheme.h"

#include <QByteArray>
#include <QString>

#include <vector>

/// Where a top-level property of a request goes.
enum TZOParamPlace {
    ppPath,      ///< replaces {name} in the path
    ppQuery,     ///< after the "?"
    ppHeader,    ///< a header of its own
    ppCookie,    ///< a cookie
    ppBody,      ///< the whole body
    ppFormField, ///< one field of an urlencoded body
    ppFormPart   ///< one part of a multipart/form-data body (RFC 7578)
};

/// How a property's value is written at its place; the styles of OpenAPI parameters.
enum TZOParamStyle {
    psDefault,        ///< ppPath and ppHeader: psSimple; all others: psForm
    psSimple,         ///< a,b and k,v; exploded a,b and k=v
    psForm,           ///< n=a,b and n=k,v; exploded n=a&n=b and k=v
    psLabel,          ///< .a,b and .k,v; exploded .a.b and .k=v
    psMatrix,         ///< ;n=a,b and ;n=k,v; exploded ;n=a;n=b and ;k=v
    psSpaceDelimited, ///< n=a%20b; exploded as psForm
    psPipeDelimited,  ///< n=a%7Cb; exploded as psForm
    psDeepObject,     ///< n[k]=v, at any depth; exploded or not
    psJson            ///< the value as JSON text
};

/// One property's place and form.
struct TZOParamBinding {
    QString Property; ///< name of the request type's property
    TZOParamPlace Place = ppQuery;
    QByteArray WireName; ///< name on the wire; empty: the property's
    TZOParamStyle Style = psDefault;
    bool Explode = true;    ///< entries apart
    QByteArray ContentType; ///< of a form part or body; empty leaves the choice to the runtime
};

/// How a credential is shown to the server.
enum TZOSecurityKind {
    skApiKeyHeader, ///< the API key in a header
    skApiKeyQuery,  ///< the API key in the query
    skApiKeyCookie, ///< the API key in a cookie
    skHttpBasic,    ///< RFC 7617; the API key is read as "user:password"
    skHttpBearer,   ///< RFC 6750; the API key, or else the token
    skOAuth2        ///< RFC 6749; the token as a bearer
};

struct TZOSecurityScheme {
    QString Name; ///< what alternatives and "name=value" credentials call it
    TZOSecurityKind Kind = skApiKeyHeader;
    QByteArray ParamName;      ///< the header, query parameter or cookie of an API key
    TZOOAuthScheme OAuth = {}; ///< where the token of skOAuth2 or skHttpBearer comes from, if that is known
};

/// Schemes, by index into the class's, that have to be used together. Empty: nothing is needed.
struct TZOSecurityAlternative {
    std::vector<int> Schemes;
};

/// How an operation is called. Absent properties are not sent; an absent path parameter is an
/// EZORequestValueError that names it.
struct TZOHttpBinding {
    QByteArray Method = "GET";
    QString Path; ///< under the service's address, with {name} for path parameters
    /// The operation's own address; used while the service's is still that of its class.
    QString Server;
    std::vector<TZOParamBinding> Params; ///< properties not listed are never sent
    /// The alternatives that authenticate this operation, when they are not the class's.
    bool HasOwnSecurity = false;
    std::vector<TZOSecurityAlternative> Security;
};
