// What the execute page offers beside executing: keys, the summary, commands for a shell, JSON.
#include "tests/pages/ExecutePageFixture.h"

#include "jsoneditor/view/ViewRowLayout.h"

#include <QClipboard>
#include <QFile>
#include <QMenu>
#include <QPlainTextEdit>
#include <QProcess>
#include <QRegularExpression>
#include <QScrollBar>

#include <atomic>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using ExecuteCommands = ExecutePageTest;

TEST_F(ExecuteCommands, CtrlEnterExecutesFromAnywhere) {
    ShowOperation(QStringLiteral("Echo"));
    std::atomic<int> requests = 0;
    Server.OnEcho = [&] { ++requests; };
    GoTo(QStringLiteral("text"));
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("typed"));
    ASSERT_TRUE(ReqView()->EditorShown());
    KeyInWindow(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(requests, 1);
    EXPECT_TRUE(Lines(RespView()).contains(QStringLiteral("  text: typed")));
    QWidget* const places[] = {ReqView(), RespView(), ExecButton(), Find<QWidget>("HelpLabel"),
                               Find<QWidget>("ScrollBox")};
    for (QWidget* place : places) {
        place->setFocus();
        KeyInWindow(Qt::Key_Enter, Qt::ControlModifier);
    }
    EXPECT_EQ(requests, 6);
}

TEST_F(ExecuteCommands, CtrlEnterDoesNothingWithoutCredentials) {
    ShowOperation(QStringLiteral("Echo"));
    Shell->GetServices(0)->Component()->SetApiKey(QString());
    Shell->GoBackAsync();
    Settle();
    Open(QStringLiteral("Echo"));
    KeyInWindow(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_FALSE(Find<QWidget>("RespPanel")->isVisible());
}

TEST_F(ExecuteCommands, F6GoesRoundThePage) {
    ShowOperation(QStringLiteral("Echo"));
    Execute();
    ReqView()->setFocus();
    const auto isIn = [](const QWidget* APart) {
        const QWidget* focus = QApplication::focusWidget();
        return focus == APart || APart->isAncestorOf(focus);
    };
    const QWidget* const parts[] = {ReqView(), Find<QWidget>("ButtonsPanel"), RespView()};
    for (const int next : {1, 2, 0, 1}) {
        KeyInWindow(Qt::Key_F6);
        EXPECT_TRUE(isIn(parts[next])) << next;
    }
    EXPECT_TRUE(ReqView()->Selected());
    EXPECT_TRUE(RespView()->Selected());
    for (const int next : {0, 2, 1, 0}) {
        KeyInWindow(Qt::Key_F6, Qt::ShiftModifier);
        EXPECT_TRUE(isIn(parts[next])) << next;
    }
    // Out of a view where Tab stays, with its editor open.
    GoTo(QStringLiteral("text"));
    ASSERT_TRUE(ReqView()->EditorShown());
    KeyInWindow(Qt::Key_F6);
    EXPECT_EQ(QApplication::focusWidget(), ExecButton());
}

TEST_F(ExecuteCommands, F6PassesOverAResponseThatIsNotThere) {
    ShowOperation(QStringLiteral("Echo"));
    ReqView()->setFocus();
    KeyInWindow(Qt::Key_F6, Qt::ShiftModifier);
    EXPECT_EQ(QApplication::focusWidget(), ExecButton());
}

TEST_F(ExecuteCommands, F6GoesBetweenAListAndItsSearch) {
    ShowShell();
    for (int i = 0; i < 2; ++i) {
        List()->setFocus();
        KeyInWindow(Qt::Key_F6);
        EXPECT_EQ(QApplication::focusWidget(), Find<QLineEdit>("SearchEdit"));
        KeyInWindow(Qt::Key_F6, Qt::ShiftModifier);
        EXPECT_EQ(QApplication::focusWidget(), List());
        if (i == 0)
            Open(QStringLiteral("TTestService"));
    }
}

TEST_F(ExecuteCommands, LinksAnswerSpaceAndEnter) {
    ShowOperation(QStringLiteral("Echo"));
    Execute();
    auto* details = Find<QWidget>("DetailsLabel");
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        const bool wasShown = Find<QWidget>("DetailsBox")->isVisible();
        details->setFocus();
        ASSERT_TRUE(details->hasFocus());
        KeyInWindow(key);
        EXPECT_EQ(Find<QWidget>("DetailsBox")->isVisible(), !wasShown);
    }
}

TEST_F(ExecuteCommands, TheSummaryNamesStatusTimeAndSize) {
    ShowOperation(QStringLiteral("Echo"));
    Fill(QStringLiteral("text"), QStringLiteral("hello"));
    Execute();
    const QString summary = Find<QLabel>("SummaryLabel")->text();
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^200 OK, \\d+ ms, 36 bytes$")).match(summary).hasMatch())
        << summary.toStdString();
    EXPECT_EQ(Find<QWidget>("SummaryLabel")->mapTo(Top(), QPoint()).y() / 20,
              Find<QWidget>("RespLabel")->mapTo(Top(), QPoint()).y() / 20);
    EXPECT_FALSE(Find<QWidget>("DetailsBox")->isVisible());
}

TEST_F(ExecuteCommands, DetailsShowTheHeadersWithoutCredentials) {
    ShowOperation(QStringLiteral("Echo"));
    Shell->GetServices(0)->Component()->SetApiKey(QStringLiteral("s3cret"));
    Fill(QStringLiteral("text"), QStringLiteral("a b"));
    Execute();
    QTest::mouseClick(Find<QWidget>("DetailsLabel"), Qt::LeftButton);
    auto* details = Find<QPlainTextEdit>("DetailsBox");
    ASSERT_TRUE(details->isVisible());
    EXPECT_EQ(Find<QLabel>("DetailsLabel")->text(), QStringLiteral("hide details"));
    const QString text = details->toPlainText();
    EXPECT_TRUE(text.startsWith(QStringLiteral("GET /echo?text=a%20b HTTP/1.1\nHost: 127.0.0.1")))
        << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("\nX-Key: (hidden)\n")));
    EXPECT_FALSE(text.contains(QStringLiteral("s3cret")));
    EXPECT_TRUE(text.contains(QStringLiteral("\n\nHTTP/1.1 200 OK\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("Content-Type: application/json")));
    Settle();
    EXPECT_FALSE(details->verticalScrollBar()->maximum() > 0) << "lines are out of sight";
    Execute(); // they stay open
    EXPECT_TRUE(details->isVisible());
    QTest::mouseClick(Find<QWidget>("DetailsLabel"), Qt::LeftButton);
    EXPECT_FALSE(details->isVisible());
}

TEST_F(ExecuteCommands, AFailureHasASummaryWhereSomethingWasSent) {
    ShowOperation(QStringLiteral("Fail"));
    Execute();
    EXPECT_TRUE(Find<QLabel>("SummaryLabel")->text().startsWith(QStringLiteral("404 Not Found, ")));
    EXPECT_FALSE(Find<QWidget>("CopyJsonLabel")->isVisible());
    EXPECT_FALSE(Find<QWidget>("SaveJsonLabel")->isVisible());
    Shell->GoBackAsync();
    Settle();
    Open(QStringLiteral("Download"));
    QTest::keyClicks(Find<QLineEdit>("DownloadEdit"), QStringLiteral("/dev/null/out"));
    Execute();
    EXPECT_FALSE(Find<QWidget>("SummaryLabel")->isVisible());
    EXPECT_FALSE(Find<QWidget>("DetailsLabel")->isVisible());
}

/// Chooses from the menu that "copy as cURL" opens.
void Choose(const QString& ACaption) {
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(menu);
    for (QAction* action : menu->actions())
        if (action->text().remove(u'&') == ACaption)
            QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
}

QByteArray RunInShell(const QString& ACommand) {
    QProcess shell;
    shell.start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), ACommand + QStringLiteral(" --silent")});
    EXPECT_TRUE(shell.waitForFinished());
    return shell.readAllStandardOutput();
}

TEST_F(ExecuteCommands, CopiesTheRequestAsACommandThatDoesTheSame) {
    ShowOperation(QStringLiteral("Echo"));
    Fill(QStringLiteral("text"), QStringLiteral("it's & more"));
    QTest::mouseClick(Find<QWidget>("CopyCurlLabel"), Qt::LeftButton);
    Choose(QStringLiteral("With credentials"));
    const QString command = QApplication::clipboard()->text();
    EXPECT_TRUE(command.contains(QStringLiteral("'X-Key: key'"))) << command.toStdString();
    EXPECT_EQ(Find<QLabel>("CopyCurlLabel")->text(), QStringLiteral("copied"));
    EXPECT_EQ(RunInShell(command), R"({"text": "it's & more", "numbers": [1, 2]})");
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return Find<QLabel>("CopyCurlLabel")->text() == QStringLiteral("copy as cURL"); }));
}

TEST_F(ExecuteCommands, LeavesCredentialsOutOfTheCommandUnlessAskedForThem) {
    ShowOperation(QStringLiteral("Echo"));
    Shell->GetServices(0)->Component()->SetApiKey(QStringLiteral("s3cret"));
    QTest::mouseClick(Find<QWidget>("CopyCurlLabel"), Qt::LeftButton);
    Choose(QStringLiteral("Without credentials"));
    EXPECT_TRUE(QApplication::clipboard()->text().contains(QStringLiteral("'X-Key: YOUR-CREDENTIAL'")));
    EXPECT_FALSE(QApplication::clipboard()->text().contains(QStringLiteral("s3cret")));
}

TEST_F(ExecuteCommands, TheCommandSendsTheChosenFile) {
    ShowOperation(QStringLiteral("Upload"));
    TestDialogs.Answers.emplace_back(WriteFile(QStringLiteral("it's.txt"), "hello world"));
    GoTo(QStringLiteral("file"));
    const QRect row = ReqView()->RowAt(1)->Layout()->Bounds();
    QTest::mouseDClick(ReqView(), Qt::LeftButton, {}, QPoint(row.left() + 40, row.center().y()));
    Execute(); // refused by the server: the stream of this attempt stays
    QTest::mouseClick(Find<QWidget>("CopyCurlLabel"), Qt::LeftButton);
    Choose(QStringLiteral("With credentials"));
    EXPECT_EQ(RunInShell(QApplication::clipboard()->text()), R"({"text": "11:hello"})");
    Execute();
    EXPECT_TRUE(Lines(RespView()).contains(QStringLiteral("  text: 11:hello")));
}

TEST_F(ExecuteCommands, TheCommandWritesTheDownload) {
    ShowOperation(QStringLiteral("Download"));
    Fill(QStringLiteral("bytes"), QStringLiteral("5"));
    QTest::keyClicks(Find<QLineEdit>("DownloadEdit"), Folder.filePath(QStringLiteral("out")));
    QTest::mouseClick(Find<QWidget>("CopyCurlLabel"), Qt::LeftButton);
    Choose(QStringLiteral("With credentials"));
    RunInShell(QApplication::clipboard()->text());
    EXPECT_EQ(ReadFile(QStringLiteral("out")), "xxxxx");
}

TEST_F(ExecuteCommands, ARequestThatCannotBeSentIsNoCommand) {
    ShowOperation(QStringLiteral("Upload"));
    Fill(QStringLiteral("file"), QStringLiteral("typed"));
    QTest::mouseClick(Find<QWidget>("CopyCurlLabel"), Qt::LeftButton);
    EXPECT_EQ(std::exchange(Errors, {}), QStringList{QStringLiteral("EZOUploadError")});
}

TEST_F(ExecuteCommands, CopiesTheWholeResponse) {
    ShowOperation(QStringLiteral("Echo"));
    Fill(QStringLiteral("text"), QStringLiteral("tea"));
    EXPECT_FALSE(Find<QWidget>("CopyJsonLabel")->isVisible());
    Execute();
    QTest::mouseClick(Find<QWidget>("CopyJsonLabel"), Qt::LeftButton);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("{\"text\":\"tea\",\"numbers\":[1,2]}"));
    EXPECT_EQ(Find<QLabel>("CopyJsonLabel")->text(), QStringLiteral("copied"));
}

TEST_F(ExecuteCommands, SavesTheResponseToAFile) {
    ShowOperation(QStringLiteral("Echo"));
    Execute();
    QTest::mouseClick(Find<QWidget>("SaveJsonLabel"), Qt::LeftButton); // cancelled
    EXPECT_EQ(TestDialogs.Asked, QStringList{QStringLiteral("save Save JSON to file|Echo.json")});
    TestDialogs.Answers.emplace_back(Folder.filePath(QStringLiteral("out.json")));
    QTest::mouseClick(Find<QWidget>("SaveJsonLabel"), Qt::LeftButton);
    EXPECT_EQ(ReadFile(QStringLiteral("out.json")), R"({"text":"","numbers":[1,2]})");
    TestDialogs.Answers.emplace_back(QStringLiteral("/dev/null/out.json"));
    QTest::mouseClick(Find<QWidget>("SaveJsonLabel"), Qt::LeftButton);
    EXPECT_EQ(std::exchange(Errors, {}), QStringList{QStringLiteral("EFCreateError")});
}

TEST_F(ExecuteCommands, SavesTheResponseIntoAPipeWithoutReplacingIt) {
    const QByteArray pipe = QFile::encodeName(Folder.filePath(QStringLiteral("pipe")));
    ASSERT_EQ(::mkfifo(pipe.constData(), 0600), 0);
    const int reader = ::open(pipe.constData(), O_RDWR | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    ShowOperation(QStringLiteral("Echo"));
    Execute();
    TestDialogs.Answers.emplace_back(QFile::decodeName(pipe));
    QTest::mouseClick(Find<QWidget>("SaveJsonLabel"), Qt::LeftButton);
    char text[100];
    const ssize_t size = ::read(reader, text, sizeof text);
    ::close(reader);
    ASSERT_GT(size, 0);
    EXPECT_EQ(std::string_view(text, size_t(size)), R"({"text":"","numbers":[1,2]})");
}

} // namespace
