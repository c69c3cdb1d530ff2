// Decompression of answers (RFC 9110, section 8.4). The transport library could do it, but takes a compressed
// stream that was cut short for a whole one.
#pragma once

#include <QByteArray>

#include <functional>
#include <memory>
#include <vector>

enum TZODecodeResult { drFine, drStopped, drDamaged };

/// One coding, undone piece by piece.
class TZOContentDecoder {
public:
    /// Takes a piece of what was decoded; false when no more is wanted.
    using TSink = std::function<bool(const char* AData, qint64 ASize)>;

    TZOContentDecoder() = default;
    TZOContentDecoder(const TZOContentDecoder&) = delete;
    TZOContentDecoder& operator=(const TZOContentDecoder&) = delete;
    virtual ~TZOContentDecoder() = default;

    /// The next bytes of the coded content. What ASink raises passes through.
    virtual TZODecodeResult Put(const char* AData, qint64 ASize, const TSink& ASink) = 0;
    /// Whether the coded content has come to its end.
    virtual bool IsComplete() const = 0;

    /// The decoder of the coding of that name; null when there is none.
    static std::unique_ptr<TZOContentDecoder> Of(const QByteArray& AName);
};

/// All codings of one answer.
class TZOContentDecoding {
public:
    /// What answers may be coded with, for "Accept-Encoding".
    static constexpr char Accepted[] = "deflate, gzip, br, zstd";

    /// AHeader is the value of "Content-Encoding"; empty: none.
    explicit TZOContentDecoding(const QByteArray& AHeader);

    /// The coding that nothing is known of; empty: all are known.
    const QByteArray& UnknownName() const noexcept { return FUnknownName; }
    TZODecodeResult Put(const char* AData, qint64 ASize, const TZOContentDecoder::TSink& ASink);
    /// Whether all has come to its end; so has content that never began.
    bool IsComplete() const;

private:
    TZODecodeResult PutInto(std::size_t AStep, const char* AData, qint64 ASize,
                            const TZOContentDecoder::TSink& ASink);

    std::vector<std::unique_ptr<TZOContentDecoder>> FSteps; ///< the last coding first
    QByteArray FUnknownName;
    bool FHasBegun = false;
};
