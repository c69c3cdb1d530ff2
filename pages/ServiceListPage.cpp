#include "pages/ServiceListPage.h"

#include "ui_ServiceListPage.h"

#include "pages/FocusRing.h"
#include "pages/OperationListPage.h"
#include "pages/ServicePage.h"

#include "shell/ServiceItem.h"
#include "shell/ShellFrame.h"
#include "shell/ShellPage.h"

#include "platform/ExceptionDisplay.h"
#include "platform/Fonts.h"

TZOServiceListPage::TZOServiceListPage(TZOShellFrame* AShell)
    : FShell(AShell),
      FUi(std::make_unique<Ui::ServiceListPage>()),
      FUserCat{QStringLiteral("Recent User Components")},
      FGeneralCat{QStringLiteral("ZO Bridgework Service Classes")} {
    FUi->setupUi(this);
    const QString family = QStringLiteral("Segoe UI");
    setFont(UiFont(family, 12));
    FUi->HeaderLabel->setFont(UiFont(family, 27));
    FUi->CategoryFontLabel->setFont(UiFont(family, 16));
    FUi->CodeFontLabel->setFont(UiFont(QStringLiteral("Courier New"), 13));
    FUi->ListBox->SetFonts(FUi->CodeFontLabel->font(), FUi->CategoryFontLabel->font());
    FUi->ListBox->SetSearchEdit(FUi->SearchEdit);
    FUi->ListBox->SetEmptyHint(QStringLiteral("No service matches \"%1\"."));
    setFocusProxy(FUi->ListBox);
    new TZOFocusRing(this, {FUi->SearchEdit, FUi->ListBox});
    connect(FUi->ListBox, &TZOSearchList::SearchChanged, this, &TZOServiceListPage::UpdateList);
    connect(FUi->ListBox, &TZOSearchList::Chosen, this,
            [this] { GuardedCall(this, [this] { ServiceSelected(); }); });
}

TZOServiceListPage::~TZOServiceListPage() = default;

TZOShellPage* TZOServiceListPage::Make(TZOShellFrame* AShell) {
    auto* frame = new TZOServiceListPage(AShell);
    const auto update = [frame](TZOServiceItem*) { frame->UpdateList(); };
    auto page = std::make_unique<TZOShellPage>(QStringLiteral("Services"), frame, update, update,
                                               [](bool) { return asHidden; });
    TZOIdeTheming::ThemeComponent(frame,
                                  [frame](TZOIdeTheming* ATheming) { frame->IdeThemeChanged(ATheming); });
    frame->UpdateList();
    return KeepPage(std::move(page));
}

void TZOServiceListPage::UpdateList() {
    const QString search = FUi->SearchEdit->text();
    std::vector<TZOServiceItem*> components;
    std::vector<TZOServiceItem*> classes;
    for (int i = 0; i < FShell->GetServiceCount(); ++i) {
        TZOServiceItem* item = FShell->GetServices(i);
        connect(item, &TZOServiceItem::Renamed, this, &TZOServiceListPage::UpdateList, Qt::UniqueConnection);
        if (TZOSearchList::Matches(item->Name(), search))
            (item->GetIsUserComp() ? components : classes).push_back(item);
    }
    FListed.clear();
    std::vector<TZOSearchList::TRow> rows;
    const auto addGroup = [&](const TCategory& ACategory, const std::vector<TZOServiceItem*>& AItems) {
        if (AItems.empty())
            return;
        FListed.push_back(nullptr);
        rows.push_back({.Name = ACategory.Name, .Description = {}, .IsCategory = true});
        for (TZOServiceItem* item : AItems) {
            FListed.push_back(item);
            rows.push_back({.Name = item->Name(), .Description = item->Description()});
        }
    };
    addGroup(FUserCat, components);
    addGroup(FGeneralCat, classes);
    FUi->ListBox->SetRows(std::move(rows));
}

void TZOServiceListPage::ServiceSelected() {
    const int index = FUi->ListBox->ItemIndex();
    if (index < 0 || index >= static_cast<int>(FListed.size()))
        return;
    if (TZOServiceItem* item = FListed[static_cast<std::size_t>(index)])
        FShell->NavigateAsync(TZOOperationListPage::Make(FShell, item));
}

void TZOServiceListPage::IdeThemeChanged(TZOIdeTheming* ATheming) {
    SetBackColor(this, ATheming->GetSystemColor(clWindow));
    FUi->ListBox->UpdateSearchEditColor(ATheming);
}
