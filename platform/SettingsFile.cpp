#include "platform/SettingsFile_p.h"

#include "platform/Exceptions.h"
#include "platform/Registry.h"

#include <sqlite3.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qint64 Format = 1;
constexpr qint64 ApplicationId =
    0x5A4F4253; // "ZOBS", so that another program's database is not taken for ours
constexpr int BusyTimeoutMs = 4000;

/// SQLite keeps these texts as they are, and what they made is known again by them.
constexpr const char* Tables[] = {
    "CREATE TABLE keys(path TEXT PRIMARY KEY, parent TEXT NOT NULL, name TEXT NOT NULL) WITHOUT ROWID",
    "CREATE INDEX keys_by_parent ON keys(parent)",
    ("CREATE TABLE vals(path TEXT NOT NULL, folded TEXT NOT NULL, name TEXT NOT NULL,"
     " data NOT NULL, PRIMARY KEY(path, folded)) WITHOUT ROWID")};

[[noreturn]] void Raise(const QString& AFileName, const QString& AReason) {
    throw ERegistryException(
        QStringLiteral("The settings file \"%1\" cannot be used: %2").arg(AFileName, AReason));
}

[[noreturn]] void RaiseSystemError(const QString& AFileName) {
    Raise(AFileName, QString::fromLocal8Bit(std::strerror(errno)));
}

// SQLite's own waiting sleeps ever longer, and a writer that writes without pause would never let it in.
int WaitForOthers(void*, int ATurn) {
    if (ATurn >= BusyTimeoutMs)
        return 0;
    ::usleep(1000);
    return 1;
}

bool IsDamage(int ACode) { return (ACode & 0xFF) == SQLITE_CORRUPT || (ACode & 0xFF) == SQLITE_NOTADB; }

// A file is read through once per process; after that damage shows in the statement that meets it.
QSet<QString>& CheckedFiles() {
    static QSet<QString> files;
    return files;
}

void CreateFolder(const QString& AFolder) {
    if (QFileInfo(AFolder).isDir())
        return;
    const QString parent = QFileInfo(AFolder).absolutePath();
    if (parent != AFolder)
        CreateFolder(parent);
    const QByteArray name = QFile::encodeName(AFolder);
    if (::mkdir(name.constData(), 0700) == 0)
        ::chmod(name.constData(), 0700); // a tight umask may have left too little
    else if (errno != EEXIST)
        RaiseSystemError(AFolder);
}

// SQLite would make the file with the umask's mode; its side files follow the mode of the file it finds.
void CreateFile(const QString& AFileName) {
    CreateFolder(QFileInfo(AFileName).absolutePath());
    const int file =
        ::open(QFile::encodeName(AFileName).constData(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, 0600);
    if (file < 0 && errno != EEXIST)
        RaiseSystemError(AFileName);
    if (file >= 0) {
        ::fchmod(file, 0600);
        ::close(file);
    }
}

// A file that came back from a backup or an archive may have become readable to others.
void TightenMode(const QString& AFileName) {
    struct stat status = {};
    const QByteArray name = QFile::encodeName(AFileName);
    if (::stat(name.constData(), &status) != 0 || !S_ISREG(status.st_mode) || (status.st_mode & 0077) == 0)
        return;
    const bool isNarrowed = ::chmod(name.constData(), 0600) == 0;
    const QString end = isNarrowed ? QStringLiteral("Only you can now; secrets in it may have been read.")
                                   : QStringLiteral("That could not be changed: %1.")
                                         .arg(QString::fromLocal8Bit(std::strerror(errno)));
    TRegistry::Report(
        QStringLiteral("The settings file \"%1\" could be opened by other users of this computer. %2")
            .arg(AFileName, end));
}

/// Keeps two processes from setting the same file aside, the second one hitting the first one's new file.
class TFolderLock {
public:
    explicit TFolderLock(const QString& AFolder)
        : FFolder(::open(QFile::encodeName(AFolder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        if (FFolder >= 0)
            ::flock(FFolder, LOCK_EX);
    }
    ~TFolderLock() {
        if (FFolder >= 0)
            ::close(FFolder);
    }
    TFolderLock(const TFolderLock&) = delete;
    TFolderLock& operator=(const TFolderLock&) = delete;

private:
    int FFolder;
};

bool IsSameTime(const timespec& AFirst, const timespec& ASecond) {
    return AFirst.tv_sec == ASecond.tv_sec && AFirst.tv_nsec == ASecond.tv_nsec;
}

QString AsideName(const QString& AFileName) {
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    const QString name = AFileName + QStringLiteral(".damaged-") + stamp;
    QString free = name;
    for (int i = 2; QFileInfo::exists(free); ++i)
        free = QStringLiteral("%1-%2").arg(name).arg(i);
    return free;
}

/// Opening the file and reading its tables costs more than most transactions do.
std::unique_ptr<TZOSettingsFile>& KeptFile() {
    thread_local std::unique_ptr<TZOSettingsFile> file;
    return file;
}

} // namespace

void TZOSettingsFile::Keep(std::unique_ptr<TZOSettingsFile> AFile) {
    AFile->Rollback();
    if (AFile->CanBeKept())
        KeptFile() = std::move(AFile);
}

bool TZOSettingsFile::CanBeKept() {
    if (FHasFailed || sqlite3_get_autocommit(FHandle) == 0 ||
        ::stat(QFile::encodeName(FFileName).constData(), &FLeft) != 0)
        return false;
    // SQLite takes its pages for good as long as the file's change counter is the same, which a file that was
    // copied over this one may have, too.
    sqlite3_db_release_memory(FHandle);
    return true;
}

/// Whether the file is still the one that the connection has open, and nobody else has written to it.
bool TZOSettingsFile::IsUntouched() const {
    int hasMoved = 1;
    struct stat now = {};
    return sqlite3_file_control(FHandle, "main", SQLITE_FCNTL_HAS_MOVED, &hasMoved) == SQLITE_OK &&
           hasMoved == 0 && ::stat(QFile::encodeName(FFileName).constData(), &now) == 0 &&
           now.st_dev == FLeft.st_dev && now.st_ino == FLeft.st_ino && now.st_size == FLeft.st_size &&
           IsSameTime(now.st_mtim, FLeft.st_mtim) && IsSameTime(now.st_ctim, FLeft.st_ctim);
}

std::unique_ptr<TZOSettingsFile> TZOSettingsFile::TakeKept(const QString& AFileName) {
    std::unique_ptr<TZOSettingsFile> file = std::move(KeptFile());
    if (!file || file->FFileName != AFileName || file->FProcess != ::getpid() ||
        !CheckedFiles().contains(AFileName) || !file->IsUntouched())
        return nullptr;
    try {
        QString reason;
        file->BeginReading();
        const TVerdict verdict = file->ReadFormat(reason);
        file->Commit();
        return verdict == veUsable ? std::move(file) : nullptr;
    } catch (const ERegistryException&) {
        return nullptr; // What a new connection says about the file counts.
    }
}

std::unique_ptr<TZOSettingsFile> TZOSettingsFile::Open(const QString& AFileName, bool ACreate) {
    if (auto kept = TakeKept(AFileName))
        return kept;
    for (;;) {
        if (!QFileInfo::exists(AFileName)) {
            if (!ACreate)
                return nullptr;
            CreateFile(AFileName);
        }
        TightenMode(AFileName);
        std::unique_ptr<TZOSettingsFile> file(new TZOSettingsFile(AFileName));
        QString reason;
        if (file->Judge(reason) == veUsable)
            return file;
        if (!file->SetAside())
            Raise(AFileName, reason);
    }
}

TZOSettingsFile::TZOSettingsFile(const QString& AFileName) : FFileName(AFileName), FProcess(::getpid()) {
    const int code =
        sqlite3_open_v2(QFile::encodeName(AFileName).constData(), &FHandle, SQLITE_OPEN_READWRITE, nullptr);
    if (code != SQLITE_OK) {
        QString reason = QString::fromUtf8(sqlite3_errmsg(FHandle));
        if (const int system = sqlite3_system_errno(FHandle); system != 0)
            reason += QStringLiteral(" (%1)").arg(QString::fromLocal8Bit(std::strerror(system)));
        sqlite3_close(FHandle);
        Raise(AFileName, reason);
    }
    sqlite3_extended_result_codes(FHandle, 1);
    sqlite3_busy_handler(FHandle, WaitForOthers, nullptr);
}

TZOSettingsFile::~TZOSettingsFile() {
    // After a fork the connection is the parent's, whose locks SQLite would take for the child's own. It is
    // left as it is, where leak checkers still find it.
    if (FProcess != ::getpid()) {
        static std::atomic<sqlite3*> left;
        left = FHandle;
        return;
    }
    Rollback();
    for (sqlite3_stmt* statement : std::as_const(FStatements))
        sqlite3_finalize(statement);
    sqlite3_close(FHandle);
}

TZOSettingsFile::TVerdict TZOSettingsFile::Judge(QString& AReason) {
    try {
        return JudgeFormat(AReason);
    } catch (const ERegistryException&) {
        if (!IsDamage(sqlite3_errcode(FHandle)))
            throw;
        AReason = QString::fromUtf8(sqlite3_errmsg(FHandle));
        return veDamaged;
    }
}

TZOSettingsFile::TVerdict TZOSettingsFile::JudgeFormat(QString& AReason) {
    // One look at all of it: another process may just be making the tables.
    BeginReading();
    if (ReadFormat(AReason) == veDamaged)
        return veDamaged;
    if (FHasTables && !HoldsAllTables()) {
        AReason = QStringLiteral("its tables are not those that this program makes");
        return veDamaged;
    }
    const bool isFirstLook = !CheckedFiles().contains(FFileName);
    if (isFirstLook) {
        TZOSettingsQuery check(*this, "PRAGMA quick_check(1)");
        AReason = check.Next() ? check.Text(0) : QString();
        if (AReason != QLatin1String("ok"))
            return veDamaged;
        CheckedFiles().insert(FFileName);
    }
    Commit();
    if (isFirstLook)
        RemoveStaleJournal();
    // Tokens and secrets must not stay readable in the file after they were deleted.
    Execute("PRAGMA secure_delete=ON");
    // A commit ends with the removal of the journal: without this a power cut could undo it.
    Execute("PRAGMA synchronous=EXTRA");
    return veUsable;
}

TZOSettingsFile::TVerdict TZOSettingsFile::ReadFormat(QString& AReason) {
    const qint64 format = Number("PRAGMA user_version");
    const bool isOurs = Number("PRAGMA application_id") == ApplicationId;
    const bool isNew = format == 0 && Number("SELECT count(*) FROM sqlite_master") == 0;
    if (!isOurs && !isNew)
        Raise(FFileName, QStringLiteral("it belongs to another program. It was left as it is."));
    if (format > Format)
        Raise(FFileName,
              QStringLiteral("it was written by a newer version of this program (format %1, known is %2). "
                             "It was left as it is.")
                  .arg(format)
                  .arg(Format));
    FHasTables = isOurs && !isNew;
    if (isNew || format == Format)
        return veUsable;
    AReason = QStringLiteral("no version of this program writes the format %1").arg(format);
    return veDamaged;
}

bool TZOSettingsFile::HoldsAllTables() {
    return std::all_of(std::begin(Tables), std::end(Tables), [this](const char* ASql) {
        TZOSettingsQuery query(*this, "SELECT 1 FROM sqlite_master WHERE sql=?");
        return query.BindText(QLatin1String(ASql)).Next();
    });
}

// A writer that was killed before its journal said anything leaves it; SQLite takes it away with the next
// change, so one that changes nothing is made.
void TZOSettingsFile::RemoveStaleJournal() {
    if (!FHasTables || !QFileInfo::exists(FFileName + QStringLiteral("-journal")))
        return;
    try {
        Execute(qPrintable(QStringLiteral("PRAGMA user_version=%1").arg(Format)));
    } catch (const ERegistryException&) {
        // Whoever cannot write here can still read.
    }
}

bool TZOSettingsFile::SetAside() {
    const TFolderLock lock(QFileInfo(FFileName).absolutePath());
    CheckedFiles().remove(FFileName);
    if (!QFileInfo::exists(FFileName))
        return true;
    QString reason;
    {
        // Somebody else may have been quicker: judge again what lies there now.
        TZOSettingsFile present(FFileName);
        if (present.Judge(reason) == veUsable)
            return true;
    }
    const QString aside = AsideName(FFileName);
    // Side files first: one that stayed would be played into the new file.
    for (const char* suffix : {"-journal", "-wal", "-shm"}) {
        const QString side = FFileName + QLatin1String(suffix);
        if (QFileInfo::exists(side) && !QFile::rename(side, aside + QLatin1String(suffix)))
            return false;
    }
    if (!QFile::rename(FFileName, aside))
        return false;
    TRegistry::Report(QStringLiteral("The settings file \"%1\" was damaged (%2). It was set aside as \"%3\" "
                                     "and a new one was started.")
                          .arg(FFileName, reason, aside));
    return true;
}

void TZOSettingsFile::BeginWriting() {
    Execute("BEGIN IMMEDIATE");
    if (FHasTables || Number("PRAGMA user_version") == Format) {
        FHasTables = true;
        return;
    }
    for (const char* table : Tables)
        Execute(table);
    Execute(qPrintable(QStringLiteral("PRAGMA application_id=%1").arg(ApplicationId)));
    Execute(qPrintable(QStringLiteral("PRAGMA user_version=%1").arg(Format)));
    FHasTables = true;
}

void TZOSettingsFile::Rollback() noexcept {
    if (sqlite3_get_autocommit(FHandle) == 0)
        FHasFailed |= sqlite3_exec(FHandle, "ROLLBACK", nullptr, nullptr, nullptr) != SQLITE_OK;
}

void TZOSettingsFile::Execute(const char* ASql) {
    if (const int code = sqlite3_exec(FHandle, ASql, nullptr, nullptr, nullptr); code != SQLITE_OK)
        Fail(code);
}

qint64 TZOSettingsFile::Number(const char* ASql) {
    TZOSettingsQuery query(*this, ASql);
    return query.Next() ? query.Text(0).toLongLong() : 0;
}

sqlite3_stmt* TZOSettingsFile::TakeStatement(const char* ASql) {
    const auto size = qsizetype(std::strlen(ASql));
    if (sqlite3_stmt* statement = FStatements.take(QByteArray::fromRawData(ASql, size)))
        return statement;
    sqlite3_stmt* statement = nullptr;
    if (const int code =
            sqlite3_prepare_v3(FHandle, ASql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
        code != SQLITE_OK)
        Fail(code);
    return statement;
}

void TZOSettingsFile::PutStatement(const char* ASql, sqlite3_stmt* AStatement) noexcept {
    sqlite3_reset(AStatement);
    sqlite3_clear_bindings(AStatement);
    sqlite3_stmt*& place = FStatements[QByteArray::fromRawData(ASql, qsizetype(std::strlen(ASql)))];
    sqlite3_finalize(std::exchange(place, AStatement));
}

void TZOSettingsFile::Fail(int ACode) {
    FHasFailed = true;
    if (IsDamage(ACode))
        CheckedFiles().remove(FFileName);
    Raise(FFileName, QString::fromUtf8(sqlite3_errmsg(FHandle)));
}

TZOSettingsQuery::TZOSettingsQuery(TZOSettingsFile& AFile, const char* ASql)
    : FFile(AFile), FSql(ASql), FStatement(AFile.TakeStatement(ASql)) {}

TZOSettingsQuery::~TZOSettingsQuery() { FFile.PutStatement(FSql, FStatement); }

TZOSettingsQuery& TZOSettingsQuery::Bind(bool AIsText, const QByteArray& AData) {
    const auto size = static_cast<sqlite3_uint64>(AData.size());
    const int code =
        AIsText ? sqlite3_bind_text64(FStatement, ++FBound, AData.constData(), size, SQLITE_TRANSIENT,
                                      SQLITE_UTF8)
                : sqlite3_bind_blob64(FStatement, ++FBound, AData.constData(), size, SQLITE_TRANSIENT);
    if (code != SQLITE_OK)
        FFile.Fail(code);
    return *this;
}

bool TZOSettingsQuery::Next() {
    const int code = sqlite3_step(FStatement);
    if (code != SQLITE_ROW && code != SQLITE_DONE)
        FFile.Fail(code);
    return code == SQLITE_ROW;
}

int TZOSettingsQuery::Run() {
    // A full disk ends the transaction by itself; what came after it would be written piece by piece.
    if (sqlite3_get_autocommit(FFile.FHandle) != 0)
        Raise(FFile.FFileName, QStringLiteral("an earlier write failed, nothing has been written"));
    Next();
    return sqlite3_changes(FFile.FHandle);
}

bool TZOSettingsQuery::IsText(int AColumn) const {
    return sqlite3_column_type(FStatement, AColumn) == SQLITE_TEXT;
}

QByteArray TZOSettingsQuery::Bytes(int AColumn) const {
    // Converts numbers to text; text and bytes come as they are.
    const void* data = sqlite3_column_type(FStatement, AColumn) == SQLITE_BLOB
                           ? sqlite3_column_blob(FStatement, AColumn)
                           : static_cast<const void*>(sqlite3_column_text(FStatement, AColumn));
    return QByteArray(static_cast<const char*>(data), sqlite3_column_bytes(FStatement, AColumn));
}
