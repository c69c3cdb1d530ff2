#include "runtime/service/ServiceBuilder.h"

namespace {

TZOServiceParam Param(const QString& AName, const TZOTypeInfo* AType, const QString& AText,
                      TZOParamPlace APlace, bool ARequired = false) {
    TZOServiceParam param{AName, AType, AText, ARequired, {}};
    param.Binding.Property = AName;
    param.Binding.Place = APlace;
    return param;
}

} // namespace

TZOServiceParam TZOServiceParam::InPath(const QString& AName, const TZOTypeInfo* AType,
                                        const QString& AText) {
    return Param(AName, AType, AText, ppPath, true);
}

TZOServiceParam TZOServiceParam::InQuery(const QString& AName, const TZOTypeInfo* AType,
                                         const QString& AText) {
    return Param(AName, AType, AText, ppQuery);
}

TZOServiceParam TZOServiceParam::InHeader(const QString& AName, const QByteArray& AHeader,
                                          const TZOTypeInfo* AType, const QString& AText) {
    TZOServiceParam param = Param(AName, AType, AText, ppHeader);
    param.Binding.WireName = AHeader;
    return param;
}

TZOServiceParam TZOServiceParam::InCookie(const QString& AName, const TZOTypeInfo* AType,
                                          const QString& AText) {
    return Param(AName, AType, AText, ppCookie);
}

TZOServiceParam TZOServiceParam::InBody(const QString& AName, const TZOTypeInfo* AType,
                                        const QString& AText) {
    return Param(AName, AType, AText, ppBody, true);
}

TZOServiceParam TZOServiceParam::InForm(const QString& AName, const TZOTypeInfo* AType,
                                        const QString& AText) {
    return Param(AName, AType, AText, ppFormField);
}

TZOServiceParam TZOServiceParam::InPart(const QString& AName, const TZOTypeInfo* AType,
                                        const QString& AText) {
    return Param(AName, AType, AText, ppFormPart);
}

TZOServiceParam TZOServiceParam::Needed() const {
    TZOServiceParam param = *this;
    param.Required = true;
    return param;
}

TZOServiceParam TZOServiceParam::Styled(TZOParamStyle AStyle, bool AExplode) const {
    TZOServiceParam param = *this;
    param.Binding.Style = AStyle;
    param.Binding.Explode = AExplode;
    return param;
}

TZOServiceBuilder::TZOServiceBuilder(const QString& AName, const QString& ADescription,
                                     const QString& ABaseUrl)
    : FTypes(std::make_unique<TZOTypeLibrary>()) {
    FDeclaration.Name = AName;
    FDeclaration.Description = ADescription;
    FDeclaration.BaseUrl = ABaseUrl;
}

TZOServiceBuilder& TZOServiceBuilder::Scope(const QString& AName, bool ADefault) {
    FDeclaration.Scopes.push_back({AName, ADefault});
    return *this;
}

TZOServiceBuilder& TZOServiceBuilder::ApiKeyHeader(const QByteArray& AHeader) {
    FDeclaration.Security.push_back({{AddScheme({QString::fromLatin1(AHeader), skApiKeyHeader, AHeader})}});
    return *this;
}

int TZOServiceBuilder::AddScheme(const TZOSecurityScheme& AScheme) {
    FDeclaration.Schemes.push_back(AScheme);
    return static_cast<int>(FDeclaration.Schemes.size()) - 1;
}

TZOServiceBuilder&
TZOServiceBuilder::OperationSecurity(const std::vector<TZOSecurityAlternative>& AAlternatives) {
    TZOHttpBinding& http = FDeclaration.Opers.back().Http;
    http.HasOwnSecurity = true;
    http.Security = AAlternatives;
    return *this;
}

TZOServiceBuilder& TZOServiceBuilder::Operation(const QString& AName, const QString& ADescription,
                                                const QByteArray& AMethod, const QString& APath,
                                                const std::vector<TZOServiceParam>& AParams,
                                                const TZOTypeInfo* AResponse) {
    TZORestService::TOper oper;
    oper.Name = AName;
    oper.Response = AResponse;
    oper.Http.Method = AMethod;
    oper.Http.Path = APath;
    TZOObjectBuilder request = FTypes->NewObject(AName, ADescription);
    for (const TZOServiceParam& param : AParams) {
        request.Property(param.Name, param.Type,
                         {.Required = param.Required, .Description = param.Description});
        oper.Http.Params.push_back(param.Binding);
    }
    oper.Request = request.Type();
    FDeclaration.Opers.push_back(std::move(oper));
    return *this;
}

std::unique_ptr<TZORestService::TTypeInfo> TZOServiceBuilder::Build() {
    auto result = std::make_unique<TZORestService::TTypeInfo>(std::move(FDeclaration), std::move(FTypes));
    FDeclaration = {};
    FTypes = std::make_unique<TZOTypeLibrary>();
    return result;
}
