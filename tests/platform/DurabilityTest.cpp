// Settings when processes are killed, disks fill and folders may not be written.
#include "platform/Exceptions.h"
#include "platform/Registry.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <functional>

#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const QString Key = QStringLiteral("SOFTWARE\\Maker\\Product");

void Write(const QString& AName, const QString& AText) {
    TRegistry registry;
    registry.OpenKey(Key, true);
    registry.WriteString(AName, AText);
    registry.CloseKey();
}

QString Read(const QString& AName) {
    TRegistry registry;
    return registry.OpenKeyReadOnly(Key) ? registry.ReadString(AName) : QString();
}

class Durability : public testing::Test {
protected:
    void SetUp() override {
        UseFolder(FFolder.path());
        TRegistry::SetReportHandler([this](const QString& AMessage) { FReports.append(AMessage); });
    }
    void TearDown() override {
        TRegistry::SetReportHandler({});
        qunsetenv("ZO_SETTINGS_FILE");
    }

    static void UseFolder(const QString& AFolder) {
        qputenv("ZO_SETTINGS_FILE", QFile::encodeName(AFolder + QStringLiteral("/settings.db")));
    }

    /// Runs AWork in a process of its own, whose user, limits and mounts it may change; what it throws or
    /// returns as not empty is a failure.
    static void InAnotherProcess(const std::function<QString()>& AWork) {
        const pid_t child = ::fork();
        if (child == 0) {
            QString complaint;
            try {
                complaint = AWork();
            } catch (const std::exception& e) {
                complaint = QString::fromUtf8(e.what());
            }
            if (!complaint.isEmpty())
                std::fprintf(stderr, "child: %s\n", qPrintable(complaint));
            ::_exit(complaint.isEmpty() ? 0 : 1);
        }
        ASSERT_GT(child, 0);
        int status = -1;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }

    /// Saves 100 times where nothing more can be written, then once more after AMakeRoom. Each failure has
    /// to say so, and nothing that was there may have gone.
    static QString SaveWithoutRoom(const std::function<void()>& AMakeRoom) {
        int failures = 0;
        for (int turn = 0; turn < 100; ++turn) {
            try {
                Write(QStringLiteral("new"), QString(300'000, QChar(char16_t('a' + turn % 26))));
            } catch (const ERegistryException& e) {
                if (!e.Message().contains(TRegistry::FileName()))
                    return QStringLiteral("the message does not name the file: ") + e.Message();
                ++failures;
            }
            if (Read(QStringLiteral("old")) != QStringLiteral("kept"))
                return QStringLiteral("the old content is lost at turn %1").arg(turn);
            if (!Read(QStringLiteral("new")).isEmpty())
                return QStringLiteral("half a write is left at turn %1").arg(turn);
        }
        if (failures != 100)
            return QStringLiteral("only %1 of 100 saves failed").arg(failures);
        AMakeRoom();
        Write(QStringLiteral("new"), QStringLiteral("written"));
        if (Read(QStringLiteral("new")) != QStringLiteral("written"))
            return QStringLiteral("what was written after there was room again is not there");
        return {};
    }

    QTemporaryDir FFolder;
    QStringList FReports;
};

/// A process that writes ever higher numbers under a name and tells each one that has been acknowledged.
class TWriter {
public:
    explicit TWriter(const QString& AName) {
        EXPECT_EQ(::pipe(FPipe), 0);
        FProcess = ::fork();
        if (FProcess == 0)
            Run(AName);
        ::close(FPipe[1]);
    }
    ~TWriter() { ::close(FPipe[0]); }
    TWriter(const TWriter&) = delete;
    TWriter& operator=(const TWriter&) = delete;

    void Kill() const { ::kill(FProcess, SIGKILL); }

    /// The last number that was acknowledged before the process died.
    int LastAcknowledged() const {
        int last = 0, number = 0;
        while (::read(FPipe[0], &number, sizeof number) == ssize_t(sizeof number))
            last = number;
        int status = 0;
        ::waitpid(FProcess, &status, 0);
        return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL ? last : -1;
    }

private:
    [[noreturn]] void Run(const QString& AName) const {
        try {
            for (int number = Read(AName).toInt() + 1;; ++number) {
                Write(AName, QString::number(number));
                if (::write(FPipe[1], &number, sizeof number) != ssize_t(sizeof number))
                    ::_exit(2);
            }
        } catch (const std::exception& e) {
            std::fprintf(stderr, "writer: %s\n", e.what());
            ::_exit(1);
        }
    }

    int FPipe[2] = {};
    pid_t FProcess = -1;
};

TEST_F(Durability, NoAcknowledgedWriteIsLostHoweverOftenTheWritersAreKilled) {
    const int kills = qEnvironmentVariableIsSet("ZO_KILLS") ? qEnvironmentVariableIntValue("ZO_KILLS") : 60;
    QRandomGenerator random(4711);
    int written = 0;
    for (int round = 0; round < kills / 2; ++round) {
        SCOPED_TRACE(round);
        const TWriter first(QStringLiteral("first")), second(QStringLiteral("second"));
        ::usleep(useconds_t(random.bounded(30'000)));
        first.Kill();
        ::usleep(useconds_t(random.bounded(5'000)));
        second.Kill();
        const int firstNumber = first.LastAcknowledged(), secondNumber = second.LastAcknowledged();
        ASSERT_GE(firstNumber, 0) << "the writer ended by itself";
        ASSERT_GE(secondNumber, 0) << "the writer ended by itself";
        // Read by a process that meets the file for the first time, as the next start does.
        InAnotherProcess([=, this] {
            const int one = Read(QStringLiteral("first")).toInt(),
                      other = Read(QStringLiteral("second")).toInt();
            if (one < firstNumber || other < secondNumber || !FReports.isEmpty())
                return QStringLiteral("%1 of %2, %3 of %4; %5")
                    .arg(one)
                    .arg(firstNumber)
                    .arg(other)
                    .arg(secondNumber)
                    .arg(FReports.join(u' '));
            return QString();
        });
        ASSERT_EQ(QDir(FFolder.path()).entryList(QDir::Files | QDir::Hidden),
                  QStringList{QStringLiteral("settings.db")});
        written += firstNumber + secondNumber;
    }
    EXPECT_GT(written, 0);
}

TEST_F(Durability, AFullDiskLeavesTheOldContentAndWorksAgainWhenThereIsRoom) {
    InAnotherProcess([this] {
        // A mount of our own, seen by this process only; who is not root gets it with a user namespace. The
        // root of a chroot may be a plain folder, whose mount cannot be reached to make it private.
        const QByteArray folder = QFile::encodeName(FFolder.path());
        if (::unshare(::geteuid() == 0 ? CLONE_NEWNS : CLONE_NEWUSER | CLONE_NEWNS) != 0 ||
            (::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 && errno != EINVAL) ||
            ::mount("tmpfs", folder.constData(), "tmpfs", 0, "size=1m,mode=0700") != 0)
            return QStringLiteral("there is no small disk to be had");
        const auto unmount = qScopeGuard([&] { ::umount2(folder.constData(), MNT_DETACH); });
        Write(QStringLiteral("old"), QStringLiteral("kept"));
        QFile filler(FFolder.filePath(QStringLiteral("filler")));
        if (!filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            return QStringLiteral("the disk cannot be filled");
        while (filler.write(QByteArray(4096, 'x')) == 4096) {
        }
        return SaveWithoutRoom([&] { filler.resize(0); });
    });
}

TEST_F(Durability, ALimitOfTheFilesSizeLeavesTheOldContent) {
    InAnotherProcess([] {
        Write(QStringLiteral("old"), QStringLiteral("kept"));
        ::signal(SIGXFSZ, SIG_IGN);
        rlimit before = {};
        ::getrlimit(RLIMIT_FSIZE, &before);
        const rlimit small = {256 * 1024, before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &small);
        return SaveWithoutRoom([&] { ::setrlimit(RLIMIT_FSIZE, &before); });
    });
}

TEST_F(Durability, AFolderThatMayNotBeWrittenLeavesTheOldContent) {
    InAnotherProcess([this] {
        const QByteArray folder = QFile::encodeName(FFolder.path());
        constexpr uid_t nobody = 65534;
        Write(QStringLiteral("old"), QStringLiteral("kept"));
        if (::geteuid() == 0) {
            // Nothing is forbidden to root.
            if (::chown(folder.constData(), nobody, nobody) != 0 ||
                ::chown(QFile::encodeName(TRegistry::FileName()).constData(), nobody, nobody) != 0 ||
                ::setuid(nobody) != 0)
                return QStringLiteral("nobody to be");
        }
        ::chmod(folder.constData(), 0500);
        return SaveWithoutRoom([&] { ::chmod(folder.constData(), 0700); });
    });
}

} // namespace
