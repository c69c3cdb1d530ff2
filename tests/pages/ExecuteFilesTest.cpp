// Files that cannot be sent or written, and those that are in the way.
#include "tests/pages/ExecutePageFixture.h"

#include "jsoneditor/view/ViewRowLayout.h"

#include <QFileInfo>

#include <csignal>
#include <sys/fsuid.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

/// While it lives, files are opened as an ordinary user even where the tests run as root.
class TOrdinaryUser {
public:
    TOrdinaryUser() {
        if (geteuid() == 0)
            setfsuid(65534);
    }
    ~TOrdinaryUser() { setfsuid(geteuid()); }
};

/// While it lives, no file can become larger, as on a disk that is full then.
class TFileSizeLimit {
public:
    explicit TFileSizeLimit(rlim_t ABytes) {
        FSignal = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &FLimit);
        const rlimit limit{ABytes, FLimit.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~TFileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &FLimit);
        std::signal(SIGXFSZ, FSignal);
    }

private:
    rlimit FLimit{};
    sighandler_t FSignal;
};

class ExecuteFiles : public ExecutePageTest {
protected:
    QString Path(const QString& AName) const { return Folder.filePath(AName); }
    /// Chooses AName in the dialog of the request's upload.
    void Choose(const QString& AName) {
        TestDialogs.Answers.emplace_back(AName);
        GoTo(QStringLiteral("file"));
        const QRect row = ReqView()->RowAt(1)->Layout()->Bounds();
        QTest::mouseDClick(ReqView(), Qt::LeftButton, {}, QPoint(row.left() + 40, row.center().y()));
    }
    void ShowDownload(const QString& AOperation, const QString& ABytes, const QString& ATarget) {
        ShowOperation(AOperation);
        if (!ABytes.isEmpty())
            Fill(QStringLiteral("bytes"), ABytes);
        QTest::keyClicks(Find<QLineEdit>("DownloadEdit"), ATarget);
    }
    QStringList Failure() const {
        for (int i = 0; i < RespView()->GetRowCount(); ++i)
            EXPECT_EQ(Token(RespView(), i), ctError);
        return Lines(RespView());
    }
};

TEST_F(ExecuteFiles, AnUploadThatCannotBeOpenedIsAFailure) {
    ShowOperation(QStringLiteral("Upload"));
    const QString secret = WriteFile(QStringLiteral("secret"), "x");
    QFile::setPermissions(Folder.path(),
                          QFile::permissions(Folder.path()) | QFile::ReadOther | QFile::ExeOther);
    QFile::setPermissions(secret, {});
    for (const QString& name : {Path(QStringLiteral("missing")), Folder.path(), secret}) {
        const TOrdinaryUser user;
        Choose(name);
        Execute();
        const QStringList lines = Failure();
        ASSERT_EQ(lines.size(), 2) << lines.join(u'\n').toStdString();
        EXPECT_EQ(lines[0], QStringLiteral("EFOpenError"));
        EXPECT_TRUE(lines[1].startsWith(QStringLiteral("Cannot open file \"%1\". ").arg(name)))
            << lines[1].toStdString();
    }
}

TEST_F(ExecuteFiles, AnUploadThatChangesItsSizeWhileItIsSentIsAFailure) {
    ShowOperation(QStringLiteral("SlowUpload"));
    constexpr qint64 size = qint64(64) << 20;
    const QString name = WriteFile(QStringLiteral("large"), "x");
    Choose(name);
    for (const qint64 changed : {size / 2, size + 1}) {
        ASSERT_TRUE(QFile::resize(name, size));
        Server.OnHalf = [&] { QFile::resize(name, changed); };
        Execute();
        const QStringList lines = Failure();
        ASSERT_EQ(lines.size(), 2) << lines.join(u'\n').toStdString();
        EXPECT_EQ(lines[0], QStringLiteral("EZOUploadError"));
        EXPECT_EQ(lines[1], u'"' + name +
                                (changed < size ? QStringLiteral("\" ended before all of it was sent.")
                                                : QStringLiteral("\" changed its size while it was sent.")));
    }
    Server.OnHalf = {};
    Execute();
    EXPECT_EQ(Lines(RespView()).front(), QStringLiteral("{"));
}

TEST_F(ExecuteFiles, ATargetThatCannotBeWrittenIsAFailure) {
    const QString locked = WriteFile(QStringLiteral("locked"), "old");
    QFile::setPermissions(locked, QFile::ReadOwner | QFile::ReadOther);
    QFile::setPermissions(Folder.path(),
                          QFile::permissions(Folder.path()) | QFile::ReadOther | QFile::ExeOther);
    TestDialogs.IsAgreed = true;
    ShowOperation(QStringLiteral("Download"));
    Fill(QStringLiteral("bytes"), QStringLiteral("9"));
    for (const QString& name : {locked, Folder.path(), Path(QStringLiteral("no/such/folder"))}) {
        const TOrdinaryUser user;
        Find<QLineEdit>("DownloadEdit")->selectAll();
        QTest::keyClicks(Find<QLineEdit>("DownloadEdit"), name);
        Execute();
        const QStringList lines = Failure();
        ASSERT_EQ(lines.size(), 2) << lines.join(u'\n').toStdString();
        EXPECT_EQ(lines[0], QStringLiteral("EFCreateError"));
        EXPECT_TRUE(lines[1].startsWith(QStringLiteral("Cannot create file \"%1\". ").arg(name)))
            << lines[1].toStdString();
    }
    EXPECT_EQ(ReadFile(QStringLiteral("locked")), "old");
}

TEST_F(ExecuteFiles, AFullDiskIsAFailure) {
    ShowDownload(QStringLiteral("Download"), QStringLiteral("5"), QStringLiteral("/dev/full"));
    Execute();
    const QStringList lines = Failure();
    ASSERT_EQ(lines.size(), 2) << lines.join(u'\n').toStdString();
    EXPECT_EQ(lines[0], QStringLiteral("EZODownloadError"));
    EXPECT_FALSE(Find<QWidget>("ShowFileLabel")->isVisible());
}

TEST_F(ExecuteFiles, ADiskThatFillsHalfWaySaysHowMuchItTook) {
    const QString name = Path(QStringLiteral("out"));
    ShowDownload(QStringLiteral("Download"), QStringLiteral("400000"), name);
    const TFileSizeLimit limit(100'000);
    Execute();
    const QStringList lines = Failure();
    ASSERT_EQ(lines.size(), 3) << lines.join(u'\n').toStdString();
    EXPECT_EQ(lines[0], QStringLiteral("EZODownloadError"));
    EXPECT_EQ(lines[2], QStringLiteral("100000 of 400000 bytes written to ") + name);
}

TEST_F(ExecuteFiles, AnAnswerOfUnknownLengthSaysOnlyWhatWasWritten) {
    const QString name = Path(QStringLiteral("out"));
    ShowDownload(QStringLiteral("Chunks"), {}, name);
    const TFileSizeLimit limit(100'000);
    Execute();
    EXPECT_EQ(Failure().back(), QStringLiteral("100000 bytes written to ") + name);
}

TEST_F(ExecuteFiles, AsksBeforeItReplacesAFileWhoseNameWasTyped) {
    const QString name = WriteFile(QStringLiteral("old"), "old");
    ShowDownload(QStringLiteral("Download"), QStringLiteral("3"), name);
    Execute(); // refused
    EXPECT_EQ(
        TestDialogs.Asked,
        QStringList{QStringLiteral(
                        "confirm Download to file|The file \"%1\" exists already. Do you want to replace it?")
                        .arg(name)});
    EXPECT_FALSE(Find<QWidget>("RespPanel")->isVisible());
    EXPECT_EQ(ReadFile(QStringLiteral("old")), "old");
    TestDialogs.IsAgreed = true;
    Execute();
    EXPECT_EQ(ReadFile(QStringLiteral("old")), "xxx");
    Execute(); // its own file by now
    EXPECT_EQ(TestDialogs.Asked.size(), 2);
}

TEST_F(ExecuteFiles, DoesNotAskAgainForWhatTheSaveDialogHasAsked) {
    const QString name = WriteFile(QStringLiteral("old"), "old");
    ShowDownload(QStringLiteral("Download"), QStringLiteral("3"), {});
    TestDialogs.Answers.emplace_back(name);
    Execute();
    EXPECT_EQ(TestDialogs.Asked, QStringList{QStringLiteral("save Download to file|")});
    EXPECT_EQ(ReadFile(QStringLiteral("old")), "xxx");
    // Another name, typed, is asked about.
    const QString other = WriteFile(QStringLiteral("other"), "old");
    Find<QLineEdit>("DownloadEdit")->selectAll();
    QTest::keyClicks(Find<QLineEdit>("DownloadEdit"), other);
    Execute();
    EXPECT_EQ(ReadFile(QStringLiteral("other")), "old");
    EXPECT_EQ(TestDialogs.Asked.size(), 2);
}

} // namespace
