#include "runtime/oauth/ServerMetadata_p.h"

#include "runtime/oauth/OAuthAnswer_p.h"
#include "runtime/oauth/OAuthUrl_p.h"

#include "runtime/types/Failures.h"

namespace {

const QString& WellKnown() {
    static const QString text = QStringLiteral("/.well-known/");
    return text;
}

/// Where the metadata of AIssuer may be: between host and path (RFC 8414, section 3.1), or behind the path,
/// as OpenID Connect has it.
QList<QUrl> Places(const QUrl& AIssuer) {
    QString path = AIssuer.path(QUrl::FullyEncoded);
    while (path.endsWith(u'/'))
        path.chop(1);
    QList<QUrl> places;
    for (const QString& place : {WellKnown() + QStringLiteral("oauth-authorization-server") + path,
                                 WellKnown() + QStringLiteral("openid-configuration") + path,
                                 path + WellKnown() + QStringLiteral("openid-configuration")}) {
        QUrl url = AIssuer;
        url.setPath(place, QUrl::StrictMode);
        if (!places.contains(url))
            places.append(url);
    }
    return places;
}

/// The issuer whose metadata stand at AUrl, in its two spellings' common form.
QString IssuerOf(const QUrl& AUrl) {
    const QString path = AUrl.path();
    const qsizetype mark = path.indexOf(WellKnown());
    if (mark < 0)
        return {};
    QString behind = path.mid(mark + WellKnown().size());
    behind = behind.contains(u'/') ? behind.mid(behind.indexOf(u'/')) : QString();
    QUrl issuer = AUrl;
    issuer.setPath(mark > 0 ? path.left(mark) : behind);
    issuer.setQuery(QString());
    return issuer.toString(QUrl::StripTrailingSlash);
}

QString WithoutSlash(QString AText) {
    if (AText.endsWith(u'/'))
        AText.chop(1);
    return AText;
}

TZOServerMetadata Read(const TZOHttpResponse& AAnswer, const QString& AIssuer, bool AIsExact,
                       const QString& APlace) {
    const auto members = OAuthAnswer::Members(AAnswer.Body);
    if (!members)
        throw EZODiscoveryError(
            QStringLiteral("The metadata of the authorization server at %1 are no JSON object.").arg(APlace));
    TZOServerMetadata metadata;
    metadata.Issuer = OAuthAnswer::Text(*members, "issuer").value_or(QString());
    // Without this check, one server could speak for another (RFC 8414, section 3.3).
    const bool isRight =
        AIsExact ? metadata.Issuer == AIssuer : AIssuer.isEmpty() || WithoutSlash(metadata.Issuer) == AIssuer;
    if (metadata.Issuer.isEmpty() || !isRight)
        throw EZODiscoveryError(
            QStringLiteral("The metadata of the authorization server at %1 are those of another server, "
                           "\"%2\".")
                .arg(APlace, OAuthAnswer::ErrorText(metadata.Issuer, {})));
    metadata.AuthorizationUrl = OAuthAnswer::Text(*members, "authorization_endpoint").value_or(QString());
    metadata.TokenUrl = OAuthAnswer::Text(*members, "token_endpoint").value_or(QString());
    metadata.NamesIssuerInAnswers =
        OAuthAnswer::IsTrue(*members, "authorization_response_iss_parameter_supported");
    const QStringList ways = OAuthAnswer::Texts(*members, "token_endpoint_auth_methods_supported");
    metadata.TakesBasic = ways.isEmpty() || ways.contains(QStringLiteral("client_secret_basic"));
    metadata.TakesPost = ways.contains(QStringLiteral("client_secret_post"));
    return metadata;
}

} // namespace

TZOServerMetadata TZOServerMetadata::Discover(const TZOOAuthScheme& AScheme, const QString& ABase,
                                              const TFetch& AFetch) {
    const bool isExact = !AScheme.Issuer.isEmpty();
    const QUrl url = OAuthUrl::Checked(isExact ? AScheme.Issuer : AScheme.MetadataUrl, ABase,
                                       isExact ? QStringLiteral("issuer of the authorization server")
                                               : QStringLiteral("address of the metadata"));
    const QString place = OAuthUrl::Place(url);
    const QList<QUrl> places = isExact ? Places(url) : QList<QUrl>{url};
    int status = 0;
    for (const QUrl& where : places) {
        const TZOHttpResponse answer = AFetch(where.toEncoded());
        if (answer.Status / 100 == 2)
            return Read(answer, isExact ? AScheme.Issuer : IssuerOf(url), isExact, place);
        status = answer.Status;
    }
    throw EZODiscoveryError(
        QStringLiteral("The authorization server at %1 says nothing of itself (status %2).")
            .arg(place)
            .arg(status));
}
