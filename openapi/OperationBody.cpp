#include "openapi/OperationMaker_p.h"

#include <algorithm>

namespace {

const QString Multipart = QStringLiteral("multipart/form-data");
const QString UrlEncoded = QStringLiteral("application/x-www-form-urlencoded");

QString PlainMediaType(const QString& AMediaType) {
    return AMediaType.section(u';', 0, 0).trimmed().toLower();
}

bool IsTextType(const QString& AMediaType) {
    const QString type = PlainMediaType(AMediaType);
    return type.startsWith(QStringLiteral("text/")) || type.endsWith(QStringLiteral("xml")) ||
           type.endsWith(QStringLiteral("yaml")) || type.endsWith(QStringLiteral("javascript")) ||
           type.endsWith(QStringLiteral("graphql"));
}

} // namespace

bool TOperationMaker::IsJson(const QString& AMediaType) {
    const QString type = PlainMediaType(AMediaType);
    return type == QStringLiteral("application/json") || type == QStringLiteral("text/json") ||
           type.endsWith(QStringLiteral("+json")) || type == QStringLiteral("*/*") ||
           type == QStringLiteral("application/*");
}

TDocView TOperationMaker::MediaTypes(const char* AKey) const {
    const TDocView own = FOperation.Oper[AKey];
    return own ? own : FModel.Source.Root()[AKey];
}

void TOperationMaker::ReadBody() {
    const TDocView given = FOperation.Oper["requestBody"];
    const TDocView body = given ? FModel.Source.Resolve(given) : TDocView();
    if (!body)
        return;
    const TDocView content = body["content"];
    TDocView::TEntry chosen;
    int rank = 0;
    for (const auto& entry : content.Entries()) {
        const QString media = entry.Key.Text();
        const bool isBinary = entry.Value["schema"] && FModel.Schemas->IsBinary(entry.Value["schema"]);
        int itsRank = 1;
        if (IsJson(media) && !isBinary)
            itsRank = 4;
        else if (PlainMediaType(media) == Multipart)
            itsRank = 3;
        else if (PlainMediaType(media) == UrlEncoded)
            itsRank = 2;
        if (itsRank > rank)
            chosen = entry;
        rank = std::max(rank, itsRank);
    }
    if (!chosen.Key) {
        FModel.Source.Report(body, QStringLiteral("The body has no content."));
        return;
    }
    const QString media = chosen.Key.Text();
    if (rank == 3 || rank == 2)
        AddForm(chosen.Value, rank == 3 ? ppFormPart : ppFormField);
    else
        AddWholeBody(chosen.Value["schema"], media.toUtf8(), body["required"].IsTrue(),
                     FModel.Schemas->TextOf(body));
}

const TZOTypeInfo* TOperationMaker::BodyType(TDocView ASchema, const QByteArray& AMediaType) {
    const QString media = QString::fromUtf8(AMediaType);
    if (ASchema && FModel.Schemas->IsBinary(ASchema))
        return TZOTypeLibrary::Scalar(vkUpload);
    if (IsJson(media))
        return ASchema ? FModel.Schemas->TypeOf(ASchema) : TZOTypeLibrary::Scalar(vkAny);
    if (!IsTextType(media))
        return TZOTypeLibrary::Scalar(vkUpload);
    // Objects have no form as text that could be guessed: the text is the user's.
    const TZOTypeInfo* type = ASchema ? FModel.Schemas->TypeOf(ASchema) : nullptr;
    return type && type->Kind() <= vkDate ? type : TZOTypeLibrary::Scalar(vkString);
}

void TOperationMaker::AddWholeBody(TDocView ASchema, const QByteArray& AMediaType, bool AIsRequired,
                                   const QString& AText) {
    TProperty property;
    property.Name = QStringLiteral("body");
    property.Type = BodyType(ASchema, AMediaType);
    property.Options.Required = AIsRequired;
    property.Options.Description = AText;
    property.Binding.Place = ppBody;
    if (!AMediaType.contains('*'))
        property.Binding.ContentType = AMediaType;
    Add(std::move(property));
}

void TOperationMaker::AddForm(TDocView AMedia, TZOParamPlace APlace) {
    const TDocView schema = AMedia["schema"];
    const std::vector<TSchemaField> fields =
        schema ? FModel.Schemas->FieldsOf(schema) : std::vector<TSchemaField>();
    for (const TSchemaField& field : fields)
        AddFormField(field, AMedia["encoding"][field.Name.toStdString()], APlace);
    if (!fields.empty())
        return;
    const TZOTypeInfo* type = schema ? FModel.Schemas->TypeOf(schema) : nullptr;
    if (!type || type->Kind() != vkMap || APlace != ppFormField) {
        FModel.Source.Report(AMedia, QStringLiteral("The form has no fields."));
        return;
    }
    // Whatever fields the user thinks of.
    TProperty property;
    property.Name = QStringLiteral("body");
    property.Type = type;
    property.Binding.Place = APlace;
    Add(std::move(property));
}

void TOperationMaker::AddFormField(const TSchemaField& AField, TDocView AEncoding, TZOParamPlace APlace) {
    TProperty property;
    property.Name = AField.Name;
    const TDocView target = FModel.Source.Resolve(AField.Schema);
    // A part without a type is bytes since OpenAPI 3.1.
    const bool isBytes =
        APlace == ppFormPart && FModel.Format == afOpenApi31 && target.IsObject() && target.Count() == 0;
    property.Type = isBytes ? TZOTypeLibrary::Scalar(vkUpload) : FModel.Schemas->TypeOf(AField.Schema);
    property.Options.Required = AField.IsRequired;
    property.Options.ReadOnly = FModel.Schemas->IsReadOnly(AField.Schema);
    property.Options.Description = FModel.Schemas->TextOf(AField.Schema, target);
    property.Binding.Place = APlace;
    ReadStyle(AEncoding, property.Binding);
    const QString media = AEncoding["contentType"].Text();
    if (!media.contains(u'*'))
        property.Binding.ContentType = media.toUtf8();
    if (!media.isEmpty() && !media.contains(u'*') && IsJson(media))
        property.Binding.Style = psJson;
    Add(std::move(property));
}

void TOperationMaker::ReadSwaggerBody() {
    const TDocView consumes = MediaTypes("consumes");
    bool isMultipart = false;
    QString bodyType;
    for (const auto& [none, media] : consumes.Entries()) {
        isMultipart |= PlainMediaType(media.Text()) == Multipart;
        if (bodyType.isEmpty() || (IsJson(media.Text()) && !IsJson(bodyType)))
            bodyType = media.Text();
    }
    if (bodyType.isEmpty())
        bodyType = QStringLiteral("application/json");
    for (const TDocView& param : FSwaggerBody)
        isMultipart |= param["type"].Is("file");
    for (const TDocView& param : FSwaggerBody) {
        if (param["in"].Is("body")) {
            AddWholeBody(param["schema"], bodyType.toUtf8(), param["required"].IsTrue(),
                         FModel.Schemas->TextOf(param));
            continue;
        }
        TProperty property;
        property.Name = param["name"].Text();
        property.Type = FModel.Schemas->TypeOf(param);
        property.Options.Required = param["required"].IsTrue();
        property.Options.Description = FModel.Schemas->TextOf(param);
        property.Binding.Place = isMultipart ? ppFormPart : ppFormField;
        ReadCollectionFormat(param, property.Binding);
        Add(std::move(property));
    }
}
