#include "hosts/standalone/OpenDocuments.h"

#include "shell/ShellFrame.h"

#include <QDateTime>
#include <QFileInfo>

#include <algorithm>

namespace {

/// Programs write a file in several steps.
constexpr int SettleMs = 200;

} // namespace

TZOOpenDocuments::TZOOpenDocuments(TZOShellFrame* AShell, QObject* AOwner) : QObject(AOwner), FShell(AShell) {
    FCheck.setSingleShot(true);
    FCheck.setInterval(SettleMs);
    connect(&FCheck, &QTimer::timeout, this, &TZOOpenDocuments::CheckFiles);
    // A file that is replaced by another tells its folder only.
    connect(&FWatcher, &QFileSystemWatcher::fileChanged, &FCheck, qOverload<>(&QTimer::start));
    connect(&FWatcher, &QFileSystemWatcher::directoryChanged, &FCheck, qOverload<>(&QTimer::start));
}

TZOOpenDocuments::~TZOOpenDocuments() {
    for (TEntry& entry : FEntries)
        Hide(entry);
}

QString TZOOpenDocuments::PathOf(const QString& AFileName) {
    const QFileInfo info(AFileName);
    return info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
}

TZOOpenDocuments::TOutcome TZOOpenDocuments::Open(const QString& AFileName,
                                                  const TZOApiDocument::TProgress& AProgress) {
    const QString path = PathOf(AFileName);
    auto document = TZOApiDocument::Load(path, AProgress);
    if (!document)
        return doCancelled;
    const bool isRefused = !document->ServiceClass();
    std::erase_if(FEntries, [&](const TEntry& e) { return e.IsRefused && e.Path == path; });
    TEntry* entry = Find(path, isRefused);
    if (!entry) {
        entry = &FEntries.emplace_back();
        entry->Path = path;
        entry->IsRefused = isRefused;
    }
    Put(*entry, std::move(document));
    Watch(*entry);
    return isRefused ? doRefused : doOpened;
}

void TZOOpenDocuments::Close(const QString& APath) {
    if (TEntry* entry = Find(APath, false)) {
        Hide(*entry);
        FEntries.erase(FEntries.begin() + (entry - FEntries.data()));
    }
}

void TZOOpenDocuments::Put(TEntry& AEntry, std::unique_ptr<TZOApiDocument> ADocument) {
    // What it was made of goes when nothing refers to it any more.
    const auto old = std::exchange(AEntry.Document, std::move(ADocument));
    const TZORestServiceClass* oldClass = old ? old->ServiceClass() : nullptr;
    const TZORestServiceClass* newClass = AEntry.Document->ServiceClass();
    if (newClass)
        TZORestServiceClass::Register(newClass);
    if (FShell && oldClass && newClass)
        FShell->ServiceClassReplaced(oldClass, newClass);
    else if (FShell && newClass)
        FShell->ServiceClassAdded(newClass);
    if (oldClass)
        TZORestServiceClass::Unregister(oldClass);
}

void TZOOpenDocuments::Hide(TEntry& AEntry) {
    const TZORestServiceClass* serviceClass = AEntry.Document ? AEntry.Document->ServiceClass() : nullptr;
    if (!serviceClass)
        return;
    if (FShell)
        FShell->ServiceClassRemoved(serviceClass);
    TZORestServiceClass::Unregister(serviceClass);
}

TZOOpenDocuments::TStamp TZOOpenDocuments::StampOf(const QString& AFile) {
    const QFileInfo info(AFile);
    return info.exists() ? TStamp{info.lastModified().toMSecsSinceEpoch(), info.size()} : TStamp{};
}

void TZOOpenDocuments::Watch(TEntry& AEntry) {
    AEntry.IsReported = false;
    AEntry.Stamps.clear();
    for (const QString& file : AEntry.Document->Files()) {
        AEntry.Stamps.insert(file, StampOf(file));
        FWatcher.addPaths({file, QFileInfo(file).path()});
    }
}

void TZOOpenDocuments::CheckFiles() {
    QStringList changed;
    for (TEntry& entry : FEntries) {
        bool hasChanged = false;
        // Operations that were opened since may have brought more files.
        for (const QString& file : entry.Document->Files()) {
            if (!entry.Stamps.contains(file))
                entry.Stamps.insert(file, StampOf(file));
            const TStamp stamp = StampOf(file);
            hasChanged |= stamp.Size > 0 && !(stamp == entry.Stamps.value(file));
            if (stamp.Size >= 0)
                FWatcher.addPath(file);
        }
        if (hasChanged && !std::exchange(entry.IsReported, true))
            changed.append(entry.Path);
    }
    for (const QString& path : changed)
        Q_EMIT Changed(path);
}

TZOOpenDocuments::TEntry* TZOOpenDocuments::Find(const QString& APath, bool AIsRefused) {
    const auto found = std::find_if(FEntries.begin(), FEntries.end(), [&](const TEntry& e) {
        return e.Path == APath && e.IsRefused == AIsRefused;
    });
    return found == FEntries.end() ? nullptr : &*found;
}

QStringList TZOOpenDocuments::Paths() const {
    QStringList paths;
    for (const TEntry& entry : FEntries) {
        if (!entry.IsRefused)
            paths.append(entry.Path);
    }
    return paths;
}

const TZOApiDocument* TZOOpenDocuments::Document(const QString& APath) const {
    const auto found = std::find_if(FEntries.begin(), FEntries.end(),
                                    [&](const TEntry& e) { return !e.IsRefused && e.Path == APath; });
    return found == FEntries.end() ? nullptr : found->Document.get();
}

TZOApiProblems TZOOpenDocuments::Problems() const {
    TZOApiProblems problems;
    for (const TEntry& entry : FEntries) {
        const TZOApiProblems& own = entry.Document->Problems();
        problems.insert(problems.end(), own.begin(), own.end());
    }
    return problems;
}
