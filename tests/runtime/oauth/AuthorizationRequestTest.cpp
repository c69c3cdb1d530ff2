#include "tests/runtime/oauth/OAuthFixture.h"

#include "runtime/oauth/AuthorizationRequest.h"

#include <QCryptographicHash>
#include <QRegularExpression>
#include <QSet>

namespace {

class AuthorizationRequest : public TOAuthTest {
protected:
    static TZOAuthorizationRequest::TParams Params() {
        return {"https://as.example/login?tenant=a%20b",
                "id&1",
                "http://127.0.0.1:4711/back",
                {"a", "b:c"},
                {},
                false};
    }
    static QUrlQuery QueryOf(const TZOAuthorizationRequest& ARequest) {
        return QUrlQuery(QUrl::fromEncoded(ARequest.Url()));
    }
    static QByteArray State(const TZOAuthorizationRequest& ARequest) {
        return QueryOf(ARequest).queryItemValue("state").toUtf8();
    }
};

} // namespace

TEST_F(AuthorizationRequest, AsksForACodeWithAChallengeOfItsVerifier) {
    const TZOAuthorizationRequest request(Params());
    EXPECT_TRUE(request.Url().startsWith("https://as.example/login?tenant=a%20b&"));
    const QUrlQuery query = QueryOf(request);
    EXPECT_EQ(Field(query, "response_type"), "code");
    EXPECT_EQ(Field(query, "client_id"), "id&1");
    EXPECT_EQ(Field(query, "redirect_uri"), "http://127.0.0.1:4711/back");
    EXPECT_EQ(Field(query, "scope"), "a+b:c");
    EXPECT_EQ(Field(query, "code_challenge_method"), "S256");
    const QByteArray challenge =
        QCryptographicHash::hash(request.Verifier(), QCryptographicHash::Sha256)
            .toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
    EXPECT_EQ(Field(query, "code_challenge").toUtf8(), challenge);
    EXPECT_FALSE(request.Url().contains(request.Verifier()));
}

TEST_F(AuthorizationRequest, AsksForNoScopeWhereThereIsNone) {
    auto params = Params();
    params.Scopes.clear();
    EXPECT_FALSE(QueryOf(TZOAuthorizationRequest(params)).hasQueryItem("scope"));
}

TEST_F(AuthorizationRequest, StateAndVerifierAreLongAndNeverTheSame) {
    const QRegularExpression unreserved("^[A-Za-z0-9_-]{43}$");
    QSet<QByteArray> seen;
    for (int i = 0; i < 100; ++i) {
        const TZOAuthorizationRequest request(Params());
        EXPECT_TRUE(unreserved.match(QString::fromUtf8(request.Verifier())).hasMatch());
        EXPECT_TRUE(unreserved.match(QString::fromUtf8(State(request))).hasMatch());
        seen.insert(request.Verifier());
        seen.insert(State(request));
    }
    EXPECT_EQ(seen.size(), 200);
}

TEST_F(AuthorizationRequest, TakesTheCodeOfItsOwnAnswer) {
    TZOAuthorizationRequest request(Params());
    EXPECT_EQ(request.TakeCode("code=a%2Bb%26c&state=" + State(request) + "&session_state=x"), "a+b&c");
}

TEST_F(AuthorizationRequest, TakesOneAnswerOnly) {
    TZOAuthorizationRequest request(Params());
    const QByteArray answer = "code=1&state=" + State(request);
    request.TakeCode(answer);
    EXPECT_EQ(FailureOf<EZOSignOnAnswerError>([&] { request.TakeCode(answer); }),
              "The sign-on at as.example has been answered already.");
    // An answer that was refused has spent the state, too.
    TZOAuthorizationRequest other(Params());
    const QByteArray good = "code=1&state=" + State(other);
    FailureOf<EZOSignOnAnswerError>([&] { other.TakeCode("code=1&state=wrong"); });
    FailureOf<EZOSignOnAnswerError>([&] { other.TakeCode(good); });
}

TEST_F(AuthorizationRequest, RefusesTheStateOfAnother) {
    const QString message =
        "The answer to the sign-on at as.example belongs to another request: its state is "
        "not the one that was sent.";
    for (const char* query : {"code=1&state=x", "code=1", "code=1&state=", "", "error=access_denied"}) {
        TZOAuthorizationRequest request(Params());
        EXPECT_EQ(FailureOf<EZOSignOnAnswerError>([&] { request.TakeCode(query); }), message);
    }
    TZOAuthorizationRequest request(Params());
    QByteArray almost = State(request);
    almost.back() = almost.back() == 'A' ? 'B' : 'A';
    EXPECT_EQ(FailureOf<EZOSignOnAnswerError>([&] { request.TakeCode("code=1&state=" + almost); }), message);
}

TEST_F(AuthorizationRequest, RefusesWhatCanBeReadInTwoWays) {
    TZOAuthorizationRequest request(Params());
    EXPECT_EQ(FailureOf<EZOSignOnAnswerError>(
                  [&] { request.TakeCode("code=1&state=" + State(request) + "&code=2"); }),
              "The answer to the sign-on at as.example holds \"code\" twice.");
}

TEST_F(AuthorizationRequest, RefusesAnAnswerWithoutACode) {
    for (const char* rest : {"", "&code=", "&token=x"}) {
        TZOAuthorizationRequest request(Params());
        EXPECT_EQ(
            FailureOf<EZOSignOnAnswerError>([&] { request.TakeCode("state=" + State(request) + rest); }),
            "The answer to the sign-on at as.example holds no code.");
    }
}

TEST_F(AuthorizationRequest, SaysWhatTheServerRefused) {
    const std::pair<QByteArray, QString> cases[] = {
        {"error=access_denied", "access_denied"},
        {"error=access_denied&error_description=You+said+no.&code=1", "You said no (access_denied)"},
        {"error=server_error&error_description=%3Cb%3Enow%3C/b%3E%0d%0aand%20later",
         "<b>now</b> and later (server_error)"},
    };
    for (const auto& [query, text] : cases) {
        TZOAuthorizationRequest request(Params());
        EXPECT_EQ(
            FailureOf<EZOSignOnRefusedError>([&] { request.TakeCode(query + "&state=" + State(request)); }),
            "The sign-on at as.example was refused: " + text + '.');
    }
    TZOAuthorizationRequest request(Params());
    const QString message = FailureOf<EZOSignOnRefusedError>([&] {
        request.TakeCode("error=x&error_description=" + QByteArray(100'000, 'y') +
                         "&state=" + State(request));
    });
    EXPECT_LT(message.size(), 700);
}

TEST_F(AuthorizationRequest, ChecksWhoAnswers) {
    auto params = Params();
    params.Issuer = "https://as.example";
    const auto take = [&](const QByteArray& ARest) {
        TZOAuthorizationRequest request(params);
        return request.TakeCode("code=1&state=" + State(request) + ARest);
    };
    EXPECT_EQ(take("&iss=https%3A%2F%2Fas.example"), "1");
    EXPECT_EQ(take(""), "1");
    EXPECT_EQ(FailureOf<EZOSignOnAnswerError>([&] { take("&iss=https%3A%2F%2Fevil.example"); }),
              "The answer to the sign-on at as.example was given by another server: https://evil.example.");
    EXPECT_EQ(FailureOf<EZOSignOnAnswerError>([&] { take("&iss=https%3A%2F%2Fas.example%2F"); }),
              "The answer to the sign-on at as.example was given by another server: https://as.example/.");
    params.IsIssuerRequired = true;
    EXPECT_EQ(FailureOf<EZOSignOnAnswerError>([&] { take(""); }),
              "The answer to the sign-on at as.example does not say which server gave it.");
}
