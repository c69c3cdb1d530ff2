#include "openapi/SchemaTypes_p.h"

#include <QFileInfo>
#include <QScopedValueRollback>

#include <algorithm>

namespace {

const TZOTypeInfo* Any() { return TZOTypeLibrary::Scalar(vkAny); }

/// The texts of an enum or const; null is no text of a value.
QStringList AllowedValues(TDocView ASchema) {
    QStringList texts;
    const auto add = [&](TDocView AValue) {
        if (AValue && AValue.Kind() != dkNull && !AValue.IsArray() && !AValue.IsObject())
            texts.append(AValue.Text());
    };
    for (const auto& [none, value] : ASchema["enum"].Entries())
        add(value);
    if (texts.isEmpty())
        add(ASchema["const"]);
    return texts;
}

std::string KindOfValue(TDocView AValue) {
    switch (AValue.Kind()) {
    case dkString:
        return "string";
    case dkBoolean:
        return "boolean";
    case dkNumber:
        return AValue.Utf8().find_first_of(".eE") == std::string::npos ? "integer" : "number";
    case dkArray:
        return "array";
    case dkObject:
        return "object";
    default:
        return {};
    }
}

/// The type that keywords which are for one type only hint at.
std::string ImpliedKind(TDocView ASchema) {
    if (ASchema["properties"] || ASchema["additionalProperties"] || ASchema["patternProperties"])
        return "object";
    if (ASchema["items"] || ASchema["prefixItems"])
        return "array";
    const TDocView value = ASchema["enum"] ? ASchema["enum"].At(0) : ASchema["const"];
    if (value)
        return KindOfValue(value);
    if (ASchema["pattern"] || ASchema["minLength"] || ASchema["maxLength"])
        return "string";
    const TDocView format = ASchema["format"];
    for (const char* name : {"date-time", "date", "binary", "byte", "uuid", "email", "uri", "password"}) {
        if (format.Is(name))
            return "string";
    }
    if (format.Is("int32") || format.Is("int64"))
        return "integer";
    const bool isNumber = ASchema["minimum"] || ASchema["maximum"] || ASchema["multipleOf"];
    return isNumber || format.Is("float") || format.Is("double") ? "number" : std::string();
}

/// Schemas that are nothing but others may stand for each other in a row this long.
constexpr int MaxDepth = 500;

bool IsBytes(TDocView ASchema) {
    if (ASchema["format"].Is("binary") || ASchema["type"].Is("file"))
        return true;
    const TDocView media = ASchema["contentMediaType"];
    return media.IsString() && !ASchema["contentEncoding"] &&
           !media.Text().contains(QStringLiteral("json")) &&
           !media.Text().startsWith(QStringLiteral("text/"));
}

/// The type of most schemas: one of the shared scalars. Null for all others.
const TZOTypeInfo* PlainScalar(TDocView ASchema) {
    const TDocView type = ASchema["type"];
    if (!type.IsString() || type.Is("object") || type.Is("array"))
        return nullptr;
    for (const auto& [key, value] : ASchema.Entries()) {
        for (const char* name : {"enum", "const", "allOf", "oneOf", "anyOf", "format", "contentMediaType"}) {
            if (key.Is(name) && !(key.Is("format") && (value.Is("int64") || value.Is("uri"))))
                return nullptr;
        }
    }
    if (type.Is("string"))
        return TZOTypeLibrary::Scalar(vkString);
    if (type.Is("integer"))
        return TZOTypeLibrary::Scalar(vkInt64);
    return type.Is("boolean") ? TZOTypeLibrary::Scalar(vkBoolean) : nullptr;
}

} // namespace

quint64 TSchemaTypes::KeyOf(TDocView ASchema) { return quint64(ASchema.Tree()->Id) << 32 | ASchema.Node(); }

TDocView TSchemaTypes::Target(TDocView ASchema) {
    const TDocView target = FSource.Resolve(ASchema);
    if (target && !(target == ASchema))
        FNamed.insert(KeyOf(target));
    return target;
}

QString TSchemaTypes::NameOf(TDocView ASchema) const {
    if (!FNamed.contains(KeyOf(ASchema)))
        return {};
    return ASchema.Node() == 0 ? QFileInfo(ASchema.Tree()->FileName).baseName() : ASchema.Key();
}

QString TSchemaTypes::Shared(TDocView AView) {
    if (!AView.IsString())
        return AView.Text();
    const TDocNode& node = AView.Tree()->Nodes[AView.Node()];
    if (node.IsEscaped)
        return AView.Text();
    const auto [place, isNew] = FTexts.try_emplace(AView.Tree()->Raw(node));
    if (isNew)
        place->second = AView.Text();
    return place->second;
}

QString TSchemaTypes::TextOf(TDocView AFirst, TDocView ASecond) {
    const auto either = [&](std::string_view AKey) { return AFirst[AKey] ? AFirst[AKey] : ASecond[AKey]; };
    QString text = Shared(AFirst["description"]);
    if (text.isEmpty() && ASecond)
        text = Shared(ASecond["description"]);
    const auto add = [&](const QString& AHint, TDocView AValue) {
        if (!AValue || AValue.Kind() == dkNull)
            return;
        const QString value =
            AValue.IsArray() || AValue.IsObject() ? QString::fromUtf8(AValue.ToJson()) : AValue.Text();
        if (value.isEmpty() || value.size() > 200)
            return;
        if (!text.isEmpty())
            text += text.endsWith(u'.') ? QStringLiteral(" ") : QStringLiteral(". ");
        text += AHint.arg(value);
    };
    add(QStringLiteral("Default: %1."), either("default"));
    const TDocView example = either("example");
    add(QStringLiteral("Example: %1."), example ? example : either("examples").At(0));
    return text;
}

std::vector<std::string> TSchemaTypes::TypeNames(TDocView ASchema) {
    std::vector<std::string> names;
    const TDocView type = ASchema["type"];
    if (type.IsString())
        names.push_back(type.Utf8());
    for (const auto& [none, name] : type.Entries()) {
        if (name.IsString() && std::find(names.begin(), names.end(), name.Utf8()) == names.end())
            names.push_back(name.Utf8());
    }
    std::erase(names, "null");
    return names;
}

bool TSchemaTypes::AllowsNull(TDocView ASchema) {
    if (ASchema["nullable"].IsTrue() || ASchema["x-nullable"].IsTrue() || ASchema["type"].Is("null"))
        return true;
    for (const auto& [none, name] : ASchema["type"].Entries()) {
        if (name.Is("null"))
            return true;
    }
    return false;
}

bool TSchemaTypes::IsBinary(TDocView ASchema) {
    const TDocView target = Target(ASchema);
    return target && IsBytes(target);
}

const TZOTypeInfo* TSchemaTypes::TypeOf(TDocView ASchema) {
    const TZOTypeInfo* type = Shell(ASchema);
    Drain();
    return type;
}

void TSchemaTypes::Drain() {
    while (!FQueue.empty() || !FLate.empty()) {
        auto& queue = FQueue.empty() ? FLate : FQueue;
        const auto task = std::move(queue.back());
        queue.pop_back();
        task();
    }
}

const TZOTypeInfo* TSchemaTypes::Shell(TDocView ASchema) {
    const TDocView target = Target(ASchema);
    if (!target)
        return Any();
    if (const TZOTypeInfo* scalar = PlainScalar(target))
        return scalar;
    const auto [place, isNew] = FKnown.try_emplace(KeyOf(target));
    if (!isNew || FDepth > MaxDepth) {
        if (!place->second) {
            FSource.Report(ASchema, QStringLiteral("This schema is nothing but itself."));
            return Any();
        }
        return place->second;
    }
    const QScopedValueRollback depth(FDepth, FDepth + 1);
    const TZOTypeInfo* type = Make(target);
    // Making it may have moved the place.
    FKnown[KeyOf(target)] = type;
    return type;
}

const TZOTypeInfo* TSchemaTypes::Make(TDocView ASchema) {
    if (!ASchema.IsObject()) {
        if (ASchema.Kind() != dkBoolean)
            FSource.Report(ASchema, QStringLiteral("A schema has to be an object."));
        return Any();
    }
    if (ASchema["allOf"].Count() > 0)
        return MakeAllOf(ASchema);
    for (const char* choice : {"oneOf", "anyOf"}) {
        const TDocView alternatives = ASchema[choice];
        const auto entries = alternatives.Entries();
        const bool hasTypes =
            std::any_of(entries.begin(), entries.end(), [](const auto& e) { return SaysSomething(e.Value); });
        if (alternatives.IsArray() && hasTypes && ASchema["properties"].Count() == 0)
            return MakeChoice(ASchema, alternatives);
    }
    return MakePlain(ASchema);
}

const TZOTypeInfo* TSchemaTypes::MakePlain(TDocView ASchema) {
    const std::vector<std::string> kinds = TypeNames(ASchema);
    if (kinds.size() > 1) {
        TZOUnionBuilder builder =
            FTypes.NewUnion(NameOf(ASchema), QStringLiteral("type"), ufBare, TextOf(ASchema));
        for (const std::string& kind : kinds) {
            const TZOTypeInfo* type = MakeOfKind(ASchema, kind);
            builder.Tag(KindName(type->Kind()), type);
        }
        return builder.Type();
    }
    return MakeOfKind(ASchema, kinds.empty() ? ImpliedKind(ASchema) : kinds.front());
}

const TZOTypeInfo* TSchemaTypes::MakeOfKind(TDocView ASchema, const std::string& AKind) {
    if (AKind == "string")
        return MakeString(ASchema);
    if (AKind == "integer")
        return MakeScalar(ASchema, ASchema["format"].Is("int32") ? vkInteger : vkInt64);
    if (AKind == "boolean")
        return MakeScalar(ASchema, vkBoolean);
    if (AKind == "number")
        return MakeScalar(ASchema, vkFloat);
    if (AKind == "array")
        return MakeList(ASchema);
    if (AKind == "object")
        return MakeObject(ASchema);
    if (AKind == "file")
        return TZOTypeLibrary::Scalar(vkUpload);
    if (!AKind.empty() || (ASchema["type"] && !AllowsNull(ASchema)))
        FSource.Report(ASchema["type"], QStringLiteral("There is no type of this name."));
    return Any();
}

const TZOTypeInfo* TSchemaTypes::MakeString(TDocView ASchema) {
    if (IsBytes(ASchema))
        return TZOTypeLibrary::Scalar(vkUpload);
    const TDocView format = ASchema["format"];
    if (format.Is("date-time"))
        return MakeScalar(ASchema, vkDateTime);
    return MakeScalar(ASchema, format.Is("date") ? vkDate : vkString);
}

const TZOTypeInfo* TSchemaTypes::MakeScalar(TDocView ASchema, TZOValueKind AKind) {
    const QStringList allowed = AllowedValues(ASchema);
    if (allowed.isEmpty())
        return TZOTypeLibrary::Scalar(AKind);
    return FTypes.NewScalar(AKind, KindName(AKind), {}, allowed);
}

const TZOTypeInfo* TSchemaTypes::ListOf(const TZOTypeInfo* AItem) {
    const TZOTypeInfo*& list = FLists[AItem];
    if (!list)
        list = FTypes.NewList(AItem);
    return list;
}

const TZOTypeInfo* TSchemaTypes::MakeList(TDocView ASchema) {
    const TDocView items = ASchema["items"];
    if (!items || items.IsArray())
        return ListOf(Any());
    const TDocView target = Target(items);
    if (!target)
        return ListOf(Any());
    const auto known = FKnown.find(KeyOf(target));
    if (known != FKnown.end() && known->second)
        return ListOf(known->second);
    // The items may be made of lists of this kind again.
    const auto list = FTypes.NewOpenList();
    FQueue.push_back([this, list, items] { FTypes.SetItemType(list, Shell(items)); });
    return list;
}

const TZOTypeInfo* TSchemaTypes::MakeMap(TDocView ASchema, TDocView AItems) {
    const auto map = FTypes.NewOpenMap({}, NameOf(ASchema).isEmpty() ? QString() : TextOf(ASchema));
    FQueue.push_back(
        [this, map, AItems] { FTypes.SetItemType(map, AItems.IsObject() ? Shell(AItems) : Any()); });
    return map;
}
