// The settings store of the current user: keys that hold string and binary values.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class TZOSettingsFile;

/// Reads and writes the current user's settings, all of which live in one private file.
///
/// Keys are named by backslash paths; key and value names are compared without case and keep the case of
/// their first writing. A path with a leading backslash starts at the root, any other at the open key, or at
/// the root while none is open.
///
/// One object is one transaction: it begins with the first key that is opened and sees the settings as they
/// were then, and CloseKey() commits it. An object that is destroyed before has written nothing. Writing
/// transactions of other objects and processes wait for this one for some seconds, then fail, so objects are
/// short-lived.
///
/// A file that others could open is narrowed to its owner. A damaged file is renamed to a dated name beside
/// it and a new one is started; a file of a newer format or of another program is left as it is and not used.
class TRegistry {
public:
    /// Gets one sentence for the user about a file that was set aside, could not be read, or was open to
    /// other users. It is called from inside whatever touched the settings, so it must not open them itself
    /// or run an event loop.
    using TReportHandler = std::function<void(const QString& AMessage)>;

    TRegistry();
    ~TRegistry();
    TRegistry(const TRegistry&) = delete;
    TRegistry& operator=(const TRegistry&) = delete;

    /// The file in use: environment variable ZO_SETTINGS_FILE, else one in the user's configuration folder.
    static QString FileName();
    /// Replaces the report handler and returns the one that was in use. What was reported while there was
    /// none is handed to AHandler before this returns. Each sentence is reported once per process.
    static TReportHandler SetReportHandler(TReportHandler AHandler);
    /// Reports AMessage: for those who must go on although their settings could not be read or written.
    static void Report(const QString& AMessage);

    /// Opens AKey for reading and returns whether it could: false when the key or the file does not exist,
    /// or when the file cannot be used (which is reported). The key that was open stays open on false.
    bool OpenKeyReadOnly(const QString& AKey);
    /// Whether the last OpenKeyReadOnly answered false because the file cannot be used: what is stored is
    /// not known then.
    bool HasFailed() const { return FHasFailed; }
    /// Opens AKey for reading and writing and creates it with its parents if it is missing and ACanCreate is
    /// set; returns false when it is missing and may not be created. Raises ERegistryException when the file
    /// cannot be written.
    bool OpenKey(const QString& AKey, bool ACanCreate);
    /// Commits everything written since the first open call and closes the key. Raises ERegistryException
    /// when that fails; nothing has been written then. Without an open key it does nothing.
    void CloseKey();

    /// Path of the open key from the root, without a leading backslash; empty when none is open.
    const QString& CurrentPath() const { return FPath; }
    bool KeyExists(const QString& AKey) const;
    /// Names of the sub-keys of the open key, sorted without case; empty when no key is open.
    QStringList GetKeyNames() const;
    /// Names of the values of the open key, sorted without case; empty when no key is open.
    QStringList GetValueNames() const;
    bool ValueExists(const QString& AName) const;

    /// The text of value AName, empty when it does not exist. Raises ERegistryException when it is binary.
    QString ReadString(const QString& AName) const;
    /// The bytes of value AName, empty when it does not exist. Raises ERegistryException when it is a string.
    QByteArray ReadBinaryData(const QString& AName) const;

    /// Writes and deletions are ignored while no key is open. They raise ERegistryException when the key is
    /// open for reading only or the file cannot be written.
    void WriteString(const QString& AName, const QString& AText);
    void WriteBinaryData(const QString& AName, const QByteArray& AData);
    /// Returns whether the value existed.
    bool DeleteValue(const QString& AName);
    /// Deletes AKey with its values and sub-keys and returns whether it existed. When the open key is among
    /// them, none is open afterwards; the deletion is then committed before this returns.
    bool DeleteKey(const QString& AKey);

private:
    enum TTransaction { trNone, trRead, trWrite };

    bool HasKey(const QString& AFoldedPath) const;
    QString FullPath(const QString& AKey) const;
    QStringList Names(const char* ASql) const;
    bool CanWrite() const;
    QByteArray ReadValue(const QString& AName, bool AIsText) const;
    void WriteValue(const QString& AName, bool AIsText, const QByteArray& AData);
    void BeginWriting(bool ACreate);
    void CreateKey(const QString& APath);
    void Abandon();

    std::unique_ptr<TZOSettingsFile> FFile;
    TTransaction FTransaction = trNone;
    bool FKeyOpen = false;
    bool FReadOnly = true;
    bool FHasFailed = false;
    QString FPath;
};
