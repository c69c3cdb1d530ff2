// The sample services as a service plug-in.
#include "samples/Samples.h"

#include "runtime/service/ServicePlugins.h"

ZO_START_SERVICES {
    StartSamples();
    return StopSamples;
}
