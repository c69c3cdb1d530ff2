#include "tests/pages/ExecutePageFixture.h"
#include "tests/servers/RawServer.h"

#include "runtime/http/HttpClient.h"
#include "runtime/service/ServiceBuilder.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QDialog>
#include <QToolButton>
#include <QUrlQuery>

#include <thread>

namespace {

/// Stands in for the desktop's browser.
class TBrowser : public QObject {
    Q_OBJECT

public:
    TBrowser() { QDesktopServices::setUrlHandler(QStringLiteral("http"), this, "Open"); }
    ~TBrowser() override { QDesktopServices::unsetUrlHandler(QStringLiteral("http")); }

    QList<QUrl> Opened;

public Q_SLOTS:
    void Open(const QUrl& AUrl) { Opened.append(AUrl); }
};

class SignOn : public ExecutePageTest {
protected:
    SignOn() {
        TZOServiceBuilder service(QStringLiteral("TSignOn<b>Service</b>"), {},
                                  QString::fromUtf8(Auth.Url("")));
        TZOSecurityScheme login{QStringLiteral("login"), skOAuth2, {}};
        login.OAuth.Flows = {
            {ofAuthorizationCode, QStringLiteral("/authorize"), QStringLiteral("/token"), {}}};
        service.AddScheme(login);
        service.Operation(QStringLiteral("Call"), {}, "GET", QStringLiteral("/api"), {}, nullptr)
            .OperationSecurity({{{0}}});
        Register(
            std::make_unique<TZORestServiceClass>(QStringLiteral("TSignOn<b>Service</b>"), service.Build()));
    }

    void ShowCall() {
        ShowShell();
        TZORestService* service = Shell->GetServices(1)->Component();
        service->SetClientId(QStringLiteral("id"));
        service->SetSecret(QStringLiteral("-"));
        Open(QStringLiteral("TSignOn<b>Service</b>"));
        Open(QStringLiteral("Call"));
    }
    /// Executes the operation; AUser does the rest, on a thread of its own, when the window is there.
    void ExecuteWith(const std::function<void()>& AUser) {
        std::thread user([&] {
            for (bool isThere = false; !isThere;)
                OnGui([&] { isThere = Window() != nullptr; });
            AUser();
        });
        Execute();
        user.join();
        EXPECT_FALSE(Window());
        EXPECT_TRUE(ExecButton()->isEnabled());
    }
    static QDialog* Window() {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->objectName() == QStringLiteral("SignOnWindow") && window->isVisible())
                return static_cast<QDialog*>(window);
        }
        return nullptr;
    }
    static void Click(const char* AButton) {
        OnGui([&] {
            const auto* button = Window()->findChild<QPushButton*>(QLatin1String(AButton));
            QTest::mouseClick(Window()->windowHandle(), Qt::LeftButton, {},
                              button->mapTo(Window(), button->rect().center()));
        });
    }
    static void Press(Qt::Key AKey) {
        OnGui([&] { QTest::keyClick(Window()->windowHandle(), AKey); });
    }
    static QString Text(const char* ALabel) {
        QString text;
        OnGui([&] { text = Window()->findChild<QLabel*>(QLatin1String(ALabel))->text(); });
        return text;
    }
    /// Comes back from the browser.
    void Answer(const QByteArray& APieces) const {
        const QUrlQuery question(Browser.Opened.back());
        TZOHttpClient client;
        TZOHttpRequest request;
        request.Url = question.queryItemValue(QStringLiteral("redirect_uri"), QUrl::FullyDecoded).toUtf8() +
                      "?state=" + question.queryItemValue(QStringLiteral("state")).toUtf8() + '&' + APieces;
        client.Execute(request);
    }
    QStringList Outcome() const { return Lines(RespView()); }

    TRawServer Auth{TRawServer::Answering([](const QByteArray& ARequest) {
        return ARequest.startsWith("POST /token")
                   ? TRawServer::Answer(R"({"access_token":"at","token_type":"Bearer"})", "application/json")
                   : TRawServer::Answer({}, {}, "204 No Content");
    })};
    TBrowser Browser;
};

const QStringList Cancelled = {QStringLiteral("EZOCancelledError"),
                               QStringLiteral("The sign-on was cancelled.")};

TEST_F(SignOn, SaysWhatIsWaitedForAndGoesWhenTheBrowserComesBack) {
    ShowCall();
    QString text, status;
    Qt::TextFormat format = Qt::AutoText;
    ExecuteWith([&] {
        text = Text("TextLabel");
        status = Text("StatusLabel");
        OnGui([&] { format = Window()->findChild<QLabel*>(QStringLiteral("TextLabel"))->textFormat(); });
        Answer("code=1");
    });
    EXPECT_EQ(text,
              QStringLiteral("TSignOn<b>Service</b> asks for your consent at 127.0.0.1. This window closes "
                             "when you have answered there."));
    EXPECT_EQ(format, Qt::PlainText);
    EXPECT_EQ(status, QStringLiteral("Waiting for the browser..."));
    ASSERT_EQ(Browser.Opened.size(), 1);
    EXPECT_EQ(Browser.Opened.front().path(), QStringLiteral("/authorize"));
    EXPECT_EQ(Outcome().front(), QStringLiteral("Ok"));
    EXPECT_TRUE(Auth.Requests().back().contains("Authorization: Bearer at\r\n"));
}

TEST_F(SignOn, OpensTheBrowserAgainAndCopiesTheAddress) {
    ShowCall();
    QString copied, status;
    ExecuteWith([&] {
        Click("OpenButton");
        Click("CopyButton");
        OnGui([&] { copied = QGuiApplication::clipboard()->text(); });
        status = Text("StatusLabel");
        Answer("code=1");
    });
    ASSERT_EQ(Browser.Opened.size(), 2);
    EXPECT_EQ(Browser.Opened[0], Browser.Opened[1]);
    EXPECT_EQ(QUrl::fromEncoded(copied.toUtf8()), Browser.Opened[0]);
    EXPECT_EQ(status, QStringLiteral("The address is in the clipboard. Waiting for the browser..."));
}

TEST_F(SignOn, CanBeCancelledByButtonEscapeOrClosing) {
    ShowCall();
    ExecuteWith([] { Click("CancelButton"); });
    EXPECT_EQ(Outcome(), Cancelled);
    ExecuteWith([] { Press(Qt::Key_Escape); });
    EXPECT_EQ(Outcome(), Cancelled);
    ExecuteWith([] { OnGui([] { Window()->close(); }); });
    EXPECT_EQ(Outcome(), Cancelled);
    EXPECT_TRUE(Auth.Requests().isEmpty());
    EXPECT_TRUE(Shell->isVisible());
}

TEST_F(SignOn, IsWorkedByKeyboard) {
    ShowCall();
    ExecuteWith([] {
        for (const char* button : {"CopyButton", "CancelButton"}) {
            Press(Qt::Key_Tab);
            QString focus;
            OnGui([&] { focus = Window()->focusWidget()->objectName(); });
            EXPECT_EQ(focus, QLatin1String(button));
        }
        Press(Qt::Key_Tab);
        Press(Qt::Key_Space);
        Press(Qt::Key_Tab);
        Press(Qt::Key_Tab);
        Press(Qt::Key_Return);
    });
    EXPECT_EQ(Browser.Opened.size(), 2);
    EXPECT_EQ(Outcome(), Cancelled);
}

TEST_F(SignOn, LetsNothingElseReact) {
    ShowCall();
    ExecuteWith([&] {
        OnGui([&] {
            ClickInWindow(ExecButton());
            ClickInWindow(Shell->findChild<QToolButton*>(QStringLiteral("BackButton")));
            KeyInWindow(Qt::Key_Return, Qt::ControlModifier);
        });
        Answer("code=1");
    });
    EXPECT_EQ(Browser.Opened.size(), 1);
    EXPECT_EQ(Stack().back(), QStringLiteral("Call"));
}

TEST_F(SignOn, EndsWhenTheExplorerIsClosed) {
    ShowCall();
    ExecuteWith([&] { OnGui([&] { Shell->close(); }); });
    EXPECT_EQ(Outcome(), Cancelled);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !Shell->isVisible(); }));
}

TEST_F(SignOn, SaysWhenThereIsNoBrowser) {
    QDesktopServices::unsetUrlHandler(QStringLiteral("http"));
    ShowCall();
    QString status;
    ExecuteWith([&] {
        status = Text("StatusLabel");
        Click("CancelButton");
    });
    EXPECT_EQ(status,
              QStringLiteral("No browser could be opened. Copy the address, and open it in a browser on "
                             "this machine."));
}

TEST_F(SignOn, ShowsARefusalAsTextInThePlaceOfTheResponse) {
    ShowCall();
    ExecuteWith([&] { Answer("error=access_denied&error_description=%3Cb%3ENo%3C/b%3E"); });
    EXPECT_EQ(Outcome(), (QStringList{QStringLiteral("EZOSignOnRefusedError"),
                                      QStringLiteral("The sign-on at 127.0.0.1:%1 was refused: <b>No</b> "
                                                     "(access_denied).")
                                          .arg(Auth.Port())}));
}

TEST_F(SignOn, IsNotAskedForTwice) {
    ShowCall();
    ExecuteWith([&] { Answer("code=1"); });
    Execute();
    EXPECT_EQ(Browser.Opened.size(), 1);
    EXPECT_EQ(Outcome().front(), QStringLiteral("Ok"));
}

} // namespace

#include "SignOnTest.moc"
