// Typed values for C++ code that knows what is in them.
#pragma once

#include "platform/Utf8.h"
#include "runtime/types/Object.h"

#include <QDateTime>

/// Refers to a value of any kind, or to none where it is absent, and reads and writes it with C++ types. It
/// owns nothing; adding to a list or map may move the storage of its entries.
class TZOValueRef {
public:
    /// Refers to nothing.
    TZOValueRef() = default;
    /// The value of AType at AStorage; null: absent.
    TZOValueRef(const TZOTypeInfo* AType, void* AStorage);

    bool IsPresent() const noexcept { return FStorage != nullptr; }
    /// Of an object its actual type, which may be a subtype of the declared one. Null where nothing is known.
    const TZOTypeInfo* Type() const noexcept { return FType; }
    void* Storage() const noexcept { return FStorage; }

    /// The property of an object or the entry of a map; absent where that or this is. Raises EInvalidCast
    /// when the type has no such property, and for other kinds.
    TZOValueRef operator[](const QString& AName) const;
    /// The entry of a list. Raises EListError unless AIndex is from 0 to Count()-1, and EInvalidCast for
    /// other kinds.
    TZOValueRef operator[](int AIndex) const;
    /// Entries of a list or map; 0 where it is absent. Raises EInvalidCast for other kinds.
    int Count() const;
    /// The keys of a map, in its order.
    QStringList Keys() const;

    /// The value as QString, qint32, qint64 (integers of both sizes), bool, double (all numbers), QDateTime
    /// in UTC or QDate. Raises EInvalidCast when it is absent or of another kind.
    template <class T>
    T As() const;
    /// The same, with what stands for an absent value.
    template <class T>
    T As(const T& AAbsent) const {
        return IsPresent() ? As<T>() : AAbsent;
    }

    /// Stores a value; integers are taken by every kind of numbers, and one that does not fit raises
    /// EConvertError. Raises EInvalidCast when the reference is to nothing or the kind is another.
    void Set(const QString& AValue) const;
    void Set(const char* AText) const { Set(TextFromUtf8(AText)); }
    void Set(qint32 AValue) const { Set(qint64(AValue)); }
    void Set(qint64 AValue) const;
    void Set(bool AValue) const;
    void Set(double AValue) const;
    void Set(const QDateTime& AValue) const;
    void Set(const QDate& AValue) const;

    /// The property of an object or the entry of a map, made present first when absent. Raises as [] does,
    /// and when this is absent.
    TZOValueRef Make(const QString& AName) const;
    /// Replaces a polymorphic object by an empty one of the subtype of that name, and refers to that. Raises
    /// EInvalidCast when there is no such subtype.
    TZOValueRef MakeSubtype(const QString& AName) const;
    /// A new entry at the end of a list.
    TZOValueRef Append() const;

    /// Goes through the entries of a list.
    class TIterator {
    public:
        TIterator(const TZOValueRef& AList, int AIndex) : FList(&AList), FIndex(AIndex) {}
        TZOValueRef operator*() const { return (*FList)[FIndex]; }
        TIterator& operator++() {
            ++FIndex;
            return *this;
        }
        bool operator!=(const TIterator& AOther) const { return FIndex != AOther.FIndex; }

    private:
        const TZOValueRef* FList;
        int FIndex;
    };
    TIterator begin() const { return {*this, 0}; }
    TIterator end() const { return {*this, Count()}; }

private:
    [[noreturn]] void Refuse(const char* AWhat) const;
    void Need(TZOValueKind AKind, const char* AWhat) const;
    PProperty FindProperty(const QString& AName) const;
    template <class T>
    T& Stored() const {
        return *static_cast<T*>(FStorage);
    }

    const TZOTypeInfo* FType = nullptr;
    void* FStorage = nullptr;
};

template <>
QString TZOValueRef::As<QString>() const;
template <>
qint32 TZOValueRef::As<qint32>() const;
template <>
qint64 TZOValueRef::As<qint64>() const;
template <>
bool TZOValueRef::As<bool>() const;
template <>
double TZOValueRef::As<double>() const;
template <>
QDateTime TZOValueRef::As<QDateTime>() const;
template <>
QDate TZOValueRef::As<QDate>() const;
