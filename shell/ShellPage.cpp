#include "shell/ShellPage.h"

#include "shell/PageFrame.h"
#include "shell/ServiceItem.h"
#include "shell/ShellFrame.h"

TZOShellPage::TZOShellPage(const QString& ACaption, TZOPageFrame* AFrame, TServiceProc ASvcAdded,
                           TServiceProc ASvcRemoved, TAuthProc AAuthProc)
    : FCaption(ACaption),
      FFrame(AFrame),
      FSvcAdded(std::move(ASvcAdded)),
      FSvcRemoved(std::move(ASvcRemoved)),
      FAuthProc(std::move(AAuthProc)) {
    FFrame->FreeNotifier().Register(this);
}

TZOShellPage::~TZOShellPage() {
    if (FShell)
        FShell->PageRemoved(this);
    if (FFrame) {
        FFrame->FreeNotifier().Withdraw(this);
        delete FFrame;
    }
}

void TZOShellPage::SetCaption(const QString& ACaption) {
    FCaption = ACaption;
    if (FShell)
        FShell->CaptionChanged();
}

TZOServiceItem* TZOShellPage::Service() const { return static_cast<TZOServiceItem*>(FService.data()); }

void TZOShellPage::SetService(TZOServiceItem* AItem) { FService = AItem; }

void TZOShellPage::ServiceAdded(TZOServiceItem* AItem) {
    if (FSvcAdded)
        FSvcAdded(AItem);
}

void TZOShellPage::ServiceRemoved(TZOServiceItem* AItem) {
    if (FSvcRemoved)
        FSvcRemoved(AItem);
}

void TZOShellPage::Notification(QObject* AComponent, TZOOperation AOperation) {
    if (AOperation != opRemove || AComponent != FFrame)
        return;
    FFrame = nullptr;
    FCaption.clear();
    FSvcAdded = nullptr;
    FSvcRemoved = nullptr;
}
