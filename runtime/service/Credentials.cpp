#include "runtime/service/Credentials_p.h"

#include "runtime/service/ParamText_p.h"

#include "platform/Utf8.h"
#include "runtime/types/Failures.h"

#include <QHash>

#include <algorithm>
#include <iterator>
#include <optional>

namespace {

/// What one service has to show, and what it makes of a request.
class TZOCredentialSet {
public:
    explicit TZOCredentialSet(const TZORestService& AService)
        : FService(AService), FSchemes(AService.TypeInfo()->Schemes()), FKey(AService.GetApiKey()) {
        if (FKey == TZORestService::NoKeyNeeded())
            FKey.clear();
        ReadNamedKeys();
    }

    /// What AAlternative adds to a request, or nothing when a credential for it is missing.
    std::optional<TZOHttpRequest> Satisfy(const TZOSecurityAlternative& AAlternative) const {
        TZOHttpRequest added;
        QByteArray cookies;
        for (const int index : AAlternative.Schemes) {
            const TZOSecurityScheme& scheme = Scheme(index);
            const QString value = ValueFor(scheme, KeyCount(AAlternative) > 1);
            if (value.isEmpty())
                return std::nullopt;
            Add(added, cookies, scheme, value);
        }
        if (!cookies.isEmpty())
            added.Headers.append({"Cookie", cookies, true});
        return added;
    }

    /// How many schemes of AAlternative the API key has to serve.
    int KeyCount(const TZOSecurityAlternative& AAlternative) const {
        return static_cast<int>(std::count_if(AAlternative.Schemes.begin(), AAlternative.Schemes.end(),
                                              [&](int i) { return IsKeyed(i); }));
    }

    bool IsKeyed(int AIndex) const {
        const TZOSecurityKind kind = Scheme(AIndex).Kind;
        return kind != skOAuth2 && (kind != skHttpBearer || !FKey.isEmpty());
    }

    /// The scheme of AAlternative that is served by the token; or null.
    const TZOSecurityScheme* TokenScheme(const TZOSecurityAlternative& AAlternative) const {
        const auto found = std::find_if(AAlternative.Schemes.begin(), AAlternative.Schemes.end(),
                                        [&](int i) { return !IsKeyed(i); });
        return found == AAlternative.Schemes.end() ? nullptr : &Scheme(*found);
    }

    /// The scheme of AAlternative that the user has to do something for: its key first, which nobody else can
    /// get.
    const TZOSecurityScheme& MissingScheme(const TZOSecurityAlternative& AAlternative) const {
        const auto& schemes = AAlternative.Schemes;
        const auto found = std::find_if(schemes.begin(), schemes.end(), [&](int i) {
            return IsKeyed(i) && ValueFor(Scheme(i), KeyCount(AAlternative) > 1).isEmpty();
        });
        return Scheme(found == schemes.end() ? schemes.front() : *found);
    }

    /// The scheme of AAlternative for which a token can be obtained and is all that is missing; or null.
    const TZOSecurityScheme* ObtainableScheme(const TZOSecurityAlternative& AAlternative) const {
        const TZOSecurityScheme* scheme = TokenScheme(AAlternative);
        if (!scheme || !FService.CanObtainToken(*scheme))
            return nullptr;
        TZOSecurityAlternative rest;
        std::copy_if(AAlternative.Schemes.begin(), AAlternative.Schemes.end(),
                     std::back_inserter(rest.Schemes), [&](int i) { return IsKeyed(i); });
        return Satisfy(rest) ? scheme : nullptr;
    }

private:
    const TZOSecurityScheme& Scheme(int AIndex) const {
        return FSchemes.at(static_cast<std::size_t>(AIndex));
    }

    /// Reads "name=value; name=value", where every name is a scheme's; any other text is one key.
    void ReadNamedKeys() {
        for (const QString& piece : FKey.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
            const qsizetype equals = piece.indexOf(QLatin1Char('='));
            const QString name = piece.left(equals).trimmed();
            const bool isKnown =
                equals > 0 && std::any_of(FSchemes.begin(), FSchemes.end(),
                                          [&](const TZOSecurityScheme& s) { return s.Name == name; });
            if (!isKnown) {
                FNamedKeys.clear();
                return;
            }
            FNamedKeys.insert(name, piece.mid(equals + 1).trimmed());
        }
    }

    QString TokenFor(const TZOSecurityScheme& AScheme) const {
        return FService.HasTokenFor(AScheme) ? FService.GetToken() : QString();
    }

    QString ValueFor(const TZOSecurityScheme& AScheme, bool AIsOneOfSeveral) const {
        if (AScheme.Kind == skOAuth2)
            return TokenFor(AScheme);
        const bool isWhole = FNamedKeys.isEmpty() && !AIsOneOfSeveral;
        const QString key = isWhole ? FKey : FNamedKeys.value(AScheme.Name);
        if (AScheme.Kind == skHttpBasic && !key.contains(QLatin1Char(':')))
            return {};
        return AScheme.Kind == skHttpBearer && key.isEmpty() ? TokenFor(AScheme) : key;
    }

    static void Add(TZOHttpRequest& ARequest, QByteArray& ACookies, const TZOSecurityScheme& AScheme,
                    const QString& AValue) {
        const QByteArray value = AValue.toUtf8();
        switch (AScheme.Kind) {
        case skApiKeyHeader:
            ARequest.Headers.append({AScheme.ParamName, value, true});
            break;
        case skApiKeyQuery:
            if (!ARequest.CredentialQuery.isEmpty())
                ARequest.CredentialQuery += '&';
            ARequest.CredentialQuery +=
                ParamText::Encode(TextFromUtf8(AScheme.ParamName)) + '=' + ParamText::Encode(AValue);
            break;
        case skApiKeyCookie:
            ACookies += (ACookies.isEmpty() ? "" : "; ") + AScheme.ParamName + '=' + value;
            break;
        case skHttpBasic:
            ARequest.Headers.append({"Authorization", "Basic " + value.toBase64(), true});
            break;
        case skHttpBearer:
        case skOAuth2:
            ARequest.Headers.append({"Authorization", "Bearer " + value, true});
            break;
        }
    }

    const TZORestService& FService;
    const std::vector<TZOSecurityScheme>& FSchemes;
    QString FKey;
    QHash<QString, QString> FNamedKeys;
};

QString SchemeNames(const std::vector<TZOSecurityScheme>& ASchemes,
                    const TZOSecurityAlternative& AAlternative) {
    QStringList names;
    for (const int index : AAlternative.Schemes)
        names.append(ASchemes.at(static_cast<std::size_t>(index)).Name + QStringLiteral("=..."));
    return names.join(QStringLiteral("; "));
}

/// What to do to get AAlternative satisfied.
QString Advice(const TZORestService& AService, const TZOCredentialSet& ASet,
               const TZOSecurityAlternative& AAlternative) {
    const auto& schemes = AService.TypeInfo()->Schemes();
    if (ASet.KeyCount(AAlternative) > 1)
        return QStringLiteral("Enter its API keys as \"%1\".").arg(SchemeNames(schemes, AAlternative));
    if (ASet.ObtainableScheme(AAlternative))
        return QStringLiteral("Execute it once to sign on.");
    switch (ASet.MissingScheme(AAlternative).Kind) {
    case skHttpBasic:
        return QStringLiteral("Enter user name and password as its API key, in the form \"user:password\".");
    case skOAuth2:
        if (!AService.GetClientId().isEmpty())
            return QStringLiteral("It names no server that gives tokens in a way that can be used here.");
        return QStringLiteral("Enter its client id, secret and redirect URL, and authorize it.");
    case skHttpBearer:
        return QStringLiteral("Enter the access token as its API key.");
    default:
        return QStringLiteral("Enter its API key.");
    }
}

const std::vector<TZOSecurityAlternative>& AlternativesOf(const TZORestService& AService,
                                                          const TZORestService::TOper& AOper) {
    return AOper.Http.HasOwnSecurity ? AOper.Http.Security : AService.TypeInfo()->Security();
}

void Merge(const TZOHttpRequest& AAdded, TZOHttpRequest& ARequest) {
    ARequest.CredentialQuery = AAdded.CredentialQuery;
    for (const TZOHttpHeader& header : AAdded.Headers) {
        const auto same = std::find_if(ARequest.Headers.begin(), ARequest.Headers.end(), [&](const auto& h) {
            return h.Name.compare(header.Name, Qt::CaseInsensitive) == 0;
        });
        // One Cookie header holds all cookies (RFC 6265, section 5.4).
        if (same != ARequest.Headers.end() && header.Name == "Cookie")
            same->Value += "; " + header.Value;
        else
            ARequest.Headers.append(header);
    }
}

} // namespace

const TZOSecurityScheme* Credentials::WantedToken(const TZORestService& AService,
                                                  const TZORestService::TOper& AOper) {
    const auto& alternatives = AlternativesOf(AService, AOper);
    const TZOCredentialSet set(AService);
    for (const TZOSecurityAlternative& alternative : alternatives) {
        if (alternative.Schemes.empty() || !set.Satisfy(alternative))
            continue;
        const TZOSecurityScheme* scheme = set.TokenScheme(alternative);
        const bool isOver = scheme && AService.IsTokenExpired() && AService.CanObtainToken(*scheme);
        return isOver ? scheme : nullptr;
    }
    if (std::any_of(alternatives.begin(), alternatives.end(),
                    [](const auto& a) { return a.Schemes.empty(); }))
        return nullptr;
    for (const TZOSecurityAlternative& alternative : alternatives) {
        if (const TZOSecurityScheme* scheme = set.ObtainableScheme(alternative))
            return scheme;
    }
    return nullptr;
}

const TZOSecurityScheme* Credentials::Apply(const TZORestService& AService,
                                            const TZORestService::TOper& AOper, TZOHttpRequest& ARequest) {
    const auto& alternatives = AlternativesOf(AService, AOper);
    const TZOCredentialSet set(AService);
    const TZOSecurityAlternative* unsatisfied = nullptr;
    bool isFree = alternatives.empty();
    for (const TZOSecurityAlternative& alternative : alternatives) {
        if (alternative.Schemes.empty()) {
            isFree = true;
        } else if (const auto added = set.Satisfy(alternative)) {
            Merge(*added, ARequest);
            return set.TokenScheme(alternative);
        } else if (!unsatisfied) {
            unsatisfied = &alternative;
        }
    }
    if (!isFree)
        throw EZOAuthorizationError(
            QStringLiteral("%1 has no credentials for %2. %3")
                .arg(AService.Class()->ClassName(), AOper.Name, Advice(AService, set, *unsatisfied)));
    return nullptr;
}
