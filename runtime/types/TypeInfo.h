// Descriptions of typed values: what a value's storage is and what may stand in it. A description never
// changes once its type has been built, and outlives every value of it.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <typeinfo>

class TZORestServiceClass;

/// The kind of a value. The numbers are part of the contract between the runtime and its users.
enum TZOValueKind : quint8 {
    vkString = 0,   ///< QString
    vkInteger = 1,  ///< qint32
    vkInt64 = 2,    ///< qint64
    vkBoolean = 3,  ///< one byte, 0 or 1
    vkFloat = 4,    ///< double
    vkDateTime = 5, ///< TDateTime
    vkDate = 6,     ///< TDateTime without a time
    vkAny = 7,      ///< ZOAny
    vkUpload = 8,   ///< ZOUpload
    vkDownload = 9, ///< ZODownload
    vkList = 10,    ///< ZOList, in place
    vkMap = 11,     ///< ZOMap, in place
    vkObject = 12,  ///< ZOObject*, owned by the slot, never null while the slot is present
    vkUnion = 13,   ///< ZOUnion*, owned by the slot, never null while the slot is present
    vkService = 14  ///< describes a service class; there are no values of it
};

/// Days since 1899-12-30T00:00:00Z, the time of day as the fraction.
using TDateTime = double;

class TZOTypeInfo {
public:
    TZOTypeInfo(const TZOTypeInfo&) = delete;
    TZOTypeInfo& operator=(const TZOTypeInfo&) = delete;
    virtual ~TZOTypeInfo();

    TZOValueKind Kind() const noexcept { return FKind; }
    /// The type's own name; empty for types that are used where they are described.
    const QString& Name() const noexcept { return FName; }
    /// Free text about the type; an operation's description is that of its request type.
    const QString& Description() const noexcept { return FDescription; }
    /// The texts that a value may have, in the order declared; empty when any will do.
    const QStringList& AllowedValues() const noexcept { return FAllowedValues; }

    /// The description of a compiled C++ type: the scalars of TZOValueKind and service classes' C++ types.
    /// double is a float: date-times and dates have no C++ type of their own.
    /// Null when the type was never registered.
    static const TZOTypeInfo* Get(const std::type_info& AType);
    /// The description of a service class: its TZORestService::TTypeInfo.
    static const TZOTypeInfo* Get(const TZORestServiceClass& AClass);
    /// All registered service classes, in the order of their registration.
    static QList<const TZORestServiceClass*> Services();

    /// Makes Get(AType) answer AInfo (not owned), or nothing again when AInfo is null.
    static void Register(const std::type_info& AType, const TZOTypeInfo* AInfo);

protected:
    explicit TZOTypeInfo(TZOValueKind AKind, const QString& AName = {}, const QString& ADescription = {},
                         const QStringList& AAllowedValues = {});

private:
    friend class TZOTypeLibrary;

    TZOValueKind FKind;
    QString FName;
    QString FDescription;
    QStringList FAllowedValues;
};

/// The English name of a kind for messages: "string", "integer", ... "object", "union".
QString KindName(TZOValueKind AKind);
