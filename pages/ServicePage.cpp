#include "pages/ServicePage.h"

#include "pages/AuthOptionstPage.h"

#include "shell/ShellFrame.h"

#include <vector>

namespace {

std::vector<QPointer<TZOShellPage>>& KeptPages() {
    static std::vector<QPointer<TZOShellPage>> pages;
    return pages;
}

} // namespace

TZOShellPage* KeepPage(std::unique_ptr<TZOShellPage> APage) {
    auto& pages = KeptPages();
    std::erase_if(pages, [](const auto& AKept) { return !AKept || AKept->Shell(); });
    return pages.emplace_back(APage.release());
}

void FreeKeptPages() {
    for (const auto& page : std::exchange(KeptPages(), {}))
        if (page && !page->Shell())
            delete page;
}

TZOServicePage::TZOServicePage(TZOShellFrame* AShell, TZOServiceItem* AService)
    : FBond(std::make_shared<TBond>(TBond{AShell, AService})) {
    // Pages that never came to the stack are not told by the shell.
    connect(AService, &QObject::destroyed, this, [this] { DoServiceRemoved(); });
}

void TZOServicePage::ServiceOptions() {
    if (Service())
        Shell()->NavigateAsync(TZOAuthOptionstPage::Make(Shell(), Service()));
}

TZOShellPage* TZOServicePage::Wrap(const QString& ACaption) {
    const auto authState = [bond = FBond, frame = QPointer(this)](bool AShowOptions) {
        if (!bond->Service)
            return asHidden;
        if (AShowOptions && frame)
            frame->ServiceOptions();
        else if (AShowOptions)
            bond->Shell->NavigateAsync(TZOAuthOptionstPage::Make(bond->Shell, bond->Service));
        return bond->Service && bond->Service->IsConfigured() ? asConfigured : asNotConfigured;
    };
    auto page = std::make_unique<TZOShellPage>(
        ACaption, this, TZOShellPage::TServiceProc(),
        [this](TZOServiceItem* AItem) { ServiceRemoved(AItem); }, authState);
    page->SetService(Service());
    return KeepPage(std::move(page));
}

void TZOServicePage::ServiceRemoved(TZOServiceItem* AItem) {
    if (AItem != Service())
        return;
    FBond->Service = nullptr;
    DoServiceRemoved();
    if (Shell()->GetNavStackCount() > 0)
        Shell()->NavigateAsync(Shell()->GetNavStack(0));
}
