// API documents in the explorer's window.
#include "tests/hosts/HostFixture.h"
#include "tests/servers/RawServer.h"

#include "hosts/standalone/HostSettings.h"
#include "hosts/standalone/MainWindow.h"
#include "hosts/standalone/NoticeBar.h"
#include "hosts/standalone/OfferBar.h"
#include "hosts/standalone/ProblemWindow.h"

#include "pages/ExecutePage.h"
#include "pages/Pages.h"

#include "shell/ServiceItem.h"
#include "shell/ShellFrame.h"
#include "shell/ShellPage.h"

#include "jsoneditor/view/RestView.h"

#include "platform/Dialogs.h"

#include <QClipboard>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QProgressDialog>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <QTreeWidget>

#include <functional>

namespace {

QByteArray Api(const QByteArray& ATitle, const QByteArray& AOperation, const QByteArray& AMore = {}) {
    return "openapi: 3.0.0\ninfo: {title: " + ATitle + ", version: '1', description: About " + ATitle +
           "}\npaths:\n  /a: {get: {operationId: " + AOperation + ", responses: {}}}\n" + AMore;
}

class TAnswers final : public TZODialogs {
public:
    QStringList OpenFiles(QWidget*, const QString&, const QString& AInitial, const QString&) override {
        Initial = AInitial;
        return Files;
    }
    QStringList Files;
    QString Initial;
};

class Documents : public HostTest {
protected:
    Documents() {
        StartPages();
        SetDialogs(&Answers);
        Show();
    }
    ~Documents() override {
        Window.reset();
        SetDialogs(nullptr);
        StopPages();
        TRegistry::SetReportHandler({});
    }

    void Show() {
        Window.reset();
        Window = std::make_unique<TZOMainWindow>();
        Window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(Window.get()));
        QCoreApplication::processEvents();
    }
    QString Write(const QString& AName, const QByteArray& AText) const {
        const QString path = Folder.filePath(AName);
        QFile file(path + QStringLiteral(".new"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(AText);
        file.close();
        // As editors do: the new file takes the place of the old.
        QFile::remove(path);
        EXPECT_TRUE(file.rename(path));
        return path;
    }
    QString ClassName(const QString& ATitle) const { return ATitle + QStringLiteral("_8605b8ba"); }
    QStringList Services() const {
        QStringList names;
        for (int i = 0; i < Window->Shell()->GetServiceCount(); ++i)
            names.append(Window->Shell()->GetServices(i)->Name());
        return names;
    }
    QStringList Operations(int AService) const {
        QStringList names;
        for (const TZORestService::TOper& oper : Window->Shell()->GetServices(AService)->TypeInfo()->Opers())
            names.append(oper.Name);
        return names;
    }
    void Choose(const QList<Qt::Key>& AKeys) const {
        QTest::keyClick(Window->menuBar(), AKeys.front(), Qt::AltModifier);
        for (const Qt::Key key : AKeys.mid(1)) {
            ASSERT_TRUE(QApplication::activePopupWidget());
            QTest::keyClick(QApplication::activePopupWidget(), key);
        }
    }
    void Drop(QWidget* AWidget, const QList<QUrl>& AUrls) const {
        QMimeData data;
        data.setUrls(AUrls);
        QDragEnterEvent enter(QPoint(2, 2), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                              Qt::NoModifier);
        QCoreApplication::sendEvent(AWidget, &enter);
        IsTaken = enter.isAccepted() && enter.dropAction() == Qt::CopyAction;
        QDropEvent drop(QPointF(2, 2), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                        Qt::NoModifier);
        QCoreApplication::sendEvent(AWidget, &drop);
    }
    /// Opens the row of a list that the text finds.
    void OpenRow(const QString& AText) const {
        const int depth = Window->Shell()->GetNavStackCount();
        QTest::keyClicks(QApplication::focusWidget(), AText.left(1));
        QTest::keyClicks(QApplication::focusWidget(), AText.mid(1));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        ASSERT_TRUE(QTest::qWaitFor([&] { return Window->Shell()->GetNavStackCount() > depth; }));
    }
    QStringList Stack() const {
        QStringList captions;
        for (int i = 0; i < Window->Shell()->GetNavStackCount(); ++i)
            captions.append(Window->Shell()->GetNavStack(i)->Caption());
        return captions;
    }
    /// Changes a document and takes the offer.
    void Reload(const QString& AName, const QByteArray& AText) const {
        Write(AName, AText);
        ASSERT_TRUE(QTest::qWaitFor([&] { return Offer() != nullptr; }, 10000));
        QTest::mouseClick(Button(Offer(), "Reload"), Qt::LeftButton);
        QCoreApplication::processEvents();
    }
    /// Where the request goes that the page shows.
    QString Address() const {
        QTest::mouseClick(Window->findChild<QWidget*>("CopyCurlLabel"), Qt::LeftButton);
        return QRegularExpression("http://localhost[^' ]*")
            .match(QGuiApplication::clipboard()->text())
            .captured();
    }
    QString Notice() const { return Window->findChild<TZONoticeBar*>()->findChild<QLabel*>()->text(); }
    TZOProblemWindow* Problems() const { return Window->findChild<TZOProblemWindow*>(); }
    static QPushButton* Button(const QWidget* AParent, const QString& AText) {
        for (QPushButton* button : AParent->findChildren<QPushButton*>()) {
            if (button->text() == AText)
                return button;
        }
        return nullptr;
    }
    TZOOfferBar* Offer() const {
        for (TZOOfferBar* offer : Window->findChildren<TZOOfferBar*>()) {
            if (offer->isVisible())
                return offer;
        }
        return nullptr;
    }

    TAnswers Answers;
    std::unique_ptr<TZOMainWindow> Window;
    mutable bool IsTaken = false;
};

} // namespace

TEST_F(Documents, ChosenInTheMenuStandAfterTheOtherServices) {
    Answers.Files = {Write("one.yaml", Api("One", "first")), Write("two.yaml", Api("Two", "second"))};
    const QStringList before = Services();
    Choose({Qt::Key_F, Qt::Key_O});
    EXPECT_EQ(Services(), before + QStringList({ClassName("One"), ClassName("Two")}));
    EXPECT_EQ(Operations(int(before.size())), QStringList{"first"});
    EXPECT_EQ(Window->Shell()->GetServices(int(before.size()))->Description(), "About One.");
    EXPECT_EQ(Notice(), QString());
}

TEST_F(Documents, AreTakenWhereverTheyAreDropped) {
    const QUrl one = QUrl::fromLocalFile(Write("one.yaml", Api("One", "first")));
    const QUrl two = QUrl::fromLocalFile(Write("two.yaml", Api("Two", "second")));
    auto* edit = Window->findChild<QLineEdit*>();
    ASSERT_TRUE(edit);
    Drop(edit, {one, two});
    EXPECT_TRUE(IsTaken);
    EXPECT_TRUE(QTest::qWaitFor([&] { return Services().contains(ClassName("Two")); }));
    EXPECT_TRUE(Services().contains(ClassName("One")));
    EXPECT_EQ(edit->text(), QString());
    Drop(Window.get(), {QUrl("https://example.com/api.yaml")});
    EXPECT_FALSE(IsTaken);
}

TEST_F(Documents, KeepTheirSettingsUnderTheirOwnNames) {
    const QString path = Write("one.yaml", Api("One", "first"));
    Window->OpenDocuments({path});
    auto* item = Window->Shell()->GetServices(Window->Shell()->GetServiceCount() - 1);
    EXPECT_TRUE(item->GetRootKey().endsWith("\\APIExplorer\\" + ClassName("One")));
    item->Component()->SetApiKey("mine");
    item->OptionsModified();
    Show();
    EXPECT_FALSE(Services().contains(ClassName("One")));
    Window->OpenDocuments({path});
    EXPECT_EQ(Window->Shell()->GetServices(Window->Shell()->GetServiceCount() - 1)->Component()->GetApiKey(),
              "mine");
}

TEST_F(Documents, OpenedLastAreOfferedAtTheNextStart) {
    const QString one = Write("one.yaml", Api("One", "first"));
    const QString two = Write("two & three.yaml", Api("Two", "second"));
    Window->OpenDocuments({one, two, one});
    EXPECT_EQ(HostSettings::RecentDocuments(),
              (QStringList{QFileInfo(one).canonicalFilePath(), QFileInfo(two).canonicalFilePath()}));
    Show();
    Choose({Qt::Key_F, Qt::Key_R});
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(menu);
    ASSERT_EQ(menu->actions().size(), 2);
    EXPECT_TRUE(menu->actions()[1]->text().endsWith("two && three.yaml"));
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(menu->actions()[1]).center());
    EXPECT_TRUE(Services().contains(ClassName("Two")));
    EXPECT_FALSE(Services().contains(ClassName("One")));
    Choose({Qt::Key_F, Qt::Key_O});
    EXPECT_EQ(Answers.Initial, QFileInfo(two).canonicalPath());
    for (int i = 0; i < 15; ++i)
        Window->OpenDocuments({Write(QString("many%1.yaml").arg(i), Api("Many", "m"))});
    EXPECT_EQ(HostSettings::RecentDocuments().size(), 10);
}

TEST_F(Documents, ThatAreClosedLeaveWithTheirPages) {
    const QString path = Write("one.yaml", Api("One", "first"));
    Window->OpenDocuments({path});
    QTest::keyClicks(Window->findChild<QLineEdit*>(), "One_");
    QTest::keyClick(Window->findChild<QLineEdit*>(), Qt::Key_Down);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([&] { return Window->Shell()->GetNavStackCount() == 2; }));
    Choose({Qt::Key_F, Qt::Key_C});
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(menu && menu->actions().size() == 1);
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(menu->actions()[0]).center());
    QCoreApplication::processEvents();
    EXPECT_EQ(Window->Shell()->GetNavStackCount(), 1);
    EXPECT_FALSE(Services().contains(ClassName("One")));
}

TEST_F(Documents, ThatChangeOnDiskAreOfferedForReload) {
    Write("types.yaml", "T: {type: string}\n");
    const QByteArray more = "components: {schemas: {X: {$ref: 'types.yaml#/T'}}}\n";
    const QString path = Write("one.yaml", Api("One", "first", more));
    Window->OpenDocuments({path});
    const int index = Window->Shell()->GetServiceCount() - 1;
    EXPECT_FALSE(Offer());
    Write("one.yaml", Api("One", "changed", more));
    ASSERT_TRUE(QTest::qWaitFor([&] { return Offer() != nullptr; }, 10000));
    EXPECT_EQ(Offer()->findChild<QLabel*>()->text(), "one.yaml has changed.");
    EXPECT_EQ(Operations(index), QStringList{"first"});
    QTest::mouseClick(Button(Offer(), "Reload"), Qt::LeftButton);
    EXPECT_EQ(Operations(index), QStringList{"changed"});
    EXPECT_FALSE(Offer());
    Write("one.yaml", Api("One", "again", more));
    ASSERT_TRUE(QTest::qWaitFor([&] { return Offer() != nullptr; }, 10000));
    QTest::mouseClick(Button(Offer(), "Dismiss"), Qt::LeftButton);
    EXPECT_FALSE(Offer());
    EXPECT_EQ(Operations(index), QStringList{"changed"});
}

TEST_F(Documents, AreNotOfferedForReloadWhileTheyAreEmpty) {
    const auto offers = [this] {
        QStringList texts;
        for (const TZOOfferBar* offer : Window->findChildren<TZOOfferBar*>())
            texts.append(offer->findChild<QLabel*>()->text());
        return texts;
    };
    Window->OpenDocuments({Write("one.yaml", Api("One", "first")), Write("two.yaml", Api("Two", "first"))});
    Write("one.yaml", "");
    Write("two.yaml", Api("Two", "changed"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !offers().isEmpty(); }, 10000));
    EXPECT_EQ(offers(), QStringList{"two.yaml has changed."});
    Write("one.yaml", Api("One", "changed"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return offers().contains("one.yaml has changed."); }, 10000));
}

TEST_F(Documents, ThatAreReloadedStayAtTheirPage) {
    const auto api = [](const QByteArray& AOperation, const QByteArray& AParameters) {
        return "openapi: 3.0.0\ninfo: {title: One, version: '1'}\npaths:\n  /a: {get: {operationId: " +
               AOperation + ", parameters: [" + AParameters + "], responses: {}}}\n";
    };
    const QByteArray q = "{name: q, in: query, schema: {type: string}}";
    Window->OpenDocuments({Write("one.yaml", api("first", q)), Write("two.yaml", Api("Two", "second"))});
    const QStringList services = Services();
    OpenRow("One_");
    OpenRow("first");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Home, Qt::ControlModifier);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    QTest::keyClicks(QApplication::focusWidget(), "typed");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    ASSERT_EQ(Address(), "http://localhost/a?q=typed");

    Reload("one.yaml", api("first", q + ", {name: r, in: query, schema: {type: string}}"));
    EXPECT_EQ(Stack(), (QStringList{"Services", ClassName("One"), "first"}));
    EXPECT_EQ(Services(), services);
    EXPECT_EQ(Address(), "http://localhost/a?q=typed");

    // What does not fit any more is forgotten.
    Reload("one.yaml", api("first", "{name: q, in: query, schema: {type: boolean}}"));
    EXPECT_EQ(Stack(), (QStringList{"Services", ClassName("One"), "first"}));
    EXPECT_EQ(Address(), "http://localhost/a");

    Reload("one.yaml", api("other", q));
    EXPECT_EQ(Stack(), (QStringList{"Services", ClassName("One")}));
    EXPECT_EQ(Services(), services);
}

TEST_F(Documents, ThatAreDroppedRightBeforeARequestAreReadAfterIt) {
    TRawServer server([](TRawServer::TConnection& AConnection) {
        AConnection.ReadRequest();
        QThread::msleep(900); // by then the window lives again
        AConnection.Write(TRawServer::Answer("{}", "application/json"));
    });
    const QByteArray servers = "servers: [{url: '" + server.Url({}) + "'}]\n";
    const QString path = Write("a.yaml", Api("A", "before", servers));
    Window->OpenDocuments({path});
    TZOShellFrame* shell = Window->Shell();
    TZOShellPage* page =
        TZOExecutePage::Make(shell, shell->GetServices(0), &shell->GetServices(0)->TypeInfo()->Opers()[0]);
    shell->NavigateAsync(page);
    ASSERT_TRUE(QTest::qWaitFor([&] { return shell->GetNavStackTop() == page; }));
    QWidget* frame = page->Frame();
    auto* view = frame->findChild<TZORestView*>();
    view->setFocus();
    Write("a.yaml", Api("A", "after", servers));
    Drop(Window.get(), {QUrl::fromLocalFile(path)});
    QTest::keyClick(frame, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(Operations(0), QStringList("before"));
    EXPECT_TRUE(frame->findChild<QLabel*>("SummaryLabel")->text().startsWith(u'2'));
    QCoreApplication::processEvents();
    EXPECT_EQ(Operations(0), QStringList("after"));
}

TEST_F(Documents, ThatCannotBeReadAnyMoreStayAsTheyWere) {
    const QString path = Write("one.yaml", Api("One", "first"));
    Window->OpenDocuments({path});
    Write("one.yaml", "nonsense: true\n");
    Window->OpenDocuments({path});
    EXPECT_EQ(Operations(Window->Shell()->GetServiceCount() - 1), QStringList{"first"});
    ASSERT_TRUE(Problems() && Problems()->isVisible());
    Write("one.yaml", Api("One", "better"));
    Window->OpenDocuments({path});
    EXPECT_EQ(Operations(Window->Shell()->GetServiceCount() - 1), QStringList{"better"});
    Choose({Qt::Key_V, Qt::Key_P});
    EXPECT_EQ(Problems()->findChild<QTreeWidget*>()->topLevelItemCount(), 0);
}

TEST_F(Documents, TellTheirProblemsWithTheirPlaceAndLetThemBeCopied) {
    const QString path = Write("one.yaml", Api("One", "first", "  <b>bad</b>: 5\n  /c: 6\n"));
    Window->OpenDocuments({path});
    EXPECT_EQ(Notice(), "one.yaml has problems: View > Problems of documents lists them.");
    EXPECT_FALSE(Problems());
    Choose({Qt::Key_V, Qt::Key_P});
    ASSERT_TRUE(Problems() && Problems()->isVisible());
    ASSERT_TRUE(QTest::qWaitForWindowActive(Problems()));
    auto* list = Problems()->findChild<QTreeWidget*>();
    ASSERT_EQ(list->topLevelItemCount(), 3);
    EXPECT_EQ(list->topLevelItem(0)->text(0), "one.yaml");
    EXPECT_EQ(list->topLevelItem(0)->text(1), "line 5, /paths/<b>bad<~1b>");
    EXPECT_EQ(list->topLevelItem(0)->text(2), "A path has to start with a slash.");
    QTest::mouseClick(Button(Problems(), "&Copy"), Qt::LeftButton);
    EXPECT_EQ(QGuiApplication::clipboard()->text().split('\n').size(), 3);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                      list->visualItemRect(list->topLevelItem(2)).center());
    QTest::keyClick(list, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(),
              QFileInfo(path).canonicalFilePath() +
                  ":6: /paths/~1c: A path has to be an object of operations.");
    QTest::keyClick(Problems(), Qt::Key_Escape);
    EXPECT_FALSE(Problems()->isVisible());
}

TEST_F(Documents, ThatTakeLongShowHowFarTheyAreAndCanBeGivenUp) {
    const QString path = Write("long.yaml", Api("Long", "first", LongYaml()));
    bool wasSeen = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        auto* dialog = qobject_cast<QProgressDialog*>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isVisible())
            return;
        wasSeen = dialog->value() > 0 && dialog->labelText().contains("long.yaml");
        QTest::mouseClick(dialog->findChild<QPushButton*>(), Qt::LeftButton);
    });
    timer.start(5);
    Window->OpenDocuments({path, Write("one.yaml", Api("One", "first"))});
    EXPECT_TRUE(wasSeen);
    EXPECT_FALSE(Services().contains(ClassName("Long")));
    EXPECT_FALSE(Services().contains(ClassName("One")));
}
