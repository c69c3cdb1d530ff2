// What a server says about a failure.
#pragma once

#include "runtime/http/HttpMessage.h"

#include <QString>

namespace ServerMessage {

/// The message in the body of a failed answer, fit to be shown; empty when there is none. Title, detail and
/// whatever else a problem details object has (RFC 9457); "error: description" of an OAuth error (RFC 6749,
/// section 5.2); the text of a page, 500 characters of it; the first 2,000 characters of any other text or
/// JSON; size and type of what is no text.
QString Of(const TZOHttpResponse& AResponse);

} // namespace ServerMessage
