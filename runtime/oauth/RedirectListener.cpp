#include "runtime/oauth/RedirectListener.h"

#include "runtime/oauth/OAuthUrl_p.h"

#include "runtime/types/Failures.h"

#include <QElapsedTimer>
#include <QTcpServer>
#include <QTcpSocket>

#include <algorithm>
#include <vector>

namespace {

constexpr qsizetype MaxHeadBytes = 64 * 1024;
/// Browsers open connections ahead that they do not use.
constexpr std::size_t MaxConnections = 32;
constexpr int FlushMs = 1000;
/// How often connections that are open already are looked at.
constexpr int TurnMs = 10;

/// Nothing in these pages comes from outside.
constexpr const char* Page = R"(<!DOCTYPE html>
<html lang="en"><head><meta charset="utf-8"><title>%1</title>
<meta name="viewport" content="width=device-width"><meta name="color-scheme" content="light dark">
<style>body{font-family:system-ui,sans-serif;margin:15vh auto;max-width:32em;padding:0 1em}</style>
</head><body><h1>%1</h1><p>%2</p></body></html>
)";

QByteArray PageOf(const char* ATitle, const char* AText) {
    return QString::fromLatin1(Page).arg(QLatin1String(ATitle), QLatin1String(AText)).toUtf8();
}

void Answer(QTcpSocket& ASocket, const char* AStatus, const QByteArray& APage) {
    ASocket.write(
        QByteArray("HTTP/1.1 ") + AStatus +
        "\r\nContent-Type: text/html; charset=utf-8\r\nContent-Length: " + QByteArray::number(APage.size()) +
        "\r\nConnection: close\r\nCache-Control: no-store\r\nReferrer-Policy: no-referrer\r\n"
        "X-Content-Type-Options: nosniff\r\n"
        "Content-Security-Policy: default-src 'none'; style-src 'unsafe-inline'\r\n\r\n" +
        APage);
    ASocket.flush();
    while (ASocket.bytesToWrite() > 0 && ASocket.waitForBytesWritten(FlushMs)) {
    }
    ASocket.disconnectFromHost();
}

} // namespace

class TZORedirectListener::TImpl {
public:
    explicit TImpl(const QUrl& AUrl) : FPath(AUrl.path(QUrl::FullyEncoded).toLatin1()) {
        if (FPath.isEmpty())
            FPath = "/";
        const bool isV6 = AUrl.host() == QStringLiteral("::1");
        Listen(isV6 ? QHostAddress::LocalHostIPv6 : QHostAddress::LocalHost,
               static_cast<quint16>(std::max(AUrl.port(), 0)));
        // Which of its two addresses a browser takes for this name is not said; a machine may have only one.
        if (AUrl.host() == QStringLiteral("localhost")) {
            auto other = std::make_unique<QTcpServer>();
            if (other->listen(QHostAddress::LocalHostIPv6, Port()))
                FServers.push_back(std::move(other));
        }
    }

    quint16 Port() const { return FServers.front()->serverPort(); }

    std::optional<QByteArray> Turn(int AMs) {
        Accept(AMs);
        for (const auto& socket : FSockets) {
            if (socket->state() == QAbstractSocket::ConnectedState)
                socket->waitForReadyRead(0);
            if (const auto query = Read(*socket)) {
                FAnswered = socket.get();
                return query;
            }
        }
        FSockets.erase(
            std::remove_if(FSockets.begin(), FSockets.end(),
                           [](const auto& s) { return s->state() != QAbstractSocket::ConnectedState; }),
            FSockets.end());
        return std::nullopt;
    }

    void Finish(bool AIsSignedOn) {
        Accept(0);
        for (const auto& server : FServers)
            server->close();
        const QByteArray page =
            AIsSignedOn ? PageOf("Signed on", "You can close this page and go back to the program that "
                                              "opened it.")
                        : PageOf("Not signed on", "The program that opened this page says what went wrong.");
        if (FAnswered)
            Answer(*FAnswered, AIsSignedOn ? "200 OK" : "400 Bad Request", page);
        for (const auto& socket : FSockets) {
            const bool isSecond = socket.get() != FAnswered &&
                                  socket->state() == QAbstractSocket::ConnectedState &&
                                  (socket->bytesAvailable() > 0 || socket->waitForReadyRead(0));
            if (isSecond)
                Answer(*socket, "410 Gone",
                       PageOf("Already answered", "This sign-on is over. You can close this page."));
        }
        FSockets.clear();
        FAnswered = nullptr;
    }

private:
    void Listen(QHostAddress::SpecialAddress AAddress, quint16 APort) {
        auto server = std::make_unique<QTcpServer>();
        if (!server->listen(AAddress, APort)) {
            if (server->serverError() == QAbstractSocket::AddressInUseError)
                throw EZORedirectUrlError(
                    QStringLiteral("Port %1 of this machine, which the redirect URL names, is in use by "
                                   "another program.")
                        .arg(APort));
            throw EZORedirectUrlError(
                QStringLiteral("The redirect URL cannot be listened on: %1.").arg(server->errorString()));
        }
        FServers.push_back(std::move(server));
    }

    void Accept(int AMs) {
        for (const auto& server : FServers) {
            server->waitForNewConnection(server == FServers.front() ? AMs : 0);
            while (server->hasPendingConnections()) {
                std::unique_ptr<QTcpSocket> socket(server->nextPendingConnection());
                socket->setParent(nullptr);
                if (FSockets.size() < MaxConnections)
                    FSockets.push_back(std::move(socket));
            }
        }
    }

    /// The query of a request for the redirect URL's path. Turns any other request away.
    std::optional<QByteArray> Read(QTcpSocket& ASocket) const {
        if (!ASocket.isOpen())
            return std::nullopt;
        const QByteArray head = ASocket.peek(MaxHeadBytes);
        if (!head.contains("\r\n\r\n")) {
            if (head.size() == MaxHeadBytes)
                Answer(ASocket, "431 Request Header Fields Too Large",
                       PageOf("Too large", "Not understood."));
            return std::nullopt;
        }
        ASocket.readAll();
        const QList<QByteArray> words = head.left(head.indexOf('\r')).split(' ');
        const QByteArray target = words.value(1);
        const qsizetype mark = target.indexOf('?');
        if (words.size() == 3 && target.left(mark < 0 ? target.size() : mark) == FPath) {
            if (words.front() == "GET")
                return mark < 0 ? QByteArray("") : target.mid(mark + 1);
            Answer(ASocket, "405 Method Not Allowed", PageOf("Not understood", "Nothing to see here."));
            return std::nullopt;
        }
        Answer(ASocket, "404 Not Found", PageOf("Not found", "Nothing to see here."));
        return std::nullopt;
    }

    QByteArray FPath;
    std::vector<std::unique_ptr<QTcpServer>> FServers;
    std::vector<std::unique_ptr<QTcpSocket>> FSockets;
    QTcpSocket* FAnswered = nullptr;
};

TZORedirectListener::TZORedirectListener(const QString& ARedirectUrl) {
    QUrl url(ARedirectUrl.trimmed(), QUrl::StrictMode);
    const bool isUsable = url.isValid() && url.scheme() == QStringLiteral("http") &&
                          OAuthUrl::IsLoopback(url.host()) && url.userInfo().isEmpty() && !url.hasFragment();
    if (!isUsable)
        throw EZORedirectUrlError(
            QStringLiteral("The redirect URL \"%1\" cannot be listened on: it has to be an http address of "
                           "this machine, like http://127.0.0.1/callback.")
                .arg(ARedirectUrl));
    FImpl = std::make_unique<TImpl>(url);
    // A port that was given stays as the user has registered it, letter by letter.
    if (url.port() > 0) {
        FRedirectUri = ARedirectUrl.trimmed();
        return;
    }
    url.setPort(FImpl->Port());
    FRedirectUri = QString::fromLatin1(url.toEncoded());
}

TZORedirectListener::~TZORedirectListener() = default;

std::optional<QByteArray> TZORedirectListener::Wait(int AMs) {
    QElapsedTimer clock;
    clock.start();
    for (;;) {
        const int left = AMs - static_cast<int>(clock.elapsed());
        if (auto query = FImpl->Turn(std::clamp(left, 0, TurnMs)))
            return query;
        if (left <= 0)
            return std::nullopt;
    }
}

void TZORedirectListener::Finish(bool AIsSignedOn) { FImpl->Finish(AIsSignedOn); }
