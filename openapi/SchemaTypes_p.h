// Schemas to types.
#pragma once

#include "openapi/DocSource_p.h"

#include "runtime/types/TypeLibrary.h"

#include <QHash>

#include <functional>
#include <optional>
#include <unordered_set>

/// One property that an object schema has, wherever it is declared.
struct TSchemaField {
    QString Name;
    TDocView Schema;
    QString Group; ///< the declared base it comes from; empty for the schema's own
    bool IsRequired = false;
};

/// Makes the types of one document. A schema that is referred to becomes one type, however often; schemas
/// that nobody asks for become none. Containers are made empty first and filled from a queue, so that
/// types may refer to themselves and no nesting of schemas can exhaust the stack.
class TSchemaTypes {
public:
    TSchemaTypes(TDocSource& ASource, TZOTypeLibrary& ATypes) : FSource(ASource), FTypes(ATypes) {}

    /// The type of ASchema, complete with everything it refers to; any where it says nothing. Never null.
    const TZOTypeInfo* TypeOf(TDocView ASchema);
    /// The properties of an object schema with those of its bases, bases first, each name once.
    std::vector<TSchemaField> FieldsOf(TDocView ASchema);
    /// Whether ASchema is content of bytes.
    bool IsBinary(TDocView ASchema);
    /// What a user should know of a value: description, default and example, from AFirst or else ASecond.
    QString TextOf(TDocView AFirst, TDocView ASecond = {});
    /// Whether the server alone sets a value of ASchema.
    bool IsReadOnly(TDocView ASchema);
    /// AView's text; equal texts share their memory.
    QString Shared(TDocView AView);

    /// The names of the types that a schema allows, without "null".
    static std::vector<std::string> TypeNames(TDocView ASchema);
    static bool AllowsNull(TDocView ASchema);

private:
    struct TFlattening;
    struct TSubtype {
        QString Name;
        TDocView Schema;
    };

    // SchemaTypes.cpp
    const TZOTypeInfo* Shell(TDocView ASchema);
    const TZOTypeInfo* Make(TDocView ASchema);
    const TZOTypeInfo* MakePlain(TDocView ASchema);
    const TZOTypeInfo* MakeOfKind(TDocView ASchema, const std::string& AKind);
    const TZOTypeInfo* MakeString(TDocView ASchema);
    const TZOTypeInfo* MakeScalar(TDocView ASchema, TZOValueKind AKind);
    const TZOTypeInfo* MakeList(TDocView ASchema);
    const TZOTypeInfo* MakeMap(TDocView ASchema, TDocView AItems);
    const TZOTypeInfo* ListOf(const TZOTypeInfo* AItem);
    void Drain();

    // SchemaObjects.cpp
    const TZOTypeInfo* MakeAllOf(TDocView ASchema);
    const TZOTypeInfo* MakeObject(TDocView ASchema);
    const TZOTypeInfo* NewObject(TDocView ASchema, const QString& AWithout);
    void FillObject(TZOObjectBuilder AObject, TDocView ASchema, const QString& AWithout);
    void Flatten(TDocView ASchema, const QString& AGroup, bool AIsOptional, TFlattening& AInto);
    void AddFields(TDocView ASchema, const QString& AGroup, bool AIsOptional, TFlattening& AInto);
    bool IsObjectLike(TDocView ASchema);
    bool IsObjectLike(TDocView ASchema, std::set<quint64>& ASeen);

    // SchemaChoices.cpp
    const TZOTypeInfo* MakeChoice(TDocView ASchema, TDocView AAlternatives);
    const TZOTypeInfo* MakeUnion(TDocView ASchema, const std::vector<TDocView>& AAlternatives, bool AHasNull);
    const TZOTypeInfo* MakePolymorphic(TDocView ASchema, const std::vector<TSubtype>& ASubtypes);
    std::vector<TSubtype> SubtypesOf(TDocView ASchema, const std::vector<TDocView>& AAlternatives);
    std::vector<TSubtype> ChildrenOf(TDocView ASchema);
    std::vector<TSubtype> Mapped(TDocView ASchema);
    const ZOObject::TTypeInfo* Concrete(TDocView ASchema, const QString& ADiscriminator);
    QString ConstantOf(TDocView ASchema, const QString& AProperty);
    QString TagName(TDocView AAlternative, TDocView ATarget, const TZOTypeInfo* AType);
    void IndexChildren();
    static QString DiscriminatorOf(TDocView ASchema);
    static bool SaysSomething(TDocView ASchema);

    static quint64 KeyOf(TDocView ASchema);
    /// What ASchema stands for: itself, or what it refers to, which is named from then on.
    TDocView Target(TDocView ASchema);
    QString NameOf(TDocView ASchema) const;

    TDocSource& FSource;
    TZOTypeLibrary& FTypes;
    std::unordered_map<quint64, const TZOTypeInfo*> FKnown; // null while it is made
    std::unordered_set<quint64> FNamed;                     // schemas that are referred to
    std::unordered_map<const TZOTypeInfo*, const TZOTypeInfo*> FLists;
    std::map<std::pair<quint64, QString>, const ZOObject::TTypeInfo*> FConcrete;
    std::vector<std::function<void()>> FQueue;
    std::vector<std::function<void()>> FLate; // what wants the queue to be empty
    int FDepth = 0;
    std::unordered_map<std::string_view, QString> FTexts;
    // Schemas that name a schema among their allOf, by that schema.
    std::unordered_map<quint64, std::vector<TDocView>> FChildren;
    bool FHasChildren = false;
};
