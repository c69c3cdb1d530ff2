// Security schemes, and what calls show of them.
#include "tests/openapi/OpenApiFixture.h"

namespace {

class TSecurityTest : public TOpenApiTest {
protected:
    std::unique_ptr<TZOApiDocument> LoadSecured(const QByteArray& ASecurity) const {
        return LoadPaths("  /a: {get: {operationId: get, " + ASecurity +
                         R"(responses: {'204': {description: d}}}}
components:
  securitySchemes:
    header: {type: apiKey, in: header, name: X-Key}
    query: {type: apiKey, in: query, name: key}
    cookie: {type: apiKey, in: cookie, name: sid}
    basic: {type: http, scheme: Basic}
    bearer: {type: http, scheme: bearer}
    oauth:
      type: oauth2
      flows:
        authorizationCode: {authorizationUrl: 'https://a', tokenUrl: 'https://t', scopes: {read: Reading, write: Writing}}
        clientCredentials: {tokenUrl: 'https://t', scopes: {write: Writing, admin: All}}
    digest: {type: http, scheme: digest}
security: [{oauth: [write]}]
)");
    }

    TWireRequest Call(const QByteArray& ASecurity, const QByteArray& AScript) const {
        const auto document = LoadSecured(ASecurity);
        return CallWith(*document, OperOf(*document, QStringLiteral("get")), AScript);
    }
};

} // namespace

TEST_F(TSecurityTest, SendsWhatTheSchemeSays) {
    EXPECT_EQ(Call("security: [{header: []}], ", "key k").Header("X-Key"), "k");
    EXPECT_EQ(Call("security: [{query: []}], ", "key k&").Line, "GET /a?key=k%26");
    EXPECT_EQ(Call("security: [{cookie: []}], ", "key k").Header("Cookie"), "sid=k");
    EXPECT_EQ(Call("security: [{basic: []}], ", "key u:p").Header("Authorization"), "Basic dTpw");
    EXPECT_EQ(Call("security: [{bearer: []}], ", "key t").Header("Authorization"), "Bearer t");
    EXPECT_EQ(Call("", "token t").Header("Authorization"), "Bearer t");
    EXPECT_EQ(Call("security: [], ", "token t").Header("Authorization"), QByteArray());
    const TWireRequest both = Call("security: [{header: [], query: []}], ", "key header=a; query=b");
    EXPECT_EQ(both.Header("X-Key"), "a");
    EXPECT_EQ(both.Line, "GET /a?key=b");
    EXPECT_EQ(Call("security: [{basic: []}, {header: []}], ", "key plain").Header("X-Key"), "plain");
}

TEST_F(TSecurityTest, GivesTheScopesOfAllFlowsOnceAndThoseThatTheDocumentAsksForAsDefault) {
    const auto document = LoadSecured("");
    const auto& scopes = document->ServiceClass()->TypeInfo()->Scopes();
    ASSERT_EQ(scopes.size(), 3U);
    EXPECT_EQ(scopes[0].Name, QStringLiteral("read"));
    EXPECT_FALSE(scopes[0].Default);
    EXPECT_EQ(scopes[1].Name, QStringLiteral("write"));
    EXPECT_TRUE(scopes[1].Default);
    EXPECT_EQ(scopes[2].Name, QStringLiteral("admin"));
}

TEST_F(TSecurityTest, TellsOfSchemesThatItCannotUseOnce) {
    const auto document = LoadSecured("security: [{digest: []}], ");
    EXPECT_EQ(Problems(*document),
              QStringList{QStringLiteral(
                  "/components/securitySchemes/digest: The HTTP authentication \"digest\" is not "
                  "known; operations are called without it.")});
    const auto unknown = LoadSecured("security: [{nobody: []}], ");
    EXPECT_THAT(Problems(*unknown).join(u'\n').toStdString(),
                testing::HasSubstr("/paths/~1a/get/security/0"));
}

TEST_F(TSecurityTest, NeedsNoCredentialsWhereTheDocumentNamesNone) {
    const auto document =
        LoadPaths("  /a: {get: {operationId: get, responses: {'204': {description: d}}}}\n");
    EXPECT_FALSE(document->ServiceClass()->TypeInfo()->NeedsCredentials());
    EXPECT_EQ(document->ServiceClass()->Create()->GetApiKey(), TZORestService::NoKeyNeeded());
    EXPECT_TRUE(LoadSecured("")->ServiceClass()->TypeInfo()->NeedsCredentials());
}

namespace {

TZOOAuthScheme OAuthOf(const TZOApiDocument& ADocument) {
    const auto& schemes = ADocument.ServiceClass()->TypeInfo()->Schemes();
    return schemes.empty() ? TZOOAuthScheme() : schemes.front().OAuth;
}

} // namespace

TEST_F(TSecurityTest, TakesTheFlowsThatCanBeUsedSafely) {
    const auto document = LoadPaths(R"(  /a: {get: {responses: {'204': {description: d}}}}
components:
  securitySchemes:
    oauth:
      type: oauth2
      flows:
        implicit: {authorizationUrl: 'https://i', scopes: {}}
        password: {tokenUrl: 'https://p', scopes: {}}
        authorizationCode: {authorizationUrl: /login, tokenUrl: /token, refreshUrl: /refresh, scopes: {}}
        clientCredentials: {tokenUrl: 'https://t', scopes: {}}
)");
    const TZOOAuthScheme oauth = OAuthOf(*document);
    ASSERT_EQ(oauth.Flows.size(), 2U);
    EXPECT_EQ(oauth.Flows[0].Kind, ofAuthorizationCode);
    EXPECT_EQ(oauth.Flows[0].AuthorizationUrl, QStringLiteral("/login"));
    EXPECT_EQ(oauth.Flows[0].TokenUrl, QStringLiteral("/token"));
    EXPECT_EQ(oauth.Flows[0].RefreshUrl, QStringLiteral("/refresh"));
    EXPECT_EQ(oauth.Flows[1].Kind, ofClientCredentials);
    EXPECT_EQ(oauth.Flows[1].TokenUrl, QStringLiteral("https://t"));
    EXPECT_EQ(document->ServiceClass()->Create()->GetRedirectUrl(),
              QStringLiteral("http://127.0.0.1/callback"));
}

TEST_F(TSecurityTest, LeavesOutFlowsThatShowTokensOrPasswords) {
    for (const char* flows : {"implicit: {authorizationUrl: 'https://i', scopes: {}}",
                              "password: {tokenUrl: 'https://p', scopes: {}}"}) {
        const auto document = LoadPaths(QByteArray(R"(  /a: {get: {responses: {'204': {description: d}}}}
components: {securitySchemes: {oauth: {type: oauth2, flows: {)") +
                                        flows + "}}}}\n");
        EXPECT_FALSE(OAuthOf(*document).IsUsable()) << flows;
    }
}

TEST_F(TSecurityTest, FindsTheServerThatDescribesItselfAndTheScopesThatAreRequired) {
    const auto document = LoadPaths(
        R"(  /a: {get: {security: [{sign-on: [openid, more]}], responses: {'204': {description: d}}}}
components:
  securitySchemes:
    sign-on: {type: openIdConnect, openIdConnectUrl: 'https://as/.well-known/openid-configuration'}
security: [{sign-on: [openid]}]
)");
    const TZOOAuthScheme oauth = OAuthOf(*document);
    EXPECT_EQ(oauth.MetadataUrl, QStringLiteral("https://as/.well-known/openid-configuration"));
    EXPECT_TRUE(oauth.Has(ofAuthorizationCode));
    EXPECT_EQ(document->ServiceClass()->Create()->Scopes(),
              (QStringList{QStringLiteral("openid"), QStringLiteral("more")}));
}
