// Multipart bodies (RFC 7578): names, types and contents of any bytes arrive as what they are, in parts that
// no content can break out of.
#include "fuzzers/Fuzz.h"

#include "runtime/http/HttpClient.h"
#include "runtime/types/Failures.h"
#include "tests/servers/RawServer.h"

#include <QBuffer>

#include <list>

namespace {

/// The next piece of AInput, up to its next zero byte.
QByteArray Take(QByteArray& AInput) {
    const qsizetype end = AInput.indexOf('\0');
    const QByteArray piece = AInput.left(end);
    AInput.remove(0, end < 0 ? AInput.size() : end + 1);
    return piece;
}

/// What stands between the boundaries of ARequest's body, head and content of each part.
QList<QByteArray> PartsOf(const QByteArray& ARequest) {
    const qsizetype headEnd = ARequest.indexOf("\r\n\r\n");
    const QByteArray head = ARequest.left(headEnd);
    const qsizetype mark = head.indexOf("boundary=");
    Fuzz::Require(mark > 0, "the boundary is named");
    const QByteArray boundary = "\r\n--" + head.mid(mark + 9, head.indexOf("\r\n", mark) - mark - 9);
    const QByteArray body = "\r\n" + ARequest.mid(headEnd + 4);
    QList<QByteArray> parts;
    qsizetype from = 0;
    while ((from = body.indexOf(boundary, from)) >= 0) {
        from += boundary.size();
        if (body.mid(from, 2) == "--")
            return parts;
        const qsizetype end = body.indexOf(boundary, from);
        Fuzz::Require(end > 0, "every part ends with the boundary");
        parts.append(body.mid(from + 2, end - from - 2));
    }
    Fuzz::Require(false, "the body ends with its last boundary");
    return parts;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* AData, std::size_t ASize) {
    // One connection carries them all: setting one up takes longer than a request.
    static TRawServer server(TRawServer::Answering([](const QByteArray&) { return TRawServer::Answer({}); }));
    static TZOHttpClient client;
    QByteArray input = Fuzz::Bytes(AData, ASize);
    TZOHttpRequest request;
    request.Method = "POST";
    request.Url = server.Url("/");
    request.Body.Kind = bkMultipart;
    std::list<QBuffer> streams;
    while (!input.isEmpty() && request.Body.Parts.size() < 8) {
        TZOHttpPart part;
        part.Name = Take(input);
        part.FileName = QString::fromUtf8(Take(input));
        part.Content = Take(input);
        if (!part.FileName.isEmpty()) {
            streams.emplace_back().setData(part.Content);
            streams.back().open(QIODevice::ReadOnly);
            part.Stream = &streams.back();
        }
        request.Body.Parts.append(part);
    }
    if (request.Body.Parts.isEmpty())
        return 0;
    server.TakeRequests();
    try {
        client.Execute(request);
    } catch (const EZORequestError& failure) {
        Fuzz::Require(!failure.Message().isEmpty(), "a failure says something");
        return 0;
    }
    const QList<QByteArray> parts = PartsOf(server.TakeRequests().value(0));
    Fuzz::Require(parts.size() == request.Body.Parts.size(), "as many parts arrive as were sent");
    for (qsizetype index = 0; index < parts.size(); ++index) {
        const qsizetype headEnd = parts[index].indexOf("\r\n\r\n");
        const QByteArray head = parts[index].left(headEnd);
        Fuzz::Require(parts[index].mid(headEnd + 4) == request.Body.Parts[index].Content,
                      "a part's content arrives as it was");
        Fuzz::Require(head.startsWith("Content-Disposition: form-data; name=\""), "a part is form data");
        Fuzz::Require(head.count("\r\n") <= 1, "no name adds a header");
    }
    return 0;
}
