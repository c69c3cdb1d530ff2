// The API documents that stand among the services.
#pragma once

#include "openapi/ApiDocument.h"

#include <QFileSystemWatcher>
#include <QHash>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <memory>
#include <vector>

class TZOShellFrame;

/// Reads documents, registers their service classes and shows them in a frame, and watches their files.
class TZOOpenDocuments final : public QObject {
    Q_OBJECT

public:
    enum TOutcome {
        doOpened,
        doRefused,  ///< it describes no service; its problems say why
        doCancelled ///< the progress function ended it
    };

    /// The services of documents that are still open when AShell dies go with it.
    TZOOpenDocuments(TZOShellFrame* AShell, QObject* AOwner);
    ~TZOOpenDocuments() override;

    /// Reads AFileName and adds its service, in the place of what was read from it before: pages of that are
    /// made again where the new one has what they show. When the new one is refused, the old one stays.
    TOutcome Open(const QString& AFileName, const TZOApiDocument::TProgress& AProgress);
    /// Removes the service; pages of it are left.
    void Close(const QString& APath);

    /// The paths of the open documents, in the order of their services.
    QStringList Paths() const;
    /// The open document of that path; null when there is none.
    const TZOApiDocument* Document(const QString& APath) const;
    /// What is wrong with all documents, those that were refused among them.
    TZOApiProblems Problems() const;

    /// How a document is called here: its canonical path, or where it would be.
    static QString PathOf(const QString& AFileName);

Q_SIGNALS:
    /// A file of the document was written since it was read. Not repeated until it is opened again.
    void Changed(const QString& APath);

private:
    struct TStamp {
        qint64 Time = 0;
        qint64 Size = -1;
        bool operator==(const TStamp&) const = default;
    };
    struct TEntry {
        QString Path;
        std::unique_ptr<TZOApiDocument> Document;
        bool IsRefused = false;
        bool IsReported = false;
        QHash<QString, TStamp> Stamps;
    };

    void Put(TEntry& AEntry, std::unique_ptr<TZOApiDocument> ADocument);
    void Hide(TEntry& AEntry);
    void Watch(TEntry& AEntry);
    void CheckFiles();
    TEntry* Find(const QString& APath, bool AIsRefused);
    static TStamp StampOf(const QString& AFile);

    QPointer<TZOShellFrame> FShell;
    std::vector<TEntry> FEntries;
    QFileSystemWatcher FWatcher;
    QTimer FCheck;
};
