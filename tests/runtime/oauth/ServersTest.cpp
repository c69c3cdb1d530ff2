// The flows against authorization servers that none of us wrote.
#include "tests/servers/OAuthServer.h"

#include "runtime/http/HttpClient.h"
#include "runtime/oauth/OAuthClient.h"
#include "runtime/types/Failures.h"

#include <QDateTime>

#include <gtest/gtest.h>

namespace {

class OidcProvider : public testing::Test {
protected:
    static void SetUpTestSuite() { Server = std::make_unique<TOAuthServer>(okOidc); }
    static void TearDownTestSuite() { Server.reset(); }
    OidcProvider() { Server->Switch("lifetime=3600&refuseApi=false&refuseRefresh=false&failRefresh=false"); }

    TZOOAuthClient::TSettings Settings(const QString& AClient) const {
        TZOOAuthClient::TSettings settings;
        settings.Service = "TTestService";
        settings.Scheme.Issuer = Server->Url();
        settings.ClientId = AClient;
        settings.Secret = AClient == "native" ? "-" : TOAuthServer::Secret();
        settings.RedirectUrl = "http://127.0.0.1/callback";
        settings.Scopes = {"read"};
        return settings;
    }
    /// What the API answers to AToken.
    int Status(const TZOAuthToken& AToken) {
        TZOHttpRequest request;
        request.Url = (Server->Url() + "/api").toUtf8();
        request.Headers.append(TZOHttpHeader{"Authorization", "Bearer " + AToken.AccessToken.toUtf8(), true});
        return Http.Execute(request).Status;
    }

    inline static std::unique_ptr<TOAuthServer> Server;
    TZOHttpClient Http;
};

} // namespace

TEST_F(OidcProvider, GivesEveryKindOfClientATokenAndRotatesItsRefreshToken) {
    for (const char* id : {"native", "basic", "post"}) {
        auto settings = Settings(id);
        settings.Scheme.ClientAuth = QLatin1String(id) == QLatin1String("post") ? caPost : caByMetadata;
        TZOOAuthClient client(Http, settings);
        TTestPerson person;
        const TZOAuthToken token = client.Authorize(person);
        EXPECT_EQ(person.Count, 1);
        EXPECT_TRUE(person.Output.contains("Signed on")) << person.Output.toStdString();
        EXPECT_EQ(Status(token), 200) << id;
        EXPECT_GT(token.ExpiresAtMs, QDateTime::currentMSecsSinceEpoch());
        const TZOAuthToken renewed = client.Refresh(token.RefreshToken);
        EXPECT_NE(renewed.AccessToken, token.AccessToken);
        EXPECT_NE(renewed.RefreshToken, token.RefreshToken);
        EXPECT_EQ(Status(renewed), 200) << id;
        // The server takes a refresh token that was used before for stolen, and ends the whole grant.
        EXPECT_THROW(client.Refresh(token.RefreshToken), EZOGrantError);
        EXPECT_THROW(client.Refresh(renewed.RefreshToken), EZOGrantError);
    }
}

TEST_F(OidcProvider, GivesClientsTokensOfTheirOwn) {
    for (const char* id : {"basic", "post"}) {
        auto settings = Settings(id);
        settings.Scheme.ClientAuth = QLatin1String(id) == QLatin1String("post") ? caPost : caBasic;
        EXPECT_EQ(Status(TZOOAuthClient(Http, settings).ClientCredentials()), 200);
    }
}

TEST_F(OidcProvider, RefusesAWrongSecret) {
    auto settings = Settings("basic");
    settings.Secret = "not-the-s3cret";
    try {
        TZOOAuthClient(Http, settings).ClientCredentials();
        FAIL() << "a token came";
    } catch (const EZOTokenRefusedError& failure) {
        EXPECT_EQ(failure.Message(),
                  "The authorization server at " + Server->Url().mid(7) +
                      " gave no token. It says: client authentication failed (invalid_client).");
    }
}

TEST_F(OidcProvider, SaysThatTheUserDenied) {
    TTestPerson person("deny");
    try {
        TZOOAuthClient(Http, Settings("native")).Authorize(person);
        FAIL() << "a token came";
    } catch (const EZOSignOnRefusedError& failure) {
        EXPECT_EQ(failure.Message(), "The sign-on at " + Server->Url().mid(7) +
                                         " was refused: End-User aborted interaction (access_denied).");
    }
}

TEST_F(OidcProvider, AForgedAnswerGivesNoToken) {
    Server->Switch();
    TTestPerson person("forge");
    EXPECT_THROW(TZOOAuthClient(Http, Settings("native")).Authorize(person), EZOSignOnAnswerError);
    EXPECT_TRUE(person.Output.contains("Not signed on"));
    EXPECT_EQ(Server->Switch(), QStringList{"consent read"});
}

TEST_F(OidcProvider, ASecondAnswerMeetsNobody) {
    TTestPerson person("twice");
    EXPECT_EQ(Status(TZOOAuthClient(Http, Settings("native")).Authorize(person)), 200);
    EXPECT_TRUE(person.Output.contains("nobody listens any more")) << person.Output.toStdString();
}

TEST(MockServer, IsDiscoveredAndGivesTokensByEveryFlow) {
    const TOAuthServer server(okMock);
    TZOHttpClient http;
    TZOOAuthClient::TSettings settings;
    settings.Scheme.MetadataUrl = server.Url() + "/.well-known/openid-configuration";
    settings.ClientId = "anybody";
    settings.Secret = "anything";
    settings.RedirectUrl = "http://127.0.0.1/callback";
    settings.Scopes = {"read"};
    TZOOAuthClient client(http, settings);
    TTestPerson person;
    const TZOAuthToken token = client.Authorize(person);
    EXPECT_EQ(token.AccessToken.count(u'.'), 2) << "no JWT";
    EXPECT_FALSE(client.Refresh(token.RefreshToken).AccessToken.isEmpty());
    EXPECT_FALSE(client.ClientCredentials().AccessToken.isEmpty());
}
