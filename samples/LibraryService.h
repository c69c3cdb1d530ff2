// A city library's catalogue, readers and loans: the sample that uses everything a service can declare.
#pragma once

#include "runtime/service/RestService.h"

/// The component of the library service.
class TLibraryService : public TZORestService {
    Q_OBJECT

public:
    using TZORestService::TZORestService;

    /// The class, not yet registered. ABaseUrl is where its operations live; every new instance starts with
    /// AApiKey.
    static std::unique_ptr<TZORestServiceClass> DeclareClass(const QString& ABaseUrl, const QString& AApiKey);
};
