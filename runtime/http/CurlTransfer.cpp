#include "runtime/http/CurlTransfer_p.h"

#include "runtime/http/CurlFailure_p.h"

#include "runtime/types/Failures.h"

#include <QFile>
#include <QFileDevice>

namespace {

constexpr int WaitMs = 25;
/// The transport hands over 16 KiB at a time; a destination is better served with more.
constexpr qsizetype PendingBytes = 64 * 1024;
constexpr long StreamBufferBytes = 64 * 1024;
/// Bytes of a streamed body that are sent without asking the server first (RFC 9110, 10.1.1).
constexpr qint64 LargestUnaskedBody = 1024 * 1024;
constexpr qsizetype UsualHeaders = 16;
/// A parser may read a little beyond the end; a body with room there need not be copied for it.
constexpr qint64 ParserRoomBytes = 64;
constexpr qint64 MaxReservedBytes = 64 * 1024 * 1024;

QString SizeText(qint64 ABytes) {
    if (ABytes >= 1024 * 1024)
        return QStringLiteral("%1 MiB").arg(ABytes / (1024 * 1024));
    return ABytes % 1024 == 0 ? QStringLiteral("%1 KiB").arg(ABytes / 1024)
                              : QStringLiteral("%1 bytes").arg(ABytes);
}

/// Certificates to trust beside the system's, by the names that other programs use.
QByteArray ExtraCaFile() {
    const QByteArray file = qgetenv("SSL_CERT_FILE");
    return file.isEmpty() ? qgetenv("CURL_CA_BUNDLE") : file;
}

bool TakesBody(const QByteArray& AMethod) {
    return AMethod == "POST" || AMethod == "PUT" || AMethod == "PATCH";
}

} // namespace

TZOCurlTransfer::TZOCurlTransfer(CURLM* AMulti, CURL* AEasy, const TZOHttpExchange& AExchange)
    : FMulti(AMulti), FEasy(AEasy), FExchange(AExchange) {
    SetUpConnection();
    SetUpHeaders();
    SetUpBody();
    SetUpCallbacks();
    SetUpRecord();
}

TZOCurlTransfer::~TZOCurlTransfer() {
    FinishRecord();
    curl_multi_remove_handle(FMulti, FEasy);
    // The handle outlives everything that it was told of, and the next transfer starts as this one did.
    if (IsPlain()) {
        curl_easy_setopt(FEasy, CURLOPT_CURLU, nullptr);
        curl_easy_setopt(FEasy, CURLOPT_HTTPHEADER, nullptr);
        curl_easy_setopt(FEasy, CURLOPT_PROXY, nullptr);
        curl_easy_setopt(FEasy, CURLOPT_CUSTOMREQUEST, nullptr);
        curl_easy_setopt(FEasy, CURLOPT_ERRORBUFFER, nullptr);
    } else {
        curl_easy_reset(FEasy);
        Prepare(FEasy);
    }
}

void TZOCurlTransfer::Prepare(CURL* AEasy) {
    curl_easy_setopt(AEasy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(AEasy, CURLOPT_PATH_AS_IS, 1L);
    curl_easy_setopt(AEasy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(AEasy, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    curl_easy_setopt(AEasy, CURLOPT_ACCEPT_ENCODING, TZOContentDecoding::Accepted);
    curl_easy_setopt(AEasy, CURLOPT_HTTP_CONTENT_DECODING, 0L);
    curl_easy_setopt(AEasy, CURLOPT_SSLVERSION, long(CURL_SSLVERSION_TLSv1_2));
    // The system's certificates stay: they are read from their folder.
    if (const QByteArray file = ExtraCaFile(); !file.isEmpty())
        curl_easy_setopt(AEasy, CURLOPT_CAINFO, file.constData());
    curl_easy_setopt(AEasy, CURLOPT_USERAGENT, "ZO-Bridgework");
    curl_easy_setopt(AEasy, CURLOPT_HEADERFUNCTION, &TZOCurlTransfer::OnHeader);
    curl_easy_setopt(AEasy, CURLOPT_WRITEFUNCTION, &TZOCurlTransfer::OnBody);
    curl_easy_setopt(AEasy, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(AEasy, CURLOPT_XFERINFOFUNCTION, &TZOCurlTransfer::OnProgress);
    curl_easy_setopt(AEasy, CURLOPT_PREREQFUNCTION, &TZOCurlTransfer::OnConnected);
}

bool TZOCurlTransfer::IsPlain() const {
    return FExchange.Method == "GET" && !FExchange.Body && !FExchange.Destination && !FExchange.Record &&
           FExchange.CaFile.isEmpty();
}

void TZOCurlTransfer::SetUpConnection() {
    curl_easy_setopt(FEasy, CURLOPT_CURLU, FExchange.Url->Handle());
    curl_easy_setopt(FEasy, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(FExchange.Limits->ConnectTimeoutMs));
    curl_easy_setopt(FEasy, CURLOPT_ERRORBUFFER, FErrorText);
    if (FExchange.Url->IsLoopback())
        curl_easy_setopt(FEasy, CURLOPT_PROXY, "");
    if (!FExchange.CaFile.isEmpty()) {
        curl_easy_setopt(FEasy, CURLOPT_CAINFO, QFile::encodeName(FExchange.CaFile).constData());
        curl_easy_setopt(FEasy, CURLOPT_CAPATH, nullptr);
    }
    if (FExchange.Source || FExchange.Destination) {
        curl_easy_setopt(FEasy, CURLOPT_BUFFERSIZE, StreamBufferBytes);
        curl_easy_setopt(FEasy, CURLOPT_UPLOAD_BUFFERSIZE, StreamBufferBytes);
    }
}

void TZOCurlTransfer::SetUpHeaders() {
    const auto append = [this](const QByteArray& ALine) {
        FHeaderList.reset(curl_slist_append(FHeaderList.release(), ALine.constData()));
    };
    for (const TZOHttpHeader& header : FExchange.Headers)
        append(header.Value.isEmpty() ? header.Name + ';' : header.Name + ": " + header.Value);
    const bool hasBody = FExchange.Body && FExchange.Body->Kind != bkNone;
    const QByteArray type = !hasBody           ? QByteArray()
                            : FExchange.Source ? FExchange.Source->ContentType()
                                               : FExchange.Body->ContentType;
    // Without this line the transport would claim that every body is a form.
    append(type.isEmpty() ? QByteArray("Content-Type:") : "Content-Type: " + type);
    // Asking first is worth a round trip for much only; a server that does not know it costs a second.
    const bool isSmall =
        FExchange.Source && FExchange.Source->Size() >= 0 && FExchange.Source->Size() <= LargestUnaskedBody;
    if (isSmall)
        append("Expect:");
    curl_easy_setopt(FEasy, CURLOPT_HTTPHEADER, FHeaderList.get());
}

void TZOCurlTransfer::SetUpBody() {
    const QByteArray& method = FExchange.Method;
    if (FExchange.Source) {
        FExchange.Source->Rewind();
        curl_easy_setopt(FEasy, CURLOPT_UPLOAD, 1L);
        curl_easy_setopt(FEasy, CURLOPT_INFILESIZE_LARGE, curl_off_t(FExchange.Source->Size()));
        curl_easy_setopt(FEasy, CURLOPT_READFUNCTION, &TZOCurlTransfer::OnRead);
        curl_easy_setopt(FEasy, CURLOPT_READDATA, this);
        curl_easy_setopt(FEasy, CURLOPT_SEEKFUNCTION, &TZOCurlTransfer::OnSeek);
        curl_easy_setopt(FEasy, CURLOPT_SEEKDATA, this);
    } else if ((FExchange.Body && FExchange.Body->Kind == bkBytes) || TakesBody(method)) {
        const QByteArray content = FExchange.Body ? FExchange.Body->Content : QByteArray();
        curl_easy_setopt(FEasy, CURLOPT_POST, 1L);
        curl_easy_setopt(FEasy, CURLOPT_POSTFIELDSIZE_LARGE, curl_off_t(content.size()));
        // The bytes are not copied: the exchange outlives the transfer.
        curl_easy_setopt(FEasy, CURLOPT_POSTFIELDS, content.isEmpty() ? "" : content.constData());
    } else if (method == "HEAD") {
        curl_easy_setopt(FEasy, CURLOPT_NOBODY, 1L);
    }
    curl_easy_setopt(FEasy, CURLOPT_CUSTOMREQUEST, method.constData());
}

void TZOCurlTransfer::SetUpCallbacks() {
    curl_easy_setopt(FEasy, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(FEasy, CURLOPT_WRITEDATA, this);
    curl_easy_setopt(FEasy, CURLOPT_XFERINFODATA, this);
    curl_easy_setopt(FEasy, CURLOPT_PREREQDATA, this);
}

void TZOCurlTransfer::SetUpRecord() {
    if (!FExchange.Record)
        return;
    FExchange.Record->Hops.append(TZOHttpHop());
    // The transport tells the head that it sends, with what it has added, only to whoever listens closely.
    curl_easy_setopt(FEasy, CURLOPT_DEBUGFUNCTION, &TZOCurlTransfer::OnDebug);
    curl_easy_setopt(FEasy, CURLOPT_DEBUGDATA, this);
    curl_easy_setopt(FEasy, CURLOPT_VERBOSE, 1L);
}

TZOHttpResponse TZOCurlTransfer::Run() {
    curl_multi_add_handle(FMulti, FEasy);
    const CURLcode code = Drive();
    if (FFailure)
        std::rethrow_exception(FFailure);
    if (!IsAnswerUsable(code))
        Fail(code);
    CheckComplete();
    FinishDestination();
    FinishBody();
    return std::move(FResponse);
}

bool TZOCurlTransfer::IsAnswerUsable(CURLcode ACode) const {
    // A server may refuse a body before it has read all of it, and say why.
    const bool isRefusal = ACode == CURLE_SEND_ERROR && FResponse.Status >= 300;
    // Why a request failed is worth more than the end of what the server says about it.
    const bool isCutOff = (ACode == CURLE_PARTIAL_FILE || ACode == CURLE_RECV_ERROR) && FIsHeadComplete &&
                          FResponse.Status >= 400;
    return ACode == CURLE_OK || FIsErrorBodyFull || isRefusal || isCutOff;
}

void TZOCurlTransfer::CheckComplete() const {
    if (!FIsHeadComplete)
        throw EZOTruncatedError(QStringLiteral("The connection to %1 broke before the answer was complete.")
                                    .arg(FExchange.Url->Place()));
    if (FResponse.Status / 100 == 2 && FDecoding && !FDecoding->IsComplete())
        throw EZOTruncatedError(QStringLiteral("The answer of %1 ended before it was complete: what it was "
                                               "compressed to is cut short.")
                                    .arg(FExchange.Url->Place()));
}

CURLcode TZOCurlTransfer::Drive() {
    FLastIdle = FLastActivity = TClock::now();
    int running = 1;
    for (;;) {
        if (curl_multi_perform(FMulti, &running) != CURLM_OK)
            return CURLE_FAILED_INIT;
        if (running == 0)
            break;
        CheckSilence();
        curl_multi_poll(FMulti, nullptr, 0, WaitMs, nullptr);
        CheckIdle();
    }
    int left = 0;
    const CURLMsg* message = curl_multi_info_read(FMulti, &left);
    return message ? message->data.result : CURLE_FAILED_INIT;
}

void TZOCurlTransfer::CheckSilence() {
    const auto limit = std::chrono::milliseconds(FExchange.Limits->StallTimeoutMs);
    const TClock::time_point now = TClock::now();
    if (FHasActivity)
        FLastActivity = now;
    FHasActivity = false;
    if (FIsConnected && now - FLastActivity > limit)
        throw EZOStalledError(
            QStringLiteral("%1 was silent for %2.")
                .arg(FExchange.Url->Place(), SecondsText(FExchange.Limits->StallTimeoutMs)));
}

void TZOCurlTransfer::CheckIdle() {
    const TClock::time_point now = TClock::now();
    if (!*FExchange.Idle || now - FLastIdle < std::chrono::milliseconds(WaitMs))
        return;
    FLastIdle = now;
    if (!(*FExchange.Idle)(FSent, FReceived))
        throw EZOCancelledError(QStringLiteral("The request was cancelled."));
}

void TZOCurlTransfer::Fail(CURLcode ACode) {
    const QString caFile = FExchange.CaFile.isEmpty() ? QFile::decodeName(ExtraCaFile()) : FExchange.CaFile;
    RaiseCurlFailure({FEasy, ACode, FExchange.Url->Place(), QString::fromUtf8(FErrorText), caFile,
                      FExchange.Limits->ConnectTimeoutMs});
}

bool TZOCurlTransfer::IsForDestination() const {
    return FExchange.Destination && FResponse.Status / 100 == 2;
}

void TZOCurlTransfer::TakeHeaderLine(QByteArrayView ALine) {
    FHeaderBytes += ALine.size();
    if (const qint64 limit = FExchange.Limits->MaxHeaderBytes; FHeaderBytes > limit)
        throw EZOResponseTooLargeError(QStringLiteral("The headers that %1 answers with are larger than %2.")
                                           .arg(FExchange.Url->Place(), SizeText(limit)));
    const QByteArrayView line = ALine.trimmed();
    if (line.isEmpty())
        FIsHeadComplete = true;
    if (line.startsWith("HTTP/")) {
        FIsHeadComplete = false;
        const qsizetype status = line.indexOf(' ') + 1;
        const qsizetype end = line.indexOf(' ', status);
        FResponse.Headers.clear();
        FResponse.Headers.reserve(UsualHeaders);
        FResponse.Status = line.sliced(status, (end < 0 ? line.size() : end) - status).toInt();
        FResponse.Reason = end < 0 ? QByteArray() : line.sliced(end + 1).toByteArray();
        if (FExchange.Record) {
            FExchange.Record->Hops.last().StatusLine = line.toByteArray();
            FExchange.Record->Hops.last().ResponseHeaders.clear();
        }
    } else if (const qsizetype colon = line.indexOf(':'); colon > 0) {
        const QByteArray name = line.first(colon).trimmed().toByteArray();
        const QByteArray value = line.sliced(colon + 1).trimmed().toByteArray();
        if (name.compare("Content-Length", Qt::CaseInsensitive) == 0)
            CheckLength(value);
        FResponse.Headers.append({name, value});
        if (FExchange.Record)
            FExchange.Record->Hops.last().ResponseHeaders.append(FResponse.Headers.last());
    }
}

void TZOCurlTransfer::FinishRecord() {
    if (!FExchange.Record)
        return;
    FExchange.Record->BytesReceived = FBodyBytes;
    FExchange.Record->Hops.last().HideCredentials(FExchange.Headers, *FExchange.Secrets);
}

void TZOCurlTransfer::CheckLength(const QByteArray& AValue) const {
    const QByteArray earlier = FResponse.Header("Content-Length");
    QList<QByteArray> lengths = AValue.split(',');
    if (!earlier.isEmpty())
        lengths.append(earlier.split(','));
    const QByteArray first = lengths.first().trimmed();
    // Whoever stands between may have read the other one (RFC 9112, section 6.3).
    for (const QByteArray& length : lengths) {
        if (length.trimmed() != first)
            throw EZOProtocolError(QStringLiteral("%1 contradicts itself: its answer says its length twice, "
                                                  "and differently.")
                                       .arg(FExchange.Url->Place()));
    }
}

bool TZOCurlTransfer::TakeContent(const char* AData, qint64 ASize) {
    const bool isSuccess = FResponse.Status / 100 == 2;
    if (!FDecoding) {
        QByteArray codings;
        for (const TZOHttpHeader& header : FResponse.Headers) {
            if (header.Name.compare("Content-Encoding", Qt::CaseInsensitive) == 0)
                codings += (codings.isEmpty() ? "" : ", ") + header.Value;
        }
        FDecoding.emplace(codings);
        if (isSuccess && !FDecoding->UnknownName().isEmpty())
            throw EZOCompressionError(
                QStringLiteral("The answer of %1 is compressed as \"%2\", which was not asked for.")
                    .arg(FExchange.Url->Place(), QString::fromUtf8(FDecoding->UnknownName().left(100))));
    }
    const TZODecodeResult result = FDecoding->Put(
        AData, ASize, [this](const char* AText, qint64 ATextSize) { return TakeBody(AText, ATextSize); });
    if (result != drDamaged)
        return result == drFine;
    if (isSuccess)
        throw EZOCompressionError(QStringLiteral("The answer of %1 is damaged: it could not be decompressed.")
                                      .arg(FExchange.Url->Place()));
    FIsErrorBodyFull = true; // the status says enough
    return false;
}

bool TZOCurlTransfer::TakeBody(const char* AData, qint64 ASize) {
    FBodyBytes += ASize;
    // Of what was compressed, a little that is received may be seconds of work.
    CheckIdle();
    if (!IsForDestination())
        return TakeIntoMemory(AData, ASize);
    FPending.append(AData, ASize);
    if (FPending.size() >= PendingBytes)
        WritePending();
    return true;
}

bool TZOCurlTransfer::TakeIntoMemory(const char* AData, qint64 ASize) {
    QByteArray& body = FResponse.Body;
    if (FResponse.Status / 100 != 2) {
        body.append(AData, qMin(ASize, Limits::MaxErrorBodyBytes - body.size()));
        FIsErrorBodyFull = body.size() == Limits::MaxErrorBodyBytes;
        return !FIsErrorBodyFull;
    }
    const qint64 limit = FExchange.Limits->MaxBodyBytes;
    if (body.size() + ASize > limit)
        throw EZOResponseTooLargeError(QStringLiteral("The answer of %1 is larger than %2.")
                                           .arg(FExchange.Url->Place(), SizeText(limit)));
    if (body.isEmpty())
        body.reserve(qMin(qMin(limit, MaxReservedBytes), FResponse.Header("Content-Length").toLongLong()) +
                     ParserRoomBytes);
    body.append(AData, ASize);
    return true;
}

// A parser reads on beside a text, and writes nothing there where it shares the text with others.
void TZOCurlTransfer::FinishBody() {
    QByteArray& body = FResponse.Body;
    if (body.capacity() >= body.size() + ParserRoomBytes)
        std::fill_n(body.data() + body.size(), ParserRoomBytes, '\0');
}

void TZOCurlTransfer::WritePending() {
    qint64 done = 0;
    while (done < FPending.size()) {
        const qint64 count =
            FExchange.Destination->write(FPending.constData() + done, FPending.size() - done);
        if (count <= 0)
            FailDestination();
        done += count;
    }
    FResponse.DestinationBytes += done;
    FPending.resize(0);
}

void TZOCurlTransfer::FinishDestination() {
    if (!IsForDestination())
        return;
    WritePending();
    auto* file = qobject_cast<QFileDevice*>(FExchange.Destination);
    if (file && !file->flush())
        FailDestination();
}

void TZOCurlTransfer::FailDestination() const {
    const auto* file = qobject_cast<const QFileDevice*>(FExchange.Destination);
    const QString name = file ? file->fileName() : QString();
    const QString place = name.isEmpty() ? QString() : QStringLiteral(" to ") + name;
    throw EZODownloadError(QStringLiteral("The response could not be written%1: %2")
                               .arg(place, FExchange.Destination->errorString()));
}

template <class TCall>
bool TZOCurlTransfer::Guarded(TCall ACall) noexcept {
    try {
        FHasActivity = true;
        return ACall();
    } catch (...) {
        FFailure = std::current_exception();
        return false;
    }
}

std::size_t TZOCurlTransfer::OnHeader(char* AData, std::size_t ASize, std::size_t ACount, void* ASelf) {
    auto* self = static_cast<TZOCurlTransfer*>(ASelf);
    const auto size = ASize * ACount;
    const bool isTaken = self->Guarded([&] {
        self->TakeHeaderLine(QByteArrayView(AData, static_cast<qsizetype>(size)));
        return true;
    });
    return isTaken ? size : 0;
}

std::size_t TZOCurlTransfer::OnBody(char* AData, std::size_t ASize, std::size_t ACount, void* ASelf) {
    auto* self = static_cast<TZOCurlTransfer*>(ASelf);
    const auto size = ASize * ACount;
    return self->Guarded([&] { return self->TakeContent(AData, static_cast<qint64>(size)); }) ? size : 0;
}

std::size_t TZOCurlTransfer::OnRead(char* AData, std::size_t ASize, std::size_t ACount, void* ASelf) {
    auto* self = static_cast<TZOCurlTransfer*>(ASelf);
    qint64 count = 0;
    const bool isRead = self->Guarded([&] {
        count = self->FExchange.Source->Read(AData, static_cast<qint64>(ASize * ACount));
        return true;
    });
    return isRead ? static_cast<std::size_t>(count) : CURL_READFUNC_ABORT;
}

int TZOCurlTransfer::OnSeek(void* ASelf, curl_off_t AOffset, int AOrigin) {
    auto* self = static_cast<TZOCurlTransfer*>(ASelf);
    if (AOffset != 0 || AOrigin != SEEK_SET)
        return CURL_SEEKFUNC_FAIL;
    const bool isRewound = self->Guarded([&] {
        self->FExchange.Source->Rewind();
        return true;
    });
    return isRewound ? CURL_SEEKFUNC_OK : CURL_SEEKFUNC_FAIL;
}

int TZOCurlTransfer::OnProgress(void* ASelf, curl_off_t, curl_off_t AReceived, curl_off_t, curl_off_t ASent) {
    auto* self = static_cast<TZOCurlTransfer*>(ASelf);
    self->FHasActivity |= AReceived != self->FReceived || ASent != self->FSent;
    self->FReceived = AReceived;
    self->FSent = ASent;
    return 0;
}

int TZOCurlTransfer::OnDebug(CURL*, curl_infotype AKind, char* AData, std::size_t ASize, void* ASelf) {
    auto* self = static_cast<TZOCurlTransfer*>(ASelf);
    // Later heads are of further attempts on another connection: the last one is the one that was answered.
    if (AKind == CURLINFO_HEADER_OUT)
        self->Guarded([&] {
            self->FExchange.Record->Hops.last().SetRequestHead({AData, static_cast<qsizetype>(ASize)});
            return true;
        });
    return 0;
}

int TZOCurlTransfer::OnConnected(void* ASelf, char*, char*, int, int) {
    auto* self = static_cast<TZOCurlTransfer*>(ASelf);
    self->FIsConnected = true;
    self->FHasActivity = true;
    return CURL_PREREQFUNC_OK;
}
