#include "openapi/OperationMaker_p.h"

void TOperationMaker::ReadResponse() {
    const TDocView responses = FOperation.Oper["responses"];
    if (responses && !responses.IsObject())
        FModel.Source.Report(responses, QStringLiteral("Responses have to be an object."));
    const TZOTypeInfo* other = nullptr;
    bool hasSuccess = false;
    // The first JSON among the successes counts, else the first content of any kind.
    const auto take = [&](TDocView AGiven) {
        const TDocView response = FModel.Source.Resolve(AGiven);
        bool isJson = false;
        const TZOTypeInfo* type = !response             ? nullptr
                                  : FModel.IsSwagger2() ? SwaggerResponseType(response, isJson)
                                                        : ResponseType(response, isJson);
        if (isJson)
            FOper.Response = type;
        else if (!other)
            other = type;
        return isJson;
    };
    for (const auto& [key, value] : responses.IsObject() ? responses.Entries() : TDocView().Entries()) {
        if (!key.Text().startsWith(u'2'))
            continue;
        hasSuccess = true;
        if (take(value))
            return;
    }
    if (!hasSuccess && responses["default"] && take(responses["default"]))
        return;
    FOper.Response = other;
}

const TZOTypeInfo* TOperationMaker::ResponseType(TDocView AResponse, bool& AIsJson) {
    const TDocView content = AResponse["content"];
    for (const auto& [media, value] : content.Entries()) {
        const TDocView schema = value["schema"];
        if (!IsJson(media.Text()) || (schema && FModel.Schemas->IsBinary(schema)))
            continue;
        AIsJson = true;
        return schema ? FModel.Schemas->TypeOf(schema) : TZOTypeLibrary::Scalar(vkAny);
    }
    return content.Count() > 0 ? TZOTypeLibrary::Scalar(vkDownload) : nullptr;
}

const TZOTypeInfo* TOperationMaker::SwaggerResponseType(TDocView AResponse, bool& AIsJson) {
    const TDocView schema = AResponse["schema"];
    if (!schema)
        return nullptr;
    const TDocView produces = MediaTypes("produces");
    AIsJson = produces.Count() == 0;
    for (const auto& [none, media] : produces.Entries())
        AIsJson |= IsJson(media.Text());
    AIsJson = AIsJson && !FModel.Schemas->IsBinary(schema);
    return AIsJson ? FModel.Schemas->TypeOf(schema) : TZOTypeLibrary::Scalar(vkDownload);
}
