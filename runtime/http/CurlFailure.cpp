#include "runtime/http/CurlFailure_p.h"

#include "runtime/types/Failures.h"

namespace {

QString SystemReason(CURL* AEasy) {
    long number = 0;
    curl_easy_getinfo(AEasy, CURLINFO_OS_ERRNO, &number);
    return number ? QStringLiteral(": ") + qt_error_string(static_cast<int>(number)) : QString();
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
    switch (AFailure.Code) {
    case CURLE_COULDNT_RESOLVE_HOST:
        throw EZOHostNotFoundError(
            QStringLiteral("The server of %1 is unknown: no address was found for its name.")
                .arg(AFailure.Place));
    case CURLE_COULDNT_RESOLVE_PROXY:
        throw EZOHostNotFoundError(QStringLiteral("The proxy on the way to %1 is unknown: no address was "
                                                  "found for its name.")
                                       .arg(AFailure.Place));
    case CURLE_OPERATION_TIMEDOUT:
        throw EZOTimeoutError(QStringLiteral("%1 did not accept the connection within %2.")
                                  .arg(AFailure.Place, SecondsText(AFailure.ConnectTimeoutMs)));
    default:
        throw EZOConnectError(
            QStringLiteral("No connection to %1%2.").arg(AFailure.Place, SystemReason(AFailure.Easy)));
    }
}

QString BrokenText(CURLcode ACode) {
    switch (ACode) {
    case CURLE_GOT_NOTHING:
        return QStringLiteral("%1 closed the connection without an answer.");
    case CURLE_PARTIAL_FILE:
    case CURLE_RECV_ERROR:
    case CURLE_HTTP2_STREAM:
        return QStringLiteral("The connection to %1 broke before the answer was complete.");
    case CURLE_SEND_ERROR:
    case CURLE_UPLOAD_FAILED:
        return QStringLiteral("The connection to %1 broke before the request was sent.");
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_UNSUPPORTED_PROTOCOL:
    case CURLE_HTTP2:
        return QStringLiteral("What %1 answered is no HTTP.");
    case CURLE_BAD_CONTENT_ENCODING:
        return QStringLiteral("The answer of %1 is damaged: it could not be decompressed.");
    case CURLE_SSL_CONNECT_ERROR:
        return QStringLiteral("%1 did not agree on a secure connection.");
    default:
        return {};
    }
}

} // namespace

QString SecondsText(int AMilliseconds) {
    return AMilliseconds == 1000 ? QStringLiteral("1 second")
                                 : QStringLiteral("%1 seconds").arg(AMilliseconds / 1000.0);
}

void RaiseCurlFailure(const TZOCurlFailure& AFailure) {
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
    default:
        break;
    }
    if (AFailure.Code == CURLE_SEND_FAIL_REWIND)
        throw EZOUploadError(QStringLiteral("The content to send has to be sent once more to %1, but can be "
                                            "read only once.")
                                 .arg(AFailure.Place));
    const QString text = BrokenText(AFailure.Code);
    if (!text.isEmpty())
        throw EZOTransportError(text.arg(AFailure.Place));
    throw EZOTransportError(
        QStringLiteral("The request to %1 failed: %2.")
            .arg(AFailure.Place, AFailure.Detail.isEmpty()
                                     ? QString::fromUtf8(curl_easy_strerror(AFailure.Code))
                                     : AFailure.Detail));
}
