#include "runtime/service/BodyParts_p.h"

#include "runtime/service/ParamText_p.h"

#include "platform/Utf8.h"
#include "runtime/json/JsonCodec.h"
#include "runtime/types/Any.h"
#include "runtime/types/List.h"
#include "runtime/types/Streams.h"
#include "runtime/types/Union.h"

#include <QFileDevice>
#include <QFileInfo>

namespace {

/// "image/png, image/jpeg" and "image/*" say what may be sent, not what is.
QByteArray OneType(const QByteArray& AContentType) {
    return AContentType.contains('*') || AContentType.contains(',') ? QByteArray() : AContentType;
}

QByteArray UploadType(const ZOUpload& AUpload, const TZOParamBinding& ABinding) {
    if (!AUpload.GetMimeType().isEmpty())
        return AUpload.GetMimeType().toUtf8();
    const QByteArray declared = OneType(ABinding.ContentType);
    return declared.isEmpty() ? QByteArrayLiteral("application/octet-stream") : declared;
}

QIODevice* StreamOf(const ZOUpload& AUpload, const TZOParamBinding& ABinding) {
    if (!AUpload.GetStream())
        throw EZOUploadError(QStringLiteral("No content was chosen for \"%1\".").arg(ABinding.Property));
    return AUpload.GetStream();
}

bool IsContainer(const TZOTypeInfo* AType, const void* AValue) {
    if (AType->Kind() != vkAny)
        return AType->Kind() >= vkList;
    const QByteArray json = static_cast<const ZOAny*>(AValue)->GetJsonUtf8();
    return json.startsWith('{') || json.startsWith('[');
}

TZOHttpPart UploadPart(const QByteArray& AName, const ZOUpload& AUpload, const TZOParamBinding& ABinding) {
    QIODevice* stream = StreamOf(AUpload, ABinding);
    const auto* file = qobject_cast<QFileDevice*>(stream);
    // Servers take a part without a file name for a field.
    const QString name = file ? QFileInfo(file->fileName()).fileName() : QString();
    return {AName, {}, stream, name.isEmpty() ? TextFromUtf8(AName) : name, UploadType(AUpload, ABinding)};
}

} // namespace

bool BodyParts::IsJson(const QByteArray& AContentType) {
    const QByteArray type = AContentType.split(';').first().trimmed().toLower();
    return type.isEmpty() || type == "application/json" || type == "text/json" || type.endsWith("+json");
}

TZOHttpBody BodyParts::Whole(const TZOTypeInfo* AType, const void* AValue, const TZOParamBinding& ABinding) {
    TZOHttpBody body;
    if (!ParamText::SkipUnions(AType, AValue)) {
        const bool isNull = ZOUnion::TData::GetTag(*static_cast<ZOUnion* const*>(AValue));
        return isNull ? TZOHttpBody{bkBytes, "null", nullptr, "application/json", {}} : body;
    }
    const QByteArray declared = OneType(ABinding.ContentType);
    if (AType->Kind() == vkUpload) {
        const auto& upload = *static_cast<const ZOUpload*>(AValue);
        body.Kind = bkStream;
        body.Stream = StreamOf(upload, ABinding);
        body.ContentType = UploadType(upload, ABinding);
        return body;
    }
    body.Kind = bkBytes;
    if (!IsJson(declared) && !IsContainer(AType, AValue)) {
        body.Content = ParamText::Scalar(AType, AValue, ABinding.Property).toUtf8();
        body.ContentType = declared;
        if (declared.startsWith("text/") && !declared.contains("charset"))
            body.ContentType += "; charset=utf-8";
    } else {
        body.Content = TZOJson::Encode(AType, AValue);
        const bool isNamed = !declared.isEmpty() && IsJson(declared);
        body.ContentType = isNamed ? declared : QByteArrayLiteral("application/json");
    }
    return body;
}

void BodyParts::Append(QList<TZOHttpPart>& AParts, const QByteArray& AName, const TZOTypeInfo* AType,
                       const void* AValue, const TZOParamBinding& ABinding) {
    const bool hasValue = AValue && ParamText::SkipUnions(AType, AValue);
    const QByteArray declared = OneType(ABinding.ContentType);
    const bool isJson = ABinding.Style == psJson || (!declared.isEmpty() && IsJson(declared));
    if (!hasValue) {
        AParts.append({AName, {}, nullptr, {}, {}});
    } else if (AType->Kind() == vkUpload) {
        AParts.append(UploadPart(AName, *static_cast<const ZOUpload*>(AValue), ABinding));
    } else if (AType->Kind() == vkList && !isJson) {
        const auto& list = *static_cast<const ZOList*>(AValue);
        for (int i = 0; i < list.Count(); ++i) {
            void* item = nullptr;
            list.GetItem(i, item);
            Append(AParts, AName, list.Type()->ItemType(), item, ABinding);
        }
    } else if (isJson || IsContainer(AType, AValue)) {
        const QByteArray type = declared.isEmpty() ? QByteArrayLiteral("application/json") : declared;
        AParts.append({AName, TZOJson::Encode(AType, AValue), nullptr, {}, type});
    } else {
        AParts.append(
            {AName, ParamText::Scalar(AType, AValue, ABinding.Property).toUtf8(), nullptr, {}, declared});
    }
}
