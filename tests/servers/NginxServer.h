// An nginx with a small answer, large files, and uploads.
#pragma once

#include <QByteArray>
#include <QTemporaryDir>

#include <memory>

class TServerProcess;

/// Runs from construction to destruction, on a free port of 127.0.0.1.
class TNginxServer {
public:
    /// Raises std::runtime_error when nginx does not answer.
    TNginxServer();
    TNginxServer(const TNginxServer&) = delete;
    TNginxServer& operator=(const TNginxServer&) = delete;
    ~TNginxServer();

    QByteArray Url(const QByteArray& APath) const;
    /// A file of ABytes under "/files/", made when it is missing; its path.
    QByteArray MakeFile(const QByteArray& AName, qint64 ABytes);
    /// A path in the server's temporary folder. "/upload/NAME" is stored under "upload/NAME".
    QString FilePath(const QString& AName) const { return FFolder.filePath(AName); }

private:
    QTemporaryDir FFolder;
    int FPort;
    std::unique_ptr<TServerProcess> FProcess;
};
