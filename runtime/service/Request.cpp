#include "runtime/service/Request.h"

#include "runtime/service/Credentials_p.h"
#include "runtime/service/RequestBuilder_p.h"
#include "runtime/service/ResponseText_p.h"

#include "runtime/http/HttpClient.h"
#include "runtime/http/HttpSecrets.h"
#include "runtime/json/JsonCodec.h"
#include "runtime/types/Streams.h"

#include <QIODevice>

#include <algorithm>

namespace {

bool IsText(const QByteArray& AMediaType) {
    return AMediaType.startsWith("text/") || AMediaType.endsWith("/xml") || AMediaType.endsWith("+xml") ||
           AMediaType.endsWith("yaml") || AMediaType == "application/x-www-form-urlencoded";
}

bool IsJsonType(const QByteArray& AMediaType) {
    return AMediaType == "application/json" || AMediaType == "text/json" || AMediaType.endsWith("+json");
}

void StoreText(const TZOHttpResponse& AAnswer, TZOValueHolder& AHolder) {
    const auto text = ResponseText::BodyText(AAnswer);
    if (!text)
        throw EZOContentTypeError(QStringLiteral("The server answered with %1 that is no text.")
                                      .arg(QString::fromUtf8(ResponseText::MediaType(AAnswer))));
    void* ref = nullptr;
    if (AHolder.SetValue(true, ref))
        *static_cast<QString*>(ref) = *text;
}

/// JSON in another encoding than UTF-8, or after a byte order mark, still has to be read.
QByteArray JsonUtf8(const TZOHttpResponse& AAnswer) {
    const bool isPlain = !AAnswer.Header("Content-Type").toLower().contains("charset=") &&
                         !AAnswer.Body.startsWith("\xEF\xBB\xBF");
    const auto text = isPlain ? std::nullopt : ResponseText::BodyText(AAnswer);
    return text ? text->toUtf8() : AAnswer.Body;
}

void StoreJson(const TZOHttpResponse& AAnswer, TZOValueHolder& AHolder) {
    const QByteArray type = ResponseText::MediaType(AAnswer);
    try {
        TZOJson::Decode(JsonUtf8(AAnswer), AHolder);
    } catch (const EZOJsonDepthError&) {
        throw;
    } catch (const EZOJsonError& error) {
        if (IsJsonType(type))
            throw;
        const QString named =
            type.isEmpty() ? QStringLiteral("does not say what its answer is")
                           : QStringLiteral("calls its answer \"%1\", not JSON").arg(QString::fromUtf8(type));
        throw EZOJsonError(error.Message() + QStringLiteral("\nThe server ") + named + QLatin1Char('.'));
    }
}

void StoreAnswer(const TZOHttpResponse& AAnswer, TZOValueHolder& AHolder) {
    if (AAnswer.Body.isEmpty())
        AHolder.Clear();
    else if (AHolder.Type()->Kind() == vkString && IsText(ResponseText::MediaType(AAnswer)))
        StoreText(AAnswer, AHolder);
    else
        StoreJson(AAnswer, AHolder);
}

QIODevice* DestinationOf(TZOValueHolder& AResponse) {
    void* ref = nullptr;
    const auto* download = AResponse.GetValue(ref) ? static_cast<const ZODownload*>(ref) : nullptr;
    if (!download || !download->GetStream())
        throw EZODownloadError(QStringLiteral("There is no file to write the download to."));
    return download->GetStream();
}

bool CanBeRepeated(const TZOHttpBody& ABody) {
    const auto isRepeatable = [](const QIODevice* AStream) { return !AStream || !AStream->isSequential(); };
    return isRepeatable(ABody.Stream) &&
           std::all_of(ABody.Parts.begin(), ABody.Parts.end(),
                       [&](const TZOHttpPart& p) { return isRepeatable(p.Stream); });
}

} // namespace

struct ZORequest::TValue {
    explicit TValue(const ZOObject::TTypeInfo* AType) : Object(AType->CreateInstance().release()) {}
    TValue(const TValue&) = delete;
    TValue& operator=(const TValue&) = delete;
    ~TValue() { delete Object; }

    // Owned, but open to be replaced by whoever edits the value through its storage.
    ZOObject* Object;
};

ZORequest::ZORequest(TZORestService* AService, const TZOTypeInfo* AOperation)
    : FService(AService), FOper(AService->TypeInfo()->FindOper(AOperation)) {
    if (!FOper)
        throw EInvalidCast(QStringLiteral("The type is not the request of an operation of %1.")
                               .arg(AService->Class()->ClassName()));
    FValue = std::make_unique<TValue>(FOper->Request);
}

ZORequest::ZORequest(ZORequest&&) noexcept = default;
ZORequest& ZORequest::operator=(ZORequest&&) noexcept = default;
ZORequest::~ZORequest() = default;

const TZOTypeInfo* ZORequest::Type() const { return FOper->Request; }

void* ZORequest::Data() { return &FValue->Object; }

QString ZORequest::ServerUrl() const {
    const bool isMoved = FService->ServerUrl() != FService->TypeInfo()->BaseUrl();
    return isMoved || FOper->Http.Server.isEmpty() ? FService->ServerUrl() : FOper->Http.Server;
}

TZOHttpRequest ZORequest::Prepare() const {
    const TZOSecurityScheme* tokenScheme = nullptr;
    return PrepareWith(tokenScheme);
}

TZOHttpRequest ZORequest::PrepareWith(const TZOSecurityScheme*& ATokenScheme) const {
    TZOHttpRequest request = TZORequestBuilder(*FOper, FValue->Object).Build(ServerUrl());
    ATokenScheme = Credentials::Apply(*FService, *FOper, request);
    return request;
}

TZOHttpResponse ZORequest::SendWithToken(QIODevice* ADestination, bool AIsTokenNew) {
    const TZOSecurityScheme* tokenScheme = nullptr;
    TZOHttpRequest request = PrepareWith(tokenScheme);
    request.Destination = ADestination;
    request.Record = FRecord;
    TZOHttpResponse answer = FService->HttpClient().Execute(request);
    if (answer.Status / 100 == 2)
        return answer;
    // A server may say back the credentials that it does not take.
    const auto failure = [&] { return TZOHttpSecrets(request).Hide(ResponseText::Failure(answer)); };
    const bool isRefused = answer.Status == 401 && tokenScheme && FService->CanObtainToken(*tokenScheme);
    if (!isRefused)
        throw EZOHttpStatusError(failure());
    if (AIsTokenNew)
        throw EZOHttpStatusError(failure() + QStringLiteral("\nThis is what it says to a new token."));
    FService->ObtainToken(*tokenScheme);
    if (!CanBeRepeated(request.Body))
        throw EZOHttpStatusError(failure() +
                                 QStringLiteral("\nThere is a new token now, but what was to be sent can be "
                                                "read only once. Execute the request again."));
    return SendWithToken(ADestination, true);
}

TZOHttpResponse ZORequest::Send(QIODevice* ADestination) {
    const TZOSecurityScheme* wanted = Credentials::WantedToken(*FService, *FOper);
    if (wanted) {
        // What cannot be sent is told before the user is asked to sign on for it.
        TZORequestBuilder(*FOper, FValue->Object).Build(ServerUrl());
        FService->ObtainToken(*wanted);
    }
    return SendWithToken(ADestination, wanted != nullptr);
}

void ZORequest::ExecRequest(TZOValueHolder* AResponse) {
    if (AResponse->Type()->Kind() == vkDownload) {
        Send(DestinationOf(*AResponse));
        return;
    }
    AResponse->Clear();
    StoreAnswer(Send(nullptr), *AResponse);
}

void ZORequest::ExecRequest() { Send(nullptr); }
