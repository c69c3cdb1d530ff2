#include "tests/pages/ExecutePageFixture.h"
#include "tests/pages/Wheel.h"

#include "shell/ShortcutsInfoDialog.h"

#include "platform/IdeTheming.h"

#include <QApplication>
#include <QFile>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>

namespace {

using ExecutePage = ExecutePageTest;

} // namespace

TEST_F(ExecutePage, ShowsTheOperationAndItsRequest) {
    ShowOperation(QStringLiteral("Echo"));
    EXPECT_EQ(Find<QLabel>("HeaderLabel")->text(), QStringLiteral("Echo"));
    EXPECT_EQ(Find<QLabel>("InfoLabel")->text(), QStringLiteral("Says it again."));
    EXPECT_EQ(Lines(ReqView()), (QStringList{QStringLiteral("{"), QStringLiteral("  text: value"),
                                             QStringLiteral("  count: value"), QStringLiteral("}")}));
    EXPECT_TRUE(ReqView()->Focused());
    EXPECT_FALSE(Find<QWidget>("DownloadPanel")->isVisible());
    EXPECT_TRUE(ExecButton()->isEnabled());
    EXPECT_EQ(ExecButton()->size(), QSize(152, 32));
    EXPECT_FALSE(Find<QWidget>("AuthOptionsButton")->isVisible());
}

TEST_F(ExecutePage, HasNoResponseBeforeTheFirstExecution) {
    ShowOperation(QStringLiteral("Echo"));
    EXPECT_FALSE(Find<QWidget>("RespPanel")->isVisible());
    EXPECT_FALSE(Find<QWidget>("ShowFileLabel")->isVisible());
}

TEST_F(ExecutePage, ShowsTheResponseAsATree) {
    ShowOperation(QStringLiteral("Echo"));
    Fill(QStringLiteral("text"), QStringLiteral("hello"));
    Execute();
    EXPECT_TRUE(Find<QWidget>("RespPanel")->isVisible());
    EXPECT_EQ(Find<QLabel>("RespLabel")->text(), QStringLiteral("Responce"));
    EXPECT_EQ(Lines(RespView()),
              (QStringList{QStringLiteral("{"), QStringLiteral("  text: hello"),
                           QStringLiteral("  numbers: ["), QStringLiteral("    1"), QStringLiteral("    2"),
                           QStringLiteral("  ]"), QStringLiteral("}")}));
    EXPECT_GT(Find<QWidget>("RespPanel")->y(), Find<QWidget>("ButtonsPanel")->y());
    EXPECT_EQ(RespView()->height(), RespView()->ContentHeight());
    EXPECT_FALSE(Find<QWidget>("ShowFileLabel")->isVisible());
}

TEST_F(ExecutePage, CommitsTheEditThatIsOpen) {
    ShowOperation(QStringLiteral("Echo"));
    GoTo(QStringLiteral("text"));
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("open"));
    Execute();
    EXPECT_TRUE(Lines(RespView()).contains(QStringLiteral("  text: open")));
}

TEST_F(ExecutePage, DoesNotExecuteOnATextThatTheValueDoesNotTake) {
    ShowOperation(QStringLiteral("Echo"));
    GoTo(QStringLiteral("count"));
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("many"));
    Execute();
    EXPECT_EQ(Errors, QStringList{QStringLiteral("EConvertError")});
    EXPECT_FALSE(Find<QWidget>("RespPanel")->isVisible());
    EXPECT_TRUE(ReqView()->EditorShown());
    Shell->ServiceOptionsAsync();
    Settle();
    EXPECT_EQ(Stack().back(), QStringLiteral("Echo"));
    Errors.clear();
}

TEST_F(ExecutePage, SaysSoWhenThereIsNoResponseData) {
    ShowOperation(QStringLiteral("DoNothing"));
    Execute();
    EXPECT_EQ(Lines(RespView()), (QStringList{QStringLiteral("Ok"), QStringLiteral("No response data")}));
    EXPECT_EQ(Token(RespView(), 0), ctNormal);
}

TEST_F(ExecutePage, ShowsAFailureInTheErrorColour) {
    ShowOperation(QStringLiteral("Fail"));
    Execute();
    const QStringList lines = Lines(RespView());
    ASSERT_GE(lines.size(), 2);
    EXPECT_EQ(lines[0], QStringLiteral("EZOHttpStatusError"));
    EXPECT_TRUE(lines.mid(1).join(u' ').contains(QStringLiteral("404")));
    for (int i = 0; i < lines.size(); ++i)
        EXPECT_EQ(Token(RespView(), i), ctError) << i;
    EXPECT_EQ(RespView()->ErrorColor(), QColor(255, 0, 0));
    EXPECT_EQ(ExecButton()->text(), QStringLiteral("Execute"));
    EXPECT_TRUE(ExecButton()->isEnabled());
}

TEST_F(ExecutePage, AFailureReplacesTheResponseBefore) {
    ShowOperation(QStringLiteral("Echo"));
    Execute();
    EXPECT_EQ(Lines(RespView()).front(), QStringLiteral("{"));
    Shell->GetServices(0)->Component()->SetServerUrl(QStringLiteral("http://127.0.0.1:1"));
    Execute();
    EXPECT_EQ(Lines(RespView()).front(), QStringLiteral("EZOConnectionRefusedError"));
    Shell->GetServices(0)->Component()->SetServerUrl(Server.Url());
    Execute();
    EXPECT_EQ(Lines(RespView()).front(), QStringLiteral("{"));
}

TEST_F(ExecutePage, TheButtonSaysThatItExecutes) {
    ShowOperation(QStringLiteral("Echo"));
    QString caption;
    bool wasEnabled = true;
    Server.OnEcho = [&] { // the explorer's thread waits for the answer
        caption = ExecButton()->text();
        wasEnabled = ExecButton()->isEnabled();
    };
    ExecButton()->setFocus();
    QTest::keyClick(ExecButton(), Qt::Key_Space);
    EXPECT_EQ(caption, QStringLiteral("Executing..."));
    EXPECT_FALSE(wasEnabled);
    EXPECT_EQ(ExecButton()->text(), QStringLiteral("Execute"));
    EXPECT_TRUE(ExecButton()->hasFocus());
}

TEST_F(ExecutePage, ADownloadWithoutDestinationAsksForOne) {
    ShowOperation(QStringLiteral("Download"));
    EXPECT_TRUE(Find<QWidget>("DownloadPanel")->isVisible());
    EXPECT_EQ(Find<QLineEdit>("DownloadEdit")->placeholderText(), QStringLiteral("Not specified"));
    Execute(); // the dialog is cancelled
    EXPECT_EQ(TestDialogs.Asked, QStringList{QStringLiteral("save Download to file|")});
    EXPECT_FALSE(Find<QWidget>("RespPanel")->isVisible());
    EXPECT_EQ(ExecButton()->text(), QStringLiteral("Execute"));
    EXPECT_TRUE(ExecButton()->isEnabled());
    EXPECT_EQ(Find<QLineEdit>("DownloadEdit")->text(), QString());
}

TEST_F(ExecutePage, TheButtonKeepsTheFocusWhenItsDialogHasTakenTheWindows) {
    ShowOperation(QStringLiteral("Download"));
    Fill(QStringLiteral("bytes"), QStringLiteral("7"));
    TestDialogs.Answers = {Folder.filePath(QStringLiteral("out"))};
    // The display server gives the focus back to the window a while after its dialog is gone.
    TestDialogs.OnAsked = [] { QApplication::setActiveWindow(nullptr); };
    ExecButton()->setFocus();
    QTest::keyClick(ExecButton(), Qt::Key_Space);
    EXPECT_EQ(Lines(RespView()).front(), QStringLiteral("File downloaded to:"));
    QApplication::setActiveWindow(Shell->window());
    EXPECT_TRUE(ExecButton()->hasFocus());
}

TEST_F(ExecutePage, ADownloadThatIsNotAskedForLeavesTheOutcomeOfTheLastOne) {
    ShowOperation(QStringLiteral("Download"));
    Fill(QStringLiteral("bytes"), QStringLiteral("7"));
    TestDialogs.Answers.emplace_back(Folder.filePath(QStringLiteral("out.bin")));
    Execute();
    const QStringList outcome = Lines(RespView());
    ASSERT_EQ(outcome.front(), QStringLiteral("File downloaded to:"));
    Find<QLineEdit>("DownloadEdit")->selectAll();
    QTest::keyClick(Find<QLineEdit>("DownloadEdit"), Qt::Key_Delete);
    Execute(); // the dialog is cancelled
    EXPECT_EQ(TestDialogs.Asked.size(), 2);
    EXPECT_EQ(Lines(RespView()), outcome);
    EXPECT_TRUE(Find<QWidget>("ShowFileLabel")->isVisible());
}

TEST_F(ExecutePage, WritesADownloadToItsFile) {
    ShowOperation(QStringLiteral("Download"));
    Fill(QStringLiteral("bytes"), QStringLiteral("1234"));
    const QString name = Folder.filePath(QStringLiteral("out.bin"));
    TestDialogs.Answers.emplace_back(name);
    Execute();
    EXPECT_EQ(Find<QLineEdit>("DownloadEdit")->text(), name);
    EXPECT_EQ(Lines(RespView()),
              (QStringList{QStringLiteral("File downloaded to:"), name + QStringLiteral(" (1234 bytes)")}));
    EXPECT_EQ(Token(RespView(), 1), ctNormal);
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray(1234, 'x'));
    auto* show = Find<QWidget>("ShowFileLabel");
    EXPECT_TRUE(show->isVisible());
    EXPECT_GT(show->mapTo(Top(), QPoint()).y(), RespView()->mapTo(Top(), QPoint()).y());
    QTest::mouseClick(show, Qt::LeftButton);
    EXPECT_EQ(TestDialogs.Asked.back(), QStringLiteral("reveal ") + name);
    Execute(); // the destination is known now
    EXPECT_EQ(TestDialogs.Asked.size(), 2);
}

TEST_F(ExecutePage, OffersTheDestinationAgain) {
    ShowOperation(QStringLiteral("Download"));
    QTest::keyClicks(Find<QLineEdit>("DownloadEdit"), QStringLiteral("/tmp/a"));
    QTest::mouseClick(Find<QWidget>("DownloadSaveAsLabel"), Qt::LeftButton);
    EXPECT_EQ(TestDialogs.Asked, QStringList{QStringLiteral("save Download to file|/tmp/a")});
    EXPECT_EQ(Find<QLineEdit>("DownloadEdit")->text(), QStringLiteral("/tmp/a"));
    TestDialogs.Answers.emplace_back(QStringLiteral("/tmp/b"));
    QTest::mouseClick(Find<QWidget>("DownloadSaveAsLabel"), Qt::LeftButton);
    EXPECT_EQ(Find<QLineEdit>("DownloadEdit")->text(), QStringLiteral("/tmp/b"));
}

TEST_F(ExecutePage, AFailedDownloadShowsNoFile) {
    ShowOperation(QStringLiteral("Download"));
    Fill(QStringLiteral("bytes"), QStringLiteral("7"));
    QTest::keyClicks(Find<QLineEdit>("DownloadEdit"), Folder.filePath(QStringLiteral("out.bin")));
    Execute();
    EXPECT_TRUE(Find<QWidget>("ShowFileLabel")->isVisible());
    Fill(QStringLiteral("bytes"), QStringLiteral("0"));
    Execute();
    EXPECT_EQ(Lines(RespView()).front(), QStringLiteral("EZOHttpStatusError"));
    EXPECT_FALSE(Find<QWidget>("ShowFileLabel")->isVisible());
}

TEST_F(ExecutePage, ReportsADestinationThatCannotBeCreated) {
    ShowOperation(QStringLiteral("Download"));
    QTest::keyClicks(Find<QLineEdit>("DownloadEdit"), QStringLiteral("/dev/null/out"));
    Execute();
    const QStringList lines = Lines(RespView());
    EXPECT_EQ(lines.front(), QStringLiteral("EFCreateError"));
    EXPECT_TRUE(lines[1].contains(QStringLiteral("/dev/null/out")));
}

TEST_F(ExecutePage, AnUploadShowsItsFile) {
    ShowOperation(QStringLiteral("Upload"));
    EXPECT_EQ(Lines(ReqView())[1], QStringLiteral("  file: file"));
    const QString name = WriteFile(QStringLiteral("up.txt"), "hello world");
    const auto doubleClick = [this] {
        const QRect row = ReqView()->RowAt(1)->Layout()->Bounds();
        QTest::mouseDClick(ReqView(), Qt::LeftButton, {}, QPoint(row.left() + 40, row.center().y()));
    };
    GoTo(QStringLiteral("file"));
    doubleClick(); // cancelled
    EXPECT_EQ(TestDialogs.Asked, QStringList{QStringLiteral("open Select file to upload|")});
    EXPECT_EQ(Lines(ReqView())[1], QStringLiteral("  file: file"));
    TestDialogs.Answers.emplace_back(name);
    doubleClick();
    EXPECT_EQ(Lines(ReqView())[1], QStringLiteral("  file: ") + name);
    doubleClick();
    EXPECT_EQ(TestDialogs.Asked.back(), QStringLiteral("open Select file to upload|") + name);
    // The server refuses the first attempt; the second one sends the whole file again.
    Execute();
    EXPECT_EQ(Lines(RespView()).front(), QStringLiteral("EZOHttpStatusError"));
    Execute();
    EXPECT_TRUE(Lines(RespView()).contains(QStringLiteral("  text: 11:hello")))
        << Lines(RespView()).join(u'\n').toStdString();
    Execute();
    EXPECT_TRUE(Lines(RespView()).contains(QStringLiteral("  text: 11:hello")));
    QFile::remove(name);
    Execute();
    EXPECT_EQ(Lines(RespView()).front(), QStringLiteral("EFOpenError"));
}

TEST_F(ExecutePage, ATypedUploadNameIsShownAndNotOpened) {
    ShowOperation(QStringLiteral("Upload"));
    Fill(QStringLiteral("file"), QStringLiteral("/nowhere/x"));
    EXPECT_EQ(Lines(ReqView())[1], QStringLiteral("  file: /nowhere/x"));
    Execute();
    EXPECT_NE(Lines(RespView()).front(), QStringLiteral("EFOpenError"));
}

TEST_F(ExecutePage, AskForOptionsWhereTheServiceIsNotConfigured) {
    ShowOperation(QStringLiteral("Echo"));
    TZORestService* service = Shell->GetServices(0)->Component();
    service->SetApiKey(QString());
    Shell->GoBackAsync();
    Settle();
    Open(QStringLiteral("Echo"));
    EXPECT_FALSE(ExecButton()->isEnabled());
    auto* button = Find<QPushButton>("AuthOptionsButton");
    EXPECT_TRUE(button->isVisible());
    EXPECT_EQ(button->size(), QSize(152, 32));
    EXPECT_EQ(button->x(), ExecButton()->geometry().right() + 1 + 8);
    QTest::mouseClick(button, Qt::LeftButton);
    Settle();
    EXPECT_EQ(Stack().back(), QStringLiteral("Service options"));
    TestDialogs.Answers.emplace_back(QStringLiteral("key"));
    QTest::mouseClick(Find<QWidget>("ApiKeyHeader"), Qt::LeftButton);
    Shell->GoBackAsync();
    Settle();
    EXPECT_EQ(Stack().back(), QStringLiteral("Echo"));
    EXPECT_TRUE(ExecButton()->isEnabled());
    EXPECT_FALSE(Find<QPushButton>("AuthOptionsButton")->isVisible());
}

TEST_F(ExecutePage, KeepsItsRequestWhileAnotherPageIsOnTop) {
    ShowOperation(QStringLiteral("Echo"));
    Fill(QStringLiteral("text"), QStringLiteral("kept"));
    Shell->ServiceOptionsAsync();
    Settle();
    ASSERT_EQ(Shell->GetNavStackCount(), 4);
    Shell->GoBackAsync();
    Settle();
    EXPECT_EQ(Lines(ReqView())[1], QStringLiteral("  text: kept"));
}

TEST_F(ExecutePage, ColoursFollowTheTheme) {
    ShowOperation(QStringLiteral("Echo"));
    Execute();
    for (const TZOTheme theme : {thDark, thLight}) {
        TZOIdeTheming::SetTheme(theme);
        const QColor window = TZOIdeTheming::GetSystemColor(clWindow);
        const QColor text = TZOIdeTheming::GetSystemColor(clWindowText);
        const QColor link = theme == thDark ? QColor(255, 224, 188) : QColor(0, 102, 204);
        const QColor gray =
            theme == thDark ? QColor(0xB0, 0xB0, 0xB0) : TZOIdeTheming::GetSystemColor(clGrayText);
        for (const TZORestView* view : {ReqView(), RespView()}) {
            EXPECT_EQ(view->Color(), window);
            EXPECT_EQ(view->FontColor(), text);
            EXPECT_EQ(view->SelectedColor(), TZOIdeTheming::Blend(window, text, 3));
            EXPECT_EQ(view->GrayColor(), gray);
            EXPECT_EQ(view->SymbolColor(), link);
        }
        for (const char* label : {"HelpLabel", "DownloadSaveAsLabel", "ShowFileLabel"})
            EXPECT_EQ(TextColor(Find<QWidget>(label)), link) << label;
        EXPECT_EQ(TextColor(Find<QWidget>("InfoLabel")), gray);
        EXPECT_EQ(Top()->palette().color(QPalette::Window), TZOIdeTheming::GetSystemColor(clBtnFace));
    }
}

TEST_F(ExecutePage, ShowsTheShortcuts) {
    ShowOperation(QStringLiteral("Echo"));
    QString title;
    QTimer::singleShot(0, [&title] {
        QWidget* dialog = QApplication::activeModalWidget();
        ASSERT_TRUE(qobject_cast<TZOShortcutsInfoDialog*>(dialog));
        title = dialog->windowTitle();
        QTest::keyClick(dialog, Qt::Key_Escape);
    });
    QTest::mouseClick(Find<QWidget>("HelpLabel"), Qt::LeftButton);
    EXPECT_EQ(title, QStringLiteral("Data editor shortcuts"));
    EXPECT_FALSE(QApplication::activeModalWidget());
}

TEST_F(ExecutePage, TheWheelOverAnEditorScrollsThePage) {
    ShowOperation(QStringLiteral("Echo"));
    Execute();
    Shell->resize(500, 300);
    Settle();
    auto* bar = Find<QScrollArea>("ScrollBox")->verticalScrollBar();
    ASSERT_GT(bar->maximum(), 192);
    bar->setValue(0);
    TurnWheel(ReqView(), -120);
    EXPECT_EQ(bar->value(), 96);
    TurnWheel(ReqView(), 120);
    EXPECT_EQ(bar->value(), 0);
}

TEST_F(ExecutePage, LeavesNoGapAroundItsEditors) {
    ShowOperation(QStringLiteral("DoNothing"));
    Execute();
    EXPECT_EQ(Find<QWidget>("ReqPanel")->height(), ReqView()->ContentHeight());
    EXPECT_EQ(RespView()->geometry().bottom() + 1 + 8, Find<QWidget>("RespPanel")->height());
}

TEST_F(ExecutePage, ScrollsToTheResponseWhereItIsOutOfSight) {
    ShowOperation(QStringLiteral("Echo"));
    Execute();
    const QScrollBar* bar = Find<QScrollArea>("ScrollBox")->verticalScrollBar();
    EXPECT_EQ(bar->value(), 0); // in sight already
    Shell->resize(500, 360);
    Settle();
    auto* panel = Find<QWidget>("RespPanel");
    const int height = Find<QScrollArea>("ScrollBox")->viewport()->height();
    QTest::keyClick(ExecButton(), Qt::Key_Space);
    EXPECT_GE(panel->visibleRegion().boundingRect().height(), height / 2 - 1);
    EXPECT_LE(panel->visibleRegion().boundingRect().height(), height / 2 + 1);
}

TEST_F(ExecutePage, MakesWayAtOnceForAComponentThatIsExplored) {
    ShowOperation(QStringLiteral("Echo"));
    ASSERT_EQ(Shell->GetNavStackCount(), 3);
    const QPointer<QWidget> execute = Shell->GetNavStack(2)->Frame();
    const QPointer<QWidget> operations = Shell->GetNavStack(1)->Frame();
    TZORestService component(Classes[0].get());
    component.setObjectName(QStringLiteral("Mine"));
    Shell->ExploreComponent(&component);
    EXPECT_TRUE(execute.isNull());
    EXPECT_TRUE(operations.isNull());
    EXPECT_EQ(Stack(), QStringList{QStringLiteral("Services")});
    Settle();
    EXPECT_EQ(Stack(), (QStringList{QStringLiteral("Services"), QStringLiteral("Mine")}));
    EXPECT_EQ(Find<QLabel>("HeaderLabel")->text(), QStringLiteral("Mine"));
}

TEST_F(ExecutePage, DropsEverythingWhenItsComponentGoes) {
    ShowShell();
    auto component = std::make_unique<TZORestService>(Classes[0].get());
    component->SetApiKey(QStringLiteral("key"));
    Shell->ExploreComponent(component.get());
    Settle();
    Open(QStringLiteral("Echo"));
    Execute();
    component.reset();
    EXPECT_EQ(ReqView()->GetRowCount(), 0);
    EXPECT_EQ(RespView()->GetRowCount(), 0);
    EXPECT_FALSE(ExecButton()->isEnabled());
    EXPECT_EQ(Shell->GetNavStackTop()->AuthState(true), asHidden);
    TZOIdeTheming::SetTheme(thDark);
    Settle();
    EXPECT_EQ(Stack(), QStringList{QStringLiteral("Services")});
}

TEST_F(ExecutePage, APageThatWasNeverShownLivesThroughTheEndOfItsClass) {
    ShowShell();
    Open(QStringLiteral("TTestService"));
    ClickRow(QStringLiteral("Echo"));
    QTest::keyClick(List(), Qt::Key_Return);
    ClickRow(QStringLiteral("Upload"));
    QTest::keyClick(List(), Qt::Key_Return); // this one is shown
    Settle();
    EXPECT_EQ(Stack().back(), QStringLiteral("Upload"));
    Shell->ServiceClassRemoved(Classes[0].get());
    Classes.clear(); // and with it the types of both requests
    TZOIdeTheming::SetTheme(thDark);
    Settle();
    EXPECT_EQ(Stack(), QStringList{QStringLiteral("Services")});
}
