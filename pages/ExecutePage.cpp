#include "pages/ExecutePage.h"

#include "ui_ExecutePage.h"

#include "pages/FocusRing.h"
#include "pages/PageRestView.h"

#include "shell/ShellFrame.h"
#include "shell/ShortcutsInfoDialog.h"

#include "jsoneditor/values/ObjectDataSource.h"
#include "jsoneditor/view/RestView.h"

#include "platform/Dialogs.h"
#include "platform/ExceptionDisplay.h"
#include "platform/Fonts.h"
#include "platform/VisibleText.h"

#include <QFile>
#include <QShortcut>

#include <iterator>

TZOExecutePage::TZOExecutePage(TZOShellFrame* AShell, TZOServiceItem* AItem, POper AOper)
    : TZOServicePage(AShell, AItem), FUi(std::make_unique<Ui::ExecutePage>()), FOperation(AOper) {
    FUi->setupUi(this);
    InitFonts();
    FUi->HeaderLabel->setText(VisibleText(AOper->Name));
    FUi->InfoLabel->setText(VisibleLines(TZOShellFrame::FormatDescription(AOper->Request->Description())));
    FReqView = SetupRestView(FUi->ReqPanel);
    FReqView->setAccessibleName(FUi->ReqLabel->text());
    FRespView = SetupRestView(FUi->RespPanel);
    FRespView->setAccessibleName(FUi->RespLabel->text());
    setFocusProxy(FReqView);
    FUi->FindBar->SetViews({FReqView, FRespView});
    FUi->FindBar->hide();
    InitTabOrder();
    InitHandlers();
    InitKeys();
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

void TZOExecutePage::InitTabOrder() {
    QWidget* const order[] = {FUi->ScrollBox,     FReqView,
                              FUi->HelpLabel,     FUi->CopyCurlLabel,
                              FUi->DownloadEdit,  FUi->DownloadSaveAsLabel,
                              FUi->ExecButton,    FUi->AuthOptionsButton,
                              FUi->CancelButton,  FUi->DetailsLabel,
                              FUi->CopyJsonLabel, FUi->SaveJsonLabel,
                              FUi->DetailsBox,    FRespView,
                              FUi->ShowFileLabel};
    for (std::size_t i = 1; i < std::size(order); ++i)
        setTabOrder(order[i - 1], order[i]);
}

void TZOExecutePage::InitKeys() {
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto* execute = new QShortcut(QKeySequence(Qt::CTRL | key), this);
        execute->setContext(Qt::WidgetWithChildrenShortcut);
        execute->setAutoRepeat(false);
        connect(execute, &QShortcut::activated, this, [this] {
            GuardedCall(this, [this] {
                if (FUi->ExecButton->isEnabled())
                    ExecButtonClick();
            });
        });
    }
    using TFind = void (TZOFindBar::*)(TZORestView*);
    const std::pair<QKeySequence, TFind> finding[] = {
        {QKeySequence(Qt::CTRL | Qt::Key_F), &TZOFindBar::Open},
        {QKeySequence(Qt::Key_F3), &TZOFindBar::GoNext},
        {QKeySequence(Qt::SHIFT | Qt::Key_F3), &TZOFindBar::GoPrevious}};
    for (const auto& [key, find] : finding) {
        auto* shortcut = new QShortcut(key, this);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, this,
                [this, find = find] { GuardedCall(this, [&] { (FUi->FindBar->*find)(ViewToFindIn()); }); });
    }
    new TZOFocusRing(this, {FUi->FindBar, FReqView, FUi->ButtonsPanel, FRespView});
}

TZORestView* TZOExecutePage::ViewToFindIn() const {
    // The answer is what is looked through, unless the user is at the request.
    return FReqView->Focused() || !FRespView->isVisible() ? FReqView : FRespView;
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
    connect(FUi->CopyCurlLabel, &TZOLinkLabel::Clicked, this, guarded([this] { CopyCurlLabelClick(); }));
    connect(FUi->DetailsLabel, &TZOLinkLabel::Clicked, this,
            guarded([this] { ShowDetails(FUi->DetailsBox->isHidden()); }));
    connect(FUi->CopyJsonLabel, &TZOLinkLabel::Clicked, this, guarded([this] { CopyJson(); }));
    connect(FUi->SaveJsonLabel, &TZOLinkLabel::Clicked, this, guarded([this] { SaveJson(); }));
}

TZORestView* TZOExecutePage::SetupRestView(QWidget* AParent) {
    auto* view = new TZOPageRestView(AParent);
    view->SetAutoSize(true);
    view->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed); // no share in what is left over
    view->SetOwnDataSource(true);
    AParent->layout()->addWidget(view);
    return view;
}

void TZOExecutePage::InitRequest() {
    FReqView->SetDataSource(nullptr);
    FRequest = std::make_unique<ZORequest>(Service()->Component(), FOperation->Request);
    FRequest->SetRecord(&FRecord);
    FRespView->SetDataSource(nullptr);
    FResponse = FOperation->Response ? std::make_unique<TZOValueHolder>(FOperation->Response, true) : nullptr;
    ShowRequest();
    FUi->DownloadPanel->setVisible(IsDownload());
    FUi->DownloadEdit->clear();
    FUi->CancelButton->hide();
    FUi->ProgressLabel->hide();
    ShowDetails(false);
}

void TZOExecutePage::ShowRequest() {
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
    ShowOutcome();
}

void TZOExecutePage::UpdateButtons() {
    const bool isConfigured = Service() && Service()->IsConfigured();
    FUi->ExecButton->setEnabled(isConfigured);
    FUi->AuthOptionsButton->setVisible(Service() && !isConfigured);
}

void TZOExecutePage::UpdateLabelColors(TZOIdeTheming* ATheming) {
    const bool isDark = ATheming->IsDarkTheme();
    for (QWidget* label : {FUi->InfoLabel, FUi->ProgressLabel, FUi->SummaryLabel})
        SetFontColor(label, ATheming->GetSystemColor(TZOShellFrame::GRAY_COLORS[isDark]));
    for (TZOLinkLabel* link : {FUi->HelpLabel, FUi->CopyCurlLabel, FUi->DownloadSaveAsLabel,
                               FUi->DetailsLabel, FUi->CopyJsonLabel, FUi->SaveJsonLabel, FUi->ShowFileLabel})
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
    FUi->FindBar->UpdateColors(ATheming);
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
