// What the shell shows: the top page, the navigation bar, the authentication panel, and their colours.
#include "shell/ShellFrame.h"

#include "ui_ShellFrame.h"

#include "shell/PageFrame.h"
#include "shell/ShellPage.h"

#include "platform/VisibleText.h"

namespace {

// Right of everything shown, left of the filler that keeps the row to the left.
void MoveToEnd(QBoxLayout* ALayout, QWidget* AWidget) {
    ALayout->removeWidget(AWidget);
    ALayout->insertWidget(ALayout->count() - 1, AWidget);
}

} // namespace

void TZOShellFrame::UpdatePagesShowing() {
    QWidget* last = nullptr;
    if (!FNavStack.isEmpty()) {
        if (QWidget* frame = FNavStack.last()->Frame()) {
            if (frame->parentWidget() != FUi->PagePanel)
                frame->setParent(FUi->PagePanel);
            FUi->PageLayout->addWidget(frame, 0, 0);
            frame->show();
            if (frame->isVisible())
                frame->setFocus();
            last = frame;
        }
        for (qsizetype i = 0; i + 1 < FNavStack.size(); ++i) {
            if (QWidget* frame = FNavStack[i]->Frame()) {
                frame->hide();
                last = frame;
            }
        }
    }
    if (last)
        last->raise();
    UpdateNavBar(FTheming);
}

void TZOShellFrame::UpdateNavBar(TZOIdeTheming* ATheming) {
    for (int position = 0; position < 4; ++position)
        UpdateNavLabel(ATheming, position);
    FUi->BackButton->setEnabled(FNavStack.size() > 1);
}

void TZOShellFrame::UpdateNavLabel(TZOIdeTheming* ATheming, int APosition) {
    TZOLinkLabel* const labels[] = {FUi->NavOne, FUi->NavTwo, FUi->NavThree, FUi->NavFour};
    QLabel* const separators[] = {nullptr, FUi->NavTwoSep, FUi->NavThreeSep, FUi->NavFourSep};
    TZOLinkLabel* label = labels[APosition];
    QLabel* separator = separators[APosition];
    if (APosition >= FNavStack.size()) {
        if (separator)
            separator->hide();
        label->hide();
        return;
    }
    const bool isDark = ATheming->IsDarkTheme();
    const bool isTop = APosition >= FNavStack.size() - 1;
    label->setText(VisibleText(FNavStack[APosition]->Caption()));
    label->SetLink(!isTop);
    SetFontColor(label, ATheming->GetSystemColor(isTop ? TColor(clWindowText) : LINK_COLORS[isDark]));
    if (separator) {
        SetFontColor(separator, ATheming->GetSystemColor(GRAY_COLORS[isDark]));
        MoveToEnd(FUi->NavLayout, separator);
        separator->show();
    }
    MoveToEnd(FUi->NavLayout, label);
    label->show();
}

void TZOShellFrame::UpdateOptions(TZOIdeTheming* ATheming, bool AShowOptions) {
    const TZOAuthState state = FNavStack.isEmpty() ? asHidden : FNavStack.last()->AuthState(AShowOptions);
    const bool isDark = ATheming->IsDarkTheme();
    FUi->AuthPanel->setVisible(state != asHidden);
    SetFontColor(FUi->AuthOptionsLabel, ATheming->GetSystemColor(LINK_COLORS[isDark]));
    if (state == asNotConfigured) {
        SetFontColor(FUi->AuthStatusLabel, QColor(255, 0, 0));
        FUi->AuthStatusLabel->setText(QStringLiteral("Not configured"));
    } else if (state == asConfigured) {
        SetFontColor(FUi->AuthStatusLabel, ATheming->GetSystemColor(GRAY_COLORS[isDark]));
        FUi->AuthStatusLabel->setText(QStringLiteral("Configured"));
    }
}

void TZOShellFrame::IdeThemeChanged(TZOIdeTheming* ATheming) {
    const bool isDark = ATheming->IsDarkTheme();
    const QColor face = ATheming->GetSystemColor(clBtnFace);
    SetBackColor(this, face);
    SetBackColor(FUi->PagePanel, face);
    // The bar stands out from the page area; on dark ground only a darker shade does so without glaring.
    SetBackColor(FUi->TopPanel,
                 isDark ? ATheming->Blend(face, ATheming->GetSystemColor(clWindow), 1) : QColor(0xD3D3D3));
    FUi->BackButton->setIcon(FToolImages[isDark]);
    UpdateNavBar(ATheming);
    UpdateOptions(ATheming, false);
}
