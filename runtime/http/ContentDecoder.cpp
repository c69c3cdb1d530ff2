#include "runtime/http/ContentDecoder_p.h"

#include <brotli/decode.h>
#include <zlib.h>
#include <zstd.h>

#include <QList>

#include <new>

namespace {

constexpr std::size_t PieceBytes = 64 * 1024;
/// Nobody compresses what is compressed again and again but to do harm.
constexpr int MaxCodings = 5;

template <class TByte>
TByte* Bytes(const char* AData) {
    return reinterpret_cast<TByte*>(const_cast<char*>(AData));
}

/// gzip (RFC 1952), of one member or several.
class TGzip : public TZOContentDecoder {
public:
    TGzip() : TGzip(15 + 16) {}
    ~TGzip() override { inflateEnd(&FStream); }

    TZODecodeResult Put(const char* AData, qint64 ASize, const TSink& ASink) override {
        FStream.next_in = Bytes<Bytef>(AData);
        FStream.avail_in = static_cast<uInt>(ASize);
        while (FStream.avail_in > 0 || FIsPieceFull) {
            if (FIsComplete && !BeginNextMember())
                return drDamaged;
            char piece[PieceBytes];
            FStream.next_out = Bytes<Bytef>(piece);
            FStream.avail_out = sizeof piece;
            const int code = inflate(&FStream, Z_NO_FLUSH);
            if (code != Z_OK && code != Z_STREAM_END && code != Z_BUF_ERROR)
                return drDamaged;
            FIsComplete = code == Z_STREAM_END;
            FIsPieceFull = FStream.avail_out == 0 && !FIsComplete;
            const auto size = static_cast<qint64>(sizeof piece - FStream.avail_out);
            if (size > 0 && !ASink(piece, size))
                return drStopped;
        }
        return drFine;
    }
    bool IsComplete() const override { return FIsComplete; }

protected:
    explicit TGzip(int AWindowBits) {
        if (inflateInit2(&FStream, AWindowBits) != Z_OK)
            throw std::bad_alloc();
    }
    virtual bool BeginNextMember() { return inflateReset(&FStream) == Z_OK; }

    z_stream FStream = {};

private:
    bool FIsComplete = false;
    bool FIsPieceFull = false; ///< there may be more to come from what was taken
};

/// "deflate" means a zlib stream (RFC 1950), but servers have always sent bare deflate streams (RFC 1951),
/// too.
class TDeflate : public TGzip {
public:
    TDeflate() : TGzip(15) {}

    TZODecodeResult Put(const char* AData, qint64 ASize, const TSink& ASink) override {
        if (!FHasBegun && ASize > 0) {
            FHasBegun = true;
            const bool isZlib = (*AData & 0x0F) == Z_DEFLATED && (*AData & 0x80) == 0;
            if (!isZlib && inflateReset2(&FStream, -15) != Z_OK)
                return drDamaged;
        }
        return TGzip::Put(AData, ASize, ASink);
    }

private:
    bool BeginNextMember() override { return false; }

    bool FHasBegun = false;
};

/// Brotli (RFC 7932).
class TBrotli : public TZOContentDecoder {
public:
    TBrotli() : FState(BrotliDecoderCreateInstance(nullptr, nullptr, nullptr)) {
        if (!FState)
            throw std::bad_alloc();
    }
    ~TBrotli() override { BrotliDecoderDestroyInstance(FState); }

    TZODecodeResult Put(const char* AData, qint64 ASize, const TSink& ASink) override {
        auto left = static_cast<std::size_t>(ASize);
        const auto* next = Bytes<const std::uint8_t>(AData);
        if (IsComplete())
            return left > 0 ? drDamaged : drFine;
        for (;;) {
            char piece[PieceBytes];
            auto* place = Bytes<std::uint8_t>(piece);
            std::size_t room = sizeof piece;
            const auto result = BrotliDecoderDecompressStream(FState, &left, &next, &room, &place, nullptr);
            if (result == BROTLI_DECODER_RESULT_ERROR)
                return drDamaged;
            const auto size = static_cast<qint64>(sizeof piece - room);
            if (size > 0 && !ASink(piece, size))
                return drStopped;
            if (result == BROTLI_DECODER_RESULT_SUCCESS)
                return left > 0 ? drDamaged : drFine;
            if (result == BROTLI_DECODER_RESULT_NEEDS_MORE_INPUT)
                return drFine;
        }
    }
    bool IsComplete() const override { return BrotliDecoderIsFinished(FState); }

private:
    BrotliDecoderState* FState;
};

/// Zstandard (RFC 8878), of one frame or several.
class TZstd : public TZOContentDecoder {
public:
    TZstd() : FStream(ZSTD_createDStream()) {
        if (!FStream)
            throw std::bad_alloc();
    }
    ~TZstd() override { ZSTD_freeDStream(FStream); }

    TZODecodeResult Put(const char* AData, qint64 ASize, const TSink& ASink) override {
        ZSTD_inBuffer in = {AData, static_cast<std::size_t>(ASize), 0};
        for (bool isPieceFull = false; in.pos < in.size || isPieceFull;) {
            char piece[PieceBytes];
            ZSTD_outBuffer out = {piece, sizeof piece, 0};
            const std::size_t code = ZSTD_decompressStream(FStream, &out, &in);
            if (ZSTD_isError(code))
                return drDamaged;
            FIsComplete = code == 0;
            isPieceFull = out.pos == out.size && !FIsComplete;
            if (out.pos > 0 && !ASink(piece, static_cast<qint64>(out.pos)))
                return drStopped;
        }
        return drFine;
    }
    bool IsComplete() const override { return FIsComplete; }

private:
    ZSTD_DStream* FStream;
    bool FIsComplete = false;
};

} // namespace

std::unique_ptr<TZOContentDecoder> TZOContentDecoder::Of(const QByteArray& AName) {
    if (AName == "gzip" || AName == "x-gzip")
        return std::make_unique<TGzip>();
    if (AName == "deflate")
        return std::make_unique<TDeflate>();
    if (AName == "br")
        return std::make_unique<TBrotli>();
    if (AName == "zstd")
        return std::make_unique<TZstd>();
    return nullptr;
}

TZOContentDecoding::TZOContentDecoding(const QByteArray& AHeader) {
    for (const QByteArray& piece : AHeader.split(',')) {
        const QByteArray name = piece.trimmed().toLower();
        if (name.isEmpty() || name == "identity")
            continue;
        auto decoder = FSteps.size() < MaxCodings ? TZOContentDecoder::Of(name) : nullptr;
        if (!decoder) {
            FUnknownName = FSteps.size() < MaxCodings ? name : AHeader;
            return;
        }
        FSteps.insert(FSteps.begin(), std::move(decoder));
    }
}

TZODecodeResult TZOContentDecoding::Put(const char* AData, qint64 ASize,
                                        const TZOContentDecoder::TSink& ASink) {
    FHasBegun |= ASize > 0;
    return PutInto(0, AData, ASize, ASink);
}

TZODecodeResult TZOContentDecoding::PutInto(std::size_t AStep, const char* AData, qint64 ASize,
                                            const TZOContentDecoder::TSink& ASink) {
    if (AStep == FSteps.size())
        return ASink(AData, ASize) ? drFine : drStopped;
    TZODecodeResult inner = drFine;
    const TZODecodeResult result =
        FSteps[AStep]->Put(AData, ASize, [&](const char* APiece, qint64 APieceSize) {
            inner = PutInto(AStep + 1, APiece, APieceSize, ASink);
            return inner == drFine;
        });
    return inner == drFine ? result : inner;
}

bool TZOContentDecoding::IsComplete() const {
    for (const auto& step : FSteps) {
        if (FHasBegun && !step->IsComplete())
            return false;
    }
    return true;
}
