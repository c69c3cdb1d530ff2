#include "tests/servers/NginxTlsServer.h"

#include "tests/servers/RawServer.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <csignal>
#include <stdexcept>
#include <sys/prctl.h>

namespace {

constexpr int StartMs = 30'000;

constexpr const char* Configuration = R"(daemon off;
master_process off;
user root;
pid FOLDER/nginx.pid;
error_log FOLDER/error.log;
events { worker_connections 64; }
http {
    access_log off;
    client_body_temp_path FOLDER/body; proxy_temp_path FOLDER/proxy;
    fastcgi_temp_path FOLDER/fastcgi; uwsgi_temp_path FOLDER/uwsgi; scgi_temp_path FOLDER/scgi;
SITES}
)";

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
    QFile file(FCa.FilePath(QStringLiteral("nginx.conf")));
    if (!file.open(QIODevice::WriteOnly))
        throw std::runtime_error("nginx's configuration cannot be written");
    file.write(QByteArray(Configuration)
                   .replace("SITES", sites)
                   .replace("FOLDER", QFileInfo(FCa.CaFile()).path().toUtf8()));
    file.close();
    Start();
}

TNginxTlsServer::~TNginxTlsServer() {
    FProcess.terminate();
    if (!FProcess.waitForFinished(5000)) {
        FProcess.kill();
        FProcess.waitForFinished();
    }
}

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

void TNginxTlsServer::Start() {
    FProcess.setProcessChannelMode(QProcess::MergedChannels);
    FProcess.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    FProcess.start(QStringLiteral("/usr/sbin/nginx"),
                   {QStringLiteral("-c"), FCa.FilePath(QStringLiteral("nginx.conf")), QStringLiteral("-e"),
                    FCa.FilePath(QStringLiteral("error.log"))});
    QElapsedTimer timer;
    timer.start();
    for (const int port : FPorts) {
        while (!IsListening(port)) {
            if (FProcess.waitForFinished(20) || timer.elapsed() > StartMs)
                throw std::runtime_error("nginx does not answer: " + FProcess.readAll().toStdString());
        }
    }
}
