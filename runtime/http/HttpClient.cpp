#include "runtime/http/HttpClient.h"

#include "runtime/http/CurlTransfer_p.h"

#include "runtime/types/Failures.h"

#include <QScopeGuard>

#include <algorithm>
#include <optional>

namespace {

using TClock = std::chrono::steady_clock;

/// What may follow a redirect to another origin: only what says which form of answer is wanted.
bool IsHarmless(const TZOHttpHeader& AHeader) {
    static const QByteArray names[] = {"accept", "accept-charset", "accept-encoding", "accept-language",
                                       "user-agent"};
    return !AHeader.IsCredential &&
           std::find(std::begin(names), std::end(names), AHeader.Name.toLower()) != std::end(names);
}

bool IsRedirect(const TZOHttpResponse& AResponse) {
    static const int statuses[] = {301, 302, 303, 307, 308};
    return std::find(std::begin(statuses), std::end(statuses), AResponse.Status) != std::end(statuses) &&
           !AResponse.Header("Location").isEmpty();
}

/// Whether the method becomes GET, and the body is left behind (RFC 9110, section 15.4).
bool BecomesGet(int AStatus, const QByteArray& AMethod) {
    if (AStatus == 303)
        return AMethod != "GET" && AMethod != "HEAD";
    return (AStatus == 301 || AStatus == 302) && AMethod == "POST";
}

/// The characters of a method or header name (RFC 9110, section 5.6.2).
bool IsToken(const QByteArray& AText) {
    return !AText.isEmpty() && std::all_of(AText.begin(), AText.end(), [](char c) {
        const bool isAlnum = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        return isAlnum || QByteArrayView("!#$%&'*+-.^_`|~").contains(c);
    });
}

bool IsHeaderText(const QByteArray& AText) {
    return std::none_of(AText.begin(), AText.end(), [](char c) {
        const auto code = static_cast<unsigned char>(c);
        return (code < 0x20 && c != '\t') || code == 0x7F;
    });
}

/// A line break in a header would let its text add headers of its own. The text itself may be a secret, so
/// the message names the header only.
void CheckHeaders(const TZOHttpRequest& ARequest) {
    if (!IsToken(ARequest.Method))
        throw EZORequestValueError(
            QStringLiteral("\"%1\" is no HTTP method.").arg(QString::fromUtf8(ARequest.Method)));
    const auto check = [](const QByteArray& AName, const QByteArray& AValue) {
        const QString name = QString::fromUtf8(AName);
        if (!IsToken(AName))
            throw EZORequestValueError(QStringLiteral("\"%1\" is no name of a header.").arg(name));
        if (!IsHeaderText(AValue))
            throw EZORequestValueError(
                QStringLiteral("The header \"%1\" cannot hold line breaks or other control characters.")
                    .arg(name));
    };
    for (const TZOHttpHeader& header : ARequest.Headers)
        check(header.Name, header.Value);
    check("Content-Type", ARequest.Body.ContentType);
    for (const TZOHttpPart& part : ARequest.Body.Parts)
        check("Content-Type", part.ContentType);
}

/// The state of one request while it is sent from place to place.
class TZORedirectWalk {
public:
    explicit TZORedirectWalk(const TZOHttpRequest& ARequest)
        : FRequest(ARequest), FUrl(ARequest.Url), FCredentialQuery(ARequest.CredentialQuery) {
        FExchange.Method = ARequest.Method;
        FExchange.Headers = ARequest.Headers;
        FExchange.Destination = ARequest.Destination;
        FExchange.Record = ARequest.Record;
        if (ARequest.Body.Kind != bkNone)
            FExchange.Body = &ARequest.Body;
        if (ARequest.Body.Kind == bkStream || ARequest.Body.Kind == bkMultipart)
            FExchange.Source = &FSource.emplace(ARequest.Body);
        FUrl.AddQuery(FCredentialQuery);
        FExchange.Url = &FUrl;
    }

    TZOHttpExchange& Exchange() noexcept { return FExchange; }

    QByteArray ShownUrl() const {
        // Putting an address together again takes longer than reading a small answer.
        if (!FIsRedirected && FCredentialQuery.isEmpty() && !FRequest.Url.contains('@') &&
            !FRequest.Url.contains('#'))
            return FRequest.Url;
        if (FRequest.CredentialQuery.isEmpty())
            return FUrl.Text();
        TZOHttpUrl shown(FUrl.Text());
        shown.RemoveQuery(FRequest.CredentialQuery);
        return shown.Text();
    }

    void Follow(const TZOHttpResponse& AResponse) {
        FIsRedirected = true;
        TZOHttpUrl target = FUrl.Resolved(AResponse.Header("Location"));
        if (BecomesGet(AResponse.Status, FExchange.Method)) {
            FExchange.Method = "GET";
            FExchange.Body = nullptr;
            FExchange.Source = nullptr;
        }
        if (!target.IsSameOrigin(FUrl))
            LeaveOrigin(target);
        // A server may repeat the query it was asked with, the key in it included.
        target.RemoveQuery(FRequest.CredentialQuery);
        target.AddQuery(FCredentialQuery);
        FUrl = std::move(target);
    }

private:
    /// For good: a server elsewhere that redirects back does not get to use the credentials.
    void LeaveOrigin(const TZOHttpUrl& ATarget) {
        if (FExchange.Body)
            throw EZORedirectRefusedError(
                QStringLiteral("%1 redirects to %2, another server: what the request "
                               "holds is not sent there.")
                    .arg(FUrl.Place(), ATarget.Place()));
        FCredentialQuery.clear();
        auto& headers = FExchange.Headers;
        headers.erase(
            std::remove_if(headers.begin(), headers.end(), [](const auto& h) { return !IsHarmless(h); }),
            headers.end());
    }

    const TZOHttpRequest& FRequest;
    TZOHttpUrl FUrl;
    QByteArray FCredentialQuery;
    bool FIsRedirected = false;
    std::optional<TZOHttpBodySource> FSource;
    TZOHttpExchange FExchange;
};

void TraceRequest(const TZOHttpClient::TTrace& ATrace, const TZOHttpExchange& AExchange,
                  const QByteArray& AShownUrl) {
    const TZOHttpSecrets& secrets = *AExchange.Secrets;
    ATrace("> " + AExchange.Method + ' ' + secrets.Hide(AShownUrl));
    for (const TZOHttpHeader& header : AExchange.Headers)
        ATrace("> " + header.Name + ": " +
               (header.IsCredential ? QByteArray("(not shown)") : secrets.Hide(header.Value)));
}

void TraceResponse(const TZOHttpClient::TTrace& ATrace, const TZOHttpResponse& AResponse,
                   const TZOHttpSecrets& ASecrets) {
    ATrace("< " + QByteArray::number(AResponse.Status) + ' ' + ASecrets.Hide(AResponse.Reason));
    QList<TZOHttpHeader> headers = AResponse.Headers;
    ASecrets.HideIn(headers);
    for (const TZOHttpHeader& header : headers)
        ATrace("< " + header.Name + ": " + header.Value);
}

} // namespace

class TZOHttpClient::TImpl {
public:
    TImpl() {
        [[maybe_unused]] static const CURLcode isReady = curl_global_init(CURL_GLOBAL_DEFAULT);
        FMulti = curl_multi_init();
        FEasy = curl_easy_init();
        if (!FMulti || !FEasy)
            throw std::bad_alloc();
        TZOCurlTransfer::Prepare(FEasy);
    }
    TImpl(const TImpl&) = delete;
    TImpl& operator=(const TImpl&) = delete;
    ~TImpl() {
        curl_easy_cleanup(FEasy);
        curl_multi_cleanup(FMulti);
    }

    TZOHttpResponse Run(const TZOHttpExchange& AExchange) {
        return TZOCurlTransfer(FMulti, FEasy, AExchange).Run();
    }

    bool IsBusy = false;

private:
    CURLM* FMulti = nullptr;
    CURL* FEasy = nullptr;
};

TZOHttpClient::TZOHttpClient() : FImpl(std::make_unique<TImpl>()) {}
TZOHttpClient::~TZOHttpClient() = default;

TZOHttpResponse TZOHttpClient::Execute(const TZOHttpRequest& ARequest) {
    if (FImpl->IsBusy)
        throw EZOTransportError(QStringLiteral("Another request of this service is still under way."));
    CheckHeaders(ARequest);
    FImpl->IsBusy = true;
    const auto release = qScopeGuard([this] { FImpl->IsBusy = false; });

    const TClock::time_point start = TClock::now();
    const auto micros = [start] {
        return std::chrono::duration_cast<std::chrono::microseconds>(TClock::now() - start).count();
    };
    if (ARequest.Record)
        *ARequest.Record = TZOHttpRecord();
    const auto finish = qScopeGuard([&] {
        if (ARequest.Record)
            ARequest.Record->TotalMicros = micros();
    });
    TZORedirectWalk walk(ARequest);
    TZOHttpExchange& exchange = walk.Exchange();
    exchange.Limits = &FLimits;
    exchange.Idle = &FIdle;
    exchange.CaFile = FCaFile;
    std::optional<TZOHttpSecrets> secrets;
    if (FTrace || ARequest.Record)
        exchange.Secrets = &secrets.emplace(ARequest);
    const auto run = [&] {
        if (FTrace)
            TraceRequest(FTrace, exchange, walk.ShownUrl());
        TZOHttpResponse answer = FImpl->Run(exchange);
        if (FTrace)
            TraceResponse(FTrace, answer, *exchange.Secrets);
        return answer;
    };
    TZOHttpResponse response = run();
    for (int count = 0; IsRedirect(response); ++count) {
        if (count == FLimits.MaxRedirects)
            throw EZORedirectLimitError(QStringLiteral("%1 redirects once more after %2 redirects.")
                                            .arg(exchange.Url->Place())
                                            .arg(count));
        walk.Follow(response);
        response = run();
    }
    response.FinalUrl = walk.ShownUrl();
    response.TotalMicros = micros();
    return response;
}
