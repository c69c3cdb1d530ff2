#include "tests/servers/Nginx.h"

#include "tests/servers/ServerProcess.h"

#include <QDir>
#include <QFile>

#include <stdexcept>

namespace {

constexpr const char* Configuration = R"(daemon off;
master_process off;
user root;
pid FOLDER/nginx.pid;
error_log FOLDER/error.log;
events { worker_connections 64; }
http {
    access_log off;
    sendfile on;
    client_max_body_size 0;
    client_body_temp_path FOLDER/body; proxy_temp_path FOLDER/proxy;
    fastcgi_temp_path FOLDER/fastcgi; uwsgi_temp_path FOLDER/uwsgi; scgi_temp_path FOLDER/scgi;
SITES}
)";

} // namespace

std::unique_ptr<TServerProcess> StartNginx(const QString& AFolder, const QByteArray& ASites,
                                           const QList<int>& APorts) {
    const QDir folder(AFolder);
    QFile file(folder.filePath(QStringLiteral("nginx.conf")));
    if (!file.open(QIODevice::WriteOnly))
        throw std::runtime_error("nginx's configuration cannot be written");
    file.write(QByteArray(Configuration).replace("SITES", ASites).replace("FOLDER", AFolder.toUtf8()));
    file.close();
    auto process = std::make_unique<TServerProcess>(
        QStringLiteral("/usr/sbin/nginx"),
        QStringList{QStringLiteral("-c"), file.fileName(), QStringLiteral("-e"),
                    folder.filePath(QStringLiteral("error.log"))});
    process->WaitForPorts(APorts);
    return process;
}
