// Object schemas: properties of their own and of their bases.
#include "openapi/SchemaTypes_p.h"

#include <QHash>
#include <QSet>

#include <algorithm>

namespace {

/// So many schemas in a row may be built from the next.
constexpr std::size_t MaxBases = 500;

} // namespace

struct TSchemaTypes::TFlattening {
    std::vector<TSchemaField> Fields;
    // Names are told apart as they are shown: those of a damaged file may differ in their bytes alone.
    QHash<QString, std::size_t> Places; // of Fields
    QSet<QString> Required;
    std::set<quint64> Seen;
    std::set<quint64> Open; // what is being flattened, to tell circles from repetitions
};

const TZOTypeInfo* TSchemaTypes::MakeAllOf(TDocView ASchema) {
    TDocView only;
    int count = 0;
    for (const auto& [none, part] : ASchema["allOf"].Entries()) {
        const TDocView target = Target(part);
        if (!target || !SaysSomething(target))
            continue;
        if (++count == 1)
            only = part;
    }
    const bool isWrapper = count == 1 && ASchema["properties"].Count() == 0;
    if (count == 0)
        return MakePlain(ASchema);
    if (isWrapper || !IsObjectLike(ASchema))
        return Shell(only);
    return MakeObject(ASchema);
}

const TZOTypeInfo* TSchemaTypes::MakeObject(TDocView ASchema) {
    if (!DiscriminatorOf(ASchema).isEmpty()) {
        const std::vector<TSubtype> children = ChildrenOf(ASchema);
        if (!children.empty())
            return MakePolymorphic(ASchema, children);
    }
    const TDocView additional = ASchema["additionalProperties"];
    const bool hasFields = ASchema["properties"].Count() > 0 || ASchema["allOf"].Count() > 0;
    if (!hasFields && !additional.IsFalse()) {
        const TDocView pattern = ASchema["patternProperties"];
        return MakeMap(ASchema, pattern.Count() > 0 ? (*pattern.Entries().begin()).Value : additional);
    }
    return NewObject(ASchema, {});
}

const TZOTypeInfo* TSchemaTypes::NewObject(TDocView ASchema, const QString& AWithout) {
    const QString name = NameOf(ASchema);
    const TZOObjectBuilder object = FTypes.NewObject(name, TextOf(ASchema));
    FQueue.push_back([this, object, ASchema, AWithout] { FillObject(object, ASchema, AWithout); });
    return object.Type();
}

void TSchemaTypes::FillObject(TZOObjectBuilder AObject, TDocView ASchema, const QString& AWithout) {
    const std::vector<TSchemaField> fields = FieldsOf(ASchema);
    AObject.Reserve(static_cast<int>(fields.size()));
    for (const TSchemaField& field : fields) {
        if (field.Name == AWithout)
            continue;
        const TZOTypeInfo* type = Shell(field.Schema);
        AObject.Group(field.Group.isEmpty() ? AObject.Type()->Name() : field.Group)
            .Property(field.Name, type,
                      {.Required = field.IsRequired,
                       .ReadOnly = IsReadOnly(field.Schema),
                       .Description = TextOf(field.Schema, Target(field.Schema))});
    }
}

bool TSchemaTypes::IsReadOnly(TDocView ASchema) {
    return ASchema["readOnly"].IsTrue() || Target(ASchema)["readOnly"].IsTrue();
}

std::vector<TSchemaField> TSchemaTypes::FieldsOf(TDocView ASchema) {
    TFlattening all;
    const TDocView target = Target(ASchema);
    if (target)
        Flatten(target, {}, false, all);
    for (TSchemaField& field : all.Fields)
        field.IsRequired = all.Required.contains(field.Name);
    return std::move(all.Fields);
}

void TSchemaTypes::Flatten(TDocView ASchema, const QString& AGroup, bool AIsOptional, TFlattening& AInto) {
    const quint64 key = KeyOf(ASchema);
    if (AInto.Open.contains(key)) {
        FSource.Report(ASchema, QStringLiteral("This schema is built from itself."));
        return;
    }
    if (!AInto.Seen.insert(key).second)
        return;
    if (AInto.Open.size() > MaxBases) {
        FSource.Report(ASchema, QStringLiteral("Too many schemas are built from each other."));
        return;
    }
    AInto.Open.insert(key);
    const auto flattenAll = [&](TDocView AParts, bool AAreOptional) {
        for (const auto& [none, part] : AParts.Entries()) {
            const TDocView target = Target(part);
            if (target)
                Flatten(target, part == target ? AGroup : NameOf(target), AAreOptional, AInto);
        }
    };
    flattenAll(ASchema["allOf"], AIsOptional);
    AddFields(ASchema, AGroup, AIsOptional, AInto);
    // Whichever alternative is meant, its properties can be filled in.
    flattenAll(ASchema["oneOf"], true);
    flattenAll(ASchema["anyOf"], true);
    AInto.Open.erase(key);
}

void TSchemaTypes::AddFields(TDocView ASchema, const QString& AGroup, bool AIsOptional, TFlattening& AInto) {
    const TDocView properties = ASchema["properties"];
    if (properties && !properties.IsObject())
        FSource.Report(properties, QStringLiteral("Properties have to be an object of schemas."));
    for (const auto& [key, schema] : properties.Entries()) {
        if (!key)
            continue;
        const QString name = Shared(key);
        const auto known = AInto.Places.constFind(name);
        if (known == AInto.Places.cend()) {
            AInto.Places.insert(name, AInto.Fields.size());
            AInto.Fields.push_back({name, schema, AGroup, false});
        } else if (!AIsOptional && SaysSomething(schema)) {
            AInto.Fields[*known].Schema = schema;
        }
    }
    if (AIsOptional)
        return;
    for (const auto& [none, name] : ASchema["required"].Entries())
        AInto.Required.insert(Shared(name));
}

bool TSchemaTypes::IsObjectLike(TDocView ASchema) {
    std::set<quint64> seen;
    return IsObjectLike(ASchema, seen);
}

bool TSchemaTypes::IsObjectLike(TDocView ASchema, std::set<quint64>& ASeen) {
    const TDocView target = Target(ASchema);
    if (!target.IsObject() || ASeen.size() > MaxBases || !ASeen.insert(KeyOf(target)).second)
        return false;
    const auto names = TypeNames(target);
    if (target["properties"].Count() > 0 || (names.size() == 1 && names.front() == "object"))
        return true;
    const auto parts = target["allOf"].Entries();
    return std::any_of(parts.begin(), parts.end(),
                       [&](const auto& e) { return IsObjectLike(e.Value, ASeen); });
}
