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
    const auto add = [&](TZOSecurityKind AKind) { ADeclaration.Schemes.push_back({AName, AKind, param}); };
    if (type == "apiKey" && !param.isEmpty() &&
        (place == "header" || place == "query" || place == "cookie")) {
        add(place == "header" ? skApiKeyHeader : place == "query" ? skApiKeyQuery : skApiKeyCookie);
    } else if (type == "basic") {
        add(skHttpBasic);
    } else if (type == "http") {
        ReadHttpScheme(AName, AScheme, ADeclaration);
    } else if (type == "oauth2") {
        add(skOAuth2);
        ReadScopes(AScheme, ADeclaration);
    } else if (type == "openIdConnect") {
        // Its token is sent like any other, wherever the user got it.
        add(skHttpBearer);
    } else {
        FUnknownSchemes.insert(AName);
        Source.Report(
            AScheme,
            QStringLiteral("This way to authenticate is not known; operations are called without it."));
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
