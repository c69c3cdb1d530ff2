#include "tests/servers/PrivateCa.h"

#include <QFile>
#include <QProcess>

#include <stdexcept>

namespace {

void RunOpenSsl(const QString& AFolder, const QString& AArguments) {
    QProcess openssl;
    openssl.setWorkingDirectory(AFolder);
    openssl.start(QStringLiteral("openssl"), AArguments.split(QLatin1Char(' ')));
    if (!openssl.waitForFinished() || openssl.exitCode() != 0)
        throw std::runtime_error(openssl.readAllStandardError().toStdString());
}

constexpr const char* Configuration = R"([ca]
default_ca = private
[private]
new_certs_dir = .
database = index
serial = serial
certificate = ca.pem
private_key = ca.key
default_md = sha256
policy = any
[any]
commonName = supplied
[req]
distinguished_name = any_name
[any_name]
)";

} // namespace

TPrivateCa::TPrivateCa() {
    Write(QStringLiteral("openssl.cnf"), Configuration);
    Write(QStringLiteral("index"), {});
    Write(QStringLiteral("serial"), "01\n");
    RunOpenSsl(
        FFolder.path(),
        QStringLiteral("req -config openssl.cnf -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 "
                       "-nodes -days 2 -subj /CN=Private-CA -addext basicConstraints=critical,CA:TRUE "
                       "-keyout ca.key -out ca.pem"));
}

void TPrivateCa::Issue(const QString& AName, const QString& ASubject, bool AIsExpired) const {
    Write(AName + QStringLiteral(".ext"), "subjectAltName=" + ASubject.toUtf8() + "\n");
    RunOpenSsl(FFolder.path(),
               QStringLiteral("req -config openssl.cnf -new -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 "
                              "-nodes -subj /CN=%1 -keyout %1.key -out %1.csr")
                   .arg(AName));
    const QString time = AIsExpired ? QStringLiteral("-startdate 20200101000000Z -enddate 20200102000000Z")
                                    : QStringLiteral("-days 2");
    RunOpenSsl(
        FFolder.path(),
        QStringLiteral("ca -config openssl.cnf -batch -notext -in %1.csr -out %1.pem -extfile %1.ext %2")
            .arg(AName, time));
}

void TPrivateCa::Write(const QString& AName, const QByteArray& AText) const {
    QFile file(FilePath(AName));
    if (!file.open(QIODevice::WriteOnly) || file.write(AText) != AText.size())
        throw std::runtime_error("the files of the authority cannot be written");
}
