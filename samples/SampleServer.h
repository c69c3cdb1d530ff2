// The HTTP server behind the sample services.
#pragma once

#include "platform/Exceptions.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

/// The sample server could not be started.
ZO_EXCEPTION(ESampleServerError, EException);

/// One request as it reached the server, with what came of it.
struct TSampleRequest {
    struct TPart {
        std::string FileName;
        std::string Content;
    };

    std::string Method;
    /// Without the query, percent-decoded.
    std::string Path;
    /// From the query and from an urlencoded body.
    std::multimap<std::string, std::string> Params;
    std::multimap<std::string, std::string> Headers;
    /// Empty for a multipart body, which is taken apart into Parts.
    std::string Body;
    std::multimap<std::string, TPart> Parts;
    int Status = 0;
};

/// Serves the library and the clock on a free port of 127.0.0.1, from threads of its own, for as long as it
/// lives. All its data is in memory and starts anew with each server.
class TSampleServer {
public:
    /// Hears of every request after it was answered, on a thread of the server's.
    using TListener = std::function<void(const TSampleRequest&)>;

    /// Listens when the constructor returns. Raises ESampleServerError when no port can be had.
    explicit TSampleServer(TListener AListener = {});
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
