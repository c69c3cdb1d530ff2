// The settings file itself: where it is made, judged, set aside and opened. Private to TRegistry.
#pragma once

#include "platform/Utf8.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <memory>

#include <sys/stat.h>
#include <sys/types.h>

struct sqlite3;
struct sqlite3_stmt;

/// One connection to the settings file.
class TZOSettingsFile {
public:
    /// Opens AFileName, with the connection that was kept if there is one; sets a damaged file aside first.
    /// Returns null when there is no file (any more) and ACreate is not set. Raises ERegistryException when
    /// the file cannot be used.
    static std::unique_ptr<TZOSettingsFile> Open(const QString& AFileName, bool ACreate);
    /// Gives up AFile's transaction, if there is one, and keeps the connection for the next Open() of this
    /// thread, unless something has failed on it. One is kept; it holds no lock.
    static void Keep(std::unique_ptr<TZOSettingsFile> AFile);
    ~TZOSettingsFile();
    TZOSettingsFile(const TZOSettingsFile&) = delete;
    TZOSettingsFile& operator=(const TZOSettingsFile&) = delete;

    /// Whether the file holds the tables; a file that was just created does not.
    bool HasTables() const { return FHasTables; }
    void BeginReading() { Execute("BEGIN"); }
    /// Takes the writers' lock and makes the tables if they are missing.
    void BeginWriting();
    void Commit() { Execute("COMMIT"); }
    /// Gives up the transaction, if there is one.
    void Rollback() noexcept;
    void Execute(const char* ASql);

private:
    friend class TZOSettingsQuery;
    enum TVerdict { veUsable, veDamaged };

    explicit TZOSettingsFile(const QString& AFileName);
    static std::unique_ptr<TZOSettingsFile> TakeKept(const QString& AFileName);
    bool CanBeKept();
    bool IsUntouched() const;
    TVerdict Judge(QString& AReason);
    TVerdict JudgeFormat(QString& AReason);
    TVerdict ReadFormat(QString& AReason);
    bool HoldsAllTables();
    qint64 Number(const char* ASql);
    void RemoveStaleJournal();
    bool SetAside();
    sqlite3_stmt* TakeStatement(const char* ASql);
    void PutStatement(const char* ASql, sqlite3_stmt* AStatement) noexcept;
    [[noreturn]] void Fail(int ACode);

    QString FFileName;
    sqlite3* FHandle = nullptr;
    QHash<QByteArray, sqlite3_stmt*> FStatements; ///< those that no query uses just now
    struct stat FLeft = {};                       ///< the file as it was when the connection was kept
    pid_t FProcess = 0;
    bool FHasTables = false;
    bool FHasFailed = false;
};

/// One prepared statement. Parameters count from 1, columns from 0.
class TZOSettingsQuery {
public:
    /// ASql is a literal: the connection keeps the statement under it.
    TZOSettingsQuery(TZOSettingsFile& AFile, const char* ASql);
    ~TZOSettingsQuery();
    TZOSettingsQuery(const TZOSettingsQuery&) = delete;
    TZOSettingsQuery& operator=(const TZOSettingsQuery&) = delete;

    TZOSettingsQuery& BindText(const QString& AText) { return Bind(true, AText.toUtf8()); }
    /// Binds the next parameter, as text in UTF-8 or as bytes.
    TZOSettingsQuery& Bind(bool AIsText, const QByteArray& AData);
    /// Runs to the next row; false when there is none.
    bool Next();
    /// Runs a statement that yields no rows and returns how many rows it changed.
    int Run();

    bool IsText(int AColumn) const;
    QByteArray Bytes(int AColumn) const;
    QString Text(int AColumn) const { return TextFromUtf8(Bytes(AColumn)); }

private:
    TZOSettingsFile& FFile;
    const char* FSql;
    sqlite3_stmt* FStatement = nullptr;
    int FBound = 0;
};
