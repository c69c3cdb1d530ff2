#include "tests/hosts/monkey/ProcessFigures.h"

#include <QDir>
#include <QFile>

#include <malloc.h>

TProcessFigures TProcessFigures::Now() {
    // What was freed may still be resident, in amounts that depend on what lies between.
    malloc_trim(0);
    TProcessFigures figures;
    const struct mallinfo2 heap = mallinfo2();
    figures.Allocated = static_cast<qint64>((heap.uordblks + heap.hblkhd) / 1024);
    QFile file(QStringLiteral("/proc/self/status"));
    if (file.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : file.readAll().split('\n')) {
            const QByteArray number = line.mid(line.indexOf(':') + 1).trimmed().split(' ').first();
            if (line.startsWith("VmRSS:"))
                figures.Memory = number.toLongLong();
            else if (line.startsWith("Threads:"))
                figures.Threads = number.toInt();
        }
        file.close();
    }
    const auto entries = QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System);
    figures.Descriptors = static_cast<int>(entries.size()) - 1; // but for the folder that is being read
    return figures;
}

std::ostream& operator<<(std::ostream& AStream, const TProcessFigures& AFigures) {
    return AStream << AFigures.Memory << " KiB (" << AFigures.Allocated << " allocated), "
                   << AFigures.Descriptors << " descriptors, " << AFigures.Threads << " threads";
}

bool CountsMemory() { return Slowness() == 1; }

int Slowness() {
#ifdef __SANITIZE_ADDRESS__
    return 8;
#else
    return 1;
#endif
}
