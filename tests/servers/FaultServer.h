// A server that does wrong whatever a server can do wrong.
#pragma once

#include "tests/servers/RawServer.h"

#include <QString>

#include <vector>

/// A way to answer wrongly, and what the client has to make of it.
struct TFault {
    const char* Name;
    /// The failure's class and message; "%1" is the server's place, "%2" the place of
    /// TFaultServer::Elsewhere. Empty: the answer can be used.
    const char* ClassName;
    const char* Message;
};

/// Serves on two free ports of 127.0.0.1 while it lives. The last word of a request's target, behind "=" or
/// "/", names the fault; any other word is answered with {"text": "fine"}.
class TFaultServer {
public:
    /// What the limits of a client have to be for the failures to come as they are listed.
    static constexpr qint64 MaxBodyBytes = 1024 * 1024;

    /// Short for what keeps silent: a busy machine may take long for any other answer.
    static int StallTimeoutMs(const QByteArray& AFault);

    /// Every fault that a GET request can meet.
    static const std::vector<TFault>& Faults();

    TFaultServer();

    QByteArray Url(const QByteArray& APath = {}) const { return FServer.Url(APath); }
    const TRawServer& Server() const noexcept { return FServer; }
    /// Another origin, where everything is fine.
    const TRawServer& Elsewhere() const noexcept { return FElsewhere; }
    /// The message of AFault from this server.
    QString MessageOf(const TFault& AFault) const;

private:
    void Serve(TRawServer::TConnection& AConnection) const;

    TRawServer FElsewhere;
    TRawServer FServer;
};
