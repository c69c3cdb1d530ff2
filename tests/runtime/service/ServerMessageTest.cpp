// What a failed answer is shown as.
#include "tests/runtime/service/ServiceFixture.h"

#include "runtime/service/HtmlText_p.h"

namespace {

using namespace ServiceCalls;

struct TMessageCase {
    const char* Name;
    const char* Status;
    const char* Headers;
    const char* Type;
    const char* Body;
    const char* Message;
};

class TServerMessage : public TServiceTest, public testing::WithParamInterface<TMessageCase> {};

TEST_P(TServerMessage, StandsBelowTheStatus) {
    const TMessageCase& row = GetParam();
    Answer = TRawServer::Answer(row.Body, row.Type, row.Status, row.Headers);
    TZOServiceBuilder builder("TTestService", {}, Url());
    builder.Operation("Touch", {}, "POST", "/touch", {}, nullptr);
    const auto serviceClass = ClassOf(builder);
    const auto service = serviceClass->Create();
    EXPECT_EQ(FailureOf<EZOHttpStatusError>([&] { Exec(*service, "Touch"); }), row.Message);
}

constexpr const char* Problem = "application/problem+json";
constexpr const char* Json = "application/json";
constexpr const char* Html = "text/html; charset=utf-8";

INSTANTIATE_TEST_SUITE_P(
    Cases, TServerMessage,
    testing::Values(
        TMessageCase{"Nothing", "404 Not Found", "", "text/plain", "", "404 Not Found"},
        TMessageCase{"NoReason", "409", "", "text/plain", "taken", "409 Conflict\ntaken"},
        TMessageCase{"Text", "400 Bad Request", "", "text/plain", "line one\r\nline two\n",
                     "400 Bad Request\nline one\nline two"},
        TMessageCase{"ProblemDetails", "403 Forbidden", "", Problem,
                     R"({"type": "https://example.com/probs/out-of-credit", "title": "Not enough credit.",
                         "detail": "Your balance is 30, but that costs 50.", "instance": "/account/12345",
                         "balance": 30, "accounts": ["/account/1", "/account/2"]})",
                     "403 Forbidden\nNot enough credit.\nYour balance is 30, but that costs 50.\n"
                     "balance: 30\naccounts: [\"/account/1\",\"/account/2\"]"},
        TMessageCase{"ProblemWithErrors", "422 Unprocessable Content", "", Json,
                     R"({"type": "https://example.net/validation-error", "title": "Not valid.",
                         "errors": [{"detail": "must be positive", "pointer": "#/age"},
                                    {"detail": "must be 'green', 'red' or 'blue'"}]})",
                     "422 Unprocessable Content\nNot valid.\n#/age: must be positive\n"
                     "must be 'green', 'red' or 'blue'"},
        TMessageCase{"ProblemThatRepeatsTheStatus", "404 Not Found", "", Problem,
                     R"({"title": "404 Not Found", "status": 404})", "404 Not Found"},
        TMessageCase{"ProblemOfOtherKinds", "400 Bad Request", "", Problem, R"({"title": 5, "detail": null})",
                     "400 Bad Request\n{\"title\": 5, \"detail\": null}"},
        TMessageCase{"OAuthError", "400 Bad Request", "", Json,
                     R"({"error": "invalid_request", "error_description": "The code was used before."})",
                     "400 Bad Request\ninvalid_request: The code was used before."},
        TMessageCase{"OAuthErrorAlone", "401 Unauthorized", "", Json, R"({"error": "invalid_client"})",
                     "401 Unauthorized\ninvalid_client"},
        TMessageCase{"AnErrorWithMoreToSay", "400 Bad Request", "", Json,
                     R"({"error": "Bad Request", "message": "id must be a number"})",
                     "400 Bad Request\n{\"error\": \"Bad Request\", \"message\": \"id must be a number\"}"},
        TMessageCase{"JsonThatIsNone", "500 Oh No", "", Json, R"({"error": "cut)",
                     "500 Oh No\n{\"error\": \"cut"},
        TMessageCase{"Page", "502 Bad Gateway", "", Html,
                     "<!DOCTYPE html><html><head><title>502 Bad Gateway</title><style>p {color: red}</style>"
                     "</head><body>\n<center><h1>502 Bad Gateway</h1></center><!-- <p>hidden</p> -->\n"
                     "<script>alert('<p>no')</script><p>The   <b>server</b> said &lt;no&gt; &amp; "
                     "&#8220;later&#x201D;.</p></body></html>",
                     "502 Bad Gateway\nThe server said <no> & \u201Clater\u201D."},
        TMessageCase{"PageCalledText", "500 Oh No", "", "text/plain", "<html><body>Broken</body></html>",
                     "500 Oh No\nBroken"},
        TMessageCase{"WaitInSeconds", "429 Too Many Requests", "Retry-After: 30\r\n", "text/plain",
                     "slow down",
                     "429 Too Many Requests\nThe server asks to wait 30 seconds before the next attempt.\n"
                     "slow down"},
        TMessageCase{"WaitOneSecond", "503 Service Unavailable", "Retry-After: 1\r\n", "text/plain", "",
                     "503 Service Unavailable\nThe server asks to wait 1 second before the next attempt."},
        TMessageCase{"WaitUntil", "503 Service Unavailable", "Retry-After: Fri, 31 Dec 2027 23:59:59 GMT\r\n",
                     "text/plain", "",
                     "503 Service Unavailable\nThe server asks to wait until Fri, 31 Dec 2027 23:59:59 GMT "
                     "before the next attempt."},
        TMessageCase{"WaitForRubbish", "503 Service Unavailable", "Retry-After: <b>soon</b>\r\n",
                     "text/plain", "", "503 Service Unavailable"},
        TMessageCase{"WaitOfAnotherStatus", "404 Not Found", "Retry-After: 30\r\n", "text/plain", "",
                     "404 Not Found"}),
    [](const auto& AInfo) { return AInfo.param.Name; });

TEST(HtmlText, TakesWhatIsWrongAsHtml) {
    const struct {
        const char* Html;
        const char* Text;
    } rows[] = {
        {"", ""},
        {"no tags", "no tags"},
        {"a < b && c > d", "a < b && c > d"},
        {"&unknown; &; &#0; &#xD800; & done", "&unknown; &; &#0; &#xD800; & done"},
        {"<p>open", "open"},
        {"cut <p", "cut"},
        {"<script>never closed", ""},
        {"<!-- never closed", ""},
        {"a<br>b<br/>b<hr>c", "a\nb\nc"},
        {"<P>one</P><Script>x</SCRIPT >two", "one\ntwo"},
        {"in<i>side</i> a w<b>or</b>d", "inside a word"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(HtmlText::Of(QString::fromUtf8(row.Html)), QString::fromUtf8(row.Text)) << row.Html;
}

TEST(HtmlText, LongPagesAreShortened) {
    // Quadratic time would show here.
    const QString page = QStringLiteral("<p>x &amp; y</p><!-- ").repeated(20'000);
    EXPECT_EQ(HtmlText::Of(page), QStringLiteral("x & y"));
}

using TSaidBack = TServiceTest;

TEST_F(TSaidBack, ASecretThatTheServerRepeatsIsHidden) {
    TZOServiceBuilder builder("TTestService", {}, Url());
    const int header = builder.AddScheme({"header", skApiKeyHeader, "X-Key"});
    const int query = builder.AddScheme({"query", skApiKeyQuery, "key"});
    const int cookie = builder.AddScheme({"cookie", skApiKeyCookie, "session"});
    const int basic = builder.AddScheme({"basic", skHttpBasic, {}});
    builder.Operation("All", {}, "POST", "/touch", {}, nullptr)
        .OperationSecurity({{{header, query, cookie, basic}}});
    const auto serviceClass = ClassOf(builder);
    const auto service = serviceClass->Create();
    service->SetApiKey("header=planted-h; query=planted q; cookie=planted-c; basic=me:planted-b");
    Answer = TRawServer::Answer("planted-h, planted%20q, planted q, key=planted%20q, session=planted-c, "
                                "planted-b, " +
                                    QByteArray("me:planted-b").toBase64(),
                                "text/plain", "401 planted-h");
    EXPECT_EQ(
        FailureOf<EZOHttpStatusError>([&] { Exec(*service, "All"); }),
        "401 (hidden)\n(hidden), (hidden), (hidden), key=(hidden), session=(hidden), (hidden), (hidden)");
}

TEST_F(TSaidBack, ASecretThatHoldsAnotherIsHiddenWhole) {
    TZOServiceBuilder builder("TTestService", {}, Url());
    const int header = builder.AddScheme({"header", skApiKeyHeader, "X-Key"});
    const int query = builder.AddScheme({"query", skApiKeyQuery, "key"});
    builder.Operation("All", {}, "POST", "/touch", {}, nullptr).OperationSecurity({{{header, query}}});
    const auto serviceClass = ClassOf(builder);
    const auto service = serviceClass->Create();
    service->SetApiKey("header=planted; query=more-planted-than-that");
    Answer = TRawServer::Answer("planted and more-planted-than-that", "text/plain", "401 Unauthorized");
    EXPECT_EQ(FailureOf<EZOHttpStatusError>([&] { Exec(*service, "All"); }),
              "401 Unauthorized\n(hidden) and (hidden)");
}

} // namespace
