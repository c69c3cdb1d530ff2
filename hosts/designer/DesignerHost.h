// The explorer in a form editor.
#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>

class QAction;
class QDesignerFormEditorInterface;
class QDesignerFormWindowInterface;
class QMainWindow;
class TZOExplorerDock;
class TZOFormWatch;
class TZOServiceComponent;

/// Watches the editor's forms, and puts the explorer's dock and commands into its window. There is one per
/// process, as there is one editor.
class TZODesignerHost final : public QObject {
    Q_OBJECT

public:
    /// Makes the host of ACore, whose child it is; does nothing when there is one.
    static void Start(QDesignerFormEditorInterface* ACore);
    /// Opens AComponent's operations in the dock.
    static void ExploreComponent(TZOServiceComponent* AComponent);

private:
    explicit TZODesignerHost(QDesignerFormEditorInterface* ACore);

    QMainWindow* FindWindow() const;
    void AddToWindow();
    void AddCommands(QMainWindow* AWindow);
    void WatchForm(QDesignerFormWindowInterface* AForm);
    void Explore(TZOServiceComponent* AComponent);
    void ShowServices();

    QDesignerFormEditorInterface* FCore;
    QPointer<TZOExplorerDock> FDock;
    QHash<QDesignerFormWindowInterface*, TZOFormWatch*> FForms;
};
