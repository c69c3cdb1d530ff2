#include "runtime/service/Credentials_p.h"

#include "runtime/service/ParamText_p.h"

#include "runtime/types/Failures.h"

#include <QHash>

#include <algorithm>
#include <optional>

namespace {

/// What one service has to show, and what it makes of a request.
class TZOCredentialSet {
public:
    explicit TZOCredentialSet(const TZORestService& AService)
        : FSchemes(AService.TypeInfo()->Schemes()), FKey(AService.GetApiKey()), FToken(AService.GetToken()) {
        if (FKey == TZORestService::NoKeyNeeded())
            FKey.clear();
        ReadNamedKeys();
    }

    /// What AAlternative adds to a request, or nothing when a credential for it is missing.
    std::optional<TZOHttpRequest> Satisfy(const TZOSecurityAlternative& AAlternative) const {
        TZOHttpRequest added;
        QByteArray cookies;
        for (const int index : AAlternative.Schemes) {
            const TZOSecurityScheme& scheme = FSchemes.at(static_cast<std::size_t>(index));
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
        const TZOSecurityKind kind = FSchemes.at(static_cast<std::size_t>(AIndex)).Kind;
        return kind != skOAuth2 && (kind != skHttpBearer || !FKey.isEmpty());
    }

private:
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

    QString ValueFor(const TZOSecurityScheme& AScheme, bool AIsOneOfSeveral) const {
        if (AScheme.Kind == skOAuth2)
            return FToken;
        const bool isWhole = FNamedKeys.isEmpty() && !AIsOneOfSeveral;
        const QString key = isWhole ? FKey : FNamedKeys.value(AScheme.Name);
        if (AScheme.Kind == skHttpBasic && !key.contains(QLatin1Char(':')))
            return {};
        return AScheme.Kind == skHttpBearer && key.isEmpty() ? FToken : key;
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
                ParamText::Encode(QString::fromUtf8(AScheme.ParamName)) + '=' + ParamText::Encode(AValue);
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

    const std::vector<TZOSecurityScheme>& FSchemes;
    QString FKey;
    QString FToken;
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
QString Advice(const std::vector<TZOSecurityScheme>& ASchemes, const TZOCredentialSet& ASet,
               const TZOSecurityAlternative& AAlternative) {
    if (ASet.KeyCount(AAlternative) > 1)
        return QStringLiteral("Enter its API keys as \"%1\".").arg(SchemeNames(ASchemes, AAlternative));
    switch (ASchemes.at(static_cast<std::size_t>(AAlternative.Schemes.front())).Kind) {
    case skHttpBasic:
        return QStringLiteral("Enter user name and password as its API key, in the form \"user:password\".");
    case skOAuth2:
        return QStringLiteral("Enter its client id, secret and redirect URL, and authorize it.");
    case skHttpBearer:
        return QStringLiteral("Enter the access token as its API key.");
    default:
        return QStringLiteral("Enter its API key.");
    }
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

void Credentials::Apply(const TZORestService& AService, const TZORestService::TOper& AOper,
                        TZOHttpRequest& ARequest) {
    const auto& alternatives =
        AOper.Http.HasOwnSecurity ? AOper.Http.Security : AService.TypeInfo()->Security();
    const TZOCredentialSet set(AService);
    const TZOSecurityAlternative* unsatisfied = nullptr;
    bool isFree = alternatives.empty();
    for (const TZOSecurityAlternative& alternative : alternatives) {
        if (alternative.Schemes.empty()) {
            isFree = true;
        } else if (const auto added = set.Satisfy(alternative)) {
            Merge(*added, ARequest);
            return;
        } else if (!unsatisfied) {
            unsatisfied = &alternative;
        }
    }
    if (!isFree)
        throw EZOAuthorizationError(QStringLiteral("%1 has no credentials for %2. %3")
                                        .arg(AService.Class()->ClassName(), AOper.Name,
                                             Advice(AService.TypeInfo()->Schemes(), set, *unsatisfied)));
}
