#include "runtime/service/RestService.h"

#include "runtime/http/HttpClient.h"

#include "runtime/types/Failures.h"

#include <QIODevice>

#include <algorithm>

TZORestService::TZORestService(const TZORestServiceClass* AClass, QObject* AOwner)
    : QObject(AOwner), FClass(AClass), FServerUrl(TypeInfo()->BaseUrl()) {
    const auto& schemes = TypeInfo()->Schemes();
    if (!TypeInfo()->NeedsCredentials())
        FApiKey = NoKeyNeeded();
    if (std::any_of(schemes.begin(), schemes.end(),
                    [](const auto& s) { return s.Kind == skOAuth2 || s.OAuth.IsUsable(); }))
        FRedirectUrl = QStringLiteral("http://127.0.0.1/callback");
    SetDefaultScopes();
}

const QString& TZORestService::NoKeyNeeded() {
    static const QString text = QStringLiteral("none needed");
    return text;
}

TZORestService::~TZORestService() { FFreeNotifier.AnnounceRemoval(this); }

const TZORestService::TTypeInfo* TZORestService::TypeInfo() const { return FClass->TypeInfo(); }

void TZORestService::Loaded() {}

void TZORestService::ReportOptions() { Q_EMIT OptionsReported(); }

void TZORestService::SetDefaultScopes() {
    FScopes.clear();
    for (const TScope& scope : TypeInfo()->Scopes()) {
        if (scope.Default)
            FScopes.append(scope.Name);
    }
}

TZOHttpClient& TZORestService::HttpClient() {
    if (!FHttpClient)
        FHttpClient = std::make_unique<TZOHttpClient>();
    return *FHttpClient;
}

void TZORestService::TokenChanged() { Q_EMIT TokenReported(); }

TZORestService::TTypeInfo::TTypeInfo(TDeclaration ADeclaration, std::unique_ptr<TZOTypeLibrary> ATypes)
    : TZOTypeInfo(vkService, ADeclaration.Name, ADeclaration.Description),
      FDeclaration(std::move(ADeclaration)),
      FTypes(std::move(ATypes)) {}

bool TZORestService::TTypeInfo::NeedsCredentials() const {
    const auto isNeeded = [](const std::vector<TZOSecurityAlternative>& AAlternatives) {
        return !AAlternatives.empty() &&
               std::none_of(AAlternatives.begin(), AAlternatives.end(),
                            [](const TZOSecurityAlternative& a) { return a.Schemes.empty(); });
    };
    return std::any_of(Opers().begin(), Opers().end(), [&](const TOper& oper) {
        return isNeeded(oper.Http.HasOwnSecurity ? oper.Http.Security : Security());
    });
}

POper TZORestService::TTypeInfo::FindOper(const TZOTypeInfo* ARequest) const {
    const auto found =
        std::find_if(Opers().begin(), Opers().end(), [&](const TOper& o) { return o.Request == ARequest; });
    if (found == Opers().end())
        return nullptr;
    Complete(&*found);
    return &*found;
}

void TZORestService::TTypeInfo::Complete(POper AOper) const {
    if (AOper->IsComplete)
        return;
    const auto index = static_cast<std::size_t>(AOper - FDeclaration.Opers.data());
    TOper& oper = FDeclaration.Opers.at(index);
    oper.IsComplete = true;
    FDeclaration.Complete(static_cast<int>(index), oper);
}
