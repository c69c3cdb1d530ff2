// What an operation takes and answers.
#pragma once

#include "openapi/ApiModel_p.h"

/// Completes one operation: the properties of its request with their places, and its response.
class TOperationMaker {
public:
    TOperationMaker(TApiModel& AModel, const TApiOperation& AOperation, TZORestService::TOper& AOper);

    void Run();

private:
    struct TProperty {
        QString Name;
        const TZOTypeInfo* Type = nullptr;
        TZOObjectBuilder::TOptions Options;
        TZOParamBinding Binding;
    };

    // OperationParams.cpp
    void ReadParams();
    void CollectParams(TDocView AParams, std::vector<TDocView>& AInto);
    void ReadParam(TDocView AParam);
    void ReadHttpParam(TDocView AParam, TZOParamPlace APlace);
    void ReadStyle(TDocView AParam, TZOParamBinding& ABinding);
    void ReadCollectionFormat(TDocView AParam, TZOParamBinding& ABinding);
    void AddMissingPathParams();
    void Add(TProperty AProperty);

    // OperationBody.cpp
    void ReadBody();
    void ReadSwaggerBody();
    void AddWholeBody(TDocView ASchema, const QByteArray& AMediaType, bool AIsRequired, const QString& AText);
    const TZOTypeInfo* BodyType(TDocView ASchema, const QByteArray& AMediaType);
    void AddForm(TDocView AMedia, TZOParamPlace APlace);
    void AddFormField(const TSchemaField& AField, TDocView AEncoding, TZOParamPlace APlace);

    // OperationResponse.cpp
    void ReadResponse();
    const TZOTypeInfo* ResponseType(TDocView AResponse, bool& AIsJson);
    const TZOTypeInfo* SwaggerResponseType(TDocView AResponse, bool& AIsJson);

    static bool IsJson(const QString& AMediaType);
    TDocView MediaTypes(const char* AKey) const;

    TApiModel& FModel;
    const TApiOperation& FOperation;
    TZORestService::TOper& FOper;
    std::vector<TDocView> FSwaggerBody; // parameters of Swagger 2.0 that make up the body
    std::set<QString> FNames;
};
