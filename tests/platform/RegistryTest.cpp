#include "platform/Registry.h"

#include "platform/Exceptions.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

class Registry : public testing::Test {
protected:
    void SetUp() override {
        FOldUmask = ::umask(0);
        qputenv("ZO_SETTINGS_FILE", FileName().toUtf8());
        TRegistry::SetReportHandler([this](const QString& AMessage) { FReports.append(AMessage); });
        FReports.clear();
    }
    void TearDown() override {
        TRegistry::SetReportHandler({});
        ::umask(FOldUmask);
        qunsetenv("ZO_SETTINGS_FILE");
    }

    QString Folder() const { return FFolder.filePath(QStringLiteral("a/b")); }
    QString FileName() const { return Folder() + QStringLiteral("/settings.db"); }

    static void Write(const QString& AKey, const QString& AName, const QString& AText) {
        TRegistry registry;
        registry.OpenKey(AKey, true);
        registry.WriteString(AName, AText);
        registry.CloseKey();
    }
    static QString Read(const QString& AKey, const QString& AName) {
        TRegistry registry;
        return registry.OpenKeyReadOnly(AKey) ? registry.ReadString(AName) : QStringLiteral("(no key)");
    }
    static int Mode(const QString& AFile) {
        struct stat status = {};
        ::stat(QFile::encodeName(AFile).constData(), &status);
        return static_cast<int>(status.st_mode & 07777);
    }
    void Place(const QByteArray& AContent) const {
        QDir().mkpath(Folder());
        QFile file(FileName());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        file.write(AContent);
    }
    static QByteArray Content(const QString& AFile) {
        QFile file(AFile);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void RunSql(const QString& ASql) const {
        QProcess shell;
        shell.start(QStringLiteral("sqlite3"), {FileName(), ASql});
        ASSERT_TRUE(shell.waitForFinished());
        ASSERT_EQ(shell.exitCode(), 0);
    }
    /// Calls AWrite("child") in a process of its own and AWrite("parent") in this one at the same time.
    template <typename TWrite>
    static void BesideAnotherProcess(TWrite AWrite) {
        int start[2] = {};
        ASSERT_EQ(::pipe(start), 0);
        const pid_t child = ::fork();
        char ready = 0;
        if (child == 0) {
            EXPECT_EQ(::write(start[1], &ready, 1), 1);
            try {
                AWrite(QStringLiteral("child"));
            } catch (const std::exception& e) {
                std::fprintf(stderr, "child: %s\n", e.what());
                ::_exit(1);
            }
            ::_exit(0);
        }
        ASSERT_GT(child, 0);
        EXPECT_EQ(::read(start[0], &ready, 1), 1);
        ::close(start[0]);
        ::close(start[1]);
        EXPECT_NO_THROW(AWrite(QStringLiteral("parent")));
        int status = -1;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    /// The descriptors of this process that are open on the settings file.
    QList<int> Descriptors() const {
        QList<int> numbers;
        for (const QFileInfo& entry :
             QDir(QStringLiteral("/proc/self/fd")).entryInfoList(QDir::Files | QDir::System)) {
            if (entry.symLinkTarget() == FileName())
                numbers.append(entry.fileName().toInt());
        }
        return numbers;
    }
    QStringList SetAside() const {
        return QDir(Folder()).entryList({QStringLiteral("settings.db.damaged-*")}, QDir::Files);
    }

    QTemporaryDir FFolder;
    QStringList FReports;
    mode_t FOldUmask = 0;
};

const QString Key = QStringLiteral("SOFTWARE\\Maker\\Product");

} // namespace

TEST_F(Registry, KeepsStringsAndBytesAsTheyAre) {
    const QByteArray bytes("\0\xFFone\0", 6);
    const QString text = QStringLiteral("\uFEFFSchl\u00fcssel \U0001F511\nsecond line");
    {
        TRegistry registry;
        ASSERT_TRUE(registry.OpenKey(Key, true));
        registry.WriteString(QStringLiteral("Text"), text);
        registry.WriteString(QStringLiteral("Empty"), QString());
        registry.WriteBinaryData(QStringLiteral("Bytes"), bytes);
        registry.WriteBinaryData(QStringLiteral("NoBytes"), QByteArray());
        registry.CloseKey();
    }
    TRegistry registry;
    ASSERT_TRUE(registry.OpenKeyReadOnly(Key));
    EXPECT_EQ(registry.ReadString(QStringLiteral("Text")), text);
    EXPECT_EQ(registry.ReadBinaryData(QStringLiteral("Bytes")), bytes);
    EXPECT_TRUE(registry.ValueExists(QStringLiteral("Empty")));
    EXPECT_EQ(registry.ReadString(QStringLiteral("Empty")), QString());
    EXPECT_TRUE(registry.ValueExists(QStringLiteral("NoBytes")));
    EXPECT_EQ(registry.ReadBinaryData(QStringLiteral("NoBytes")), QByteArray());
    EXPECT_FALSE(registry.ValueExists(QStringLiteral("Missing")));
    EXPECT_EQ(registry.ReadString(QStringLiteral("Missing")), QString());
    EXPECT_THROW(registry.ReadString(QStringLiteral("Bytes")), ERegistryException);
    EXPECT_THROW(registry.ReadBinaryData(QStringLiteral("Text")), ERegistryException);
}

TEST_F(Registry, ComparesNamesWithoutCaseAndKeepsTheirFirstWriting) {
    Write(QStringLiteral("Software\\Maker"), QStringLiteral("ApiKey"), QStringLiteral("1"));
    Write(QStringLiteral("SOFTWARE\\MAKER"), QStringLiteral("APIKEY"), QStringLiteral("2"));
    TRegistry registry;
    ASSERT_TRUE(registry.OpenKeyReadOnly(QStringLiteral("\\software\\maker")));
    EXPECT_EQ(registry.ReadString(QStringLiteral("apikey")), QStringLiteral("2"));
    EXPECT_EQ(registry.GetValueNames(), QStringList{QStringLiteral("ApiKey")});
}

TEST_F(Registry, OpensSubKeysFromTheOpenKey) {
    {
        TRegistry registry;
        registry.OpenKey(Key, true);
        registry.OpenKey(QStringLiteral("Scopes"), true);
        registry.WriteString(QStringLiteral("0"), QStringLiteral("read"));
        EXPECT_EQ(registry.CurrentPath(), Key + QStringLiteral("\\Scopes"));
        registry.CloseKey();
    }
    TRegistry registry;
    ASSERT_TRUE(registry.OpenKeyReadOnly(Key));
    EXPECT_EQ(registry.GetKeyNames(), QStringList{QStringLiteral("Scopes")});
    EXPECT_TRUE(registry.KeyExists(QStringLiteral("Scopes")));
    EXPECT_FALSE(registry.OpenKeyReadOnly(QStringLiteral("Missing")));
    EXPECT_EQ(registry.CurrentPath(), Key);
    ASSERT_TRUE(registry.OpenKeyReadOnly(QStringLiteral("Scopes")));
    EXPECT_EQ(registry.ReadString(QStringLiteral("0")), QStringLiteral("read"));
    EXPECT_EQ(Read(Key + QStringLiteral("\\Scopes"), QStringLiteral("0")), QStringLiteral("read"));
}

TEST_F(Registry, DeletesAKeyWithItsValuesAndSubKeysOnly) {
    for (const char* key : {"A\\B", "A\\B\\C\\D", "A\\B]", "A\\BB", "A"})
        Write(QLatin1String(key), QStringLiteral("v"), QStringLiteral("1"));
    {
        TRegistry registry;
        registry.OpenKey(QStringLiteral("A"), false);
        EXPECT_TRUE(registry.DeleteKey(QStringLiteral("b")));
        EXPECT_FALSE(registry.DeleteKey(QStringLiteral("b")));
        registry.CloseKey();
    }
    TRegistry registry;
    EXPECT_FALSE(registry.KeyExists(QStringLiteral("A\\B")));
    EXPECT_FALSE(registry.KeyExists(QStringLiteral("A\\B\\C\\D")));
    ASSERT_TRUE(registry.OpenKey(QStringLiteral("A\\B"), true));
    EXPECT_EQ(registry.GetValueNames(), QStringList());
    EXPECT_EQ(Read(QStringLiteral("A\\B]"), QStringLiteral("v")), QStringLiteral("1"));
    EXPECT_EQ(Read(QStringLiteral("A\\BB"), QStringLiteral("v")), QStringLiteral("1"));
    EXPECT_EQ(Read(QStringLiteral("A"), QStringLiteral("v")), QStringLiteral("1"));
}

TEST_F(Registry, HasNoOpenKeyAfterDeletingIt) {
    TRegistry registry;
    registry.OpenKey(Key, true);
    EXPECT_TRUE(registry.DeleteKey(QStringLiteral("\\software\\maker")));
    registry.WriteString(QStringLiteral("Lost"), QStringLiteral("1"));
    registry.CloseKey();
    EXPECT_FALSE(TRegistry().KeyExists(Key));
    EXPECT_TRUE(TRegistry().KeyExists(QStringLiteral("SOFTWARE")));
}

TEST_F(Registry, KeepsItsKeyOpenWhenOneIsDeletedWhoseNameItsOwnBeginsWith) {
    Write(QStringLiteral("A\\B"), QStringLiteral("v"), QStringLiteral("1"));
    TRegistry registry;
    registry.OpenKey(QStringLiteral("A\\BB"), true);
    EXPECT_TRUE(registry.DeleteKey(QStringLiteral("\\A\\B")));
    registry.WriteString(QStringLiteral("v"), QStringLiteral("2"));
    registry.CloseKey();
    EXPECT_EQ(Read(QStringLiteral("A\\BB"), QStringLiteral("v")), QStringLiteral("2"));
}

TEST_F(Registry, IgnoresWritesWithoutAnOpenKey) {
    Write(Key, QStringLiteral("Kept"), QStringLiteral("1"));
    const QByteArray before = Content(FileName());
    TRegistry registry;
    registry.WriteBinaryData(QStringLiteral("Token"), "abc");
    EXPECT_FALSE(registry.DeleteValue(QStringLiteral("Kept")));
    EXPECT_FALSE(registry.DeleteKey(Key));
    registry.CloseKey();
    EXPECT_EQ(Content(FileName()), before);
}

TEST_F(Registry, RefusesWritesToAKeyOpenForReading) {
    Write(Key, QStringLiteral("Kept"), QStringLiteral("1"));
    TRegistry registry;
    ASSERT_TRUE(registry.OpenKeyReadOnly(Key));
    EXPECT_THROW(registry.WriteString(QStringLiteral("Kept"), QStringLiteral("2")), ERegistryException);
    EXPECT_THROW(registry.DeleteValue(QStringLiteral("Kept")), ERegistryException);
}

TEST_F(Registry, CreatesKeysOnlyWhenAsked) {
    TRegistry registry;
    EXPECT_FALSE(registry.OpenKeyReadOnly(Key));
    EXPECT_FALSE(registry.OpenKey(Key, false));
    EXPECT_FALSE(QFileInfo::exists(FileName()));
    EXPECT_TRUE(registry.OpenKey(Key, true));
    registry.CloseKey();
    EXPECT_TRUE(registry.OpenKey(Key, false));
    EXPECT_FALSE(registry.OpenKey(QStringLiteral("Missing"), false));
    EXPECT_EQ(registry.CurrentPath(), Key);
}

TEST_F(Registry, WritesNothingWithoutTheClosingCall) {
    Write(Key, QStringLiteral("Value"), QStringLiteral("old"));
    {
        TRegistry registry;
        registry.OpenKey(Key, false);
        registry.WriteString(QStringLiteral("Value"), QStringLiteral("new"));
        registry.DeleteKey(QStringLiteral("Scopes"));
        registry.OpenKey(QStringLiteral("\\Other"), true);
        EXPECT_EQ(Read(Key, QStringLiteral("Value")), QStringLiteral("old")); // seen from another connection
    }
    EXPECT_EQ(Read(Key, QStringLiteral("Value")), QStringLiteral("old"));
    EXPECT_FALSE(TRegistry().KeyExists(QStringLiteral("Other")));
}

TEST_F(Registry, KeepsFilesAndFoldersPrivateWhateverTheUmask) {
    for (const mode_t mask : {0, 0777}) {
        QDir(FFolder.filePath(QStringLiteral("a"))).removeRecursively();
        ::umask(mask);
        TRegistry registry;
        registry.OpenKey(Key, true);
        registry.WriteBinaryData(QStringLiteral("Big"), QByteArray(300000, 'x'));
        EXPECT_EQ(Mode(Folder()), 0700);
        EXPECT_EQ(Mode(QFileInfo(Folder()).absolutePath()), 0700);
        const QStringList files = QDir(Folder()).entryList(QDir::Files);
        EXPECT_GE(files.size(), 2); // the file and its journal
        for (const QString& file : files)
            EXPECT_EQ(Mode(Folder() + u'/' + file), 0600) << file.toStdString();
        registry.CloseKey();
        EXPECT_EQ(Mode(FileName()), 0600);
    }
}

TEST_F(Registry, TakesBackRightsThatOthersWereGiven) {
    Write(Key, QStringLiteral("Secret"), QStringLiteral("s"));
    ::chmod(QFile::encodeName(FileName()).constData(), 0644);
    EXPECT_EQ(Read(Key, QStringLiteral("Secret")), QStringLiteral("s"));
    EXPECT_EQ(Mode(FileName()), 0600);
    EXPECT_EQ(FReports,
              QStringList(QStringLiteral("The settings file \"%1\" could be opened by other users of "
                                         "this computer. Only you can now; secrets in it may have "
                                         "been read.")
                              .arg(FileName())));
}

TEST_F(Registry, TakesBackEachRightOfTheGroupAndOfOthers) {
    Write(Key, QStringLiteral("Secret"), QStringLiteral("s"));
    for (const mode_t right : {0040u, 0020u, 0010u, 0004u, 0002u, 0001u}) {
        ASSERT_EQ(::chmod(QFile::encodeName(FileName()).constData(), 0600 | right), 0);
        EXPECT_EQ(Read(Key, QStringLiteral("Secret")), QStringLiteral("s"));
        EXPECT_EQ(Mode(FileName()), 0600) << right;
    }
}

TEST_F(Registry, LeavesNoTraceOfADeletedSecretInTheFile) {
    Write(Key, QStringLiteral("Secret"), QStringLiteral("top-secret-text"));
    ASSERT_TRUE(Content(FileName()).contains("top-secret-text"));
    TRegistry registry;
    registry.OpenKey(Key, false);
    registry.DeleteValue(QStringLiteral("Secret"));
    registry.CloseKey();
    EXPECT_FALSE(Content(FileName()).contains("top-secret-text"));
}

TEST_F(Registry, LosesNoWriteOfTwoProcesses) {
    constexpr int count = 40;
    BesideAnotherProcess([](const QString& AWho) {
        for (int i = 0; i < count; ++i)
            Write(Key + u'\\' + AWho + QString::number(i), QStringLiteral("v"), QString::number(i));
    });
    TRegistry registry;
    ASSERT_TRUE(registry.OpenKeyReadOnly(Key));
    EXPECT_EQ(registry.GetKeyNames().size(), 2 * count);
    EXPECT_EQ(FReports, QStringList());
}

TEST_F(Registry, TakesAFileThatAnotherProcessIsJustStartingForItsOwn) {
    for (int round = 0; round < 60; ++round) {
        const QString file = FFolder.filePath(QStringLiteral("%1/settings.db").arg(round));
        qputenv("ZO_SETTINGS_FILE", file.toUtf8());
        BesideAnotherProcess(
            [](const QString& AWho) { Write(Key + u'\\' + AWho, QStringLiteral("v"), AWho); });
        EXPECT_EQ(Read(Key + QStringLiteral("\\child"), QStringLiteral("v")), QStringLiteral("child"));
        EXPECT_EQ(Read(Key + QStringLiteral("\\parent"), QStringLiteral("v")), QStringLiteral("parent"));
    }
    EXPECT_EQ(FReports, QStringList());
}

TEST_F(Registry, KeepsOneConnectionThatNoStartedProgramInherits) {
    for (int i = 0; i < 20; ++i) {
        Write(Key, QStringLiteral("v"), QString::number(i));
        EXPECT_EQ(Read(Key, QStringLiteral("v")), QString::number(i));
        EXPECT_EQ(Read(QStringLiteral("Missing"), QStringLiteral("v")), QStringLiteral("(no key)"));
    }
    const QList<int> descriptors = Descriptors();
    ASSERT_EQ(descriptors.size(), 1);
    EXPECT_TRUE(::fcntl(descriptors[0], F_GETFD) & FD_CLOEXEC);
}

TEST_F(Registry, LocksAndLeavesNothingBetweenItsTransactions) {
    Write(Key, QStringLiteral("v"), QStringLiteral("1"));
    RunSql(QStringLiteral("BEGIN EXCLUSIVE; PRAGMA user_version=1; COMMIT"));
    EXPECT_EQ(Read(Key, QStringLiteral("v")), QStringLiteral("1"));
    RunSql(QStringLiteral("BEGIN EXCLUSIVE; PRAGMA user_version=1; COMMIT"));
    {
        TRegistry abandoned;
        abandoned.OpenKey(Key, false);
        abandoned.WriteString(QStringLiteral("v"), QStringLiteral("2"));
    }
    RunSql(QStringLiteral("BEGIN EXCLUSIVE; PRAGMA user_version=1; COMMIT"));
    EXPECT_EQ(Read(Key, QStringLiteral("v")), QStringLiteral("1"));
    EXPECT_EQ(QDir(Folder()).entryList(QDir::Files | QDir::Hidden),
              QStringList(QStringLiteral("settings.db")));
}

TEST_F(Registry, SeesWhatOthersWroteBetweenItsTransactions) {
    Write(Key, QStringLiteral("v"), QStringLiteral("1"));
    for (const char* text : {"2", "3"}) {
        RunSql(QStringLiteral("UPDATE vals SET data='%1'").arg(QLatin1String(text)));
        EXPECT_EQ(Read(Key, QStringLiteral("v")), QLatin1String(text));
    }
    RunSql(QStringLiteral("UPDATE vals SET data='4'"));
    Write(Key, QStringLiteral("w"), QStringLiteral("5"));
    EXPECT_EQ(Read(Key, QStringLiteral("v")), QStringLiteral("4"));
}

TEST_F(Registry, NoticesThatTheFileWasDeleted) {
    Write(Key, QStringLiteral("v"), QStringLiteral("1"));
    ASSERT_TRUE(QFile::remove(FileName()));
    EXPECT_EQ(Read(Key, QStringLiteral("v")), QStringLiteral("(no key)"));
    EXPECT_FALSE(QFileInfo::exists(FileName()));
    Write(Key, QStringLiteral("w"), QStringLiteral("2"));
    ASSERT_TRUE(QFile::remove(FileName()));
    Write(Key, QStringLiteral("w"), QStringLiteral("3"));
    EXPECT_EQ(Mode(FileName()), 0600);
    EXPECT_EQ(Read(Key, QStringLiteral("w")), QStringLiteral("3"));
    EXPECT_EQ(Read(Key, QStringLiteral("v")), QString());
    EXPECT_EQ(FReports, QStringList());
}

TEST_F(Registry, NoticesThatAnotherFileWasPutInItsPlace) {
    Write(Key, QStringLiteral("v"), QStringLiteral("old"));
    const QByteArray old = Content(FileName());
    const QString other = Folder() + QStringLiteral("/other");
    for (const bool isInPlace : {false, true}) {
        Write(Key, QStringLiteral("v"), QStringLiteral("new"));
        QFile file(isInPlace ? FileName() : other);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        ASSERT_EQ(file.write(old), old.size());
        file.close();
        const bool isThere = isInPlace || ::rename(QFile::encodeName(other).constData(),
                                                   QFile::encodeName(FileName()).constData()) == 0;
        ASSERT_TRUE(isThere);
        EXPECT_EQ(Read(Key, QStringLiteral("v")), QStringLiteral("old")) << isInPlace;
        Write(Key, QStringLiteral("w"), QStringLiteral("1"));
        RunSql(QStringLiteral("UPDATE vals SET data='theirs' WHERE folded='w' AND data='1'"));
        EXPECT_EQ(Read(Key, QStringLiteral("w")), QStringLiteral("theirs")) << isInPlace;
        EXPECT_EQ(Read(Key, QStringLiteral("v")), QStringLiteral("old")) << isInPlace;
    }
    EXPECT_EQ(FReports, QStringList());
}

TEST_F(Registry, WritesToTheNewFileAfterAnotherProcessSetTheOldOneAside) {
    Write(Key, QStringLiteral("v"), QStringLiteral("1"));
    const QString aside = FileName() + QStringLiteral(".damaged-20260101-000000");
    ASSERT_TRUE(QFile::rename(FileName(), aside));
    const QByteArray before = Content(aside);
    Write(Key, QStringLiteral("w"), QStringLiteral("2"));
    EXPECT_EQ(Content(aside), before);
    EXPECT_EQ(Read(Key, QStringLiteral("w")), QStringLiteral("2"));
    EXPECT_EQ(Read(Key, QStringLiteral("v")), QString());
}

TEST_F(Registry, OpensTheFileAnewInAForkedProcess) {
    Write(Key, QStringLiteral("v"), QStringLiteral("1"));
    BesideAnotherProcess([this, parent = Descriptors()](const QString& AWho) {
        for (int i = 0; i < 20; ++i)
            Write(Key, AWho, QString::number(i));
        const qsizetype added = AWho == QStringLiteral("child") ? 1 : 0;
        if (Descriptors().size() != parent.size() + added)
            throw ERegistryException(QStringLiteral("%1 descriptors").arg(Descriptors().size()));
    });
    EXPECT_EQ(Read(Key, QStringLiteral("child")), QStringLiteral("19"));
    EXPECT_EQ(Read(Key, QStringLiteral("parent")), QStringLiteral("19"));
}

TEST_F(Registry, SaysWhichFileCouldNotBeWrittenAndWhy) {
    QDir().mkpath(FileName()); // a folder stands in its place
    try {
        Write(Key, QStringLiteral("v"), QStringLiteral("1"));
        FAIL() << "no exception";
    } catch (const ERegistryException& e) {
        EXPECT_TRUE(e.Message().contains(FileName())) << e.what();
        EXPECT_TRUE(e.Message().contains(QLatin1String("unable to open"))) << e.what();
    }
    EXPECT_FALSE(TRegistry().OpenKeyReadOnly(Key));
    ASSERT_EQ(FReports.size(), 1);
    EXPECT_TRUE(FReports[0].contains(FileName()));
}

TEST_F(Registry, SaysWhenAnotherWriterHoldsTheFileTooLong) {
    Write(Key, QStringLiteral("v"), QStringLiteral("1"));
    TRegistry holder;
    holder.OpenKey(Key, false);
    TRegistry other;
    try {
        other.OpenKey(Key, false);
        FAIL() << "no exception";
    } catch (const ERegistryException& e) {
        EXPECT_TRUE(e.Message().contains(QLatin1String("locked"))) << e.what();
    }
}

TEST_F(Registry, SetsARubbishFileAsideAndStartsANewOne) {
    const QByteArray rubbish("this is no settings file, but somebody may want it back\n");
    Place(rubbish);
    ::chmod(QFile::encodeName(FileName()).constData(), 0644);
    Write(Key, QStringLiteral("v"), QStringLiteral("1"));
    EXPECT_EQ(Read(Key, QStringLiteral("v")), QStringLiteral("1"));
    ASSERT_EQ(SetAside().size(), 1);
    const QString aside = Folder() + u'/' + SetAside()[0];
    EXPECT_EQ(Content(aside), rubbish);
    EXPECT_EQ(Mode(aside), 0600);
    EXPECT_EQ(Mode(FileName()), 0600);
    ASSERT_EQ(FReports.size(), 2); // the first tells that others could open it
    EXPECT_TRUE(FReports[1].contains(FileName()));
    EXPECT_TRUE(FReports[1].contains(aside));
}

TEST_F(Registry, SetsADamagedFileAsideWhenItIsOnlyRead) {
    Place("rubbish rubbish rubbish");
    EXPECT_EQ(Read(Key, QStringLiteral("v")), QStringLiteral("(no key)"));
    EXPECT_EQ(SetAside().size(), 1);
    EXPECT_FALSE(QFileInfo::exists(FileName()));
    EXPECT_EQ(FReports.size(), 1);
}

TEST_F(Registry, NoticesATruncatedFile) {
    // Written by another program run, so that this process meets the file for the first time.
    for (int i = 0; i < 200; ++i)
        Write(Key, QString::number(i), QString(100, u'x'));
    const QByteArray whole = Content(FileName());
    ASSERT_GT(whole.size(), 3 * 4096);
    const QString fresh = FFolder.filePath(QStringLiteral("c/settings.db"));
    QDir().mkpath(QFileInfo(fresh).absolutePath());
    QFile file(fresh);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(whole.left(2 * 4096));
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    file.close();
    qputenv("ZO_SETTINGS_FILE", fresh.toUtf8());
    Write(Key, QStringLiteral("v"), QStringLiteral("1"));
    EXPECT_EQ(Read(Key, QStringLiteral("v")), QStringLiteral("1"));
    EXPECT_EQ(Read(Key, QStringLiteral("5")), QString());
    ASSERT_EQ(FReports.size(), 1);
    EXPECT_EQ(QDir(QFileInfo(fresh).absolutePath()).entryList(QDir::Files).size(), 2);
}

TEST_F(Registry, KeepsEarlierDamagedFilesApart) {
    for (int i = 0; i < 3; ++i) {
        Place(QByteArray("rubbish number ") + QByteArray::number(i));
        Write(Key, QStringLiteral("v"), QStringLiteral("1"));
    }
    EXPECT_EQ(SetAside().size(), 3);
}

TEST_F(Registry, TakesAnEmptyFileForANewOne) {
    Place(QByteArray());
    EXPECT_EQ(Read(Key, QStringLiteral("v")), QStringLiteral("(no key)"));
    Write(Key, QStringLiteral("v"), QStringLiteral("1"));
    EXPECT_EQ(Read(Key, QStringLiteral("v")), QStringLiteral("1"));
    EXPECT_EQ(SetAside(), QStringList());
}

TEST_F(Registry, LeavesAFileOfANewerFormatAlone) {
    Write(Key, QStringLiteral("v"), QStringLiteral("1"));
    RunSql(QStringLiteral("PRAGMA user_version=2"));
    const QByteArray before = Content(FileName());
    EXPECT_EQ(Read(Key, QStringLiteral("v")), QStringLiteral("(no key)"));
    ASSERT_EQ(FReports.size(), 1);
    EXPECT_TRUE(FReports[0].contains(QLatin1String("newer version")));
    EXPECT_TRUE(FReports[0].contains(FileName()));
    EXPECT_THROW(Write(Key, QStringLiteral("v"), QStringLiteral("2")), ERegistryException);
    EXPECT_EQ(Content(FileName()), before);
    EXPECT_EQ(SetAside(), QStringList());
}

TEST_F(Registry, SetsAFileAsideThatNoVersionCanHaveWritten) {
    const char* damages[] = {"PRAGMA user_version=-246",
                             "PRAGMA user_version=0",
                             "DROP TABLE vals",
                             "DROP TABLE keys",
                             "DROP INDEX keys_by_parent",
                             "DROP TABLE keys; DROP TABLE vals",
                             "ALTER TABLE keys RENAME name TO n"};
    int count = 0;
    for (const char* damage : damages) {
        Write(Key, QStringLiteral("v"), QStringLiteral("1"));
        RunSql(QLatin1String(damage));
        EXPECT_EQ(Read(Key, QStringLiteral("v")), QStringLiteral("(no key)")) << damage;
        EXPECT_EQ(FReports.size(), ++count) << damage;
        EXPECT_EQ(SetAside().size(), count) << damage;
        Write(Key, QStringLiteral("v"), QStringLiteral("2"));
        EXPECT_EQ(Read(Key, QStringLiteral("v")), QStringLiteral("2")) << damage;
        QFile::remove(FileName());
    }
}

TEST_F(Registry, LeavesAnotherProgramsDatabaseAlone) {
    QDir().mkpath(Folder());
    for (const char* theirs : {"CREATE TABLE theirs(a); INSERT INTO theirs VALUES(1)",
                               "PRAGMA application_id=7; PRAGMA user_version=1"}) {
        RunSql(QLatin1String(theirs));
        const QByteArray before = Content(FileName());
        EXPECT_THROW(Write(Key, QStringLiteral("v"), QStringLiteral("1")), ERegistryException) << theirs;
        EXPECT_EQ(Content(FileName()), before) << theirs;
        EXPECT_EQ(SetAside(), QStringList()) << theirs;
        QFile::remove(FileName());
    }
}

TEST_F(Registry, KeepsReportsForTheNextHandler) {
    TRegistry::SetReportHandler({});
    Place("rubbish rubbish");
    EXPECT_EQ(Read(Key, QStringLiteral("v")), QStringLiteral("(no key)"));
    EXPECT_EQ(FReports.size(), 0);
    TRegistry::SetReportHandler([this](const QString& AMessage) { FReports.append(AMessage); });
    EXPECT_EQ(FReports.size(), 1);
}

TEST(RegistryFile, LiesInTheUsersConfigurationFolder) {
    qunsetenv("ZO_SETTINGS_FILE");
    EXPECT_TRUE(TRegistry::FileName().endsWith(QLatin1String("/zo-bridgework/settings.db")));
}
