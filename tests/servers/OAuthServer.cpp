#include "tests/servers/OAuthServer.h"

#include "runtime/http/HttpClient.h"

namespace {

QString Script(const char* AName) { return QStringLiteral(ZO_OAUTH_SCRIPTS "/") + QLatin1String(AName); }

} // namespace

TOAuthServer::TOAuthServer(TOAuthServerKind AKind)
    : FProcess(QStringLiteral("node"), {Script(AKind == okOidc ? "oidc-server.mjs" : "mock-server.mjs"),
                                        QStringLiteral(ZO_NPM_FOLDER)}),
      FUrl(FProcess.WaitFor(
          QRegularExpression(QStringLiteral("Listening at: (http://127\\.0\\.0\\.1:\\d+)")))) {}

QString TOAuthServer::Secret() { return QStringLiteral("the-s3cret-of-a-test+/="); }

QStringList TOAuthServer::Switch(const QString& ASwitches) const {
    TZOHttpClient client;
    TZOHttpRequest request;
    request.Url = (FUrl + QStringLiteral("/switch?") + ASwitches).toUtf8();
    const QString log = QString::fromUtf8(client.Execute(request).Body);
    return log.isEmpty() ? QStringList() : log.split(u'\n');
}

void TTestPerson::Begin(const QString&, const QByteArray& AUrl) {
    ++Count;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ZO_TEST_PERSON"), FMode.isEmpty() ? QStringLiteral("consent") : FMode);
    FProcess.setProcessEnvironment(environment);
    FProcess.start(QStringLiteral("node"), {Script("person.mjs"), QString::fromUtf8(AUrl)});
}

void TTestPerson::End() {
    FProcess.waitForFinished();
    Output = FProcess.readAllStandardOutput() + FProcess.readAllStandardError();
}

void TTestPerson::Install(const QString& AMode) {
    const QByteArray folder = Script("browser").toUtf8();
    const QByteArray path = qgetenv("PATH");
    if (!path.startsWith(folder + ':'))
        qputenv("PATH", folder + ':' + path);
    qputenv("ZO_TEST_PERSON", AMode.toUtf8());
}
