#include "runtime/json/JsonCodec.h"

#include "runtime/types/Any.h"
#include "runtime/types/JsonText.h"
#include "runtime/types/List.h"
#include "runtime/types/Map.h"
#include "runtime/types/Object.h"
#include "runtime/types/Rfc3339.h"
#include "runtime/types/Streams.h"
#include "runtime/types/Union.h"

#include <QIODevice>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <string_view>

namespace {

/// Text that grows at its end, with few questions asked on the way.
class TBuffer {
public:
    void Append(char AChar) {
        Ensure(1);
        FBytes.data()[FSize++] = AChar;
    }
    void Append(const char* AText) { Append(AText, qsizetype(std::strlen(AText))); }
    void Append(const QByteArray& AText) { Append(AText.constData(), AText.size()); }
    void Append(const char* AText, qsizetype ASize) {
        Ensure(ASize);
        std::memcpy(FBytes.data() + FSize, AText, std::size_t(ASize));
        FSize += ASize;
    }
    void AppendQuoted(QStringView AText) {
        Ensure(JsonText::QuotedSize(AText));
        FSize = JsonText::PutQuoted(FBytes.data() + FSize, AText) - FBytes.constData();
    }
    QByteArray Take() {
        FBytes.resize(FSize);
        return std::move(FBytes);
    }

private:
    void Ensure(qsizetype ASize) {
        if (FSize + ASize > FBytes.size())
            FBytes.resize(std::max(FBytes.size() * 2, FSize + ASize + 256));
    }

    QByteArray FBytes;
    qsizetype FSize = 0;
};

class TEncoder {
public:
    TBuffer Json;

    void Value(const TZOTypeInfo* AType, const void* AValue) {
        switch (AType->Kind()) {
        case vkString:
            Json.AppendQuoted(*static_cast<const QString*>(AValue));
            break;
        case vkInteger:
            Number(*static_cast<const qint32*>(AValue));
            break;
        case vkInt64:
            Number(*static_cast<const qint64*>(AValue));
            break;
        case vkBoolean:
            Json.Append(*static_cast<const quint8*>(AValue) ? "true" : "false");
            break;
        case vkFloat:
            Float(*static_cast<const double*>(AValue));
            break;
        case vkDateTime:
            Quoted(TZORfc3339::ToStr(*static_cast<const double*>(AValue)));
            break;
        case vkDate:
            Quoted(TZORfc3339::DateToStr(*static_cast<const double*>(AValue)));
            break;
        case vkAny:
            Json.Append(static_cast<const ZOAny*>(AValue)->GetJsonUtf8());
            break;
        case vkUpload:
            Upload(*static_cast<const ZOUpload*>(AValue));
            break;
        case vkDownload:
            Json.Append("null");
            break;
        case vkList:
            List(*static_cast<const ZOList*>(AValue));
            break;
        case vkMap:
            Map(*static_cast<const ZOMap*>(AValue));
            break;
        case vkObject:
            Object(static_cast<const ZOObject::TTypeInfo*>(AType), *static_cast<ZOObject* const*>(AValue));
            break;
        case vkUnion:
            Union(*static_cast<ZOUnion* const*>(AValue));
            break;
        case vkService:
            break;
        }
    }

private:
    /// A comma before every entry but the first.
    void Separate(bool& AIsFirst) {
        if (!AIsFirst)
            Json.Append(',');
        AIsFirst = false;
    }

    void Quoted(const QString& AText) {
        Json.Append('"');
        Json.Append(AText.toLatin1());
        Json.Append('"');
    }

    template <class T>
    void Number(T ANumber) {
        char buffer[32];
        const auto result = std::to_chars(buffer, buffer + sizeof buffer, ANumber);
        Json.Append(buffer, result.ptr - buffer);
    }

    void Float(double ANumber) {
        if (!std::isfinite(ANumber))
            throw EZORequestValueError(QStringLiteral("JSON has no text for the number %1.").arg(ANumber));
        Number(ANumber);
    }

    void Upload(const ZOUpload& AUpload) {
        QIODevice* stream = AUpload.GetStream();
        if (!stream) {
            Json.Append("null");
            return;
        }
        if (!stream->isSequential() && !stream->seek(0))
            throw EZOUploadError(QStringLiteral("The upload cannot be read: %1").arg(stream->errorString()));
        Json.Append('"');
        Json.Append(stream->readAll().toBase64());
        Json.Append('"');
    }

    void List(const ZOList& AList) {
        Json.Append('[');
        bool isFirst = true;
        void* ref = nullptr;
        for (int i = 0; i < AList.Count(); ++i) {
            Separate(isFirst);
            if (AList.GetItem(i, ref))
                Value(AList.Type()->ItemType(), ref);
            else
                Json.Append("null");
        }
        Json.Append(']');
    }

    void Map(const ZOMap& AMap) {
        Json.Append('{');
        bool isFirst = true;
        void* ref = nullptr;
        const QStringList keys = AMap.Keys();
        for (int i = 0; i < AMap.Count(); ++i) {
            Separate(isFirst);
            Json.AppendQuoted(keys.at(i));
            Json.Append(':');
            if (AMap.GetItemAt(i, ref))
                Value(AMap.Type()->ItemType(), ref);
            else
                Json.Append("null");
        }
        Json.Append('}');
    }

    void Object(const ZOObject::TTypeInfo* ADeclared, const ZOObject* AObject) {
        if (!AObject) {
            Json.Append("null");
            return;
        }
        const auto* type = ZOObject::TData::Type(AObject);
        const auto* subtype = ADeclared->GetSubtypeByType(type);
        const int discriminator = DiscriminatorProperty(ADeclared, type);
        Json.Append('{');
        bool isFirst = true;
        if (subtype) {
            Separate(isFirst);
            Json.AppendQuoted(ADeclared->DiscriminatorName());
            Json.Append(':');
            Json.AppendQuoted(subtype->Name);
        }
        void* ref = nullptr;
        for (int i = 0; i < type->PropertyCount(); ++i) {
            if (i == discriminator || !ZOObject::TData::GetProp(AObject, i, ref))
                continue;
            if (type->Property(i)->Type->Kind() == vkUpload &&
                !static_cast<const ZOUpload*>(ref)->GetStream())
                continue;
            Separate(isFirst);
            Json.AppendQuoted(type->Property(i)->Name);
            Json.Append(':');
            Value(type->Property(i)->Type, ref);
        }
        Json.Append('}');
    }

    /// A subtype may list the discriminator among its properties: it is written once, from the subtype.
    static int DiscriminatorProperty(const ZOObject::TTypeInfo* ADeclared, const ZOObject::TTypeInfo* AType) {
        if (!ADeclared->GetSubtypeByType(AType))
            return -1;
        const PProperty property = AType->FindProperty(ADeclared->DiscriminatorName());
        return property ? property->Index : -1;
    }

    void Union(const ZOUnion* AUnion) {
        const PTag tag = ZOUnion::TData::GetTag(AUnion);
        void* ref = nullptr;
        const bool hasValue = tag && ZOUnion::TData::GetTag(AUnion, tag->Index, ref);
        const bool isTagged = tag && ZOUnion::TData::Type(AUnion)->Form() == ufTagged;
        if (isTagged) {
            Json.Append('{');
            Json.AppendQuoted(ZOUnion::TData::Type(AUnion)->TagName());
            Json.Append(':');
            Json.AppendQuoted(tag->Name);
            if (hasValue)
                Json.Append(",\"value\":");
        }
        if (hasValue)
            Value(tag->Type, ref);
        else if (!isTagged)
            Json.Append("null");
        if (isTagged)
            Json.Append('}');
    }
};

} // namespace

QByteArray TZOJson::Encode(const TZOTypeInfo* AType, const void* AValue) {
    TEncoder encoder;
    encoder.Value(AType, AValue);
    return encoder.Json.Take();
}

QByteArray TZOJson::Encode(const TZOValueHolder& AValue) {
    void* ref = nullptr;
    return AValue.GetValue(ref) ? Encode(AValue.Type(), ref) : QByteArrayLiteral("null");
}
