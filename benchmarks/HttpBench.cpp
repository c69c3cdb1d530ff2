#include "benchmarks/Table.h"

#include "tests/servers/NginxServer.h"

#include "runtime/service/Request.h"
#include "runtime/service/ServiceBuilder.h"

#include <curl/curl.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <stdexcept>

namespace {

constexpr int SmallRequests = 10'000;
constexpr qint64 LargeBytes = qint64(1) << 30;

/// The server runs from the first benchmark that needs it to the end.
TNginxServer& Server() {
    static TNginxServer server;
    return server;
}

class TSmallService {
public:
    TSmallService() {
        TZOServiceBuilder builder(QStringLiteral("TSmallService"), {}, QString::fromUtf8(Server().Url("")));
        const auto* answer = builder.Types()
                                 .NewObject(QStringLiteral("Answer"))
                                 .Property(QStringLiteral("id"), TZOTypeLibrary::Scalar(vkInteger))
                                 .Property(QStringLiteral("name"), TZOTypeLibrary::Scalar(vkString))
                                 .Type();
        builder.Operation(QStringLiteral("Small"), {}, "GET", QStringLiteral("/small"), {}, answer);
        FClass = std::make_unique<TZORestServiceClass>(QStringLiteral("TSmallService"), builder.Build());
        FService = FClass->Create();
    }

    /// How many requests the server has had on this connection.
    int Execute() {
        const auto& oper = FClass->TypeInfo()->Opers().front();
        TZOValueHolder response(oper.Response, true);
        ZORequest(FService.get(), oper.Request).ExecRequest(&response);
        void* ref = nullptr;
        if (!response.GetValue(ref) || !ZOObject::TData::GetProp(*static_cast<ZOObject**>(ref), 0, ref))
            return -1;
        return *static_cast<qint32*>(ref);
    }

private:
    std::unique_ptr<TZORestServiceClass> FClass;
    std::unique_ptr<TZORestService> FService;
};

size_t Append(char* AData, size_t ASize, size_t ACount, void* AText) {
    static_cast<std::string*>(AText)->append(AData, ASize * ACount);
    return ASize * ACount;
}

class TBareLoop {
public:
    TBareLoop() : FEasy(curl_easy_init(), &curl_easy_cleanup), FUrl(Server().Url("/small")) {
        curl_easy_setopt(FEasy.get(), CURLOPT_URL, FUrl.constData());
        curl_easy_setopt(FEasy.get(), CURLOPT_WRITEFUNCTION, &Append);
        curl_easy_setopt(FEasy.get(), CURLOPT_WRITEDATA, &FText);
    }
    const std::string& Execute() {
        FText.clear();
        curl_easy_perform(FEasy.get());
        return FText;
    }

private:
    std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> FEasy;
    QByteArray FUrl;
    std::string FText;
};

TSmallService& Small() {
    static TSmallService service;
    return service;
}

TBareLoop& Bare() {
    static TBareLoop loop;
    return loop;
}

void AddSmallRequests() {
    Bench::Compare(
        {"sequential small requests", "10,000", "libcurl loop", 1.3},
        [] {
            const int count = Small().Execute();
            if (count < 1 || Small().Execute() != count + 1)
                throw std::runtime_error("our small requests do not share one connection");
            Bare().Execute();
            if (Bare().Execute().find("\"id\":2,") == std::string::npos)
                throw std::runtime_error("the loop's small requests do not share one connection");
        },
        [] {
            for (int i = 0; i < SmallRequests; ++i)
                Small().Execute();
        },
        [] {
            for (int i = 0; i < SmallRequests; ++i)
                Bare().Execute();
        });
}

bool IsSame(const QString& AFile, const QString& AOther) {
    QFile file(AFile), other(AOther);
    if (!file.open(QIODevice::ReadOnly) || !other.open(QIODevice::ReadOnly) || file.size() != other.size())
        return false;
    const auto size = static_cast<std::size_t>(file.size());
    const uchar* bytes = file.map(0, file.size());
    const uchar* others = other.map(0, other.size());
    return bytes && others && std::memcmp(bytes, others, size) == 0;
}

/// Runs a program to its end and gives what it printed.
QByteArray Run(const QString& AProgram, const QStringList& AArguments) {
    QProcess process;
    process.start(AProgram, AArguments);
    if (!process.waitForFinished(300'000) || process.exitCode() != 0)
        throw std::runtime_error("the transfer failed: " + process.readAllStandardError().toStdString());
    return process.readAllStandardOutput();
}

enum TDirection { tdDownload, tdUpload };

QString Received(TDirection ADirection) {
    return Server().FilePath(ADirection == tdUpload ? QStringLiteral("upload/large")
                                                    : QStringLiteral("received"));
}

/// One transfer of 1 GiB by our probe, or by the curl program; its most memory in megabytes, or 0.
double Transfer(TDirection ADirection, bool AOurs) {
    const QString large = QString::fromUtf8(Server().MakeFile("large", LargeBytes));
    const QString received = Received(ADirection);
    QFile::remove(received);
    const QString path =
        ADirection == tdUpload ? QStringLiteral("/upload/large") : QStringLiteral("/files/large");
    const QString file = ADirection == tdUpload ? large : received;
    const QString server = QString::fromUtf8(Server().Url(""));
    QByteArray printed = "0";
    if (AOurs) {
        printed = Run(QCoreApplication::applicationDirPath() + QStringLiteral("/transferprobe"),
                      {ADirection == tdUpload ? QStringLiteral("upload") : QStringLiteral("download"), server,
                       path, file});
    } else {
        Run(QStringLiteral("curl"),
            {QStringLiteral("-sSf"), ADirection == tdUpload ? QStringLiteral("-T") : QStringLiteral("-o"),
             file, server + path});
    }
    if (QFileInfo(received).size() != LargeBytes)
        throw std::runtime_error("not all of the file arrived");
    const double megabytes = printed.toDouble();
    if (megabytes < 0)
        throw std::runtime_error("the peak of memory is not known");
    return megabytes;
}

double Seconds(TDirection ADirection, bool AOurs) {
    QElapsedTimer timer;
    timer.start();
    Transfer(ADirection, AOurs);
    return double(timer.nsecsElapsed()) / 1e9;
}

void CheckTransfer(TDirection ADirection) {
    Transfer(ADirection, true);
    if (!IsSame(QString::fromUtf8(Server().MakeFile("large", LargeBytes)), Received(ADirection)))
        throw std::runtime_error("what arrived differs from what was sent");
}

/// Ours and theirs take turns, so that both meet the same disk; the medians of five.
std::array<double, 2> Medians(TDirection ADirection) {
    static std::array<std::array<double, 2>, 2> known{};
    auto& medians = known[ADirection];
    if (medians[0] > 0)
        return medians;
    std::array<std::array<double, 5>, 2> times{};
    CheckTransfer(ADirection);
    for (std::size_t i = 0; i < 5; ++i) {
        times[0][i] = Seconds(ADirection, true);
        times[1][i] = Seconds(ADirection, false);
    }
    for (std::size_t side = 0; side < 2; ++side) {
        std::sort(times[side].begin(), times[side].end());
        medians[side] = times[side][2];
    }
    return medians;
}

void AddTransfer(TDirection ADirection, const std::string& AName) {
    Bench::Measure(
        {AName, "1 GiB", "curl program", 1.1}, "s", [=] { return Medians(ADirection)[0]; },
        [=] { return Medians(ADirection)[1]; });
    Bench::Measure(
        {AName + ", peak memory", "1 GiB", "60 MB", 1.0}, "MB", [=] { return Transfer(ADirection, true); },
        [] { return 60.0; });
}

} // namespace

void AddHttpBenchmarks() {
    AddSmallRequests();
    AddTransfer(tdDownload, "download");
    AddTransfer(tdUpload, "upload");
}
