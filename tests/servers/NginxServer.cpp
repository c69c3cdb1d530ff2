#include "tests/servers/NginxServer.h"

#include "tests/servers/Nginx.h"
#include "tests/servers/RawServer.h"
#include "tests/servers/ServerProcess.h"

#include <QDir>
#include <QFile>

#include <stdexcept>

namespace {

constexpr const char* Site = R"(    server {
        listen 127.0.0.1:PORT;
        keepalive_requests 100000000;
        location /small { default_type application/json; return 200 '{"id":$connection_requests,"name":"river"}'; }
        location /files/ { root FOLDER; }
        location /upload/ { root FOLDER; dav_methods PUT; }
    }
)";

} // namespace

TNginxServer::TNginxServer() : FPort(ClosedPort()) {
    for (const char* name : {"files", "upload"})
        QDir(FFolder.path()).mkdir(QLatin1String(name));
    FProcess =
        StartNginx(FFolder.path(), QByteArray(Site).replace("PORT", QByteArray::number(FPort)), {FPort});
}

TNginxServer::~TNginxServer() = default;

QByteArray TNginxServer::Url(const QByteArray& APath) const {
    return "http://127.0.0.1:" + QByteArray::number(FPort) + APath;
}

QByteArray TNginxServer::MakeFile(const QByteArray& AName, qint64 ABytes) {
    const QString path = FFolder.filePath(QStringLiteral("files/") + QString::fromUtf8(AName));
    QFile file(path);
    if (file.exists())
        return path.toUtf8();
    if (!file.open(QIODevice::WriteOnly))
        throw std::runtime_error("the file to transfer cannot be written");
    QByteArray block(1 << 20, '\0');
    for (qint64 written = 0; written < ABytes; written += block.size()) {
        block[int(written >> 20) % int(block.size())] = char('a' + (written >> 20) % 26);
        if (file.write(block) != block.size())
            throw std::runtime_error("the file to transfer cannot be written");
    }
    return path.toUtf8();
}
