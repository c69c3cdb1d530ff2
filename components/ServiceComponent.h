// A REST service as a component on a form.
#pragma once

#include "runtime/service/RestService.h"

#include "platform/Exceptions.h"

#include <QIcon>
#include <QStringList>
#include <QVariant>
#include <QWidget>

#include <array>
#include <memory>
#include <optional>
#include <typeinfo>
#include <utility>

/// A component has no service class to make its service from.
ZO_EXCEPTION(EZOComponentError, EException);

/// Holds a service on a form: shows an icon in a form editor, and nothing in a running program. Its
/// properties are the service's options as the form keeps them; at run time they are set by the form's code,
/// and a program that wants others later sets them on Service().
class TZOServiceComponent : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString ApiKey READ GetApiKey WRITE SetApiKey)
    Q_PROPERTY(QString ClientId READ GetClientId WRITE SetClientId)
    Q_PROPERTY(QString Secret READ GetSecret WRITE SetSecret)
    Q_PROPERTY(QString RedirectUrl READ GetRedirectUrl WRITE SetRedirectUrl)
    Q_PROPERTY(QStringList Scopes READ GetScopes WRITE SetScopes)

public:
    /// Makes the component and an instance of AClass, which must outlive it; a component without a class has
    /// no service yet.
    explicit TZOServiceComponent(const TZORestServiceClass* AClass, QWidget* AParent = nullptr);
    ~TZOServiceComponent() override;

    /// Named as the component is. Null while the component has no class.
    TZORestService* Service() const { return FService.get(); }

    QString GetApiKey() const { return Text(opApiKey); }
    QString GetClientId() const { return Text(opClientId); }
    QString GetSecret() const { return Text(opSecret); }
    QString GetRedirectUrl() const { return Text(opRedirectUrl); }
    QStringList GetScopes() const { return FScopes.value_or(FDefaultScopes); }
    /// Give the option to the service too, and report it there to those who show it.
    void SetApiKey(const QString& AValue) { SetText(opApiKey, AValue); }
    void SetClientId(const QString& AValue) { SetText(opClientId, AValue); }
    void SetSecret(const QString& AValue) { SetText(opSecret, AValue); }
    void SetRedirectUrl(const QString& AValue) { SetText(opRedirectUrl, AValue); }
    void SetScopes(const QStringList& AValue);

    /// The properties whose values are others on the service, with these.
    QList<std::pair<QString, QVariant>> ChangesOfService() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }
    /// A component stays hidden but on a form under design.
    void setVisible(bool AIsVisible) override;

    /// The registered class of services of AType; AName is for the message. Raises EZOComponentError when
    /// there is none.
    static const TZORestServiceClass* RegisteredClass(const std::type_info& AType, const char* AName);

protected:
    /// Replaces the service by an instance of AClass (null: by none), with the options that were set here.
    void SetServiceClass(const TZORestServiceClass* AClass);

    void paintEvent(QPaintEvent* AEvent) override;

private:
    enum TTextOption { opApiKey, opClientId, opSecret, opRedirectUrl, TextOptionCount };
    struct TText;
    static const TText Texts[TextOptionCount];

    QString Text(TTextOption AOption) const { return FTexts[AOption].value_or(FDefaultTexts[AOption]); }
    void SetText(TTextOption AOption, const QString& AValue);

    std::unique_ptr<TZORestService> FService;
    QIcon FIcon;
    // What was set, and what a new service starts with.
    std::array<std::optional<QString>, TextOptionCount> FTexts;
    std::array<QString, TextOptionCount> FDefaultTexts;
    std::optional<QStringList> FScopes;
    QStringList FDefaultScopes;
};

/// The component of the service class TService, for programs: the class must be registered before a form
/// with one is made. Raises EZOComponentError otherwise.
template <class TService>
class TZOComponentOf : public TZOServiceComponent {
public:
    explicit TZOComponentOf(QWidget* AParent = nullptr)
        : TZOServiceComponent(RegisteredClass(typeid(TService), TService::staticMetaObject.className()),
                              AParent) {}

    TService* Service() const { return static_cast<TService*>(TZOServiceComponent::Service()); }
};
