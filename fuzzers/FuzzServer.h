// The other end of the HTTP client under test.
#pragma once

#include <QByteArray>

#include <functional>
#include <mutex>
#include <thread>

/// A loopback server on a free port that hands each request's bytes to the target, sends what the target
/// has it send, and closes the connection.
class TFuzzServer {
public:
    TFuzzServer();
    ~TFuzzServer();
    TFuzzServer(const TFuzzServer&) = delete;
    TFuzzServer& operator=(const TFuzzServer&) = delete;

    QByteArray Url() const;
    void SetAnswer(const QByteArray& AAnswer);
    /// The latest request, head and body.
    QByteArray LastRequest();

private:
    void Serve();
    void ServeOne(int ASocket);

    int FListener;
    int FPort = 0;
    std::mutex FMutex;
    QByteArray FAnswer;
    QByteArray FRequest;
    std::thread FThread;
};
