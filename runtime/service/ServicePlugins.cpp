#include "runtime/service/ServicePlugins.h"

#include "runtime/service/RestService.h"

#include "platform/Exceptions.h"

#include <QDir>
#include <QLibrary>
#include <QStandardPaths>

#include <algorithm>

#include <dlfcn.h>

namespace {

using TStart = TZOStopServices (*)();

const QString Folder = QStringLiteral("zobridgework/services");

} // namespace

struct TZOServicePlugins::TPlugin {
    QString Name;
    TZOStopServices Stop;
};

QString TZOServicePlugins::TFailure::ToText() const {
    return QStringLiteral("The service plug-in %1 was skipped: %2").arg(FileName, Reason);
}

TZOServicePlugins::TZOServicePlugins() = default;

TZOServicePlugins::~TZOServicePlugins() {
    for (auto plugin = FPlugins.rbegin(); plugin != FPlugins.rend(); ++plugin) {
        if (plugin->Stop)
            plugin->Stop();
    }
}

void TZOServicePlugins::LoadAll() {
    Load(UserFolder());
    Load(InstalledFolder());
}

void TZOServicePlugins::Load(const QString& AFolder) {
    const auto files =
        QDir(AFolder).entryInfoList({QStringLiteral("*.so")}, QDir::Files | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo& file : files) {
        const auto isKnown = std::any_of(FPlugins.begin(), FPlugins.end(),
                                         [&](const TPlugin& p) { return p.Name == file.fileName(); });
        if (!isKnown)
            LoadFile(file.absoluteFilePath());
    }
}

void TZOServicePlugins::LoadFile(const QString& AFileName) {
    const auto fail = [&](const QString& AReason) { FFailures.append({AFileName, AReason}); };
    QLibrary library(AFileName);
    // Everything that it lacks is told now, not in the middle of a request.
    library.setLoadHints(QLibrary::ResolveAllSymbolsHint);
    if (!library.load())
        return fail(library.errorString());
    const auto start = reinterpret_cast<TStart>(library.resolve("ZOStartServices"));
    if (!start) {
        library.unload();
        return fail(QStringLiteral("it exports no function ZOStartServices."));
    }
    const auto before = TZOTypeInfo::Services();
    TZOStopServices stop = nullptr;
    QString reason;
    try {
        stop = start();
        // It was made for another version of the runtime, which it brought along.
        if (TZOTypeInfo::Services().size() == before.size())
            reason = QStringLiteral("it registered no service class.");
    } catch (const std::exception& e) {
        reason = ExceptionMessage(e);
    }
    if (reason.isEmpty()) {
        FPlugins.push_back({QFileInfo(AFileName).fileName(), stop});
        return;
    }
    for (const TZORestServiceClass* left : TZOTypeInfo::Services()) {
        if (!before.contains(left))
            TZORestServiceClass::Unregister(left);
    }
    if (stop)
        stop();
    fail(reason);
}

QString TZOServicePlugins::InstalledFolder() {
    Dl_info info{};
    if (!dladdr(reinterpret_cast<const void*>(&TZOServicePlugins::InstalledFolder), &info))
        return {};
    return QFileInfo(QFile::decodeName(info.dli_fname)).dir().filePath(Folder);
}

QString TZOServicePlugins::UserFolder() {
    return QDir(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)).filePath(Folder);
}
