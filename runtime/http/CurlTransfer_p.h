// One exchange with one server: a request goes out, an answer comes in, no redirect is followed.
#pragma once

#include "runtime/http/ContentDecoder_p.h"
#include "runtime/http/HttpBodySource_p.h"
#include "runtime/http/HttpClient.h"
#include "runtime/http/HttpRecord.h"
#include "runtime/http/HttpUrl_p.h"

#include <chrono>
#include <exception>
#include <optional>

#include <curl/curl.h>

/// What is sent and where the answer goes; everything is borrowed.
struct TZOHttpExchange {
    QByteArray Method;
    const TZOHttpUrl* Url = nullptr;
    QList<TZOHttpHeader> Headers;
    const TZOHttpBody* Body = nullptr;   ///< null: none
    TZOHttpBodySource* Source = nullptr; ///< of a body that is streamed
    QIODevice* Destination = nullptr;
    TZOHttpRecord* Record = nullptr;         ///< null: nothing is written down
    const TZOHttpSecrets* Secrets = nullptr; ///< to be kept out of the record
    const TZOHttpClient::TLimits* Limits = nullptr;
    const TZOHttpClient::TIdle* Idle = nullptr;
    QString CaFile;
};

class TZOCurlTransfer {
public:
    /// What every exchange has in common; setting it anew for each would take longer than a small answer.
    static void Prepare(CURL* AEasy);

    /// AEasy is as Prepare left it, and is so again when the transfer is destroyed; its connection stays with
    /// AMulti for the next exchange.
    TZOCurlTransfer(CURLM* AMulti, CURL* AEasy, const TZOHttpExchange& AExchange);
    TZOCurlTransfer(const TZOCurlTransfer&) = delete;
    TZOCurlTransfer& operator=(const TZOCurlTransfer&) = delete;
    ~TZOCurlTransfer();

    /// Raises the failures of runtime/types/Failures.h. FinalUrl and TotalMicros are the caller's to fill.
    TZOHttpResponse Run();

private:
    using TClock = std::chrono::steady_clock;

    /// Whether few enough options were set that they can be taken back one by one.
    bool IsPlain() const;
    void SetUpConnection();
    void SetUpHeaders();
    void SetUpBody();
    void SetUpCallbacks();
    void SetUpRecord();
    CURLcode Drive();
    void CheckSilence();
    void CheckIdle();
    [[noreturn]] void Fail(CURLcode ACode);
    void FinishDestination();
    void FinishBody();
    [[noreturn]] void FailDestination() const;
    void TakeHeaderLine(QByteArrayView ALine);
    void FinishRecord();
    /// Refuses an answer that says its length twice, and differently.
    void CheckLength(const QByteArray& AValue) const;
    bool TakeContent(const char* AData, qint64 ASize);
    bool TakeBody(const char* AData, qint64 ASize);
    bool TakeIntoMemory(const char* AData, qint64 ASize);
    void WritePending();
    bool IsForDestination() const;
    bool IsAnswerUsable(CURLcode ACode) const;
    void CheckComplete() const;

    /// Runs ACall for a callback of the C library, through which no exception may pass.
    template <class TCall>
    bool Guarded(TCall ACall) noexcept;

    static std::size_t OnHeader(char* AData, std::size_t ASize, std::size_t ACount, void* ASelf);
    static std::size_t OnBody(char* AData, std::size_t ASize, std::size_t ACount, void* ASelf);
    static std::size_t OnRead(char* AData, std::size_t ASize, std::size_t ACount, void* ASelf);
    static int OnSeek(void* ASelf, curl_off_t AOffset, int AOrigin);
    static int OnProgress(void* ASelf, curl_off_t, curl_off_t AReceived, curl_off_t, curl_off_t ASent);
    static int OnDebug(CURL*, curl_infotype AKind, char* AData, std::size_t ASize, void* ASelf);
    static int OnConnected(void* ASelf, char*, char*, int, int);

    struct TFreeList {
        void operator()(curl_slist* AList) const { curl_slist_free_all(AList); }
    };

    CURLM* FMulti;
    CURL* FEasy;
    const TZOHttpExchange& FExchange;
    std::unique_ptr<curl_slist, TFreeList> FHeaderList;
    TZOHttpResponse FResponse;
    std::optional<TZOContentDecoding> FDecoding; ///< once the body has begun
    QByteArray FPending;                         ///< on its way to the destination
    qint64 FHeaderBytes = 0;
    qint64 FBodyBytes = 0;
    qint64 FSent = 0;
    qint64 FReceived = 0;
    bool FIsConnected = false;
    bool FIsHeadComplete = false;
    bool FIsErrorBodyFull = false;
    bool FHasActivity = false; ///< since silence was last checked
    TClock::time_point FLastActivity;
    TClock::time_point FLastIdle;
    std::exception_ptr FFailure;
    char FErrorText[CURL_ERROR_SIZE] = "";
};
