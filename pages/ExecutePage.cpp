#include "pages/ExecutePage.h"

#include "ui_ExecutePage.h"

#include "pages/InfoDataSource_p.h"

#include "shell/ShellFrame.h"
#include "shell/ShortcutsInfoDialog.h"

#include "jsoneditor/values/ObjectDataSource.h"
#include "jsoneditor/view/RestView.h"

#include "platform/Dialogs.h"
#include "platform/ExceptionDisplay.h"
#include "platform/Fonts.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>

namespace {

void MoveToEnd(QBoxLayout* AStack, QWidget* APanel) {
    AStack->removeWidget(APanel);
    AStack->insertWidget(AStack->count() - 1, APanel); // above the filler
}

} // namespace

TZOExecutePage::TZOExecutePage(TZOShellFrame* AShell, TZOServiceItem* AItem, POper AOper)
    : TZOServicePage(AShell, AItem), FUi(std::make_unique<Ui::ExecutePage>()), FOperation(AOper) {
    FUi->setupUi(this);
    InitFonts();
    FUi->HeaderLabel->setText(AOper->Name);
    FUi->InfoLabel->setText(TZOShellFrame::FormatDescription(AOper->Request->Description()));
    FReqView = SetupRestView(FUi->ReqPanel);
    FReqView->setAccessibleName(FUi->ReqLabel->text());
    FRespView = SetupRestView(FUi->RespPanel);
    FRespView->setAccessibleName(FUi->RespLabel->text());
    setTabOrder(FUi->ScrollBox, FReqView);
    setTabOrder(FReqView, FUi->HelpLabel);
    setTabOrder(FUi->AuthOptionsButton, FRespView);
    setTabOrder(FRespView, FUi->ShowFileLabel);
    setFocusProxy(FReqView);
    InitHandlers();
    InitRequest();
}

TZOExecutePage::~TZOExecutePage() {
    // Their rows read the values that go now.
    FReqView->SetDataSource(nullptr);
    FRespView->SetDataSource(nullptr);
}

TZOShellPage* TZOExecutePage::Make(TZOShellFrame* AShell, TZOServiceItem* AItem, POper AOper) {
    auto* frame = new TZOExecutePage(AShell, AItem, AOper);
    TZOShellPage* page = frame->Wrap(AOper->Name);
    frame->FTheming = TZOIdeTheming::ThemeComponent(
        frame, [frame](TZOIdeTheming* ATheming) { frame->IdeThemeChanged(ATheming); });
    frame->UpdateView();
    return page;
}

void TZOExecutePage::InitFonts() {
    const QString family = QStringLiteral("Segoe UI");
    setFont(UiFont(family, 12));
    FUi->HeaderLabel->setFont(UiFont(family, 27));
    FUi->ReqLabel->setFont(UiFont(family, 16));
    FUi->RespLabel->setFont(UiFont(family, 16));
}

void TZOExecutePage::InitHandlers() {
    const auto guarded = [this](auto AHandler) {
        return [this, AHandler] { GuardedCall(this, [&] { AHandler(); }); };
    };
    connect(FUi->ExecButton, &QPushButton::clicked, this, guarded([this] { ExecButtonClick(); }));
    connect(FUi->AuthOptionsButton, &QPushButton::clicked, this, guarded([this] { ServiceOptions(); }));
    connect(FUi->DownloadSaveAsLabel, &TZOLinkLabel::Clicked, this,
            guarded([this] { DownloadSaveAs(true); }));
    connect(FUi->ShowFileLabel, &TZOLinkLabel::Clicked, this,
            guarded([this] { Dialogs().RevealFile(FResponseFilePath); }));
    connect(FUi->HelpLabel, &TZOLinkLabel::Clicked, this, guarded([this] { HelpLabelClick(); }));
}

TZORestView* TZOExecutePage::SetupRestView(QWidget* AParent) {
    auto* view = new TZORestView(AParent);
    view->SetAutoSize(true);
    view->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed); // no share in what is left over
    view->SetOwnDataSource(true);
    AParent->layout()->addWidget(view);
    return view;
}

void TZOExecutePage::InitRequest() {
    FReqView->SetDataSource(nullptr);
    FRequest = std::make_unique<ZORequest>(Service()->Component(), FOperation->Request);
    FRespView->SetDataSource(nullptr);
    FResponse = FOperation->Response ? std::make_unique<TZOValueHolder>(FOperation->Response, true) : nullptr;
    auto source = std::make_unique<TZOObjectDataSource>(FRequest->Type(), FRequest->Data(), false, true);
    source->OnGetValue = [this](TZOObjectDataSource*, const TZOTypeInfo* AType, bool AHasValue, const void*,
                                QString& AText) { RequestGetValue(AType, AHasValue, AText); };
    source->OnSetValue = [this](TZOObjectDataSource*, const TZOTypeInfo* AType, const QString& AText,
                                void* AValue,
                                bool& AHandled) { RequestSetValue(AType, AText, AValue, AHandled); };
    source->OnUploadDialog = [this](TZOObjectDataSource*, ZOUpload& AUpload, bool& AHandled) {
        RequestUploadDialog(AUpload, AHandled);
    };
    FReqView->SetDataSource(source.release());
    FUi->DownloadPanel->setVisible(IsDownload());
    FUi->DownloadEdit->clear();
}

bool TZOExecutePage::IsDownload() const { return FResponse && FResponse->Type()->Kind() == vkDownload; }

void TZOExecutePage::UpdateView() {
    UpdateLabelColors(FTheming);
    UpdateJsonColors(FTheming);
    UpdateButtons();
    if (!FExecuted) {
        FUi->RespPanel->hide();
        SetShowFileVisible(false);
        FRespView->SetDataSource(nullptr);
        return;
    }
    if (FUi->RespPanel->isHidden()) {
        MoveToEnd(FUi->StackLayout, FUi->RespPanel);
        FUi->RespPanel->show();
    }
    ShowOutcome();
}

void TZOExecutePage::ShowOutcome() {
    if (!FErrorMessage.isEmpty()) {
        ShowInfo(FErrorMessage, true);
        SetShowFileVisible(false);
    } else if (!IsDownload() && FResponse && FResponse->HasValue()) {
        FRespView->SetDataSource(new TZOObjectDataSource(FResponse.get(), false, false));
        SetShowFileVisible(false);
    } else if (!FResponseFilePath.isEmpty()) {
        ShowInfo({QStringLiteral("File downloaded to:"),
                  QStringLiteral("%1 (%2 bytes)").arg(FResponseFilePath, QString::number(FResponseFileSize))},
                 false);
        MoveToEnd(FUi->StackLayout, FUi->ShowFilePanel);
        SetShowFileVisible(true);
    } else {
        ShowInfo({QStringLiteral("Ok"), QStringLiteral("No response data")}, false);
        SetShowFileVisible(false);
    }
}

void TZOExecutePage::ScrollToResponse() {
    // Sizes are right only when the layouts have done what the new rows asked for.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    const int half = std::min(FUi->RespPanel->height(), FUi->ScrollBox->viewport()->height() / 2) / 2;
    FUi->ScrollBox->ensureVisible(0, FUi->RespPanel->y() + half, 0, half);
}

void TZOExecutePage::ShowInfo(const QStringList& ALines, bool AIsError) {
    FRespView->SetDataSource(new TInfoDataSource(AIsError ? ctError : ctNormal, ALines));
}

void TZOExecutePage::SetShowFileVisible(bool AIsVisible) {
    FUi->ShowFilePanel->setVisible(AIsVisible);
    FUi->ShowFileLabel->setVisible(AIsVisible);
}

void TZOExecutePage::UpdateButtons() {
    const bool isConfigured = Service() && Service()->IsConfigured();
    FUi->ExecButton->setEnabled(isConfigured);
    FUi->AuthOptionsButton->setVisible(Service() && !isConfigured);
}

void TZOExecutePage::UpdateLabelColors(TZOIdeTheming* ATheming) {
    const bool isDark = ATheming->IsDarkTheme();
    SetFontColor(FUi->InfoLabel, ATheming->GetSystemColor(TZOShellFrame::GRAY_COLORS[isDark]));
    for (TZOLinkLabel* link : {FUi->HelpLabel, FUi->DownloadSaveAsLabel, FUi->ShowFileLabel})
        SetFontColor(link, ATheming->GetSystemColor(TZOShellFrame::LINK_COLORS[isDark]));
}

void TZOExecutePage::UpdateJsonColors(TZOIdeTheming* ATheming) {
    const bool isDark = ATheming->IsDarkTheme();
    for (TZORestView* view : {FReqView, FRespView}) {
        view->SetColor(ATheming->GetSystemColor(clWindow));
        view->SetFontColor(ATheming->GetSystemColor(clWindowText));
        view->SetSelectedColor(ATheming->Blend(view->Color(), view->FontColor(), 3));
        view->SetGrayColor(ATheming->GetSystemColor(TZOShellFrame::GRAY_COLORS[isDark]));
        view->SetSymbolColor(ATheming->GetSystemColor(TZOShellFrame::LINK_COLORS[isDark]));
        view->SetErrorColor(QColor(255, 0, 0));
    }
}

void TZOExecutePage::IdeThemeChanged(TZOIdeTheming* ATheming) {
    SetBackColor(this, ATheming->GetSystemColor(clBtnFace));
    UpdateLabelColors(ATheming);
    UpdateJsonColors(ATheming);
}

void TZOExecutePage::showEvent(QShowEvent* AEvent) {
    TZOServicePage::showEvent(AEvent);
    // The options may have changed on the page that was on top of this one.
    UpdateButtons();
}

void TZOExecutePage::ExecButtonClick() {
    if (FReqView->TryCloseEditor(true))
        Execute();
}

void TZOExecutePage::ServiceOptions() {
    if (FReqView->TryCloseEditor(true))
        TZOServicePage::ServiceOptions();
}

void TZOExecutePage::HelpLabelClick() {
    TZOShortcutsInfoDialog dialog(window());
    dialog.exec();
}

void TZOExecutePage::DoServiceRemoved() {
    FReqView->SetDataSource(nullptr);
    FRespView->SetDataSource(nullptr);
    FRequest.reset();
    FResponse.reset();
    FOperation = nullptr;
    UpdateButtons();
}
