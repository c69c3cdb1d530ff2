// Where types are built and kept.
#pragma once

#include "runtime/types/List.h"
#include "runtime/types/Map.h"
#include "runtime/types/Object.h"
#include "runtime/types/TypeInfo.h"
#include "runtime/types/Union.h"

#include <memory>
#include <vector>

/// Adds properties to an object type; the type is complete when the builder dies.
class TZOObjectBuilder {
public:
    /// What may be said of a property beside its name and type.
    struct TOptions {
        bool Required = false;
        bool ReadOnly = false;
        QString Description = {};
    };

    explicit TZOObjectBuilder(ZOObject::TTypeInfo* AType) : FType(AType) {}

    /// Takes over all groups of a finished type; to be called before Property.
    TZOObjectBuilder& Base(const ZOObject::TTypeInfo* ABase);
    /// A name that the type has already is an EListError.
    TZOObjectBuilder& Property(const QString& AName, const TZOTypeInfo* AType, const TOptions& AOptions);
    TZOObjectBuilder& Property(const QString& AName, const TZOTypeInfo* AType);
    /// The group that following properties belong to, which is otherwise the type's own.
    TZOObjectBuilder& Group(const QString& AName);
    /// Makes room for ACount properties.
    TZOObjectBuilder& Reserve(int ACount);
    /// Makes the type polymorphic: AName is the key whose value names the subtype.
    TZOObjectBuilder& Discriminator(const QString& AName);
    TZOObjectBuilder& Subtype(const QString& AName, const ZOObject::TTypeInfo* AType);

    const ZOObject::TTypeInfo* Type() const { return FType; }

private:
    ZOObject::TTypeInfo* FType;
    QString FGroup = FType->Name();
};

/// Adds alternatives to a union type.
class TZOUnionBuilder {
public:
    explicit TZOUnionBuilder(ZOUnion::TTypeInfo* AType) : FType(AType) {}

    /// AType is null for a tag that carries no value.
    TZOUnionBuilder& Tag(const QString& AName, const TZOTypeInfo* AType);

    const ZOUnion::TTypeInfo* Type() const { return FType; }

private:
    ZOUnion::TTypeInfo* FType;
};

/// Owns the types of one service class, or of a program. Types refer to each other freely, in circles too,
/// and live as long as the library.
class TZOTypeLibrary {
public:
    TZOTypeLibrary();
    TZOTypeLibrary(const TZOTypeLibrary&) = delete;
    TZOTypeLibrary& operator=(const TZOTypeLibrary&) = delete;
    ~TZOTypeLibrary();

    /// The shared description of a kind that needs no more than that (vkString to vkDownload).
    static const TZOTypeInfo* Scalar(TZOValueKind AKind);

    /// A scalar type of its own. AAllowedValues are offered, not enforced.
    const TZOTypeInfo* NewScalar(TZOValueKind AKind, const QString& AName, const QString& ADescription,
                                 const QStringList& AAllowedValues = {});
    const ZOList::TTypeInfo* NewList(const TZOTypeInfo* AItemType, const QString& AName = {},
                                     const QString& ADescription = {});
    const ZOMap::TTypeInfo* NewMap(const TZOTypeInfo* AItemType, const QString& AName = {},
                                   const QString& ADescription = {});
    /// A list or map whose items' type is set later, once, so that it may hold itself.
    ZOList::TTypeInfo* NewOpenList(const QString& AName = {}, const QString& ADescription = {});
    ZOMap::TTypeInfo* NewOpenMap(const QString& AName = {}, const QString& ADescription = {});
    static void SetItemType(ZOList::TTypeInfo* AList, const TZOTypeInfo* AItemType);
    static void SetItemType(ZOMap::TTypeInfo* AMap, const TZOTypeInfo* AItemType);
    TZOObjectBuilder NewObject(const QString& AName, const QString& ADescription = {});
    TZOUnionBuilder NewUnion(const QString& AName, const QString& ATagName, TZOUnionForm AForm,
                             const QString& ADescription = {});

private:
    template <class T>
    T* Keep(T* AType);

    std::vector<std::unique_ptr<TZOTypeInfo>> FTypes;
};
