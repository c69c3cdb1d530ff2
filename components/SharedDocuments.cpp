#include "components/SharedDocuments.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QStandardPaths>

namespace {

const QString Folder = QStringLiteral("zobridgework/documents");

} // namespace

QString SharedDocuments::UserFolder() {
    return QDir(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)).filePath(Folder);
}

QString SharedDocuments::Find(const QString& AName) {
    if (AName.isEmpty() || QFileInfo(AName).isFile())
        return AName;
    const QString kept =
        QStandardPaths::locate(QStandardPaths::GenericDataLocation, Folder + QLatin1Char('/') + AName);
    if (!kept.isEmpty())
        return kept;
    const QString beside = QDir(QCoreApplication::applicationDirPath()).filePath(AName);
    return QFileInfo(beside).isFile() ? beside : QString();
}

std::shared_ptr<TZOApiDocument> SharedDocuments::Load(const QString& AFileName) {
    static QHash<QString, std::weak_ptr<TZOApiDocument>> documents;
    const QString canonical = QFileInfo(AFileName).canonicalFilePath();
    const QString path = canonical.isEmpty() ? AFileName : canonical;
    std::shared_ptr<TZOApiDocument> document = documents.value(path).lock();
    if (!document) {
        document = TZOApiDocument::Load(path);
        documents.insert(path, document);
    }
    return document;
}
