#include "hosts/designer/ExplorerDock.h"

#include "hosts/designer/DesignerServices.h"
#include "hosts/standalone/AppIcon.h"
#include "hosts/standalone/NoticeBar.h"

#include "pages/Pages.h"

#include "shell/ShellFrame.h"

#include "platform/ExceptionDisplay.h"
#include "platform/Registry.h"

#include <QMainWindow>
#include <QVBoxLayout>

namespace {

// As wide as the bar with the names of three pages.
constexpr int UsualWidth = 560;

} // namespace

TZOExplorerDock::TZOExplorerDock(QWidget* AParent) : QDockWidget(QStringLiteral("API Explorer"), AParent) {
    // Editors keep the places of docks by their names.
    setObjectName(QStringLiteral("ZOExplorerDock"));
    setWindowIcon(AppIcon());
    connect(this, &QDockWidget::visibilityChanged, this, [this](bool AIsVisible) {
        if (AIsVisible)
            GuardedCall(this, [this] { MakeContent(); });
    });
}

TZOExplorerDock::~TZOExplorerDock() { End(); }

void TZOExplorerDock::showEvent(QShowEvent* AEvent) {
    QDockWidget::showEvent(AEvent);
    if (!std::exchange(FHasRoom, true))
        MakeRoom();
}

void TZOExplorerDock::MakeRoom() {
    auto* window = qobject_cast<QMainWindow*>(parentWidget());
    if (!window || isFloating())
        return;
    // The docks beside it keep their widths, which the window would share out anew.
    QList<QDockWidget*> docks{this};
    QList<int> widths{UsualWidth};
    for (QDockWidget* dock : window->findChildren<QDockWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (dock != this && dock->isVisible() && !dock->isFloating()) {
            docks.append(dock);
            widths.append(dock->width());
        }
    }
    QMetaObject::invokeMethod(
        this, [window, docks, widths] { window->resizeDocks(docks, widths, Qt::Horizontal); },
        Qt::QueuedConnection);
}

void TZOExplorerDock::MakeContent() {
    if (FShell || FIsEnded)
        return;
    auto* content = new QWidget;
    // Qt Creator's style paints every tool bar as one of the main window's, unless told so.
    content->setProperty("_q_custom_style_disabled", true);
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    FNotices = new TZONoticeBar;
    layout->addWidget(FNotices);
    // Reports come from inside the settings: they are shown when that is over.
    TRegistry::SetReportHandler([notices = QPointer(FNotices)](const QString& AMessage) {
        QMetaObject::invokeMethod(
            notices, [notices, AMessage] { notices->Add(AMessage); }, Qt::QueuedConnection);
    });
    StartPages();
    FShell = new TZOShellFrame;
    layout->addWidget(FShell, 1);
    setWidget(content);
    for (const QString& failure : DesignerServices::Failures())
        FNotices->Add(failure);
}

TZOShellFrame* TZOExplorerDock::Open() {
    if (FIsEnded)
        return nullptr;
    show();
    raise();
    MakeContent();
    return FShell;
}

void TZOExplorerDock::End() {
    if (std::exchange(FIsEnded, true) || !FNotices)
        return;
    delete FShell;
    TRegistry::SetReportHandler({});
    StopPages();
}
