#include "tests/servers/Faults_p.h"

#include <brotli/encode.h>
#include <zlib.h>
#include <zstd.h>

#include <algorithm>
#include <stdexcept>

using Faults::Fine;
using Faults::TAct;
using TConnection = TRawServer::TConnection;

namespace {

const QByteArray FineJson = R"({"text": "fine"})";

QByteArray Gzip(const QByteArray& AText, int AWindowBits = 15 + 16) {
    z_stream stream = {};
    if (deflateInit2(&stream, 9, Z_DEFLATED, AWindowBits, 9, Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::bad_alloc();
    QByteArray packed(static_cast<qsizetype>(deflateBound(&stream, static_cast<uLong>(AText.size()))) + 64,
                      Qt::Uninitialized);
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(AText.constData()));
    stream.avail_in = static_cast<uInt>(AText.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, Z_FINISH);
    packed.truncate(static_cast<qsizetype>(stream.total_out));
    deflateEnd(&stream);
    return packed;
}

QByteArray Brotli(const QByteArray& AText) {
    std::size_t size = BrotliEncoderMaxCompressedSize(static_cast<std::size_t>(AText.size()));
    QByteArray packed(static_cast<qsizetype>(size), Qt::Uninitialized);
    BrotliEncoderCompress(5, BROTLI_DEFAULT_WINDOW, BROTLI_MODE_TEXT, static_cast<std::size_t>(AText.size()),
                          reinterpret_cast<const std::uint8_t*>(AText.constData()), &size,
                          reinterpret_cast<std::uint8_t*>(packed.data()));
    packed.truncate(static_cast<qsizetype>(size));
    return packed;
}

QByteArray Zstd(const QByteArray& AText) {
    QByteArray packed(static_cast<qsizetype>(ZSTD_compressBound(static_cast<std::size_t>(AText.size()))),
                      Qt::Uninitialized);
    packed.truncate(
        static_cast<qsizetype>(ZSTD_compress(packed.data(), static_cast<std::size_t>(packed.size()),
                                             AText.constData(), static_cast<std::size_t>(AText.size()), 3)));
    return packed;
}

QByteArray Coded(const QByteArray& ACoding, const QByteArray& ABody) {
    return TRawServer::Answer(ABody, "application/json", "200 OK", "Content-Encoding: " + ACoding + "\r\n");
}

/// A text that does not compress to next to nothing, so that there is something to cut.
QByteArray LongJson() {
    QByteArray text = R"({"text": ")";
    for (unsigned i = 0, state = 1; i < 3000; ++i) {
        state = state * 1664525 + 1013904223;
        text += static_cast<char>('a' + (state >> 24) % 26);
    }
    return text + R"("})";
}

/// With a Content-Length that is right: nothing shows but in the stream itself.
QByteArray CutShort(const QByteArray& ACoding, const QByteArray& APacked) {
    return Coded(ACoding, APacked.left(APacked.size() * 2 / 3));
}

QByteArray RedirectTo(const QByteArray& APlace, const QByteArray& AStatus = "302 Found") {
    return TRawServer::Answer({}, "text/plain", AStatus, "Location: " + APlace + "\r\n");
}

void Drip(TConnection& AConnection, const QByteArray& AStart, const QByteArray& ADrop) {
    AConnection.Write(AStart);
    while (AConnection.IsWritable() && AConnection.Pause(5))
        AConnection.Write(ADrop);
}

void Flood(TConnection& AConnection, const QByteArray& AStart, const QByteArray& APiece) {
    AConnection.Write(AStart);
    while (AConnection.IsWritable())
        AConnection.Write(APiece);
}

QByteArray Chunk(const QByteArray& ABytes) {
    return QByteArray::number(ABytes.size(), 16) + "\r\n" + ABytes + "\r\n";
}

constexpr const char* Chunked =
    "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nTransfer-Encoding: chunked\r\n";

/// A mebibyte of zeros in a kibibyte, 1,024 times: quick to make, as whoever waits for it gives up soon.
QByteArray Bomb() { return Gzip(QByteArray(1024 * 1024, '0')).repeated(1024); }

QByteArray Nested(int ADepth) {
    return QByteArray("{\"more\":").repeated(ADepth) + "{}" + QByteArray(ADepth, '}');
}

TAct Bytes(const QByteArray& AName, const QByteArray& ABytes) {
    return {AName, [ABytes](TConnection& AConnection, const QByteArray&) { AConnection.Write(ABytes); }};
}

TAct Whole(const QByteArray& AName, const QByteArray& AAnswer) {
    TAct act = Bytes(AName, AAnswer);
    act.StaysOpen = true;
    return act;
}

TAct Reset(const QByteArray& AName, const QByteArray& ABytes) {
    return {AName, [ABytes](TConnection& AConnection, const QByteArray&) {
                AConnection.Write(ABytes);
                AConnection.Reset();
            }};
}

TAct Silent(const QByteArray& AName, const QByteArray& ABytes) {
    return {AName, [ABytes](TConnection& AConnection, const QByteArray&) {
                AConnection.Write(ABytes);
                AConnection.WaitForClose();
            }};
}

TAct Endless(const QByteArray& AName, const QByteArray& AStart, const QByteArray& APiece) {
    return {AName, [=](TConnection& AConnection, const QByteArray&) { Flood(AConnection, AStart, APiece); }};
}

std::vector<TAct> BrokenConnections() {
    const QByteArray start =
        "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: 100\r\n\r\n{\"te";
    return {
        Bytes("early-close", {}),
        Bytes("close-in-head", "HTTP/1.1 200 OK\r\nContent-Ty"),
        Bytes("truncated-body", start),
        Bytes("truncated-chunk", Chunked + QByteArray("\r\n50\r\n{\"text\"")),
        Bytes("missing-last-chunk", Chunked + QByteArray("\r\n") + Chunk(FineJson)),
        Reset("reset", {}),
        Reset("reset-in-body", start),
        Silent("silence", {}),
        Silent("silence-in-head", "HTTP/1.1 200 OK\r\nContent-Ty"),
        Silent("silence-in-body", start),
        {"slow-drip",
         [](TConnection& AConnection, const QByteArray&) {
             Drip(AConnection, "HTTP/1.1 200 OK\r\nContent-Length: 1000000\r\n\r\n", " ");
         }},
        {"slow-drip-in-head", [](TConnection& AConnection,
                                 const QByteArray&) { Drip(AConnection, "HTTP/1.1 200 OK\r\nX: ", "x"); }},
    };
}

std::vector<TAct> NoHttp() {
    return {
        Bytes("not-http", "SSH-2.0-OpenSSH_9.2\r\n"),
        Bytes("bad-chunk-size", Chunked + QByteArray("\r\nzz\r\n{}\r\n0\r\n\r\n")),
        Bytes("chunk-without-end", Chunked + QByteArray("\r\n2\r\n{}{}\r\n0\r\n\r\n")),
        Bytes("negative-length", "HTTP/1.1 200 OK\r\nContent-Length: -5\r\n\r\n{}"),
        Whole("two-lengths", "HTTP/1.1 200 OK\r\nContent-Length: 16\r\nContent-Length: 2\r\n\r\n" + FineJson),
        Whole("list-of-lengths", "HTTP/1.1 200 OK\r\nContent-Length: 16, 2\r\n\r\n" + FineJson),
        Whole("same-length-twice",
              "HTTP/1.1 200 OK\r\nContent-Length: 16\r\nContent-Length: 16\r\n\r\n" + FineJson),
        Whole("no-content-with-body", "HTTP/1.1 204 No Content\r\nContent-Length: 16\r\n\r\n" + FineJson),
        Whole("more-than-its-length",
              "HTTP/1.1 200 OK\r\nContent-Length: 16\r\n\r\n" + FineJson + "{\"more\": 1}"),
    };
}

std::vector<TAct> Compressed() {
    const QByteArray json = LongJson();
    return {
        Whole("gzip", Coded("gzip", Gzip(FineJson))),
        Whole("gzip-in-two-members", Coded("gzip", Gzip(FineJson.left(5)) + Gzip(FineJson.mid(5)))),
        Whole("deflate", Coded("deflate", Gzip(FineJson, 15))),
        Whole("bare-deflate", Coded("deflate", Gzip(FineJson, -15))),
        Whole("brotli", Coded("br", Brotli(FineJson))),
        Whole("zstd", Coded("zstd", Zstd(FineJson))),
        Whole("zstd-in-gzip", Coded("zstd, gzip", Gzip(Zstd(FineJson)))),
        Whole("empty-gzip", Coded("gzip", {})),
        Whole("gzip-cut-short", CutShort("gzip", Gzip(json))),
        Whole("gzip-without-checksum", Coded("gzip", Gzip(FineJson).chopped(4))),
        Whole("deflate-cut-short", CutShort("deflate", Gzip(json, 15))),
        Whole("brotli-cut-short", CutShort("br", Brotli(json))),
        Whole("zstd-cut-short", CutShort("zstd", Zstd(json))),
        Whole("wrong-gzip", Coded("gzip", FineJson)),
        Whole("wrong-checksum", Coded("gzip", Gzip(FineJson).chopped(8) + "12345678")),
        Whole("rubbish-behind-gzip", Coded("gzip", Gzip(FineJson) + "rubbish")),
        Whole("wrong-brotli", Coded("br", "\xFF\xFF\xFF\xFF")),
        Whole("wrong-zstd", Coded("zstd", FineJson)),
        Whole("unknown-coding", Coded("x-secret", FineJson)),
        Whole("too-many-codings", Coded("gzip, gzip, gzip, gzip, gzip, gzip", Gzip(FineJson))),
        {"gzip-bomb",
         [](TConnection& AConnection, const QByteArray&) { AConnection.Write(Coded("gzip", Bomb())); }},
    };
}

std::vector<TAct> Redirects() {
    const auto to = [](const QByteArray& AName, const QByteArray& APlace) {
        return Whole(AName, RedirectTo(APlace));
    };
    return {
        to("redirect-loop", "/redirect-loop"),
        to("redirect-to-file", "file:///etc/passwd"),
        to("redirect-to-ftp", "ftp://127.0.0.1/x"),
        to("redirect-to-nowhere", "http://"),
        {"redirect-elsewhere",
         [](TConnection& AConnection, const QByteArray& AElsewhere) {
             AConnection.Write(RedirectTo(AElsewhere + "/landing"));
         },
         true},
        {"redirect-the-body-elsewhere",
         [](TConnection& AConnection, const QByteArray& AElsewhere) {
             AConnection.Write(RedirectTo(AElsewhere + "/landing", "307 Temporary Redirect"));
         },
         true},
    };
}

std::vector<TAct> Sizes() {
    QByteArray many;
    for (int i = 0; i < 500; ++i)
        many += "X-Header-" + QByteArray::number(i) + ": " + QByteArray(50, 'x') + "\r\n";
    return {
        Whole("many-headers", TRawServer::Answer(FineJson, "application/json", "200 OK", many)),
        {"header-of-10-mb",
         [](TConnection& AConnection, const QByteArray&) {
             AConnection.Write("HTTP/1.1 200 OK\r\nX-Long: " + QByteArray(10'000'000, 'x') + "\r\n\r\n");
         }},
        Endless("endless-headers", "HTTP/1.1 200 OK\r\n", "X-Filler: " + QByteArray(90, 'x') + "\r\n"),
        Endless("endless-interim-answers", {}, "HTTP/1.1 103 Early Hints\r\nLink: </x>\r\n\r\n"),
        Endless("endless-body", "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\n\r\n\"",
                QByteArray(60'000, 'x')),
        Endless("endless-chunks", Chunked + QByteArray("\r\n"), Chunk(QByteArray(5000, ' '))),
        Endless("endless-error", "HTTP/1.1 500 Oh No\r\nContent-Type: text/html\r\n\r\n<p>Broken.</p>",
                QByteArray(60'000, ' ')),
        Whole("deep-json", TRawServer::Answer(Nested(1001), "application/json")),
        Whole("invalid-utf-8", TRawServer::Answer("{\"text\": \"\xC3\x28\"}", "application/json")),
    };
}

std::vector<TAct> Refusals() {
    const auto status = [](const QByteArray& AName, const QByteArray& AStatus, const QByteArray& AType,
                           const QByteArray& AHeaders, const QByteArray& ABody) {
        return Whole(AName, TRawServer::Answer(ABody, AType, AStatus, AHeaders));
    };
    return {
        status("too-many-requests", "429 Too Many Requests", "application/problem+json",
               "Retry-After: 120\r\n",
               R"({"type": "about:blank", "title": "Slow down", "detail": "100 calls an hour are free."})"),
        status("overloaded", "503 Service Unavailable", "text/html",
               "Retry-After: Fri, 31 Dec 2027 23:59:59 GMT\r\n",
               "<html><head><title>503 Service Unavailable</title></head><body>"
               "<h1>Back&nbsp;soon</h1></body></html>"),
        Bytes("error-cut-short", "HTTP/1.1 403 Forbidden\r\nContent-Type: text/plain\r\nContent-Length: 100"
                                 "\r\n\r\nNot for you"),
        status("error-in-wrong-gzip", "418 I'm a teapot", "text/plain", "Content-Encoding: gzip\r\n",
               "no gzip"),
    };
}

std::vector<TAct> Everything() {
    std::vector<TAct> all;
    for (auto* group : {&BrokenConnections, &NoHttp, &Compressed, &Redirects, &Sizes, &Refusals}) {
        for (TAct& act : group())
            all.push_back(std::move(act));
    }
    return all;
}

} // namespace

const TAct* Faults::Find(const QByteArray& AName) {
    static const std::vector<TAct> acts = Everything();
    const auto found = std::find_if(acts.begin(), acts.end(), [&](const TAct& a) { return a.Name == AName; });
    return found == acts.end() ? nullptr : &*found;
}

QByteArray Faults::Fine() { return TRawServer::Answer(FineJson, "application/json"); }
