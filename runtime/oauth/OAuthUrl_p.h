// Addresses of authorization servers.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUrl>

namespace OAuthUrl {

using TParams = QList<std::pair<QByteArray, QByteArray>>;

/// Whether AHost is this machine itself, by one of the names that can mean nothing else.
bool IsLoopback(const QString& AHost);
/// AUrl resolved against ABase. Raises EZOAuthorizationError, naming AWhat, unless it is https, or http on
/// this machine, without user information or fragment.
QUrl Checked(const QString& AUrl, const QString& ABase, const QString& AWhat);
/// AParams as application/x-www-form-urlencoded (RFC 6749, appendix B).
QByteArray Form(const TParams& AParams);
QByteArray FormText(const QByteArray& AText);
/// The parameters of a query; "+" is a blank.
TParams Parsed(const QByteArray& AQuery);
/// "host" or "host:port", for messages.
QString Place(const QUrl& AUrl);

} // namespace OAuthUrl
