// What comes back from a sign-on: no query that knows not the state gives a code, and what a token endpoint
// says is a token that fits a header, or a failure in plain text.
#include "fuzzers/Fuzz.h"

#include "runtime/oauth/AuthorizationRequest.h"
#include "runtime/oauth/OAuthAnswer_p.h"
#include "runtime/types/Failures.h"

#include <algorithm>

namespace {

void RequirePlain(const EException& AFailure) {
    const QString& text = AFailure.Message();
    Fuzz::Require(!text.isEmpty() && text.size() < 4096, "a failure's text is short");
    Fuzz::Require(
        std::all_of(text.begin(), text.end(), [](QChar c) { return c.category() != QChar::Other_Control; }),
        "a failure's text has no control characters");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* AData, std::size_t ASize) {
    const QByteArray bytes = Fuzz::Bytes(AData, ASize);
    TZOAuthorizationRequest::TParams params;
    params.AuthorizationUrl = QStringLiteral("https://as.example/authorize");
    TZOAuthorizationRequest request(params);
    try {
        request.TakeCode(bytes);
        Fuzz::Require(false, "no code without the state");
    } catch (const EZORequestError& failure) {
        RequirePlain(failure);
    }
    TZOHttpResponse answer;
    answer.Status = 200;
    answer.Body = bytes;
    try {
        const TZOAuthToken token = OAuthAnswer::Token(answer, QStringLiteral("as.example"));
        Fuzz::Require(std::all_of(token.AccessToken.begin(), token.AccessToken.end(),
                                  [](QChar c) { return c > u' ' && c < u'\x7F'; }),
                      "a token fits a header");
        Fuzz::Require(token.ExpiresAtMs >= 0, "a token's end is no time before 1970");
    } catch (const EZORequestError& failure) {
        RequirePlain(failure);
    }
    return 0;
}
