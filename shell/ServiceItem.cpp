#include "shell/ServiceItem.h"

#include "shell/ShellFrame.h"

#include "platform/DesignerNotify.h"
#include "platform/Exceptions.h"
#include "platform/Registry.h"

#include <QBuffer>
#include <QScopedValueRollback>

namespace {

const QString& ScopesKey() {
    static const QString name = QStringLiteral("Scopes");
    return name;
}

const QString& TokenValue() {
    static const QString name = QStringLiteral("Token");
    return name;
}

struct TOption {
    const char* Name;
    QString (TZORestService::*Get)() const;
    void (TZORestService::*Set)(const QString&);
};

constexpr TOption Options[] = {
    {"ApiKey", &TZORestService::GetApiKey, &TZORestService::SetApiKey},
    {"ClientId", &TZORestService::GetClientId, &TZORestService::SetClientId},
    {"Secret", &TZORestService::GetSecret, &TZORestService::SetSecret},
    {"RedirectUrl", &TZORestService::GetRedirectUrl, &TZORestService::SetRedirectUrl},
};

} // namespace

TZOServiceItem::TZOServiceItem(TZOShellFrame* AShell, const TZORestServiceClass* ASvcClass)
    : FShell(AShell),
      FSvcClass(ASvcClass),
      FOwnedComponent(ASvcClass->Create()),
      FComponent(FOwnedComponent.get()) {
    InitParams();
    connect(FComponent, &TZORestService::TokenReported, this, &TZOServiceItem::TokenReported);
}

TZOServiceItem::TZOServiceItem(TZOShellFrame* AShell, TZORestService* AComponent)
    : FShell(AShell), FSvcClass(AComponent->Class()), FComponent(AComponent) {
    InitParams();
    FComponent->FreeNotifier().Register(FShell);
    connect(FComponent, &TZORestService::OptionsReported, this, [this] { FShell->OptionsReported(); });
    connect(FComponent, &QObject::objectNameChanged, this, [this] {
        FName = MakeName();
        Q_EMIT Renamed();
    });
}

TZOServiceItem::~TZOServiceItem() {
    if (GetIsUserComp())
        FComponent->FreeNotifier().Withdraw(FShell);
}

void TZOServiceItem::InitParams() {
    FTypeInfo = dynamic_cast<const TZORestService::TTypeInfo*>(TZOTypeInfo::Get(*FSvcClass));
    if (!FTypeInfo)
        throw EInvalidCast(QStringLiteral("Invalid class typecast"));
    FDescription = TZOShellFrame::FormatDescription(FTypeInfo->Description());
    FName = MakeName();
    try {
        LoadOptions();
        LoadToken();
    } catch (const ERegistryException& e) {
        // One bad value must not keep the whole explorer from starting.
        TRegistry::Report(e.Message());
    }
}

QString TZOServiceItem::MakeName() const {
    if (!GetIsUserComp())
        return FSvcClass->ClassName();
    const QString name = FComponent->objectName();
    return name.isEmpty() ? u'<' + FSvcClass->ClassName() + u'>' : name;
}

QString TZOServiceItem::GetRootKey() const {
    return QStringLiteral("SOFTWARE\\Orvane Labs\\ZO-Tools 2020\\Bridgework\\APIExplorer\\") +
           FSvcClass->ClassName();
}

bool TZOServiceItem::IsConfigured() const {
    return !FComponent->GetApiKey().isEmpty() ||
           (!FComponent->GetClientId().isEmpty() && !FComponent->GetSecret().isEmpty() &&
            !FComponent->GetRedirectUrl().isEmpty());
}

void TZOServiceItem::LoadOptions() {
    const QScopedValueRollback loading(FLoading, true);
    if (GetIsUserComp())
        return;
    const auto keep = [this] {
        FUnreadOptions = OptionTexts();
        FUnreadScopes = FComponent->Scopes();
    };
    FUnreadOptions.reset();
    TRegistry registry;
    if (!registry.OpenKeyReadOnly(GetRootKey())) {
        if (registry.HasFailed())
            keep();
        return;
    }
    try {
        for (const TOption& option : Options) {
            const QString name = QLatin1String(option.Name);
            if (registry.ValueExists(name))
                (FComponent->*option.Set)(registry.ReadString(name));
        }
        if (!ReadScopes(registry))
            keep();
    } catch (const ERegistryException&) {
        keep();
        throw;
    }
}

bool TZOServiceItem::ReadScopes(TRegistry& ARegistry) {
    QStringList scopes;
    if (ARegistry.OpenKeyReadOnly(ScopesKey())) {
        for (int i = 0; ARegistry.ValueExists(QString::number(i)); ++i)
            scopes.append(ARegistry.ReadString(QString::number(i)));
    } else if (ARegistry.HasFailed()) {
        return false;
    }
    FComponent->Scopes() = scopes;
    return true;
}

QMap<QString, QString> TZOServiceItem::OptionTexts() const {
    QMap<QString, QString> texts;
    for (const TOption& option : Options)
        texts.insert(QLatin1String(option.Name), (FComponent->*option.Get)());
    return texts;
}

void TZOServiceItem::LoadToken() {
    const QScopedValueRollback loading(FLoading, true);
    TRegistry registry;
    if (GetIsUserComp() || !registry.OpenKeyReadOnly(GetRootKey()))
        return;
    if (!registry.ValueExists(TokenValue())) {
        FComponent->ResetToken();
        return;
    }
    QByteArray bytes = registry.ReadBinaryData(TokenValue());
    QBuffer stream(&bytes);
    stream.open(QIODevice::ReadOnly);
    FComponent->LoadToken(&stream);
}

void TZOServiceItem::SaveOptions() {
    if (GetIsUserComp()) {
        NotifyDesigner();
        return;
    }
    TRegistry registry;
    registry.OpenKey(GetRootKey(), true);
    registry.DeleteValue(TokenValue());
    const auto texts = OptionTexts();
    for (auto text = texts.begin(); text != texts.end(); ++text) {
        if (!FUnreadOptions || FUnreadOptions->value(text.key()) != text.value())
            registry.WriteString(text.key(), text.value());
    }
    if (!FUnreadOptions || FUnreadScopes != FComponent->Scopes())
        WriteScopes(registry);
    registry.CloseKey();
    if (FUnreadOptions)
        LoadOptions();
}

void TZOServiceItem::WriteScopes(TRegistry& ARegistry) const {
    // Not made anew, because each keystroke in the options comes here.
    ARegistry.OpenKey(ScopesKey(), true);
    const QStringList& scopes = FComponent->Scopes();
    QStringList names;
    for (qsizetype i = 0; i < scopes.size(); ++i) {
        names.append(QString::number(i));
        ARegistry.WriteString(names.last(), scopes[i]);
    }
    for (const QString& name : ARegistry.GetValueNames()) {
        if (!names.contains(name))
            ARegistry.DeleteValue(name);
    }
}

void TZOServiceItem::SaveToken() {
    TRegistry registry;
    // Without an open key the writes below go nowhere: a user component's token is not kept.
    if (!GetIsUserComp())
        registry.OpenKey(GetRootKey(), true);
    if (FComponent->GetToken().isEmpty()) {
        registry.DeleteValue(TokenValue());
    } else {
        QBuffer stream;
        stream.open(QIODevice::WriteOnly);
        FComponent->SaveToken(&stream);
        registry.WriteBinaryData(TokenValue(), stream.data());
    }
    registry.CloseKey();
}

void TZOServiceItem::OptionsModified() {
    if (!FLoading)
        SaveOptions();
}

void TZOServiceItem::TokenReported() {
    if (FLoading)
        return;
    try {
        // Making the key just to delete a token from it would empty the scopes at the next start.
        if (!FComponent->GetToken().isEmpty() || TRegistry().KeyExists(GetRootKey()))
            SaveToken();
    } catch (const EException& e) {
        // This runs inside a request, where nobody could answer a dialog.
        TRegistry::Report(e.Message());
    }
}

IDesignerNotify* TZOServiceItem::GetDesigner(const QObject* AComponent) {
    if (!IsDesigning(AComponent))
        return nullptr;
    const QObject* owner = ComponentOwner(AComponent);
    return owner ? GetDesigner(owner) : DesignerOfRoot(AComponent);
}

void TZOServiceItem::NotifyDesigner() {
    if (IDesignerNotify* designer = GetDesigner(FComponent))
        designer->Modified();
}
