// A server that says exactly what a test tells it to, byte by byte.
#pragma once

#include <QByteArray>
#include <QList>

#include <functional>
#include <list>
#include <mutex>
#include <set>
#include <thread>

/// Listens on a free port of 127.0.0.1 for as long as it lives. Every connection is served by a thread of its
/// own, which runs the test's handler; the connection is closed when the handler returns.
class TRawServer {
public:
    class TConnection {
    public:
        TConnection(TRawServer& AServer, int ASocket) : FServer(AServer), FSocket(ASocket) {}
        /// One whole request: head, empty line and body, chunks put together. Empty when the client has
        /// closed. Answers "Expect: 100-continue" on the way.
        QByteArray ReadRequest();
        /// The head of a request, without its body.
        QByteArray ReadHead();
        void Write(const QByteArray& ABytes);
        /// Says nothing until the client closes or the server is stopped.
        void WaitForClose();
        /// Waits that long; false when the client has closed meanwhile.
        bool Pause(int AMilliseconds);
        /// Whether the client still takes what is written.
        bool IsWritable() const noexcept { return FIsWritable; }
        /// Carries bytes to and from that port of 127.0.0.1 until one side closes.
        void RelayTo(int APort);
        /// Ends the connection with a reset instead of an orderly close.
        void Reset();

    private:
        bool Receive();
        QByteArray Take(qsizetype ASize);
        QByteArray TakeLine();
        QByteArray TakeChunks();

        TRawServer& FServer;
        int FSocket;
        bool FIsWritable = true;
        QByteArray FBuffer;
    };
    using THandler = std::function<void(TConnection& AConnection)>;
    using TAnswer = std::function<QByteArray(const QByteArray& ARequest)>;

    explicit TRawServer(THandler AHandler);
    /// Answers request after request on each connection.
    static THandler Answering(TAnswer AAnswer);
    /// A 200 of that content type, or of AStatusLine, with its length.
    static QByteArray Answer(const QByteArray& ABody, const QByteArray& AContentType = "text/plain",
                             const QByteArray& AStatusLine = "200 OK", const QByteArray& AHeaders = {});
    TRawServer(const TRawServer&) = delete;
    TRawServer& operator=(const TRawServer&) = delete;
    ~TRawServer();

    int Port() const noexcept { return FPort; }
    QByteArray Url(const QByteArray& APath) const;
    /// What ReadRequest has read so far, on all connections.
    QList<QByteArray> Requests() const;
    /// The same; they are forgotten then.
    QList<QByteArray> TakeRequests();
    int ConnectionCount() const;

private:
    void Accept();
    void Serve(int ASocket);

    THandler FHandler;
    int FListener = -1;
    int FPort = 0;
    mutable std::mutex FMutex;
    QList<QByteArray> FRequests;
    std::set<int> FSockets;
    std::list<std::thread> FThreads;
    int FConnectionCount = 0;
    bool FIsStopped = false;
    std::thread FAcceptor;
};

/// A port of 127.0.0.1 on which nothing listens.
int ClosedPort();
/// Whether anything listens on that port of 127.0.0.1.
bool IsListening(int APort);
