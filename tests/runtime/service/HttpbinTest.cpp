// Requests to a server that none of us wrote: what it says that it received is what was meant.
#include "tests/runtime/service/ServiceFixture.h"
#include "tests/servers/HttpbinServer.h"

#include "samples/HttpbinService.h"

#include "runtime/types/Streams.h"

#include <QBuffer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QTemporaryFile>
#include <QUuid>

namespace {

using namespace ServiceCalls;

class THttpbinTest : public testing::Test {
protected:
    THttpbinServer Server;
    std::unique_ptr<TZORestServiceClass> Class = THttpbinService::DeclareClass(Server.Url());
    std::unique_ptr<TZORestService> Service = Class->Create();

    QJsonObject Answer(const QString& AOper, const QByteArray& AValue = "{}") {
        return QJsonDocument::fromJson(Exec(*Service, AOper, AValue)).object();
    }
    /// Expects that the members of AExpected are in the answer as they are here.
    void ExpectAnswer(const QString& AOper, const QByteArray& AValue, const QByteArray& AExpected) {
        const QJsonObject answer = Answer(AOper, AValue);
        const QJsonObject expected = QJsonDocument::fromJson(AExpected).object();
        ASSERT_FALSE(expected.isEmpty()) << AExpected.toStdString();
        for (auto it = expected.begin(); it != expected.end(); ++it)
            EXPECT_EQ(answer.value(it.key()), it.value())
                << AOper.toStdString() << ": " << QJsonDocument(answer).toJson().toStdString();
    }
    QString StatusFailure(const QString& AOper, const QByteArray& AValue = "{}") {
        return FailureOf<EZOHttpStatusError>([&] { Exec(*Service, AOper, AValue); });
    }
    static QByteArray RandomBytes(int ACount) {
        QByteArray bytes(ACount, Qt::Uninitialized);
        QRandomGenerator(7).generate(bytes.begin(), bytes.end());
        return bytes;
    }
};

TEST_F(THttpbinTest, ParametersComeBackFromTheQuery) {
    ExpectAnswer("Get", "{}", R"({"args":{},"origin":"127.0.0.1"})");
    ExpectAnswer("Get",
                 R"({"text":"a b&c=d/ü+100%","number":-7,"tags":["one","two,three",""],
                     "at":"2024-02-29T13:30:00.25+01:00"})",
                 R"({"args":{"text":"a b&c=d/ü+100%","number":"-7","tags":["one","two,three",""],
                     "at":"2024-02-29T12:30:00.25Z"}})");
    EXPECT_EQ(Answer("Get", R"({"text":"x"})").value("url").toString(), Server.Url() + "/get?text=x");
}

TEST_F(THttpbinTest, HeadersAndCookiesArrive) {
    const QJsonObject headers =
        Answer("Headers", R"({"note":"kept, as it is; \"so\""})")["headers"].toObject();
    EXPECT_EQ(headers["X-Note"].toString(), "kept, as it is; \"so\"");
    EXPECT_EQ(headers["Accept"].toString(), "application/json, */*;q=0.8");
    EXPECT_FALSE(Answer("Headers")["headers"].toObject().contains("X-Note"));
    ExpectAnswer("Cookies", R"({"flavour":"oats=raisins"})", R"({"cookies":{"flavour":"oats=raisins"}})");
    ExpectAnswer("Cookies", "{}", R"({"cookies":{}})");
}

TEST_F(THttpbinTest, AnObjectArrivesAsJson) {
    const QByteArray order =
        R"({"customer":"Zoë","lines":[{"article":"nail","count":100},{"article":"\"saw\""},{}],
                                 "labels":{"to":"Gdańsk","empty":""},"extra":{"deep":[1,[2,{"x":null}],true]}})";
    ExpectAnswer("PostJson", "{\"order\":" + order + "}",
                 "{\"json\":" + order + ",\"form\":{},\"files\":{}}");
    const QJsonObject answer =
        Answer("PostJson", R"({"order":{"customer":"x","extra":12345678901234567890.50}})");
    EXPECT_EQ(answer["headers"].toObject()["Content-Type"].toString(), "application/json");
    EXPECT_EQ(answer["data"].toString(), R"({"customer":"x","extra":12345678901234567890.50})");
}

TEST_F(THttpbinTest, FieldsArriveInAForm) {
    ExpectAnswer("PostForm", R"({"name":"a=b & ü","toppings":["ham","olives"],"urgent":true})",
                 R"({"form":{"name":"a=b & ü","toppings":["ham","olives"],"urgent":"true"}})");
    EXPECT_EQ(Answer("PostForm", R"({"name":"x"})")["headers"].toObject()["Content-Type"].toString(),
              "application/x-www-form-urlencoded");
}

TEST_F(THttpbinTest, AFileArrivesByteForByte) {
    const QByteArray content = RandomBytes(3'000'001);
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    file.write(content);
    file.flush();
    const POper oper = OperOf(*Service, "PostFile");
    ZORequest request(Service.get(), oper->Request);
    Fill(request, R"({"caption":"three megabytes"})");
    void* ref = nullptr;
    ZOObject::TData::GetByRef(*static_cast<ZOObject**>(request.Data()),
                              oper->Request->FindProperty(u"file")->Index, ref);
    static_cast<ZOUpload*>(ref)->SetStream(&file);
    TZOValueHolder response(oper->Response, true);
    request.ExecRequest(&response);

    const QJsonObject answer = QJsonDocument::fromJson(TZOJson::Encode(response)).object();
    EXPECT_EQ(answer["form"].toObject()["caption"].toString(), "three megabytes");
    const QByteArray data = answer["files"].toObject()["file"].toString().toLatin1();
    const QByteArray prefix = "data:application/octet-stream;base64,";
    ASSERT_TRUE(data.startsWith(prefix)) << data.left(60).toStdString();
    EXPECT_EQ(QByteArray::fromBase64(data.mid(prefix.size())), content);
    EXPECT_TRUE(file.isOpen());
}

TEST_F(THttpbinTest, ADownloadIsWrittenToItsStream) {
    const POper oper = OperOf(*Service, "DownloadBytes");
    ZORequest request(Service.get(), oper->Request);
    Fill(request, R"({"count":100000})");
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    TZOValueHolder response(oper->Response, true);
    void* ref = nullptr;
    response.GetByRef(ref);
    static_cast<ZODownload*>(ref)->SetStream(&file);
    request.ExecRequest(&response);
    EXPECT_EQ(file.size(), 100'000);
    EXPECT_EQ(QFile(file.fileName()).size(), 100'000);
    ASSERT_TRUE(response.GetValue(ref));
    EXPECT_EQ(static_cast<ZODownload*>(ref)->GetStream(), &file);
}

TEST_F(THttpbinTest, ADownloadWithoutAStreamIsNotAskedFor) {
    EXPECT_EQ(FailureOf<EZODownloadError>([&] { Exec(*Service, "DownloadBytes", R"({"count":1})"); }),
              "There is no file to write the download to.");
}

TEST_F(THttpbinTest, AStatusThatIsNoSuccessIsNamed) {
    EXPECT_NO_THROW(Exec(*Service, "Status", R"({"code":204})"));
    EXPECT_NO_THROW(Exec(*Service, "Status", R"({"code":299})"));
    EXPECT_EQ(StatusFailure("Status", R"({"code":404})"), "404 NOT FOUND");
    EXPECT_EQ(StatusFailure("Status", R"({"code":500})"), "500 INTERNAL SERVER ERROR");
    // This one says something.
    EXPECT_THAT(StatusFailure("Status", R"({"code":418})").toStdString(),
                testing::AllOf(testing::StartsWith("418 I'M A TEAPOT\n"), testing::HasSubstr("teapot")));
    EXPECT_NO_THROW(Exec(*Service, "Status", R"({"code":200})"));
}

TEST_F(THttpbinTest, RedirectsAreFollowedToALimit) {
    for (const QByteArray times : {"1", "10"})
        ExpectAnswer("Redirect", "{\"times\":" + times + "}",
                     QStringLiteral(R"({"url":"%1/get"})").arg(Server.Url()).toUtf8());
    EXPECT_THAT(FailureOf<EZORedirectLimitError>([&] {
                    Exec(*Service, "Redirect", R"({"times":11})");
                }).toStdString(),
                testing::EndsWith(" redirects once more after 10 redirects."));
}

TEST_F(THttpbinTest, ACompressedAnswerIsRead) {
    ExpectAnswer("Gzip", "{}", R"({"gzipped":true,"method":"GET"})");
    TZOServiceBuilder builder("TTestService", {}, Server.Url());
    for (const QString& name : {QStringLiteral("brotli"), QStringLiteral("deflate")})
        builder.Operation(name, {}, "GET", u'/' + name, {}, TZOTypeLibrary::Scalar(vkAny));
    const auto other = ClassOf(builder);
    const auto service = other->Create();
    EXPECT_THAT(Exec(*service, "brotli").toStdString(), testing::HasSubstr("\"brotli\":true"));
    EXPECT_THAT(Exec(*service, "deflate").toStdString(), testing::HasSubstr("\"deflated\":true"));
}

TEST_F(THttpbinTest, EveryUuidIsNew) {
    const auto uuid = [&] { return QUuid::fromString(Answer("Uuid")["uuid"].toString()); };
    const QUuid first = uuid();
    EXPECT_FALSE(first.isNull());
    EXPECT_NE(first, uuid());
}

TEST_F(THttpbinTest, UserNameAndPasswordAreAcceptedOrRefused) {
    const QByteArray right = R"({"user":"user","password":"password"})";
    ExpectAnswer("BasicAuth", right, R"({"authenticated":true,"user":"user"})");
    EXPECT_EQ(StatusFailure("BasicAuth", R"({"user":"user","password":"other"})"), "401 UNAUTHORIZED");
    Service->SetApiKey("Zoë:a:b");
    ExpectAnswer("BasicAuth", R"({"user":"Zoë","password":"a:b"})", R"({"authenticated":true,"user":"Zoë"})");
    Service->SetApiKey("nopassword");
    EXPECT_THAT(FailureOf<EZOAuthorizationError>([&] { Exec(*Service, "BasicAuth", right); }).toStdString(),
                testing::HasSubstr("\"user:password\""));
}

TEST_F(THttpbinTest, ATokenIsAcceptedOrMissed) {
    Service->SetApiKey("t0ken");
    ExpectAnswer("Bearer", "{}", R"({"authenticated":true,"token":"t0ken"})");
    Service->SetApiKey({});
    Service->SetToken("granted", {}, 0);
    ExpectAnswer("Bearer", "{}", R"({"authenticated":true,"token":"granted"})");
    Service->ResetToken();
    EXPECT_EQ(FailureOf<EZOAuthorizationError>([&] { Exec(*Service, "Bearer"); }),
              "THttpbinService has no credentials for Bearer. Enter the access token as its API key.");
    // Sent without a token after all, it would have been refused by the server.
    TZOServiceBuilder builder("TTestService", {}, Server.Url());
    builder.Operation("Bearer", {}, "GET", "/bearer", {}, TZOTypeLibrary::Scalar(vkAny));
    const auto other = ClassOf(builder);
    const auto service = other->Create();
    EXPECT_EQ(FailureOf<EZOHttpStatusError>([&] { Exec(*service, "Bearer"); }), "401 UNAUTHORIZED");
}

TEST_F(THttpbinTest, OperationsThatNeedNoCredentialsSendNone) {
    const QJsonObject headers = Answer("Headers")["headers"].toObject();
    EXPECT_EQ(Service->GetApiKey(), "user:password");
    EXPECT_FALSE(headers.contains("Authorization"));
}

} // namespace
