// Settings files: whatever stands in one, reading and writing settings ends in a sentence or works, and
// what is not ours is not lost.
#include "fuzzers/Fuzz.h"

#include "platform/Exceptions.h"
#include "platform/Registry.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {

/// Whether a file with these bytes is still in AFolder, under whatever name.
bool IsKept(const QDir& AFolder, const QByteArray& ABytes) {
    for (const QString& name : AFolder.entryList(QDir::Files | QDir::Hidden)) {
        QFile file(AFolder.filePath(name));
        if (file.open(QIODevice::ReadOnly) && file.readAll() == ABytes)
            return true;
    }
    return false;
}

bool Write() {
    try {
        TRegistry registry;
        if (!registry.OpenKey(QStringLiteral("\\Software\\Fuzz"), true))
            return false;
        registry.WriteString(QStringLiteral("Name"), QStringLiteral("value"));
        registry.CloseKey();
        return true;
    } catch (const ERegistryException&) {
        return false;
    }
}

QString Read() {
    try {
        TRegistry registry;
        if (!registry.OpenKeyReadOnly(QStringLiteral("\\Software\\Fuzz")))
            return {};
        for (const QString& name : registry.GetValueNames())
            registry.ValueExists(name);
        return registry.ReadString(QStringLiteral("Name"));
    } catch (const ERegistryException&) {
        return {};
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* AData, std::size_t ASize) {
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("settings.db"));
    qputenv("ZO_SETTINGS_FILE", name.toLocal8Bit());
    TRegistry::SetReportHandler(
        [](const QString& AMessage) { Fuzz::Require(!AMessage.isEmpty(), "a report says something"); });
    const QByteArray bytes = Fuzz::Bytes(AData, ASize);
    QFile file(name);
    Fuzz::Require(file.open(QIODevice::WriteOnly), "the file can be written");
    file.write(bytes);
    file.close();

    Read();
    if (Write())
        Fuzz::Require(Read() == QStringLiteral("value"), "what was acknowledged is there");
    else
        Fuzz::Require(bytes.isEmpty() || IsKept(QDir(folder.path()), bytes),
                      "what cannot be used is left alone");
    return 0;
}
