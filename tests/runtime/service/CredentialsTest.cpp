#include "tests/runtime/service/ServiceFixture.h"

namespace {

using namespace ServiceCalls;

/// The schemes by their index.
enum TScheme { shHeader, shQuery, shCookie, shBasic, shBearer, shOAuth };

/// What the user has entered, and what is sent of it.
struct TCredentialCase {
    std::vector<TZOSecurityAlternative> Alternatives;
    QString ApiKey;
    QString Token;
    QByteArray Target, Cookie, Authorization, KeyHeader;
};

class TCredentialsTest : public TServiceTest {
protected:
    std::unique_ptr<TZORestServiceClass>
    ClassSecuredBy(const std::vector<TZOSecurityAlternative>& AAlternatives,
                   const std::vector<TZOServiceParam>& AParams = {}) const {
        TZOServiceBuilder builder("TTestService", {}, Url());
        builder.AddScheme({"header", skApiKeyHeader, "X-Key"});
        builder.AddScheme({"query", skApiKeyQuery, "api key"});
        builder.AddScheme({"cookie", skApiKeyCookie, "session"});
        builder.AddScheme({"basic", skHttpBasic, {}});
        builder.AddScheme({"bearer", skHttpBearer, {}});
        builder.AddScheme({"oauth", skOAuth2, {}});
        builder.Operation("Call", {}, "GET", "/call", AParams, nullptr).OperationSecurity(AAlternatives);
        return ClassOf(builder);
    }

    void ExpectSent(const TCredentialCase& ACase) {
        SCOPED_TRACE(ACase.ApiKey.toStdString() + " | " + ACase.Token.toStdString());
        const auto serviceClass = ClassSecuredBy(ACase.Alternatives);
        const auto service = serviceClass->Create();
        service->SetApiKey(ACase.ApiKey);
        service->SetToken(ACase.Token, {}, 0);
        Exec(*service, "Call");
        // The transport may write hexadecimal digits in small letters (RFC 3986, section 2.1).
        EXPECT_EQ(Target().toLower(), ("/call" + ACase.Target).toLower());
        EXPECT_EQ(Header("Cookie"), ACase.Cookie);
        EXPECT_EQ(Header("Authorization"), ACase.Authorization);
        EXPECT_EQ(Header("X-Key"), ACase.KeyHeader);
    }

    QString Refusal(const std::vector<TZOSecurityAlternative>& AAlternatives, const QString& AApiKey) {
        const auto serviceClass = ClassSecuredBy(AAlternatives);
        const auto service = serviceClass->Create();
        service->SetApiKey(AApiKey);
        const auto before = Server.Requests().size();
        const QString message = FailureOf<EZOAuthorizationError>([&] { Exec(*service, "Call"); });
        EXPECT_EQ(Server.Requests().size(), before) << "a request was sent all the same";
        return message;
    }
};

TEST_F(TCredentialsTest, OneKeyGoesWhereItsSchemeSays) {
    const TCredentialCase cases[] = {
        {{{{shHeader}}}, "k=1; 2", {}, {}, {}, {}, "k=1; 2"},
        {{{{shQuery}}}, "k&1 ü", {}, "?api%20key=k%261%20%C3%BC", {}, {}, {}},
        {{{{shCookie}}}, "k1", {}, {}, "session=k1", {}, {}},
        {{{{shBasic}}}, "Aladdin:open sesame", {}, {}, {}, "Basic QWxhZGRpbjpvcGVuIHNlc2FtZQ==", {}},
        {{{{shBearer}}}, "mF_9.B5f-4.1JqM", {}, {}, {}, "Bearer mF_9.B5f-4.1JqM", {}},
        {{{{shBearer}}}, {}, "token", {}, {}, "Bearer token", {}},
        {{{{shBearer}}}, "key", "token", {}, {}, "Bearer key", {}},
        {{{{shOAuth}}}, "key", "token", {}, {}, "Bearer token", {}},
    };
    for (const TCredentialCase& each : cases)
        ExpectSent(each);
}

TEST_F(TCredentialsTest, SeveralKeysAreToldApartByName) {
    const QString both = "header=h 1; query=q=2";
    const TCredentialCase cases[] = {
        {{{{shHeader, shQuery}}}, both, {}, "?api%20key=q%3D2", {}, {}, "h 1"},
        {{{{shHeader, shQuery}}}, "query=q;header=h;", {}, "?api%20key=q", {}, {}, "h"},
        {{{{shCookie, shBasic}}}, "basic=a:b; cookie=c", {}, {}, "session=c", "Basic YTpi", {}},
        // A key and a token stand beside each other without names.
        {{{{shHeader, shOAuth}}}, "key", "token", {}, {}, "Bearer token", "key"},
        // Named where one would do as well.
        {{{{shQuery}}}, both, {}, "?api%20key=q%3D2", {}, {}, {}},
    };
    for (const TCredentialCase& each : cases)
        ExpectSent(each);
}

TEST_F(TCredentialsTest, TheFirstAlternativeThatCanBeSatisfiedCounts) {
    const TCredentialCase cases[] = {
        {{{{shOAuth}}, {{shHeader}}}, "key", {}, {}, {}, {}, "key"},
        {{{{shOAuth}}, {{shHeader}}}, "key", "token", {}, {}, "Bearer token", {}},
        {{{{shBasic}}, {{shQuery}}}, "no colon", {}, "?api%20key=no%20colon", {}, {}, {}},
        {{{{shHeader, shQuery}}, {{shQuery}}}, "query=q", {}, "?api%20key=q", {}, {}, {}},
        // Credentials are optional here: they are sent where there are some.
        {{{{}}, {{shHeader}}}, "key", {}, {}, {}, {}, "key"},
        {{{{}}, {{shHeader}}}, {}, {}, {}, {}, {}, {}},
        {{}, "key", "token", {}, {}, {}, {}},
    };
    for (const TCredentialCase& each : cases)
        ExpectSent(each);
}

TEST_F(TCredentialsTest, NoneNeededIsNeverSent) {
    const TCredentialCase cases[] = {
        {{{{}}, {{shHeader}}}, "none needed", {}, {}, {}, {}, {}},
        {{{{}}, {{shQuery}}, {{shCookie}}}, "none needed", {}, {}, {}, {}, {}},
        {{{{shBearer}}}, "none needed", "token", {}, {}, "Bearer token", {}},
    };
    for (const TCredentialCase& each : cases)
        ExpectSent(each);
    Refusal({{{shHeader}}}, "none needed");
}

TEST_F(TCredentialsTest, WithoutCredentialsTheMessageSaysWhatToEnter) {
    const QString start = "TTestService has no credentials for Call. ";
    EXPECT_EQ(Refusal({{{shHeader}}}, {}), start + "Enter its API key.");
    EXPECT_EQ(Refusal({{{shBasic}}}, "user"),
              start + "Enter user name and password as its API key, in the form \"user:password\".");
    EXPECT_EQ(Refusal({{{shBearer}}}, {}), start + "Enter the access token as its API key.");
    EXPECT_EQ(Refusal({{{shOAuth}}}, "key"),
              start + "Enter its client id, secret and redirect URL, and authorize it.");
    EXPECT_EQ(Refusal({{{shHeader, shQuery}}}, "one key for two"),
              start + "Enter its API keys as \"header=...; query=...\".");
    EXPECT_EQ(Refusal({{{shHeader, shQuery}}}, "header=half"),
              start + "Enter its API keys as \"header=...; query=...\".");
}

TEST_F(TCredentialsTest, AnOperationWithoutWaysOfItsOwnUsesTheClass) {
    TZOServiceBuilder builder("TTestService", {}, Url());
    builder.ApiKeyHeader("X-Key");
    builder.Operation("Call", {}, "GET", "/call", {}, nullptr);
    builder.Operation("Free", {}, "GET", "/free", {}, nullptr).OperationSecurity({});
    const auto serviceClass = ClassOf(builder);
    const auto service = serviceClass->Create();
    service->SetApiKey("key");
    Exec(*service, "Call");
    EXPECT_EQ(Header("X-Key"), "key");
    Exec(*service, "Free");
    EXPECT_EQ(Header("X-Key"), "");
}

TEST_F(TCredentialsTest, AKeyJoinsTheQueryAndTheCookiesOfTheRequest) {
    const auto* text = TZOTypeLibrary::Scalar(vkString);
    const auto serviceClass =
        ClassSecuredBy({{{shQuery, shCookie}}},
                       {TZOServiceParam::InQuery("q", text, {}), TZOServiceParam::InCookie("c", text, {})});
    const auto service = serviceClass->Create();
    service->SetApiKey("query=k; cookie=s");
    Exec(*service, "Call", R"({"q":"1","c":"2"})");
    EXPECT_EQ(Target(), "/call?q=1&api%20key=k");
    EXPECT_EQ(Header("Cookie"), "c=2; session=s");
}

TEST_F(TCredentialsTest, TheNameOfAKeyInTheQueryKeepsItsByteOrderMark) {
    TZOServiceBuilder builder("TTestService", {}, Url());
    builder.AddScheme({"marked", skApiKeyQuery, "\xEF\xBB\xBFkey"});
    builder.Operation("Call", {}, "GET", "/call", {}, nullptr).OperationSecurity({{{0}}});
    const auto serviceClass = ClassOf(builder);
    const auto service = serviceClass->Create();
    service->SetApiKey("k");
    Exec(*service, "Call");
    EXPECT_EQ(Target().toLower(), "/call?%ef%bb%bfkey=k");
}

TEST_F(TCredentialsTest, ALineBreakInAKeyIsRefusedWithoutShowingTheKey) {
    const auto serviceClass = ClassSecuredBy({{{shHeader}}});
    const auto service = serviceClass->Create();
    service->SetApiKey("secret\r\nX-Evil: 1");
    EXPECT_EQ(FailureOf<EZORequestValueError>([&] { Exec(*service, "Call"); }),
              "The header \"X-Key\" cannot hold line breaks or other control characters.");
    EXPECT_TRUE(Server.Requests().isEmpty());
}

} // namespace
