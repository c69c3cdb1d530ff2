// Values whose content is a stream: files sent and files received.
#pragma once

#include <QString>

class QIODevice;

/// Content to send. The stream is never owned: whoever gives it keeps it open until the request is done.
class ZOUpload {
public:
    QIODevice* GetStream() const noexcept { return FStream; }
    void SetStream(QIODevice* AStream) noexcept { FStream = AStream; }
    /// The content type sent with it; empty leaves the choice to the runtime.
    const QString& GetMimeType() const noexcept { return FMimeType; }
    void SetMimeType(const QString& AMimeType) { FMimeType = AMimeType; }

private:
    QIODevice* FStream = nullptr;
    QString FMimeType;
};

/// Where a response body is written. The stream is never owned.
class ZODownload {
public:
    QIODevice* GetStream() const noexcept { return FStream; }
    void SetStream(QIODevice* AStream) noexcept { FStream = AStream; }

private:
    QIODevice* FStream = nullptr;
};
