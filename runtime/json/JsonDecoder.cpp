#include "runtime/json/JsonDecoder_p.h"

#include "runtime/json/PlainNumbers_p.h"
#include "runtime/json/WholeNumber_p.h"

#include "platform/Utf8.h"
#include "runtime/types/Any.h"
#include "runtime/types/JsonText.h"
#include "runtime/types/Rfc3339.h"
#include "runtime/types/ValueHolder.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace {

bool IsNumberStart(std::string_view AToken) {
    return !AToken.empty() && std::string_view("{[\"tfn").find(AToken.front()) == std::string_view::npos;
}

bool IsScalar(std::string_view AToken) {
    return AToken == "true" || AToken == "false" || AToken == "null" || JsonText::IsNumber(AToken);
}

QString Shown(std::string_view AText) {
    constexpr std::size_t most = 40;
    QString text = TextFromUtf8(AText.substr(0, most));
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

} // namespace

TZOJsonDecoder::TZOJsonDecoder(TZOJsonTokens& ATokens, TZOJsonTexts& ATexts, int ADepth)
    : FTokens(ATokens), FTexts(ATexts), FDepth(ADepth) {}

bool TZOJsonDecoder::Decode(const TZOTypeInfo* AType, TZOValueHolder& ADest) {
    if (FTokens.IsAtEnd() && !FTokens.Error())
        return Fail(QStringLiteral("there is no value"), FTokens.Text());
    if (!FillSlot(AType, [&](bool has, void*& ref) { return ADest.SetValue(has, ref); }))
        return false;
    if (FTokens.Error())
        return FailText();
    return FTokens.IsAtEnd() || Fail(QStringLiteral("there is more text behind the value"), FTokens.Start());
}

bool TZOJsonDecoder::TakeWordNull(const TZOTypeInfo* AType) {
    if (FTokens.Token() != "null")
        return false;
    if (AType->Kind() == vkUnion && static_cast<const ZOUnion::TTypeInfo*>(AType)->Form() == ufBare) {
        for (const ZOUnion::TTag& tag : static_cast<const ZOUnion::TTypeInfo*>(AType)->Tags()) {
            if (!tag.Type)
                return false;
        }
    }
    FTokens.Drop();
    return true;
}

bool TZOJsonDecoder::Fill(const TZOTypeInfo* AType, void* AStorage) {
    qint64 whole = 0;
    switch (AType->Kind()) {
    case vkString:
        return FillString(*static_cast<QString*>(AStorage));
    case vkInteger:
        if (!FillWholeNumber(std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max(), whole))
            return false;
        *static_cast<qint32*>(AStorage) = static_cast<qint32>(whole);
        return true;
    case vkInt64:
        return FillWholeNumber(std::numeric_limits<qint64>::min(), std::numeric_limits<qint64>::max(),
                               *static_cast<qint64*>(AStorage));
    case vkBoolean:
        return FillBoolean(*static_cast<quint8*>(AStorage));
    case vkFloat:
        return FillFloat(*static_cast<double*>(AStorage));
    case vkDateTime:
    case vkDate:
        return FillDate(AType->Kind(), *static_cast<double*>(AStorage));
    case vkAny: {
        QByteArray json;
        if (!FillAny(json))
            return false;
        *static_cast<ZOAny*>(AStorage) = ZOAny::FromValidUtf8(std::move(json));
        return true;
    }
    case vkUpload:
    case vkDownload:
        return Skip();
    case vkList:
        return FillList(*static_cast<ZOList*>(AStorage));
    case vkMap:
        return FillMap(*static_cast<ZOMap*>(AStorage));
    case vkObject:
        return FillObject(static_cast<const ZOObject::TTypeInfo*>(AType), *static_cast<ZOObject**>(AStorage));
    case vkUnion:
        return FillUnion(static_cast<const ZOUnion::TTypeInfo*>(AType), *static_cast<ZOUnion**>(AStorage));
    case vkService:
        break;
    }
    return FailType(AType->Kind(), FTokens.Token());
}

bool TZOJsonDecoder::TextWithEscapes(TZOValueKind AKind, std::string_view& AText, bool& AIsPlain) {
    const std::string_view token = FTokens.Token();
    if (!IsString(token))
        return FailType(AKind, token);
    AText = Content(token);
    AIsPlain = AText.find('\\') == AText.npos;
    if (!JsonText::IsStringContent(AText))
        return Fail(QStringLiteral("the string holds an escape that JSON does not know"), token.data());
    if (JsonText::HasLoneSurrogate(AText))
        return Fail(QStringLiteral("the string escapes half a character"), token.data());
    if (!AIsPlain)
        AText = FTokens.Unescaped(AText);
    FTokens.Drop();
    return true;
}

bool TZOJsonDecoder::FillString(QString& AString) {
    std::string_view text;
    bool isPlain = false;
    if (!Text(vkString, text, isPlain))
        return false;
    AString = isPlain ? FTexts.Get(text) : FTexts.GetUnescaped(text);
    return true;
}

bool TZOJsonDecoder::FillBoolean(quint8& AValue) {
    const std::string_view token = FTokens.Token();
    if (token != "true" && token != "false")
        return FailType(vkBoolean, token);
    AValue = token == "true";
    FTokens.Drop();
    return true;
}

bool TZOJsonDecoder::FillWholeNumber(qint64 AMin, qint64 AMax, qint64& ANumber) {
    const std::string_view token = FTokens.Token();
    if (!PlainNumbers::ToWhole(token, ANumber) && !TakeWholeNumber(token, ANumber))
        return false;
    if (ANumber < AMin || ANumber > AMax)
        return Fail(QStringLiteral("%1 does not fit the integer type").arg(Shown(token)), token.data());
    FTokens.Drop();
    return true;
}

bool TZOJsonDecoder::TakeWholeNumber(std::string_view AToken, qint64& ANumber) {
    if (!IsNumberStart(AToken))
        return FailType(vkInteger, AToken);
    if (!JsonText::IsNumber(AToken))
        return Fail(QStringLiteral("%1 is no JSON value").arg(Shown(AToken)), AToken.data());
    switch (ReadWholeNumber(AToken, ANumber)) {
    case wnTooLarge:
        return Fail(QStringLiteral("%1 does not fit the integer type").arg(Shown(AToken)), AToken.data());
    case wnFraction:
        return Fail(QStringLiteral("%1 is not a whole number").arg(Shown(AToken)), AToken.data());
    case wnWhole:
        break;
    }
    return true;
}

bool TZOJsonDecoder::FillFloat(double& ANumber) {
    const std::string_view token = FTokens.Token();
    if (!PlainNumbers::ToDouble(token, ANumber) && !ReadFloat(token, ANumber))
        return false;
    FTokens.Drop();
    return true;
}

bool TZOJsonDecoder::ReadFloat(std::string_view AToken, double& ANumber) {
    if (!IsNumberStart(AToken))
        return FailType(vkFloat, AToken);
    if (!JsonText::IsNumber(AToken))
        return Fail(QStringLiteral("%1 is no JSON value").arg(Shown(AToken)), AToken.data());
    const auto result = std::from_chars(AToken.data(), AToken.data() + AToken.size(), ANumber);
    return (result.ec == std::errc() && std::isfinite(ANumber)) ||
           Fail(QStringLiteral("%1 does not fit the float type").arg(Shown(AToken)), AToken.data());
}

bool TZOJsonDecoder::FillDate(TZOValueKind AKind, double& ADate) {
    const std::string_view token = FTokens.Token();
    std::string_view text;
    bool isPlain = false;
    if (!Text(AKind, text, isPlain))
        return false;
    return TZORfc3339::TryParse(text, ADate) ||
           Fail(QStringLiteral("%1 is not a valid RFC 3339 date or date-time").arg(Shown(token)),
                token.data());
}

bool TZOJsonDecoder::FillAny(QByteArray& AJson) {
    std::string_view text = FTokens.Token();
    if (!Skip())
        return false;
    if (text.front() == '{' || text.front() == '[')
        text = FTokens.TextSince(text.data());
    AJson = QByteArray(text.data(), qsizetype(text.size()));
    return true;
}

bool TZOJsonDecoder::FillList(ZOList& AList) {
    if (FTokens.Peek() != '[')
        return FailType(vkList, FTokens.Token());
    const TZOTypeInfo* itemType = AList.Type()->ItemType();
    return ForEach(']', [&] {
        void* storage = nullptr;
        if (TakeNull(itemType))
            return AList.Insert(AList.Count(), false, storage);
        return Fill(itemType, AList.Append()) || Step(AList.Count() - 1);
    });
}

bool TZOJsonDecoder::FillMap(ZOMap& AMap) {
    if (FTokens.Peek() != '{')
        return FailType(vkMap, FTokens.Token());
    const TZOTypeInfo* itemType = AMap.Type()->ItemType();
    return ForEach('}', [&] {
        std::string_view key;
        if (!Key(key))
            return false;
        const bool isPlain = key.find('\\') == key.npos;
        const QString name = isPlain ? FTexts.Get(key) : FTexts.GetUnescaped(Unescaped(key));
        // The last one of repeated keys counts, and nothing of the earlier ones.
        void* old = nullptr;
        if (AMap.GetItem(name, old))
            AMap.SetItem(name, false, old);
        return FillSlot(itemType, [&](bool has, void*& ref) { return AMap.SetItem(name, has, ref); }) ||
               Step(QStringView(name));
    });
}

bool TZOJsonDecoder::FillProperties(ZOObject* AObject, std::string_view ADiscriminator) {
    const auto* type = ZOObject::TData::Type(AObject);
    int expected = 0;
    const bool isFilled = ForEach('}', [&] {
        if (ADiscriminator.empty())
            return FillProperty(type, AObject, expected);
        const TPlace place = FTokens.Start();
        std::string_view key;
        if (!Key(key))
            return false;
        if (Unescaped(key) == ADiscriminator)
            return Skip() || Step(key);
        FTokens.GoTo(place);
        return FillProperty(type, AObject, expected);
    });
    if (!isFilled || !FIsTrial)
        return isFilled;
    void* ref = nullptr;
    for (int i = 0; i < type->PropertyCount(); ++i)
        FMisfits += type->Property(i)->Required && !ZOObject::TData::GetProp(AObject, i, ref);
    return true;
}

bool TZOJsonDecoder::FillProperty(const ZOObject::TTypeInfo* AType, ZOObject* AObject, int& AExpected) {
    // Servers write properties in the order of their type, so the next one is usually known.
    std::string_view key;
    if (AExpected < AType->PropertyCount() && FTokens.TakeKey(AType->JsonKey(AExpected))) {
        key = Content(AType->JsonKey(AExpected));
    } else {
        if (!Key(key))
            return false;
        const PProperty property = AType->FindPropertyUtf8(Unescaped(key));
        if (!property) {
            ++FMisfits;
            return Skip() || Step(key);
        }
        AExpected = property->Index;
    }
    const int index = AExpected++;
    const TZOTypeInfo* const type = AType->PropertyType(index);
    // The last one of repeated keys counts, and nothing of the earlier ones.
    void* storage = nullptr;
    if (TakeNull(type))
        return ZOObject::TData::SetProp(AObject, index, false, storage);
    storage = ZOObject::TData::Renew(AObject, index);
    return Fill(type, storage) || Step(key);
}

bool TZOJsonDecoder::Skip() {
    const char first = FTokens.Peek();
    if (first == '{' || first == '[')
        return SkipOpened(first);
    const std::string_view token = FTokens.Token();
    if (token.empty())
        return FailSyntax();
    if (IsString(token)) {
        if (Words::MayHaveBackslash(token) && !JsonText::IsStringContent(Content(token)))
            return Fail(QStringLiteral("the string holds an escape that JSON does not know"), token.data());
    } else if (!IsScalar(token)) {
        return Fail(QStringLiteral("%1 is no JSON value").arg(Shown(token)), token.data());
    }
    FTokens.Drop();
    return true;
}

bool TZOJsonDecoder::SkipOpened(char AOpening) {
    if (AOpening == '{') {
        return ForEach('}', [this] {
            std::string_view key;
            return Key(key) && (Skip() || Step(key));
        });
    }
    int index = 0;
    return ForEach(']', [&] {
        if (!Skip())
            return Step(index);
        ++index;
        return true;
    });
}

void TZOJsonDecoder::Leap() {
    int open = 0;
    while (!FTokens.IsAtEnd()) {
        const char first = FTokens.Peek();
        if (first == '{' || first == '[')
            ++open;
        else if ((first == '}' || first == ']') && --open < 0)
            return;
        FTokens.Drop();
        if (open == 0)
            return;
    }
}

bool TZOJsonDecoder::Key(std::string_view& AKey) {
    const std::string_view token = FTokens.Token();
    if (!IsString(token))
        return FailSyntax();
    AKey = Content(token);
    if (Words::MayHaveBackslash(token)) {
        if (!JsonText::IsStringContent(AKey))
            return Fail(QStringLiteral("the key holds an escape that JSON does not know"), token.data());
        if (JsonText::HasLoneSurrogate(AKey))
            return Fail(QStringLiteral("the key escapes half a character"), token.data());
    }
    FTokens.Drop();
    return FTokens.Take(':') || FailSyntax();
}

std::string_view TZOJsonDecoder::Unescaped(std::string_view ARaw) {
    return ARaw.find('\\') == ARaw.npos ? ARaw : FTokens.Unescaped(ARaw);
}

bool TZOJsonDecoder::Fail(const QString& AMessage, const char* APlace) {
    FMessage = AMessage;
    FErrorOffset = static_cast<std::size_t>(APlace - FTokens.Text());
    return false;
}

bool TZOJsonDecoder::FailSyntax() {
    if (!FTokens.IsAtEnd())
        return Fail(QStringLiteral("the text is no JSON from here on"), FTokens.Start());
    if (FTokens.Error())
        return FailText();
    return Fail(QStringLiteral("the text ends too early"), FTokens.TextEnd());
}

bool TZOJsonDecoder::FailText() {
    // Where in it is not known.
    const char* place = FTokens.Text();
    switch (FTokens.Error()) {
    case simdjson::UTF8_ERROR:
        return Fail(QStringLiteral("the text is not valid UTF-8"), place);
    case simdjson::UNCLOSED_STRING:
        return Fail(QStringLiteral("the text ends too early"), FTokens.TextEnd());
    case simdjson::UNESCAPED_CHARS:
        return Fail(QStringLiteral("a string holds a control character"), place);
    case simdjson::CAPACITY:
    case simdjson::MEMALLOC:
        return Fail(QStringLiteral("the text is too long"), place);
    default:
        return Fail(QStringLiteral("the text is no JSON"), place);
    }
}

bool TZOJsonDecoder::FailType(TZOValueKind AKind, std::string_view AToken) {
    if (AToken.empty())
        return FailSyntax();
    const bool isOpening = AToken.front() == '{' || AToken.front() == '[' || AToken.front() == '"';
    if (!isOpening && !IsScalar(AToken))
        return Fail(QStringLiteral("%1 is no JSON value").arg(Shown(AToken)), AToken.data());
    return Fail(QStringLiteral("%1 is expected, not %2").arg(ExpectedKind(AKind), FoundKind(AToken)),
                AToken.data());
}

bool TZOJsonDecoder::Step(QStringView AKey) {
    QString key = AKey.toString();
    key.replace(QLatin1Char('~'), QLatin1String("~0")).replace(QLatin1Char('/'), QLatin1String("~1"));
    FPointer.prepend(QLatin1Char('/') + key);
    return false;
}

bool TZOJsonDecoder::Step(std::string_view AKey) {
    const std::string_view key = Unescaped(AKey);
    return Step(QStringView(TextFromUtf8(key)));
}

bool TZOJsonDecoder::Step(int AIndex) { return Step(QStringView(QString::number(AIndex))); }
