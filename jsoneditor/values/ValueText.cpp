#include "jsoneditor/values/ValueText.h"

#include "platform/Exceptions.h"
#include "platform/TextConversion.h"
#include "runtime/types/Any.h"
#include "runtime/types/Rfc3339.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>

namespace {

template <class T>
const T& As(const void* AValue) {
    return *static_cast<const T*>(AValue);
}

template <class T>
void Store(void* AValue, const T& ANew) {
    *static_cast<T*>(AValue) = ANew;
}

ZOAny ToAnyCheck(const QString& AText) {
    if (!ZOAny::IsValidJson(AText))
        throw EConvertError(QStringLiteral("ZOAny value should be a valid JSON value"));
    return ZOAny::FromJson(AText);
}

} // namespace

bool ValueText::IsContainer(TZOValueKind AKind) { return AKind >= vkList && AKind <= vkUnion; }

QString ValueText::ToText(const TZOTypeInfo* AType, const void* AValue) {
    switch (AType->Kind()) {
    case vkString:
        return As<QString>(AValue);
    case vkInteger:
        return QString::number(As<qint32>(AValue));
    case vkInt64:
        return QString::number(As<qint64>(AValue));
    case vkBoolean:
        return BoolToStr(As<quint8>(AValue) != 0);
    case vkFloat:
        return FloatToStr(As<double>(AValue));
    case vkDateTime:
        return TZORfc3339::ToStr(As<TDateTime>(AValue));
    case vkDate:
        return TZORfc3339::DateToStr(As<TDateTime>(AValue));
    case vkAny:
        return As<ZOAny>(AValue).GetJson();
    case vkUpload:
        return QStringLiteral("(Upload)");
    case vkDownload:
        return QStringLiteral("(Download)");
    case vkList:
    case vkMap:
    case vkObject:
    case vkUnion:
    case vkService:
        break;
    }
    return QString();
}

QString ValueText::Hint(TZOValueKind AKind) {
    switch (AKind) {
    case vkAny:
    case vkList:
    case vkMap:
    case vkObject:
    case vkUnion:
        return KindName(AKind);
    default:
        return QStringLiteral("value");
    }
}

void ValueText::FromText(const TZOTypeInfo* AType, const QString& AText, void* AValue) {
    switch (AType->Kind()) {
    case vkString:
        return Store(AValue, AText);
    case vkInteger:
        return Store<qint32>(AValue, StrToInt(AText));
    case vkInt64:
        return Store<qint64>(AValue, StrToInt(AText));
    case vkBoolean:
        return Store<quint8>(AValue, StrToBool(AText) ? 1 : 0);
    case vkFloat:
        return Store(AValue, StrToFloat(AText));
    case vkDateTime:
        return Store(AValue, TZORfc3339::Parse(AText));
    case vkDate:
        return Store(AValue, std::floor(TZORfc3339::Parse(AText)));
    case vkAny:
        return Store(AValue, ToAnyCheck(AText));
    case vkUpload:
    case vkDownload:
    case vkList:
    case vkMap:
    case vkObject:
    case vkUnion:
    case vkService:
        return;
    }
}

namespace {

bool IsMadeOf(const QString& AText, QStringView ACharacters) {
    return std::all_of(AText.begin(), AText.end(), [&](QChar c) { return ACharacters.contains(c); });
}

template <class T>
bool IsInNumber(const ValueText::TMatcher& AMatcher, T AValue) {
    char digits[24];
    const char* end = std::to_chars(std::begin(digits), std::end(digits), AValue).ptr;
    QChar text[24];
    std::copy(std::begin(digits), static_cast<char*>(digits) + (end - digits), std::begin(text));
    return AMatcher.Matches(QStringView(text, end - digits));
}

} // namespace

ValueText::TMatcher::TMatcher(const QString& AText)
    : FMatcher(AText, Qt::CaseInsensitive),
      FFitsIntegers(IsMadeOf(AText, u"-0123456789")),
      FFitsDates(IsMadeOf(AText, u"-+:.0123456789tTzZ ")),
      FIsInTrue(BoolToStr(true).contains(AText, Qt::CaseInsensitive)),
      FIsInFalse(BoolToStr(false).contains(AText, Qt::CaseInsensitive)) {}

bool ValueText::TMatcher::Matches(const TZOTypeInfo* AType, const void* AValue) const {
    switch (AType->Kind()) {
    case vkString:
        return Matches(As<QString>(AValue));
    case vkInteger:
        return FFitsIntegers && IsInNumber(*this, As<qint32>(AValue));
    case vkInt64:
        return FFitsIntegers && IsInNumber(*this, As<qint64>(AValue));
    case vkBoolean:
        return As<quint8>(AValue) ? FIsInTrue : FIsInFalse;
    case vkDateTime:
    case vkDate:
        return FFitsDates && Matches(ToText(AType, AValue));
    default:
        return Matches(ToText(AType, AValue));
    }
}
