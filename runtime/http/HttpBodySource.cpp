#include "runtime/http/HttpBodySource_p.h"

#include "runtime/types/Failures.h"

#include <QFileDevice>
#include <QRandomGenerator>

#include <algorithm>
#include <cstring>

namespace {

QString NameOf(QIODevice* AStream) {
    const auto* file = qobject_cast<QFileDevice*>(AStream);
    return file && !file->fileName().isEmpty() ? QStringLiteral("\"%1\"").arg(file->fileName())
                                               : QStringLiteral("The content to send");
}

/// How RFC 7578 and the browsers write a name between quotes.
QByteArray QuotedName(const QByteArray& AName) {
    QByteArray quoted = AName;
    quoted.replace('"', "%22").replace('\r', "%0D").replace('\n', "%0A");
    return '"' + quoted + '"';
}

QByteArray PartHead(const TZOHttpPart& APart) {
    QByteArray head = "Content-Disposition: form-data; name=" + QuotedName(APart.Name);
    if (!APart.FileName.isEmpty())
        head += "; filename=" + QuotedName(APart.FileName.toUtf8());
    if (!APart.ContentType.isEmpty())
        head += "\r\nContent-Type: " + APart.ContentType;
    return head + "\r\n\r\n";
}

QByteArray NewBoundary() {
    quint32 random[5];
    QRandomGenerator::system()->fillRange(random);
    return "zo-" + QByteArray(reinterpret_cast<const char*>(random), sizeof random).toHex();
}

} // namespace

TZOHttpBodySource::TZOHttpBodySource(const TZOHttpBody& ABody) : FContentType(ABody.ContentType) {
    if (ABody.Kind == bkStream)
        AddStream(ABody.Stream);
    else
        AddParts(ABody.Parts);
}

void TZOHttpBodySource::AddBytes(const QByteArray& ABytes) {
    FSegments.push_back({ABytes, nullptr, ABytes.size()});
    if (FSize >= 0)
        FSize += ABytes.size();
}

void TZOHttpBodySource::AddStream(QIODevice* AStream) {
    if (!AStream || !AStream->isReadable())
        throw EZOUploadError(NameOf(AStream) + QStringLiteral(" is not open for reading."));
    const bool isSecondUse = std::any_of(FSegments.begin(), FSegments.end(),
                                         [&](const TSegment& s) { return s.Stream == AStream; });
    if (isSecondUse && AStream->isSequential())
        throw EZOUploadError(NameOf(AStream) + QStringLiteral(" can be read only once, but is sent twice."));
    const qint64 size = AStream->isSequential() ? -1 : AStream->size();
    FSegments.push_back({{}, AStream, size});
    FSize = size < 0 || FSize < 0 ? -1 : FSize + size;
}

void TZOHttpBodySource::AddParts(const QList<TZOHttpPart>& AParts) {
    const QByteArray boundary = NewBoundary();
    FContentType = "multipart/form-data; boundary=" + boundary;
    QByteArray between = "--" + boundary + "\r\n";
    for (const TZOHttpPart& part : AParts) {
        AddBytes(between + PartHead(part));
        if (part.Stream)
            AddStream(part.Stream);
        else
            AddBytes(part.Content);
        between = "\r\n--" + boundary + "\r\n";
    }
    AddBytes((AParts.isEmpty() ? "--" : "\r\n--") + boundary + "--\r\n");
}

void TZOHttpBodySource::Rewind() {
    for (std::size_t i = 0; i <= FCurrent && i < FSegments.size(); ++i) {
        const bool wasRead = i < FCurrent || FOffset > 0;
        if (wasRead && FSegments[i].Stream && FSegments[i].Stream->isSequential())
            throw EZOUploadError(NameOf(FSegments[i].Stream) +
                                 QStringLiteral(" has to be sent once more, but can be read only once."));
    }
    FCurrent = 0;
    FOffset = 0;
}

qint64 TZOHttpBodySource::Read(char* AData, qint64 ASize) {
    qint64 done = 0;
    while (done < ASize && FCurrent < FSegments.size()) {
        const qint64 count = ReadSegment(FSegments[FCurrent], AData + done, ASize - done);
        done += count;
        FOffset += count;
        if (count == 0) {
            ++FCurrent;
            FOffset = 0;
        }
    }
    return done;
}

qint64 TZOHttpBodySource::ReadSegment(const TSegment& ASegment, char* AData, qint64 ASize) {
    const qint64 wanted = ASegment.Size < 0 ? ASize : qMin(ASize, ASegment.Size - FOffset);
    if (wanted == 0)
        return 0;
    if (!ASegment.Stream) {
        std::memcpy(AData, ASegment.Bytes.constData() + FOffset, static_cast<std::size_t>(wanted));
        return wanted;
    }
    QIODevice& stream = *ASegment.Stream;
    // One stream may stand in several parts, so its position is not ours alone.
    const bool isPlaced = stream.isSequential() || stream.pos() == FOffset || stream.seek(FOffset);
    const qint64 count = isPlaced ? stream.read(AData, wanted) : -1;
    const auto* file = qobject_cast<QFileDevice*>(&stream);
    const bool isSequentialEnd =
        stream.isSequential() && count < 0 && !(file && file->error() != QFileDevice::NoError);
    if (count < 0 && !isSequentialEnd)
        throw EZOUploadError(NameOf(&stream) +
                             QStringLiteral(" could not be read: %1").arg(stream.errorString()));
    if (count == 0 && ASegment.Size >= 0)
        throw EZOUploadError(NameOf(&stream) + QStringLiteral(" ended before all of it was sent."));
    const bool isLast = ASegment.Size >= 0 && FOffset + count == ASegment.Size;
    if (isLast && !stream.isSequential() && stream.size() != ASegment.Size)
        throw EZOUploadError(NameOf(&stream) + QStringLiteral(" changed its size while it was sent."));
    return qMax(count, qint64(0));
}
