// The library as a component on forms.
#pragma once

#include "components/ServiceComponent.h"

#include "samples/LibraryService.h"

/// Stands on a form for a TLibraryService; the samples must have been started.
class TLibraryServiceComponent final : public TZOComponentOf<TLibraryService> {
public:
    using TZOComponentOf::TZOComponentOf;
};
