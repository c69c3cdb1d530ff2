#include "samples/SampleServer.h"

#include "samples/ClockRoutes_p.h"
#include "samples/LibraryRoutes_p.h"

#include <thread>

namespace {

constexpr const char* Host = "127.0.0.1";
constexpr const char* LibraryPath = "/library/v1";
constexpr const char* ClockPath = "/clock/v1";

TSampleRequest Described(const httplib::Request& ARequest, const httplib::Response& AResponse) {
    TSampleRequest request;
    request.Method = ARequest.method;
    request.Path = ARequest.path;
    request.Params = ARequest.params;
    request.Headers = {ARequest.headers.begin(), ARequest.headers.end()};
    request.Body = ARequest.body;
    for (const auto& [name, file] : ARequest.files)
        request.Parts.emplace(name, TSampleRequest::TPart{file.filename, file.content});
    request.Status = AResponse.status;
    return request;
}

} // namespace

class TSampleServer::TImpl {
public:
    explicit TImpl(TListener AListener) {
        FServer.set_tcp_nodelay(true);
        FServer.set_keep_alive_max_count(1000);
        FServer.set_keep_alive_timeout(1);
        FServer.set_error_handler([](const httplib::Request& ARequest, httplib::Response& AResponse) {
            if (AResponse.body.empty())
                AResponse.set_content(SampleErrorText(AResponse.status, "Nothing answers " + ARequest.method +
                                                                            " " + ARequest.path + "."),
                                      "application/json");
        });
        if (AListener)
            FServer.set_logger(
                [AListener](const httplib::Request& ARequest, const httplib::Response& AResponse) {
                    AListener(Described(ARequest, AResponse));
                });
        AddLibraryRoutes(FServer, LibraryPath, TSampleServer::ApiKey().toStdString());
        AddClockRoutes(FServer, ClockPath);

        FPort = FServer.bind_to_any_port(Host);
        if (FPort <= 0)
            throw ESampleServerError(
                QStringLiteral("The sample server found no free port on %1.").arg(QString::fromLatin1(Host)));
        FThread = std::thread([this] { FServer.listen_after_bind(); });
        // stop() has no effect on a server that does not run yet.
        while (!FServer.is_running())
            std::this_thread::yield();
    }

    ~TImpl() {
        FServer.stop();
        FThread.join();
    }

    int Port() const noexcept { return FPort; }

private:
    httplib::Server FServer;
    std::thread FThread;
    int FPort = 0;
};

TSampleServer::TSampleServer(TListener AListener) : FImpl(std::make_unique<TImpl>(std::move(AListener))) {}
TSampleServer::~TSampleServer() = default;

int TSampleServer::Port() const noexcept { return FImpl->Port(); }

QString TSampleServer::LibraryUrl() const {
    return QStringLiteral("http://%1:%2%3")
        .arg(QLatin1String(Host))
        .arg(Port())
        .arg(QLatin1String(LibraryPath));
}

QString TSampleServer::ClockUrl() const {
    return QStringLiteral("http://%1:%2%3")
        .arg(QLatin1String(Host))
        .arg(Port())
        .arg(QLatin1String(ClockPath));
}

QString TSampleServer::ApiKey() { return QStringLiteral("library-demo-key"); }
