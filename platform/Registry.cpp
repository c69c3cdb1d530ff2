#include "platform/Registry.h"

#include "platform/Exceptions.h"
#include "platform/SettingsFile_p.h"
#include "platform/Utf8.h"

#include <QFileInfo>
#include <QSet>
#include <QStandardPaths>

namespace {

TRegistry::TReportHandler GReportHandler;
QStringList GPendingReports;

QString Fold(const QString& AName) { return AName.toCaseFolded(); }

QString ParentOf(const QString& APath) {
    return APath.left(std::max<qsizetype>(APath.lastIndexOf(u'\\'), 0));
}

QString NameOf(const QString& APath) { return APath.mid(APath.lastIndexOf(u'\\') + 1); }

// Everything below a key lies between these two in binary order: "]" follows "\".
QString FirstBelow(const QString& AFoldedPath) { return AFoldedPath + u'\\'; }
QString EndBelow(const QString& AFoldedPath) { return AFoldedPath + u']'; }

bool IsSameOrBelow(const QString& AFoldedPath, const QString& AFoldedKey) {
    return AFoldedPath == AFoldedKey || AFoldedPath.startsWith(FirstBelow(AFoldedKey));
}

} // namespace

TRegistry::TRegistry() = default;

TRegistry::~TRegistry() { Abandon(); }

QString TRegistry::FileName() {
    const QString chosen = qEnvironmentVariable("ZO_SETTINGS_FILE");
    if (!chosen.isEmpty())
        return QFileInfo(chosen).absoluteFilePath();
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/zo-bridgework/settings.db");
}

TRegistry::TReportHandler TRegistry::SetReportHandler(TReportHandler AHandler) {
    TReportHandler previous = std::exchange(GReportHandler, std::move(AHandler));
    if (GReportHandler)
        for (const QString& message : std::exchange(GPendingReports, {}))
            GReportHandler(message);
    return previous;
}

void TRegistry::Report(const QString& AMessage) {
    static QSet<QString> reported;
    if (reported.contains(AMessage))
        return;
    reported.insert(AMessage);
    if (GReportHandler)
        GReportHandler(AMessage);
    else
        GPendingReports.append(AMessage);
}

bool TRegistry::OpenKeyReadOnly(const QString& AKey) {
    FHasFailed = false;
    try {
        if (!FFile)
            FFile = TZOSettingsFile::Open(FileName(), false);
        if (!FFile || !FFile->HasTables())
            return false;
        if (FTransaction == trNone) {
            FFile->BeginReading();
            FTransaction = trRead;
        }
        const QString path = FullPath(AKey);
        if (!HasKey(Fold(path))) {
            if (!FKeyOpen)
                Abandon();
            return false;
        }
        FPath = path;
        FKeyOpen = true;
        FReadOnly = true;
        return true;
    } catch (const ERegistryException& e) {
        if (FTransaction == trWrite)
            throw;
        Abandon();
        Report(e.Message());
        FHasFailed = true;
        return false;
    }
}

bool TRegistry::OpenKey(const QString& AKey, bool ACanCreate) {
    const QString path = FullPath(AKey);
    BeginWriting(ACanCreate);
    if (!FFile)
        return false;
    if (!HasKey(Fold(path))) {
        if (!ACanCreate) {
            if (!FKeyOpen)
                Abandon();
            return false;
        }
        CreateKey(path);
    }
    FPath = path;
    FKeyOpen = true;
    FReadOnly = false;
    return true;
}

void TRegistry::BeginWriting(bool ACreate) {
    if (FTransaction == trWrite)
        return;
    // A reader that became a writer could find the file changed under it, so it starts anew.
    if (FTransaction == trRead)
        FFile->Rollback();
    FTransaction = trNone;
    if (!FFile)
        FFile = TZOSettingsFile::Open(FileName(), ACreate);
    if (!FFile)
        return;
    FFile->BeginWriting();
    FTransaction = trWrite;
}

void TRegistry::CreateKey(const QString& APath) {
    for (QString path = APath; !path.isEmpty(); path = ParentOf(path))
        TZOSettingsQuery(*FFile, "INSERT OR IGNORE INTO keys(path, parent, name) VALUES(?, ?, ?)")
            .BindText(Fold(path))
            .BindText(Fold(ParentOf(path)))
            .BindText(NameOf(path))
            .Run();
}

void TRegistry::CloseKey() {
    FKeyOpen = false;
    FPath.clear();
    if (std::exchange(FTransaction, trNone) == trNone)
        return;
    try {
        FFile->Commit();
    } catch (...) {
        Abandon();
        throw;
    }
    TZOSettingsFile::Keep(std::move(FFile));
}

void TRegistry::Abandon() {
    if (FFile)
        TZOSettingsFile::Keep(std::move(FFile));
    FTransaction = trNone;
    FKeyOpen = false;
    FPath.clear();
}

QString TRegistry::FullPath(const QString& AKey) const {
    const QString base = AKey.startsWith(u'\\') ? QString() : FPath;
    return (base.split(u'\\', Qt::SkipEmptyParts) + AKey.split(u'\\', Qt::SkipEmptyParts)).join(u'\\');
}

bool TRegistry::HasKey(const QString& AFoldedPath) const {
    return AFoldedPath.isEmpty() ||
           TZOSettingsQuery(*FFile, "SELECT 1 FROM keys WHERE path=?").BindText(AFoldedPath).Next();
}

bool TRegistry::KeyExists(const QString& AKey) const {
    if (FKeyOpen)
        return HasKey(Fold(FullPath(AKey)));
    TRegistry other;
    return other.OpenKeyReadOnly(AKey);
}

QStringList TRegistry::Names(const char* ASql) const {
    QStringList names;
    if (!FKeyOpen)
        return names;
    TZOSettingsQuery query(*FFile, ASql);
    query.BindText(Fold(FPath));
    while (query.Next())
        names.append(query.Text(0));
    return names;
}

QStringList TRegistry::GetKeyNames() const {
    return Names("SELECT name FROM keys WHERE parent=? ORDER BY path");
}

QStringList TRegistry::GetValueNames() const {
    return Names("SELECT name FROM vals WHERE path=? ORDER BY folded");
}

bool TRegistry::ValueExists(const QString& AName) const {
    return FKeyOpen && TZOSettingsQuery(*FFile, "SELECT 1 FROM vals WHERE path=? AND folded=?")
                           .BindText(Fold(FPath))
                           .BindText(Fold(AName))
                           .Next();
}

QByteArray TRegistry::ReadValue(const QString& AName, bool AIsText) const {
    if (!FKeyOpen)
        return QByteArray();
    TZOSettingsQuery query(*FFile, "SELECT data FROM vals WHERE path=? AND folded=?");
    if (!query.BindText(Fold(FPath)).BindText(Fold(AName)).Next())
        return QByteArray();
    if (query.IsText(0) != AIsText)
        throw ERegistryException(
            QStringLiteral("The setting \"%1\\%2\" in \"%3\" is not of the expected type")
                .arg(FPath, AName, FileName()));
    return query.Bytes(0);
}

QString TRegistry::ReadString(const QString& AName) const { return TextFromUtf8(ReadValue(AName, true)); }

QByteArray TRegistry::ReadBinaryData(const QString& AName) const { return ReadValue(AName, false); }

bool TRegistry::CanWrite() const {
    if (FKeyOpen && FReadOnly)
        throw ERegistryException(
            QStringLiteral("The key \"%1\" in \"%2\" is open for reading only").arg(FPath, FileName()));
    return FKeyOpen;
}

void TRegistry::WriteValue(const QString& AName, bool AIsText, const QByteArray& AData) {
    if (!CanWrite())
        return;
    // A value that exists keeps the name it was first written under. One that is the same already costs no
    // page of the file.
    TZOSettingsQuery(*FFile, "INSERT INTO vals(path, folded, name, data) VALUES(?, ?, ?, ?)"
                             " ON CONFLICT(path, folded) DO UPDATE SET data=excluded.data"
                             " WHERE data IS NOT excluded.data")
        .BindText(Fold(FPath))
        .BindText(Fold(AName))
        .BindText(AName)
        .Bind(AIsText, AData)
        .Run();
}

void TRegistry::WriteString(const QString& AName, const QString& AText) {
    WriteValue(AName, true, AText.toUtf8());
}

void TRegistry::WriteBinaryData(const QString& AName, const QByteArray& AData) {
    WriteValue(AName, false, AData);
}

bool TRegistry::DeleteValue(const QString& AName) {
    return CanWrite() && TZOSettingsQuery(*FFile, "DELETE FROM vals WHERE path=? AND folded=?")
                                 .BindText(Fold(FPath))
                                 .BindText(Fold(AName))
                                 .Run() > 0;
}

bool TRegistry::DeleteKey(const QString& AKey) {
    const QString path = Fold(FullPath(AKey));
    if (!CanWrite() || path.isEmpty() || !HasKey(path))
        return false;
    for (const char* sql : {"DELETE FROM vals WHERE path=?1 OR (path>=?2 AND path<?3)",
                            "DELETE FROM keys WHERE path=?1 OR (path>=?2 AND path<?3)"})
        TZOSettingsQuery(*FFile, sql)
            .BindText(path)
            .BindText(FirstBelow(path))
            .BindText(EndBelow(path))
            .Run();
    if (IsSameOrBelow(Fold(FPath), path))
        CloseKey();
    return true;
}
