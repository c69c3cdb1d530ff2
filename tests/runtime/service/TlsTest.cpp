#include "tests/runtime/service/ServiceFixture.h"
#include "tests/servers/TlsServer.h"

#include "runtime/http/HttpClient.h"

namespace {

using namespace ServiceCalls;

class TTlsTest : public testing::Test {
protected:
    static std::unique_ptr<TZORestServiceClass> ClassAt(const TTlsServer& AServer) {
        TZOServiceBuilder builder("TTestService", {}, AServer.Url());
        builder.Operation("Read", {}, "GET", "/answer", {}, TZOTypeLibrary::Scalar(vkString));
        return ClassOf(builder);
    }

    const QByteArray Answer =
        TRawServer::Answer("\"kept between us\"", "application/json", "200 OK", "Connection: close\r\n");
};

TEST_F(TTlsTest, ACertificateThatNobodySignedIsRefused) {
    const TTlsServer server(Answer, "IP:127.0.0.1");
    const auto serviceClass = ClassAt(server);
    const auto service = serviceClass->Create();
    const QString message = FailureOf<EZOCertificateError>([&] { Exec(*service, "Read"); });
    EXPECT_EQ(message, QStringLiteral("The certificate of %1 is not to be trusted: self-signed certificate.")
                           .arg(server.Url().mid(QString("https://").size())));
}

TEST_F(TTlsTest, ACertificateThatIsNamedAsTrustedIsAccepted) {
    const TTlsServer server(Answer, "IP:127.0.0.1");
    const auto serviceClass = ClassAt(server);
    const auto service = serviceClass->Create();
    service->HttpClient().SetCaFile(server.CertificateFile());
    EXPECT_EQ(Exec(*service, "Read"), "\"kept between us\"");
}

TEST_F(TTlsTest, ATrustedCertificateOfAnotherServerIsRefused) {
    const TTlsServer server(Answer, "DNS:elsewhere.test");
    const auto serviceClass = ClassAt(server);
    const auto service = serviceClass->Create();
    service->HttpClient().SetCaFile(server.CertificateFile());
    const QString message = FailureOf<EZOCertificateError>([&] { Exec(*service, "Read"); });
    EXPECT_THAT(message.toStdString(), testing::HasSubstr("it is made out to another name"));
}

TEST_F(TTlsTest, ACertificateFileThatIsNotThereIsNamed) {
    const TTlsServer server(Answer, "IP:127.0.0.1");
    const auto serviceClass = ClassAt(server);
    const auto service = serviceClass->Create();
    service->HttpClient().SetCaFile("/nowhere/ca.pem");
    EXPECT_EQ(FailureOf<EZOCertificateError>([&] { Exec(*service, "Read"); }),
              "The certificates to trust could not be read from \"/nowhere/ca.pem\".");
}

} // namespace
