// Types as text.
#pragma once

#include "runtime/service/RestService.h"

namespace TypeOutline {

/// "request" and "response" of a completed operation, each with a tree of indented lines below it, one a
/// property, element, item, subtype or alternative: "name: kind", then "required", "read-only", the allowed
/// values and the description as far as there are any. Each named type is spread out once; where it comes
/// again its line ends with "(see above)". Names and texts of the document are visible text.
QString Of(const TZORestService::TOper& AOper);

} // namespace TypeOutline
