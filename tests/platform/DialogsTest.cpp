#include "platform/Dialogs.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDesktopServices>
#include <QDialog>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QUrl>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace {

// Runs AAction as soon as a modal dialog is open.
void WhenAsked(std::function<void(QDialog*)> AAction) {
    auto* timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, AAction = std::move(AAction)] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        timer->stop();
        timer->deleteLater();
        AAction(dialog);
    });
    timer->start(1);
}

class TFileManager : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    QStringList Shown;

public slots:
    void ShowItems(const QStringList& AUris, const QString&) { Shown = AUris; }
};

class TFolderOpener : public QObject {
    Q_OBJECT

public:
    QUrl Opened;

public slots:
    void Open(const QUrl& AUrl) { Opened = AUrl; }
};

struct TDialogsAnswering final : TZODialogs {
    std::optional<QString> OpenFile(QWidget*, const QString&, const QString&, const QString&) override {
        return QStringLiteral("answer");
    }
};

} // namespace

TEST(Dialogs, AskForAText) {
    QString prompt;
    WhenAsked([&](QDialog* ADialog) {
        prompt = ADialog->findChild<QLabel*>()->text();
        EXPECT_EQ(ADialog->findChild<QLabel*>()->textFormat(), Qt::PlainText);
        EXPECT_EQ(ADialog->windowTitle(), QStringLiteral("File"));
        auto* edit = ADialog->findChild<QLineEdit*>();
        EXPECT_EQ(edit->text(), QStringLiteral("old"));
        QTest::keyClicks(edit, QStringLiteral("new"));
        QTest::keyClick(edit, Qt::Key_Return);
    });
    EXPECT_EQ(Dialogs().InputQuery(nullptr, QStringLiteral("File"), QStringLiteral("<b>Name</b>"),
                                   QStringLiteral("old")),
              QStringLiteral("new"));
    EXPECT_EQ(prompt, QStringLiteral("<b>Name</b>"));
}

TEST(Dialogs, KeepALongTextWhole) {
    const QString text(100000, u'x');
    WhenAsked([](QDialog* ADialog) { QTest::keyClick(ADialog, Qt::Key_Return); });
    EXPECT_EQ(Dialogs().InputQuery(nullptr, QString(), QString(), text), text);
}

TEST(Dialogs, AnswerNothingWhenCancelled) {
    WhenAsked([](QDialog* ADialog) { QTest::keyClick(ADialog, Qt::Key_Escape); });
    EXPECT_EQ(Dialogs().InputQuery(nullptr, QString(), QString(), QStringLiteral("old")), std::nullopt);
    WhenAsked([](QDialog* ADialog) { QTest::keyClick(ADialog, Qt::Key_Escape); });
    EXPECT_EQ(Dialogs().OpenFile(nullptr, QStringLiteral("Open")), std::nullopt);
}

TEST(Dialogs, AskForAFile) {
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("here.txt")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    const auto type = [](const QString& AName) {
        return [AName](QDialog* ADialog) {
            auto* edit = ADialog->findChild<QLineEdit*>();
            edit->setText(AName); // typed text would open a list of completions, which takes the keys
            QTest::keyClick(edit, Qt::Key_Return);
        };
    };
    WhenAsked(type(file.fileName()));
    EXPECT_EQ(Dialogs().OpenFile(nullptr, QStringLiteral("Open"), folder.path()), file.fileName());
    const QString fresh = folder.filePath(QStringLiteral("fresh.bin"));
    WhenAsked(type(fresh));
    EXPECT_EQ(Dialogs().SaveFile(nullptr, QStringLiteral("Save"), folder.path()), fresh);
}

TEST(Dialogs, CanBeAnsweredByAnother) {
    TDialogsAnswering answering;
    EXPECT_EQ(SetDialogs(&answering), nullptr);
    EXPECT_EQ(Dialogs().OpenFile(nullptr, QString()), QStringLiteral("answer"));
    EXPECT_EQ(SetDialogs(nullptr), &answering);
}

TEST(Dialogs, RevealAFileInTheFileManagerElseItsFolder) {
    QProcess daemon;
    daemon.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--session"), QStringLiteral("--nofork"),
                                                 QStringLiteral("--print-address")});
    ASSERT_TRUE(daemon.waitForReadyRead());
    const QByteArray address = daemon.readLine().trimmed();
    qputenv("DBUS_SESSION_BUS_ADDRESS", address);

    TFolderOpener opener;
    QDesktopServices::setUrlHandler(QStringLiteral("file"), &opener, "Open");
    QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("a name.bin"));

    {
        QDBusConnection bus =
            QDBusConnection::connectToBus(QString::fromLatin1(address), QStringLiteral("manager"));
        ASSERT_TRUE(bus.isConnected());
        TFileManager manager;
        bus.registerObject(QStringLiteral("/org/freedesktop/FileManager1"), &manager,
                           QDBusConnection::ExportAllSlots);
        ASSERT_TRUE(bus.registerService(QStringLiteral("org.freedesktop.FileManager1")));
        Dialogs().RevealFile(file);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !manager.Shown.isEmpty(); }));
        EXPECT_EQ(manager.Shown, QStringList{QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded)});
        EXPECT_TRUE(opener.Opened.isEmpty());
        bus.unregisterService(QStringLiteral("org.freedesktop.FileManager1"));
    }
    QDBusConnection::disconnectFromBus(QStringLiteral("manager"));

    // The bus is gone, so nobody can answer.
    daemon.kill();
    daemon.waitForFinished();
    Dialogs().RevealFile(file);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !opener.Opened.isEmpty(); }));
    EXPECT_EQ(opener.Opened, QUrl::fromLocalFile(folder.path()));
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
}

#include "DialogsTest.moc"
