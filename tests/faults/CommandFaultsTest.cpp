// The command line when one of its calls fails.
#include "tests/faults/FaultRun.h"
#include "tests/servers/RawServer.h"

#include <QFile>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

const QByteArray Document = R"(openapi: 3.0.3
info: {title: Files, version: '1'}
paths:
  /read: {get: {operationId: read, security: [{key: []}], responses: {'200': {description: d, content:
    {application/json: {schema: {$ref: 'types.yaml#/Thing'}}}}}}}
  /make: {post: {operationId: make, requestBody: {content: {application/json: {schema:
    {$ref: 'types.yaml#/Thing'}}}}, responses: {'204': {description: d}}}}
  /get: {get: {operationId: get, responses: {'200': {description: d, content: {image/png: {}}}}}}
  /put: {put: {operationId: put, requestBody: {content: {multipart/form-data: {schema: {type: object,
    properties: {file: {type: string, format: binary}}}}}}, responses: {'204': {description: d}}}}
components: {securitySchemes: {key: {type: apiKey, in: header, name: X-Key}}}
)";
const QByteArray Types = "Thing: {type: object, properties: {name: {type: string}, size: {type: integer}}}\n";
const QByteArray Thing = R"({"name":"it","size":7})";
const QByteArray Old = "what was there before";

QByteArray Picture() { return QByteArray("picture ").repeated(40'000); }

void Write(const QString& AName, const QByteArray& AContent) {
    QFile file(AName);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(AContent), AContent.size());
}

class CommandFaults : public testing::Test {
protected:
    static QByteArray Answer(const QByteArray& ARequest) {
        if (ARequest.startsWith("GET /get"))
            return TRawServer::Answer(Picture(), "image/png");
        if (ARequest.startsWith("GET /read"))
            return TRawServer::Answer(Thing, "application/json");
        return "HTTP/1.1 204 No Content\r\n\r\n";
    }

    static void Prepare(const QString& AFolder) {
        Write(AFolder + QStringLiteral("/api.yaml"), Document);
        Write(AFolder + QStringLiteral("/types.yaml"), Types);
        Write(AFolder + QStringLiteral("/request.json"), "{\"body\":" + Thing + "}");
        Write(AFolder + QStringLiteral("/key"), "secret\n");
        Write(AFolder + QStringLiteral("/picture.png"), Picture());
        Write(AFolder + QStringLiteral("/out"), Old);
    }

    static const QStringList& PreparedFiles() {
        static const QStringList files = {QStringLiteral("api.yaml"),     QStringLiteral("key"),
                                          QStringLiteral("out"),          QStringLiteral("picture.png"),
                                          QStringLiteral("request.json"), QStringLiteral("types.yaml")};
        return files;
    }

    TFaultScript Script(const QStringList& AArguments,
                        const std::function<void(const TFaultOutcome&)>& ACheck) const {
        return {QStringLiteral(ZO_ZOAPI), AArguments, Prepare, [ACheck](const TFaultOutcome& AOutcome) {
                    EXPECT_EQ(AOutcome.Files(), PreparedFiles());
                    ACheck(AOutcome);
                }};
    }

    TFaultScript Call(const QStringList& AArguments,
                      const std::function<void(const TFaultOutcome&)>& ACheck) const {
        return Script(QStringList{QStringLiteral("call"), QStringLiteral("api.yaml")} + AArguments +
                          QStringList{QStringLiteral("--server"), QString::fromLatin1(Server.Url({}))},
                      ACheck);
    }

    /// The name of what a call failed on: the file that it was, else the server; empty for standard output.
    QByteArray NameOf(const QByteArray& AFailed) const {
        const QByteArray name = AFailed.mid(AFailed.lastIndexOf('/') + 1);
        if (AFailed.endsWith(" socket"))
            return "127.0.0.1:" + QByteArray::number(Server.Port());
        if (!AFailed.contains("/run"))
            return {};
        if (name == "run" || name.startsWith("out.") || name.startsWith('#'))
            return "out"; // what is to take its place, and has no name yet
        return name;
    }

    /// One of those that failed is named: the first ones may have done no harm.
    void ExpectNamed(const TFaultOutcome& AOutcome) const {
        const bool isNamed =
            std::any_of(AOutcome.AllFailed.begin(), AOutcome.AllFailed.end(), [&](const QByteArray& AFailed) {
                const QByteArray name = NameOf(AFailed);
                return name.isEmpty() || AOutcome.Errors.contains(name);
            });
        EXPECT_TRUE(isNamed) << AOutcome.AllFailed.join(", ").toStdString();
    }

    void ExpectReplaced(const TFaultOutcome& AOutcome, const QByteArray& AContent) const {
        // Standard output is the last thing that can go wrong.
        const bool isReplaced = AOutcome.IsGood() || AOutcome.Failed.startsWith("fflush");
        EXPECT_TRUE(AOutcome.Content(QStringLiteral("out")) == (isReplaced ? AContent : Old));
        if (!AOutcome.IsGood())
            ExpectNamed(AOutcome);
    }

    /// The body of the last request, once it has come whole.
    QByteArray LastBody() const {
        const QByteArray request = Server.Requests().isEmpty() ? QByteArray() : Server.Requests().last();
        return request.mid(request.indexOf("\r\n\r\n") + 4);
    }

    TRawServer Server{TRawServer::Answering(Answer)};
};

TEST_F(CommandFaults, AnImportTellsAllOrThatItCannot) {
    RunWithEveryFault(
        Script({QStringLiteral("import"), QStringLiteral("api.yaml")},
               [](const TFaultOutcome& AOutcome) {
                   // A file that is referred to and cannot be read is a problem of the document.
                   const bool isWhole = AOutcome.Output == "Files  1  openapi-3.0  4 operations  0 types  0 "
                                                           "problems\n";
                   const bool isTold = AOutcome.Output.contains("types.yaml") ||
                                       AOutcome.Output.contains("api.yaml: The file cannot be");
                   EXPECT_TRUE(AOutcome.IsGood() ? isWhole || isTold : isTold || !AOutcome.Errors.isEmpty());
               }),
        {"open", "read", "write"});
}

TEST_F(CommandFaults, ACallPrintsTheWholeAnswerOrNone) {
    RunWithEveryFault(Call({QStringLiteral("read"), QStringLiteral("--api-key"), QStringLiteral("@key")},
                           [this](const TFaultOutcome& AOutcome) {
                               if (AOutcome.IsGood()) {
                                   EXPECT_EQ(AOutcome.Output, Thing + '\n');
                                   EXPECT_TRUE(Server.Requests().last().contains("X-Key: secret\r\n"));
                               } else {
                                   // What was on its way when it was asked for may come all the same.
                                   EXPECT_TRUE(AOutcome.Output.isEmpty() || AOutcome.Output == Thing + '\n');
                                   ExpectNamed(AOutcome);
                               }
                           }),
                      {"open", "read", "write", "connect", "send", "recv"});
}

TEST_F(CommandFaults, ARequestFromAFileIsSentWholeOrNotAtAll) {
    RunWithEveryFault(
        Call({QStringLiteral("make"), QStringLiteral("--request"), QStringLiteral("request.json")},
             [this](const TFaultOutcome& AOutcome) {
                 if (AOutcome.IsGood())
                     EXPECT_EQ(LastBody(), Thing);
                 else
                     ExpectNamed(AOutcome);
             }),
        {"open", "read", "connect", "send", "recv"});
}

TEST_F(CommandFaults, ADownloadReplacesAFileWholeOrLeavesIt) {
    RunWithEveryFault(Call({QStringLiteral("get"), QStringLiteral("--output"), QStringLiteral("out")},
                           [this](const TFaultOutcome& AOutcome) { ExpectReplaced(AOutcome, Picture()); }),
                      {"open", "read", "write", "fsync", "rename", "connect", "send", "recv"}, true);
}

TEST_F(CommandFaults, AnAnswerReplacesAFileWholeOrLeavesIt) {
    RunWithEveryFault(Call({QStringLiteral("read"), QStringLiteral("--api-key"), QStringLiteral("k"),
                            QStringLiteral("--output"), QStringLiteral("out")},
                           [this](const TFaultOutcome& AOutcome) { ExpectReplaced(AOutcome, Thing + '\n'); }),
                      {"open", "write", "fsync", "rename", "recv"});
}

TEST_F(CommandFaults, AnUploadArrivesWholeOrFails) {
    RunWithEveryFault(
        Call({QStringLiteral("put"), QStringLiteral("--upload"), QStringLiteral("file=picture.png")},
             [this](const TFaultOutcome& AOutcome) {
                 if (AOutcome.IsGood())
                     EXPECT_TRUE(LastBody().contains("\r\n\r\n" + Picture() + "\r\n--"));
                 else
                     ExpectNamed(AOutcome);
             }),
        {"open", "read", "connect", "send", "recv"});
}

} // namespace
