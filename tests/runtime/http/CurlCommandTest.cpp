// Commands are given to a shell; what arrives at the server is compared with what the client sends.
#include "tests/runtime/http/HttpFixture.h"

#include "runtime/http/CurlCommand.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <set>

namespace {

using testing::HasSubstr;
using testing::Not;

/// A request with the lines of its head in an order of their own, and its boundary, where there is one,
/// replaced.
QByteArray Comparable(QByteArray ARequest) {
    const qsizetype mark = ARequest.indexOf("boundary=");
    if (mark >= 0) {
        const qsizetype start = mark + 9;
        const QByteArray boundary = ARequest.mid(start, ARequest.indexOf('\r', start) - start);
        ARequest.replace(boundary, "BOUNDARY");
    }
    const qsizetype end = ARequest.indexOf("\r\n\r\n");
    QList<QByteArray> lines = ARequest.left(end).split('\n');
    std::sort(lines.begin() + 1, lines.end(),
              [](const QByteArray& A, const QByteArray& B) { return A.trimmed() < B.trimmed(); });
    QByteArray text;
    for (const QByteArray& line : lines) {
        // The boundaries of the two are of different length, so the lengths differ as well.
        // Whether the server is asked before a body is sent is up to the transport.
        if ((mark < 0 || !line.startsWith("Content-Length")) && !line.startsWith("Expect:"))
            text += line.trimmed() + '\n';
    }
    return text + ARequest.mid(end);
}

class CurlCommand : public THttpTest {
protected:
    CurlCommand()
        : Server(TRawServer::Answering([](const QByteArray&) { return TRawServer::Answer("fine"); })) {}

    void ExpectSame(const TZOHttpRequest& ARequest) {
        const qsizetype count = Server.Requests().size();
        const QString command = TZOCurlCommand::Of(ARequest, {.WithCredentials = true, .OutputFile = {}});
        Client.Execute(ARequest);
        QProcess shell;
        shell.start(QStringLiteral("/bin/sh"), {});
        ASSERT_TRUE(shell.waitForStarted());
        shell.write(command.toUtf8() + '\n');
        shell.closeWriteChannel();
        ASSERT_TRUE(shell.waitForFinished());
        ASSERT_EQ(shell.exitCode(), 0) << shell.readAllStandardError().toStdString() << command.toStdString();
        const QList<QByteArray> requests = Server.Requests();
        ASSERT_EQ(requests.size(), count + 2) << command.toStdString();
        EXPECT_EQ(Comparable(requests[count]).toStdString(), Comparable(requests[count + 1]).toStdString())
            << command.toStdString();
    }

    QString WriteFile(const QString& AName, const QByteArray& AContent) const {
        QFile file(Folder.filePath(AName));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(AContent);
        return file.fileName();
    }

    TRawServer Server;
    QTemporaryDir Folder;
};

TEST_F(CurlCommand, SendsTheSameWithoutABody) {
    for (const char* method : {"GET", "DELETE", "POST", "PUT", "PATCH", "OPTIONS"}) {
        TZOHttpRequest request = Request(method, Server.Url("/a%20b/../c?q=[1]&r={x}&s=it's%22"));
        request.Headers = {
            {"Accept", "application/json"}, {"X-Empty", ""}, {"X-Text", "it's \"$HOME\" `id` \\"}};
        ExpectSame(request);
    }
}

TEST_F(CurlCommand, AHeadRequestEndsWithItsHead) {
    TZOHttpRequest request = Request("HEAD", Server.Url("/"));
    request.Headers = {{"Accept", "*/*"}};
    ExpectSame(request);
}

TEST_F(CurlCommand, SendsTheSameBytes) {
    const QByteArray bodies[] = {R"({"text": "it's $HOME \\ \"x\" !! `id`", "n": [1, 2]})",
                                 "",
                                 "@not-a-file",
                                 "two\nlines\r\n\ttabbed\n",
                                 QByteArray("nul\0 100% \\n end", 16),
                                 QByteArray("\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"),
                                 QByteArray("\xEF\xBB\xBFwith a byte order mark"),
                                 '[' + QByteArray(200'000, '1') + ']'};
    for (const QByteArray& body : bodies) {
        TZOHttpRequest request = WithBody("POST", Server.Url("/"), body, "application/json");
        request.Headers = {{"Accept", "*/*"}};
        ExpectSame(request);
    }
    TZOHttpRequest untyped = WithBody("DELETE", Server.Url("/"), "x", {});
    untyped.Headers = {{"Accept", "*/*"}};
    ExpectSame(untyped);
}

TEST_F(CurlCommand, SendsTheSameFile) {
    QFile file(WriteFile(QStringLiteral("it's [a] {file}, \"quoted\".bin"), QByteArray("a\0b\r\n", 5)));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    for (const char* method : {"PUT", "POST"}) {
        TZOHttpRequest request = Request(method, Server.Url("/up"));
        request.Headers = {{"Accept", "*/*"}};
        request.Body.Kind = bkStream;
        request.Body.Stream = &file;
        request.Body.ContentType = "application/octet-stream";
        ExpectSame(request);
    }
}

TEST_F(CurlCommand, SendsTheSameForm) {
    QFile file(WriteFile(QStringLiteral("a;b,\"c\".txt"), "content"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    TZOHttpRequest request = Request("POST", Server.Url("/form"));
    request.Headers = {{"Accept", "*/*"}};
    request.Body.Kind = bkMultipart;
    request.Body.Parts = {{"plain", "@x; type=y, \"z\" \\ it's", nullptr, {}, {}},
                          {"json", R"({"a": [1]})", nullptr, {}, "application/json"},
                          {"two words", " \n ", nullptr, {}, {}},
                          {"file", {}, &file, QStringLiteral("na;me \"q\".txt"), "text/plain"}};
    ExpectSame(request);
}

TEST_F(CurlCommand, CredentialsAreInItOnRequestOnly) {
    TZOHttpRequest request = Request("GET", Server.Url("/p?a=1"));
    request.Headers = {{"Accept", "*/*"}, {"X-Key", "s3cret", true}, {"X-Plain", "shown"}};
    request.CredentialQuery = "key=s3cret&second=s3cret";
    const std::string shown = TZOCurlCommand::Of(request, {}).toStdString();
    EXPECT_THAT(shown, Not(HasSubstr("s3cret")));
    EXPECT_THAT(shown, HasSubstr("'X-Key: YOUR-CREDENTIAL'"));
    EXPECT_THAT(shown, HasSubstr("/p?a=1&key=YOUR-CREDENTIAL&second=YOUR-CREDENTIAL'"));
    EXPECT_THAT(shown, HasSubstr("'X-Plain: shown'"));
    EXPECT_TRUE(TZOCurlCommand::HasCredentials(request));
    ExpectSame(request);
}

TEST_F(CurlCommand, CredentialsFollowAnyQueryOfTheAddress) {
    for (const char* address : {"/p", "/p?", "/p?a", "/p?a=1", "/p#x", "/p?#x", "/p?a=1#x?y"}) {
        TZOHttpRequest request = Request("GET", Server.Url(address));
        request.Headers = {{"Accept", "*/*"}};
        request.CredentialQuery = "key=s3cret";
        ExpectSame(request);
    }
}

TEST_F(CurlCommand, WritesTheAnswerToAFileWhereOneIsNamed) {
    const QString name = Folder.filePath(QStringLiteral("it's out"));
    QProcess shell;
    shell.start(QStringLiteral("/bin/sh"),
                {QStringLiteral("-c"), TZOCurlCommand::Of(Request("GET", Server.Url("/")),
                                                          {.WithCredentials = false, .OutputFile = name})});
    ASSERT_TRUE(shell.waitForFinished());
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "fine");
}

TEST_F(CurlCommand, RefusesWhatNoCommandCanHold) {
    TZOHttpRequest request = Request("POST", Server.Url("/form"));
    request.Body.Kind = bkMultipart;
    request.Body.Parts = {{"a=b", "x", nullptr, {}, {}}};
    EXPECT_THROW(TZOCurlCommand::Of(request, {}), EZORequestValueError);
    TPipe pipe("content");
    request.Body.Kind = bkStream;
    request.Body.Stream = &pipe;
    EXPECT_THROW(TZOCurlCommand::Of(request, {}), EZORequestValueError);
}

} // namespace
