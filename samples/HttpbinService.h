// A service class over httpbin, a server that sends back what it was sent.
#pragma once

#include "runtime/service/RestService.h"

/// The component of the httpbin service.
class THttpbinService : public TZORestService {
    Q_OBJECT

public:
    using TZORestService::TZORestService;

    /// The class, not yet registered. ABaseUrl is the server's address. New instances start with the API key
    /// "user:password", which BasicAuth and Bearer send.
    static std::unique_ptr<TZORestServiceClass> DeclareClass(const QString& ABaseUrl);
};
