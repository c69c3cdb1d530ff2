#include "hosts/designer/FormWatch.h"

#include "components/ServiceComponent.h"

#include <QtDesigner/QDesignerFormWindowCursorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>

TZOFormWatch::TZOFormWatch(QDesignerFormWindowInterface* AForm) : QObject(AForm), FForm(AForm) {
    connect(FForm, &QDesignerFormWindowInterface::mainContainerChanged, this, &TZOFormWatch::SetRoot);
    // The undo stack keeps a deleted widget alive: no destructor tells.
    connect(FForm, &QDesignerFormWindowInterface::widgetRemoved, this, &TZOFormWatch::AnnounceRemoval);
    SetRoot(FForm->mainContainer());
}

TZOFormWatch::~TZOFormWatch() {
    if (FRoot)
        ClearDesignRoot(FRoot);
}

void TZOFormWatch::SetRoot(QWidget* ARoot) {
    if (FRoot == ARoot)
        return;
    if (FRoot)
        ClearDesignRoot(FRoot);
    FRoot = ARoot;
    if (!FRoot)
        return;
    SetDesignRoot(FRoot, this);
    // They were read from a file before the form had its root.
    for (TZOServiceComponent* component : FRoot->findChildren<TZOServiceComponent*>())
        component->show();
}

void TZOFormWatch::Modified() {
    if (!FRoot)
        return;
    for (TZOServiceComponent* component : FRoot->findChildren<TZOServiceComponent*>()) {
        for (const auto& [name, value] : component->ChangesOfService())
            FForm->cursor()->setWidgetProperty(component, name, value);
    }
}

void TZOFormWatch::Close() {
    if (FRoot)
        AnnounceRemoval(FRoot);
}

void TZOFormWatch::AnnounceRemoval(QWidget* AWidget) {
    QList<TZOServiceComponent*> components = AWidget->findChildren<TZOServiceComponent*>();
    if (auto* component = qobject_cast<TZOServiceComponent*>(AWidget))
        components.prepend(component);
    for (TZOServiceComponent* component : components) {
        if (TZORestService* service = component->Service())
            service->FreeNotifier().AnnounceRemoval(service);
    }
}
