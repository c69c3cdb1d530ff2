#include "hosts/designer/DesignerHost.h"

#include "hosts/designer/ExplorerDock.h"
#include "hosts/designer/FormWatch.h"
#include "hosts/designer/TaskMenu.h"

#include "components/DocumentComponent.h"

#include "shell/ShellFrame.h"

#include "platform/ExceptionDisplay.h"

#include <QApplication>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTimer>
#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>
#include <QtDesigner/QDesignerFormWindowManagerInterface>
#include <QtDesigner/QExtensionManager>

namespace {

QPointer<TZODesignerHost> GHost;

/// The editor's menu for what stands beside its forms: Tools of Qt Creator, View of Qt Designer.
QMenu* MenuFor(QMenuBar* ABar) {
    for (const char* name : {"QtCreator.Menu.Tools", "Tools", "View"}) {
        for (const QAction* action : ABar->actions()) {
            QMenu* menu = action->menu();
            if (menu && (menu->objectName() == QLatin1String(name) ||
                         action->text().remove(u'&') == QLatin1String(name)))
                return menu;
        }
    }
    return nullptr;
}

} // namespace

void TZODesignerHost::Start(QDesignerFormEditorInterface* ACore) {
    if (!GHost)
        GHost = new TZODesignerHost(ACore);
}

TZODesignerHost::TZODesignerHost(QDesignerFormEditorInterface* ACore) : QObject(ACore), FCore(ACore) {
    QExtensionManager* extensions = FCore->extensionManager();
    extensions->registerExtensions(new TZOTaskMenuFactory(extensions), Q_TYPEID(QDesignerTaskMenuExtension));
    QDesignerFormWindowManagerInterface* forms = FCore->formWindowManager();
    connect(forms, &QDesignerFormWindowManagerInterface::formWindowAdded, this, &TZODesignerHost::WatchForm);
    connect(forms, &QDesignerFormWindowManagerInterface::formWindowRemoved, this,
            [this](QDesignerFormWindowInterface* AForm) {
                if (TZOFormWatch* watch = FForms.take(AForm))
                    watch->Close();
            });
    for (int i = 0; i < forms->formWindowCount(); ++i)
        WatchForm(forms->formWindow(i));
    // The editor's window is not there before its event loop runs.
    QTimer::singleShot(0, this, [this] { GuardedCall(nullptr, [this] { AddToWindow(); }); });
    connect(qApp, &QCoreApplication::aboutToQuit, this, [this] {
        if (FDock)
            FDock->End();
    });
}

QMainWindow* TZODesignerHost::FindWindow() const {
    for (QWidget* widget = FCore->topLevel(); widget; widget = widget->parentWidget()) {
        if (auto* window = qobject_cast<QMainWindow*>(widget))
            return window;
    }
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* window = qobject_cast<QMainWindow*>(widget);
        if (window && window->menuWidget())
            return window;
    }
    return nullptr;
}

void TZODesignerHost::AddToWindow() {
    FDock = new TZOExplorerDock(FCore->topLevel());
    QMainWindow* window = FindWindow();
    if (!window) {
        FDock->hide();
        return;
    }
    if (!window->restoreDockWidget(FDock)) {
        window->addDockWidget(Qt::RightDockWidgetArea, FDock, Qt::Horizontal);
        FDock->hide();
    }
    AddCommands(window);
}

void TZODesignerHost::AddCommands(QMainWindow* AWindow) {
    auto* bar = qobject_cast<QMenuBar*>(AWindow->menuWidget());
    if (!bar)
        return;
    QMenu* menu = MenuFor(bar);
    if (!menu)
        menu = bar->addMenu(QStringLiteral("API Explorer"));
    else
        menu->addSeparator();
    menu->addAction(FDock->toggleViewAction());
    QAction* services = menu->addAction(QStringLiteral("API Explorer: services"), this,
                                        [this] { GuardedCall(FDock, [this] { ShowServices(); }); });
    services->setObjectName(QStringLiteral("ZOShowServices"));
}

void TZODesignerHost::WatchForm(QDesignerFormWindowInterface* AForm) {
    if (!FForms.contains(AForm))
        FForms.insert(AForm, new TZOFormWatch(AForm));
}

void TZODesignerHost::ExploreComponent(TZOServiceComponent* AComponent) {
    if (GHost && GHost->FDock)
        GuardedCall(GHost->FDock, [AComponent] { GHost->Explore(AComponent); });
}

void TZODesignerHost::Explore(TZOServiceComponent* AComponent) {
    TZOShellFrame* shell = FDock->Open();
    if (!shell)
        return;
    const auto* document = qobject_cast<TZODocumentComponent*>(AComponent);
    if (document && !document->Problem().isEmpty())
        throw EZOComponentError(document->Problem());
    shell->ExploreComponent(AComponent->Service());
}

void TZODesignerHost::ShowServices() {
    if (TZOShellFrame* shell = FDock->Open())
        shell->ShowServiceList();
}
