// The explorer's window and pages when one of their calls fails.
#include "tests/faults/FaultRun.h"
#include "tests/servers/RawServer.h"

#include "hosts/standalone/HostSettings.h"

#include <QFile>

#include <gtest/gtest.h>

namespace {

const QByteArray Document = R"({"openapi": "3.0.3", "info": {"title": "Files", "version": "1"}, "paths":
    {"/read": {"get": {"responses": {"200": {"description": "d"}}}}}})";
const QByteArray Json = R"({"name":"it","size":7})";
const QByteArray Old = "what was there before";
const QByteArray Content = QByteArray("content ").repeated(40'000);

void Write(const QString& AName, const QByteArray& AContent) {
    QFile file(AName);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(AContent), AContent.size());
}

class ExplorerFaults : public testing::Test {
protected:
    ~ExplorerFaults() override {
        for (const char* name : {"ZO_SETTINGS_FILE", "QT_QPA_GENERIC_PLUGINS", "QT_PLUGIN_PATH"})
            qunsetenv(name);
    }

    static QByteArray Answer(const QByteArray& ARequest) {
        if (ARequest.startsWith("GET /get"))
            return TRawServer::Answer(Content, "application/octet-stream");
        if (ARequest.startsWith("GET /read"))
            return TRawServer::Answer(Json, "application/json");
        return "HTTP/1.1 204 No Content\r\n\r\n";
    }

    static void UseFolder(const QString& AFolder) {
        qputenv("ZO_SETTINGS_FILE", QFile::encodeName(AFolder + QStringLiteral("/settings.db")));
    }

    static void Prepare(const QString& AFolder) {
        Write(AFolder + QStringLiteral("/api.json"), Document);
        Write(AFolder + QStringLiteral("/in"), Content);
        Write(AFolder + QStringLiteral("/out"), Old);
        UseFolder(AFolder);
        HostSettings::RememberDocument(QStringLiteral("/older.json"));
    }

    TFaultScript Step(const QString& AStep, const std::function<void(const TFaultOutcome&)>& ACheck) const {
        return {QStringLiteral(ZO_FAULT_STEPS),
                {AStep, QString::fromLatin1(Server.Url({}))},
                Prepare,
                [ACheck](const TFaultOutcome& AOutcome) {
                    const QStringList files = {QStringLiteral("api.json"), QStringLiteral("in"),
                                               QStringLiteral("out"), QStringLiteral("settings.db")};
                    EXPECT_EQ(AOutcome.Files(), files);
                    ACheck(AOutcome);
                }};
    }

    void ExpectNamed(const TFaultOutcome& AOutcome, const QByteArray& AFile) const {
        const QByteArray server = "127.0.0.1:" + QByteArray::number(Server.Port());
        EXPECT_TRUE(AOutcome.IsGood() || AOutcome.Errors.contains('"' + AFile + '"') ||
                    AOutcome.Errors.contains(" to " + AFile) || AOutcome.Errors.contains(server) ||
                    AOutcome.Errors.contains("settings.db"));
    }

    TRawServer Server{TRawServer::Answering(Answer)};
};

TEST_F(ExplorerFaults, AResponseIsSavedWholeOrTheOldFileStays) {
    RunWithEveryFault(Step(QStringLiteral("save-response"),
                           [this](const TFaultOutcome& AOutcome) {
                               const QByteArray out = AOutcome.Content(QStringLiteral("out"));
                               EXPECT_TRUE(out == Json || (!AOutcome.IsGood() && out == Old));
                               ExpectNamed(AOutcome, "out");
                           }),
                      {"open", "write", "fsync", "rename", "connect", "send", "recv"});
}

TEST_F(ExplorerFaults, ADownloadIsWholeOrSaysHowMuchOfItCame) {
    RunWithEveryFault(Step(QStringLiteral("download"),
                           [this](const TFaultOutcome& AOutcome) {
                               const QByteArray out = AOutcome.Content(QStringLiteral("out"));
                               ExpectNamed(AOutcome, "out");
                               if (out != Content && out != Old) {
                                   EXPECT_TRUE(Content.startsWith(out));
                                   EXPECT_TRUE(out.isEmpty() ||
                                               AOutcome.Errors.contains(QByteArray::number(out.size())));
                               }
                               EXPECT_TRUE(!AOutcome.IsGood() || out == Content);
                           }),
                      {"open", "write", "connect", "send", "recv"});
}

TEST_F(ExplorerFaults, AnUploadArrivesWholeOrIsAFailure) {
    RunWithEveryFault(Step(QStringLiteral("upload"),
                           [this](const TFaultOutcome& AOutcome) {
                               ExpectNamed(AOutcome, "in");
                               EXPECT_TRUE(!AOutcome.IsGood() ||
                                           Server.Requests().last().contains("\r\n\r\n" + Content + "\r\n"));
                           }),
                      {"open", "read", "connect", "send", "recv"});
}

TEST_F(ExplorerFaults, TheWindowOpensADocumentOrSaysWhyNot) {
    qputenv("QT_QPA_GENERIC_PLUGINS", "zoclosing");
    qputenv("QT_PLUGIN_PATH", ZO_CLOSING_PLUGIN_PATH);
    const TFaultScript script = {
        QStringLiteral(ZO_EXPLORER),
        {QStringLiteral("%1/api.json")},
        Prepare,
        [](const TFaultOutcome& AOutcome) {
            UseFolder(AOutcome.Folder);
            const QStringList recent = HostSettings::RecentDocuments();
            const QString older = QStringLiteral("/older.json");
            const QByteArray said = AOutcome.Output + AOutcome.Errors;
            const bool isSaid = said.contains("settings.db") || said.contains("api.json");
            EXPECT_TRUE(AOutcome.IsGood());
            EXPECT_TRUE((recent.size() == 2 && recent[0].endsWith(QStringLiteral("/run/api.json")) &&
                         recent[1] == older) ||
                        (isSaid && recent == QStringList{older}))
                << recent.join(u' ').toStdString();
            EXPECT_EQ(AOutcome.Files().size(), 4);
        }};
    RunWithEveryFault(script, {"open", "read", "write"});
}

} // namespace
