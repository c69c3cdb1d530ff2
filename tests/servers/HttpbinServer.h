// An HTTP server that none of us wrote.
#pragma once

#include "tests/servers/ServerProcess.h"

/// Runs httpbin on a free port of 127.0.0.1 for as long as it lives. Raises std::runtime_error when it
/// cannot be started.
class THttpbinServer {
public:
    THttpbinServer();

    /// The server's address, without a slash at its end.
    const QString& Url() const noexcept { return FUrl; }

private:
    TServerProcess FProcess;
    QString FUrl;
};
