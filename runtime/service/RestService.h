// REST services: the component that holds the credentials and token of one service, and the class
// description with its operations and scopes.
#pragma once

#include "runtime/service/HttpBinding.h"
#include "runtime/service/ServiceState.h"

#include "runtime/oauth/OAuthClient.h"
#include "runtime/types/TypeInfo.h"
#include "runtime/types/TypeLibrary.h"

#include "platform/FreeNotification.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QIODevice;
class TZOAuthUI;
class TZOHttpClient;

/// Base of every REST service component. Its users call it on one thread, the user interface's.
class TZORestService : public QObject {
    Q_OBJECT

public:
    class TTypeInfo;
    struct TOper;
    struct TScope;

    /// A service of class AClass, which must outlive it. Starts with the credentials that the class starts
    /// with, its default scopes, and no token.
    explicit TZORestService(const TZORestServiceClass* AClass, QObject* AOwner = nullptr);
    /// Announces the removal to the listeners of FreeNotifier first, while the service is still whole.
    ~TZORestService() override;

    /// The API key of a service that needs no credentials: counts as configured, and is never sent.
    static const QString& NoKeyNeeded();

    const TZORestServiceClass* Class() const noexcept { return FClass; }
    const TTypeInfo* TypeInfo() const;
    /// Called after a component has been read from a form.
    virtual void Loaded();

    QString GetApiKey() const { return FApiKey; }
    QString GetClientId() const { return FClientId; }
    QString GetSecret() const { return FSecret; }
    QString GetRedirectUrl() const { return FRedirectUrl; }
    void SetApiKey(const QString& AValue) { FApiKey = AValue; }
    void SetClientId(const QString& AValue) { FClientId = AValue; }
    void SetSecret(const QString& AValue) { FSecret = AValue; }
    void SetRedirectUrl(const QString& AValue) { FRedirectUrl = AValue; }
    /// To be called by whoever changed the options in another place than the explorer, so that pages which
    /// show them follow: emits OptionsReported.
    void ReportOptions();

    /// The names of the scopes to ask for; the list is the service's own.
    QStringList& Scopes() noexcept { return FScopes; }
    const QStringList& Scopes() const noexcept { return FScopes; }
    /// Replaces Scopes by the class's default scopes.
    void SetDefaultScopes();

    /// Where requests go; starts as the class's base address.
    const QString& ServerUrl() const noexcept { return FServerUrl; }
    void SetServerUrl(const QString& AUrl) { FServerUrl = AUrl; }

    /// The access token; empty when there is none.
    QString GetToken() const;
    /// Takes a token that the host has obtained, as one for the settings of now, and reports it through
    /// TokenChanged.
    void SetToken(const QString& AAccessToken, const QString& ARefreshToken, qint64 AExpiresAtMs);
    /// Writes the token's state. Raises EStreamError when AStream does not take it.
    void SaveToken(QIODevice* AStream) const;
    /// Reads what SaveToken wrote. Bytes that are damaged, of another format or another service class count
    /// as no token.
    void LoadToken(QIODevice* AStream);
    /// Forgets the token: the next request has to be authorised anew.
    void ResetToken();
    /// Renews the access token with the refresh token. Raises EZOAuthorizationError when there is none for
    /// the settings of now, and the failures of a request. A refusal for good (EZOGrantError) resets the
    /// token.
    virtual void RefreshAccess();

    /// Whether the token may be shown where AScheme asks for one: it was granted to this client, by AScheme's
    /// authorization server, for the scopes of now. It may have expired.
    bool HasTokenFor(const TZOSecurityScheme& AScheme) const;
    bool IsTokenExpired() const;
    /// Whether ObtainToken can do something for AScheme.
    bool CanObtainToken(const TZOSecurityScheme& AScheme) const;
    /// Gets a new token: by the refresh token, else by the scheme's flow, which may ask the user.
    void ObtainToken(const TZOSecurityScheme& AScheme);
    /// How the user is asked for consent; not owned. Null: nobody can be asked, which is a failure then.
    void SetAuthUI(TZOAuthUI* AUI) { FAuthUI = AUI; }
    /// The flow to use; by default the authorization code where a scheme has it, else client credentials.
    void SetOAuthFlow(std::optional<TZOOAuthFlowKind> AFlow) { FOAuthFlow = AFlow; }

    TZOFreeNotifier& FreeNotifier() noexcept { return FFreeNotifier; }
    /// The connections of this service, kept between requests.
    TZOHttpClient& HttpClient();

Q_SIGNALS:
    /// The token was obtained, renewed or dropped.
    void TokenReported();
    /// The options were changed in another place than the explorer.
    void OptionsReported();

protected:
    /// The service reports a new token; emits TokenReported.
    virtual void TokenChanged();

private:
    TZOOAuthClient OAuthClient(const TZOSecurityScheme& AScheme);
    TZOOAuthClient::TSettings OAuthSettings(const TZOSecurityScheme& AScheme) const;
    TZOTokenBinding BindingOfNow(const QString& AServer) const;
    const TZOSecurityScheme* SchemeToRenewWith() const;
    void Authorize(const TZOSecurityScheme& AScheme);

    const TZORestServiceClass* FClass;
    QString FApiKey;
    QString FClientId;
    QString FSecret;
    QString FRedirectUrl;
    QString FServerUrl;
    QStringList FScopes;
    TZOServiceState FState;
    TZOAuthUI* FAuthUI = nullptr;
    std::optional<TZOOAuthFlowKind> FOAuthFlow;
    TZOFreeNotifier FFreeNotifier;
    std::unique_ptr<TZOHttpClient> FHttpClient;
};

/// One operation of a service class.
struct TZORestService::TOper {
    QString Name;
    /// Always an object type, and no other operation's; its description is the operation's.
    const ZOObject::TTypeInfo* Request = nullptr;
    /// Null when the operation returns no data.
    const TZOTypeInfo* Response = nullptr;
    TZOHttpBinding Http;
    /// False while Response and the properties of Request, with their places, are still to be made: see
    /// TTypeInfo::Complete.
    bool IsComplete = true;
};

using POper = const TZORestService::TOper*;

/// One permission that a service can grant.
struct TZORestService::TScope {
    QString Name;
    bool Default = false;
};

/// What a service class is: its operations, scopes, address and ways to authenticate.
class TZORestService::TTypeInfo : public TZOTypeInfo {
public:
    /// What is said of a class when it is made.
    struct TDeclaration {
        QString Name;
        QString Description;
        QString BaseUrl;
        std::vector<TOper> Opers;
        std::vector<TScope> Scopes;
        std::vector<TZOSecurityScheme> Schemes;
        /// The ways to authenticate an operation that names none of its own; empty: no credentials needed.
        std::vector<TZOSecurityAlternative> Security;
        /// Completes the operation at that index; for classes with so many that most are never used.
        std::function<void(int AIndex, TOper& AOper)> Complete;
    };

    /// ATypes owns the types of the operations and lives as long as this.
    TTypeInfo(TDeclaration ADeclaration, std::unique_ptr<TZOTypeLibrary> ATypes);

    /// Never moves while the class lives: pages keep pointers into it.
    const std::vector<TOper>& Opers() const noexcept { return FDeclaration.Opers; }
    const std::vector<TScope>& Scopes() const noexcept { return FDeclaration.Scopes; }
    const QString& BaseUrl() const noexcept { return FDeclaration.BaseUrl; }
    const std::vector<TZOSecurityScheme>& Schemes() const noexcept { return FDeclaration.Schemes; }
    const std::vector<TZOSecurityAlternative>& Security() const noexcept { return FDeclaration.Security; }
    /// Whether any operation needs credentials.
    bool NeedsCredentials() const;
    /// The operation whose request type is ARequest, completed; or null.
    POper FindOper(const TZOTypeInfo* ARequest) const;
    /// Makes what is still missing of AOper, which is one of Opers(). Nothing but its name, address and
    /// description may be used before; ZORequest sees to it for those who make one.
    void Complete(POper AOper) const;

private:
    mutable TDeclaration FDeclaration; // operations are completed when they are first used
    std::unique_ptr<TZOTypeLibrary> FTypes;
};

/// A reference to a class of services: what the registry lists and instances are made from.
class TZORestServiceClass {
public:
    /// Makes an instance; AOwner becomes its parent.
    using TFactory =
        std::function<std::unique_ptr<TZORestService>(const TZORestServiceClass* AClass, QObject* AOwner)>;

    /// An empty AFactory makes plain TZORestService instances.
    TZORestServiceClass(const QString& AClassName, std::unique_ptr<TZORestService::TTypeInfo> ATypeInfo,
                        TFactory AFactory = {});
    TZORestServiceClass(const TZORestServiceClass&) = delete;
    TZORestServiceClass& operator=(const TZORestServiceClass&) = delete;
    ~TZORestServiceClass();

    /// Settings are kept under this name.
    const QString& ClassName() const noexcept { return FClassName; }
    const TZORestService::TTypeInfo* TypeInfo() const noexcept { return FTypeInfo.get(); }
    std::unique_ptr<TZORestService> Create(QObject* AOwner = nullptr) const;

    /// The header that declares the component of this class, named as the class with "Component" after it,
    /// for programs with forms that hold one. Empty where there is none.
    const QString& ComponentHeader() const noexcept { return FComponentHeader; }
    void SetComponentHeader(const QString& AHeader) { FComponentHeader = AHeader; }

    /// Adds AClass (not owned) at the end of TZOTypeInfo::Services(). A class registered twice counts once.
    static void Register(const TZORestServiceClass* AClass);
    /// Takes AClass out again; harmless when it is not registered.
    static void Unregister(const TZORestServiceClass* AClass);

private:
    QString FClassName;
    QString FComponentHeader;
    std::unique_ptr<TZORestService::TTypeInfo> FTypeInfo;
    TFactory FFactory;
};
