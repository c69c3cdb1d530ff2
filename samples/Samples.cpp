#include "samples/Samples.h"

#include "samples/ClockService.h"
#include "samples/LibraryService.h"
#include "samples/SampleServer.h"

namespace {

/// What runs between StartSamples and StopSamples.
class TSamples {
public:
    TSamples()
        : FLibrary(TLibraryService::DeclareClass(FServer.LibraryUrl(), TSampleServer::ApiKey())),
          FClock(TClockService::DeclareClass(FServer.ClockUrl())) {
        TZOTypeInfo::Register(typeid(TLibraryService), FLibrary->TypeInfo());
        TZOTypeInfo::Register(typeid(TClockService), FClock->TypeInfo());
        TZORestServiceClass::Register(FLibrary.get());
        TZORestServiceClass::Register(FClock.get());
    }
    TSamples(const TSamples&) = delete;
    TSamples& operator=(const TSamples&) = delete;

    ~TSamples() {
        TZORestServiceClass::Unregister(FClock.get());
        TZORestServiceClass::Unregister(FLibrary.get());
        TZOTypeInfo::Register(typeid(TClockService), nullptr);
        TZOTypeInfo::Register(typeid(TLibraryService), nullptr);
    }

private:
    TSampleServer FServer;
    std::unique_ptr<TZORestServiceClass> FLibrary;
    std::unique_ptr<TZORestServiceClass> FClock;
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
