#include "runtime/service/ParamText_p.h"

#include "runtime/json/JsonCodec.h"
#include "runtime/types/Any.h"
#include "runtime/types/List.h"
#include "runtime/types/Map.h"
#include "runtime/types/Object.h"
#include "runtime/types/Rfc3339.h"
#include "runtime/types/Union.h"

#include <cmath>

namespace {

/// An any value that is a JSON string stands for its text, as one of type string would.
QString AnyText(const ZOAny& AAny) {
    const QByteArray json = AAny.GetJsonUtf8();
    if (!json.startsWith('"'))
        return QString::fromUtf8(json);
    TZOValueHolder text(TZOTypeInfo::Get(typeid(QString)), true);
    TZOJson::Decode(json, text);
    void* ref = nullptr;
    return text.GetValue(ref) ? *static_cast<QString*>(ref) : QString();
}

QString FloatText(double AValue, const QString& AProperty) {
    if (!std::isfinite(AValue))
        throw EZORequestValueError(
            QStringLiteral("The value of \"%1\" is no number that can be sent.").arg(AProperty));
    return QString::fromLatin1(TZOJson::Encode(TZOTypeInfo::Get(typeid(double)), &AValue));
}

TZOParamText::TEntry EntryOf(const TZOTypeInfo* AType, const void* AValue, const QString& AKey,
                             const QString& AProperty) {
    if (!AValue || !ParamText::SkipUnions(AType, AValue))
        return {AKey, {}, nullptr, nullptr};
    return {AKey, ParamText::Scalar(AType, AValue, AProperty), AType, AValue};
}

TZOParamText OfList(const ZOList& AList, const QString& AProperty) {
    TZOParamText text{TZOParamText::ptList, {}, {}};
    for (int i = 0; i < AList.Count(); ++i) {
        void* item = nullptr;
        AList.GetItem(i, item);
        text.Entries.push_back(EntryOf(AList.Type()->ItemType(), item, {}, AProperty));
    }
    return text;
}

TZOParamText OfMap(const ZOMap& AMap, const QString& AProperty) {
    TZOParamText text{TZOParamText::ptMembers, {}, {}};
    const QStringList keys = AMap.Keys();
    for (int i = 0; i < AMap.Count(); ++i) {
        void* item = nullptr;
        AMap.GetItemAt(i, item);
        text.Entries.push_back(EntryOf(AMap.Type()->ItemType(), item, keys[i], AProperty));
    }
    return text;
}

TZOParamText OfObject(const ZOObject* AObject, const ZOObject::TTypeInfo* ADeclared,
                      const QString& AProperty) {
    TZOParamText text{TZOParamText::ptMembers, {}, {}};
    const ZOObject::TTypeInfo* type = ZOObject::TData::Type(AObject);
    const ZOObject::TSubtype* subtype = ADeclared->GetSubtypeByType(type);
    if (subtype)
        text.Entries.push_back({ADeclared->DiscriminatorName(), subtype->Name, nullptr, nullptr});
    for (int i = 0; i < type->PropertyCount(); ++i) {
        const PProperty property = type->Property(i);
        const bool isSaid = subtype && property->Name == ADeclared->DiscriminatorName();
        void* value = nullptr;
        if (!isSaid && ZOObject::TData::GetProp(AObject, i, value))
            text.Entries.push_back(EntryOf(property->Type, value, property->Name, AProperty));
    }
    return text;
}

} // namespace

bool ParamText::SkipUnions(const TZOTypeInfo*& AType, const void*& AValue) {
    while (AType->Kind() == vkUnion && static_cast<const ZOUnion::TTypeInfo*>(AType)->Form() == ufBare) {
        const auto* value = *static_cast<ZOUnion* const*>(AValue);
        const PTag tag = ZOUnion::TData::GetTag(value);
        void* ref = nullptr;
        if (!tag || !ZOUnion::TData::GetTag(value, tag->Index, ref))
            return false;
        AType = tag->Type;
        AValue = ref;
    }
    return true;
}

QString ParamText::Scalar(const TZOTypeInfo* AType, const void* AValue, const QString& AProperty) {
    switch (AType->Kind()) {
    case vkString:
        return *static_cast<const QString*>(AValue);
    case vkInteger:
        return QString::number(*static_cast<const qint32*>(AValue));
    case vkInt64:
        return QString::number(*static_cast<const qint64*>(AValue));
    case vkBoolean:
        return *static_cast<const quint8*>(AValue) ? QStringLiteral("true") : QStringLiteral("false");
    case vkFloat:
        return FloatText(*static_cast<const double*>(AValue), AProperty);
    case vkDateTime:
        return TZORfc3339::ToStr(*static_cast<const TDateTime*>(AValue));
    case vkDate:
        return TZORfc3339::DateToStr(*static_cast<const TDateTime*>(AValue));
    case vkAny:
        return AnyText(*static_cast<const ZOAny*>(AValue));
    case vkUpload:
    case vkDownload:
        throw EZORequestValueError(
            QStringLiteral("The content of a stream cannot be sent in \"%1\".").arg(AProperty));
    default:
        return QString::fromUtf8(TZOJson::Encode(AType, AValue));
    }
}

TZOParamText ParamText::Of(const TZOTypeInfo* AType, const void* AValue, const QString& AProperty) {
    if (!SkipUnions(AType, AValue))
        return {};
    switch (AType->Kind()) {
    case vkList:
        return OfList(*static_cast<const ZOList*>(AValue), AProperty);
    case vkMap:
        return OfMap(*static_cast<const ZOMap*>(AValue), AProperty);
    case vkObject:
        return OfObject(*static_cast<ZOObject* const*>(AValue),
                        static_cast<const ZOObject::TTypeInfo*>(AType), AProperty);
    default:
        return {TZOParamText::ptScalar, Scalar(AType, AValue, AProperty), {}};
    }
}

QByteArray ParamText::Encode(const QString& AText) { return AText.toUtf8().toPercentEncoding(); }

QByteArray ParamText::EncodeReserved(const QString& AText) {
    return AText.toUtf8().toPercentEncoding("!$&'()*+,;=:@/?%[]");
}
