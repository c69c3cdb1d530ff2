#include "components/ServiceComponent.h"

#include "components/ComponentIcon.h"

#include "platform/DesignerNotify.h"

#include <QPainter>

#include <algorithm>

namespace {

constexpr int IconSize = 32;
constexpr int IconMargin = 4;

} // namespace

struct TZOServiceComponent::TText {
    const char* Name;
    QString (TZORestService::*Get)() const;
    void (TZORestService::*Set)(const QString&);
};

const TZOServiceComponent::TText TZOServiceComponent::Texts[] = {
    {"ApiKey", &TZORestService::GetApiKey, &TZORestService::SetApiKey},
    {"ClientId", &TZORestService::GetClientId, &TZORestService::SetClientId},
    {"Secret", &TZORestService::GetSecret, &TZORestService::SetSecret},
    {"RedirectUrl", &TZORestService::GetRedirectUrl, &TZORestService::SetRedirectUrl},
};

TZOServiceComponent::TZOServiceComponent(const TZORestServiceClass* AClass, QWidget* AParent)
    : QWidget(AParent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    hide();
    connect(this, &QObject::objectNameChanged, this, [this](const QString& AName) {
        if (FService)
            FService->setObjectName(AName);
    });
    SetServiceClass(AClass);
}

TZOServiceComponent::~TZOServiceComponent() = default;

const TZORestServiceClass* TZOServiceComponent::RegisteredClass(const std::type_info& AType,
                                                                const char* AName) {
    const TZOTypeInfo* type = TZOTypeInfo::Get(AType);
    const auto classes = TZOTypeInfo::Services();
    const auto found =
        std::find_if(classes.begin(), classes.end(), [&](const auto* c) { return c->TypeInfo() == type; });
    if (found == classes.end())
        throw EZOComponentError(
            QStringLiteral("%1 has to be registered before a form with its component is made.")
                .arg(QLatin1String(AName)));
    return *found;
}

void TZOServiceComponent::SetServiceClass(const TZORestServiceClass* AClass) {
    FService = nullptr;
    FIcon = ComponentIcon(AClass ? AClass->ClassName() : QString());
    update();
    if (!AClass)
        return;
    FService = AClass->Create(this);
    FService->setObjectName(objectName());
    for (std::size_t i = 0; i < TextOptionCount; ++i) {
        FDefaultTexts[i] = (FService.get()->*Texts[i].Get)();
        if (FTexts[i])
            (FService.get()->*Texts[i].Set)(*FTexts[i]);
    }
    FDefaultScopes = FService->Scopes();
    FService->Scopes() = GetScopes();
}

void TZOServiceComponent::SetText(TTextOption AOption, const QString& AValue) {
    FTexts[AOption] = AValue;
    const TText& text = Texts[AOption];
    // What the explorer itself has changed comes back through the form, and is shown already.
    if (!FService || (FService.get()->*text.Get)() == AValue)
        return;
    (FService.get()->*text.Set)(AValue);
    FService->ReportOptions();
}

void TZOServiceComponent::SetScopes(const QStringList& AValue) {
    FScopes = AValue;
    if (!FService || FService->Scopes() == AValue)
        return;
    FService->Scopes() = AValue;
    FService->ReportOptions();
}

QList<std::pair<QString, QVariant>> TZOServiceComponent::ChangesOfService() const {
    QList<std::pair<QString, QVariant>> changes;
    if (!FService)
        return changes;
    for (int i = 0; i < TextOptionCount; ++i) {
        const QString value = (FService.get()->*Texts[i].Get)();
        if (value != Text(TTextOption(i)))
            changes.append({QLatin1String(Texts[i].Name), value});
    }
    if (FService->Scopes() != GetScopes())
        changes.append({QStringLiteral("Scopes"), FService->Scopes()});
    return changes;
}

QSize TZOServiceComponent::sizeHint() const {
    return QSize(IconSize + 2 * IconMargin, IconSize + 2 * IconMargin);
}

void TZOServiceComponent::setVisible(bool AIsVisible) {
    QWidget::setVisible(AIsVisible && IsDesigning(this));
}

void TZOServiceComponent::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    FIcon.paint(&painter, QRect((width() - IconSize) / 2, (height() - IconSize) / 2, IconSize, IconSize));
}
