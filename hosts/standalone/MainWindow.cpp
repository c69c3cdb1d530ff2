#include "hosts/standalone/MainWindow.h"

#include "hosts/standalone/AppIcon.h"
#include "hosts/standalone/DocumentActions.h"
#include "hosts/standalone/HostSettings.h"
#include "hosts/standalone/NoticeBar.h"

#include "shell/ShellFrame.h"

#include "platform/ExceptionDisplay.h"
#include "platform/Exceptions.h"
#include "platform/Registry.h"
#include "platform/VisibleText.h"

#include <QActionGroup>
#include <QMenu>
#include <QMenuBar>
#include <QVBoxLayout>

#include <cstdio>

namespace {

void ReportToStandardError(const QString& AMessage) {
    std::fprintf(stderr, "%s\n", qUtf8Printable(VisibleLines(AMessage)));
}

// For settings whose loss must not stop anybody.
template <class F>
void ReportingCall(F&& AAction) {
    try {
        AAction();
    } catch (const std::exception& e) {
        TRegistry::Report(ExceptionMessage(e));
    }
}

} // namespace

TZOMainWindow::TZOMainWindow() : FNotices(new TZONoticeBar) {
    setWindowTitle(QStringLiteral("ZO Bridgework API Explorer"));
    setWindowIcon(AppIcon());
    // Reports come from inside the settings: the window shows them when that is over.
    TRegistry::SetReportHandler([this](const QString& AMessage) {
        QMetaObject::invokeMethod(
            this, [this, AMessage] { Notify(AMessage); }, Qt::QueuedConnection);
    });
    TZOIdeTheming::SetTheme(HostSettings::Theme());
    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(FNotices);
    FShell = new TZOShellFrame;
    layout->addWidget(FShell, 1);
    setCentralWidget(content);
    FDocuments = new TZODocumentActions(FShell, this, layout);
    connect(FDocuments, &TZODocumentActions::Noticed, this, &TZOMainWindow::Notify);
    InitMenus();
    resize(960, 720);
    restoreGeometry(HostSettings::Geometry());
}

TZOMainWindow::~TZOMainWindow() {
    TRegistry::SetReportHandler(ReportToStandardError);
    // While the window is still whole: the frame saves tokens and its pages look at what is around them.
    delete FShell;
    delete FDocuments;
}

void TZOMainWindow::InitMenus() {
    QMenu* file = menuBar()->addMenu(QStringLiteral("&File"));
    QMenu* view = menuBar()->addMenu(QStringLiteral("&View"));
    FDocuments->AddTo(file, view);
    QAction* quit = file->addAction(QStringLiteral("&Quit"), this, &QWidget::close);
    quit->setShortcut(QKeySequence::Quit);
    view->addAction(QStringLiteral("&Services"), this,
                    [this] { GuardedCall(this, [this] { FShell->ShowServiceList(); }); });
    InitThemeMenu(view->addMenu(QStringLiteral("&Theme")));
}

void TZOMainWindow::InitThemeMenu(QMenu* AMenu) {
    const std::pair<QString, TZOTheme> themes[] = {{QStringLiteral("&Light"), thLight},
                                                   {QStringLiteral("&Dark"), thDark},
                                                   {QStringLiteral("&System"), thSystem}};
    auto* group = new QActionGroup(this);
    for (const auto& [caption, theme] : themes) {
        QAction* action = AMenu->addAction(caption);
        action->setCheckable(true);
        action->setChecked(theme == TZOIdeTheming::Theme());
        group->addAction(action);
        connect(action, &QAction::triggered, this, [this, theme = theme] {
            GuardedCall(this, [theme] {
                TZOIdeTheming::SetTheme(theme);
                ReportingCall([theme] { HostSettings::SetTheme(theme); });
            });
        });
    }
}

void TZOMainWindow::OpenDocuments(const QStringList& AFileNames) { FDocuments->Open(AFileNames); }

void TZOMainWindow::Notify(const QString& AMessage) { FNotices->Add(AMessage); }

void TZOMainWindow::closeEvent(QCloseEvent* AEvent) {
    ReportingCall([this] { HostSettings::SetGeometry(saveGeometry()); });
    QMainWindow::closeEvent(AEvent);
}
