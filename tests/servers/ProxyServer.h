// A proxy.
#pragma once

#include "tests/servers/RawServer.h"

/// Serves on a free port of 127.0.0.1 for as long as it lives. Requests with an absolute address are answered
/// by the proxy itself with {"text": "by proxy"}; tunnels all lead to one port of 127.0.0.1.
class TProxyServer {
public:
    /// ATunnelPort is where tunnels lead; 0: they are refused with status 403.
    explicit TProxyServer(int ATunnelPort = 0);

    /// "http://127.0.0.1:PORT".
    QByteArray Url() const { return FServer.Url({}); }
    int Port() const noexcept { return FServer.Port(); }
    /// The requests to the proxy; what goes through a tunnel is not among them.
    QList<QByteArray> Requests() const { return FServer.Requests(); }

private:
    void Serve(TRawServer::TConnection& AConnection) const;

    int FTunnelPort;
    TRawServer FServer;
};
