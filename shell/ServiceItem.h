// One service that the explorer can show, with its persisted settings.
#pragma once

#include "runtime/service/RestService.h"

#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

class IDesignerNotify;
class TRegistry;
class TZOShellFrame;

/// A registered service class with a private instance of it, or a user's service component on a form.
///
/// The settings of registered classes are kept in the settings store, one key per class; those of a user's
/// component are the component's own, and its form's designer is told when they change. Hold an item beyond a
/// call only through QPointer: it dies with its component or class.
class TZOServiceItem final : public QObject {
    Q_OBJECT

public:
    /// For a registered class: creates a private instance and loads its settings.
    TZOServiceItem(TZOShellFrame* AShell, const TZORestServiceClass* ASvcClass);
    /// For a user's component, which stays its form's; AShell hears of its removal.
    TZOServiceItem(TZOShellFrame* AShell, TZORestService* AComponent);
    ~TZOServiceItem() override;

    const TZORestServiceClass* SvcClass() const { return FSvcClass; }
    TZORestService* Component() const { return FComponent; }
    const TZORestService::TTypeInfo* TypeInfo() const { return FTypeInfo; }
    /// The class name, or the user component's name, or "<class name>" when that has none.
    const QString& Name() const { return FName; }
    /// Ends with a full stop unless it is empty.
    const QString& Description() const { return FDescription; }

    bool GetIsUserComp() const { return !FOwnedComponent; }
    /// Path of the class's key in the settings store.
    QString GetRootKey() const;
    /// Whether there is an API key, or a client id, secret and redirect URL together.
    bool IsConfigured() const;

    /// Loading leaves the component as it is where nothing was stored, except that a stored key without
    /// scopes empties its scopes, and one without a token resets its token. Raises ERegistryException when a
    /// stored value is of the wrong type. What could not be read is kept by SaveOptions, unless it has been
    /// changed meanwhile.
    void LoadOptions();
    void LoadToken();
    /// Saving the options discards the stored token. Raises ERegistryException when the store cannot be
    /// written. For a user's component it tells the designer instead.
    void SaveOptions();
    /// Stores the token, or deletes the stored one when the component has none. Raises as SaveOptions does.
    void SaveToken();
    /// To be called by whoever changed the component's options: saves them, unless they are being loaded.
    void OptionsModified();

Q_SIGNALS:
    /// The user has given the component another name.
    void Renamed();

private:
    void InitParams();
    QString MakeName() const;
    /// The options by the names that they are stored under.
    QMap<QString, QString> OptionTexts() const;
    /// False, and the scopes as they were, when they could not be read.
    bool ReadScopes(TRegistry& ARegistry);
    void WriteScopes(TRegistry& ARegistry) const;
    void TokenReported();
    static IDesignerNotify* GetDesigner(const QObject* AComponent);
    void NotifyDesigner();

    TZOShellFrame* FShell;
    const TZORestServiceClass* FSvcClass;
    std::unique_ptr<TZORestService> FOwnedComponent;
    TZORestService* FComponent;
    const TZORestService::TTypeInfo* FTypeInfo = nullptr;
    QString FName;
    QString FDescription;
    bool FLoading = false;
    /// The options as they were when what is stored could not be read, else nothing: a value that nobody has
    /// changed since must not take the place of a stored one.
    std::optional<QMap<QString, QString>> FUnreadOptions;
    QStringList FUnreadScopes;
};
