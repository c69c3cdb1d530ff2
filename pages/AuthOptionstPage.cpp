#include "pages/AuthOptionstPage.h"

#include "ui_AuthOptionstPage.h"

#include "shell/ShellFrame.h"

#include "runtime/service/RestService.h"

#include "platform/Dialogs.h"
#include "platform/ExceptionDisplay.h"
#include "platform/Fonts.h"
#include "platform/VisibleText.h"

#include <QCheckBox>
#include <QScopeGuard>
#include <QScopedValueRollback>

namespace {

// Red, or whatever the line stands on.
void SetLineColor(QWidget* ALine, bool AIsRed) {
    if (AIsRed)
        SetBackColor(ALine, QColor(255, 0, 0));
    ALine->setAutoFillBackground(AIsRed);
}

// Setting the same text again would take caret and undo history from whoever is typing it.
void ShowText(QLineEdit* AEdit, const QString& AText) {
    if (AEdit->text() != AText)
        AEdit->setText(AText);
}

} // namespace

TZOAuthOptionstPage::TZOAuthOptionstPage(TZOShellFrame* AShell, TZOServiceItem* AItem)
    : TZOServicePage(AShell, AItem), FUi(std::make_unique<Ui::AuthOptionstPage>()) {
    FUi->setupUi(this);
    InitFonts();
    InitHandlers();
    setFocusProxy(FUi->ScrollBox);
}

TZOAuthOptionstPage::~TZOAuthOptionstPage() = default;

TZOPageFrame::TPageMaker TZOAuthOptionstPage::MakerAgain() {
    return [shell = Shell()](TZOServiceItem* AItem) { return Make(shell, AItem); };
}

TZOShellPage* TZOAuthOptionstPage::Make(TZOShellFrame* AShell, TZOServiceItem* AItem) {
    auto* frame = new TZOAuthOptionstPage(AShell, AItem);
    TZOShellPage* page = frame->Wrap(QStringLiteral("Service options"));
    frame->FTheming = TZOIdeTheming::ThemeComponent(
        frame, [frame](TZOIdeTheming* ATheming) { frame->IdeThemeChanged(ATheming); });
    frame->InitScopeCheckBoxes();
    frame->UpdateView();
    connect(AItem->Component(), &TZORestService::OptionsReported, frame,
            [frame] { GuardedCall(frame, [frame] { frame->UpdateView(); }); });
    return page;
}

void TZOAuthOptionstPage::InitFonts() {
    const QString family = QStringLiteral("Segoe UI");
    setFont(UiFont(family, 12));
    FUi->HeaderLabel->setFont(UiFont(family, 27));
    for (QLabel* header : {FUi->Label1, FUi->ScopesHeader, FUi->ResetHeader})
        header->setFont(UiFont(family, 16));
}

void TZOAuthOptionstPage::InitHandlers() {
    const auto guarded = [this](auto AHandler) {
        return [this, AHandler] { GuardedCall(this, [&] { AHandler(); }); };
    };
    connect(FUi->ApiKeyHeader, &TZOLinkLabel::Clicked, this, guarded([this] { ApiKeyHeaderClick(); }));
    const std::pair<QLineEdit*, void (TZORestService::*)(const QString&)> edits[] = {
        {FUi->ClientIdEdit, &TZORestService::SetClientId},
        {FUi->SecretEdit, &TZORestService::SetSecret},
        {FUi->RedirectUrlEdit, &TZORestService::SetRedirectUrl}};
    for (const auto& [edit, set] : edits)
        connect(edit, &QLineEdit::textChanged, this,
                guarded([this, edit = edit, set = set] { EditChange(edit, set); }));
    connect(FUi->DefScopesButton, &QPushButton::clicked, this, guarded([this] { DefScopesButtonClick(); }));
    connect(FUi->ResetButton, &QPushButton::clicked, this, guarded([this] { ResetButtonClick(); }));
}

void TZOAuthOptionstPage::InitScopeCheckBoxes() {
    for (const TZORestService::TScope& scope : Service()->TypeInfo()->Scopes()) {
        // An ampersand is the scope's own, not the mark of a shortcut.
        QString caption = VisibleText(scope.Name);
        caption.replace(u'&', QLatin1String("&&"));
        auto* box = new QCheckBox(FUi->ScopesPanel);
        box->setText(QLatin1String("  ") + caption +
                     (scope.Default ? QLatin1String(" (default)") : QLatin1String()));
        connect(box, &QCheckBox::clicked, this,
                [this, box] { GuardedCall(this, [&] { ScopeCheckBoxesClick(box); }); });
        const int end = FUi->ScopesPanelLayout->indexOf(FUi->DefScopesPanel);
        FUi->ScopesPanelLayout->insertWidget(end, box);
        FUi->ScopesPanelLayout->insertSpacing(end + 1, 10);
        FScopes.append(box);
    }
    QWidget* previous = FUi->RedirectUrlEdit;
    for (QCheckBox* box : FScopes) {
        setTabOrder(previous, box);
        previous = box;
    }
}

void TZOAuthOptionstPage::UpdateView() {
    if (!Service())
        return;
    UpdateLabelColors(FTheming);
    const QScopedValueRollback updating(FUpdating, true);
    const TZORestService* service = Service()->Component();
    const bool hasKey = !service->GetApiKey().isEmpty();
    FUi->ApiKeyHeader->setText(hasKey ? QStringLiteral("API Key:") : QStringLiteral("Use API Key..."));
    FUi->ApiKeyLabel->setText(service->GetApiKey());
    ShowText(FUi->ClientIdEdit, service->GetClientId());
    ShowText(FUi->SecretEdit, service->GetSecret());
    ShowText(FUi->RedirectUrlEdit, service->GetRedirectUrl());
    UpdateScopes(service, hasKey);
    for (QWidget* control :
         {static_cast<QWidget*>(FUi->ClientIdEdit), static_cast<QWidget*>(FUi->SecretEdit),
          static_cast<QWidget*>(FUi->RedirectUrlEdit), static_cast<QWidget*>(FUi->DefScopesButton),
          static_cast<QWidget*>(FUi->ResetButton)})
        control->setEnabled(!hasKey);
    UpdateValidation();
}

void TZOAuthOptionstPage::UpdateScopes(const TZORestService* AService, bool AHasKey) {
    const auto& table = Service()->TypeInfo()->Scopes();
    for (qsizetype i = 0; i < FScopes.size(); ++i) {
        FScopes[i]->setChecked(AService->Scopes().contains(table[static_cast<std::size_t>(i)].Name));
        FScopes[i]->setEnabled(!AHasKey);
    }
}

void TZOAuthOptionstPage::UpdateValidation() {
    const bool hasKey = !FUi->ApiKeyLabel->text().isEmpty();
    SetLineColor(FUi->ClientIdPanel, !hasKey && FUi->ClientIdEdit->text().isEmpty());
    SetLineColor(FUi->SecretPanel, !hasKey && FUi->SecretEdit->text().isEmpty());
    SetLineColor(FUi->RedirectUrlPanel, !hasKey && FUi->RedirectUrlEdit->text().isEmpty());
}

void TZOAuthOptionstPage::ServiceOptions() {}

void TZOAuthOptionstPage::DoServiceRemoved() { setEnabled(false); }

void TZOAuthOptionstPage::Modified() {
    if (FUpdating)
        return;
    // What cannot be stored is in use all the same, and seen.
    const auto update = qScopeGuard([this] { Shell()->UpdateOptions(FTheming, false); });
    Service()->OptionsModified();
}

void TZOAuthOptionstPage::ApiKeyHeaderClick() {
    if (!Service())
        return;
    const QPointer<TZOAuthOptionstPage> self(this);
    const auto key =
        Dialogs().InputQuery(this, QStringLiteral("API Key"), QStringLiteral("Please specify API Key"),
                             Service()->Component()->GetApiKey());
    // The service or the page may have gone while the user was asked.
    if (!key || !self || !Service())
        return;
    Service()->Component()->SetApiKey(*key);
    UpdateView();
    UpdateValidation();
    Modified();
}

void TZOAuthOptionstPage::EditChange(const QLineEdit* AEdit, void (TZORestService::*ASet)(const QString&)) {
    if (FUpdating || !Service())
        return;
    (Service()->Component()->*ASet)(AEdit->text());
    UpdateValidation();
    Modified();
}

void TZOAuthOptionstPage::ScopeCheckBoxesClick(const QCheckBox* ASender) {
    if (FUpdating || !Service())
        return;
    const auto index = static_cast<std::size_t>(FScopes.indexOf(ASender));
    const QString& name = Service()->TypeInfo()->Scopes()[index].Name;
    QStringList& scopes = Service()->Component()->Scopes();
    const qsizetype place = scopes.indexOf(name);
    if (ASender->isChecked() && place < 0)
        scopes.append(name);
    else if (!ASender->isChecked() && place >= 0)
        scopes.removeAt(place);
    Modified();
}

void TZOAuthOptionstPage::DefScopesButtonClick() {
    if (FUpdating || !Service())
        return;
    Service()->Component()->SetDefaultScopes();
    const auto update = qScopeGuard([this] { UpdateView(); });
    Service()->OptionsModified();
}

void TZOAuthOptionstPage::ResetButtonClick() {
    if (!Service())
        return;
    Service()->Component()->ResetToken();
    UpdateValidation();
    Modified();
}

void TZOAuthOptionstPage::UpdateLabelColors(TZOIdeTheming* ATheming) {
    const TColor link = TZOShellFrame::LINK_COLORS[ATheming->IsDarkTheme()];
    SetFontColor(FUi->ApiKeyHeader, ATheming->GetSystemColor(link));
}

void TZOAuthOptionstPage::IdeThemeChanged(TZOIdeTheming* ATheming) {
    SetBackColor(this, ATheming->GetSystemColor(clBtnFace));
    UpdateLabelColors(ATheming);
}
