#include "runtime/http/CurlFailure_p.h"

#include "runtime/types/Failures.h"

#include <QRegularExpression>

#include <cerrno>

namespace {

int SystemError(CURL* AEasy) {
    long number = 0;
    curl_easy_getinfo(AEasy, CURLINFO_OS_ERRNO, &number);
    return static_cast<int>(number);
}

QString SystemReason(CURL* AEasy) {
    const int number = SystemError(AEasy);
    return number ? QStringLiteral(": ") + qt_error_string(number) : QString();
}

/// The place to which no connection was made, where it was not the server's: a proxy's.
QString ProxyPlace(const TZOCurlFailure& AFailure) {
    static const QRegularExpression pattern(
        QStringLiteral("^Failed to connect to (\\S+) port (\\d+)( after|:)"));
    const auto match = pattern.match(AFailure.Detail);
    const QString place = match.captured(1) + QLatin1Char(':') + match.captured(2);
    return match.hasMatch() && place != AFailure.Place ? place : QString();
}

[[noreturn]] void RaiseCertificateFailure(const TZOCurlFailure& AFailure) {
    if (AFailure.Code == CURLE_SSL_CACERT_BADFILE)
        throw EZOCertificateError(
            QStringLiteral("The certificates to trust could not be read from \"%1\".").arg(AFailure.CaFile));
    const QString prefix = QStringLiteral("SSL certificate problem: ");
    const QString reason = AFailure.Detail.startsWith(prefix)
                               ? AFailure.Detail.mid(prefix.size())
                               : QStringLiteral("it is made out to another name");
    throw EZOCertificateError(
        QStringLiteral("The certificate of %1 is not to be trusted: %2.").arg(AFailure.Place, reason));
}

[[noreturn]] void RaiseConnectFailure(const TZOCurlFailure& AFailure) {
    const QString proxy = ProxyPlace(AFailure);
    const QString reason = SystemReason(AFailure.Easy);
    switch (AFailure.Code) {
    case CURLE_COULDNT_RESOLVE_HOST:
        throw EZOHostNotFoundError(
            QStringLiteral("The server of %1 is unknown: no address was found for its name.")
                .arg(AFailure.Place));
    case CURLE_COULDNT_RESOLVE_PROXY:
        throw EZOProxyError(QStringLiteral("The proxy on the way to %1 is unknown: no address was found for "
                                           "its name.")
                                .arg(AFailure.Place));
    case CURLE_OPERATION_TIMEDOUT:
        throw EZOConnectTimeoutError(QStringLiteral("%1 did not accept the connection within %2.")
                                         .arg(AFailure.Place, SecondsText(AFailure.ConnectTimeoutMs)));
    default:
        break;
    }
    if (!proxy.isEmpty())
        throw EZOProxyError(QStringLiteral("No connection to %1, the proxy on the way to %2%3.")
                                .arg(proxy, AFailure.Place, reason));
    const QString text = QStringLiteral("No connection to %1%2.").arg(AFailure.Place, reason);
    if (SystemError(AFailure.Easy) == ECONNREFUSED)
        throw EZOConnectionRefusedError(text);
    throw EZOUnreachableError(text);
}

/// A proxy was asked for a way to the server and said no.
void RaiseProxyRefusal(const TZOCurlFailure& AFailure) {
    long status = 0;
    curl_easy_getinfo(AFailure.Easy, CURLINFO_HTTP_CONNECTCODE, &status);
    if (status != 0 && status / 100 != 2)
        throw EZOProxyError(QStringLiteral("The proxy on the way to %1 does not let the request through: it "
                                           "answered with status %2.")
                                .arg(AFailure.Place)
                                .arg(status));
}

/// Whether the other side broke the connection off. The words have the reason; the number may be that of an
/// earlier transfer, and the secure layer sets none.
bool IsReset(const TZOCurlFailure& AFailure) {
    return AFailure.Detail.contains(qt_error_string(ECONNRESET)) ||
           AFailure.Detail.contains(qt_error_string(EPIPE));
}

[[noreturn]] void RaiseReceiveFailure(const TZOCurlFailure& AFailure) {
    if (IsReset(AFailure))
        throw EZOConnectionResetError(
            QStringLiteral("The connection to %1 was reset before the answer was complete.")
                .arg(AFailure.Place));
    if (AFailure.Detail.endsWith(QStringLiteral("in chunked-encoding")))
        throw EZOProtocolError(
            QStringLiteral("The answer of %1 is damaged: its chunks are not as they have to be.")
                .arg(AFailure.Place));
    throw EZOTruncatedError(
        QStringLiteral("The connection to %1 broke before the answer was complete.").arg(AFailure.Place));
}

[[noreturn]] void RaiseSendFailure(const TZOCurlFailure& AFailure) {
    const QString text = IsReset(AFailure)
                             ? QStringLiteral("The connection to %1 was reset before the request was sent.")
                             : QStringLiteral("The connection to %1 broke before the request was sent.");
    throw EZOConnectionResetError(text.arg(AFailure.Place));
}

void RaiseAnswerFailure(const TZOCurlFailure& AFailure) {
    switch (AFailure.Code) {
    case CURLE_GOT_NOTHING:
        throw EZONoAnswerError(
            QStringLiteral("%1 closed the connection without an answer.").arg(AFailure.Place));
    case CURLE_PARTIAL_FILE:
    case CURLE_RECV_ERROR:
    case CURLE_HTTP2_STREAM:
        RaiseReceiveFailure(AFailure);
    case CURLE_SEND_ERROR:
    case CURLE_UPLOAD_FAILED:
        RaiseSendFailure(AFailure);
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_UNSUPPORTED_PROTOCOL:
    case CURLE_HTTP2:
        throw EZOProtocolError(QStringLiteral("What %1 answered is no HTTP.").arg(AFailure.Place));
    case CURLE_BAD_CONTENT_ENCODING:
        throw EZOCompressionError(
            QStringLiteral("The answer of %1 is compressed more often than is undone.").arg(AFailure.Place));
    case CURLE_OUT_OF_MEMORY:
        // The transport's own bound for one line.
        throw EZOResponseTooLargeError(
            QStringLiteral("A header that %1 answers with is larger than 100 KiB.").arg(AFailure.Place));
    case CURLE_SEND_FAIL_REWIND:
        throw EZOUploadError(QStringLiteral("The content to send has to be sent once more to %1, but can be "
                                            "read only once.")
                                 .arg(AFailure.Place));
    default:
        break;
    }
}

} // namespace

QString SecondsText(int AMilliseconds) {
    return AMilliseconds == 1000 ? QStringLiteral("1 second")
                                 : QStringLiteral("%1 seconds").arg(AMilliseconds / 1000.0);
}

void RaiseCurlFailure(const TZOCurlFailure& AFailure) {
    RaiseProxyRefusal(AFailure);
    switch (AFailure.Code) {
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
    case CURLE_COULDNT_CONNECT:
    case CURLE_OPERATION_TIMEDOUT:
        RaiseConnectFailure(AFailure);
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_ISSUER_ERROR:
        RaiseCertificateFailure(AFailure);
    case CURLE_SSL_CONNECT_ERROR:
        throw EZOSecureConnectionError(
            QStringLiteral("%1 did not agree on a secure connection.").arg(AFailure.Place));
    case CURLE_PROXY:
        throw EZOProxyError(QStringLiteral("The proxy on the way to %1 does not let the request through.")
                                .arg(AFailure.Place));
    default:
        break;
    }
    RaiseAnswerFailure(AFailure);
    throw EZOTransportError(
        QStringLiteral("The request to %1 failed: %2.")
            .arg(AFailure.Place, AFailure.Detail.isEmpty()
                                     ? QString::fromUtf8(curl_easy_strerror(AFailure.Code))
                                     : AFailure.Detail));
}
