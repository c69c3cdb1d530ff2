#include "tests/runtime/oauth/OAuthFixture.h"

#include <QHash>

namespace {

class Discovery : public TOAuthTest {
protected:
    Discovery() {
        Answers = [this](const QByteArray& ARequest) {
            const QByteArray target = ARequest.split(' ').value(1);
            if (target == "/token")
                return Json(Granted);
            return Documents.contains(target) ? Json(Documents[target])
                                              : TRawServer::Answer("no", "text/html", "404 Not Found");
        };
    }

    QByteArray Metadata(const QByteArray& AIssuer, const QByteArray& ARest = "") const {
        return R"({"issuer":")" + AIssuer + R"(","authorization_endpoint":")" + Server.Url("/authorize") +
               R"(","token_endpoint":")" + Server.Url("/token") + '"' + ARest + '}';
    }
    TZOOAuthClient::TSettings WithIssuer(const QByteArray& APath) const {
        auto settings = Settings();
        settings.Scheme = {};
        settings.Scheme.Issuer = QString::fromUtf8(Server.Url(APath));
        return settings;
    }
    QList<QByteArray> Targets() const {
        QList<QByteArray> targets;
        for (const QByteArray& request : Server.Requests())
            targets.append(request.split(' ').value(1));
        return targets;
    }
    QString Failure(const TZOOAuthClient::TSettings& ASettings) {
        return FailureOf<EZODiscoveryError>([&] { TZOOAuthClient(Http, ASettings).ClientCredentials(); });
    }

    QHash<QByteArray, QByteArray> Documents;
};

} // namespace

TEST_F(Discovery, FindsTheEndpointsOfAnIssuer) {
    Documents["/.well-known/oauth-authorization-server/tenant"] = Metadata(Server.Url("/tenant"));
    TTestBrowser browser(TTestBrowser::Consent());
    TZOOAuthClient client(Http, WithIssuer("/tenant"));
    EXPECT_EQ(client.ServerId(), QString::fromUtf8(Server.Url("/tenant")));
    EXPECT_EQ(client.Authorize(browser).AccessToken, "at");
    EXPECT_TRUE(browser.Url.startsWith(Server.Url("/authorize?")));
    EXPECT_EQ(Targets(), (QList<QByteArray>{"/.well-known/oauth-authorization-server/tenant", "/token"}));
}

TEST(AuthorizationServer, IsAnotherOneWhenAnyPlaceForATokenIs) {
    TZOOAuthClient::TSettings settings;
    settings.BaseUrl = "https://api.example/v1";
    settings.Scheme.Flows = {{ofAuthorizationCode, "/a", "/token", "/refresh"},
                             {ofClientCredentials, {}, "/token", {}}};
    const QString name = TZOOAuthClient::ServerId(settings);
    EXPECT_EQ(name, "https://api.example/token https://api.example/refresh");
    const std::function<void(TZOOAuthClient::TSettings&)> changes[] = {
        [](auto& s) { s.BaseUrl = "https://other.example/v1"; },
        [](auto& s) { s.Scheme.Issuer = "https://as.example"; },
        [](auto& s) { s.Scheme.MetadataUrl = "https://as.example"; },
        [](auto& s) { s.Scheme.Flows[0].TokenUrl = "/token2"; },
        [](auto& s) { s.Scheme.Flows[0].RefreshUrl = "/token2"; },
        [](auto& s) { s.Scheme.Flows[1].TokenUrl = "/token2"; },
        [](auto& s) { s.Scheme.Flows[1].RefreshUrl = "/token2"; },
    };
    for (const auto& change : changes) {
        auto changed = settings;
        change(changed);
        EXPECT_NE(TZOOAuthClient::ServerId(changed), name);
    }
}

TEST_F(Discovery, LooksInAllPlacesOfAnIssuerWithAPath) {
    Documents["/tenant/.well-known/openid-configuration"] = Metadata(Server.Url("/tenant"));
    TZOOAuthClient(Http, WithIssuer("/tenant")).ClientCredentials();
    EXPECT_EQ(Targets(), (QList<QByteArray>{"/.well-known/oauth-authorization-server/tenant",
                                            "/.well-known/openid-configuration/tenant",
                                            "/tenant/.well-known/openid-configuration", "/token"}));
}

TEST_F(Discovery, ReadsTheMetadataWhereADocumentSaysThatTheyAre) {
    Documents["/t/.well-known/openid-configuration"] = Metadata(Server.Url("/t"));
    auto settings = WithIssuer("");
    settings.Scheme.Issuer.clear();
    settings.Scheme.MetadataUrl = QString::fromUtf8(Server.Url("/t/.well-known/openid-configuration"));
    TZOOAuthClient(Http, settings).ClientCredentials();
    Documents["/t/.well-known/openid-configuration"] = Metadata(Server.Url("/other"));
    EXPECT_EQ(Failure(settings), "The metadata of the authorization server at " + Place() +
                                     " are those of another server, \"" +
                                     QString::fromUtf8(Server.Url("/other")) + "\".");
}

TEST_F(Discovery, RefusesTheMetadataOfAnotherIssuer) {
    for (const QByteArray& issuer : {QByteArray("https://evil.example"), Server.Url("/"), QByteArray()}) {
        Documents["/.well-known/oauth-authorization-server"] = Metadata(issuer);
        EXPECT_EQ(Failure(WithIssuer("")), "The metadata of the authorization server at " + Place() +
                                               " are those of another server, \"" +
                                               QString::fromUtf8(issuer) + "\".");
    }
}

TEST_F(Discovery, SaysWhatIsWrongWithMetadata) {
    EXPECT_EQ(Failure(WithIssuer("")),
              "The authorization server at " + Place() + " says nothing of itself (status 404).");
    Documents["/.well-known/oauth-authorization-server"] = "<html>";
    EXPECT_EQ(Failure(WithIssuer("")),
              "The metadata of the authorization server at " + Place() + " are no JSON object.");
    Documents["/.well-known/oauth-authorization-server"] = R"({"issuer":")" + Server.Url("") + "\"}";
    EXPECT_EQ(
        FailureOf<EZOAuthorizationError>([&] { TZOOAuthClient(Http, WithIssuer("")).ClientCredentials(); }),
        "The address of the token endpoint is no address: \"\".");
    auto settings = WithIssuer("");
    settings.Scheme.Issuer = "http://as.example.invalid";
    EXPECT_EQ(FailureOf<EZOAuthorizationError>([&] { TZOOAuthClient(Http, settings).ClientCredentials(); }),
              "The issuer of the authorization server has to begin with https, but is "
              "\"http://as.example.invalid\".");
}

TEST_F(Discovery, ShowsTheSecretAsTheServerWantsIt) {
    const QByteArray place = "/.well-known/oauth-authorization-server";
    const auto isInHeader = [&](const QByteArray& AWays) {
        Documents[place] = Metadata(Server.Url(""), R"(,"token_endpoint_auth_methods_supported":)" + AWays);
        TZOOAuthClient(Http, WithIssuer("")).ClientCredentials();
        const QByteArray asked = Server.Requests().back();
        EXPECT_NE(HeaderOf(asked, "Authorization").isEmpty(), asked.contains("client_secret=") == false);
        return !HeaderOf(asked, "Authorization").isEmpty();
    };
    EXPECT_TRUE(isInHeader(R"(["client_secret_post","client_secret_basic"])"));
    EXPECT_FALSE(isInHeader(R"(["client_secret_post"])"));
    EXPECT_TRUE(isInHeader(R"(["private_key_jwt"])"));
    EXPECT_TRUE(isInHeader("[]"));
    EXPECT_TRUE(isInHeader("7"));
}

TEST_F(Discovery, HoldsTheServerToNamingItselfWhereItSaysThatItDoes) {
    Documents["/.well-known/oauth-authorization-server"] =
        Metadata(Server.Url(""), R"(,"authorization_response_iss_parameter_supported":true)");
    TTestBrowser silent(TTestBrowser::Consent());
    TZOOAuthClient client(Http, WithIssuer(""));
    EXPECT_EQ(FailureOf<EZOSignOnAnswerError>([&] { client.Authorize(silent); }),
              "The answer to the sign-on at " + Place() + " does not say which server gave it.");
    TTestBrowser honest([this](const QUrlQuery& AQuestion) {
        return TTestBrowser::BackWith(AQuestion, "code=1&iss=" + Server.Url("").toPercentEncoding());
    });
    EXPECT_EQ(client.Authorize(honest).AccessToken, "at");
}
