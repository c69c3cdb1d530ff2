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

/// "404 Not Found", and below it what the server said: its first 2,000 characters without control
/// characters, or size and type of what is no text.
QString Failure(const TZOHttpResponse& AResponse);

} // namespace ResponseText
