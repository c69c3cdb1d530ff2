// Security schemes, scopes, and what operations require of them.
#include "openapi/ApiModel_p.h"

#include <algorithm>

void TApiModel::ReadSecurity(TDeclaration& ADeclaration) {
    const TDocView root = Source.Root();
    const TDocView schemes =
        IsSwagger2() ? root["securityDefinitions"] : root["components"]["securitySchemes"];
    for (const auto& [key, value] : schemes.Entries()) {
        const TDocView scheme = Source.Resolve(value);
        if (scheme)
            ReadScheme(key.Text(), scheme, ADeclaration);
    }
    ADeclaration.Security = Alternatives(root["security"], ADeclaration);
    AddSignOnScopes(root["security"], ADeclaration);
    for (const auto& [none, requirement] : root["security"].Entries()) {
        for (const auto& [name, scopes] : requirement.Entries()) {
            for (const auto& [nothing, scope] : scopes.Entries()) {
                for (TZORestService::TScope& known : ADeclaration.Scopes)
                    known.Default |= scope.Is(known.Name.toStdString());
            }
        }
    }
}

void TApiModel::ReadScheme(const QString& AName, TDocView AScheme, TDeclaration& ADeclaration) {
    const std::string type = AScheme["type"].Utf8();
    const std::string place = AScheme["in"].Utf8();
    const QByteArray param = AScheme["name"].Text().toUtf8();
    const auto add = [&](TZOSecurityKind AKind) -> TZOSecurityScheme& {
        return ADeclaration.Schemes.emplace_back(TZOSecurityScheme{AName, AKind, param});
    };
    if (type == "apiKey" && !param.isEmpty() &&
        (place == "header" || place == "query" || place == "cookie")) {
        add(place == "header" ? skApiKeyHeader : place == "query" ? skApiKeyQuery : skApiKeyCookie);
    } else if (type == "basic") {
        add(skHttpBasic);
    } else if (type == "http") {
        ReadHttpScheme(AName, AScheme, ADeclaration);
    } else if (type == "oauth2") {
        add(skOAuth2).OAuth = ReadFlows(AScheme);
        ReadScopes(AScheme, ADeclaration);
    } else if (type == "openIdConnect") {
        // Its token is sent like any other, wherever the user got it.
        add(skHttpBearer).OAuth.MetadataUrl = AScheme["openIdConnectUrl"].Text();
    } else {
        FUnknownSchemes.insert(AName);
        Source.Report(
            AScheme,
            QStringLiteral("This way to authenticate is not known; operations are called without it."));
    }
}

TZOOAuthScheme TApiModel::ReadFlows(TDocView AScheme) {
    TZOOAuthScheme oauth;
    // Tokens in addresses and the user's own password are not for a client like this (RFC 9700,
    // sections 2.1.2 and 2.4): such flows stay out.
    const auto add = [&](TZOOAuthFlowKind AKind, TDocView AFlow) {
        oauth.Flows.push_back({AKind, AFlow["authorizationUrl"].Text().trimmed(),
                               AFlow["tokenUrl"].Text().trimmed(), AFlow["refreshUrl"].Text().trimmed()});
    };
    if (AScheme["flow"].Is("accessCode"))
        add(ofAuthorizationCode, AScheme);
    if (AScheme["flow"].Is("application"))
        add(ofClientCredentials, AScheme);
    if (const TDocView code = AScheme["flows"]["authorizationCode"])
        add(ofAuthorizationCode, code);
    if (const TDocView client = AScheme["flows"]["clientCredentials"])
        add(ofClientCredentials, client);
    return oauth;
}

void TApiModel::AddSignOnScopes(TDocView ARequirements, TDeclaration& ADeclaration) {
    for (const auto& [none, requirement] : ARequirements.Entries()) {
        for (const auto& [key, scopes] : requirement.Entries()) {
            const QString scheme = key.Text();
            const bool isSignOn =
                std::any_of(ADeclaration.Schemes.begin(), ADeclaration.Schemes.end(), [&](const auto& s) {
                    return s.Name == scheme && !s.OAuth.MetadataUrl.isEmpty();
                });
            for (const auto& [nothing, scope] : scopes.Entries()) {
                auto& known = ADeclaration.Scopes;
                const QString name = scope.Text();
                const bool isKnown =
                    std::any_of(known.begin(), known.end(), [&](const auto& s) { return s.Name == name; });
                if (isSignOn && !isKnown && scope.IsString())
                    known.push_back({name, true});
            }
        }
    }
}

void TApiModel::ReadHttpScheme(const QString& AName, TDocView AScheme, TDeclaration& ADeclaration) {
    const QString scheme = AScheme["scheme"].Text().toLower();
    if (scheme == QStringLiteral("basic") || scheme == QStringLiteral("bearer")) {
        const bool isBasic = scheme == QStringLiteral("basic");
        ADeclaration.Schemes.push_back({AName, isBasic ? skHttpBasic : skHttpBearer, {}});
        return;
    }
    FUnknownSchemes.insert(AName);
    Source.Report(
        AScheme,
        QStringLiteral("The HTTP authentication \"%1\" is not known; operations are called without it.")
            .arg(scheme));
}

void TApiModel::ReadScopes(TDocView AScheme, TDeclaration& ADeclaration) {
    const auto add = [&](TDocView AScopes) {
        for (const auto& [key, text] : AScopes.Entries()) {
            const QString name = key ? key.Text() : text.Text();
            const bool isKnown = std::any_of(ADeclaration.Scopes.begin(), ADeclaration.Scopes.end(),
                                             [&](const auto& s) { return s.Name == name; });
            if (!isKnown)
                ADeclaration.Scopes.push_back({name, false});
        }
    };
    add(AScheme["scopes"]);
    for (const auto& [name, flow] : AScheme["flows"].Entries())
        add(flow["scopes"]);
}

std::vector<TZOSecurityAlternative> TApiModel::Alternatives(TDocView ARequirements,
                                                            const TDeclaration& ADeclaration) {
    std::vector<TZOSecurityAlternative> alternatives;
    for (const auto& [none, requirement] : ARequirements.Entries()) {
        TZOSecurityAlternative alternative;
        bool isKnown = requirement.IsObject();
        bool isReported = false;
        for (const auto& [key, scopes] : requirement.Entries()) {
            const QString name = key.Text();
            const auto& schemes = ADeclaration.Schemes;
            const auto found = std::find_if(schemes.begin(), schemes.end(),
                                            [&](const TZOSecurityScheme& s) { return s.Name == name; });
            if (found == schemes.end())
                isKnown = false;
            isReported |= FUnknownSchemes.contains(name);
            if (found != schemes.end())
                alternative.Schemes.push_back(static_cast<int>(found - schemes.begin()));
        }
        if (isKnown)
            alternatives.push_back(std::move(alternative));
        else if (!isReported)
            Source.Report(
                requirement,
                QStringLiteral("This requires a way to authenticate that the document does not describe."));
    }
    return alternatives;
}
