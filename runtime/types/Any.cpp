#include "runtime/types/Any.h"

#include "runtime/types/JsonText.h"

QByteArray ZOAny::GetJsonUtf8() const { return FJson.isEmpty() ? QByteArrayLiteral("null") : FJson; }

QString ZOAny::GetJson() const { return QString::fromUtf8(GetJsonUtf8()); }

bool ZOAny::IsValidJson(const QString& AText) {
    return AText.isValidUtf16() && JsonText::IsValid(AText.toUtf8());
}

ZOAny ZOAny::FromJson(const QString& AText) { return FromValidUtf8(AText.toUtf8()); }

ZOAny ZOAny::FromValidUtf8(QByteArray AText) {
    ZOAny value;
    value.FJson = JsonText::WithoutWhiteSpace(std::move(AText));
    return value;
}
