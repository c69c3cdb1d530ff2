// Secure connections to nginx: which certificates and versions are accepted, and which are not.
#include "tests/runtime/service/ServiceFixture.h"
#include "tests/servers/NginxTlsServer.h"
#include "tests/servers/WeakOpenSsl.h"

#include "runtime/http/HttpClient.h"

namespace {

using namespace ServiceCalls;

// Else the system's library would refuse old versions before we can.
const TWeakOpenSsl Weak;

class TNginxTlsTest : public testing::Test {
protected:
    static void SetUpTestSuite() { Server = new TNginxTlsServer; }
    static void TearDownTestSuite() {
        delete Server;
        Server = nullptr;
    }
    void SetUp() override { ForgetEnvironment(); }
    void TearDown() override { ForgetEnvironment(); }

    static void ForgetEnvironment() {
        qunsetenv("SSL_CERT_FILE");
        qunsetenv("CURL_CA_BUNDLE");
    }

    std::unique_ptr<TZORestService> ServiceAt(const QString& AUrl) {
        TZOServiceBuilder builder("TTestService", {}, AUrl);
        builder.Operation("Read", {}, "GET", "/x", {}, TZOTypeLibrary::Scalar(vkAny));
        Class = ClassOf(builder);
        return Class->Create();
    }
    /// Of ASite, trusting the private authority.
    QByteArray Read(const QString& ASite) {
        const auto service = ServiceAt(QStringLiteral("https://") + Server->Place(ASite));
        service->HttpClient().SetCaFile(Server->CaFile());
        return Exec(*service, "Read");
    }
    /// What the certificate of ASite is refused with, with a service that trusts the private authority.
    QString Refusal(const QString& ASite) {
        return FailureOf<EZOCertificateError>([&] { Read(ASite); });
    }
    static QString Untrusted(const QString& ASite, const QString& AReason) {
        return QStringLiteral("The certificate of %1 is not to be trusted: %2.")
            .arg(Server->Place(ASite), AReason);
    }

    static TNginxTlsServer* Server;
    std::unique_ptr<TZORestServiceClass> Class;
    const QByteArray Fine = R"({"text":"fine"})";
};

TNginxTlsServer* TNginxTlsTest::Server = nullptr;

TEST_F(TNginxTlsTest, ACertificateOfAPrivateAuthorityIsAcceptedWithItAndRefusedWithout) {
    EXPECT_EQ(Read("good"), Fine);
    const auto service = ServiceAt(QStringLiteral("https://") + Server->Place("good"));
    EXPECT_EQ(FailureOf<EZOCertificateError>([&] { Exec(*service, "Read"); }),
              Untrusted("good", "unable to get local issuer certificate"));
    // The refusal leaves nothing behind.
    service->HttpClient().SetCaFile(Server->CaFile());
    EXPECT_EQ(Exec(*service, "Read"), Fine);
    service->HttpClient().SetCaFile({});
    FailureOf<EZOCertificateError>([&] { Exec(*service, "Read"); });
}

TEST_F(TNginxTlsTest, TheEnvironmentNamesAnotherAuthorityToTrust) {
    const QString url = QStringLiteral("https://") + Server->Place("good");
    for (const char* name : {"SSL_CERT_FILE", "CURL_CA_BUNDLE"}) {
        ForgetEnvironment();
        qputenv(name, Server->CaFile().toUtf8());
        EXPECT_EQ(Exec(*ServiceAt(url), "Read"), Fine) << name;
    }
    qputenv("SSL_CERT_FILE", "/nowhere/ca.pem");
    EXPECT_EQ(FailureOf<EZOCertificateError>([&] { Exec(*ServiceAt(url), "Read"); }),
              "The certificates to trust could not be read from \"/nowhere/ca.pem\".");
}

TEST_F(TNginxTlsTest, AnExpiredCertificateIsRefused) {
    EXPECT_EQ(Refusal("expired"), Untrusted("expired", "certificate has expired"));
}

TEST_F(TNginxTlsTest, TheCertificateOfAnotherServerIsRefused) {
    EXPECT_EQ(Refusal("other-name"), Untrusted("other-name", "it is made out to another name"));
    // By its name, too, and not only by its address.
    const auto service = ServiceAt(QStringLiteral("https://localhost:%1").arg(Server->Port("other-name")));
    service->HttpClient().SetCaFile(Server->CaFile());
    EXPECT_THAT(FailureOf<EZOCertificateError>([&] { Exec(*service, "Read"); }).toStdString(),
                testing::HasSubstr("it is made out to another name"));
}

TEST_F(TNginxTlsTest, AServerThatSpeaksOnlyAnOldVersionIsRefused) {
    EXPECT_EQ(FailureOf<EZOSecureConnectionError>([&] { Read("tls-1.1"); }),
              Server->Place("tls-1.1") + QStringLiteral(" did not agree on a secure connection."));
    EXPECT_EQ(Read("tls-1.2"), Fine);
    EXPECT_EQ(Read("tls-1.3"), Fine);
}

TEST_F(TNginxTlsTest, AServerOfTheSecondVersionOfHttpIsUnderstood) { EXPECT_EQ(Read("http-2"), Fine); }

} // namespace
