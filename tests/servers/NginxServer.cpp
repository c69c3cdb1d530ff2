#include "benchmarks/NginxServer.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

namespace {

sockaddr_in Loopback(quint16 APort) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(APort);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

quint16 FreePort() {
    const int handle = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = Loopback(0);
    socklen_t size = sizeof address;
    ::bind(handle, reinterpret_cast<sockaddr*>(&address), size);
    ::getsockname(handle, reinterpret_cast<sockaddr*>(&address), &size);
    ::close(handle);
    return ntohs(address.sin_port);
}

bool Answers(quint16 APort) {
    const int handle = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = Loopback(APort);
    const bool connected = ::connect(handle, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    ::close(handle);
    return connected;
}

QByteArray Configuration(const QByteArray& AFolder, quint16 APort) {
    QByteArray text = R"(daemon off;
worker_processes 1;
user root;
pid FOLDER/nginx.pid;
error_log FOLDER/error.log;
events { worker_connections 64; }
http {
    access_log off;
    sendfile on;
    client_max_body_size 0;
    client_body_temp_path FOLDER/body;
    proxy_temp_path FOLDER/proxy;
    fastcgi_temp_path FOLDER/fastcgi;
    uwsgi_temp_path FOLDER/uwsgi;
    scgi_temp_path FOLDER/scgi;
    server {
        listen 127.0.0.1:PORT;
        keepalive_requests 100000000;
        location /small { default_type application/json; return 200 '{"id":$connection_requests,"name":"river"}'; }
        location /files/ { root FOLDER; }
        location /upload/ { root FOLDER; dav_methods PUT; }
    }
}
)";
    return text.replace("FOLDER", AFolder).replace("PORT", QByteArray::number(APort));
}

} // namespace

TNginxServer::TNginxServer() : FPort(FreePort()) {
    QDir(FFolder.path()).mkpath(QStringLiteral("files"));
    QDir(FFolder.path()).mkpath(QStringLiteral("upload"));
    QFile configuration(FFolder.filePath(QStringLiteral("nginx.conf")));
    if (!configuration.open(QIODevice::WriteOnly))
        throw std::runtime_error("nginx's configuration cannot be written");
    configuration.write(Configuration(FFolder.path().toUtf8(), FPort));
    configuration.close();
    const QString folder = FFolder.path() + QLatin1Char('/');
    FProcess.start(QStringLiteral("/usr/sbin/nginx"),
                   {QStringLiteral("-p"), folder, QStringLiteral("-c"), configuration.fileName(),
                    QStringLiteral("-e"), folder + QStringLiteral("error.log")});
    QElapsedTimer timer;
    timer.start();
    while (!Answers(FPort)) {
        if (timer.elapsed() > 10'000)
            throw std::runtime_error("nginx does not answer");
        QThread::msleep(20);
    }
}

TNginxServer::~TNginxServer() {
    FProcess.terminate();
    FProcess.waitForFinished(5000);
}

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
