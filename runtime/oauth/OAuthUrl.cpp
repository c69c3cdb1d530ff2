#include "runtime/oauth/OAuthUrl_p.h"

#include "runtime/types/Failures.h"

bool OAuthUrl::IsLoopback(const QString& AHost) {
    return AHost == QStringLiteral("127.0.0.1") || AHost == QStringLiteral("::1") ||
           AHost.compare(QStringLiteral("localhost"), Qt::CaseInsensitive) == 0;
}

QUrl OAuthUrl::Checked(const QString& AUrl, const QString& ABase, const QString& AWhat) {
    const QUrl given(AUrl.trimmed(), QUrl::StrictMode);
    const QUrl url = given.isRelative() && given.isValid() ? QUrl(ABase).resolved(given) : given;
    const bool isAddress = !AUrl.isEmpty() && url.isValid() && !url.host().isEmpty() &&
                           url.userInfo().isEmpty() && !url.hasFragment();
    if (!isAddress)
        throw EZOAuthorizationError(QStringLiteral("The %1 is no address: \"%2\".").arg(AWhat, AUrl));
    const bool isSafe = url.scheme() == QStringLiteral("https") ||
                        (url.scheme() == QStringLiteral("http") && IsLoopback(url.host()));
    if (!isSafe)
        throw EZOAuthorizationError(
            QStringLiteral("The %1 has to begin with https, but is \"%2\".").arg(AWhat, url.toString()));
    return url;
}

QByteArray OAuthUrl::FormText(const QByteArray& AText) {
    return AText.toPercentEncoding(" ", "~").replace(' ', '+');
}

QByteArray OAuthUrl::Form(const TParams& AParams) {
    QByteArray form;
    for (const auto& [name, value] : AParams) {
        if (!form.isEmpty())
            form += '&';
        form += FormText(name) + '=' + FormText(value);
    }
    return form;
}

OAuthUrl::TParams OAuthUrl::Parsed(const QByteArray& AQuery) {
    TParams params;
    for (QByteArray piece : AQuery.split('&')) {
        piece.replace('+', ' ');
        const qsizetype equals = piece.indexOf('=');
        const QByteArray name =
            QByteArray::fromPercentEncoding(piece.left(equals < 0 ? piece.size() : equals));
        if (!name.isEmpty())
            params.append(
                {name, equals < 0 ? QByteArray() : QByteArray::fromPercentEncoding(piece.mid(equals + 1))});
    }
    return params;
}

QString OAuthUrl::Place(const QUrl& AUrl) { return AUrl.authority(); }
