#include "runtime/types/ValueRef.h"

#include "runtime/types/List.h"
#include "runtime/types/Map.h"

#include "platform/Exceptions.h"

#include <QTimeZone>

#include <cmath>
#include <limits>
#include <utility>

namespace {

constexpr double MsPerDay = 24 * 60 * 60 * 1000;
const QDate FirstDay(1899, 12, 30);

TDateTime DaysUntil(const QDate& ADate) { return double(FirstDay.daysTo(ADate)); }

} // namespace

TZOValueRef::TZOValueRef(const TZOTypeInfo* AType, void* AStorage) : FType(AType), FStorage(AStorage) {
    if (FStorage && FType->Kind() == vkObject)
        FType = ZOObject::TData::Type(Stored<ZOObject*>());
}

void TZOValueRef::Refuse(const char* AWhat) const {
    if (!FStorage)
        throw EInvalidCast(QStringLiteral("An absent value is used as %1.").arg(QLatin1String(AWhat)));
    throw EInvalidCast(QStringLiteral("A value of kind %1 is used as %2.")
                           .arg(KindName(FType->Kind()), QLatin1String(AWhat)));
}

void TZOValueRef::Need(TZOValueKind AKind, const char* AWhat) const {
    if (!FStorage || FType->Kind() != AKind)
        Refuse(AWhat);
}

TZOValueRef TZOValueRef::operator[](const QString& AName) const {
    if (!FStorage)
        return {};
    void* ref = nullptr;
    if (FType->Kind() == vkMap) {
        Stored<ZOMap>().GetItem(AName, ref);
        return {static_cast<const ZOMap::TTypeInfo*>(FType)->ItemType(), ref};
    }
    const PProperty property = FindProperty(AName);
    ZOObject::TData::GetProp(Stored<ZOObject*>(), property->Index, ref);
    return {property->Type, ref};
}

PProperty TZOValueRef::FindProperty(const QString& AName) const {
    Need(vkObject, "object or map");
    const PProperty property = static_cast<const ZOObject::TTypeInfo*>(FType)->FindProperty(AName);
    if (!property)
        throw EInvalidCast(
            QStringLiteral("%1 has no property \"%2\".")
                .arg(FType->Name().isEmpty() ? QStringLiteral("The object") : FType->Name(), AName));
    return property;
}

TZOValueRef TZOValueRef::Make(const QString& AName) const {
    void* ref = nullptr;
    if (FStorage && FType->Kind() == vkMap) {
        Stored<ZOMap>().GetByRef(AName, ref);
        return {static_cast<const ZOMap::TTypeInfo*>(FType)->ItemType(), ref};
    }
    const PProperty property = FindProperty(AName);
    ZOObject::TData::GetByRef(Stored<ZOObject*>(), property->Index, ref);
    return {property->Type, ref};
}

TZOValueRef TZOValueRef::MakeSubtype(const QString& AName) const {
    Need(vkObject, "object");
    const auto subtype = static_cast<const ZOObject::TTypeInfo*>(FType)->FindSubtype(AName);
    if (!subtype)
        throw EInvalidCast(QStringLiteral("%1 has no subtype \"%2\".").arg(FType->Name(), AName));
    // The slot owns its object.
    delete std::exchange(Stored<ZOObject*>(), subtype->Type->CreateInstance().release());
    return {subtype->Type, FStorage};
}

TZOValueRef TZOValueRef::operator[](int AIndex) const {
    if (FStorage)
        Need(vkList, "list");
    if (AIndex < 0 || AIndex >= Count())
        throw EListError(QStringLiteral("The list has no entry %1.").arg(AIndex));
    void* ref = nullptr;
    Stored<ZOList>().GetItem(AIndex, ref);
    return {static_cast<const ZOList::TTypeInfo*>(FType)->ItemType(), ref};
}

TZOValueRef TZOValueRef::Append() const {
    Need(vkList, "list");
    return {static_cast<const ZOList::TTypeInfo*>(FType)->ItemType(), Stored<ZOList>().Append()};
}

int TZOValueRef::Count() const {
    if (!FStorage)
        return 0;
    if (FType->Kind() == vkMap)
        return Stored<ZOMap>().Count();
    Need(vkList, "list or map");
    return Stored<ZOList>().Count();
}

QStringList TZOValueRef::Keys() const {
    if (!FStorage)
        return {};
    Need(vkMap, "map");
    return Stored<ZOMap>().Keys();
}

template <>
QString TZOValueRef::As<QString>() const {
    Need(vkString, "string");
    return Stored<QString>();
}

template <>
qint32 TZOValueRef::As<qint32>() const {
    Need(vkInteger, "integer");
    return Stored<qint32>();
}

template <>
qint64 TZOValueRef::As<qint64>() const {
    if (FStorage && FType->Kind() == vkInteger)
        return Stored<qint32>();
    Need(vkInt64, "int64");
    return Stored<qint64>();
}

template <>
bool TZOValueRef::As<bool>() const {
    Need(vkBoolean, "boolean");
    return Stored<quint8>() != 0;
}

template <>
double TZOValueRef::As<double>() const {
    if (FStorage && (FType->Kind() == vkInteger || FType->Kind() == vkInt64))
        return double(As<qint64>());
    Need(vkFloat, "float");
    return Stored<double>();
}

template <>
QDateTime TZOValueRef::As<QDateTime>() const {
    Need(vkDateTime, "date-time");
    const TDateTime value = Stored<TDateTime>();
    const double days = std::floor(value);
    return QDateTime(FirstDay.addDays(qint64(days)), QTime(0, 0), QTimeZone::utc())
        .addMSecs(qRound64((value - days) * MsPerDay));
}

template <>
QDate TZOValueRef::As<QDate>() const {
    Need(vkDate, "date");
    return FirstDay.addDays(qint64(std::floor(Stored<TDateTime>())));
}

void TZOValueRef::Set(const QString& AValue) const {
    Need(vkString, "string");
    Stored<QString>() = AValue;
}

void TZOValueRef::Set(qint64 AValue) const {
    if (FStorage && FType->Kind() == vkFloat)
        return Set(double(AValue));
    if (!FStorage || FType->Kind() != vkInteger) {
        Need(vkInt64, "int64");
        Stored<qint64>() = AValue;
        return;
    }
    using TLimits = std::numeric_limits<qint32>;
    if (AValue < TLimits::min() || AValue > TLimits::max())
        throw EConvertError(QStringLiteral("%1 is too large for an integer of 32 bits.").arg(AValue));
    Stored<qint32>() = qint32(AValue);
}

void TZOValueRef::Set(bool AValue) const {
    Need(vkBoolean, "boolean");
    Stored<quint8>() = AValue;
}

void TZOValueRef::Set(double AValue) const {
    Need(vkFloat, "float");
    Stored<double>() = AValue;
}

void TZOValueRef::Set(const QDateTime& AValue) const {
    Need(vkDateTime, "date-time");
    const QDateTime utc = AValue.toUTC();
    Stored<TDateTime>() = DaysUntil(utc.date()) + utc.time().msecsSinceStartOfDay() / MsPerDay;
}

void TZOValueRef::Set(const QDate& AValue) const {
    Need(vkDate, "date");
    Stored<TDateTime>() = DaysUntil(AValue);
}
