// Runs a fuzz target over files and over the files of folders: what is kept as seeds stays mended.
#include "fuzzers/Fuzz.h"

#include <QDirIterator>
#include <QFile>

namespace {

bool Run(const QString& AFileName) {
    QFile file(AFileName);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "%s: %s\n", qPrintable(AFileName), qPrintable(file.errorString()));
        return false;
    }
    std::printf("%s\n", qPrintable(AFileName));
    std::fflush(stdout);
    const QByteArray bytes = file.readAll();
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                           std::size_t(bytes.size()));
    return true;
}

} // namespace

int main(int AArgc, char** AArgv) {
    int count = 0;
    for (int index = 1; index < AArgc; ++index) {
        const QString path = QString::fromLocal8Bit(AArgv[index]);
        if (!QFileInfo(path).isDir()) {
            count += Run(path) ? 1 : 0;
            continue;
        }
        QDirIterator files(path, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext())
            count += Run(files.next()) ? 1 : 0;
    }
    std::printf("%d inputs\n", count);
    return count > 0 ? 0 : 1; // a folder that has gone must not look like success
}
