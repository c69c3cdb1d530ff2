// What the program has around the explorer's pages, and the dialogs of all of them, in both themes: nothing
// is clipped, nothing overlaps, every text stands out from its ground.
#include "tests/hosts/HostFixture.h"
#include "tests/pages/LookCheck.h"

#include "hosts/standalone/MainWindow.h"
#include "hosts/standalone/OfferBar.h"
#include "hosts/standalone/ProblemWindow.h"

#include "pages/Pages.h"

#include "platform/Dialogs.h"
#include "platform/ExceptionDisplay.h"
#include "platform/Exceptions.h"

#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QTimer>

#include <functional>

namespace {

class HostLook : public HostTest {
protected:
    HostLook() {
        StartPages();
        Window = std::make_unique<TZOMainWindow>();
        Window->resize(701, 446);
        Window->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(Window.get()));
    }
    ~HostLook() override {
        Window.reset();
        StopPages();
        TRegistry::SetReportHandler({});
    }

    static void EachTheme(const std::function<void(const QString&)>& AAction) {
        for (const TZOTheme theme : {thLight, thDark}) {
            TZOIdeTheming::SetTheme(theme);
            QCoreApplication::processEvents();
            AAction(theme == thDark ? QStringLiteral("dark") : QStringLiteral("light"));
        }
    }
    /// Runs AAsk, which opens a dialog, looks at that and leaves it by Escape.
    static void SeeDialog(const QString& AName, const std::function<void()>& AAsk, bool AIsOurs = true) {
        bool wasSeen = false;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
            QWidget* dialog = QApplication::activeModalWidget();
            if (!dialog || !dialog->isActiveWindow() || wasSeen)
                return;
            wasSeen = true;
            if (AIsOurs)
                LookCheck::See(dialog, AName);
            else
                LookCheck::Keep(dialog, AName);
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        timer.start(20);
        AAsk();
        EXPECT_TRUE(wasSeen) << AName.toStdString();
    }
    QString WriteApi(const QByteArray& AText) const {
        QFile file(Folder.filePath(QStringLiteral("library.yaml")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("openapi: 3.0.0\ninfo: {title: Library, version: '1'}\n" + AText);
        return file.fileName();
    }

    std::unique_ptr<TZOMainWindow> Window;
};

} // namespace

TEST_F(HostLook, OfTheBarsAboveThePages) {
    Window->OpenDocuments({WriteApi("servers: [{url: /v1}]\npaths: {}\n")});
    Window->Notify(
        QStringLiteral("A notice that is so long that it does not fit into one line of a narrow window, "
                       "which makes it go on in a second one."));
    WriteApi("servers: [{url: /version2}]\npaths: {}\n");
    ASSERT_TRUE(QTest::qWaitFor([&] { return Window->findChild<TZOOfferBar*>() != nullptr; }, 10000));
    for (const QSize size : {QSize(701, 446), QSize(1400, 900)}) {
        Window->resize(size);
        EachTheme([&](const QString& ATheme) {
            LookCheck::See(Window.get(), QStringLiteral("bars-%1-%2").arg(size.width()).arg(ATheme));
        });
    }
}

TEST_F(HostLook, OfTheMenus) {
    Window->OpenDocuments({WriteApi("paths: {}\n")});
    EachTheme([&](const QString& ATheme) {
        for (const auto& [key, sub] : {std::pair(Qt::Key_F, Qt::Key_R), std::pair(Qt::Key_V, Qt::Key_T)}) {
            QTest::keyClick(Window->menuBar(), key, Qt::AltModifier);
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_TRUE(menu);
            LookCheck::Keep(menu, QStringLiteral("menu-%1-%2").arg(menu->title().mid(1), ATheme));
            QTest::keyClick(menu, sub);
            QWidget* inner = QApplication::activePopupWidget();
            ASSERT_NE(inner, menu);
            LookCheck::Keep(inner, QStringLiteral("menu-%1-sub-%2").arg(menu->title().mid(1), ATheme));
            while (QWidget* popup = QApplication::activePopupWidget())
                QTest::keyClick(popup, Qt::Key_Escape);
        }
    });
}

TEST_F(HostLook, OfTheProblems) {
    Window->OpenDocuments(
        {WriteApi("servers: [{url: /v1}]\npaths: {a: 5, /b: {get: {operationId: [x]}}}\n")});
    QTest::keyClick(Window->menuBar(), Qt::Key_V, Qt::AltModifier);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_P);
    auto* problems = Window->findChild<TZOProblemWindow*>();
    ASSERT_TRUE(problems && problems->isVisible());
    EachTheme([&](const QString& ATheme) { LookCheck::See(problems, QStringLiteral("problems-") + ATheme); });
}

TEST_F(HostLook, OfALongImport) {
    const QString path = WriteApi("paths: {}\n" + LongYaml());
    EachTheme([&](const QString& ATheme) {
        SeeDialog(
            QStringLiteral("progress-") + ATheme, [&] { Window->OpenDocuments({path}); }, false);
    });
}

TEST_F(HostLook, OfTheDialogs) {
    TZODialogs dialogs;
    EachTheme([&](const QString& ATheme) {
        SeeDialog(QStringLiteral("dialog-overwrite-") + ATheme, [&] {
            EXPECT_FALSE(dialogs.Confirm(
                Window.get(), QStringLiteral("Download to file"),
                QStringLiteral(
                    "The file \"/home/ann/report.pdf\" exists already. Do you want to replace it?")));
        });
        SeeDialog(QStringLiteral("dialog-key-") + ATheme, [&] {
            dialogs.InputQuery(Window.get(), QStringLiteral("API Key"),
                               QStringLiteral("Please specify API Key"), QStringLiteral("0123456789abcdef"));
        });
        SeeDialog(QStringLiteral("dialog-error-") + ATheme, [&] {
            ShowException(Window.get(), EException(QStringLiteral("List index out of bounds (7)")));
        });
        SeeDialog(
            QStringLiteral("dialog-save-") + ATheme,
            [&] { dialogs.SaveFile(Window.get(), QStringLiteral("Download to file"), Folder.path()); },
            false);
        SeeDialog(
            QStringLiteral("dialog-open-") + ATheme,
            [&] { dialogs.OpenFile(Window.get(), QStringLiteral("Select file to upload"), Folder.path()); },
            false);
    });
}
