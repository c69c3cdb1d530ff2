#include "tests/servers/RawServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>
#include <utility>

namespace {

sockaddr_in Loopback(int APort) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<in_port_t>(APort));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

int BoundSocket(int& APort) {
    const int handle = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = Loopback(0);
    socklen_t size = sizeof address;
    if (bind(handle, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        getsockname(handle, reinterpret_cast<sockaddr*>(&address), &size) != 0)
        throw std::runtime_error("no free port");
    APort = ntohs(address.sin_port);
    return handle;
}

QByteArray HeaderOf(const QByteArray& AHead, const QByteArray& AName) {
    for (const QByteArray& line : AHead.split('\n')) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0 && line.left(colon).compare(AName, Qt::CaseInsensitive) == 0)
            return line.mid(colon + 1).trimmed();
    }
    return {};
}

} // namespace

int ClosedPort() {
    int port = 0;
    close(BoundSocket(port));
    return port;
}

bool IsListening(int APort) {
    const int handle = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = Loopback(APort);
    const bool isListening =
        connect(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(handle);
    return isListening;
}

TRawServer::TRawServer(THandler AHandler) : FHandler(std::move(AHandler)) {
    FListener = BoundSocket(FPort);
    listen(FListener, 16);
    FAcceptor = std::thread([this] { Accept(); });
}

TRawServer::~TRawServer() {
    {
        const std::lock_guard lock(FMutex);
        FIsStopped = true;
        shutdown(FListener, SHUT_RDWR);
        for (const int handle : FSockets)
            shutdown(handle, SHUT_RDWR);
    }
    FAcceptor.join();
    close(FListener);
    for (std::thread& thread : FThreads)
        thread.join();
}

TRawServer::THandler TRawServer::Answering(TAnswer AAnswer) {
    return [answer = std::move(AAnswer)](TConnection& AConnection) {
        for (;;) {
            const QByteArray request = AConnection.ReadRequest();
            if (request.isEmpty())
                return;
            AConnection.Write(answer(request));
        }
    };
}

QByteArray TRawServer::Answer(const QByteArray& ABody, const QByteArray& AContentType,
                              const QByteArray& AStatusLine, const QByteArray& AHeaders) {
    return "HTTP/1.1 " + AStatusLine + "\r\nContent-Type: " + AContentType +
           "\r\nContent-Length: " + QByteArray::number(ABody.size()) + "\r\n" + AHeaders + "\r\n" + ABody;
}

QByteArray TRawServer::Url(const QByteArray& APath) const {
    return "http://127.0.0.1:" + QByteArray::number(FPort) + APath;
}

QList<QByteArray> TRawServer::Requests() const {
    const std::lock_guard lock(FMutex);
    return FRequests;
}

QList<QByteArray> TRawServer::TakeRequests() {
    const std::lock_guard lock(FMutex);
    return std::exchange(FRequests, {});
}

int TRawServer::ConnectionCount() const {
    const std::lock_guard lock(FMutex);
    return FConnectionCount;
}

void TRawServer::Accept() {
    for (;;) {
        const int handle = accept4(FListener, nullptr, nullptr, SOCK_CLOEXEC);
        const std::lock_guard lock(FMutex);
        if (handle < 0 || FIsStopped) {
            if (handle >= 0)
                close(handle);
            return;
        }
        ++FConnectionCount;
        FSockets.insert(handle);
        FThreads.emplace_back([this, handle] { Serve(handle); });
    }
}

void TRawServer::Serve(int ASocket) {
    TConnection connection(*this, ASocket);
    FHandler(connection);
    const std::lock_guard lock(FMutex);
    FSockets.erase(ASocket);
    close(ASocket);
}

bool TRawServer::TConnection::Receive() {
    char bytes[65536];
    const auto count = recv(FSocket, bytes, sizeof bytes, 0);
    if (count > 0)
        FBuffer.append(bytes, count);
    return count > 0;
}

QByteArray TRawServer::TConnection::Take(qsizetype ASize) {
    while (FBuffer.size() < ASize && Receive()) {
    }
    const QByteArray taken = FBuffer.left(ASize);
    FBuffer.remove(0, taken.size());
    return taken;
}

QByteArray TRawServer::TConnection::TakeLine() {
    qsizetype end = -1;
    while ((end = FBuffer.indexOf("\r\n")) < 0 && Receive()) {
    }
    return Take(end < 0 ? FBuffer.size() : end + 2);
}

QByteArray TRawServer::TConnection::ReadHead() {
    QByteArray head;
    for (;;) {
        const QByteArray line = TakeLine();
        head += line;
        if (line.isEmpty() || line == "\r\n")
            return head;
    }
}

QByteArray TRawServer::TConnection::TakeChunks() {
    QByteArray body;
    for (;;) {
        const QByteArray line = TakeLine();
        const qsizetype size = line.trimmed().toLongLong(nullptr, 16);
        body += Take(size);
        TakeLine();
        if (size == 0 || line.isEmpty())
            return body;
    }
}

QByteArray TRawServer::TConnection::ReadRequest() {
    QByteArray request = ReadHead();
    if (request.isEmpty())
        return {};
    if (HeaderOf(request, "Expect") == "100-continue")
        Write("HTTP/1.1 100 Continue\r\n\r\n");
    if (HeaderOf(request, "Transfer-Encoding") == "chunked")
        request += TakeChunks();
    else
        request += Take(HeaderOf(request, "Content-Length").toLongLong());
    const std::lock_guard lock(FServer.FMutex);
    FServer.FRequests.append(request);
    return request;
}

void TRawServer::TConnection::Write(const QByteArray& ABytes) {
    qsizetype done = 0;
    while (done < ABytes.size()) {
        const auto count = send(FSocket, ABytes.constData() + done,
                                static_cast<std::size_t>(ABytes.size() - done), MSG_NOSIGNAL);
        FIsWritable = count > 0;
        if (!FIsWritable)
            return;
        done += count;
    }
}

void TRawServer::TConnection::WaitForClose() {
    while (Receive()) {
    }
}

bool TRawServer::TConnection::Pause(int AMilliseconds) {
    pollfd event{FSocket, POLLIN, 0};
    return poll(&event, 1, AMilliseconds) == 0 || Receive();
}

void TRawServer::TConnection::RelayTo(int APort) {
    const int far = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = Loopback(APort);
    bool isOpen = connect(far, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    while (isOpen) {
        pollfd ends[] = {{FSocket, POLLIN, 0}, {far, POLLIN, 0}};
        isOpen = poll(ends, 2, -1) > 0;
        for (int i = 0; isOpen && i < 2; ++i) {
            char bytes[16384];
            if (ends[i].revents == 0)
                continue;
            const auto count = recv(ends[i].fd, bytes, sizeof bytes, 0);
            isOpen = count > 0 &&
                     send(ends[1 - i].fd, bytes, static_cast<std::size_t>(count), MSG_NOSIGNAL) == count;
        }
    }
    close(far);
}

void TRawServer::TConnection::Reset() {
    const linger hard{1, 0};
    setsockopt(FSocket, SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
}
