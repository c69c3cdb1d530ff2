#include "tests/servers/ProxyServer.h"

TProxyServer::TProxyServer(int ATunnelPort)
    : FTunnelPort(ATunnelPort),
      FServer([this](TRawServer::TConnection& AConnection) { Serve(AConnection); }) {}

void TProxyServer::Serve(TRawServer::TConnection& AConnection) const {
    for (;;) {
        const QByteArray request = AConnection.ReadRequest();
        if (request.isEmpty())
            return;
        if (!request.startsWith("CONNECT ")) {
            AConnection.Write(TRawServer::Answer(R"({"text": "by proxy"})", "application/json"));
            continue;
        }
        if (FTunnelPort == 0) {
            AConnection.Write(TRawServer::Answer("Not through here", "text/plain", "403 Forbidden"));
            continue;
        }
        AConnection.Write("HTTP/1.1 200 Connection established\r\n\r\n");
        AConnection.RelayTo(FTunnelPort);
        return;
    }
}
