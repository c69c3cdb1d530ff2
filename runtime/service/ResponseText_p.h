// What a server answered, as text for a user.
#pragma once

#include "runtime/http/HttpMessage.h"

#include <QString>

#include <optional>

namespace ResponseText {

/// The media type of the answer in lower case, without parameters; empty when it names none.
QByteArray MediaType(const TZOHttpResponse& AResponse);

/// The body as text, by the charset that the answer names, or else UTF-8; nothing when it is no text.
std::optional<QString> BodyText(const TZOHttpResponse& AResponse);

/// AText without control characters, with an ellipsis for what stands behind its first AMaxChars characters.
QString ForDisplay(QString AText, qsizetype AMaxChars = 2000);

/// "404 Not Found", below it how long the server asks to wait (RFC 9110, section 10.2.3), and below that what
/// the server said.
QString Failure(const TZOHttpResponse& AResponse);

} // namespace ResponseText
