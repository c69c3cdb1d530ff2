// The HTTP server behind the sample services.
#pragma once

#include "platform/Exceptions.h"

#include <memory>

/// The sample server could not be started.
ZO_EXCEPTION(ESampleServerError, EException);

/// Serves the library and the clock on a free port of 127.0.0.1, from threads of its own, for as long as it
/// lives. All its data is in memory and starts anew with each server.
class TSampleServer {
public:
    /// Listens when the constructor returns. Raises ESampleServerError when no port can be had.
    TSampleServer();
    TSampleServer(const TSampleServer&) = delete;
    TSampleServer& operator=(const TSampleServer&) = delete;
    /// Waits for requests that are being answered, and at most a second for idle connections that a client
    /// holds open.
    ~TSampleServer();

    int Port() const noexcept;
    /// Where the operations of the library live, and of the clock.
    QString LibraryUrl() const;
    QString ClockUrl() const;

    /// What the library takes as its API key.
    static QString ApiKey();

private:
    class TImpl;
    std::unique_ptr<TImpl> FImpl;
};
