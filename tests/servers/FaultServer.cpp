#include "tests/servers/FaultServer.h"

#include "tests/servers/Faults_p.h"

#include "runtime/types/Limits.h"

namespace {

constexpr const char* Broken = "The connection to %1 broke before the answer was complete.";
constexpr const char* Reset = "The connection to %1 was reset before the answer was complete.";
constexpr const char* Silent = "%1 was silent for 0.3 seconds.";
constexpr const char* Damaged = "The answer of %1 is damaged: it could not be decompressed.";
constexpr const char* CutShort =
    "The answer of %1 ended before it was complete: what it was compressed to is cut short.";
constexpr const char* NoHttp = "What %1 answered is no HTTP.";
constexpr const char* BadChunks = "The answer of %1 is damaged: its chunks are not as they have to be.";
constexpr const char* TwoLengths =
    "%1 contradicts itself: its answer says its length twice, and differently.";
constexpr const char* LargeHeaders = "The headers that %1 answers with are larger than 256 KiB.";
constexpr const char* LargeBody = "The answer of %1 is larger than 1 MiB.";
constexpr const char* Cancelled = "The request was cancelled.";

QByteArray LastWord(const QByteArray& ARequest) {
    const QByteArray target = ARequest.split(' ').value(1);
    return target.mid(qMax(target.lastIndexOf('='), target.lastIndexOf('/')) + 1);
}

} // namespace

const std::vector<TFault>& TFaultServer::Faults() {
    static const std::vector<TFault> faults = {
        {"early-close", "EZONoAnswerError", "%1 closed the connection without an answer."},
        {"close-in-head", "EZOTruncatedError", Broken},
        {"truncated-body", "EZOTruncatedError", Broken},
        {"truncated-chunk", "EZOTruncatedError", Broken},
        {"missing-last-chunk", "EZOTruncatedError", Broken},
        {"reset", "EZOConnectionResetError", Reset},
        {"reset-in-body", "EZOConnectionResetError", Reset},
        {"silence", "EZOStalledError", Silent},
        {"silence-in-head", "EZOStalledError", Silent},
        {"silence-in-body", "EZOStalledError", Silent},
        {"slow-drip", "EZOCancelledError", Cancelled},
        {"slow-drip-in-head", "EZOStalledError", Silent},
        {"not-http", "EZOProtocolError", NoHttp},
        {"bad-chunk-size", "EZOProtocolError", BadChunks},
        {"chunk-without-end", "EZOProtocolError", BadChunks},
        {"negative-length", "EZOProtocolError", NoHttp},
        {"two-lengths", "EZOProtocolError", TwoLengths},
        {"list-of-lengths", "EZOProtocolError", TwoLengths},
        {"same-length-twice", "", ""},
        {"no-content-with-body", "", ""},
        {"more-than-its-length", "", ""},
        {"gzip", "", ""},
        {"gzip-in-two-members", "", ""},
        {"deflate", "", ""},
        {"bare-deflate", "", ""},
        {"brotli", "", ""},
        {"zstd", "", ""},
        {"zstd-in-gzip", "", ""},
        {"empty-gzip", "", ""},
        {"gzip-cut-short", "EZOTruncatedError", CutShort},
        {"gzip-without-checksum", "EZOTruncatedError", CutShort},
        {"deflate-cut-short", "EZOTruncatedError", CutShort},
        {"brotli-cut-short", "EZOTruncatedError", CutShort},
        {"zstd-cut-short", "EZOTruncatedError", CutShort},
        {"wrong-gzip", "EZOCompressionError", Damaged},
        {"wrong-checksum", "EZOCompressionError", Damaged},
        {"rubbish-behind-gzip", "EZOCompressionError", Damaged},
        {"wrong-brotli", "EZOCompressionError", Damaged},
        {"wrong-zstd", "EZOCompressionError", Damaged},
        {"unknown-coding", "EZOCompressionError",
         "The answer of %1 is compressed as \"x-secret\", which was not asked for."},
        {"too-many-codings", "EZOCompressionError",
         "The answer of %1 is compressed more often than is undone."},
        {"gzip-bomb", "EZOResponseTooLargeError", LargeBody},
        {"redirect-loop", "EZORedirectLimitError", "%1 redirects once more after 10 redirects."},
        {"redirect-to-file", "EZORedirectRefusedError",
         "%1 redirects to \"file:///etc/passwd\", which is no http or https address."},
        {"redirect-to-ftp", "EZORedirectRefusedError",
         "%1 redirects to \"ftp://127.0.0.1/x\", which is no http or https address."},
        {"redirect-to-nowhere", "EZORedirectRefusedError",
         "%1 redirects to \"http://\", which is no http or https address."},
        {"redirect-elsewhere", "", ""},
        {"many-headers", "", ""},
        {"header-of-10-mb", "EZOResponseTooLargeError",
         "A header that %1 answers with is larger than 100 KiB."},
        {"endless-headers", "EZOResponseTooLargeError", LargeHeaders},
        {"endless-interim-answers", "EZOResponseTooLargeError", LargeHeaders},
        {"endless-body", "EZOResponseTooLargeError", LargeBody},
        {"endless-chunks", "EZOResponseTooLargeError", LargeBody},
        {"endless-error", "EZOHttpStatusError", "500 Oh No\nBroken."},
        {"deep-json", "EZOJsonDepthError",
         "The JSON text is not as expected at line 1, column 8001 (/more/more/more/more/more/more/more/more/"
         "more/more/more/more.../more/more/more/more): values nest more than 1000 deep."},
        {"invalid-utf-8", "EZOJsonError",
         "The JSON text is not as expected at line 1, column 1: the text is not valid UTF-8."},
        {"too-many-requests", "EZOHttpStatusError",
         "429 Too Many Requests\nThe server asks to wait 120 seconds before the next attempt.\nSlow down\n"
         "100 calls an hour are free."},
        {"overloaded", "EZOHttpStatusError",
         "503 Service Unavailable\nThe server asks to wait until Fri, 31 Dec 2027 23:59:59 GMT before the "
         "next attempt.\nBack soon"},
        {"error-cut-short", "EZOHttpStatusError", "403 Forbidden\nNot for you"},
        {"error-in-wrong-gzip", "EZOHttpStatusError", "418 I'm a teapot"},
    };
    return faults;
}

int TFaultServer::StallTimeoutMs(const QByteArray& AFault) {
    const bool isShort = AFault.startsWith("silence") || AFault.startsWith("slow-drip");
    return isShort ? 300 : Limits::StallTimeoutMs;
}

TFaultServer::TFaultServer()
    : FElsewhere(TRawServer::Answering([](const QByteArray&) { return Faults::Fine(); })),
      FServer([this](TRawServer::TConnection& AConnection) { Serve(AConnection); }) {}

QString TFaultServer::MessageOf(const TFault& AFault) const {
    const auto place = [](const TRawServer& AServer) {
        return QStringLiteral("127.0.0.1:%1").arg(AServer.Port());
    };
    return QString::fromUtf8(AFault.Message)
        .replace(QLatin1String("%1"), place(FServer))
        .replace(QLatin1String("%2"), place(FElsewhere));
}

void TFaultServer::Serve(TRawServer::TConnection& AConnection) const {
    for (;;) {
        const QByteArray request = AConnection.ReadRequest();
        if (request.isEmpty())
            return;
        const ::Faults::TAct* act = ::Faults::Find(LastWord(request));
        if (!act) {
            AConnection.Write(::Faults::Fine());
            continue;
        }
        act->Run(AConnection, FElsewhere.Url({}));
        if (!act->StaysOpen)
            return;
    }
}
