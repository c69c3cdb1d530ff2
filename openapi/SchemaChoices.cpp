// Schemas that leave a choice: unions, and objects whose type one of their properties tells.
#include "openapi/SchemaTypes_p.h"

#include <algorithm>

namespace {

/// "Pet" of "#/components/schemas/Pet", "Pet.yaml" and "Pet".
QString LastName(const QString& AReference) {
    const QString name = AReference.mid(AReference.lastIndexOf(u'/') + 1);
    const QString plain = name.section(u'.', 0, 0);
    return plain.isEmpty() ? name : plain;
}

QString Unique(QString AName, const QStringList& ATaken) {
    const QString base = AName;
    for (int i = 2; ATaken.contains(AName); ++i)
        AName = QStringLiteral("%1 %2").arg(base).arg(i);
    return AName;
}

QString KindText(const TZOTypeInfo* AType) {
    const auto* list = AType->Kind() == vkList ? static_cast<const ZOList::TTypeInfo*>(AType) : nullptr;
    const TZOTypeInfo* item = list ? list->ItemType() : nullptr;
    if (!item)
        return KindName(AType->Kind());
    return QStringLiteral("list of ") + (item->Name().isEmpty() ? KindName(item->Kind()) : item->Name());
}

} // namespace

QString TSchemaTypes::DiscriminatorOf(TDocView ASchema) {
    const TDocView discriminator = ASchema["discriminator"];
    return discriminator.IsString() ? discriminator.Text() : discriminator["propertyName"].Text();
}

bool TSchemaTypes::SaysSomething(TDocView ASchema) {
    for (const char* key : {"$ref", "type", "properties", "allOf", "oneOf", "anyOf", "enum", "const", "items",
                            "additionalProperties", "format"}) {
        if (ASchema[key])
            return ASchema["type"].Is("object") || !ASchema["type"] || !ASchema["type"].Is("null");
    }
    return false;
}

const TZOTypeInfo* TSchemaTypes::MakeChoice(TDocView ASchema, TDocView AAlternatives) {
    std::vector<TDocView> alternatives;
    std::set<quint64> seen;
    bool hasNull = AllowsNull(ASchema);
    for (const auto& [none, alternative] : AAlternatives.Entries()) {
        const TDocView target = Target(alternative);
        if (!target)
            continue;
        const bool isNull = target["type"].Is("null") ||
                            (target["enum"].Count() == 1 && target["enum"].At(0).Kind() == dkNull);
        hasNull |= isNull;
        if (!isNull && seen.insert(KeyOf(target)).second)
            alternatives.push_back(alternative);
    }
    if (alternatives.empty())
        return TZOTypeLibrary::Scalar(vkAny);
    const bool areObjects =
        std::all_of(alternatives.begin(), alternatives.end(), [this](TDocView a) { return IsObjectLike(a); });
    if (!DiscriminatorOf(ASchema).isEmpty() && areObjects) {
        const std::vector<TSubtype> subtypes = SubtypesOf(ASchema, alternatives);
        if (!subtypes.empty())
            return MakePolymorphic(ASchema, subtypes);
    }
    if (alternatives.size() == 1)
        return Shell(alternatives.front());
    return MakeUnion(ASchema, alternatives, hasNull);
}

const TZOTypeInfo* TSchemaTypes::MakeUnion(TDocView ASchema, const std::vector<TDocView>& AAlternatives,
                                           bool AHasNull) {
    TZOUnionBuilder builder =
        FTypes.NewUnion(NameOf(ASchema), QStringLiteral("type"), ufBare, TextOf(ASchema));
    FQueue.push_back([this, builder, AAlternatives, AHasNull]() mutable {
        // Lists get their items from the queue: what the tags are called after has to be there first.
        std::vector<const TZOTypeInfo*> types;
        for (const TDocView& alternative : AAlternatives)
            types.push_back(Shell(alternative));
        FLate.push_back([this, builder, AAlternatives, AHasNull, types]() mutable {
            QStringList names;
            for (std::size_t i = 0; i < types.size(); ++i) {
                names.append(Unique(TagName(AAlternatives[i], Target(AAlternatives[i]), types[i]), names));
                builder.Tag(names.back(), types[i]);
            }
            if (AHasNull)
                builder.Tag(Unique(QStringLiteral("null"), names), nullptr);
        });
    });
    return builder.Type();
}

QString TSchemaTypes::TagName(TDocView AAlternative, TDocView ATarget, const TZOTypeInfo* AType) {
    if (AAlternative["$ref"].IsString() && !NameOf(ATarget).isEmpty())
        return NameOf(ATarget);
    const QString title = ATarget["title"].Text();
    return title.isEmpty() ? KindText(AType) : title;
}

const TZOTypeInfo* TSchemaTypes::MakePolymorphic(TDocView ASchema, const std::vector<TSubtype>& ASubtypes) {
    const QString discriminator = DiscriminatorOf(ASchema);
    TZOObjectBuilder builder = FTypes.NewObject(NameOf(ASchema), TextOf(ASchema));
    builder.Discriminator(discriminator);
    std::set<QString> names;
    for (const TSubtype& subtype : ASubtypes) {
        if (names.insert(subtype.Name).second)
            builder.Subtype(subtype.Name, Concrete(subtype.Schema, discriminator));
    }
    return builder.Type();
}

const ZOObject::TTypeInfo* TSchemaTypes::Concrete(TDocView ASchema, const QString& ADiscriminator) {
    // The tag row stands for the discriminator: as a property it would be shown twice.
    const auto [place, isNew] = FConcrete.try_emplace({KeyOf(ASchema), ADiscriminator}, nullptr);
    if (isNew)
        place->second = static_cast<const ZOObject::TTypeInfo*>(NewObject(ASchema, ADiscriminator));
    return place->second;
}

std::vector<TSchemaTypes::TSubtype> TSchemaTypes::Mapped(TDocView ASchema) {
    std::vector<TSubtype> subtypes;
    for (const auto& [key, value] : ASchema["discriminator"]["mapping"].Entries()) {
        if (!value.IsString()) {
            FSource.Report(value, QStringLiteral("A mapping has to name a schema."));
            continue;
        }
        const QString text = value.Text();
        const bool isName = !text.contains(u'/') && !text.contains(u'#') && !text.contains(u'.');
        TDocView target = value.Tree()->Root()["components"]["schemas"][isName ? text.toStdString() : ""];
        if (!isName)
            target = FSource.ResolveText(value, text);
        target = Target(target);
        if (target)
            FNamed.insert(KeyOf(target));
        if (target)
            subtypes.push_back({key.Text(), target});
        else if (isName)
            FSource.Report(value, QStringLiteral("There is no schema \"%1\".").arg(text));
    }
    return subtypes;
}

QString TSchemaTypes::ConstantOf(TDocView ASchema, const QString& AProperty) {
    for (const TSchemaField& field : FieldsOf(ASchema)) {
        const TDocView schema = field.Name == AProperty ? Target(field.Schema) : TDocView();
        if (schema["const"])
            return schema["const"].Text();
        if (schema["enum"].Count() == 1)
            return schema["enum"].At(0).Text();
    }
    return {};
}

std::vector<TSchemaTypes::TSubtype> TSchemaTypes::SubtypesOf(TDocView ASchema,
                                                             const std::vector<TDocView>& AAlternatives) {
    std::vector<TSubtype> subtypes = Mapped(ASchema);
    for (const TDocView& alternative : AAlternatives) {
        const TDocView target = Target(alternative);
        const bool isMapped = std::any_of(subtypes.begin(), subtypes.end(),
                                          [&](const TSubtype& s) { return s.Schema == target; });
        if (isMapped)
            continue;
        QString name = alternative["$ref"].IsString() ? LastName(alternative["$ref"].Text()) : QString();
        if (name.isEmpty())
            name = ConstantOf(target, DiscriminatorOf(ASchema));
        if (name.isEmpty())
            FSource.Report(alternative,
                           QStringLiteral("Nothing tells which value of \"%1\" means this schema.")
                               .arg(DiscriminatorOf(ASchema)));
        else
            subtypes.push_back({name, target});
    }
    return subtypes;
}

std::vector<TSchemaTypes::TSubtype> TSchemaTypes::ChildrenOf(TDocView ASchema) {
    IndexChildren();
    std::vector<TSubtype> subtypes = Mapped(ASchema);
    std::vector<TDocView> bases = {ASchema};
    std::set<quint64> seen = {KeyOf(ASchema)};
    for (std::size_t i = 0; i < bases.size(); ++i) {
        const auto children = FChildren.find(KeyOf(bases[i]));
        if (children == FChildren.end())
            continue;
        for (const TDocView& child : children->second) {
            if (!seen.insert(KeyOf(child)).second)
                continue;
            FNamed.insert(KeyOf(child));
            bases.push_back(child);
            const bool isMapped = std::any_of(subtypes.begin(), subtypes.end(),
                                              [&](const TSubtype& s) { return s.Schema == child; });
            if (!isMapped)
                subtypes.push_back({NameOf(child), child});
        }
    }
    return subtypes;
}

void TSchemaTypes::IndexChildren() {
    if (std::exchange(FHasChildren, true))
        return;
    const TDocView root = FSource.Root();
    const TDocView schemas = root["components"] ? root["components"]["schemas"] : root["definitions"];
    for (const auto& [key, schema] : schemas.Entries()) {
        for (const auto& [none, part] : schema["allOf"].Entries()) {
            const TDocView base = part["$ref"] ? Target(part) : TDocView();
            if (base)
                FChildren[KeyOf(base)].push_back(schema);
        }
    }
}
