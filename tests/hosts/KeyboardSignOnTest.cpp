// Sign-on from the real window: the desktop opens a browser, somebody consents there, and the request goes
// through; today, tomorrow, and after everything that can happen to a token.
#include "tests/hosts/KeyboardExplorer.h"
#include "tests/servers/OAuthServer.h"

#include "runtime/service/ServiceBuilder.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using U = TKeyboardUser;

class KeyboardSignOn : public testing::Test {
protected:
    static void SetUpTestSuite() { Server = std::make_unique<TOAuthServer>(okOidc); }
    static void TearDownTestSuite() { Server.reset(); }

    KeyboardSignOn() {
        qputenv("ZO_SETTINGS_FILE", Folder.filePath("settings.db").toUtf8());
        TTestPerson::Install("consent");
        Server->Switch("lifetime=3600&refuseApi=false&refuseRefresh=false&failRefresh=false");
        Server->Switch();
        TZOServiceBuilder service("TSignOnService", "Asks who is there", Server->Url());
        service.Scope("read", true).Scope("write", false);
        TZOSecurityScheme login{"login", skOAuth2, {}};
        login.OAuth.Issuer = Server->Url();
        const int scheme = service.AddScheme(login);
        const auto* text = TZOTypeLibrary::Scalar(vkString);
        const auto* answer =
            service.Types().NewObject("Answer").Property("client", text).Property("scope", text).Type();
        service.Operation("WhoAmI", "Tells it", "GET", "/api", {}, answer).OperationSecurity({{{scheme}}});
        Class = std::make_unique<TZORestServiceClass>("TSignOnService", service.Build());
        TZORestServiceClass::Register(Class.get());
        Explorer = std::make_unique<TKeyboardExplorer>();
    }
    ~KeyboardSignOn() override {
        Explorer.reset();
        TZORestServiceClass::Unregister(Class.get());
    }

    void Restart() {
        Explorer.reset();
        Explorer = std::make_unique<TKeyboardExplorer>();
    }
    void Do(const std::function<void(U&)>& AWork) { ASSERT_EQ(Explorer->Run(AWork), ""); }
    static void OpenOperation(U& u) { u.OpenOperation("TSignOnService", "WhoAmI"); }
    static void EnterClient(U& u) {
        OpenOperation(u);
        u.Driver().Click("Authentication options");
        u.See("Client ID");
        u.Driver().TabTo("QLineEdit");
        u.Driver().Type("native");
        u.Press("Tab");
        u.Driver().Type("-");
        u.Driver().Click("WhoAmI");
        u.See("Execute");
    }
    static void ExecuteAndSee(U& u, const QString& AText) {
        u.Execute();
        u.See(AText);
    }
    /// The first sign-on of a user.
    void SignOn() {
        Do([](U& u) {
            EnterClient(u);
            ExecuteAndSee(u, "client: native");
            u.See("scope: read");
        });
        ASSERT_EQ(Server->Switch(), (QStringList{"consent read", "token authorization_code", "api 200"}));
    }
    void ExecuteAgain(const QString& AExpected = "client: native") {
        Do([&](U& u) { ExecuteAndSee(u, AExpected); });
    }

    inline static std::unique_ptr<TOAuthServer> Server;
    QTemporaryDir Folder;
    std::unique_ptr<TZORestServiceClass> Class;
    std::unique_ptr<TKeyboardExplorer> Explorer;
};

const QStringList Consented = {"consent read", "token authorization_code", "api 200"};

} // namespace

TEST_F(KeyboardSignOn, TheFirstConsentLastsOverARestart) {
    SignOn();
    Restart();
    Do(OpenOperation);
    ExecuteAgain();
    EXPECT_EQ(Server->Switch(), QStringList{"api 200"});
}

TEST_F(KeyboardSignOn, AnExpiredTokenIsRenewedInSilence) {
    Server->Switch("lifetime=5");
    SignOn();
    Restart();
    Do(OpenOperation);
    ExecuteAgain();
    EXPECT_EQ(Server->Switch(), (QStringList{"token refresh_token", "api 200"}));
    // The refresh token of that time was stored, too.
    Restart();
    Do(OpenOperation);
    ExecuteAgain();
    EXPECT_EQ(Server->Switch(), (QStringList{"token refresh_token", "api 200"}));
}

TEST_F(KeyboardSignOn, ARefusedRefreshAsksForConsentAgain) {
    Server->Switch("lifetime=5");
    SignOn();
    Restart();
    Server->Switch("refuseRefresh=true&lifetime=3600");
    Do(OpenOperation);
    ExecuteAgain();
    EXPECT_EQ(Server->Switch(), QStringList{"refused invalid_grant"} + Consented);
}

TEST_F(KeyboardSignOn, AServerThatFailsAtTheRefreshCostsNoToken) {
    Server->Switch("lifetime=5");
    SignOn();
    Restart();
    Server->Switch("failRefresh=true");
    Do([](U& u) {
        OpenOperation(u);
        ExecuteAndSee(u, "EZOTokenAnswerError");
    });
    Server->Switch("failRefresh=false");
    Restart();
    Do(OpenOperation);
    ExecuteAgain();
    EXPECT_EQ(Server->Switch(), (QStringList{"token refresh_token", "api 200"}));
}

TEST_F(KeyboardSignOn, OtherScopesAskForConsentAgain) {
    SignOn();
    Do([](U& u) {
        u.Driver().Click("Authentication options");
        u.See("Client ID");
        u.Driver().TabTo("QCheckBox");
        u.Press("Tab"); // from the first scope to the second
        u.Press("space");
        u.Driver().Click("WhoAmI");
        ExecuteAndSee(u, "scope: read write");
    });
    EXPECT_EQ(Server->Switch(), (QStringList{"consent read write", "token authorization_code", "api 200"}));
}

TEST_F(KeyboardSignOn, AResetTokenIsAskedForAgain) {
    SignOn();
    Do([](U& u) {
        u.Driver().Click("Authentication options");
        u.See("Client ID");
        u.Driver().TabTo("QPushButton");
        u.Press("Tab");
        u.Press("space");
    });
    Restart();
    Do(OpenOperation);
    ExecuteAgain();
    EXPECT_EQ(Server->Switch(), Consented);
}

TEST_F(KeyboardSignOn, ATokenThatIsRefusedTwiceIsAFailure) {
    SignOn();
    Server->Switch("refuseApi=true");
    ExecuteAgain("This is what it says to a new token.");
    EXPECT_EQ(Server->Switch(), (QStringList{"api 401", "token refresh_token", "api 401"}));
}

TEST_F(KeyboardSignOn, ADenialIsShownInThePlaceOfTheResponse) {
    TTestPerson::Install("deny");
    Do([](U& u) {
        EnterClient(u);
        ExecuteAndSee(u, "EZOSignOnRefusedError");
        u.See("End-User aborted interaction (access_denied)");
    });
}

TEST_F(KeyboardSignOn, AUserWhoNeverComesBackCancels) {
    TTestPerson::Install("leave");
    Do([](U& u) {
        EnterClient(u);
        ExecuteAndSee(u, "Sign on in your browser");
        u.See("Open browser again");
        u.Driver().Picture("sign-on");
        u.Press("Escape");
        u.See("EZOCancelledError");
    });
}
