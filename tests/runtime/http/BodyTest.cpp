#include "tests/runtime/http/HttpFixture.h"

#include <QBuffer>
#include <QTemporaryFile>

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// A device that breaks in the middle.
class TBrokenDevice : public QBuffer {
public:
    TBrokenDevice() {
        setData(QByteArray(1'000'000, 'x'));
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    qint64 readData(char* AData, qint64 ASize) override {
        if (pos() < 100'000)
            return QBuffer::readData(AData, qMin(ASize, qint64(50'000)));
        setErrorString(QStringLiteral("the disk is gone"));
        return -1;
    }
};

class TBody : public THttpTest {
protected:
    TRawServer Server{TRawServer::Answering([](const QByteArray&) { return TRawServer::Answer("ok"); })};

    TZOHttpRequest Streaming(QIODevice& AStream) const {
        TZOHttpRequest request = Request("POST", Server.Url("/upload"));
        request.Body.Kind = bkStream;
        request.Body.Stream = &AStream;
        request.Body.ContentType = "application/octet-stream";
        return request;
    }

    std::string SentText() const { return Server.Requests().value(0).toStdString(); }
};

TEST_F(TBody, BytesAreSentWithTypeAndLength) {
    Client.Execute(WithBody("PUT", Server.Url("/x"), "{\"a\":1}", "application/json"));
    EXPECT_THAT(SentText(), StartsWith("PUT /x HTTP/1.1\r\n"));
    EXPECT_THAT(SentText(), HasSubstr("Content-Type: application/json\r\n"));
    EXPECT_THAT(SentText(), HasSubstr("Content-Length: 7\r\n"));
    EXPECT_THAT(SentText(), testing::EndsWith("\r\n\r\n{\"a\":1}"));
}

TEST_F(TBody, OnlyALargeOneWaitsForTheServerToAskForIt) {
    QBuffer stream;
    stream.setData(QByteArray(1 << 20, 'x'));
    stream.open(QIODevice::ReadOnly);
    Client.Execute(Streaming(stream));
    EXPECT_THAT(SentText(), Not(HasSubstr("Expect:")));
    stream.close();
    stream.setData(QByteArray((1 << 20) + 1, 'x'));
    stream.open(QIODevice::ReadOnly);
    Client.Execute(Streaming(stream));
    EXPECT_THAT(Server.Requests().value(1).toStdString(), HasSubstr("Expect: 100-continue\r\n"));
}

TEST_F(TBody, APostWithoutBodySaysSo) {
    Client.Execute(Request("POST", Server.Url("/x")));
    EXPECT_THAT(SentText(), HasSubstr("Content-Length: 0\r\n"));
    EXPECT_THAT(SentText(), Not(HasSubstr("Content-Type")));
}

TEST_F(TBody, AGetMayHaveABody) {
    Client.Execute(WithBody("GET", Server.Url("/x"), "search"));
    EXPECT_THAT(SentText(), StartsWith("GET /x HTTP/1.1\r\n"));
    EXPECT_THAT(SentText(), testing::EndsWith("\r\n\r\nsearch"));
}

TEST_F(TBody, AStreamIsSentFromItsStartWithItsSize) {
    QBuffer stream;
    stream.setData(QByteArray(3'000'000, 's'));
    stream.open(QIODevice::ReadOnly);
    stream.seek(17);
    EXPECT_EQ(Client.Execute(Streaming(stream)).Status, 200);
    EXPECT_THAT(SentText(), HasSubstr("Content-Length: 3000000\r\n"));
    EXPECT_TRUE(Server.Requests().value(0).endsWith("\r\n\r\n" + stream.data()));
}

TEST_F(TBody, AStreamWithoutASizeIsSentInChunks) {
    TPipe pipe("from a pipe");
    EXPECT_EQ(Client.Execute(Streaming(pipe)).Status, 200);
    EXPECT_THAT(SentText(), HasSubstr("Transfer-Encoding: chunked\r\n"));
    EXPECT_THAT(SentText(), testing::EndsWith("\r\n\r\nfrom a pipe"));
}

TEST_F(TBody, AnEmptyStreamIsAnEmptyBody) {
    QBuffer stream;
    stream.open(QIODevice::ReadOnly);
    EXPECT_EQ(Client.Execute(Streaming(stream)).Status, 200);
    EXPECT_THAT(SentText(), HasSubstr("Content-Length: 0\r\n"));
}

TEST_F(TBody, PartsCarryNamesFileNamesAndTypes) {
    QBuffer stream;
    stream.setData("file content");
    stream.open(QIODevice::ReadOnly);
    TZOHttpRequest request = Request("POST", Server.Url("/form"));
    request.Body.Kind = bkMultipart;
    request.Body.Parts = {{"text", "value", nullptr, {}, {}},
                          {"quoted\"\r\nname", {}, nullptr, {}, "application/json"},
                          {"file", {}, &stream, QStringLiteral("k\u00f6nig \"1\".txt"), "text/plain"}};
    Client.Execute(request);

    const QByteArray sent = Server.Requests().value(0);
    const qsizetype start = sent.indexOf("boundary=") + 9;
    const QByteArray boundary = sent.mid(start, sent.indexOf('\r', start) - start);
    const QByteArray expected =
        "--" + boundary + "\r\nContent-Disposition: form-data; name=\"text\"\r\n\r\nvalue\r\n--" + boundary +
        "\r\nContent-Disposition: form-data; name=\"quoted%22%0D%0Aname\"\r\n"
        "Content-Type: application/json\r\n\r\n\r\n--" +
        boundary +
        "\r\nContent-Disposition: form-data; name=\"file\"; filename=\"k\xC3\xB6nig %221%22"
        ".txt\"\r\nContent-Type: text/plain\r\n\r\nfile content\r\n--" +
        boundary + "--\r\n";
    EXPECT_EQ(sent.mid(sent.indexOf("\r\n\r\n") + 4), expected);
    EXPECT_THAT(SentText(), HasSubstr("Content-Length: " + std::to_string(expected.size())));
}

TEST_F(TBody, OneStreamMayStandInSeveralParts) {
    QBuffer stream;
    stream.setData("same");
    stream.open(QIODevice::ReadOnly);
    TZOHttpRequest request = Request("POST", Server.Url("/form"));
    request.Body.Kind = bkMultipart;
    request.Body.Parts = {{"a", {}, &stream, QStringLiteral("a"), {}},
                          {"b", {}, &stream, QStringLiteral("b"), {}}};
    Client.Execute(request);
    EXPECT_EQ(Server.Requests().value(0).count("\r\n\r\nsame\r\n"), 2);
}

TEST_F(TBody, AStreamThatCanBeReadOnceCannotStandInTwoParts) {
    TPipe pipe("once");
    TZOHttpRequest request = Request("POST", Server.Url("/form"));
    request.Body.Kind = bkMultipart;
    request.Body.Parts = {{"a", {}, &pipe, QStringLiteral("a"), {}},
                          {"b", {}, &pipe, QStringLiteral("b"), {}}};
    EXPECT_THAT(FailureOf<EZOUploadError>(request).toStdString(), HasSubstr("only once"));
}

TEST_F(TBody, AStreamThatFailsEndsTheRequestWithItsReason) {
    TBrokenDevice stream;
    EXPECT_EQ(FailureOf<EZOUploadError>(Streaming(stream)),
              QStringLiteral("The content to send could not be read: the disk is gone"));
}

TEST_F(TBody, AClosedFileIsNamed) {
    QFile file(QStringLiteral("/nowhere/picture.png"));
    EXPECT_EQ(FailureOf<EZOUploadError>(Streaming(file)),
              QStringLiteral("\"/nowhere/picture.png\" is not open for reading."));
    EXPECT_EQ(Server.ConnectionCount(), 0);
}

TEST_F(TBody, AFileThatShrinksWhileItIsSentIsAnUploadError) {
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    file.write(QByteArray(8'000'000, 'x'));
    file.flush();
    bool isShort = false;
    TRawServer slow([&](TRawServer::TConnection& AConnection) {
        AConnection.ReadHead();
        isShort = QFile::resize(file.fileName(), 100);
        AConnection.Write("HTTP/1.1 100 Continue\r\n\r\n");
        AConnection.WaitForClose();
    });
    TZOHttpRequest request = Streaming(file);
    request.Url = slow.Url("/");
    EXPECT_THAT(FailureOf<EZOUploadError>(request).toStdString(),
                HasSubstr("ended before all of it was sent"));
    EXPECT_TRUE(isShort);
}

} // namespace
