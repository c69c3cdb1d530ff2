// What the tests of the flows share: a server that says what a test tells it to, and a browser without a
// person.
#pragma once

#include "tests/servers/RawServer.h"

#include "runtime/http/HttpClient.h"
#include "runtime/oauth/AuthUI.h"
#include "runtime/oauth/OAuthClient.h"
#include "runtime/types/Failures.h"

#include <QUrlQuery>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

/// Comes back from the authorization endpoint with what a test says, from a thread of its own.
class TTestBrowser : public TZOAuthUI {
public:
    /// The address to go to, once the authorization endpoint was visited with these parameters.
    using TVisit = std::function<QByteArray(const QUrlQuery& AQuestion)>;

    explicit TTestBrowser(TVisit AVisit) : FVisit(std::move(AVisit)) {}
    ~TTestBrowser() override {
        if (FThread.joinable())
            FThread.join();
    }

    void Begin(const QString& AService, const QByteArray& AUrl) override {
        Service = AService;
        Url = AUrl;
        if (!FVisit)
            return;
        FThread = std::thread([this] {
            const QByteArray back = FVisit(QUrlQuery(QUrl::fromEncoded(Url)));
            if (!back.isEmpty())
                Page = Get(back);
        });
    }
    bool Wait() override { return !IsCancelled; }
    void End() override {
        IsOver = true;
        if (FThread.joinable())
            FThread.join();
    }
    int TimeLimitMs() const override { return LimitMs; }

    static TZOHttpResponse Get(const QByteArray& AUrl) {
        TZOHttpClient client;
        TZOHttpRequest request;
        request.Url = AUrl;
        return client.Execute(request);
    }
    /// The redirect URL of AQuestion with its state and APieces.
    static QByteArray BackWith(const QUrlQuery& AQuestion, const QByteArray& APieces) {
        return AQuestion.queryItemValue("redirect_uri", QUrl::FullyDecoded).toUtf8() +
               "?state=" + AQuestion.queryItemValue("state").toUtf8() + '&' + APieces;
    }
    /// Brings the code "c0de".
    static TVisit Consent() {
        return [](const QUrlQuery& AQuestion) { return BackWith(AQuestion, "code=c0de"); };
    }

    QString Service;
    QByteArray Url;
    TZOHttpResponse Page;
    bool IsOver = false;
    bool IsCancelled = false;
    int LimitMs = 20'000;

private:
    TVisit FVisit;
    std::thread FThread;
};

class TOAuthTest : public testing::Test {
protected:
    static constexpr const char* Granted =
        R"({"access_token":"at","token_type":"Bearer","expires_in":3600,"refresh_token":"rt"})";

    static QByteArray Json(const QByteArray& ABody, const QByteArray& AStatus = "200 OK") {
        return TRawServer::Answer(ABody, "application/json", AStatus);
    }
    /// Flows whose addresses are Server's.
    TZOOAuthClient::TSettings Settings() const {
        TZOOAuthClient::TSettings settings;
        settings.Service = "TTestService";
        settings.BaseUrl = QString::fromUtf8(Server.Url("/api"));
        settings.Scheme.Flows = {{ofAuthorizationCode, "/authorize", "/token", {}},
                                 {ofClientCredentials, {}, "/token", {}}};
        settings.ClientId = "my id";
        settings.Secret = "s:e+c";
        settings.RedirectUrl = "http://127.0.0.1/callback";
        settings.Scopes = {"read", "write"};
        return settings;
    }
    QString Place() const { return QStringLiteral("127.0.0.1:%1").arg(Server.Port()); }

    template <class TFailure, class TCall>
    static QString FailureOf(TCall ACall) {
        try {
            ACall();
            ADD_FAILURE() << "nothing failed";
        } catch (const EException& failure) {
            EXPECT_EQ(failure.ClassName(), TFailure(QString()).ClassName()) << failure.what();
            return failure.Message();
        }
        return {};
    }
    static QUrlQuery BodyOf(const QByteArray& ARequest) {
        return QUrlQuery(QString::fromUtf8(ARequest.mid(ARequest.indexOf("\r\n\r\n") + 4)).replace('+', ' '));
    }
    static QString Field(const QUrlQuery& AQuery, const QString& AName) {
        return AQuery.queryItemValue(AName, QUrl::FullyDecoded);
    }
    static QByteArray HeaderOf(const QByteArray& ARequest, const QByteArray& AName) {
        for (const QByteArray& line : ARequest.split('\n')) {
            if (line.toLower().startsWith(AName.toLower() + ':'))
                return line.mid(AName.size() + 1).trimmed();
        }
        return {};
    }

    TRawServer::TAnswer Answers = [](const QByteArray&) { return Json(Granted); };
    TRawServer Server{
        TRawServer::Answering([this](const QByteArray& ARequest) { return Answers(ARequest); })};
    TZOHttpClient Http;
};
