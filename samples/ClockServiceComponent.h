// The clock as a component on forms.
#pragma once

#include "components/ServiceComponent.h"

#include "samples/ClockService.h"

/// Stands on a form for a TClockService; the samples must have been started.
class TClockServiceComponent final : public TZOComponentOf<TClockService> {
public:
    using TZOComponentOf::TZOComponentOf;
};
