// What a server sends: whatever it is, the client ends with an answer or a failure of its own, and says it in
// plain text.
#include "fuzzers/Fuzz.h"

#include "runtime/http/HttpClient.h"
#include "runtime/http/HttpRecord.h"
#include "runtime/service/ResponseText_p.h"
#include "runtime/types/Failures.h"
#include "tests/servers/RawServer.h"

namespace {

/// Whether a text may hold ASign: no control character but line ends and tabs, none that turns the direction.
bool IsShowable(QChar ASign) {
    const char16_t code = ASign.unicode();
    const bool turns = (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
    return !turns && (ASign.category() != QChar::Other_Control || code == '\n' || code == '\t');
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* AData, std::size_t ASize) {
    const QByteArray answer = Fuzz::Bytes(AData, ASize);
    const TRawServer server([&](TRawServer::TConnection& AConnection) {
        AConnection.ReadHead();
        AConnection.Write(answer);
    });
    TZOHttpClient client;
    client.Limits().MaxBodyBytes = 1 << 20;
    client.Limits().MaxRedirects = 2;
    TZOHttpRecord record;
    TZOHttpRequest request;
    request.Url = server.Url("/");
    request.Record = &record;
    try {
        const TZOHttpResponse response = client.Execute(request);
        Fuzz::Require(response.Body.size() <= 1 << 20, "a body keeps to its limit");
        ResponseText::MediaType(response);
        ResponseText::BodyText(response);
        const QString text = ResponseText::Failure(response);
        Fuzz::Require(text.size() < 4096, "a failure's text is short");
        for (const QChar sign : text)
            Fuzz::Require(IsShowable(sign), "a failure's text has no character that does something");
    } catch (const EZORequestError& failure) {
        Fuzz::Require(!failure.Message().isEmpty(), "a failure says something");
    }
    Fuzz::Require(record.Hops.size() <= 3, "redirects keep to their limit");
    return 0;
}
