#include "samples/Samples.h"
#include "samples/HttpbinService.h"
#include "tests/samples/SampleClient.h"

#include <QScopeGuard>
#include <QUrl>

namespace {

QStringList Registered() {
    QStringList names;
    for (const TZORestServiceClass* serviceClass : TZOTypeInfo::Services())
        names.append(serviceClass->ClassName());
    return names;
}

int LibraryPort() { return QUrl(TZOTypeInfo::Services().front()->TypeInfo()->BaseUrl()).port(); }

bool Answers(int APort) {
    httplib::Client client("127.0.0.1", APort);
    const auto answer = client.Get("/clock/v1/now");
    return answer && answer->status == 200;
}

TEST(Samples, RegisterBothClassesWithTheServersAddress) {
    EXPECT_EQ(Registered(), QStringList());
    StartSamples();
    EXPECT_EQ(Registered(), (QStringList{"TLibraryService", "TClockService"}));
    EXPECT_EQ(TZOTypeInfo::Get(typeid(TLibraryService)), TZOTypeInfo::Services()[0]->TypeInfo());
    EXPECT_EQ(TZOTypeInfo::Get(typeid(TClockService)), TZOTypeInfo::Services()[1]->TypeInfo());
    EXPECT_TRUE(Answers(LibraryPort()));
    const auto service = TZOTypeInfo::Services()[0]->Create();
    EXPECT_TRUE(qobject_cast<TLibraryService*>(service.get()));
    EXPECT_EQ(service->GetApiKey(), TSampleServer::ApiKey());
    StopSamples();
}

TEST(Samples, RegisterHttpbinLastWhereItsAddressIsGiven) {
    qputenv("ZO_SAMPLE_HTTPBIN", "http://127.0.0.1:8123");
    const auto forget = qScopeGuard([] { qunsetenv("ZO_SAMPLE_HTTPBIN"); });
    StartSamples();
    EXPECT_EQ(Registered(), (QStringList{"TLibraryService", "TClockService", "THttpbinService"}));
    const TZORestServiceClass* httpbin = TZOTypeInfo::Services().last();
    EXPECT_EQ(httpbin->TypeInfo()->BaseUrl(), "http://127.0.0.1:8123");
    EXPECT_EQ(TZOTypeInfo::Get(typeid(THttpbinService)), httpbin->TypeInfo());
    EXPECT_TRUE(qobject_cast<THttpbinService*>(httpbin->Create().get()));
    StopSamples();
    EXPECT_EQ(Registered(), QStringList());
    EXPECT_EQ(TZOTypeInfo::Get(typeid(THttpbinService)), nullptr);
}

TEST(Samples, StartAndStopAsOftenAsTheHostLikes) {
    StopSamples();
    StartSamples();
    const int port = LibraryPort();
    StartSamples();
    EXPECT_EQ(Registered().size(), 2);
    EXPECT_EQ(LibraryPort(), port);
    StopSamples();
    EXPECT_EQ(Registered().size(), 0);
    EXPECT_EQ(TZOTypeInfo::Get(typeid(TLibraryService)), nullptr);
    EXPECT_FALSE(Answers(port));
    StopSamples();

    StartSamples();
    EXPECT_EQ(Registered().size(), 2);
    EXPECT_TRUE(Answers(LibraryPort()));
    StopSamples();
}

TEST(SampleServer, StopsAtOnceWhenNobodyHoldsAConnection) {
    for (int i = 0; i < 20; ++i) {
        const auto server = std::make_unique<TSampleServer>();
        EXPECT_TRUE(Answers(server->Port()));
    }
}

} // namespace
