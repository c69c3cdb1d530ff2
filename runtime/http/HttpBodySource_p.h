// The bytes of a request body that is read while it is sent: one stream, or the parts of a form.
#pragma once

#include "runtime/http/HttpMessage.h"

#include <vector>

class TZOHttpBodySource {
public:
    /// ABody is bkStream or bkMultipart and outlives the source. Raises EZOUploadError for a stream that is
    /// not open for reading, or that can be read only once and stands in two parts.
    explicit TZOHttpBodySource(const TZOHttpBody& ABody);

    /// Bytes in all, or -1 when a stream does not know its size.
    qint64 Size() const noexcept { return FSize; }
    const QByteArray& ContentType() const noexcept { return FContentType; }

    /// Goes back to the first byte. Raises EZOUploadError when what was read cannot be read again.
    void Rewind();
    /// Fills up to ASize bytes; 0 at the end. Raises EZOUploadError when a stream fails, or has become
    /// shorter or longer than it said.
    qint64 Read(char* AData, qint64 ASize);

private:
    struct TSegment {
        QByteArray Bytes;
        QIODevice* Stream = nullptr;
        qint64 Size = 0; ///< -1: until the stream ends
    };

    void AddBytes(const QByteArray& ABytes);
    void AddStream(QIODevice* AStream);
    void AddParts(const QList<TZOHttpPart>& AParts);
    qint64 ReadSegment(const TSegment& ASegment, char* AData, qint64 ASize);

    std::vector<TSegment> FSegments;
    std::size_t FCurrent = 0;
    qint64 FOffset = 0; ///< within the current segment
    qint64 FSize = 0;
    QByteArray FContentType;
};
