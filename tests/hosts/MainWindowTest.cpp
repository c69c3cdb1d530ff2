#include "hosts/standalone/MainWindow.h"

#include "tests/hosts/HostFixture.h"

#include "hosts/standalone/HostSettings.h"
#include "hosts/standalone/NoticeBar.h"

#include "pages/Pages.h"

#include "shell/ShellFrame.h"

#include <QIcon>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>

namespace {

class MainWindow : public HostTest {
protected:
    MainWindow() { StartPages(); }
    ~MainWindow() override {
        Window.reset();
        StopPages();
        TRegistry::SetReportHandler({});
    }

    void Show() {
        Window = std::make_unique<TZOMainWindow>();
        Window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(Window.get()));
        QCoreApplication::processEvents();
    }
    const QWidget* Notices() const { return Window->findChild<TZONoticeBar*>(); }
    QString Notice() const { return Notices()->findChild<QLabel*>()->text(); }
    /// Chooses from the menus by their keys.
    void Choose(const QList<Qt::Key>& AKeys) {
        QTest::keyClick(Window->menuBar(), AKeys.front(), Qt::AltModifier);
        for (const Qt::Key key : AKeys.mid(1)) {
            ASSERT_TRUE(QApplication::activePopupWidget());
            QTest::keyClick(QApplication::activePopupWidget(), key);
        }
    }

    std::unique_ptr<TZOMainWindow> Window;
};

} // namespace

TEST_F(MainWindow, HoldsTheExplorer) {
    Show();
    EXPECT_EQ(Window->windowTitle(), QStringLiteral("ZO Bridgework API Explorer"));
    EXPECT_FALSE(Window->windowIcon().isNull());
    EXPECT_EQ(Window->Shell()->GetNavStackCount(), 1);
    EXPECT_FALSE(Notices()->isVisible());
}

TEST_F(MainWindow, DrawsItsIconAtEverySize) {
    Show();
    for (const int size : {16, 32, 256}) {
        const QImage image = Window->windowIcon().pixmap(QSize(size, size), 1.0).toImage();
        ASSERT_EQ(image.size(), QSize(size, size));
        EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
        EXPECT_EQ(image.pixelColor(size / 2, size / 8).alpha(), 255);
    }
}

TEST_F(MainWindow, ChangesTheThemeAndRemembersIt) {
    Show();
    Choose({Qt::Key_V, Qt::Key_T, Qt::Key_D});
    EXPECT_TRUE(TZOIdeTheming::IsDarkTheme());
    EXPECT_EQ(HostSettings::Theme(), thDark);
    Choose({Qt::Key_V, Qt::Key_T, Qt::Key_L});
    EXPECT_FALSE(TZOIdeTheming::IsDarkTheme());
    Choose({Qt::Key_V, Qt::Key_T, Qt::Key_D});
    Window.reset();
    TZOIdeTheming::SetTheme(thSystem);
    Show();
    EXPECT_TRUE(TZOIdeTheming::IsDarkTheme());
}

TEST_F(MainWindow, RemembersItsSize) {
    Show();
    Window->resize(555, 444);
    Window->close();
    Window.reset();
    Show();
    EXPECT_EQ(Window->size(), QSize(555, 444));
}

TEST_F(MainWindow, SaysThatDamagedSettingsWereSetAside) {
    DamageSettings();
    Show();
    EXPECT_TRUE(Notices()->isVisible());
    EXPECT_TRUE(Notice().contains(QStringLiteral("settings.db"))) << Notice().toStdString();
    EXPECT_FALSE(QApplication::activeModalWidget());
    QTest::mouseClick(Notices()->findChild<QPushButton*>(), Qt::LeftButton);
    EXPECT_FALSE(Notices()->isVisible());
}

TEST_F(MainWindow, ShowsNoticesAsPlainText) {
    Show();
    Window->Notify(QStringLiteral("<b>one</b>"));
    Window->Notify(QStringLiteral("two"));
    EXPECT_EQ(Notice(), QStringLiteral("<b>one</b>\ntwo"));
    EXPECT_EQ(Notices()->findChild<QLabel*>()->textFormat(), Qt::PlainText);
}

TEST_F(MainWindow, WorksWhereNothingCanBeStored) {
    qputenv("ZO_SETTINGS_FILE", "/dev/null/settings.db");
    Show();
    Choose({Qt::Key_V, Qt::Key_T, Qt::Key_D});
    QCoreApplication::processEvents();
    EXPECT_TRUE(TZOIdeTheming::IsDarkTheme());
    EXPECT_TRUE(Notices()->isVisible());
    EXPECT_TRUE(Window->close());
}
