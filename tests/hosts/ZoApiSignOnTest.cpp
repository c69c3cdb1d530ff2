// zoapi gets its token by itself.
#include "tests/servers/OAuthServer.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class ZoApiSignOn : public testing::Test {
protected:
    static void SetUpTestSuite() { Server = std::make_unique<TOAuthServer>(okOidc); }
    static void TearDownTestSuite() { Server.reset(); }

    ZoApiSignOn() {
        Server->Switch();
        QFile file(Folder.filePath("api.yaml"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(R"(openapi: 3.0.3
info: {title: Who, version: '1'}
servers: [{url: ')" +
                   Server->Url().toUtf8() +
                   R"('}]
paths:
  /api:
    get:
      operationId: whoAmI
      responses: {'200': {description: d, content: {application/json: {schema: {type: object, properties: {
        client: {type: string}, scope: {type: string}}}}}}}
components:
  securitySchemes:
    login:
      type: oauth2
      flows:
        authorizationCode: {authorizationUrl: /auth, tokenUrl: /token, scopes: {read: r, write: w}}
        clientCredentials: {tokenUrl: /token, scopes: {read: r}}
security: [{login: [read]}]
)");
    }

    /// The secret, where its argument finds it.
    void WriteSecret() const {
        QFile file(Folder.filePath("secret"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(TOAuthServer::Secret().toUtf8());
    }
    void Start(const QStringList& AArguments) {
        Process.setWorkingDirectory(Folder.path());
        Process.setReadChannel(QProcess::StandardError); // what is waited for
        Process.start(ZO_ZOAPI, QStringList{"call", "api.yaml", "whoAmI"} + AArguments);
    }
    int Run(const QStringList& AArguments) {
        Start(AArguments);
        return Finish();
    }
    int Finish() {
        EXPECT_TRUE(Process.waitForFinished()) << Process.errorString().toStdString();
        Output = Process.readAllStandardOutput();
        Errors += Process.readAllStandardError();
        return Process.exitCode();
    }

    inline static std::unique_ptr<TOAuthServer> Server;
    QTemporaryDir Folder;
    QProcess Process;
    QByteArray Output, Errors;
};

} // namespace

TEST_F(ZoApiSignOn, AsksInItsOwnName) {
    WriteSecret();
    EXPECT_EQ(
        Run({"--oauth", "client-credentials", "--client-id", "basic", "--secret", "@secret", "--verbose"}), 0)
        << Errors.toStdString();
    EXPECT_EQ(Output, "{\"client\":\"basic\",\"scope\":\"read\"}\n");
    EXPECT_EQ(Server->Switch(), (QStringList{"token client_credentials", "api 200"}));
    EXPECT_FALSE(Errors.contains(TOAuthServer::Secret().toUtf8()));
}

TEST_F(ZoApiSignOn, PrintsTheAddressAndWaitsForTheBrowser) {
    Start({"--oauth=authorization-code", "--client-id=native", "--scope=read", "--scope=write"});
    while (Errors.count('\n') < 2 && Process.waitForReadyRead())
        Errors += Process.readAllStandardError();
    const QList<QByteArray> lines = Errors.split('\n');
    ASSERT_GE(lines.size(), 2) << Errors.toStdString();
    EXPECT_EQ(lines[0], "Open this address in a browser on this machine to sign on:");
    TTestPerson person;
    person.Begin({}, lines[1]);
    EXPECT_EQ(Finish(), 0) << Errors.toStdString();
    person.End();
    EXPECT_EQ(Output, "{\"client\":\"native\",\"scope\":\"read write\"}\n");
    EXPECT_TRUE(person.Output.contains("Signed on"));
}

TEST_F(ZoApiSignOn, FailsWithOneWhenTheUserDenies) {
    Start({"--oauth", "authorization-code", "--client-id", "native"});
    while (Errors.count('\n') < 2 && Process.waitForReadyRead())
        Errors += Process.readAllStandardError();
    TTestPerson person("deny");
    person.Begin({}, Errors.split('\n').value(1));
    EXPECT_EQ(Finish(), 1);
    person.End();
    EXPECT_TRUE(Errors.contains("\nEZOSignOnRefusedError\nThe sign-on at ")) << Errors.toStdString();
    EXPECT_EQ(Output, "");
}

TEST_F(ZoApiSignOn, WipesALiteralSecretFromItsArguments) {
    Start({"--oauth", "authorization-code", "--client-id", "basic", "--secret", TOAuthServer::Secret()});
    EXPECT_TRUE(Process.waitForReadyRead());
    QFile commandLine(QStringLiteral("/proc/%1/cmdline").arg(Process.processId()));
    ASSERT_TRUE(commandLine.open(QIODevice::ReadOnly));
    const QByteArray shown = commandLine.readAll();
    EXPECT_TRUE(shown.contains("--secret"));
    EXPECT_FALSE(shown.contains(TOAuthServer::Secret().toUtf8()));
    Process.kill();
    Process.waitForFinished();
}

TEST_F(ZoApiSignOn, RefusesWhatCannotBeMeantWithTwo) {
    const std::pair<QStringList, QByteArray> cases[] = {
        {{"--client-id", "x"}, "--client-id goes with --oauth."},
        {{"--secret", "x"}, "--secret goes with --oauth."},
        {{"--scope", "x"}, "--scope goes with --oauth."},
        {{"--oauth", "implicit", "--client-id", "x"},
         "--oauth wants client-credentials or authorization-code, not \"implicit\"."},
        {{"--oauth", "client-credentials"}, "--oauth wants --client-id, too."},
    };
    for (const auto& [arguments, message] : cases) {
        Errors.clear();
        EXPECT_EQ(Run(arguments), 2);
        EXPECT_EQ(Errors.split('\n').value(0), message);
    }
}
