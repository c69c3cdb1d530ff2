#include "hosts/standalone/DocumentActions.h"

#include "hosts/standalone/HostSettings.h"
#include "hosts/standalone/OfferBar.h"
#include "hosts/standalone/ProblemWindow.h"

#include "shell/ShellFrame.h"

#include "platform/Dialogs.h"
#include "platform/ExceptionDisplay.h"
#include "platform/Exceptions.h"
#include "platform/Registry.h"
#include "platform/VisibleText.h"

#include <QApplication>
#include <QBoxLayout>
#include <QDir>
#include <QDropEvent>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QProgressDialog>
#include <QUrl>

namespace {

/// The local files among what is dragged.
QStringList FilesOf(const QMimeData* AData) {
    QStringList files;
    for (const QUrl& url : AData->urls()) {
        if (url.isLocalFile())
            files.append(url.toLocalFile());
    }
    return files;
}

/// A path as a menu shows it: an ampersand in it is none of the menu's.
QString MenuText(const QString& APath) {
    const QString home = QDir::homePath() + u'/';
    const QString text = APath.startsWith(home) ? QStringLiteral("~/") + APath.mid(home.size()) : APath;
    return VisibleText(text).replace(u'&', QStringLiteral("&&"));
}

/// A dialog that comes up when reading takes long.
class TReading {
public:
    TReading(QWidget* AParent, const QString& AFileName) : FDialog(AParent) {
        FDialog.setWindowTitle(QStringLiteral("Open document"));
        FDialog.setLabelText(
            QStringLiteral("Reading %1...").arg(VisibleText(QFileInfo(AFileName).fileName())));
        for (QLabel* label : FDialog.findChildren<QLabel*>())
            label->setTextFormat(Qt::PlainText);
        FDialog.setCancelButtonText(QStringLiteral("Cancel"));
        FDialog.setRange(0, Steps);
        FDialog.setWindowModality(Qt::WindowModal);
        FDialog.setMinimumDuration(400);
        FDialog.setMinimumWidth(360);
    }

    bool Goes(double ADone) {
        FDialog.setValue(static_cast<int>(ADone * Steps));
        return !FDialog.wasCanceled();
    }

private:
    static constexpr int Steps = 1000;
    QProgressDialog FDialog;
};

} // namespace

TZODocumentActions::TZODocumentActions(TZOShellFrame* AShell, QWidget* AWindow, QBoxLayout* ABars)
    : QObject(AWindow), FShell(AShell), FWindow(AWindow), FBars(ABars), FDocuments(AShell, nullptr) {
    connect(&FDocuments, &TZOOpenDocuments::Changed, this, &TZODocumentActions::Offer);
    // Controls that take text would keep files from the window.
    qApp->installEventFilter(this);
    FWindow->setAcceptDrops(true);
}

TZODocumentActions::~TZODocumentActions() = default;

void TZODocumentActions::AddTo(QMenu* AFileMenu, QMenu* AViewMenu) {
    QAction* open = AFileMenu->addAction(QStringLiteral("&Open document..."), this,
                                         [this] { GuardedCall(FWindow, [this] { ChooseFiles(); }); });
    open->setShortcut(QKeySequence::Open);
    FRecentMenu = AFileMenu->addMenu(QStringLiteral("Open &recent"));
    connect(FRecentMenu, &QMenu::aboutToShow, this, &TZODocumentActions::FillRecentMenu);
    FCloseMenu = AFileMenu->addMenu(QStringLiteral("&Close document"));
    connect(FCloseMenu, &QMenu::aboutToShow, this, &TZODocumentActions::FillCloseMenu);
    connect(AFileMenu, &QMenu::aboutToShow, this, [this] {
        FRecentMenu->setEnabled(!HostSettings::RecentDocuments().isEmpty());
        FCloseMenu->setEnabled(!FDocuments.Paths().isEmpty());
    });
    AFileMenu->addSeparator();
    AViewMenu->addAction(QStringLiteral("&Problems of documents"), this,
                         [this] { GuardedCall(FWindow, [this] { ShowProblems(); }); });
}

void TZODocumentActions::ChooseFiles() {
    const QStringList recent = HostSettings::RecentDocuments();
    const QString folder = recent.isEmpty() ? QString() : QFileInfo(recent.first()).path();
    Open(::Dialogs().OpenFiles(FWindow, QStringLiteral("Open document"), folder,
                               QStringLiteral("API documents (*.json *.yaml *.yml);;All files (*)")));
}

void TZODocumentActions::Open(const QStringList& AFileNames) {
    // The service that is replaced may be the one that is asked.
    if (FShell->HoldCall([self = QPointer(this), AFileNames] {
            if (self)
                self->Open(AFileNames);
        }))
        return;
    bool isRefused = false;
    for (const QString& fileName : AFileNames) {
        const TZOOpenDocuments::TOutcome outcome = OpenOne(fileName);
        if (outcome == TZOOpenDocuments::doCancelled)
            break;
        isRefused |= outcome == TZOOpenDocuments::doRefused;
    }
    if (isRefused)
        ShowProblems();
}

TZOOpenDocuments::TOutcome TZODocumentActions::OpenOne(const QString& AFileName) {
    TReading reading(FWindow, AFileName);
    const auto outcome = FDocuments.Open(AFileName, [&](double ADone) { return reading.Goes(ADone); });
    if (outcome != TZOOpenDocuments::doOpened)
        return outcome;
    const QString path = TZOOpenDocuments::PathOf(AFileName);
    if (TZOOfferBar* offer = FOffers.take(path))
        offer->deleteLater();
    Remember(path);
    const auto problems = FDocuments.Document(path)->Problems().size();
    if (problems > 0)
        Q_EMIT Noticed(QStringLiteral("%1 has problems: View > Problems of documents lists them.")
                           .arg(QFileInfo(path).fileName()));
    return outcome;
}

void TZODocumentActions::Remember(const QString& APath) {
    if (HostSettings::RecentDocuments().value(0) == APath)
        return;
    try {
        HostSettings::RememberDocument(APath);
    } catch (const std::exception& e) {
        // The document is open all the same.
        TRegistry::Report(ExceptionMessage(e));
    }
}

void TZODocumentActions::FillRecentMenu() {
    FRecentMenu->clear();
    for (const QString& path : HostSettings::RecentDocuments()) {
        FRecentMenu->addAction(MenuText(path), this,
                               [this, path] { GuardedCall(FWindow, [this, path] { Open({path}); }); });
    }
}

void TZODocumentActions::FillCloseMenu() {
    FCloseMenu->clear();
    for (const QString& path : FDocuments.Paths()) {
        FCloseMenu->addAction(MenuText(path), this, [this, path] {
            GuardedCall(FWindow, [this, path] { FDocuments.Close(path); });
        });
    }
}

void TZODocumentActions::Offer(const QString& APath) {
    if (FOffers.value(APath))
        return;
    auto* offer = new TZOOfferBar(QStringLiteral("%1 has changed.").arg(QFileInfo(APath).fileName()),
                                  QStringLiteral("Reload"));
    connect(offer, &TZOOfferBar::Accepted, this,
            [this, APath] { GuardedCall(FWindow, [this, APath] { Open({APath}); }); });
    FOffers.insert(APath, offer);
    FBars->insertWidget(0, offer);
}

void TZODocumentActions::ShowProblems() {
    if (!FProblemWindow)
        FProblemWindow = new TZOProblemWindow(FWindow);
    FProblemWindow->SetProblems(FDocuments.Problems());
    FProblemWindow->show();
    FProblemWindow->raise();
    FProblemWindow->activateWindow();
}

bool TZODocumentActions::eventFilter(QObject* AWatched, QEvent* AEvent) {
    const QEvent::Type type = AEvent->type();
    if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop)
        return false;
    auto* widget = qobject_cast<QWidget*>(AWatched);
    auto* drop = static_cast<QDropEvent*>(AEvent);
    if (!widget || widget->window() != FWindow || QApplication::activeModalWidget())
        return false;
    const QStringList files = FilesOf(drop->mimeData());
    if (files.isEmpty())
        return false;
    drop->setDropAction(Qt::CopyAction);
    drop->accept();
    // The other program waits until the drop has been taken.
    if (type == QEvent::Drop)
        QMetaObject::invokeMethod(
            this, [this, files] { GuardedCall(FWindow, [this, files] { Open(files); }); },
            Qt::QueuedConnection);
    return true;
}
