#include "tests/runtime/http/HttpFixture.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>

namespace {

using TFailureTest = THttpTest;
using testing::MatchesRegex;

QString PlaceOf(const TRawServer& AServer) { return QStringLiteral("127.0.0.1:%1").arg(AServer.Port()); }

TEST_F(TFailureTest, NothingListens) {
    const int port = ClosedPort();
    EXPECT_EQ(
        FailureOf<EZOConnectionRefusedError>(Request("GET", "http://127.0.0.1:" + QByteArray::number(port))),
        QStringLiteral("No connection to 127.0.0.1:%1: Connection refused.").arg(port));
}

TEST_F(TFailureTest, TheHostIsUnknown) {
    EXPECT_EQ(
        FailureOf<EZOHostNotFoundError>(Request("GET", "http://nobody.invalid/x")),
        QStringLiteral("The server of nobody.invalid:80 is unknown: no address was found for its name."));
}

TEST_F(TFailureTest, TheServerStaysSilent) {
    TRawServer server([](TRawServer::TConnection& AConnection) { AConnection.WaitForClose(); });
    Client.Limits().StallTimeoutMs = 200;
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(FailureOf<EZOStalledError>(Request("GET", server.Url("/"))),
              PlaceOf(server) + QStringLiteral(" was silent for 0.2 seconds."));
    EXPECT_GE(timer.elapsed(), 200);
    EXPECT_LT(timer.elapsed(), 5000);
}

TEST_F(TFailureTest, TheServerFallsSilentInTheMiddle) {
    TRawServer server([](TRawServer::TConnection& AConnection) {
        AConnection.ReadRequest();
        AConnection.Write("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n123");
        AConnection.WaitForClose();
    });
    Client.Limits().StallTimeoutMs = 200;
    FailureOf<EZOStalledError>(Request("GET", server.Url("/")));
}

TEST_F(TFailureTest, TheSecureConnectionIsNeverMade) {
    TRawServer server([](TRawServer::TConnection& AConnection) { AConnection.WaitForClose(); });
    Client.Limits().ConnectTimeoutMs = 200;
    EXPECT_EQ(FailureOf<EZOConnectTimeoutError>(
                  Request("GET", "https://127.0.0.1:" + QByteArray::number(server.Port()))),
              PlaceOf(server) + QStringLiteral(" did not accept the connection within 0.2 seconds."));
}

TEST_F(TFailureTest, TheServerSpeaksNoTls) {
    TRawServer server([](TRawServer::TConnection& AConnection) {
        AConnection.Write(QByteArray(100, '!'));
        AConnection.WaitForClose();
    });
    EXPECT_EQ(FailureOf<EZOSecureConnectionError>(
                  Request("GET", "https://127.0.0.1:" + QByteArray::number(server.Port()))),
              PlaceOf(server) + QStringLiteral(" did not agree on a secure connection."));
}

struct TBrokenCase {
    const char* Name;
    const char* Bytes;
    bool IsReset;
    const char* ClassName;
    const char* Message;
};

class TBrokenAnswer : public THttpTest, public testing::WithParamInterface<TBrokenCase> {};

TEST_P(TBrokenAnswer, IsAFailureOfItsOwnKind) {
    TRawServer server([](TRawServer::TConnection& AConnection) {
        AConnection.ReadRequest();
        AConnection.Write(GetParam().Bytes);
        if (GetParam().IsReset)
            AConnection.Reset();
    });
    try {
        Get(server.Url("/"));
        ADD_FAILURE() << "nothing failed";
    } catch (const EZORequestError& failure) {
        EXPECT_EQ(failure.ClassName(), QLatin1String(GetParam().ClassName));
        EXPECT_EQ(failure.Message(), QString::fromUtf8(GetParam().Message).arg(PlaceOf(server)));
    }
}

constexpr const char* BrokenMessage = "The connection to %1 broke before the answer was complete.";

INSTANTIATE_TEST_SUITE_P(
    Cases, TBrokenAnswer,
    testing::Values(
        TBrokenCase{"Nothing", "", false, "EZONoAnswerError", "%1 closed the connection without an answer."},
        TBrokenCase{"ResetWithoutAnswer", "", true, "EZOConnectionResetError",
                    "The connection to %1 was reset before the answer was complete."},
        TBrokenCase{"BodyCutShort", "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n123", false,
                    "EZOTruncatedError", BrokenMessage},
        TBrokenCase{"ChunkCutShort", "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nab", false,
                    "EZOTruncatedError", BrokenMessage},
        TBrokenCase{"BadChunkSize", "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\nab\r\n",
                    false, "EZOProtocolError",
                    "The answer of %1 is damaged: its chunks are not as they have to be."},
        TBrokenCase{"NotHttp", "SSH-2.0-OpenSSH_9.2\r\n", false, "EZOProtocolError",
                    "What %1 answered is no HTTP."},
        TBrokenCase{"BadCompression",
                    "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: 4\r\n\r\nabcd", false,
                    "EZOCompressionError", "The answer of %1 is damaged: it could not be decompressed."}),
    [](const auto& AInfo) { return AInfo.param.Name; });

TEST_F(TFailureTest, TheAnswerIsTooLarge) {
    TRawServer server(
        TRawServer::Answering([](const QByteArray&) { return TRawServer::Answer(QByteArray(3000, 'x')); }));
    Client.Limits().MaxBodyBytes = 2999;
    EXPECT_EQ(FailureOf<EZOResponseTooLargeError>(Request("GET", server.Url("/"))),
              QStringLiteral("The answer of %1 is larger than 2999 bytes.").arg(PlaceOf(server)));
    Client.Limits().MaxBodyBytes = 3000;
    EXPECT_EQ(Get(server.Url("/")).Body.size(), 3000);
}

TEST_F(TFailureTest, HeadersWithoutEndAreCutOff) {
    TRawServer server([](TRawServer::TConnection& AConnection) {
        AConnection.ReadRequest();
        AConnection.Write("HTTP/1.1 200 OK\r\n");
        for (int i = 0; i < 100'000; ++i)
            AConnection.Write("X-Filler: " + QByteArray(90, 'x') + "\r\n");
        AConnection.WaitForClose();
    });
    EXPECT_EQ(
        FailureOf<EZOResponseTooLargeError>(Request("GET", server.Url("/"))),
        QStringLiteral("The headers that %1 answers with are larger than 256 KiB.").arg(PlaceOf(server)));
}

TEST_F(TFailureTest, TheDestinationIsFull) {
    TRawServer server(TRawServer::Answering(
        [](const QByteArray&) { return TRawServer::Answer(QByteArray(600'000, 'x')); }));
    QFile full(QStringLiteral("/dev/full"));
    ASSERT_TRUE(full.open(QIODevice::WriteOnly));
    TZOHttpRequest request = Request("GET", server.Url("/"));
    request.Destination = &full;
    EXPECT_EQ(FailureOf<EZODownloadError>(request),
              QStringLiteral("The response could not be written to /dev/full: No space left on device"));
}

TEST_F(TFailureTest, TheDestinationIsNotOpen) {
    TRawServer server(TRawServer::Answering([](const QByteArray&) { return TRawServer::Answer("x"); }));
    QBuffer closed;
    TZOHttpRequest request = Request("GET", server.Url("/"));
    request.Destination = &closed;
    FailureOf<EZODownloadError>(request);
}

TEST_F(TFailureTest, AFailureLeavesTheClientUsable) {
    TRawServer server([](TRawServer::TConnection& AConnection) {
        if (AConnection.ReadRequest().startsWith("GET /bad"))
            return;
        AConnection.Write(TRawServer::Answer("fine"));
    });
    FailureOf<EZONoAnswerError>(Request("GET", server.Url("/bad")));
    EXPECT_EQ(Get(server.Url("/good")).Body, "fine");
}

} // namespace
