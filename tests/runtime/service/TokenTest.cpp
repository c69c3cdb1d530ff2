// Tokens at work: where they come from, when they are renewed, and where they never go.
#include "tests/runtime/oauth/OAuthFixture.h"
#include "tests/runtime/service/ServiceFixture.h"

#include "runtime/types/Streams.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QDateTime>
#include <QSignalSpy>

namespace {

using namespace ServiceCalls;

/// A service and its authorization server on one port.
class Token : public TOAuthTest {
protected:
    Token() {
        Answers = [this](const QByteArray& ARequest) { return Answer(ARequest); };
        MakeService();
    }

    void MakeService() {
        TZOServiceBuilder builder("TTestService", {}, QString::fromUtf8(Server.Url("")));
        builder.Scope("read", true).Scope("write", false);
        TZOSecurityScheme login{"login", skOAuth2, {}};
        login.OAuth.Flows = {{ofAuthorizationCode, "/authorize", "/token", {}},
                             {ofClientCredentials, {}, "/token", {}}};
        TZOSecurityScheme other = login;
        other.Name = "other";
        other.OAuth.Flows = {{ofAuthorizationCode, "/authorize2", "/token2", {}}};
        builder.AddScheme(login);
        builder.AddScheme({"key", skApiKeyHeader, "X-Key"});
        builder.AddScheme(other);
        const auto* file = TZOTypeLibrary::Scalar(vkUpload);
        builder.Operation("Call", {}, "GET", "/api", {}, nullptr).OperationSecurity({{{0}}});
        builder.Operation("Keyed", {}, "GET", "/api", {}, nullptr).OperationSecurity({{{0}}, {{1}}});
        builder.Operation("Both", {}, "GET", "/api", {}, nullptr).OperationSecurity({{{0, 1}}});
        builder.Operation("Optional", {}, "GET", "/api", {}, nullptr).OperationSecurity({{{}}, {{0}}});
        builder.Operation("Other", {}, "GET", "/api", {}, nullptr).OperationSecurity({{{2}}});
        builder
            .Operation("Item", {}, "GET", "/api/{id}",
                       {TZOServiceParam::InPath("id", TZOTypeLibrary::Scalar(vkString), {})}, nullptr)
            .OperationSecurity({{{0}}});
        builder.Operation("Send", {}, "POST", "/api", {TZOServiceParam::InBody("body", file, {})}, nullptr)
            .OperationSecurity({{{0}}});
        Class = ClassOf(builder);
        Service = Class->Create();
        Service->SetClientId("id");
        Service->SetSecret("se-cret");
        Service->SetAuthUI(&Browser);
    }

    QByteArray Answer(const QByteArray& ARequest) {
        const QByteArray target = ARequest.split(' ').value(1);
        if (!target.startsWith("/token"))
            return HeaderOf(ARequest, "Authorization") == Accepted
                       ? TRawServer::Answer({}, {}, "204 No Content")
                       : TRawServer::Answer("no", "text/plain", "401 Unauthorized");
        const QString grant = Field(BodyOf(ARequest), "grant_type");
        if (grant == "refresh_token" && !RefreshAnswer.isEmpty())
            return RefreshAnswer;
        ++Count;
        return Json(R"({"access_token":"at)" + QByteArray::number(Count) + R"(","token_type":"Bearer",)" +
                    R"("expires_in":)" + Lifetime + R"(,"refresh_token":"rt)" + QByteArray::number(Count) +
                    "\"}");
    }

    /// What the servers were asked: "code", "refresh RT", "client", or "api TOKEN".
    QStringList Asked() const {
        QStringList asked;
        for (const QByteArray& request : Server.Requests()) {
            const QUrlQuery body = BodyOf(request);
            const QString grant = Field(body, "grant_type");
            if (!request.split(' ').value(1).startsWith("/token"))
                asked.append("api " + QString::fromUtf8(HeaderOf(request, "Authorization").mid(7)));
            else if (grant == "authorization_code")
                asked.append("code");
            else if (grant == "refresh_token")
                asked.append("refresh " + Field(body, "refresh_token"));
            else
                asked.append("client");
        }
        return asked;
    }
    QByteArray Saved() const {
        QBuffer stream;
        stream.open(QIODevice::WriteOnly);
        Service->SaveToken(&stream);
        return stream.data();
    }
    void Load(QByteArray ABytes) const {
        QBuffer stream(&ABytes);
        stream.open(QIODevice::ReadOnly);
        Service->LoadToken(&stream);
    }
    /// The message of the status that ended AOper.
    QString Refusal(const QString& AOper) {
        return FailureOf<EZOHttpStatusError>([&] { Exec(*Service, AOper); });
    }

    TTestBrowser Browser{TTestBrowser::Consent()};
    std::unique_ptr<TZORestServiceClass> Class;
    std::unique_ptr<TZORestService> Service;
    QByteArray Accepted = "Bearer at1";
    QByteArray Lifetime = "3600";
    QByteArray RefreshAnswer;
    int Count = 0;
};

const QByteArray InvalidGrant =
    TRawServer::Answer(R"({"error":"invalid_grant"})", "application/json", "400 Bad Request");

} // namespace

TEST_F(Token, IsAskedForWhenAnOperationNeedsIt) {
    QSignalSpy reports(Service.get(), &TZORestService::TokenReported);
    Exec(*Service, "Call");
    Exec(*Service, "Call");
    EXPECT_EQ(Asked(), (QStringList{"code", "api at1", "api at1"}));
    EXPECT_EQ(reports.count(), 1);
    EXPECT_EQ(Service->GetToken(), "at1");
    EXPECT_EQ(Field(QUrlQuery(QUrl::fromEncoded(Browser.Url)), "scope"), "read");
}

TEST_F(Token, IsNotAskedForWhereAnotherWayWillDo) {
    Service->SetApiKey("k");
    Accepted = "";
    Exec(*Service, "Keyed");
    Exec(*Service, "Optional");
    EXPECT_EQ(Asked(), (QStringList{"api ", "api "}));
    EXPECT_EQ(Browser.Url, "");
}

TEST_F(Token, IsAskedForBesideAKeyThatIsThere) {
    EXPECT_EQ(FailureOf<EZOAuthorizationError>([&] { Exec(*Service, "Both"); }),
              "TTestService has no credentials for Both. Enter its API key.");
    EXPECT_EQ(Browser.Url, "");
    Service->SetApiKey("k");
    Exec(*Service, "Both");
    EXPECT_EQ(Asked(), (QStringList{"code", "api at1"}));
}

TEST_F(Token, IsNotAskedForBeforeTheRequestCanBeSent) {
    FailureOf<EZORequestValueError>([&] { Exec(*Service, "Item"); });
    EXPECT_EQ(Browser.Url, "");
}

TEST_F(Token, NeedsAClientIdAndSomebodyToAsk) {
    Service->SetAuthUI(nullptr);
    EXPECT_EQ(FailureOf<EZOAuthorizationError>([&] { Exec(*Service, "Call"); }),
              "TTestService needs the user's consent, which cannot be asked for here.");
    Service->SetClientId({});
    EXPECT_EQ(FailureOf<EZOAuthorizationError>([&] { Exec(*Service, "Call"); }),
              "TTestService has no credentials for Call. Enter its client id, secret and redirect URL, and "
              "authorize it.");
    EXPECT_EQ(Asked(), QStringList());
}

TEST_F(Token, IsNotObtainedToShowARequestOnly) {
    const ZORequest request(Service.get(), OperOf(*Service, "Call")->Request);
    EXPECT_EQ(FailureOf<EZOAuthorizationError>([&] { request.Prepare(); }),
              "TTestService has no credentials for Call. Execute it once to sign on.");
    EXPECT_EQ(Browser.Url, "");
}

TEST_F(Token, IsAskedForByTheClientItselfWhereThatIsTheFlow) {
    Service->SetOAuthFlow(ofClientCredentials);
    Exec(*Service, "Call");
    EXPECT_EQ(Asked(), (QStringList{"client", "api at1"}));
    EXPECT_EQ(Browser.Url, "");
}

TEST_F(Token, IsNotAskedForByAFlowThatTheServerDoesNotHave) {
    Service->SetOAuthFlow(ofClientCredentials);
    EXPECT_EQ(FailureOf<EZOAuthorizationError>([&] { Exec(*Service, "Other"); }),
              "TTestService has no credentials for Other. It names no server that gives tokens in a way that "
              "can be used here.");
    EXPECT_EQ(Asked(), QStringList());
}

TEST_F(Token, ThatHasExpiredIsRenewedInSilence) {
    Service->SetToken("old", "rt", QDateTime::currentMSecsSinceEpoch() + 20'000); // within the margin
    Exec(*Service, "Call");
    EXPECT_EQ(Asked(), (QStringList{"refresh rt", "api at1"}));
    EXPECT_EQ(Browser.Url, "");
}

TEST_F(Token, ThatHasExpiredAndCannotBeRenewedIsAskedForAgain) {
    Service->SetToken("old", {}, 1);
    Exec(*Service, "Call");
    EXPECT_EQ(Asked(), (QStringList{"code", "api at1"}));
}

TEST_F(Token, ThatTheServerDoesNotTakeIsRenewedOnce) {
    Service->SetToken("old", "rt", 0);
    Exec(*Service, "Call");
    EXPECT_EQ(Asked(), (QStringList{"api old", "refresh rt", "api at1"}));
    EXPECT_EQ(Browser.Url, "");
}

TEST_F(Token, ThatIsRefusedAfterItWasRenewedIsAFailure) {
    Accepted = "Bearer none";
    Service->SetToken("old", "rt", 0);
    EXPECT_EQ(Refusal("Call"), "401 Unauthorized\nno\nThis is what it says to a new token.");
    EXPECT_EQ(Asked(), (QStringList{"api old", "refresh rt", "api at1"}));
}

TEST_F(Token, ThatIsNewAndRefusedIsAFailureAtOnce) {
    Accepted = "Bearer none";
    EXPECT_EQ(Refusal("Call"), "401 Unauthorized\nno\nThis is what it says to a new token.");
    EXPECT_EQ(Asked(), (QStringList{"code", "api at1"}));
}

TEST_F(Token, ThatTheServerDoesNotTakeAndThatCannotBeRenewedIsAskedForAgain) {
    Service->SetToken("old", {}, 0);
    Exec(*Service, "Call");
    EXPECT_EQ(Asked(), (QStringList{"api old", "code", "api at1"}));
}

TEST_F(Token, IsDroppedAndAskedForAgainWhenItsRefreshIsRefused) {
    RefreshAnswer = InvalidGrant;
    Service->SetToken("old", "rt", 1);
    QStringList held;
    QObject::connect(Service.get(), &TZORestService::TokenReported,
                     [&] { held.append(Service->GetToken()); });
    Exec(*Service, "Call");
    EXPECT_EQ(Asked(), (QStringList{"refresh rt", "code", "api at1"}));
    EXPECT_EQ(held, (QStringList{"", "at1"}));
}

TEST_F(Token, IsKeptWhenTheServerFailsAtItsRefresh) {
    const std::pair<QByteArray, const char*> cases[] = {
        {TRawServer::Answer("oops", "text/html", "503 Busy"), "EZOTokenAnswerError"},
        {TRawServer::Answer(R"({"error":"temporarily_unavailable"})", "application/json", "400 Bad Request"),
         "EZOTokenRefusedError"},
        {TRawServer::Answer(R"({"error":"invalid_client"})", "application/json", "401 Unauthorized"),
         "EZOTokenRefusedError"},
    };
    Service->SetToken("old", "rt", 1);
    const QByteArray before = Saved();
    for (const auto& [answer, failure] : cases) {
        RefreshAnswer = answer;
        try {
            Service->RefreshAccess();
            ADD_FAILURE() << "nothing failed";
        } catch (const EException& e) {
            EXPECT_EQ(e.ClassName(), QLatin1String(failure));
        }
        EXPECT_EQ(Saved(), before);
    }
    EXPECT_EQ(Browser.Url, "");
}

TEST_F(Token, ARotatedRefreshTokenIsReportedBeforeTheAccessTokenIsUsed) {
    Service->SetToken("old", "rt", 1);
    QByteArray saved;
    qsizetype before = 0;
    QObject::connect(Service.get(), &TZORestService::TokenReported, [&] {
        saved = Saved();
        before = Server.Requests().size();
    });
    Exec(*Service, "Call");
    EXPECT_EQ(before, 1); // the refresh; not yet the request
    Load(saved);
    Service->RefreshAccess();
    EXPECT_EQ(Asked(), (QStringList{"refresh rt", "api at1", "refresh rt1"}));
}

TEST_F(Token, IsForItsScopesClientAndServiceOnly) {
    const auto change = [&](auto AChange) {
        MakeService();
        Service->SetToken("old", "rt", 0);
        const QByteArray bytes = Saved();
        AChange();
        for (const bool isLoaded : {false, true}) {
            if (isLoaded)
                Load(bytes);
            Service->SetAuthUI(nullptr);
            FailureOf<EZOAuthorizationError>([&] { Exec(*Service, "Call"); });
            FailureOf<EZOAuthorizationError>([&] { Service->RefreshAccess(); });
        }
    };
    change([&] { Service->Scopes().append("write"); });
    change([&] { Service->Scopes().clear(); });
    change([&] { Service->SetClientId("another"); });
    EXPECT_EQ(Asked(), QStringList());
    // The order of scopes means nothing.
    Service->Scopes() = QStringList{"write", "read"};
    Service->SetToken("at1", "rt", 0);
    Service->Scopes() = QStringList{"read", "write"};
    Exec(*Service, "Call");
    EXPECT_EQ(Asked(), (QStringList{"api at1"}));
}

TEST_F(Token, IsForItsAuthorizationServerOnly) {
    Exec(*Service, "Call");
    Service->SetAuthUI(nullptr);
    FailureOf<EZOAuthorizationError>([&] { Exec(*Service, "Other"); });
    EXPECT_EQ(Asked(), (QStringList{"code", "api at1"}));
    TTestBrowser again(TTestBrowser::Consent());
    Service->SetAuthUI(&again);
    Accepted = "Bearer at2";
    Exec(*Service, "Other");
    EXPECT_TRUE(again.Url.startsWith(Server.Url("/authorize2?")));
    Service->RefreshAccess();
    EXPECT_TRUE(Server.Requests().back().startsWith("POST /token2 "));
}

TEST_F(Token, OfAnotherServiceClassCountsAsNone) {
    Service->SetToken("at1", "rt", 0);
    const QByteArray bytes = Saved();
    TZOServiceBuilder builder("TOtherService", {}, "http://127.0.0.1:1");
    TZORestServiceClass other("TOtherService", builder.Build());
    const auto service = other.Create();
    QByteArray copy = bytes;
    QBuffer stream(&copy);
    stream.open(QIODevice::ReadOnly);
    service->LoadToken(&stream);
    EXPECT_EQ(service->GetToken(), "");
}

TEST_F(Token, WithoutWhatItWasGrantedForCountsAsNone) {
    // What was stored before tokens said what they are for: "access", "refresh", never expiring.
    const QByteArray body = QByteArray::fromHex("5a4f544b"
                                                "01"
                                                "00000006616363657373"
                                                "0000000772656672657368"
                                                "0000000000000000");
    Load(body + QCryptographicHash::hash(body, QCryptographicHash::Sha256));
    EXPECT_EQ(Service->GetToken(), "");
}

/// Can be read once, as a pipe can.
class TOnceDevice : public QIODevice {
public:
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* AData, qint64 ASize) override {
        if (FIsRead)
            return -1;
        FIsRead = true;
        const qint64 size = std::min<qint64>(ASize, 4);
        std::fill_n(AData, size, 'x');
        return size;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    bool FIsRead = false;
};

TEST_F(Token, AnUploadThatCanBeReadOnceIsNotSentTwice) {
    Service->SetToken("old", "rt", 0);
    ZORequest request(Service.get(), OperOf(*Service, "Send")->Request);
    TOnceDevice once;
    once.open(QIODevice::ReadOnly);
    const auto attach = [&](QIODevice* AStream) {
        TZOValueHolder value(request.Type(), request.Data(), false);
        void* ref = nullptr;
        value.GetByRef(ref);
        void* body = nullptr;
        ZOObject::TData::SetProp(*static_cast<ZOObject**>(ref), 0, true, body);
        static_cast<ZOUpload*>(body)->SetStream(AStream);
    };
    attach(&once);
    EXPECT_EQ(
        FailureOf<EZOHttpStatusError>([&] { request.ExecRequest(); }),
        "401 Unauthorized\nno\nThere is a new token now, but what was to be sent can be read only once. "
        "Execute the request again.");
    EXPECT_EQ(Asked(), (QStringList{"api old", "refresh rt"}));
    QByteArray content = "again";
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    attach(&buffer);
    Service->SetToken("old", "rt", 0);
    Accepted = "Bearer at2";
    request.ExecRequest();
    EXPECT_EQ(Server.Requests().back().right(5), "again");
    EXPECT_EQ(Asked().mid(2), (QStringList{"api old", "refresh rt", "api at2"}));
}

TEST_F(Token, AFailedSignOnLeavesTheTokenAsItWas) {
    Service->SetToken("old", {}, 0);
    const QByteArray before = Saved();
    TTestBrowser refusing(
        [](const QUrlQuery& AQuestion) { return TTestBrowser::BackWith(AQuestion, "error=access_denied"); });
    Service->SetAuthUI(&refusing);
    FailureOf<EZOSignOnRefusedError>([&] { Exec(*Service, "Call"); });
    EXPECT_EQ(Saved(), before);
}
