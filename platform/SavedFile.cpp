#include "platform/SavedFile.h"

#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>
#include <cstring>

#include <unistd.h>

std::unique_ptr<QFileDevice> OpenForSaving(const QString& AName) {
    std::unique_ptr<QFileDevice> file;
    if (const QFileInfo info(AName); info.exists() && !info.isFile()) {
        file = std::make_unique<QFile>(AName);
    } else {
        auto saved = std::make_unique<QSaveFile>(AName);
        // Where no file can be made beside it.
        saved->setDirectWriteFallback(true);
        file = std::move(saved);
    }
    file->open(QIODevice::WriteOnly);
    return file;
}

QString PutInPlace(QFileDevice& AFile) {
    if (!AFile.flush())
        return AFile.errorString();
    auto* saved = qobject_cast<QSaveFile*>(&AFile);
    if (!saved)
        return {};
    // Some file systems have nothing to wait for.
    if (::fsync(AFile.handle()) != 0 && errno != EINVAL && errno != EROFS && errno != ENOTSUP)
        return QString::fromLocal8Bit(std::strerror(errno));
    return saved->commit() ? QString() : AFile.errorString();
}
