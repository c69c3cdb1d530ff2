#include "shell/ShellFrame.h"

#include "ui_ShellFrame.h"

#include "shell/PageFactory.h"
#include "shell/PageFrame.h"
#include "shell/ServiceItem.h"
#include "shell/ShellPage.h"
#include "shell/ToolImages.h"

#include "platform/ExceptionDisplay.h"
#include "platform/Exceptions.h"
#include "platform/Fonts.h"
#include "platform/Registry.h"

#include <QCoreApplication>
#include <QEvent>

#include <algorithm>
#include <utility>

namespace {

QEvent::Type NavigationEvent() {
    static const int type = QEvent::registerEventType();
    return static_cast<QEvent::Type>(type);
}

[[noreturn]] void RaiseRange(int AIndex) {
    throw EListError(QStringLiteral("List index out of bounds (%1)").arg(AIndex));
}

} // namespace

TZOShellFrame::TZOShellFrame(QWidget* AOwner) : QWidget(AOwner), FUi(std::make_unique<Ui::ShellFrame>()) {
    FUi->setupUi(this);
    InitComponents();
    InitServiceList();
    UpdateNavBar(nullptr);
    FTheming =
        TZOIdeTheming::ThemeComponent(this, [this](TZOIdeTheming* ATheming) { IdeThemeChanged(ATheming); });
    NavigateAsync(PageFactory().MakeServiceList(this));
}

TZOShellFrame::~TZOShellFrame() {
    try {
        SetNavTo(nullptr);
        SaveTokens();
    } catch (const std::exception& e) {
        TRegistry::Report(ExceptionMessage(e));
    }
    ClearPages();
    FServices.clear();
}

void TZOShellFrame::InitComponents() {
    FToolImages = {BackImage(false), BackImage(true)};
    setFont(UiFont(QStringLiteral("Segoe UI"), 12));
    FUi->PagePanel->setFont(UiFont(QStringLiteral("Tahoma"), 13));
    QFont link = font();
    link.setUnderline(true);
    FUi->AuthOptionsLabel->setFont(link);
    // Links keep room for their focus frame; the text below ends in line with the link's.
    FUi->AuthStatusLabel->setContentsMargins(FUi->AuthOptionsLabel->contentsMargins());
    FUi->LeftToolBar->layout()->setContentsMargins(0, 0, 0, 0);
    FUi->LeftToolBar->layout()->setSpacing(0);
    connect(FUi->BackButton, &QToolButton::clicked, this,
            [this] { GuardedCall(this, [this] { BackButtonClick(); }); });
    for (TZOLinkLabel* label : {FUi->NavOne, FUi->NavTwo, FUi->NavThree, FUi->NavFour})
        connect(label, &TZOLinkLabel::Clicked, this,
                [this, label] { GuardedCall(this, [this, label] { NavLabelClick(label); }); });
    connect(FUi->AuthOptionsLabel, &TZOLinkLabel::Clicked, this,
            [this] { GuardedCall(this, [this] { AuthOptionsLabelClick(); }); });
}

void TZOShellFrame::SetNavTo(TZOShellPage* APage) {
    const QPointer<TZOShellPage> before = std::exchange(FNavTo, APage);
    if (before && before != APage && !before->Shell())
        PageFactory().PageForgotten(before);
}

void TZOShellFrame::NavigateAsync(TZOShellPage* APage) {
    SetNavTo(APage);
    // Before there is a window the request waits; showEvent repeats it.
    if (testAttribute(Qt::WA_WState_Created))
        QCoreApplication::postEvent(this, new QEvent(NavigationEvent()));
}

void TZOShellFrame::showEvent(QShowEvent* AEvent) {
    QWidget::showEvent(AEvent);
    if (FNavTo)
        NavigateAsync(FNavTo);
}

void TZOShellFrame::customEvent(QEvent* AEvent) {
    QWidget::customEvent(AEvent);
    if (AEvent->type() == NavigationEvent())
        GuardedCall(this, [this] { ExecNavTask(); });
}

void TZOShellFrame::ExecNavTask() {
    if (!FNavTo || FIsBusy)
        return;
    TZOShellPage* page = FNavTo;
    FNavTo = nullptr;
    const qsizetype index = FNavStack.indexOf(page);
    if (index < 0) {
        page->FShell = this;
        FNavStack.append(page);
    } else {
        while (FNavStack.size() > index + 1)
            delete FNavStack.last();
    }
    UpdatePagesShowing();
    UpdateOptions(FTheming, false);
}

void TZOShellFrame::SetBusy(bool AIsBusy) {
    FIsBusy = AIsBusy;
    if (AIsBusy)
        return;
    // The page is still at work with its answer: what was held back comes after it.
    for (auto& call : std::exchange(FHeldCalls, {}))
        QMetaObject::invokeMethod(
            this, [this, call = std::move(call)] { GuardedCall(this, call); }, Qt::QueuedConnection);
    if (FNavTo)
        NavigateAsync(FNavTo);
}

bool TZOShellFrame::HoldCall(std::function<void()> ACall) {
    if (FIsBusy)
        FHeldCalls.push_back(std::move(ACall));
    return FIsBusy;
}

void TZOShellFrame::GoBackAsync() {
    if (FNavStack.size() > 1)
        NavigateAsync(FNavStack[FNavStack.size() - 2]);
}

void TZOShellFrame::ServiceOptionsAsync() {
    if (!FNavStack.isEmpty())
        FNavStack.last()->AuthState(true);
}

void TZOShellFrame::BackButtonClick() {
    if (!FNavStack.isEmpty())
        GoBackAsync();
}

void TZOShellFrame::NavLabelClick(const TZOLinkLabel* ASender) {
    const int position = ASender == FUi->NavOne ? 0 : ASender == FUi->NavTwo ? 1 : 2;
    if (position < FNavStack.size())
        NavigateAsync(FNavStack[position]);
}

void TZOShellFrame::AuthOptionsLabelClick() {
    if (!FNavStack.isEmpty())
        UpdateOptions(FTheming, true);
}

void TZOShellFrame::PopToServiceList() {
    while (!FNavStack.isEmpty() && !PageFactory().IsServiceList(FNavStack.last()->Frame()))
        delete FNavStack.last();
}

void TZOShellFrame::ShowServiceList() {
    if (HoldCall([this] { ShowServiceList(); }))
        return;
    PopToServiceList();
    if (FNavStack.isEmpty())
        NavigateAsync(PageFactory().MakeServiceList(this));
}

void TZOShellFrame::PageRemoved(TZOShellPage* APage) {
    FNavStack.removeOne(APage);
    if (FNavTo == APage)
        FNavTo = nullptr;
    APage->FShell = nullptr;
    UpdatePagesShowing();
}

void TZOShellFrame::ClearPages() {
    while (!FNavStack.isEmpty())
        delete FNavStack.last();
}

TZOShellPage* TZOShellFrame::GetNavStack(int AIndex) const {
    if (AIndex < 0 || AIndex >= FNavStack.size())
        RaiseRange(AIndex);
    return FNavStack[AIndex];
}

TZOShellPage* TZOShellFrame::GetNavStackTop() const {
    return FNavStack.isEmpty() ? nullptr : FNavStack.last();
}

TZOServiceItem* TZOShellFrame::GetServices(int AIndex) const {
    if (AIndex < 0 || AIndex >= GetServiceCount())
        RaiseRange(AIndex);
    return FServices[static_cast<size_t>(AIndex)].get();
}

QString TZOShellFrame::FormatDescription(const QString& AText) {
    return AText.isEmpty() || AText.endsWith(u'.') ? AText : AText + u'.';
}
