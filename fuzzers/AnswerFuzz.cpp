// What a server sends: whatever it is, the client ends with an answer or a failure of its own, and says it in
// plain text.
#include "fuzzers/Fuzz.h"

#include "runtime/http/HttpClient.h"
#include "runtime/http/HttpRecord.h"
#include "runtime/service/ResponseText_p.h"
#include "runtime/types/Failures.h"
#include "tests/servers/RawServer.h"

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
            Fuzz::Require(sign.isPrint() || sign.isSpace(), "a failure's text has no control characters");
    } catch (const EZORequestError& failure) {
        Fuzz::Require(!failure.Message().isEmpty(), "a failure says something");
    }
    Fuzz::Require(record.Hops.size() <= 3, "redirects keep to their limit");
    return 0;
}
