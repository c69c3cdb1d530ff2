// Every page in every state, at the smallest and at a large size, in both themes: nothing is clipped, nothing
// overlaps, every text stands out from its ground.
#include "tests/pages/ExecutePageFixture.h"
#include "tests/pages/LookCheck.h"

#include "pages/LongRequest.h"
#include "pages/SignOn.h"

#include "shell/ShortcutsInfoDialog.h"

#include "platform/IdeTheming.h"

#include <QDialog>
#include <QDir>

namespace {

class Look : public ExecutePageTest {
protected:
    Look() {
        Register(MakeServiceClass(
            QStringLiteral("TAnotherService"),
            QStringLiteral(
                "A service with a description that is so long that it does not fit into two lines of its "
                "column, not even in a window as wide as the largest one that this test opens, which "
                "makes an ellipsis necessary at the end of the second line. Really, it is that long"),
            {{QStringLiteral("DoSomethingThatHasAnEvenLongerNameThanItsColumn"),
              QStringLiteral("Described")}}));
    }

    /// Looks at the window in both sizes and themes.
    void See(const QString& AName) {
        for (const QSize size : {QSize(701, 446), QSize(1400, 900)}) {
            Shell->resize(size);
            for (const TZOTheme theme : {thLight, thDark, thSystem}) {
                TZOIdeTheming::SetTheme(theme);
                QTest::qWait(0);
                Settle();
                const QString name = QStringLiteral("%1-%2-%3")
                                         .arg(AName, QString::number(size.width()),
                                              theme == thDark    ? QStringLiteral("dark")
                                              : theme == thLight ? QStringLiteral("light")
                                                                 : QStringLiteral("system"));
                LookCheck::See(Shell.get(), name);
            }
        }
        TZOIdeTheming::SetTheme(thLight);
        Settle();
    }

    /// Types into the list, from where the text goes into the search.
    void Search(const QString& AText) const {
        QTest::keyClicks(List(), AText.left(1));
        QTest::keyClicks(QApplication::focusWidget(), AText.mid(1));
    }
};

TEST_F(Look, OfTheServiceList) {
    ShowShell();
    See(QStringLiteral("services"));
    ClickRow(QStringLiteral("TTestService"));
    See(QStringLiteral("services-selected"));
    Search(QStringLiteral("nothing like it"));
    See(QStringLiteral("services-none"));
}

TEST_F(Look, OfTheOperationList) {
    ShowShell();
    Open(QStringLiteral("TAnotherService"));
    See(QStringLiteral("operations-not-configured"));
    Shell->GoBackAsync();
    Settle();
    Shell->GetServices(0)->Component()->SetApiKey(QStringLiteral("key"));
    Open(QStringLiteral("TTestService"));
    ClickRow(QStringLiteral("Echo"));
    See(QStringLiteral("operations"));
    Search(QStringLiteral("nothing like it"));
    See(QStringLiteral("operations-none"));
}

TEST_F(Look, OfARequestAndItsResponse) {
    ShowOperation(QStringLiteral("Echo"));
    See(QStringLiteral("request"));
    GoTo(QStringLiteral("{"));
    See(QStringLiteral("request-selected-symbol"));
    GoTo(QStringLiteral("count"));
    See(QStringLiteral("request-selected-absent"));
    Fill(QStringLiteral("text"), QStringLiteral("a text that was typed"));
    Execute();
    See(QStringLiteral("response"));
    QTest::mouseClick(Find<QWidget>("DetailsLabel"), Qt::LeftButton);
    See(QStringLiteral("response-details"));
}

TEST_F(Look, OfASearchOnThePage) {
    ShowOperation(QStringLiteral("Echo"));
    Fill(QStringLiteral("text"), QStringLiteral("a text that was typed"));
    Execute();
    KeyInWindow(Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("text"));
    See(QStringLiteral("find"));
}

TEST_F(Look, OfOtherOutcomes) {
    ShowOperation(QStringLiteral("Fail"));
    Execute();
    See(QStringLiteral("failure"));
    Shell->GoBackAsync();
    Settle();
    Open(QStringLiteral("DoNothing"));
    Execute();
    See(QStringLiteral("no-data"));
}

TEST_F(Look, OfFiles) {
    QDir::setCurrent(Folder.path()); // short names
    ShowOperation(QStringLiteral("Download"));
    See(QStringLiteral("download-before"));
    Fill(QStringLiteral("bytes"), QStringLiteral("1234"));
    QTest::keyClicks(Find<QLineEdit>("DownloadEdit"), QStringLiteral("report.pdf"));
    Execute();
    See(QStringLiteral("download"));
    Shell->GoBackAsync();
    Settle();
    Open(QStringLiteral("Upload"));
    See(QStringLiteral("upload"));
    QDir::setCurrent(QStringLiteral("/"));
}

TEST_F(Look, OfARequestThatLasts) {
    ShowOperation(QStringLiteral("Halves"));
    Fill(QStringLiteral("bytes"), QStringLiteral("40960"));
    QTest::keyClicks(Find<QLineEdit>("DownloadEdit"), Folder.filePath(QStringLiteral("out")));
    Server.OnHalf = [&] { OnGui([&] { LookCheck::See(Shell.get(), QStringLiteral("lasting-light")); }); };
    Shell->resize(701, 446);
    Execute();
    TZOIdeTheming::SetTheme(thDark);
    Server.OnHalf = [&] { OnGui([&] { LookCheck::See(Shell.get(), QStringLiteral("lasting-dark")); }); };
    Execute();
}

TEST_F(Look, OfTheOptions) {
    ShowShell();
    Open(QStringLiteral("TAnotherService"));
    Shell->ServiceOptionsAsync();
    Settle();
    See(QStringLiteral("options"));
    TestDialogs.Answers.emplace_back(QStringLiteral("0123456789abcdef"));
    QTest::mouseClick(Find<QWidget>("ApiKeyHeader"), Qt::LeftButton);
    See(QStringLiteral("options-key"));
}

TEST_F(Look, OfAPageThatIsNotConfigured) {
    ShowShell();
    Open(QStringLiteral("TTestService"));
    Open(QStringLiteral("Echo"));
    See(QStringLiteral("not-configured"));
}

TEST_F(Look, OfTheShortcuts) {
    ShowShell();
    for (const TZOTheme theme : {thLight, thDark}) {
        TZOIdeTheming::SetTheme(theme);
        TZOShortcutsInfoDialog dialog(Shell.get());
        dialog.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog));
        LookCheck::See(&dialog, theme == thDark ? QStringLiteral("shortcuts-dark")
                                                : QStringLiteral("shortcuts-light"));
    }
}

TEST_F(Look, OfTheSignOn) {
    ShowShell();
    QPushButton cancel;
    for (const TZOTheme theme : {thLight, thDark}) {
        TZOIdeTheming::SetTheme(theme);
        TZOLongRequest request(&cancel, [](const TZOLongRequest::TProgress&) {});
        TZOSignOn signOn(Shell.get(), request);
        const QString end = theme == thDark ? QStringLiteral("-dark") : QStringLiteral("-light");
        for (const QString& service : {QStringLiteral("TPetStore_0a1b2c3d"), QString(200, u'W')}) {
            signOn.Begin(service, "http://accounts.example.com/authorize?state=1");
            auto* window = Shell->findChild<QDialog*>(QStringLiteral("SignOnWindow"));
            ASSERT_TRUE(window);
            ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
            LookCheck::See(window, QStringLiteral("sign-on%1%2").arg(service.size()).arg(end));
            signOn.End();
        }
    }
}

} // namespace
