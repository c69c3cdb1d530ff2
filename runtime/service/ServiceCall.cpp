#include "runtime/service/ServiceCall.h"

#include "runtime/types/Streams.h"

#include "platform/Exceptions.h"

#include <algorithm>

namespace {

POper FindOper(const TZORestService* AService, const QString& AName) {
    const auto& opers = AService->TypeInfo()->Opers();
    const auto found =
        std::find_if(opers.begin(), opers.end(), [&](const auto& oper) { return oper.Name == AName; });
    if (found == opers.end())
        throw EInvalidCast(
            QStringLiteral("%1 has no operation \"%2\".").arg(AService->Class()->ClassName(), AName));
    return &*found;
}

} // namespace

TZOServiceCall::TZOServiceCall(TZORestService* AService, const QString& AOperation)
    : FOper(FindOper(AService, AOperation)), FRequest(AService, FOper->Request) {}

TZOValueRef TZOServiceCall::Request() { return {FRequest.Type(), FRequest.Data()}; }

TZOValueRef TZOServiceCall::Exec() {
    FResponse.reset();
    if (!FOper->Response) {
        FRequest.ExecRequest();
        return {};
    }
    FResponse.emplace(FOper->Response, true);
    FRequest.ExecRequest(&*FResponse);
    void* ref = nullptr;
    FResponse->GetValue(ref);
    return {FOper->Response, ref};
}

void TZOServiceCall::Exec(QIODevice* ADestination) {
    if (!FOper->Response || FOper->Response->Kind() != vkDownload)
        throw EInvalidCast(QStringLiteral("%1 does not answer with a file.").arg(FOper->Name));
    TZOValueHolder download(FOper->Response, true);
    void* ref = nullptr;
    download.GetByRef(ref);
    static_cast<ZODownload*>(ref)->SetStream(ADestination);
    FRequest.ExecRequest(&download);
}
