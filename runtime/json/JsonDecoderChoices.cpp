// Values whose type the text itself chooses: polymorphic objects and unions.
#include "runtime/json/JsonDecoder_p.h"

#include "runtime/types/JsonText.h"
#include "runtime/types/TypeLibrary.h"
#include "runtime/types/ValueHolder.h"

using namespace simdjson;

bool TZOJsonDecoder::FillObject(TValue& AValue, std::string_view AToken, const ZOObject::TTypeInfo* AType,
                                ZOObject*& AObject) {
    if (AToken.front() != '{')
        return FailType(AType, AToken);
    if (!Enter(AToken))
        return false;
    ondemand::object fields;
    if (const auto error = AValue.get_object().get(fields))
        return FailSyntax(error);
    QByteArray discriminator;
    if (AType->GetHasSubtypes()) {
        discriminator = AType->DiscriminatorName().toUtf8();
        QString name;
        bool found = false;
        if (!PlainText(fields, std::string_view(discriminator.constData(), std::size_t(discriminator.size())),
                       name, found))
            return false;
        const ZOObject::TSubtype* subtype = AType->FindSubtype(name);
        if (!found)
            return Fail(
                QStringLiteral("the object has no \"%1\" to tell its type").arg(AType->DiscriminatorName()),
                AToken.data());
        if (!subtype) {
            Fail(QStringLiteral("\"%1\" is none of the types that can stand here").arg(name), AToken.data());
            return Step(QStringView(AType->DiscriminatorName()));
        }
        delete AObject;
        AObject = subtype->Type->CreateInstance().release();
    }
    if (!FillProperties(fields, AObject,
                        std::string_view(discriminator.constData(), std::size_t(discriminator.size()))))
        return false;
    --FDepth;
    return true;
}

bool TZOJsonDecoder::PlainText(ondemand::object& AFields, std::string_view AKey, QString& AText,
                               bool& AFound) {
    TValue value;
    const auto error = AFields.find_field_unordered(AKey).get(value);
    AFound = error == SUCCESS;
    if (error && error != NO_SUCH_FIELD)
        return FailSyntax(error);
    if (AFound) {
        // Read from the raw token: the parser's space for strings holds each string only once.
        std::string_view token;
        if (!Token(value, token))
            return false;
        if (token.size() < 2 || token.front() != '"')
            return Fail(QStringLiteral("the name of a type is expected"), token.data());
        QByteArray wrapped = "[" + QByteArray(token.data(), qsizetype(token.size())) + "]";
        const auto size = std::size_t(wrapped.size());
        wrapped.append(qsizetype(SIMDJSON_PADDING), ' ');
        TZOJsonDecoder inner(wrapped.constData(), size);
        TZOValueHolder text(TZOTypeLibrary::Scalar(vkString), true);
        if (!inner.DecodeOnlyElement(text.Type(), text))
            return Fail(inner.Message(), token.data());
        void* ref = nullptr;
        if (text.GetValue(ref))
            AText = *static_cast<QString*>(ref);
    }
    bool isEmpty = false;
    if (const auto again = AFields.reset().get(isEmpty))
        return FailSyntax(again);
    return true;
}

bool TZOJsonDecoder::FillUnion(TValue& AValue, std::string_view AToken, const ZOUnion::TTypeInfo* AType,
                               ZOUnion* AUnion) {
    return AType->Form() == ufTagged ? FillTagged(AValue, AToken, AUnion) : FillBare(AValue, AToken, AUnion);
}

bool TZOJsonDecoder::FillTagged(TValue& AValue, std::string_view AToken, ZOUnion* AUnion) {
    const ZOUnion::TTypeInfo* type = ZOUnion::TData::Type(AUnion);
    if (AToken.front() != '{')
        return FailType(type, AToken);
    if (!Enter(AToken))
        return false;
    ondemand::object fields;
    if (const auto error = AValue.get_object().get(fields))
        return FailSyntax(error);
    const QByteArray tagName = type->TagName().toUtf8();
    const std::string_view tagKey(tagName.constData(), std::size_t(tagName.size()));
    QString name;
    bool found = false;
    if (!PlainText(fields, tagKey, name, found))
        return false;
    const PTag tag = type->FindTag(name);
    if (!tag) {
        return Fail(
            found ? QStringLiteral("\"%1\" is none of the alternatives that can stand here").arg(name)
                  : QStringLiteral("the object has no \"%1\" to tell its alternative").arg(type->TagName()),
            AToken.data());
    }
    void* storage = nullptr;
    ZOUnion::TData::SetTag(AUnion, tag->Index, true, storage);
    for (auto result : fields) {
        ondemand::field field;
        if (const auto error = std::move(result).get(field))
            return FailSyntax(error);
        const bool isTag = field.key().unsafe_is_equal(tagKey);
        std::string_view key, token;
        if (!Key(field, key) || !Token(field.value(), token))
            return false;
        const bool isValue = !isTag && key == "value" && tag->Type && token != "null";
        if (isValue ? !Fill(field.value(), token, tag->Type, storage) : !Skip(field.value(), token))
            return Step(key);
    }
    --FDepth;
    return true;
}

bool TZOJsonDecoder::FillBare(TValue& AValue, std::string_view AToken, ZOUnion* AUnion) {
    QByteArray text;
    if (!FillAny(AValue, AToken, text))
        return false;
    const ZOUnion::TTypeInfo* type = ZOUnion::TData::Type(AUnion);
    QByteArray wrapped = "[" + text + "]";
    const auto size = std::size_t(wrapped.size());
    wrapped.append(qsizetype(SIMDJSON_PADDING), ' ');

    PTag best = nullptr;
    int bestMisfits = 0;
    for (const ZOUnion::TTag& tag : type->Tags()) {
        if (!tag.Type) {
            if (text == "null")
                best = &tag;
            continue;
        }
        TZOJsonDecoder trial(wrapped.constData(), size, FDepth);
        trial.CountMisfits();
        TZOValueHolder value(tag.Type, true);
        const bool fits = trial.DecodeOnlyElement(tag.Type, value) && value.HasValue();
        if (fits && (!best || trial.Misfits() < bestMisfits)) {
            best = &tag;
            bestMisfits = trial.Misfits();
        }
        if (best && bestMisfits == 0)
            break;
    }
    if (!best)
        return Fail(QStringLiteral("the value fits none of the alternatives that can stand here"),
                    AToken.data());
    void* storage = nullptr;
    ZOUnion::TData::SetTag(AUnion, best->Index, true, storage);
    if (!best->Type)
        return true;
    TZOJsonDecoder final(wrapped.constData(), size, FDepth);
    TZOValueHolder value(best->Type, storage, false);
    return final.DecodeOnlyElement(best->Type, value) || Fail(final.Message(), AToken.data());
}
