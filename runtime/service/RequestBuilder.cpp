#include "runtime/service/RequestBuilder_p.h"

#include "runtime/service/BodyParts_p.h"

#include "platform/Utf8.h"
#include "runtime/json/JsonCodec.h"

#include <algorithm>

namespace {

QByteArray Plain(const QString& AText) { return AText.toUtf8(); }

/// A cookie's value stands bare: what may not (RFC 6265, section 4.1.1) is percent-encoded, and no more,
/// as servers differ in what they decode.
QByteArray CookieText(const QString& AText) {
    QByteArray text;
    for (const char c : AText.toUtf8()) {
        const auto code = static_cast<unsigned char>(c);
        const bool isBare = code > 0x20 && code < 0x7F && c != '"' && c != ',' && c != ';' && c != '\\';
        text += isBare ? QByteArray(1, c) : QByteArray(1, c).toPercentEncoding();
    }
    return text;
}

/// A text that is "." or ".." would be taken for a step between folders.
QByteArray WithoutSteps(const QByteArray& AText) {
    return AText == "." || AText == ".." ? QByteArray(AText).replace('.', "%2E") : AText;
}

} // namespace

TZORequestBuilder::TZORequestBuilder(const TZORestService::TOper& AOper, const ZOObject* AObject)
    : FOper(AOper), FObject(AObject) {}

TZOHttpRequest TZORequestBuilder::Build(const QString& AServerUrl) {
    CollectParams();
    FRequest.Method = FOper.Http.Method;
    for (const TParam& param : FParams)
        Place(param);
    FinishBody();
    AddAcceptHeader();
    if (!FCookies.isEmpty())
        FRequest.Headers.append({"Cookie", FCookies, true});
    FRequest.Url = Url(AServerUrl);
    return std::move(FRequest);
}

void TZORequestBuilder::CollectParams() {
    for (const TZOParamBinding& binding : FOper.Http.Params) {
        const PProperty property = FOper.Request->FindProperty(binding.Property);
        FHasForm |= binding.Place == ppFormField;
        void* ref = nullptr;
        if (!property || !FObject || !ZOObject::TData::GetProp(FObject, property->Index, ref))
            continue;
        const TZOTypeInfo* type = property->Type;
        const void* value = ref;
        const QByteArray name = binding.WireName.isEmpty() ? binding.Property.toUtf8() : binding.WireName;
        if (ParamText::SkipUnions(type, value) || binding.Place == ppBody)
            FParams.push_back({&binding, property->Type, ref, name});
    }
}

void TZORequestBuilder::Place(const TParam& AParam) {
    switch (AParam.Binding->Place) {
    case ppPath:
        break; // asked for by the path
    case ppQuery:
        AppendPairs(FQuery, AParam, "&", &ParamText::Encode);
        break;
    case ppHeader:
        PlaceHeader(AParam);
        break;
    case ppCookie:
        AppendPairs(FCookies, AParam, "; ", &CookieText);
        break;
    case ppBody:
        PlaceBody(AParam);
        break;
    case ppFormField:
        AppendPairs(FForm, AParam, "&", &ParamText::Encode);
        break;
    case ppFormPart:
        BodyParts::Append(FRequest.Body.Parts, AParam.Name, AParam.Type, AParam.Value, *AParam.Binding);
        break;
    }
}

void TZORequestBuilder::PlaceBody(const TParam& AParam) {
    FRequest.Body = BodyParts::Whole(AParam.Type, AParam.Value, *AParam.Binding);
}

void TZORequestBuilder::PlaceHeader(const TParam& AParam) {
    const QByteArray value =
        ParamStyles::Expand(Text(AParam), AParam.Name, psSimple, AParam.Binding->Explode, &Plain);
    if (AParam.Name.compare("Content-Type", Qt::CaseInsensitive) == 0)
        FContentType = value;
    else
        FRequest.Headers.append({AParam.Name, value});
}

void TZORequestBuilder::AddAcceptHeader() {
    const bool isGiven = std::any_of(FRequest.Headers.begin(), FRequest.Headers.end(), [](const auto& h) {
        return h.Name.compare("Accept", Qt::CaseInsensitive) == 0;
    });
    if (isGiven)
        return;
    const bool isJson = FOper.Response && FOper.Response->Kind() != vkDownload;
    const QByteArray accept = isJson ? "application/json, */*;q=0.8" : "*/*";
    FRequest.Headers.append({"Accept", accept});
}

void TZORequestBuilder::FinishBody() {
    TZOHttpBody& body = FRequest.Body;
    if (!body.Parts.isEmpty()) {
        body.Kind = bkMultipart;
    } else if (FHasForm && body.Kind == bkNone) {
        body.Kind = bkBytes;
        body.Content = FForm;
        body.ContentType = "application/x-www-form-urlencoded";
    }
    if (!FContentType.isEmpty() && (body.Kind == bkBytes || body.Kind == bkStream))
        body.ContentType = FContentType;
}

QByteArray TZORequestBuilder::Url(const QString& AServerUrl) const {
    QByteArray url = ParamText::EncodeReserved(AServerUrl.trimmed());
    const QByteArray path = Path();
    while (url.endsWith('/') && path.startsWith('/'))
        url.chop(1);
    if (!path.isEmpty() && !path.startsWith('/') && !url.endsWith('/'))
        url += '/';
    url += path;
    if (!FQuery.isEmpty())
        url += (url.contains('?') ? '&' : '?') + FQuery;
    return url;
}

QByteArray TZORequestBuilder::Path() const {
    const QString& path = FOper.Http.Path;
    QByteArray text;
    qsizetype done = 0;
    for (;;) {
        const qsizetype open = path.indexOf(QLatin1Char('{'), done);
        const qsizetype close = open < 0 ? -1 : path.indexOf(QLatin1Char('}'), open);
        if (close < 0)
            return text + ParamText::EncodeReserved(path.mid(done));
        text += ParamText::EncodeReserved(path.mid(done, open - done));
        text += PathText(path.mid(open + 1, close - open - 1));
        done = close + 1;
    }
}

QByteArray TZORequestBuilder::PathText(const QString& AName) const {
    const QByteArray name = AName.toUtf8();
    for (const TParam& param : FParams) {
        if (param.Binding->Place == ppPath && param.Name == name)
            return WithoutSteps(ParamStyles::Expand(Text(param), name, param.Binding->Style,
                                                    param.Binding->Explode, &ParamText::Encode));
    }
    const auto& bindings = FOper.Http.Params;
    const auto binding = std::find_if(bindings.begin(), bindings.end(), [&](const TZOParamBinding& b) {
        return b.Place == ppPath && (b.WireName.isEmpty() ? b.Property.toUtf8() : b.WireName) == name;
    });
    throw EZORequestValueError(
        QStringLiteral("\"%1\" has no value, but is part of the operation's address \"%2\".")
            .arg(binding == bindings.end() ? AName : binding->Property, FOper.Http.Path));
}

TZOParamText TZORequestBuilder::Text(const TParam& AParam) const {
    if (AParam.Binding->Style == psJson)
        return {TZOParamText::ptScalar, QString::fromUtf8(TZOJson::Encode(AParam.Type, AParam.Value)), {}};
    return ParamText::Of(AParam.Type, AParam.Value, AParam.Binding->Property);
}

void TZORequestBuilder::AppendPairs(QByteArray& AText, const TParam& AParam, const char* ASeparator,
                                    ParamStyles::TEncoder AEncode) const {
    const bool isCookie = AParam.Binding->Place == ppCookie;
    const QByteArray name = isCookie ? AParam.Name : ParamText::Encode(TextFromUtf8(AParam.Name));
    const TZOParamBinding& binding = *AParam.Binding;
    const QByteArray pairs = ParamStyles::Join(
        ParamStyles::Pairs(Text(AParam), name, binding.Style, binding.Explode, AEncode), ASeparator);
    if (!AText.isEmpty() && !pairs.isEmpty())
        AText += ASeparator;
    AText += pairs;
}
