#include "runtime/json/JsonDecoder_p.h"

#include "runtime/types/Any.h"
#include "runtime/types/JsonText.h"
#include "runtime/types/Rfc3339.h"
#include "runtime/types/TypeLibrary.h"
#include "runtime/types/ValueHolder.h"

#include <charconv>
#include <cmath>
#include <limits>

using namespace simdjson;

namespace {

/// The largest whole number up to which every one has a double of its own.
constexpr double MaxExactDouble = 9007199254740992.0;

constexpr int TextsOfASmallResponse = 64;

/// AToken without the white space behind it. Other control characters stay, since the parser ends a number at
/// a zero byte, too.
std::string_view Trimmed(std::string_view AToken) {
    const std::size_t last = AToken.find_last_not_of(" \t\n\r");
    return AToken.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

/// What stands between the quotes of a string token.
std::string_view Content(std::string_view AToken) { return AToken.substr(1, AToken.size() - 2); }

bool IsString(std::string_view AToken) {
    return AToken.size() >= 2 && AToken.front() == '"' && AToken.back() == '"';
}

bool IsScalar(std::string_view AToken) {
    return AToken == "true" || AToken == "false" || AToken == "null" || JsonText::IsNumber(AToken);
}

QString Shown(std::string_view AText) {
    constexpr std::size_t most = 40;
    QString text = QString::fromUtf8(AText.data(), qsizetype(std::min(AText.size(), most)));
    return AText.size() > most ? text + QStringLiteral("...") : text;
}

QString FoundKind(std::string_view AToken) {
    switch (AToken.empty() ? '\0' : AToken.front()) {
    case '{':
        return QStringLiteral("an object");
    case '[':
        return QStringLiteral("an array");
    case '"':
        return QStringLiteral("a string");
    case 't':
    case 'f':
        return QStringLiteral("a boolean");
    case 'n':
        return QStringLiteral("null");
    default:
        return QStringLiteral("a number");
    }
}

QString ExpectedKind(TZOValueKind AKind) {
    switch (AKind) {
    case vkString:
        return QStringLiteral("a string");
    case vkInteger:
    case vkInt64:
        return QStringLiteral("a whole number");
    case vkBoolean:
        return QStringLiteral("a boolean");
    case vkFloat:
        return QStringLiteral("a number");
    case vkDateTime:
    case vkDate:
        return QStringLiteral("a date as a string");
    case vkList:
        return QStringLiteral("an array");
    default:
        return QStringLiteral("an object");
    }
}

bool IsSurrogateUtf8(std::string_view AText) {
    for (std::size_t i = AText.find('\xED'); i != AText.npos && i + 1 < AText.size();
         i = AText.find('\xED', i + 1)) {
        if (static_cast<unsigned char>(AText[i + 1]) >= 0xA0)
            return true;
    }
    return false;
}

} // namespace

TZOJsonDecoder::TZOJsonDecoder(const char* AText, std::size_t ASize, int ADepth)
    : FText(AText), FSize(ASize), FDepth(ADepth) {}

bool TZOJsonDecoder::Decode(const TZOTypeInfo* AType, TZOValueHolder& ADest) {
    if (const auto error = FParser.iterate(FText, FSize, FSize + SIMDJSON_PADDING).get(FDocument))
        return FailSyntax(error);
    TValue root;
    if (const auto error = FDocument.get_value().get(root))
        return FailSyntax(error);
    if (!FillSlot(root, AType, [&](bool has, void*& ref) { return ADest.SetValue(has, ref); }))
        return false;
    return CheckEnd();
}

bool TZOJsonDecoder::DecodeOnlyElement(const TZOTypeInfo* AType, TZOValueHolder& ADest) {
    if (const auto error = FParser.iterate(FText, FSize, FSize + SIMDJSON_PADDING).get(FDocument))
        return FailSyntax(error);
    ondemand::array elements;
    if (const auto error = FDocument.get_array().get(elements))
        return FailSyntax(error);
    int count = 0;
    for (auto element : elements) {
        TValue value;
        if (const auto error = std::move(element).get(value))
            return FailSyntax(error);
        if (count++ > 0)
            return Fail(QStringLiteral("there is more text behind the value"), value.raw_json_token().data());
        if (!FillSlot(value, AType, [&](bool has, void*& ref) { return ADest.SetValue(has, ref); }))
            return false;
    }
    if (count == 0)
        return Fail(QStringLiteral("there is no value"), FText + 1);
    return CheckEnd();
}

bool TZOJsonDecoder::CheckEnd() {
    const char* place = nullptr;
    return FDocument.current_location().get(place) == OUT_OF_BOUNDS ||
           Fail(QStringLiteral("there is more text behind the value"), place);
}

template <class F>
bool TZOJsonDecoder::FillSlot(TValue& AValue, const TZOTypeInfo* AType, F&& ASet) {
    std::string_view token;
    if (!Token(AValue, token))
        return false;
    void* storage = nullptr;
    if (IsNull(token, AType)) {
        ASet(false, storage);
        return true;
    }
    ASet(true, storage);
    return Fill(AValue, token, AType, storage);
}

bool TZOJsonDecoder::IsNull(std::string_view AToken, const TZOTypeInfo* AType) const {
    if (AToken != "null")
        return false;
    if (AType->Kind() != vkUnion)
        return true;
    const auto* type = static_cast<const ZOUnion::TTypeInfo*>(AType);
    if (type->Form() != ufBare)
        return true;
    for (const ZOUnion::TTag& tag : type->Tags()) {
        if (!tag.Type)
            return false;
    }
    return true;
}

bool TZOJsonDecoder::Token(TValue& AValue, std::string_view& AToken) {
    AToken = Trimmed(AValue.raw_json_token());
    return !AToken.empty() || FailSyntax(INCOMPLETE_ARRAY_OR_OBJECT);
}

bool TZOJsonDecoder::Fill(TValue& AValue, std::string_view AToken, const TZOTypeInfo* AType, void* AStorage) {
    qint64 whole = 0;
    switch (AType->Kind()) {
    case vkString:
        return FillString(AValue, AToken, *static_cast<QString*>(AStorage));
    case vkInteger:
        if (!FillWholeNumber(AToken, std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max(),
                             whole))
            return false;
        *static_cast<qint32*>(AStorage) = static_cast<qint32>(whole);
        return true;
    case vkInt64:
        return FillWholeNumber(AToken, std::numeric_limits<qint64>::min(), std::numeric_limits<qint64>::max(),
                               *static_cast<qint64*>(AStorage));
    case vkBoolean:
        if (AToken != "true" && AToken != "false")
            return FailType(AType, AToken);
        *static_cast<quint8*>(AStorage) = AToken == "true";
        return true;
    case vkFloat:
        return FillFloat(AToken, *static_cast<double*>(AStorage));
    case vkDateTime:
    case vkDate:
        return FillDate(AValue, AToken, AType, *static_cast<double*>(AStorage));
    case vkAny: {
        QByteArray json;
        if (!FillAny(AValue, AToken, json))
            return false;
        *static_cast<ZOAny*>(AStorage) = ZOAny::FromValidUtf8(std::move(json));
        return true;
    }
    case vkUpload:
    case vkDownload:
        return Skip(AValue, AToken);
    case vkList:
        return FillList(AValue, AToken, *static_cast<ZOList*>(AStorage));
    case vkMap:
        return FillMap(AValue, AToken, *static_cast<ZOMap*>(AStorage));
    case vkObject:
        return FillObject(AValue, AToken, static_cast<const ZOObject::TTypeInfo*>(AType),
                          *static_cast<ZOObject**>(AStorage));
    case vkUnion:
        return FillUnion(AValue, AToken, static_cast<const ZOUnion::TTypeInfo*>(AType),
                         *static_cast<ZOUnion**>(AStorage));
    case vkService:
        break;
    }
    return FailType(AType, AToken);
}

bool TZOJsonDecoder::Text(TValue& AValue, std::string_view AToken, std::string_view& AText) {
    if (AToken.find('\\') == AToken.npos) {
        AText = Content(AToken);
        return true;
    }
    if (!JsonText::IsStringContent(Content(AToken)))
        return Fail(QStringLiteral("the string holds an escape that JSON does not know"), AToken.data());
    if (JsonText::HasLoneSurrogate(Content(AToken)))
        return Fail(QStringLiteral("the string escapes half a character"), AToken.data());
    const auto error = AValue.get_string().get(AText);
    return !error || FailSyntax(error);
}

bool TZOJsonDecoder::FillString(TValue& AValue, std::string_view AToken, QString& AString) {
    std::string_view text;
    if (!IsString(AToken))
        return FailType(TZOTypeLibrary::Scalar(vkString), AToken);
    if (!Text(AValue, AToken, text))
        return false;
    // A text that had escapes lies in another buffer, and may hold a zero.
    const bool isShort = !text.empty() && text.size() <= TZOShortTexts::MaxBytes;
    if (isShort && ++FShortTextCount == TextsOfASmallResponse)
        FShortTexts = std::make_unique<TZOShortTexts>();
    if (isShort && FShortTexts && text.data() == AToken.data() + 1)
        AString = FShortTexts->Get(text);
    else
        AString = QString::fromUtf8(text.data(), qsizetype(text.size()));
    return true;
}

bool TZOJsonDecoder::FillWholeNumber(std::string_view AToken, qint64 AMin, qint64 AMax, qint64& ANumber) {
    const char* end = AToken.data() + AToken.size();
    const auto result = std::from_chars(AToken.data(), end, ANumber);
    const bool isPlain =
        result.ec == std::errc() && result.ptr == end &&
        (AToken.size() < 2 || AToken[AToken.front() == '-' ? 1 : 0] != '0' || AToken == "-0");
    if (!isPlain) {
        const std::string_view kinds = "{[\"tfn";
        if (kinds.find(AToken.front()) != kinds.npos)
            return FailType(TZOTypeLibrary::Scalar(vkInteger), AToken);
        if (!JsonText::IsNumber(AToken))
            return Fail(QStringLiteral("%1 is no JSON value").arg(Shown(AToken)), AToken.data());
        double number = 0;
        std::from_chars(AToken.data(), end, number);
        if (AToken.find_first_of(".eE") == AToken.npos || std::abs(number) > MaxExactDouble)
            return Fail(QStringLiteral("%1 does not fit the integer type").arg(Shown(AToken)), AToken.data());
        if (number != std::trunc(number))
            return Fail(QStringLiteral("%1 is not a whole number").arg(Shown(AToken)), AToken.data());
        ANumber = static_cast<qint64>(number);
    }
    if (ANumber < AMin || ANumber > AMax)
        return Fail(QStringLiteral("%1 does not fit the integer type").arg(Shown(AToken)), AToken.data());
    return true;
}

bool TZOJsonDecoder::FillFloat(std::string_view AToken, double& ANumber) {
    const std::string_view kinds = "{[\"tfn";
    if (kinds.find(AToken.front()) != kinds.npos)
        return FailType(TZOTypeLibrary::Scalar(vkFloat), AToken);
    if (!JsonText::IsNumber(AToken))
        return Fail(QStringLiteral("%1 is no JSON value").arg(Shown(AToken)), AToken.data());
    const auto result = std::from_chars(AToken.data(), AToken.data() + AToken.size(), ANumber);
    if (result.ec != std::errc() || !std::isfinite(ANumber))
        return Fail(QStringLiteral("%1 does not fit the float type").arg(Shown(AToken)), AToken.data());
    return true;
}

bool TZOJsonDecoder::FillDate(TValue& AValue, std::string_view AToken, const TZOTypeInfo* AType,
                              double& ADate) {
    if (!IsString(AToken))
        return FailType(AType, AToken);
    std::string_view text;
    if (!Text(AValue, AToken, text))
        return false;
    if (!TZORfc3339::TryParse(text, ADate))
        return Fail(QStringLiteral("%1 is not a valid RFC 3339 date or date-time").arg(Shown(AToken)),
                    AToken.data());
    return true;
}

bool TZOJsonDecoder::FillAny(TValue& AValue, std::string_view AToken, QByteArray& AJson) {
    std::string_view text = AToken;
    if (!Skip(AValue, AToken))
        return false;
    if (AToken.front() == '{' || AToken.front() == '[')
        text = TextSince(AToken.data());
    AJson = QByteArray(text.data(), qsizetype(text.size()));
    return true;
}

bool TZOJsonDecoder::FillList(TValue& AValue, std::string_view AToken, ZOList& AList) {
    if (AToken.front() != '[')
        return FailType(AList.Type(), AToken);
    if (!Enter(AToken))
        return false;
    ondemand::array elements;
    if (const auto error = AValue.get_array().get(elements))
        return FailSyntax(error);
    const TZOTypeInfo* itemType = AList.Type()->ItemType();
    for (auto element : elements) {
        TValue value;
        if (const auto error = std::move(element).get(value))
            return FailSyntax(error);
        const int index = AList.Count();
        if (!FillSlot(value, itemType, [&](bool has, void*& ref) { return AList.Insert(index, has, ref); }))
            return Step(index);
    }
    --FDepth;
    return true;
}

bool TZOJsonDecoder::FillMap(TValue& AValue, std::string_view AToken, ZOMap& AMap) {
    if (AToken.front() != '{')
        return FailType(AMap.Type(), AToken);
    if (!Enter(AToken))
        return false;
    ondemand::object fields;
    if (const auto error = AValue.get_object().get(fields))
        return FailSyntax(error);
    const TZOTypeInfo* itemType = AMap.Type()->ItemType();
    for (auto result : fields) {
        ondemand::field field;
        std::string_view key;
        if (const auto error = std::move(result).get(field))
            return FailSyntax(error);
        if (!Key(field, key))
            return false;
        const QString name = QString::fromUtf8(key.data(), qsizetype(key.size()));
        // The last one of repeated keys counts, and nothing of the earlier ones.
        void* old = nullptr;
        if (AMap.GetItem(name, old))
            AMap.SetItem(name, false, old);
        if (!FillSlot(field.value(), itemType,
                      [&](bool has, void*& ref) { return AMap.SetItem(name, has, ref); }))
            return Step(QStringView(name));
    }
    --FDepth;
    return true;
}

bool TZOJsonDecoder::FillProperties(ondemand::object& AFields, ZOObject* AObject,
                                    std::string_view ADiscriminator) {
    int expected = 0;
    for (auto result : AFields) {
        ondemand::field field;
        if (const auto error = std::move(result).get(field))
            return FailSyntax(error);
        // The name of the type has been read, but only where it stands first.
        const bool isName = !ADiscriminator.empty() && field.key().unsafe_is_equal(ADiscriminator);
        if (isName ? !SkipField(field, ADiscriminator) : !FillProperty(field, AObject, expected))
            return false;
    }
    if (!FCountsMisfits)
        return true;
    const auto* type = ZOObject::TData::Type(AObject);
    void* ref = nullptr;
    for (int i = 0; i < type->PropertyCount(); ++i)
        FMisfits += type->Property(i)->Required && !ZOObject::TData::GetProp(AObject, i, ref);
    return true;
}

bool TZOJsonDecoder::SkipField(ondemand::field& AField, std::string_view AKey) {
    std::string_view token;
    return (Token(AField.value(), token) && Skip(AField.value(), token)) || Step(AKey);
}

bool TZOJsonDecoder::FillProperty(ondemand::field& AField, ZOObject* AObject, int& AExpected) {
    const auto* type = ZOObject::TData::Type(AObject);
    // Servers write properties in the order of their type, so the next one is usually known.
    PProperty property = nullptr;
    std::string_view key;
    if (AExpected < type->PropertyCount() && type->HasPlainNames())
        key = type->PropertyNameUtf8(AExpected);
    if (!key.empty() && AField.key().unsafe_is_equal(key)) {
        property = type->Property(AExpected);
    } else {
        if (!Key(AField, key))
            return false;
        property = type->FindPropertyUtf8(key);
    }
    if (!property) {
        ++FMisfits;
        return SkipField(AField, key);
    }
    AExpected = property->Index + 1;
    void* storage = nullptr;
    std::string_view token;
    if (!Token(AField.value(), token))
        return false;
    // The last one of repeated keys counts, and nothing of the earlier ones.
    if (ZOObject::TData::GetProp(AObject, property->Index, storage))
        ZOObject::TData::SetProp(AObject, property->Index, false, storage);
    if (IsNull(token, property->Type))
        return true;
    ZOObject::TData::SetProp(AObject, property->Index, true, storage);
    return Fill(AField.value(), token, property->Type, storage) || Step(key);
}

bool TZOJsonDecoder::Skip(TValue& AValue, std::string_view AToken) {
    switch (AToken.front()) {
    case '{':
        return Enter(AToken) && SkipContainer(AValue, true);
    case '[':
        return Enter(AToken) && SkipContainer(AValue, false);
    case '"':
        return (IsString(AToken) && JsonText::IsStringContent(Content(AToken))) ||
               Fail(QStringLiteral("the string holds an escape that JSON does not know"), AToken.data());
    default:
        break;
    }
    if (IsScalar(AToken))
        return true;
    return Fail(QStringLiteral("%1 is no JSON value").arg(Shown(AToken)), AToken.data());
}

bool TZOJsonDecoder::SkipContainer(TValue& AValue, bool AIsObject) {
    const auto skipOne = [this](TValue& value) {
        std::string_view token;
        return Token(value, token) && Skip(value, token);
    };
    int index = 0;
    if (AIsObject) {
        ondemand::object fields;
        if (const auto error = AValue.get_object().get(fields))
            return FailSyntax(error);
        for (auto result : fields) {
            ondemand::field field;
            std::string_view key;
            if (const auto error = std::move(result).get(field))
                return FailSyntax(error);
            if (!Key(field, key))
                return false;
            if (!skipOne(field.value()))
                return Step(key);
        }
    } else {
        ondemand::array elements;
        if (const auto error = AValue.get_array().get(elements))
            return FailSyntax(error);
        for (auto result : elements) {
            TValue value;
            if (const auto error = std::move(result).get(value))
                return FailSyntax(error);
            if (!skipOne(value))
                return Step(index);
            ++index;
        }
    }
    --FDepth;
    return true;
}

bool TZOJsonDecoder::Key(ondemand::field& AField, std::string_view& AKey) {
    const char* place = AField.key().raw() - 1;
    if (const auto error = AField.unescaped_key().get(AKey))
        return error == STRING_ERROR
                   ? Fail(QStringLiteral("the key holds an escape that JSON does not know"), place)
                   : FailSyntax(error);
    return !IsSurrogateUtf8(AKey) || Fail(QStringLiteral("the key escapes half a character"), place);
}

bool TZOJsonDecoder::Enter(std::string_view AToken) {
    FIsTooDeep = ++FDepth > JsonText::MaxDepth;
    return !FIsTooDeep ||
           Fail(QStringLiteral("values nest more than %1 deep").arg(JsonText::MaxDepth), AToken.data());
}

std::string_view TZOJsonDecoder::TextSince(const char* AStart) {
    const char* end = FText + FSize;
    const char* place = nullptr;
    if (!FDocument.current_location().get(place))
        end = place;
    return Trimmed({AStart, static_cast<std::size_t>(end - AStart)});
}

bool TZOJsonDecoder::Fail(const QString& AMessage, const char* APlace) {
    FMessage = AMessage;
    FErrorOffset =
        APlace >= FText && APlace <= FText + FSize ? static_cast<std::size_t>(APlace - FText) : FSize;
    return false;
}

bool TZOJsonDecoder::FailSyntax(error_code AError) {
    const char* place = FText + FSize;
    const char* location = nullptr;
    switch (AError) {
    case EMPTY:
        return Fail(QStringLiteral("there is no text"), FText);
    case UTF8_ERROR:
        return Fail(QStringLiteral("the text is not valid UTF-8"), FText);
    case UNCLOSED_STRING:
    case INCOMPLETE_ARRAY_OR_OBJECT:
        return Fail(QStringLiteral("the text ends too early"), place);
    case UNESCAPED_CHARS:
        return Fail(QStringLiteral("a string holds a control character"), FText);
    case CAPACITY:
    case MEMALLOC:
        return Fail(QStringLiteral("the text is too long"), FText);
    default:
        break;
    }
    if (!FDocument.current_location().get(location))
        place = location;
    return Fail(place >= FText + FSize ? QStringLiteral("the text ends too early")
                                       : QStringLiteral("the text is no JSON from here on"),
                place);
}

bool TZOJsonDecoder::FailType(const TZOTypeInfo* AType, std::string_view AToken) {
    const bool isOpening = AToken.front() == '{' || AToken.front() == '[' || AToken.front() == '"';
    if (!isOpening && !IsScalar(AToken))
        return Fail(QStringLiteral("%1 is no JSON value").arg(Shown(AToken)), AToken.data());
    return Fail(QStringLiteral("%1 is expected, not %2").arg(ExpectedKind(AType->Kind()), FoundKind(AToken)),
                AToken.data());
}

bool TZOJsonDecoder::Step(QStringView AKey) {
    QString key = AKey.toString();
    key.replace(QLatin1Char('~'), QLatin1String("~0")).replace(QLatin1Char('/'), QLatin1String("~1"));
    FPointer.prepend(QLatin1Char('/') + key);
    return false;
}

bool TZOJsonDecoder::Step(std::string_view AKey) {
    return Step(QStringView(QString::fromUtf8(AKey.data(), qsizetype(AKey.size()))));
}

bool TZOJsonDecoder::Step(int AIndex) { return Step(QStringView(QString::number(AIndex))); }
