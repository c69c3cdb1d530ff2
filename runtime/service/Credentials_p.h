// How a service's API key and token are shown to its server.
#pragma once

#include "runtime/http/HttpMessage.h"
#include "runtime/service/RestService.h"

namespace Credentials {

/// Adds to ARequest what the first alternative asks for that AService's credentials can satisfy. Raises
/// EZOAuthorizationError, which says what to do, when there is none and the operation needs one.
void Apply(const TZORestService& AService, const TZORestService::TOper& AOper, TZOHttpRequest& ARequest);

} // namespace Credentials
