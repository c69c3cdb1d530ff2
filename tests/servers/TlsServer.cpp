#include "tests/servers/TlsServer.h"

#include <QFile>

#include <stdexcept>

TTlsServer::TTlsServer(const QByteArray& AAnswer, const QString& ASubject) {
    MakeCertificate(ASubject);
    QFile answer(FFolder.filePath(QStringLiteral("answer")));
    if (!answer.open(QIODevice::WriteOnly) || answer.write(AAnswer) != AAnswer.size())
        throw std::runtime_error("the answer cannot be written");
    answer.close();
    FProcess.emplace(QStringLiteral("env"),
                     QStringList{QStringLiteral("--chdir=") + FFolder.path(), QStringLiteral("openssl"),
                                 QStringLiteral("s_server"), QStringLiteral("-accept"),
                                 QStringLiteral("127.0.0.1:0"), QStringLiteral("-cert"), CertificateFile(),
                                 QStringLiteral("-key"), FFolder.filePath(QStringLiteral("key.pem")),
                                 QStringLiteral("-HTTP")});
    FPort = FProcess->WaitFor(QRegularExpression(QStringLiteral("ACCEPT 127\\.0\\.0\\.1:(\\d+)")));
}

QString TTlsServer::Url() const { return QStringLiteral("https://127.0.0.1:") + FPort; }

void TTlsServer::MakeCertificate(const QString& ASubject) const {
    const QStringList arguments =
        QStringLiteral(
            "req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2 -subj /CN=test")
            .split(QLatin1Char(' ')) +
        QStringList{QStringLiteral("-addext"), QStringLiteral("subjectAltName=") + ASubject,
                    QStringLiteral("-keyout"), FFolder.filePath(QStringLiteral("key.pem")),
                    QStringLiteral("-out"),    CertificateFile()};
    QProcess openssl;
    openssl.start(QStringLiteral("openssl"), arguments);
    if (!openssl.waitForFinished() || openssl.exitCode() != 0)
        throw std::runtime_error(openssl.readAllStandardError().toStdString());
}
