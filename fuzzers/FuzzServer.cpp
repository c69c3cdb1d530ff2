#include "fuzzers/FuzzServer.h"

#include "fuzzers/Fuzz.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

/// Bytes that belong to the request at the start of ABytes; -1 while its head is not complete.
qsizetype RequestSize(const QByteArray& ABytes) {
    const qsizetype headEnd = ABytes.indexOf("\r\n\r\n");
    if (headEnd < 0)
        return -1;
    const QByteArray head = ABytes.left(headEnd).toLower();
    const qsizetype length = head.indexOf("\r\ncontent-length:");
    const qsizetype value = length + qsizetype(sizeof("\r\ncontent-length:")) - 1;
    const qsizetype body =
        length < 0 ? 0 : head.mid(value, head.indexOf("\r\n", value) - value).trimmed().toLongLong();
    return headEnd + 4 + body;
}

} // namespace

TFuzzServer::TFuzzServer() : FListener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    Fuzz::Require(bind(FListener, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                      listen(FListener, 8) == 0 &&
                      getsockname(FListener, reinterpret_cast<sockaddr*>(&address), &size) == 0,
                  "a loopback port is free");
    FPort = ntohs(address.sin_port);
    FThread = std::thread([this] { Serve(); });
}

TFuzzServer::~TFuzzServer() {
    shutdown(FListener, SHUT_RDWR);
    FThread.join();
    close(FListener);
}

QByteArray TFuzzServer::Url() const { return "http://127.0.0.1:" + QByteArray::number(FPort) + "/"; }

void TFuzzServer::SetAnswer(const QByteArray& AAnswer) {
    const std::lock_guard lock(FMutex);
    FAnswer = AAnswer;
}

QByteArray TFuzzServer::LastRequest() {
    const std::lock_guard lock(FMutex);
    return FRequest;
}

void TFuzzServer::Serve() {
    for (;;) {
        const int connection = accept4(FListener, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0)
            return;
        ServeOne(connection);
        close(connection);
    }
}

void TFuzzServer::ServeOne(int ASocket) {
    QByteArray request;
    char buffer[16384];
    for (qsizetype size = -1; size < 0 || request.size() < size; size = RequestSize(request)) {
        const ssize_t count = recv(ASocket, buffer, sizeof(buffer), 0);
        if (count <= 0)
            return;
        request.append(buffer, count);
    }
    const std::lock_guard lock(FMutex);
    FRequest = request;
    qsizetype sent = 0;
    while (sent < FAnswer.size()) {
        const ssize_t count =
            send(ASocket, FAnswer.constData() + sent, std::size_t(FAnswer.size() - sent), MSG_NOSIGNAL);
        if (count <= 0)
            return;
        sent += count;
    }
}
