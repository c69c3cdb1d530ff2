#include "platform/SavedFile.h"

#include <QSaveFile>

#include <cerrno>
#include <cstring>

#include <unistd.h>

QString PutInPlace(QSaveFile& AFile) {
    if (!AFile.flush())
        return AFile.errorString();
    // Some file systems have nothing to wait for.
    if (::fsync(AFile.handle()) != 0 && errno != EINVAL && errno != EROFS && errno != ENOTSUP)
        return QString::fromLocal8Bit(std::strerror(errno));
    return AFile.commit() ? QString() : AFile.errorString();
}
