#include "samples/Samples.h"

#include "samples/ClockService.h"
#include "samples/HttpbinService.h"
#include "samples/LibraryService.h"
#include "samples/SampleServer.h"

#include <optional>

namespace {

/// A sample class that is registered, and findable by its C++ type, for as long as this lives.
template <class TService>
class TRegistered {
public:
    explicit TRegistered(std::unique_ptr<TZORestServiceClass> AClass) : FClass(std::move(AClass)) {
        TZOTypeInfo::Register(typeid(TService), FClass->TypeInfo());
        TZORestServiceClass::Register(FClass.get());
    }
    TRegistered(const TRegistered&) = delete;
    TRegistered& operator=(const TRegistered&) = delete;
    ~TRegistered() {
        TZORestServiceClass::Unregister(FClass.get());
        TZOTypeInfo::Register(typeid(TService), nullptr);
    }

private:
    std::unique_ptr<TZORestServiceClass> FClass;
};

/// What runs between StartSamples and StopSamples.
class TSamples {
public:
    TSamples() {
        const QString httpbin = qEnvironmentVariable("ZO_SAMPLE_HTTPBIN");
        if (!httpbin.isEmpty())
            FHttpbin.emplace(THttpbinService::DeclareClass(httpbin));
    }

private:
    TSampleServer FServer;
    TRegistered<TLibraryService> FLibrary{
        TLibraryService::DeclareClass(FServer.LibraryUrl(), TSampleServer::ApiKey())};
    TRegistered<TClockService> FClock{TClockService::DeclareClass(FServer.ClockUrl())};
    std::optional<TRegistered<THttpbinService>> FHttpbin;
};

std::unique_ptr<TSamples>& Running() {
    static std::unique_ptr<TSamples> samples;
    return samples;
}

} // namespace

void StartSamples() {
    if (!Running())
        Running() = std::make_unique<TSamples>();
}

void StopSamples() { Running().reset(); }
