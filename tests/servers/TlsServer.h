// A server whose certificate nobody has vouched for.
#pragma once

#include "tests/servers/ServerProcess.h"

#include <QTemporaryDir>

#include <optional>

/// Serves one answer over TLS on a free port of 127.0.0.1 for as long as it lives.
class TTlsServer {
public:
    /// AAnswer is the whole answer, status line included. The certificate is made out to ASubject, for
    /// example "IP:127.0.0.1", and signed by itself. Raises std::runtime_error when openssl is not there.
    TTlsServer(const QByteArray& AAnswer, const QString& ASubject);

    /// Where the answer is.
    QString Url() const;
    /// The certificate as a PEM file.
    QString CertificateFile() const { return FFolder.filePath(QStringLiteral("certificate.pem")); }

private:
    void MakeCertificate(const QString& ASubject) const;

    QTemporaryDir FFolder;
    std::optional<TServerProcess> FProcess;
    QString FPort;
};
