#include "tests/servers/NginxTlsServer.h"

#include "tests/servers/Nginx.h"
#include "tests/servers/RawServer.h"
#include "tests/servers/ServerProcess.h"

#include <QFileInfo>

namespace {

constexpr const char* SiteText = R"(    server {
        listen 127.0.0.1:PORT ssl;
        ssl_certificate FOLDER/CERTIFICATE.pem;
        ssl_certificate_key FOLDER/CERTIFICATE.key;
        OPTIONS
        location / { default_type application/json; return 200 '{"text": "fine"}'; }
    }
)";

} // namespace

TNginxTlsServer::TNginxTlsServer() {
    const QString here = QStringLiteral("IP:127.0.0.1,DNS:localhost,DNS:service.test");
    FCa.Issue(QStringLiteral("good"), here);
    FCa.Issue(QStringLiteral("expired"), here, true);
    FCa.Issue(QStringLiteral("other"), QStringLiteral("DNS:elsewhere.test"));
    QByteArray sites = Site(QStringLiteral("good"), "good", {});
    sites += Site(QStringLiteral("expired"), "expired", {});
    sites += Site(QStringLiteral("other-name"), "other", {});
    sites += Site(QStringLiteral("tls-1.1"), "good", "ssl_protocols TLSv1.1; ssl_ciphers ALL:@SECLEVEL=0;");
    sites += Site(QStringLiteral("tls-1.2"), "good", "ssl_protocols TLSv1.2;");
    sites += Site(QStringLiteral("tls-1.3"), "good", "ssl_protocols TLSv1.3;");
    sites += Site(QStringLiteral("http-2"), "good", {}).replace(" ssl;", " ssl http2;");
    FProcess = StartNginx(QFileInfo(FCa.CaFile()).path(), sites, FPorts.values());
}

TNginxTlsServer::~TNginxTlsServer() = default;

QString TNginxTlsServer::Place(const QString& ASite) const {
    return QStringLiteral("127.0.0.1:%1").arg(Port(ASite));
}

QByteArray TNginxTlsServer::Site(const QString& AName, const QByteArray& ACertificate,
                                 const QByteArray& AOptions) {
    FPorts.insert(AName, ClosedPort());
    return QByteArray(SiteText)
        .replace("PORT", QByteArray::number(Port(AName)))
        .replace("CERTIFICATE", ACertificate)
        .replace("OPTIONS", AOptions);
}
