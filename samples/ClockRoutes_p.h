// The answers of the clock.
#pragma once

#include "samples/SampleHttp_p.h"

/// Adds the clock's handlers to AServer, below APrefix.
void AddClockRoutes(httplib::Server& AServer, const std::string& APrefix);
