#include "openapi/ApiDocument.h"

#include "openapi/ApiModel_p.h"

#include <unordered_set>

namespace {

/// What can be reached from an operation's types.
struct TReach {
    bool HasUnion = false;
    bool HasPolymorphic = false;

    void Walk(const TZOTypeInfo* AType) {
        FOpen.push_back(AType);
        while (!FOpen.empty()) {
            const TZOTypeInfo* type = FOpen.back();
            FOpen.pop_back();
            if (type && type->Kind() >= vkList && FSeen.insert(type).second)
                Expand(type);
        }
    }

private:
    void Expand(const TZOTypeInfo* AType) {
        switch (AType->Kind()) {
        case vkList:
            FOpen.push_back(static_cast<const ZOList::TTypeInfo*>(AType)->ItemType());
            break;
        case vkMap:
            FOpen.push_back(static_cast<const ZOMap::TTypeInfo*>(AType)->ItemType());
            break;
        case vkUnion:
            HasUnion = true;
            for (const ZOUnion::TTag& tag : static_cast<const ZOUnion::TTypeInfo*>(AType)->Tags())
                FOpen.push_back(tag.Type);
            break;
        default:
            const auto* object = static_cast<const ZOObject::TTypeInfo*>(AType);
            HasPolymorphic |= object->GetHasSubtypes();
            for (int i = 0; i < object->PropertyCount(); ++i)
                FOpen.push_back(object->Property(i)->Type);
            for (const ZOObject::TSubtype& subtype : object->Subtypes())
                FOpen.push_back(subtype.Type);
        }
    }

    std::vector<const TZOTypeInfo*> FOpen;
    std::unordered_set<const TZOTypeInfo*> FSeen;
};

} // namespace

TZOApiDocument::TZOApiDocument() : FModel(std::make_shared<TApiModel>()) {}

TZOApiDocument::~TZOApiDocument() = default;

std::unique_ptr<TZOApiDocument> TZOApiDocument::Load(const QString& AFileName, const TProgress& AProgress) {
    std::unique_ptr<TZOApiDocument> document(new TZOApiDocument);
    document->FFileName = AFileName;
    if (!document->FModel->Source.Load(AFileName, AProgress))
        return nullptr;
    if (auto type = TApiModel::MakeTypeInfo(document->FModel)) {
        const QString name = type->Name();
        document->FClass = std::make_unique<TZORestServiceClass>(name, std::move(type));
    }
    return document;
}

QString TZOApiDocument::Format() const {
    switch (FModel->Format) {
    case afSwagger2:
        return QStringLiteral("swagger-2.0");
    case afOpenApi30:
        return QStringLiteral("openapi-3.0");
    case afOpenApi31:
        return QStringLiteral("openapi-3.1");
    default:
        return {};
    }
}

const QString& TZOApiDocument::Title() const { return FModel->Title; }

const QString& TZOApiDocument::Version() const { return FModel->Version; }

QStringList TZOApiDocument::Files() const { return FModel->Source.Files(); }

const TZOApiProblems& TZOApiDocument::Problems() const { return FModel->Source.Problems(); }

void TZOApiDocument::CompleteAll() {
    if (!FClass)
        return;
    for (const TZORestService::TOper& oper : FClass->TypeInfo()->Opers())
        FClass->TypeInfo()->Complete(&oper);
}

int TZOApiDocument::TypeCount() const { return FModel->NamedSchemas().Count(); }

TZOApiDocument::TCounts TZOApiDocument::Counts() {
    CompleteAll();
    TCounts counts;
    if (!FClass)
        return counts;
    for (const TZORestService::TOper& oper : FClass->TypeInfo()->Opers()) {
        bool isMultipart = false, isBinary = false;
        for (const TZOParamBinding& binding : oper.Http.Params) {
            isMultipart |= binding.Place == ppFormPart;
            isBinary |= binding.Place == ppBody &&
                        oper.Request->FindProperty(binding.Property)->Type->Kind() == vkUpload;
        }
        TReach reach;
        reach.Walk(oper.Request);
        reach.Walk(oper.Response);
        counts.Multipart += isMultipart;
        counts.BinaryRequest += isBinary;
        counts.BinaryResponse += oper.Response && oper.Response->Kind() == vkDownload;
        counts.Unions += reach.HasUnion;
        counts.Polymorphic += reach.HasPolymorphic;
    }
    return counts;
}
