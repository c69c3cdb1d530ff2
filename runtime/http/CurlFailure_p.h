// What went wrong in a transfer, as a plain sentence in the exception class of its cause.
#pragma once

#include <QString>

#include <curl/curl.h>

/// What is known about a transfer that failed.
struct TZOCurlFailure {
    CURL* Easy = nullptr;
    CURLcode Code = CURLE_OK;
    QString Place; ///< "host:port"
    QString Detail;
    QString CaFile;
    int ConnectTimeoutMs = 0;
};

/// Raises one of runtime/types/Failures.h.
[[noreturn]] void RaiseCurlFailure(const TZOCurlFailure& AFailure);

/// "2 seconds", "0.3 seconds".
QString SecondsText(int AMilliseconds);
