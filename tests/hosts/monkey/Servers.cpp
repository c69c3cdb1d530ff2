// The servers that the explorer is driven against, in a process of their own: what they keep and the threads
// they take are not the explorer's.
#include "tests/servers/FaultServer.h"

#include "samples/SampleServer.h"

#include <QString>

#include <csignal>
#include <cstdio>

int main() {
    sigset_t ends;
    sigemptyset(&ends);
    sigaddset(&ends, SIGTERM);
    sigaddset(&ends, SIGINT);
    // Before there are threads, which all keep to it.
    pthread_sigmask(SIG_BLOCK, &ends, nullptr);
    const TFaultServer faults;
    const TSampleServer samples;
    std::printf("faults %s\nlibrary %s\nclock %s\n", faults.Url().constData(),
                qUtf8Printable(samples.LibraryUrl()), qUtf8Printable(samples.ClockUrl()));
    std::fflush(stdout);
    int signal = 0;
    sigwait(&ends, &signal);
    return 0;
}
