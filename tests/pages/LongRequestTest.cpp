#include "tests/pages/ExecutePageFixture.h"

#include "pages/LongRequest.h"

#include "platform/IdeTheming.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTimer>
#include <QToolButton>

namespace {

using LongRequest = ExecutePageTest;

TEST_F(LongRequest, ShowsItsTimeAndBytes) {
    ShowOperation(QStringLiteral("Halves"));
    Fill(QStringLiteral("bytes"), QStringLiteral("40960"));
    TestDialogs.Answers.emplace_back(Folder.filePath(QStringLiteral("out")));
    auto* cancel = Find<QPushButton>("CancelButton");
    auto* progress = Find<QLabel>("ProgressLabel");
    bool wasShown = false;
    QString text;
    QElapsedTimer clock;
    qint64 shownAfter = 0;
    Server.OnHalf = [&] {
        OnGui([&] {
            wasShown = cancel->isVisible() && progress->isVisible();
            shownAfter = clock.elapsed();
            text = progress->text();
        });
    };
    clock.start();
    Execute();
    EXPECT_TRUE(wasShown);
    EXPECT_GE(shownAfter, TZOLongRequest::PatienceMs);
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^\\d+\\.\\d s, 20 KiB received$")).match(text).hasMatch())
        << text.toStdString();
    EXPECT_FALSE(cancel->isVisible());
    EXPECT_FALSE(progress->isVisible());
    EXPECT_EQ(Lines(RespView()).front(), QStringLiteral("File downloaded to:"));
}

TEST_F(LongRequest, AShortOneShowsNothingOfIt) {
    ShowOperation(QStringLiteral("Echo"));
    class TSpy : public QObject {
    public:
        using QObject::QObject;
        bool WasShown = false;

    protected:
        bool eventFilter(QObject*, QEvent* AEvent) override {
            WasShown |= AEvent->type() == QEvent::Show;
            return false;
        }
    } spy;
    Find<QPushButton>("CancelButton")->installEventFilter(&spy);
    Execute();
    EXPECT_FALSE(spy.WasShown);
}

TEST_F(LongRequest, EscapeCancelsItAsAFailureOfItsOwnKind) {
    ShowOperation(QStringLiteral("Echo"));
    Execute();
    ReqView()->setFocus();
    Server.OnEcho = [&] { OnGui([&] { KeyInWindow(Qt::Key_Escape); }); };
    Execute();
    EXPECT_EQ(Lines(RespView()), (QStringList{QStringLiteral("EZOCancelledError"),
                                              QStringLiteral("The request was cancelled.")}));
    EXPECT_EQ(Token(RespView(), 0), ctError);
    EXPECT_TRUE(ExecButton()->isEnabled());
    Server.OnEcho = {};
    Execute();
    EXPECT_EQ(Lines(RespView()).front(), QStringLiteral("{"));
}

TEST_F(LongRequest, TheCancelButtonCancelsIt) {
    ShowOperation(QStringLiteral("Echo"));
    Server.OnEcho = [&] { OnGui([&] { ClickInWindow(Find<QPushButton>("CancelButton")); }); };
    Execute();
    EXPECT_EQ(Lines(RespView()).front(), QStringLiteral("EZOCancelledError"));
}

TEST_F(LongRequest, NoOtherKeyOrClickDoesAnything) {
    ShowOperation(QStringLiteral("Echo"));
    GoTo(QStringLiteral("text"));
    const QStringList before = Lines(ReqView());
    const QWidget* focus = nullptr;
    Server.OnEcho = [&] {
        OnGui([&] {
            focus = QApplication::focusWidget();
            KeyInWindow(Qt::Key_X);
            KeyInWindow(Qt::Key_F6);
            KeyInWindow(Qt::Key_Return, Qt::ControlModifier);
            for (const char* name : {"HelpLabel", "CopyCurlLabel", "ExecButton"})
                ClickInWindow(Find<QWidget>(name));
            ClickInWindow(Shell->findChild<QToolButton*>(QStringLiteral("BackButton")));
            ClickInWindow(ReqView());
            EXPECT_EQ(QApplication::focusWidget(), focus);
        });
    };
    Execute();
    EXPECT_EQ(Lines(RespView()).front(), QStringLiteral("{"));
    EXPECT_EQ(Lines(ReqView()), before);
    EXPECT_EQ(Stack().back(), QStringLiteral("Echo"));
    EXPECT_FALSE(QApplication::activeModalWidget());
}

TEST_F(LongRequest, TimersStandStill) {
    ShowOperation(QStringLiteral("Echo"));
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { ++ticks; });
    timer.start(1);
    int ticksMeanwhile = -1;
    Server.OnEcho = [&] { OnGui([&] { ticksMeanwhile = ticks; }); };
    QTest::keyClick(ExecButton(), Qt::Key_Space);
    EXPECT_EQ(ticksMeanwhile, 0);
}

TEST_F(LongRequest, NavigationAndTheHostsCallsWait) {
    ShowOperation(QStringLiteral("Echo"));
    TZORestService component(Classes[0].get());
    int depthMeanwhile = 0;
    Server.OnEcho = [&] {
        OnGui([&] {
            Shell->GoBackAsync();
            Shell->ExploreComponent(&component);
        });
        OnGui([&] { depthMeanwhile = Shell->GetNavStackCount(); });
    };
    QTest::keyClick(ExecButton(), Qt::Key_Space);
    EXPECT_EQ(depthMeanwhile, 3);
    EXPECT_EQ(Stack().back(), QStringLiteral("Echo"));
    EXPECT_EQ(Lines(RespView()).front(), QStringLiteral("{"));
    Settle();
    EXPECT_EQ(Stack(), (QStringList{QStringLiteral("Services"), QStringLiteral("<TTestService>")}));
    Shell.reset();
}

TEST_F(LongRequest, ClosingTheWindowWaits) {
    ShowOperation(QStringLiteral("Echo"));
    bool wasVisible = false;
    Server.OnEcho = [&] {
        OnGui([&] {
            Shell->close();
            wasVisible = Shell->isVisible();
        });
    };
    QTest::keyClick(ExecButton(), Qt::Key_Space);
    EXPECT_TRUE(wasVisible);
    EXPECT_TRUE(Shell->isVisible());
    Settle();
    EXPECT_FALSE(Shell->isVisible());
}

TEST_F(LongRequest, AChangeOfTheThemeWaits) {
    ShowOperation(QStringLiteral("Echo"));
    const QColor light = ReqView()->Color();
    QColor meanwhile;
    Server.OnEcho = [&] {
        OnGui([&] {
            TZOIdeTheming::SetTheme(thDark);
            meanwhile = ReqView()->Color();
        });
    };
    QTest::keyClick(ExecButton(), Qt::Key_Space);
    EXPECT_EQ(meanwhile, light);
    Settle();
    EXPECT_EQ(ReqView()->Color(), TZOIdeTheming::GetSystemColor(clWindow));
    EXPECT_NE(ReqView()->Color(), light);
}

TEST_F(LongRequest, SaysHowMuchOfACancelledDownloadWasWritten) {
    ShowOperation(QStringLiteral("Halves"));
    Fill(QStringLiteral("bytes"), QStringLiteral("400000"));
    const QString name = Folder.filePath(QStringLiteral("out"));
    TestDialogs.Answers.emplace_back(name);
    Server.OnHalf = [&] { OnGui([&] { KeyInWindow(Qt::Key_Escape); }); };
    Execute();
    const QStringList lines = Lines(RespView());
    ASSERT_EQ(lines.size(), 3) << lines.join(u'\n').toStdString();
    EXPECT_EQ(lines[0], QStringLiteral("EZOCancelledError"));
    EXPECT_EQ(lines[2],
              QStringLiteral("%1 of 400000 bytes written to %2").arg(QFileInfo(name).size()).arg(name));
    EXPECT_GT(QFileInfo(name).size(), 0);
    EXPECT_FALSE(Find<QWidget>("ShowFileLabel")->isVisible());
}

} // namespace
