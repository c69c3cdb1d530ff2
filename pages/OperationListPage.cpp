#include "pages/OperationListPage.h"

#include "ui_OperationListPage.h"

#include "pages/ExecutePage.h"
#include "pages/FocusRing.h"

#include "shell/ShellFrame.h"

#include "platform/ExceptionDisplay.h"
#include "platform/Fonts.h"
#include "platform/VisibleText.h"

TZOOperationListPage::TZOOperationListPage(TZOShellFrame* AShell, TZOServiceItem* AItem)
    : TZOServicePage(AShell, AItem), FUi(std::make_unique<Ui::OperationListPage>()) {
    FUi->setupUi(this);
    const QString family = QStringLiteral("Segoe UI");
    setFont(UiFont(family, 12));
    FUi->HeaderLabel->setFont(UiFont(family, 27));
    FUi->OperationsLabel->setFont(UiFont(family, 27));
    FUi->CategoryFontLabel->setFont(UiFont(family, 16));
    FUi->CodeFontLabel->setFont(UiFont(family, 12));
    FUi->HeaderLabel->setText(VisibleText(AItem->Name()));
    FUi->InfoLabel->setText(VisibleLines(AItem->Description()));
    FUi->ListBox->SetFonts(FUi->CodeFontLabel->font(), FUi->CategoryFontLabel->font());
    FUi->ListBox->SetSearchEdit(FUi->SearchEdit);
    FUi->ListBox->SetEmptyHint(QStringLiteral("No operation matches \"%1\"."));
    setFocusProxy(FUi->ListBox);
    new TZOFocusRing(this, {FUi->SearchEdit, FUi->ListBox});
    connect(FUi->ListBox, &TZOSearchList::SearchChanged, this, &TZOOperationListPage::UpdateView);
    connect(FUi->ListBox, &TZOSearchList::Chosen, this,
            [this] { GuardedCall(this, [this] { OperationSelected(); }); });
}

TZOOperationListPage::~TZOOperationListPage() = default;

TZOShellPage* TZOOperationListPage::Make(TZOShellFrame* AShell, TZOServiceItem* AItem) {
    auto* frame = new TZOOperationListPage(AShell, AItem);
    TZOShellPage* page = frame->Wrap(AItem->Name());
    frame->FTheming = TZOIdeTheming::ThemeComponent(
        frame, [frame](TZOIdeTheming* ATheming) { frame->IdeThemeChanged(ATheming); });
    connect(AItem, &TZOServiceItem::Renamed, frame, [frame, page = QPointer(page), AItem] {
        frame->FUi->HeaderLabel->setText(VisibleText(AItem->Name()));
        if (page)
            page->SetCaption(AItem->Name());
    });
    frame->UpdateView();
    return page;
}

TZOPageFrame::TPageMaker TZOOperationListPage::MakerAgain() {
    return [shell = Shell(), search = FUi->SearchEdit->text()](TZOServiceItem* AItem) {
        TZOShellPage* page = Make(shell, AItem);
        static_cast<TZOOperationListPage*>(page->Frame())->FUi->SearchEdit->setText(search);
        return page;
    };
}

void TZOOperationListPage::UpdateView() {
    UpdateLabelColors(FTheming);
    FOperations.clear();
    std::vector<TZOSearchList::TRow> rows;
    if (Service()) {
        const QString search = FUi->SearchEdit->text();
        for (const TZORestService::TOper& oper : Service()->TypeInfo()->Opers()) {
            if (!TZOSearchList::Matches(oper.Name, search))
                continue;
            FOperations.push_back(
                {&oper, oper.Name, TZOShellFrame::FormatDescription(oper.Request->Description())});
            rows.push_back({.Name = FOperations.back().Name, .Description = FOperations.back().FDescription});
        }
    }
    FUi->ListBox->SetRows(std::move(rows));
}

void TZOOperationListPage::OperationSelected() {
    const int index = FUi->ListBox->ItemIndex();
    if (index < 0 || index >= static_cast<int>(FOperations.size()))
        return;
    const TOperationItem& item = FOperations[static_cast<std::size_t>(index)];
    Shell()->NavigateAsync(TZOExecutePage::Make(Shell(), Service(), item.FOperation));
}

void TZOOperationListPage::DoServiceRemoved() {
    FOperations.clear();
    FUi->ListBox->SetRows({});
}

void TZOOperationListPage::UpdateLabelColors(TZOIdeTheming* ATheming) {
    const TColor gray = TZOShellFrame::GRAY_COLORS[ATheming->IsDarkTheme()];
    SetFontColor(FUi->InfoLabel, ATheming->GetSystemColor(gray));
}

void TZOOperationListPage::IdeThemeChanged(TZOIdeTheming* ATheming) {
    SetBackColor(this, ATheming->GetSystemColor(clWindow));
    FUi->ListBox->UpdateSearchEditColor(ATheming);
    UpdateLabelColors(ATheming);
}
