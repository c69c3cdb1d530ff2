// The answers of the library.
#pragma once

#include "samples/LibraryCatalogue_p.h"

/// Adds the library's handlers, which share one catalogue, to AServer below APrefix.
void AddLibraryRoutes(httplib::Server& AServer, const std::string& APrefix, const std::string& AApiKey);

using PCatalogue = std::shared_ptr<TLibraryCatalogue>;

// The same in parts.
void AddMediaRoutes(TSampleRoutes& ARoutes, const PCatalogue& ACatalogue);
void AddFileRoutes(TSampleRoutes& ARoutes, const PCatalogue& ACatalogue);
void AddLendingRoutes(TSampleRoutes& ARoutes, const PCatalogue& ACatalogue);

/// The medium, or a 404.
TJson& NeedMedium(TLibraryCatalogue& ACatalogue, int64_t AId);
