// Time zones, dates and instants: the sample of a service that needs no credentials.
#pragma once

#include "runtime/service/RestService.h"

/// The component of the clock service.
class TClockService : public TZORestService {
    Q_OBJECT

public:
    using TZORestService::TZORestService;

    /// The class, not yet registered. ABaseUrl is where its operations live.
    static std::unique_ptr<TZORestServiceClass> DeclareClass(const QString& ABaseUrl);
};
