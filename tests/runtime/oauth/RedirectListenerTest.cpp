#include "tests/runtime/oauth/OAuthFixture.h"

#include "runtime/oauth/RedirectListener.h"

#include <QElapsedTimer>
#include <QTcpServer>
#include <QTcpSocket>

#include <future>

namespace {

constexpr int LongMs = 20'000;

class RedirectListener : public TOAuthTest {
protected:
    static std::future<TZOHttpResponse> Visit(const QString& AUrl) {
        return std::async(std::launch::async, [AUrl] { return TTestBrowser::Get(AUrl.toUtf8()); });
    }
    static quint16 PortOf(const TZORedirectListener& AListener) {
        return static_cast<quint16>(QUrl(AListener.RedirectUri()).port());
    }
};

} // namespace

TEST_F(RedirectListener, TakesAFreePortWhereNoneIsGiven) {
    const std::pair<const char*, const char*> cases[] = {
        {"http://127.0.0.1/callback", "http://127.0.0.1:%1/callback"},
        {"http://127.0.0.1:0/a%20b", "http://127.0.0.1:%1/a%20b"},
        {"http://localhost/", "http://localhost:%1/"},
        {"http://[::1]/callback?x=1", "http://[::1]:%1/callback?x=1"},
        {"http://127.0.0.1", "http://127.0.0.1:%1"},
    };
    for (const auto& [given, expected] : cases) {
        const TZORedirectListener listener{QLatin1String(given)};
        EXPECT_GT(PortOf(listener), 0);
        EXPECT_EQ(listener.RedirectUri(), QString::fromLatin1(expected).arg(PortOf(listener)));
    }
}

TEST_F(RedirectListener, ListensOnTheGivenPortAndHostOnly) {
    const int port = ClosedPort();
    const QString url = QStringLiteral("http://127.0.0.1:%1/callback").arg(port);
    TZORedirectListener listener(url);
    EXPECT_EQ(listener.RedirectUri(), url);
    QTcpSocket other;
    other.connectToHost(QHostAddress("127.0.0.2"), static_cast<quint16>(port));
    EXPECT_FALSE(other.waitForConnected(LongMs));
}

TEST_F(RedirectListener, RefusesAddressesThatAreNotThisMachines) {
    for (const char* url :
         {"", "callback", "https://127.0.0.1/callback", "http://192.168.0.1/callback", "http://example.com/",
          "http://127.0.0.1.example.com/", "com.example.app:/callback", "http://user@127.0.0.1/",
          "http://0.0.0.0/callback", "http://127.0.0.1/callback#part", "urn:ietf:wg:oauth:2.0:oob"}) {
        EXPECT_EQ(
            FailureOf<EZORedirectUrlError>([&] { TZORedirectListener{QLatin1String(url)}; }),
            QStringLiteral("The redirect URL \"%1\" cannot be listened on: it has to be an http address "
                           "of this machine, like http://127.0.0.1/callback.")
                .arg(QLatin1String(url)));
    }
}

TEST_F(RedirectListener, SaysWhenItsPortIsInUse) {
    QTcpServer taken;
    ASSERT_TRUE(taken.listen(QHostAddress::LocalHost));
    const QString url = QStringLiteral("http://127.0.0.1:%1/callback").arg(taken.serverPort());
    EXPECT_EQ(FailureOf<EZORedirectUrlError>([&] { TZORedirectListener{url}; }),
              QStringLiteral("Port %1 of this machine, which the redirect URL names, is in use by another "
                             "program.")
                  .arg(taken.serverPort()));
}

TEST_F(RedirectListener, GivesTheQueryAndShowsAPage) {
    for (const bool isGood : {true, false}) {
        TZORedirectListener listener("http://127.0.0.1/callback");
        auto page = Visit(listener.RedirectUri() + "?code=1&state=%41");
        EXPECT_EQ(listener.Wait(LongMs), QByteArray("code=1&state=%41"));
        listener.Finish(isGood);
        const TZOHttpResponse answer = page.get();
        EXPECT_EQ(answer.Status, isGood ? 200 : 400);
        EXPECT_TRUE(answer.Body.contains(isGood ? "<h1>Signed on</h1>" : "<h1>Not signed on</h1>"));
        EXPECT_EQ(answer.Header("Content-Type"), "text/html; charset=utf-8");
        EXPECT_EQ(answer.Header("Cache-Control"), "no-store");
        EXPECT_EQ(answer.Header("Referrer-Policy"), "no-referrer");
        EXPECT_FALSE(answer.Body.contains("code=1"));
    }
}

TEST_F(RedirectListener, TurnsOtherRequestsAwayAndGoesOnWaiting) {
    TZORedirectListener listener("http://127.0.0.1/callback");
    const QString origin = QStringLiteral("http://127.0.0.1:%1").arg(PortOf(listener));
    for (const char* path :
         {"/favicon.ico", "/", "/callback2?code=1", "/callback/?code=1", "/Callback?code=1"}) {
        auto page = Visit(origin + QLatin1String(path));
        while (page.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
            EXPECT_EQ(listener.Wait(5), std::nullopt);
        EXPECT_EQ(page.get().Status, 404) << path;
    }
    auto page = Visit(listener.RedirectUri());
    EXPECT_EQ(listener.Wait(LongMs), QByteArray(""));
    listener.Finish(false);
    page.get();
}

TEST_F(RedirectListener, WaitsNoLongerThanItIsTold) {
    TZORedirectListener listener("http://127.0.0.1/callback");
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(listener.Wait(50), std::nullopt);
    EXPECT_GE(clock.elapsed(), 50);
    EXPECT_LT(clock.elapsed(), 5'000);
}

TEST_F(RedirectListener, IsNotHeldUpByConnectionsThatSayNothingOrTooMuch) {
    TZORedirectListener listener("http://127.0.0.1/callback");
    QTcpSocket silent, endless, rubbish;
    for (QTcpSocket* socket : {&silent, &endless, &rubbish}) {
        socket->connectToHost(QHostAddress::LocalHost, PortOf(listener));
        ASSERT_TRUE(socket->waitForConnected(LongMs));
        EXPECT_EQ(listener.Wait(20), std::nullopt);
    }
    endless.write("GET /callback?code=" + QByteArray(200'000, 'x'));
    endless.flush();
    rubbish.write("rubbish\r\n\r\n");
    rubbish.flush();
    while (endless.state() == QAbstractSocket::ConnectedState ||
           rubbish.state() == QAbstractSocket::ConnectedState) {
        EXPECT_EQ(listener.Wait(20), std::nullopt);
        for (QTcpSocket* socket : {&endless, &rubbish}) {
            if (socket->state() == QAbstractSocket::ConnectedState)
                socket->waitForReadyRead(1);
        }
    }
    auto page = Visit(listener.RedirectUri() + "?code=1");
    EXPECT_EQ(listener.Wait(LongMs), QByteArray("code=1"));
    listener.Finish(true);
    EXPECT_EQ(page.get().Status, 200);
}

TEST_F(RedirectListener, ASecondAnswerFindsItOver) {
    TZORedirectListener listener("http://127.0.0.1/callback");
    QTcpSocket second;
    second.connectToHost(QHostAddress::LocalHost, PortOf(listener));
    ASSERT_TRUE(second.waitForConnected(LongMs));
    EXPECT_EQ(listener.Wait(20), std::nullopt);
    auto page = Visit(listener.RedirectUri() + "?code=1");
    EXPECT_EQ(listener.Wait(LongMs), QByteArray("code=1"));
    second.write("GET /callback?code=2 HTTP/1.1\r\nHost: x\r\n\r\n");
    ASSERT_TRUE(second.waitForBytesWritten(LongMs));
    listener.Finish(true);
    EXPECT_EQ(page.get().Status, 200);
    while (second.waitForReadyRead(LongMs) && second.state() == QAbstractSocket::ConnectedState) {
    }
    const QByteArray answer = second.readAll();
    EXPECT_TRUE(answer.startsWith("HTTP/1.1 410 Gone\r\n"));
    EXPECT_TRUE(answer.contains("This sign-on is over."));
    QTcpSocket third;
    third.connectToHost(QHostAddress::LocalHost, static_cast<quint16>(QUrl(listener.RedirectUri()).port()));
    EXPECT_FALSE(third.waitForConnected(LongMs));
    EXPECT_EQ(third.error(), QAbstractSocket::ConnectionRefusedError);
}
