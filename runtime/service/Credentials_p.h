// How a service's API key and token are shown to its server.
#pragma once

#include "runtime/http/HttpMessage.h"
#include "runtime/service/RestService.h"

namespace Credentials {

/// The scheme for which AService has to obtain a token before AOper can be called; null when what it has will
/// do, or when no token would help.
const TZOSecurityScheme* WantedToken(const TZORestService& AService, const TZORestService::TOper& AOper);

/// Adds to ARequest what the first alternative asks for that AService's credentials can satisfy, and gives
/// the scheme for which the token was taken, or null. Raises EZOAuthorizationError, which says what to do,
/// when there is none and the operation needs one.
const TZOSecurityScheme* Apply(const TZORestService& AService, const TZORestService::TOper& AOper,
                               TZOHttpRequest& ARequest);

} // namespace Credentials
