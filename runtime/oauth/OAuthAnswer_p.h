// What an authorization server says, read with suspicion.
#pragma once

#include "runtime/http/HttpMessage.h"
#include "runtime/oauth/OAuthToken.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

namespace OAuthAnswer {

/// The members of a JSON object, each as its JSON text.
using TMembers = QHash<QString, QByteArray>;

/// Nothing when ABody is no JSON object.
std::optional<TMembers> Members(const QByteArray& ABody);
/// The member's text; nothing when it is absent or no text.
std::optional<QString> Text(const TMembers& AMembers, const char* AName);
/// The member's list of texts; empty when it is absent or anything else.
QStringList Texts(const TMembers& AMembers, const char* AName);
bool IsTrue(const TMembers& AMembers, const char* AName);

/// "error: description" without control characters and of bounded length.
QString ErrorText(const QString& AError, const QString& ADescription);

/// The token in a token endpoint's answer (RFC 6749, section 5). APlace names the server. Raises
/// EZOTokenRefusedError for an error answer, with "invalid_grant" EZOGrantError, and EZOTokenAnswerError for
/// what is no answer at all.
TZOAuthToken Token(const TZOHttpResponse& AResponse, const QString& APlace);

} // namespace OAuthAnswer
