// A document and a server whose every text is written to be obeyed: what the window paints, tips and says
// aloud of it is text.
#include "tests/hosts/HostFixture.h"
#include "tests/hosts/OpenedUrls.h"
#include "tests/hosts/PaintedTexts.h"
#include "tests/servers/RawServer.h"

#include "hosts/standalone/MainWindow.h"
#include "hosts/standalone/NoticeBar.h"
#include "hosts/standalone/ProblemWindow.h"

#include "pages/Pages.h"

#include "shell/ServiceItem.h"
#include "shell/ShellFrame.h"

#include "platform/Dialogs.h"
#include "platform/ExceptionDisplay.h"
#include "platform/Exceptions.h"
#include "platform/VisibleText.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QHelpEvent>
#include <QLabel>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <QToolTip>

#include <functional>

namespace {

// As JSON writes it: tags, a bell, a mark that turns what follows, an escape sequence, ten line breaks.
constexpr const char* Evil = R"(<img src='file:///etc/passwd'><a href='http://evil.test/'>x</a>)"
                             R"(\u202egpj\u0007\u001b[31m\u2066\n\n\n\n\n\n\n\n\n\nend)";

QByteArray Document(const QByteArray& AServer) {
    return QByteArray(
               R"({"openapi": "3.0.0", "info": {"title": "EVIL", "version": "1", "description": "EVIL"},
  "servers": [{"url": "SERVER", "description": "EVIL"}],
  "components": {"securitySchemes": {"EVIL": {"type": "oauth2", "description": "EVIL", "flows":
    {"clientCredentials": {"tokenUrl": "SERVER/t", "scopes": {"EVIL": "EVIL"}}}}}},
  "paths": {"EVIL": 5, "/a": {
    "get": {"operationId": "EVIL", "summary": "EVIL", "parameters": [
      {"name": "EVIL", "in": "query", "description": "EVIL", "schema": {"type": "string"}},
      {"name": "e", "in": "query", "schema": {"type": "string", "enum": ["EVIL", "b"]}}],
      "responses": {"200": {"description": "EVIL", "content": {"application/json": {}}}}},
    "post": {"operationId": "secured", "security": [{"EVIL": ["EVIL"]}], "responses": {}}}}})")
        .replace("EVIL", Evil)
        .replace("SERVER", AServer);
}

/// Whether AText would act: what is shown must not.
bool Acts(const QString& AText) { return VisibleLines(AText) != AText; }

/// What may be seen, heard or read of AWidget, apart from what stands in an edit box.
void CheckWidget(QWidget* AWidget) {
    SCOPED_TRACE(AWidget->metaObject()->className() + ("." + AWidget->objectName().toStdString()));
    for (const QString& text : {AWidget->windowTitle(), AWidget->statusTip(), AWidget->whatsThis(),
                                AWidget->accessibleName(), AWidget->accessibleDescription()})
        EXPECT_FALSE(Acts(text)) << text.toStdString();
    if (const auto* label = qobject_cast<const QLabel*>(AWidget)) {
        EXPECT_TRUE(label->textFormat() == Qt::PlainText || !Qt::mightBeRichText(label->text()))
            << label->text().toStdString();
        EXPECT_TRUE(label->textFormat() == Qt::PlainText || !label->openExternalLinks());
    }
    QHelpEvent ask(QEvent::ToolTip, AWidget->rect().center(), AWidget->mapToGlobal(AWidget->rect().center()));
    QCoreApplication::sendEvent(AWidget, &ask);
    for (const QString& tip : {AWidget->toolTip(), QToolTip::text()}) {
        EXPECT_FALSE(Acts(tip)) << tip.toStdString();
        EXPECT_FALSE(tip.contains(QLatin1String("<img"))) << tip.toStdString();
        EXPECT_FALSE(tip.contains(QLatin1String("<a "))) << tip.toStdString();
    }
    QToolTip::hideText();
}

void CheckItems(const QAbstractItemView* AView) {
    const QAbstractItemModel* model = AView->model();
    for (int row = 0; row < model->rowCount(); ++row) {
        for (int column = 0; column < model->columnCount(); ++column) {
            const QModelIndex index = model->index(row, column);
            const QString tip = index.data(Qt::ToolTipRole).toString();
            EXPECT_FALSE(Acts(tip) || tip.contains(QLatin1String("<img"))) << tip.toStdString();
            for (const int role : {Qt::AccessibleTextRole, Qt::AccessibleDescriptionRole})
                EXPECT_FALSE(Acts(index.data(role).toString()));
        }
    }
}

/// All that a screen reader can be told.
void CheckSpeech(QAccessibleInterface* AInterface) {
    ASSERT_TRUE(AInterface);
    // An edit box holds its text as it is.
    for (const QAccessible::Text kind : {QAccessible::Name, QAccessible::Description, QAccessible::Help})
        EXPECT_FALSE(Acts(AInterface->text(kind))) << AInterface->text(kind).toStdString();
    for (int i = 0; i < AInterface->childCount(); ++i) {
        if (QAccessibleInterface* child = AInterface->child(i))
            CheckSpeech(child);
    }
}

/// Looks through a window; returns what it paints.
QString Check(QWidget* AWindow) {
    CheckWidget(AWindow);
    // The tool tip of one widget, a child of the window, ends with the next one's.
    const QWidgetList children = AWindow->findChildren<QWidget*>();
    for (const QPointer<QWidget>& widget : QList<QPointer<QWidget>>(children.begin(), children.end())) {
        if (!widget || !widget->isVisible())
            continue;
        CheckWidget(widget);
        if (const auto* view = qobject_cast<const QAbstractItemView*>(widget.data()))
            CheckItems(view);
    }
    CheckSpeech(QAccessible::queryAccessibleInterface(AWindow));
    const QStringList texts = PaintedTexts(AWindow);
    for (const QString& text : texts)
        EXPECT_FALSE(Acts(text)) << text.toStdString();
    return texts.join(u'\n');
}

class HostileText : public HostTest {
protected:
    HostileText()
        : Server(TRawServer::Answering([](const QByteArray& ARequest) {
              const bool isRefused = ARequest.contains("refuse");
              return TRawServer::Answer(
                  QByteArray(R"({"EVIL": "EVIL", "error": "EVIL"})").replace("EVIL", Evil),
                  "application/json", isRefused ? "403 <b>No</b>\x1b[31m" : "200 OK",
                  "X-Evil: <b>x</b>\x1b[31m\a\r\n");
          })) {
        StartPages();
        Window = std::make_unique<TZOMainWindow>();
        Window->resize(900, 700);
        Window->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(Window.get()));
        Window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(Window.get()));
        QFile file(Folder.filePath(QString::fromUtf8("<b>evil\u202E\a\n.json")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(Document(Server.Url({})));
        file.close();
        Window->OpenDocuments({file.fileName()});
        TZOShellFrame* shell = Window->Shell();
        TZORestService* service = shell->GetServices(shell->GetServiceCount() - 1)->Component();
        service->SetApiKey(QStringLiteral("key"));
        service->ReportOptions();
        QCoreApplication::processEvents();
    }
    ~HostileText() override {
        Window.reset();
        StopPages();
        TRegistry::SetReportHandler({});
    }

    /// Opens the row of the list that is in front.
    void OpenRow(int ARow) const {
        const int depth = Window->Shell()->GetNavStackCount();
        for (int i = 0; i <= ARow; ++i)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        ASSERT_TRUE(QTest::qWaitFor([&] { return Window->Shell()->GetNavStackCount() > depth; }));
        QCoreApplication::processEvents();
    }
    void Execute() const {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return, Qt::ControlModifier);
        QCoreApplication::processEvents();
    }
    QString Notice() const {
        const auto* label = Window->findChild<TZONoticeBar*>()->findChild<QLabel*>();
        return label->text();
    }

    TRawServer Server;
    TOpenedUrls Opened;
    std::unique_ptr<TZOMainWindow> Window;
};

} // namespace

TEST_F(HostileText, OfADocumentIsShownOnEveryPage) {
    EXPECT_TRUE(Notice().startsWith(QString::fromUtf8("<b>evil\\u202E␇\n.json has problems")));
    Check(Window.get());
    OpenRow(0);
    const QString operations = Check(Window.get());
    EXPECT_TRUE(operations.contains(QStringLiteral("<img"))) << operations.toStdString();
    OpenRow(0);
    const QString page = Check(Window.get());
    EXPECT_TRUE(page.contains(QStringLiteral("<img"))) << page.toStdString();
    Execute();
    Check(Window.get());
    QTest::mouseClick(Window->findChild<QWidget*>(QStringLiteral("DetailsLabel")), Qt::LeftButton);
    Check(Window.get());
    const QString details = Window->findChild<QPlainTextEdit*>(QStringLiteral("DetailsBox"))->toPlainText();
    EXPECT_FALSE(Acts(details)) << details.toStdString();
    EXPECT_TRUE(details.contains(QStringLiteral("X-Evil: <b>x</b>"))) << details.toStdString();
    EXPECT_EQ(Opened.Urls, QList<QUrl>());
}

TEST_F(HostileText, OfAllowedValuesIsListed) {
    OpenRow(0);
    OpenRow(0);
    // From the object to its second property.
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Home, Qt::ControlModifier);
    for (int i = 0; i < 2; ++i)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space, Qt::ControlModifier);
    auto* list = Window->findChild<QAbstractItemView*>(QStringLiteral("Choices"));
    ASSERT_TRUE(list && list->isVisible());
    const QString painted = Check(list);
    EXPECT_TRUE(painted.contains(QString::fromUtf8("</a>\\u202Egpj␇␛[31m\\u2066␊"))) << painted.toStdString();
    Check(Window.get());
}

TEST_F(HostileText, OfScopesIsShownOnTheOptionsPage) {
    OpenRow(0);
    QTest::mouseClick(Window->findChild<QWidget*>(QStringLiteral("AuthOptionsLabel")), Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([&] { return Window->Shell()->GetNavStackCount() == 3; }));
    QCoreApplication::processEvents();
    const QString page = Check(Window.get());
    EXPECT_TRUE(page.contains(QStringLiteral("<img"))) << page.toStdString();
}

TEST_F(HostileText, OfProblemsIsListed) {
    QTest::keyClick(Window->menuBar(), Qt::Key_V, Qt::AltModifier);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_P);
    auto* problems = Window->findChild<TZOProblemWindow*>();
    ASSERT_TRUE(problems && problems->isVisible());
    const QString painted = Check(problems);
    EXPECT_TRUE(painted.contains(QStringLiteral("/paths/<img"))) << painted.toStdString();
}

TEST_F(HostileText, OfFileNamesIsShownInTheMenus) {
    for (const Qt::Key menu : {Qt::Key_R, Qt::Key_C}) {
        QTest::keyClick(Window->menuBar(), Qt::Key_F, Qt::AltModifier);
        QTest::keyClick(QApplication::activePopupWidget(), menu);
        QWidget* popup = QApplication::activePopupWidget();
        ASSERT_TRUE(popup);
        const QString painted = Check(popup);
        EXPECT_TRUE(painted.contains(QStringLiteral("<b>evil\\u202E"))) << painted.toStdString();
        while (QApplication::activePopupWidget())
            QApplication::activePopupWidget()->close();
    }
}

TEST_F(HostileText, OfFailuresAndQuestionsIsShownInDialogs) {
    const QString evil = QString::fromUtf8("<img src=x>\u202E\a");
    QString painted;
    const auto look = [&] {
        QWidget* dialog = QApplication::activeModalWidget();
        ASSERT_TRUE(dialog);
        painted = Check(dialog);
        QTest::keyClick(dialog, Qt::Key_Escape);
    };
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, &timer, look);
    const std::function<void()> dialogs[] = {
        [&] { ShowException(Window.get(), EException(evil)); },
        [&] { Dialogs().Confirm(Window.get(), QStringLiteral("Caption"), evil); },
        [&] { Dialogs().InputQuery(Window.get(), QStringLiteral("Caption"), evil); }};
    for (const auto& dialog : dialogs) {
        painted.clear();
        timer.start(0);
        dialog();
        EXPECT_TRUE(painted.contains(QString::fromUtf8("<img src=x>\\u202E␇"))) << painted.toStdString();
    }
    EXPECT_EQ(Opened.Urls, QList<QUrl>());
}
