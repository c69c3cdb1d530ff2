// Every way in which a server can do wrong: a sentence that says so, in bounded time and memory, and a client
// that is as good as new.
#include "tests/runtime/service/ServiceFixture.h"
#include "tests/servers/FaultServer.h"

#include "runtime/http/HttpClient.h"
#include "runtime/types/Streams.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>

namespace {

using namespace ServiceCalls;
using P = TZOServiceParam;

class TFaultsTest : public testing::Test {
protected:
    TFaultsTest() {
        TZOServiceBuilder builder("TTestService", {}, QString::fromLatin1(Server.Url()));
        TZOTypeLibrary& types = builder.Types();
        const TZOTypeInfo* text = types.Scalar(vkString);
        const auto record = types.NewObject("Record").Property("text", text).Type();
        builder.ApiKeyHeader("X-Key");
        builder.Operation("Read", {}, "GET", "/{fault}", {P::InPath("fault", text, {})}, record);
        builder.Operation("Download", {}, "GET", "/{fault}", {P::InPath("fault", text, {})},
                          types.Scalar(vkDownload));
        builder.Operation("Send", {}, "POST", "/{fault}",
                          {P::InPath("fault", text, {}), P::InBody("body", text, {})}, nullptr);
        Class = ClassOf(builder);
        Service = Class->Create();
        Service->SetApiKey("planted-key");
        TZOHttpClient& client = Service->HttpClient();
        client.Limits().MaxBodyBytes = TFaultServer::MaxBodyBytes;
        // Drips never end by themselves.
        client.SetIdle([this](qint64, qint64) { return Clock.elapsed() < 1000 || !IsDrip; });
        Clock.start();
    }

    void Begin(const QByteArray& AFault) {
        Service->HttpClient().Limits().StallTimeoutMs = TFaultServer::StallTimeoutMs(AFault);
        IsDrip = AFault.startsWith("slow-drip");
        Clock.restart();
    }

    QByteArray Read(const QByteArray& AFault) {
        Begin(AFault);
        return Exec(*Service, "Read", "{\"fault\":\"" + AFault + "\"}");
    }

    void Download(const QByteArray& AFault, QIODevice& AFile) {
        const POper oper = OperOf(*Service, "Download");
        ZORequest request(Service.get(), oper->Request);
        Fill(request, "{\"fault\":\"" + AFault + "\"}");
        TZOValueHolder response(oper->Response, true);
        void* ref = nullptr;
        response.GetByRef(ref);
        static_cast<ZODownload*>(ref)->SetStream(&AFile);
        Begin(AFault);
        request.ExecRequest(&response);
    }

    /// "EClass: message" of what ACall raises; empty when it raises nothing.
    template <class TCall>
    static std::string Failure(TCall ACall) {
        try {
            ACall();
        } catch (const EException& failure) {
            return failure.ClassName().toStdString() + ": " + failure.what();
        }
        return {};
    }

    TFaultServer Server;
    std::unique_ptr<TZORestServiceClass> Class;
    std::unique_ptr<TZORestService> Service;
    QElapsedTimer Clock;
    bool IsDrip = false;
};

/// Where everything goes that nobody keeps.
class TCount : public QIODevice {
public:
    qint64 Bytes = 0;

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char*, qint64 ASize) override {
        Bytes += ASize;
        return ASize;
    }
};

class TFaultTest : public TFaultsTest, public testing::WithParamInterface<TFault> {
protected:
    std::string Expected() const {
        const QString message = Server.MessageOf(GetParam());
        return *GetParam().ClassName ? GetParam().ClassName + (": " + message.toStdString()) : std::string();
    }
};

/// The most memory that this process has ever used, in bytes.
qint64 PeakMemory() {
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toLongLong() * 1024;
    }
    return 0;
}

TEST_P(TFaultTest, IsSaidPlainlyAndTheNextRequestSucceeds) {
    Read("warm-up");
    EXPECT_EQ(Failure([&] { Read(GetParam().Name); }), Expected());
    EXPECT_EQ(Read("anything-else"), R"({"text":"fine"})");
}

TEST_P(TFaultTest, MeetsADownloadInTheSameWay) {
    const QByteArray name = GetParam().Name;
    // What is written to a file is neither bounded nor looked into.
    if (name.startsWith("endless-") || name == "gzip-bomb" || name == "deep-json" || name == "invalid-utf-8")
        return;
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    EXPECT_EQ(Failure([&] { Download(name, file); }), Expected());
    EXPECT_EQ(Read("anything-else"), R"({"text":"fine"})");
}

INSTANTIATE_TEST_SUITE_P(Cases, TFaultTest, testing::ValuesIn(TFaultServer::Faults()), [](const auto& AInfo) {
    std::string name = AInfo.param.Name;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

TEST_F(TFaultsTest, CompressedAnswersThatAreWholeAreRead) {
    for (const char* name : {"gzip", "gzip-in-two-members", "deflate", "bare-deflate", "brotli", "zstd",
                             "zstd-in-gzip", "same-length-twice", "more-than-its-length", "many-headers"})
        EXPECT_EQ(Read(name), R"({"text":"fine"})") << name;
    for (const char* name : {"empty-gzip", "no-content-with-body"})
        EXPECT_EQ(Read(name), "null") << name;
}

TEST_F(TFaultsTest, ABombTakesNoMoreMemoryThanTheLimit) {
    Read("warm-up");
    Failure([&] { Read("wrong-gzip"); });
    const qint64 before = PeakMemory();
    EXPECT_THAT(Failure([&] { Read("gzip-bomb"); }), testing::HasSubstr("is larger than 1 MiB"));
    // It holds one gigabyte.
    EXPECT_LT(PeakMemory() - before, 128 * 1024 * 1024);
}

TEST_F(TFaultsTest, ABombCanBeCancelledWhileItIsDecompressed) {
    TCount count;
    count.open(QIODevice::WriteOnly);
    Service->HttpClient().SetIdle([&](qint64, qint64) { return count.Bytes == 0; });
    EXPECT_THAT(Failure([&] { Download("gzip-bomb", count); }), testing::StartsWith("EZOCancelledError"));
    // It holds one gigabyte, and a few pieces of what is received hold all of it.
    EXPECT_LT(count.Bytes, 512 * 1024 * 1024);
}

TEST_F(TFaultsTest, NoKeyFollowsToAnotherOrigin) {
    EXPECT_EQ(Read("redirect-elsewhere"), R"({"text":"fine"})");
    EXPECT_THAT(Server.Server().Requests().last().toStdString(), testing::HasSubstr("planted-key"));
    ASSERT_EQ(Server.Elsewhere().Requests().size(), 1);
    EXPECT_THAT(Server.Elsewhere().Requests().last().toStdString(),
                testing::Not(testing::HasSubstr("planted-key")));
}

TEST_F(TFaultsTest, NoBodyFollowsToAnotherOrigin) {
    const TFault fault = {"", "EZORedirectRefusedError",
                          "%1 redirects to %2, another server: what the request holds is not sent there."};
    EXPECT_EQ(Failure([&] {
                  Exec(*Service, "Send", R"({"fault":"redirect-the-body-elsewhere","body":"private"})");
              }),
              "EZORedirectRefusedError: " + Server.MessageOf(fault).toStdString());
    EXPECT_EQ(Server.Elsewhere().ConnectionCount(), 0);
    EXPECT_EQ(Read("anything-else"), R"({"text":"fine"})");
}

} // namespace
