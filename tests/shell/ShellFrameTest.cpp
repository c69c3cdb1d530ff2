#include "tests/shell/ShellFixture.h"

#include "platform/Exceptions.h"

#include <QCoreApplication>

namespace {

using ShellFrame = ShellTest;

QString LinkColor() { return QColor(0, 102, 204).name(); }

} // namespace

TEST_F(ShellFrame, HasAnEmptyStackBeforeItHasAWindow) {
    MakeShell();
    Settle();
    EXPECT_EQ(Shell->GetNavStackCount(), 0);
    EXPECT_EQ(Shell->GetNavStackTop(), nullptr);
    EXPECT_EQ(Shell->size(), QSize(701, 446));
    Shell->show();
    EXPECT_EQ(Shell->GetNavStackCount(), 0);
    Settle();
    EXPECT_EQ(Stack(), QStringList{QStringLiteral("Services")});
    EXPECT_EQ(Bar(), QStringLiteral("Services"));
    EXPECT_EQ(TextColor(Find<QLabel>("NavOne")), TZOIdeTheming::GetSystemColor(clWindowText));
    EXPECT_FALSE(Find<QToolButton>("BackButton")->isEnabled());
    EXPECT_EQ(Pages.size(), 1);
}

TEST_F(ShellFrame, ListsTheRegisteredClassesInTheirOrder) {
    MakeShell();
    ASSERT_EQ(Shell->GetServiceCount(), 2);
    EXPECT_EQ(Shell->GetServices(0)->SvcClass(), First.get());
    EXPECT_EQ(Shell->GetServices(1)->SvcClass(), Second.get());
    EXPECT_THROW(Shell->GetServices(2), EListError);
    EXPECT_THROW(Shell->GetServices(-1), EListError);
}

TEST_F(ShellFrame, DoesNothingWithAnEmptyStack) {
    MakeShell();
    Shell->GoBackAsync();
    Shell->ServiceOptionsAsync();
    EXPECT_THROW(Shell->GetNavStack(0), EListError);
    EXPECT_TRUE(Find<QWidget>("AuthPanel")->isHidden());
    EXPECT_EQ(Log, QStringList());
}

TEST_F(ShellFrame, PushesOnlyTheLastPageAskedFor) {
    ShowShell();
    Shell->NavigateAsync(MakePage(QStringLiteral("A")));
    Shell->NavigateAsync(MakePage(QStringLiteral("B")));
    EXPECT_EQ(Stack(), QStringList{QStringLiteral("Services")});
    Settle();
    EXPECT_EQ(Stack(), (QStringList{QStringLiteral("Services"), QStringLiteral("B")}));
    EXPECT_EQ(Log, QStringList()); // the page that lost is its maker's still
}

TEST_F(ShellFrame, GoesBackToAPageOfTheStack) {
    ShowShell();
    Push({QStringLiteral("A"), QStringLiteral("B")});
    EXPECT_EQ(Bar(), QStringLiteral("Services > A > B"));
    Shell->NavigateAsync(Shell->GetNavStack(1));
    Settle();
    EXPECT_EQ(Log, QStringList{QStringLiteral("destroyed B")});
    EXPECT_EQ(Bar(), QStringLiteral("Services > A"));
    EXPECT_TRUE(Shell->GetNavStackTop()->Frame()->isVisible());
    Push({QStringLiteral("C")});
    EXPECT_EQ(Bar(), QStringLiteral("Services > A > C"));
}

TEST_F(ShellFrame, ShowsOnlyTheTopPageAndGivesItTheFocus) {
    ShowShell();
    Push({QStringLiteral("A"), QStringLiteral("B")});
    QWidget* panel = Find<QWidget>("PagePanel");
    for (int i = 0; i < 3; ++i) {
        const QWidget* frame = Shell->GetNavStack(i)->Frame();
        EXPECT_EQ(frame->isVisible(), i == 2);
        EXPECT_EQ(frame->parentWidget(), panel);
    }
    EXPECT_TRUE(Shell->GetNavStackTop()->Frame()->hasFocus());
    EXPECT_EQ(Shell->GetNavStackTop()->Frame()->geometry(), panel->rect());
}

TEST_F(ShellFrame, ShowsTheBottomFourOfFivePages) {
    ShowShell();
    Push({QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C"), QStringLiteral("D")});
    EXPECT_EQ(Bar(), QStringLiteral("Services > A > B > C"));
    for (const char* name : {"NavOne", "NavTwo", "NavThree", "NavFour"}) {
        EXPECT_EQ(TextColor(Find<QLabel>(name)).name(), LinkColor()) << name;
        EXPECT_EQ(Find<QLabel>(name)->cursor().shape(), Qt::PointingHandCursor) << name;
    }
    QTest::mouseClick(Find<QLabel>("NavFour"), Qt::LeftButton);
    Settle();
    EXPECT_EQ(Bar(), QStringLiteral("Services > A > B"));
    EXPECT_EQ(Log, (QStringList{QStringLiteral("destroyed D"), QStringLiteral("destroyed C")}));
}

TEST_F(ShellFrame, NavigatesByItsLabels) {
    struct TCase {
        const char* Label;
        int Depth;
    };
    for (const auto& [label, depth] : {TCase{"NavOne", 1}, {"NavTwo", 2}, {"NavThree", 3}}) {
        ShowShell();
        Push({QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")});
        QTest::mouseClick(Find<QLabel>(label), Qt::LeftButton);
        EXPECT_EQ(Shell->GetNavStackCount(), 4); // not before the click has been handled
        Settle();
        EXPECT_EQ(Shell->GetNavStackCount(), depth) << label;
    }
}

TEST_F(ShellFrame, IsWalkedWithTheKeyboard) {
    ShowShell();
    Push({QStringLiteral("A"), QStringLiteral("B")});
    auto* back = Find<QToolButton>("BackButton");
    back->setFocus(Qt::TabFocusReason);
    QTest::keyClick(back, Qt::Key_Tab);
    ASSERT_TRUE(Find<QLabel>("NavOne")->hasFocus());
    QTest::keyClick(Find<QLabel>("NavOne"), Qt::Key_Tab);
    ASSERT_TRUE(Find<QLabel>("NavTwo")->hasFocus());
    QTest::keyClick(Find<QLabel>("NavTwo"), Qt::Key_Return);
    Settle();
    EXPECT_EQ(Bar(), QStringLiteral("Services > A"));
    EXPECT_TRUE(Shell->GetNavStackTop()->Frame()->hasFocus());
    back->setFocus();
    QTest::keyClick(back, Qt::Key_Space);
    Settle();
    EXPECT_EQ(Bar(), QStringLiteral("Services"));
}

TEST_F(ShellFrame, DoesNotAnswerAClickOnTheTopPagesLabel) {
    ShowShell();
    Push({QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")});
    EXPECT_EQ(Find<QLabel>("NavFour")->cursor().shape(), Qt::ArrowCursor);
    EXPECT_EQ(Find<QLabel>("NavFour")->focusPolicy(), Qt::NoFocus);
    QTest::mouseClick(Find<QLabel>("NavFour"), Qt::LeftButton);
    Settle();
    EXPECT_EQ(Shell->GetNavStackCount(), 4);
}

TEST_F(ShellFrame, GoesBackByItsButton) {
    ShowShell();
    Push({QStringLiteral("A"), QStringLiteral("B")});
    auto* back = Find<QToolButton>("BackButton");
    EXPECT_TRUE(back->isEnabled());
    QTest::mouseClick(back, Qt::LeftButton);
    Settle();
    EXPECT_EQ(Bar(), QStringLiteral("Services > A"));
    QTest::mouseClick(back, Qt::LeftButton);
    Settle();
    EXPECT_EQ(Bar(), QStringLiteral("Services"));
    EXPECT_FALSE(back->isEnabled());
    Shell->GoBackAsync();
    Settle();
    EXPECT_EQ(Bar(), QStringLiteral("Services"));
}

TEST_F(ShellFrame, LaysOutItsBar) {
    ShowShell();
    Push({QStringLiteral("A")});
    FrameOf(Shell->GetNavStackTop())->State = asConfigured;
    Push({QStringLiteral("B")});
    Shell->GoBackAsync();
    Settle();
    Settle();
    const auto place = [this](const char* AName) {
        const auto* widget = Find<QWidget>(AName);
        EXPECT_TRUE(widget->isVisible()) << AName;
        return QRect(widget->mapTo(Shell.get(), QPoint()), widget->size());
    };
    EXPECT_EQ(place("BackButton"), QRect(20, 12, 42, 42));
    EXPECT_EQ(place("NavPanel").left(), 20 + 42 + 8 + 32);
    EXPECT_EQ(place("AuthPanel").right(), 701 - 26 - 1);
    EXPECT_GE(place("AuthPanel").width(), 138);
    EXPECT_EQ(place("PagePanel"), QRect(0, 66, 701, 446 - 66));
}

TEST_F(ShellFrame, CarriesOutARequestMadeWhileItIsHidden) {
    ShowShell();
    Shell->hide();
    Push({QStringLiteral("A")});
    EXPECT_EQ(Shell->GetNavStackCount(), 2);
    Shell->show();
    EXPECT_TRUE(Shell->GetNavStackTop()->Frame()->isVisible());
}

TEST_F(ShellFrame, DropsARequestForAPageThatDied) {
    ShowShell();
    TZOShellPage* page = MakePage(QStringLiteral("A"));
    Shell->NavigateAsync(page);
    delete page;
    Settle();
    EXPECT_EQ(Bar(), QStringLiteral("Services"));
    Push({QStringLiteral("B"), QStringLiteral("C")});
    Shell->NavigateAsync(Shell->GetNavStack(1));
    delete Shell->GetNavStack(1);
    Settle();
    EXPECT_EQ(Bar(), QStringLiteral("Services > C"));
}

TEST_F(ShellFrame, KeepsAPageWhoseFrameWasDestroyedByAnother) {
    ShowShell();
    Push({QStringLiteral("A"), QStringLiteral("B")});
    delete Shell->GetNavStack(1)->Frame();
    EXPECT_EQ(Shell->GetNavStackCount(), 3);
    EXPECT_EQ(Shell->GetNavStack(1)->Frame(), nullptr);
    EXPECT_EQ(Shell->GetNavStack(1)->Caption(), QString());
    Log.clear();
    TTestService component(Second.get());
    Shell->ServiceClassRemoved(Second.get());
    EXPECT_EQ(Log, (QStringList{QStringLiteral("B removed TSecondService"),
                                QStringLiteral("Services removed TSecondService")}));
    delete Shell->GetNavStackTop()->Frame();
    Shell->ServiceOptionsAsync();
    EXPECT_EQ(Log.last(), QStringLiteral("B options"));
    Shell->ShowServiceList();
    EXPECT_EQ(Stack(), QStringList{QStringLiteral("Services")});
}

TEST_F(ShellFrame, ReturnsToTheServiceListAtOnce) {
    ShowShell();
    Push({QStringLiteral("A"), QStringLiteral("B")});
    Shell->ShowServiceList();
    EXPECT_EQ(Bar(), QStringLiteral("Services"));
    EXPECT_EQ(Log, (QStringList{QStringLiteral("destroyed B"), QStringLiteral("destroyed A")}));
    EXPECT_EQ(Pages.size(), 3);
}

TEST_F(ShellFrame, MakesANewServiceListWhenThereIsNone) {
    ShowShell();
    delete Shell->GetNavStackTop();
    Push({QStringLiteral("A")});
    Shell->ShowServiceList();
    EXPECT_EQ(Shell->GetNavStackCount(), 0);
    Settle();
    EXPECT_EQ(Bar(), QStringLiteral("Services"));
}

TEST_F(ShellFrame, AsksTheTopPageForItsAuthenticationState) {
    ShowShell();
    auto* panel = Find<QWidget>("AuthPanel");
    auto* status = Find<QLabel>("AuthStatusLabel");
    EXPECT_FALSE(panel->isVisible());
    Push({QStringLiteral("A")});
    FrameOf(Shell->GetNavStackTop())->State = asNotConfigured;
    Push({QStringLiteral("B")});
    EXPECT_FALSE(panel->isVisible());
    Shell->GoBackAsync();
    Settle();
    EXPECT_TRUE(panel->isVisible());
    EXPECT_EQ(status->text(), QStringLiteral("Not configured"));
    EXPECT_EQ(TextColor(status), QColor(255, 0, 0));
    EXPECT_EQ(TextColor(Find<QLabel>("AuthOptionsLabel")).name(), LinkColor());
    FrameOf(Shell->GetNavStackTop())->State = asConfigured;
    QTest::mouseClick(Find<QLabel>("AuthOptionsLabel"), Qt::LeftButton);
    EXPECT_EQ(status->text(), QStringLiteral("Configured"));
    EXPECT_EQ(TextColor(status), TZOIdeTheming::GetSystemColor(clGrayText));
    EXPECT_EQ(Log.last(), QStringLiteral("A options"));
}

TEST_F(ShellFrame, LetsAPageOpenItsOptionsFromTheLabel) {
    ShowShell();
    Push({QStringLiteral("A")});
    FrameOf(Shell->GetNavStackTop())->State = asConfigured;
    FrameOf(Shell->GetNavStackTop())->OnOptions = [this] {
        Shell->NavigateAsync(MakePage(QStringLiteral("Options")));
    };
    Shell->ServiceOptionsAsync();
    EXPECT_EQ(Shell->GetNavStackCount(), 2);
    Settle();
    EXPECT_EQ(Bar(), QStringLiteral("Services > A > Options"));
    Shell->GoBackAsync();
    Settle();
    QTest::keyClick(Find<QLabel>("AuthOptionsLabel"), Qt::Key_Space);
    Settle();
    EXPECT_EQ(Bar(), QStringLiteral("Services > A > Options"));
}

TEST_F(ShellFrame, FollowsTheTheme) {
    ShowShell();
    Push({QStringLiteral("A")});
    FrameOf(Shell->GetNavStackTop())->State = asConfigured;
    Push({QStringLiteral("B")});
    Shell->GoBackAsync();
    Settle();
    auto* back = Find<QToolButton>("BackButton");
    const QImage light = back->icon().pixmap(32, 32).toImage();
    const auto ground = [this](const char* AName) {
        return Find<QWidget>(AName)->palette().color(QPalette::Active, QPalette::Window);
    };
    EXPECT_EQ(ground("TopPanel"), QColor(0xD3, 0xD3, 0xD3));
    EXPECT_EQ(TextColor(Find<QLabel>("NavTwoSep")), TZOIdeTheming::GetSystemColor(clGrayText));

    TZOIdeTheming::SetTheme(thDark);
    EXPECT_NE(back->icon().pixmap(32, 32).toImage(), light);
    EXPECT_EQ(TextColor(Find<QLabel>("NavOne")), QColor(255, 224, 188));
    EXPECT_EQ(TextColor(Find<QLabel>("AuthOptionsLabel")), QColor(255, 224, 188));
    EXPECT_EQ(TextColor(Find<QLabel>("NavTwoSep")), QColor(0xB0, 0xB0, 0xB0));
    EXPECT_EQ(TextColor(Find<QLabel>("AuthStatusLabel")), QColor(0xB0, 0xB0, 0xB0));
    EXPECT_EQ(TextColor(Find<QLabel>("NavTwo")), TZOIdeTheming::GetSystemColor(clWindowText));
    EXPECT_EQ(ground("PagePanel"), TZOIdeTheming::GetSystemColor(clBtnFace));
    EXPECT_LT(ground("TopPanel").lightness(), ground("PagePanel").lightness());

    TZOIdeTheming::SetTheme(thLight);
    EXPECT_EQ(back->icon().pixmap(32, 32).toImage(), light);
    EXPECT_EQ(TextColor(Find<QLabel>("NavOne")).name(), LinkColor());
}

TEST_F(ShellFrame, DrawsItsArrowAtEveryPixelRatio) {
    MakeShell();
    const QIcon icon = Find<QToolButton>("BackButton")->icon();
    for (const double ratio : {1.0, 1.5, 2.0}) {
        const QPixmap pixmap = icon.pixmap(QSize(32, 32), ratio);
        EXPECT_EQ(pixmap.size(), QSize(32, 32) * ratio);
        EXPECT_GT(pixmap.toImage().pixelColor(pixmap.rect().center()).alpha(), 200);
    }
}

TEST_F(ShellFrame, ElidesCaptionsThatDoNotFit) {
    ShowShell();
    Push({QString(300, u'm'), QString(300, u'n')});
    EXPECT_LE(Shell->minimumSizeHint().width(), 400);
    EXPECT_LE(Find<QLabel>("NavThree")->geometry().right(), Find<QWidget>("NavPanel")->width());
    EXPECT_TRUE(Find<QLabel>("NavTwo")->width() > 30 && Find<QLabel>("NavThree")->width() > 30);
}

TEST_F(ShellFrame, DestroysItsPagesFromTheTopThenItsServices) {
    ShowShell();
    Push({QStringLiteral("A"), QStringLiteral("B")});
    QObject::connect(Shell->GetServices(0), &QObject::destroyed,
                     [this] { Log.append(QStringLiteral("destroyed item")); });
    Shell.reset();
    EXPECT_EQ(Log, (QStringList{QStringLiteral("destroyed B"), QStringLiteral("destroyed A"),
                                QStringLiteral("destroyed Services"), QStringLiteral("destroyed item")}));
}

TEST_F(ShellFrame, EndsDescriptionsWithAFullStop) {
    EXPECT_EQ(TZOShellFrame::FormatDescription(QString()), QString());
    EXPECT_EQ(TZOShellFrame::FormatDescription(QStringLiteral("Done.")), QStringLiteral("Done."));
    EXPECT_EQ(TZOShellFrame::FormatDescription(QStringLiteral("Lists pets")), QStringLiteral("Lists pets."));
    EXPECT_EQ(TZOShellFrame::FormatDescription(QStringLiteral("Why?")), QStringLiteral("Why?."));
}

TEST_F(ShellFrame, CannotBeMadeBeforeItsPagesWereStarted) {
    SetPageFactory(nullptr);
    EXPECT_THROW(TZOShellFrame(), EException);
}
