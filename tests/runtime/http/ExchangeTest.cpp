#include "tests/runtime/http/HttpFixture.h"

#include <QBuffer>

namespace {

using TExchange = THttpTest;
using testing::HasSubstr;
using testing::Not;

TEST_F(TExchange, SendsMethodPathAndHeadersAndReadsTheWholeAnswer) {
    TRawServer server(TRawServer::Answering([](const QByteArray&) {
        return TRawServer::Answer("hello", "text/plain", "201 Made Here", "X-One: 1\r\nx-one: 2\r\n");
    }));
    TZOHttpRequest request = Request("DELETE", server.Url("/a/../b%20c?q=1"));
    request.Headers = {{"X-Empty", ""}, {"X-Name", "value, with comma"}};

    const TZOHttpResponse response = Client.Execute(request);

    EXPECT_EQ(response.Status, 201);
    EXPECT_EQ(response.Reason, "Made Here");
    EXPECT_EQ(response.Body, "hello");
    EXPECT_EQ(response.Header("X-ONE"), "2");
    EXPECT_EQ(response.FinalUrl, request.Url);
    EXPECT_GT(response.TotalMicros, 0);
    const std::string sent = server.Requests().value(0).toStdString();
    EXPECT_THAT(sent, HasSubstr("DELETE /a/../b%20c?q=1 HTTP/1.1\r\n"));
    EXPECT_THAT(sent, HasSubstr("X-Empty:\r\n"));
    EXPECT_THAT(sent, HasSubstr("X-Name: value, with comma\r\n"));
    EXPECT_THAT(sent, Not(HasSubstr("Content-")));
}

TEST_F(TExchange, KeepsTheConnectionBetweenRequests) {
    TRawServer server(TRawServer::Answering([](const QByteArray&) { return TRawServer::Answer("x"); }));
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(Get(server.Url("/")).Status, 200);
    EXPECT_EQ(server.ConnectionCount(), 1);
}

TEST_F(TExchange, SendsAgainWhenAKeptConnectionWasClosedMeanwhile) {
    TRawServer server([](TRawServer::TConnection& AConnection) {
        AConnection.ReadRequest();
        AConnection.Write(TRawServer::Answer("x"));
    });
    EXPECT_EQ(Client.Execute(WithBody("POST", server.Url("/"), "body")).Body, "x");
    EXPECT_EQ(Client.Execute(WithBody("POST", server.Url("/"), "body")).Body, "x");
    EXPECT_EQ(server.ConnectionCount(), 2);
}

TEST_F(TExchange, AHeadRequestHasNoBodyToWaitFor) {
    TRawServer server(TRawServer::Answering(
        [](const QByteArray&) { return QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n"); }));
    const TZOHttpResponse response = Client.Execute(Request("HEAD", server.Url("/")));
    EXPECT_EQ(response.Header("Content-Length"), "1000");
    EXPECT_TRUE(response.Body.isEmpty());
}

TEST_F(TExchange, ReadsChunksAndBodiesThatEndWithTheConnection) {
    TRawServer chunked(TRawServer::Answering([](const QByteArray&) {
        return QByteArray("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                          "5;ext=1\r\nhello\r\n1\r\n!\r\n0\r\nX-Trailer: t\r\n\r\n");
    }));
    TRawServer closing([](TRawServer::TConnection& AConnection) {
        AConnection.ReadRequest();
        AConnection.Write("HTTP/1.0 200 OK\r\n\r\nuntil the end");
    });
    EXPECT_EQ(Get(chunked.Url("/")).Body, "hello!");
    EXPECT_EQ(Get(closing.Url("/")).Body, "until the end");
}

TEST_F(TExchange, InterimAnswersArePassedOver) {
    TRawServer server(TRawServer::Answering([](const QByteArray&) {
        return "HTTP/1.1 103 Early Hints\r\nLink: </style.css>\r\n\r\n" + TRawServer::Answer("final");
    }));
    const TZOHttpResponse response = Get(server.Url("/"));
    EXPECT_EQ(response.Status, 200);
    EXPECT_EQ(response.Header("Link"), "");
    EXPECT_EQ(response.Body, "final");
}

TEST_F(TExchange, ADestinationTakesTheBodyOfASuccessOnly) {
    TRawServer server(TRawServer::Answering([](const QByteArray& ARequest) {
        return ARequest.startsWith("GET /missing")
                   ? TRawServer::Answer("no such thing", "text/plain", "404 Not Found")
                   : TRawServer::Answer(QByteArray(1'000'000, 'x'));
    }));
    QBuffer destination;
    destination.open(QIODevice::ReadWrite);
    TZOHttpRequest request = Request("GET", server.Url("/missing"));
    request.Destination = &destination;
    TZOHttpResponse response = Client.Execute(request);
    EXPECT_EQ(response.Body, "no such thing");
    EXPECT_EQ(destination.size(), 0);

    request.Url = server.Url("/there");
    response = Client.Execute(request);
    EXPECT_TRUE(response.Body.isEmpty());
    EXPECT_EQ(response.DestinationBytes, 1'000'000);
    EXPECT_EQ(destination.data(), QByteArray(1'000'000, 'x'));
}

TEST_F(TExchange, KeepsOnlyTheStartOfWhatAServerSaysAboutAFailure) {
    TRawServer server([](TRawServer::TConnection& AConnection) {
        AConnection.ReadRequest();
        AConnection.Write("HTTP/1.1 500 Oops\r\n\r\n");
        for (int i = 0; i < 1000; ++i)
            AConnection.Write(QByteArray(65536, 'e'));
        AConnection.WaitForClose();
    });
    const TZOHttpResponse response = Get(server.Url("/"));
    EXPECT_EQ(response.Status, 500);
    EXPECT_EQ(response.Body.size(), 65536);
}

TEST_F(TExchange, AServerMayAnswerBeforeItHasReadTheBody) {
    TRawServer server([](TRawServer::TConnection& AConnection) {
        AConnection.ReadHead();
        AConnection.Write(
            TRawServer::Answer("too much", "text/plain", "413 Content Too Large", "Connection: close\r\n"));
        AConnection.WaitForClose();
    });
    const TZOHttpResponse response =
        Client.Execute(WithBody("POST", server.Url("/"), QByteArray(20'000'000, 'x')));
    EXPECT_EQ(response.Status, 413);
    EXPECT_EQ(response.Body, "too much");
}

TEST_F(TExchange, IdleIsCalledWhileTheServerThinksAndCanCancel) {
    TRawServer server([](TRawServer::TConnection& AConnection) {
        AConnection.ReadRequest();
        AConnection.WaitForClose();
    });
    int calls = 0;
    Client.SetIdle([&](qint64, qint64) { return ++calls < 3; });
    EXPECT_EQ(FailureOf<EZOCancelledError>(Request("GET", server.Url("/"))),
              QStringLiteral("The request was cancelled."));
    EXPECT_EQ(calls, 3);
}

TEST_F(TExchange, IdleHearsHowFarTheTransferIs) {
    TRawServer server([](TRawServer::TConnection& AConnection) {
        AConnection.ReadRequest();
        AConnection.Write("HTTP/1.1 200 OK\r\nContent-Length: 7\r\n\r\n12345");
        AConnection.WaitForClose();
    });
    qint64 received = 0;
    Client.SetIdle([&](qint64, qint64 AReceived) {
        received = AReceived;
        return AReceived < 5;
    });
    FailureOf<EZOCancelledError>(Request("GET", server.Url("/")));
    EXPECT_EQ(received, 5);
}

TEST_F(TExchange, ARequestDuringAnotherIsRefused) {
    TRawServer server([](TRawServer::TConnection& AConnection) {
        AConnection.ReadRequest();
        AConnection.WaitForClose();
    });
    Client.SetIdle([&](qint64, qint64) {
        FailureOf<EZOTransportError>(Request("GET", server.Url("/")));
        return false;
    });
    FailureOf<EZOCancelledError>(Request("GET", server.Url("/")));
    Client.SetIdle({});
}

TEST_F(TExchange, RefusesHeadersThatWouldAddHeaders) {
    TRawServer server(TRawServer::Answering([](const QByteArray&) { return TRawServer::Answer("x"); }));
    const QList<TZOHttpHeader> bad = {{"X-A", "1\r\nX-B: 2"},
                                      {"X-A", "1\nX-B: 2"},
                                      {"X-A", QByteArray("\0", 1)},
                                      {"X-A: 1\r\nX-B", "2"},
                                      {"", "x"},
                                      {"X A", "1"}};
    for (const TZOHttpHeader& header : bad) {
        TZOHttpRequest request = Request("GET", server.Url("/"));
        request.Headers = {header};
        EXPECT_NE(FailureOf<EZORequestValueError>(request), QString());
    }
    EXPECT_NE(FailureOf<EZORequestValueError>(Request("GET / HTTP/1.1\r\nX: y\r\n", server.Url("/"))),
              QString());
    EXPECT_NE(FailureOf<EZORequestValueError>(WithBody("POST", server.Url("/"), "x", "text/plain\r\nX: y")),
              QString());
    EXPECT_EQ(server.ConnectionCount(), 0);
}

TEST_F(TExchange, RefusesAddressesOfOtherKinds) {
    for (const char* url :
         {"", "file:///etc/passwd", "ftp://127.0.0.1/", "127.0.0.1/x", "http://", "http:///x"}) {
        const QString message = FailureOf<EZORequestValueError>(Request("GET", url));
        EXPECT_THAT(message.toStdString(), HasSubstr(url));
    }
}

} // namespace
