#include "hosts/designer/TaskMenu.h"

#include "hosts/designer/DesignerHost.h"

#include "components/ServiceComponent.h"

#include <QAction>

TZOTaskMenu::TZOTaskMenu(TZOServiceComponent* AComponent, QObject* AParent)
    : QObject(AParent), FExplore(new QAction(QStringLiteral("Explore service..."), this)) {
    FExplore->setObjectName(QStringLiteral("ZOExploreService"));
    connect(FExplore, &QAction::triggered, AComponent,
            [AComponent] { TZODesignerHost::ExploreComponent(AComponent); });
}

QObject* TZOTaskMenuFactory::createExtension(QObject* AObject, const QString& AInterface,
                                             QObject* AParent) const {
    if (AInterface != Q_TYPEID(QDesignerTaskMenuExtension))
        return nullptr;
    auto* component = qobject_cast<TZOServiceComponent*>(AObject);
    return component ? new TZOTaskMenu(component, AParent) : nullptr;
}
