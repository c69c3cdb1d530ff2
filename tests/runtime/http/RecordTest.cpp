#include "tests/runtime/http/HttpFixture.h"

#include "runtime/http/HttpRecord.h"

namespace {

using Record = THttpTest;

QByteArray HeaderOf(const QList<TZOHttpHeader>& AHeaders, const QByteArray& AName) {
    for (const TZOHttpHeader& header : AHeaders)
        if (header.Name == AName)
            return header.Value;
    return "missing";
}

TEST_F(Record, HoldsWhatWasSentAndAnswered) {
    TRawServer server(TRawServer::Answering([](const QByteArray&) {
        return TRawServer::Answer("hello", "text/plain", "201 Made Here", "X-One: 1\r\n");
    }));
    TZOHttpRecord record;
    TZOHttpRequest request = WithBody("POST", server.Url("/a?b=c"), "12345");
    request.Record = &record;
    Client.Execute(request);
    ASSERT_EQ(record.Hops.size(), 1);
    const TZOHttpHop& hop = record.Hops[0];
    EXPECT_EQ(hop.RequestLine, "POST /a?b=c HTTP/1.1");
    EXPECT_EQ(HeaderOf(hop.RequestHeaders, "Content-Length"), "5");
    EXPECT_EQ(HeaderOf(hop.RequestHeaders, "Host"), server.Url("").mid(7));
    EXPECT_EQ(hop.StatusLine, "HTTP/1.1 201 Made Here");
    EXPECT_EQ(HeaderOf(hop.ResponseHeaders, "X-One"), "1");
    EXPECT_EQ(record.BytesReceived, 5);
    EXPECT_EQ(record.ContentLength(), 5);
    EXPECT_GT(record.TotalMicros, 0);
}

TEST_F(Record, HidesCredentials) {
    TRawServer server(TRawServer::Answering([](const QByteArray&) {
        return TRawServer::Answer("x", "text/plain", "200 OK", "Location: /p?key=s3cret\r\n");
    }));
    TZOHttpRecord record;
    TZOHttpRequest request = Request("GET", server.Url("/p?a=1"));
    request.Headers = {{"X-Key", "s3cret", true}, {"Authorization", "Basic s3cret"}, {"X-Plain", "shown"}};
    request.CredentialQuery = "key=s3cret";
    request.Record = &record;
    Client.Execute(request);
    const TZOHttpHop& hop = record.Hops.value(0);
    EXPECT_EQ(hop.RequestLine, "GET /p?a=1&key=(hidden) HTTP/1.1");
    EXPECT_EQ(HeaderOf(hop.RequestHeaders, "X-Key"), TZOHttpRecord::Hidden);
    EXPECT_EQ(HeaderOf(hop.RequestHeaders, "Authorization"), TZOHttpRecord::Hidden);
    EXPECT_EQ(HeaderOf(hop.RequestHeaders, "X-Plain"), "shown");
    EXPECT_EQ(HeaderOf(hop.ResponseHeaders, "Location"), "/p?key=(hidden)");
}

TEST_F(Record, HoldsEveryHopOfARedirect) {
    TRawServer server(TRawServer::Answering([](const QByteArray& ARequest) {
        return ARequest.startsWith("GET /one ")
                   ? TRawServer::Answer("moved", "text/plain", "302 Found", "Location: /two\r\n")
                   : TRawServer::Answer("here");
    }));
    TZOHttpRecord record;
    TZOHttpRequest request = Request("GET", server.Url("/one"));
    request.Record = &record;
    Client.Execute(request);
    ASSERT_EQ(record.Hops.size(), 2);
    EXPECT_EQ(record.Hops[0].RequestLine, "GET /one HTTP/1.1");
    EXPECT_EQ(record.Hops[0].StatusLine, "HTTP/1.1 302 Found");
    EXPECT_EQ(record.Hops[1].RequestLine, "GET /two HTTP/1.1");
    EXPECT_EQ(record.Hops[1].StatusLine, "HTTP/1.1 200 OK");
}

TEST_F(Record, IsKeptWhereARequestFails) {
    TRawServer server([](TRawServer::TConnection& AConnection) {
        AConnection.ReadRequest();
        AConnection.Write("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf");
    });
    TZOHttpRecord record;
    record.Hops.append(TZOHttpHop());
    TZOHttpRequest request = Request("GET", server.Url("/"));
    request.Record = &record;
    EXPECT_THROW(Client.Execute(request), EZOTruncatedError);
    ASSERT_EQ(record.Hops.size(), 1);
    EXPECT_EQ(record.Hops[0].StatusLine, "HTTP/1.1 200 OK");
    EXPECT_EQ(record.BytesReceived, 4);
    EXPECT_EQ(record.ContentLength(), 100);

    request.Url = "http://127.0.0.1:" + QByteArray::number(ClosedPort()) + "/";
    EXPECT_THROW(Client.Execute(request), EZOConnectionRefusedError);
    ASSERT_EQ(record.Hops.size(), 1);
    EXPECT_EQ(record.Hops[0].RequestLine, "");
    EXPECT_EQ(record.Hops[0].StatusLine, "");
}

} // namespace
