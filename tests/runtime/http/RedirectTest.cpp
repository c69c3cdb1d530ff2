#include "tests/runtime/http/HttpFixture.h"

#include <QBuffer>

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

QByteArray RedirectTo(const QByteArray& ALocation, const QByteArray& AStatus = "302") {
    return TRawServer::Answer("moved", "text/plain", AStatus + " Moved", "Location: " + ALocation + "\r\n");
}

/// Redirects every path but "/end" to a place that each test sets.
class TRedirect : public THttpTest {
protected:
    QByteArray Location = "/end";
    QByteArray Status = "302";
    TRawServer Server{TRawServer::Answering([this](const QByteArray& ARequest) {
        const bool isEnd = ARequest.split(' ').value(1).startsWith("/end");
        return isEnd ? TRawServer::Answer("arrived") : RedirectTo(Location, Status);
    })};
    TRawServer Other{
        TRawServer::Answering([](const QByteArray&) { return TRawServer::Answer("elsewhere"); })};

    std::string Sent(int AIndex) const { return Server.Requests().value(AIndex).toStdString(); }

    /// A request with every kind of secret.
    TZOHttpRequest Secretive(const QByteArray& AUrl) const {
        TZOHttpRequest request = Request("GET", AUrl);
        request.CredentialQuery = "key=S3CRET-Q";
        request.Headers = {{"X-Api-Key", "S3CRET-H", true},
                           {"Authorization", "Bearer S3CRET-A", true},
                           {"Cookie", "session=S3CRET-C", true},
                           {"X-Typed-By-User", "S3CRET-U"},
                           {"Accept", "application/json"}};
        return request;
    }
};

TEST_F(TRedirect, IsFollowedToTheEnd) {
    const TZOHttpResponse response = Get(Server.Url("/start"));
    EXPECT_EQ(response.Status, 200);
    EXPECT_EQ(response.Body, "arrived");
    EXPECT_EQ(response.FinalUrl, Server.Url("/end"));
}

TEST_F(TRedirect, RelativePlacesAreResolved) {
    Location = "../end?x=a b";
    EXPECT_EQ(Get(Server.Url("/one/two?q=1")).FinalUrl, Server.Url("/end?x=a%20b"));
}

TEST_F(TRedirect, WithoutLocationIsAnAnswer) {
    TRawServer server(TRawServer::Answering(
        [](const QByteArray&) { return TRawServer::Answer("choose", "text/plain", "302 Found"); }));
    EXPECT_EQ(Get(server.Url("/")).Status, 302);
    TRawServer unchanged(TRawServer::Answering(
        [](const QByteArray&) { return QByteArray("HTTP/1.1 304 Not Modified\r\nLocation: /x\r\n\r\n"); }));
    EXPECT_EQ(Get(unchanged.Url("/")).Status, 304);
}

TEST_F(TRedirect, InCirclesEndsAtTheLimit) {
    Location = "/again";
    Client.Limits().MaxRedirects = 4;
    EXPECT_EQ(FailureOf<EZORedirectLimitError>(Request("GET", Server.Url("/"))),
              QStringLiteral("127.0.0.1:%1 redirects once more after 4 redirects.").arg(Server.Port()));
    EXPECT_EQ(Server.Requests().size(), 5);
}

TEST_F(TRedirect, ToAnotherSchemeIsRefused) {
    for (const char* place : {"file:///etc/passwd", "ftp://127.0.0.1/x", "javascript:alert(1)", "http://"}) {
        Location = place;
        EXPECT_THAT(FailureOf<EZORedirectRefusedError>(Request("GET", Server.Url("/"))).toStdString(),
                    HasSubstr(place));
    }
}

struct TMethodCase {
    const char* Status;
    const char* Method;
    const char* Expected;
    bool KeepsBody;
};

class TRedirectMethod : public TRedirect, public testing::WithParamInterface<TMethodCase> {};

TEST_P(TRedirectMethod, FollowsTheRulesOfHttp) {
    Status = GetParam().Status;
    Client.Execute(WithBody(GetParam().Method, Server.Url("/start"), "the-body"));
    EXPECT_THAT(Sent(1), StartsWith(std::string(GetParam().Expected) + " /end "));
    if (GetParam().KeepsBody) {
        EXPECT_THAT(Sent(1), testing::EndsWith("\r\n\r\nthe-body"));
    } else {
        EXPECT_THAT(Sent(1), Not(HasSubstr("the-body")));
        EXPECT_THAT(Sent(1), Not(HasSubstr("Content-")));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, TRedirectMethod,
    testing::Values(TMethodCase{"301", "POST", "GET", false}, TMethodCase{"302", "POST", "GET", false},
                    TMethodCase{"303", "POST", "GET", false}, TMethodCase{"303", "PUT", "GET", false},
                    TMethodCase{"303", "DELETE", "GET", false}, TMethodCase{"301", "PUT", "PUT", true},
                    TMethodCase{"302", "DELETE", "DELETE", true}, TMethodCase{"307", "POST", "POST", true},
                    TMethodCase{"308", "POST", "POST", true}, TMethodCase{"308", "PATCH", "PATCH", true}),
    [](const auto& AInfo) { return std::string("Status") + AInfo.param.Status + AInfo.param.Method; });

TEST_F(TRedirect, AHeadRequestStaysOne) {
    Status = "303";
    Client.Execute(Request("HEAD", Server.Url("/start")));
    EXPECT_THAT(Sent(1), StartsWith("HEAD /end "));
}

TEST_F(TRedirect, KeepsCredentialsWithinTheOrigin) {
    const TZOHttpResponse response = Client.Execute(Secretive(Server.Url("/start?a=1")));
    EXPECT_THAT(Sent(0), HasSubstr("/start?a=1&key=S3CRET-Q "));
    EXPECT_THAT(Sent(1), HasSubstr("/end?key=S3CRET-Q "));
    for (const char* secret : {"S3CRET-H", "S3CRET-A", "S3CRET-C", "S3CRET-U"})
        EXPECT_THAT(Sent(1), HasSubstr(secret));
    EXPECT_EQ(response.FinalUrl, Server.Url("/end"));
}

TEST_F(TRedirect, TakesNoSecretToAnotherOrigin) {
    Location = Other.Url("/landing");
    EXPECT_EQ(Client.Execute(Secretive(Server.Url("/start"))).Body, "elsewhere");
    const std::string sent = Other.Requests().value(0).toStdString();
    EXPECT_THAT(sent, StartsWith("GET /landing HTTP/1.1\r\n"));
    EXPECT_THAT(sent, Not(HasSubstr("S3CRET")));
    EXPECT_THAT(sent, HasSubstr("Accept: application/json\r\n"));
}

TEST_F(TRedirect, TakesOutAQueryKeyThatTheServerRepeats) {
    Location = Other.Url("/landing?key=S3CRET-Q&a=1&k%65y=S3CRET-Q");
    Client.Execute(Secretive(Server.Url("/start")));
    EXPECT_THAT(Other.Requests().value(0).toStdString(), StartsWith("GET /landing?a=1 HTTP/1.1\r\n"));
}

TEST_F(TRedirect, DoesNotRepeatAQueryKeyThatTheServerRepeats) {
    Location = "/end?key=S3CRET-Q&a=1";
    Client.Execute(Secretive(Server.Url("/start")));
    EXPECT_THAT(Sent(1), StartsWith("GET /end?a=1&key=S3CRET-Q HTTP/1.1\r\n"));
}

TEST_F(TRedirect, UsesNoUserInformationOfALocation) {
    Location = Other.Url("/landing").replace("http://", "http://user:pass@");
    const TZOHttpResponse response = Get(Server.Url("/start"));
    EXPECT_EQ(response.FinalUrl, Other.Url("/landing"));
    EXPECT_THAT(Other.Requests().value(0).toStdString(), Not(HasSubstr("Authorization")));
}

TEST_F(TRedirect, CredentialsDoNotComeBackOnceTheOriginWasLeft) {
    TRawServer back(
        TRawServer::Answering([this](const QByteArray&) { return RedirectTo(Server.Url("/end")); }));
    Location = back.Url("/there");
    Client.Execute(Secretive(Server.Url("/start")));
    EXPECT_THAT(Sent(1), StartsWith("GET /end HTTP/1.1\r\n"));
    EXPECT_THAT(Sent(1), Not(HasSubstr("S3CRET")));
}

TEST_F(TRedirect, ABodyIsNeverSentToAnotherOrigin) {
    Location = Other.Url("/landing");
    Status = "307";
    EXPECT_EQ(
        FailureOf<EZORedirectRefusedError>(WithBody("POST", Server.Url("/start"), "private")),
        QStringLiteral("127.0.0.1:%1 redirects to 127.0.0.1:%2, another server: what the request holds is "
                       "not sent there.")
            .arg(Server.Port())
            .arg(Other.Port()));
    EXPECT_EQ(Other.ConnectionCount(), 0);
}

TEST_F(TRedirect, AnotherHostNameIsAnotherOrigin) {
    Location = "http://localhost:" + QByteArray::number(Server.Port()) + "/end";
    Client.Execute(Secretive(Server.Url("/start")));
    EXPECT_THAT(Sent(1), Not(HasSubstr("S3CRET")));
}

TEST_F(TRedirect, AStreamIsSentOnceMoreFromItsStart) {
    Status = "308";
    QBuffer stream;
    stream.setData(QByteArray(300'000, 's'));
    stream.open(QIODevice::ReadOnly);
    TZOHttpRequest request = Request("POST", Server.Url("/start"));
    request.Body = {bkStream, {}, &stream, "text/plain", {}};
    EXPECT_EQ(Client.Execute(request).Body, "arrived");
    EXPECT_TRUE(Server.Requests().value(1).endsWith(stream.data()));
}

TEST_F(TRedirect, AStreamThatCanBeReadOnceIsAnUploadError) {
    TPipe pipe("once");
    Status = "307";
    TZOHttpRequest request = Request("POST", Server.Url("/start"));
    request.Body = {bkStream, {}, &pipe, "text/plain", {}};
    EXPECT_EQ(FailureOf<EZOUploadError>(request),
              QStringLiteral("The content to send has to be sent once more, but can be read only once."));
}

TEST_F(TRedirect, ADestinationTakesOnlyTheFinalAnswer) {
    QBuffer destination;
    destination.open(QIODevice::WriteOnly);
    TZOHttpRequest request = Request("GET", Server.Url("/start"));
    request.Destination = &destination;
    Client.Execute(request);
    EXPECT_EQ(destination.data(), "arrived");
}

} // namespace
