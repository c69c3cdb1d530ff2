// What the context menu of a component offers.
#pragma once

#include <QtDesigner/QDesignerTaskMenuExtension>
#include <QtDesigner/QExtensionFactory>

#include <QObject>

class TZOServiceComponent;

/// "Explore service...", which a double-click does, too.
class TZOTaskMenu final : public QObject, public QDesignerTaskMenuExtension {
    Q_OBJECT
    Q_INTERFACES(QDesignerTaskMenuExtension)

public:
    TZOTaskMenu(TZOServiceComponent* AComponent, QObject* AParent);

    QAction* preferredEditAction() const override { return FExplore; }
    QList<QAction*> taskActions() const override { return {FExplore}; }

private:
    QAction* FExplore;
};

/// Makes the menus of components.
class TZOTaskMenuFactory final : public QExtensionFactory {
    Q_OBJECT

public:
    using QExtensionFactory::QExtensionFactory;

protected:
    QObject* createExtension(QObject* AObject, const QString& AInterface, QObject* AParent) const override;
};
