#include "pages/Pages.h"

#include "pages/OperationListPage.h"
#include "pages/ServiceListPage.h"
#include "pages/ServicePage.h"

#include "shell/PageFactory.h"
#include "shell/ShellPage.h"

namespace {

class TPageFactory final : public IZOPageFactory {
public:
    TZOShellPage* MakeServiceList(TZOShellFrame* AShell) override { return TZOServiceListPage::Make(AShell); }
    TZOShellPage* MakeOperationList(TZOShellFrame* AShell, TZOServiceItem* AItem) override {
        return TZOOperationListPage::Make(AShell, AItem);
    }
    bool IsServiceList(const QWidget* AFrame) const override {
        return qobject_cast<const TZOServiceListPage*>(AFrame) != nullptr;
    }
    // Whoever asked for it may still be at work in it.
    void PageForgotten(TZOShellPage* APage) override { APage->deleteLater(); }
};

TPageFactory GFactory;

} // namespace

void StartPages() { SetPageFactory(&GFactory); }

void StopPages() {
    SetPageFactory(nullptr);
    FreeKeptPages();
}
