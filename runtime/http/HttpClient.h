// HTTP exchanges over libcurl, on the calling thread.
#pragma once

#include "runtime/http/HttpMessage.h"

#include "runtime/types/Limits.h"

#include <functional>
#include <memory>

/// Sends requests and reads answers. Connections are kept open between the requests of one client.
/// Certificates are always checked; TLS is 1.2 or newer. Only http and https are spoken.
///
/// The environment is read when a client is made and when it connects: SSL_CERT_FILE, or else CURL_CA_BUNDLE,
/// names a PEM file of certificates to trust beside the system's; http_proxy, https_proxy, all_proxy and
/// no_proxy (the last three in capitals, too) name proxies. This machine's own addresses are reached without
/// a proxy.
class TZOHttpClient {
public:
    /// Bounds that a request must keep to; see runtime/types/Limits.h.
    struct TLimits {
        int ConnectTimeoutMs = ::Limits::ConnectTimeoutMs;
        int StallTimeoutMs = ::Limits::StallTimeoutMs;
        int MaxRedirects = ::Limits::MaxRedirects;
        qint64 MaxHeaderBytes = ::Limits::MaxHeaderBytes;
        qint64 MaxBodyBytes = ::Limits::MaxBodyBytes;
    };
    /// Called at least every 50 ms while a request is under way; false cancels it (EZOCancelledError).
    using TIdle = std::function<bool(qint64 ABytesSent, qint64 ABytesReceived)>;

    /// Hears the head of each request and answer, line by line, "> " before what is sent and "< " before
    /// what comes. Credentials are left out.
    using TTrace = std::function<void(const QByteArray& ALine)>;

    TZOHttpClient();
    TZOHttpClient(const TZOHttpClient&) = delete;
    TZOHttpClient& operator=(const TZOHttpClient&) = delete;
    ~TZOHttpClient();

    TLimits& Limits() noexcept { return FLimits; }
    void SetIdle(TIdle AIdle) { FIdle = std::move(AIdle); }
    void SetTrace(TTrace ATrace) { FTrace = std::move(ATrace); }
    /// A PEM file with the certificates to trust instead of the system's; empty: the system's.
    void SetCaFile(const QString& APath) { FCaFile = APath; }

    /// Sends ARequest, follows redirects, and returns the final answer whatever its status is. Credentials
    /// stay with the origin (scheme, host and port) of ARequest.Url, and a body is never sent to another
    /// origin. Raises the failures of runtime/types/Failures.h that happen on the way.
    TZOHttpResponse Execute(const TZOHttpRequest& ARequest);

private:
    class TImpl;
    std::unique_ptr<TImpl> FImpl;
    TLimits FLimits;
    TIdle FIdle;
    TTrace FTrace;
    QString FCaFile;
};
