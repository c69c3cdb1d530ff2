// An nginx with good and bad certificates.
#pragma once

#include "tests/servers/PrivateCa.h"

#include <QMap>

#include <memory>

class TServerProcess;

/// Runs from construction to destruction, on a free port of 127.0.0.1 for each of its sites: "good",
/// "expired", "other-name" (a certificate for elsewhere.test), "tls-1.1", "tls-1.2" and "tls-1.3" (that
/// version alone) and "http-2". Every path is answered with {"text": "fine"}.
class TNginxTlsServer {
public:
    /// Raises std::runtime_error when nginx or openssl does not work.
    TNginxTlsServer();
    TNginxTlsServer(const TNginxTlsServer&) = delete;
    TNginxTlsServer& operator=(const TNginxTlsServer&) = delete;
    ~TNginxTlsServer();

    int Port(const QString& ASite) const { return FPorts.value(ASite); }
    /// "127.0.0.1:PORT".
    QString Place(const QString& ASite) const;
    QString CaFile() const { return FCa.CaFile(); }

private:
    QByteArray Site(const QString& AName, const QByteArray& ACertificate, const QByteArray& AOptions);

    TPrivateCa FCa;
    QMap<QString, int> FPorts;
    std::unique_ptr<TServerProcess> FProcess;
};
