#include "pages/FindBar.h"

#include "jsoneditor/view/RestView.h"

#include "shell/ShellFrame.h"

#include "platform/ExceptionDisplay.h"
#include "platform/IdeTheming.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPainter>
#include <QToolButton>

namespace {

constexpr int EditWidth = 240;

QString NumberText(int ANumber) { return QLocale(QLocale::English).toString(ANumber); }

} // namespace

TZOFindBar::TZOFindBar(QWidget* AParent) : QWidget(AParent), FEdit(new QLineEdit), FCountLabel(new QLabel) {
    setAutoFillBackground(true);
    FEdit->setObjectName(QStringLiteral("FindEdit"));
    FEdit->setPlaceholderText(QStringLiteral("Find in request and response"));
    FEdit->setAccessibleName(QStringLiteral("Find"));
    FEdit->setFixedWidth(EditWidth);
    FEdit->installEventFilter(this);
    FCountLabel->setObjectName(QStringLiteral("FindCountLabel"));
    FCountLabel->setTextFormat(Qt::PlainText);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(32, 7, 32, 6);
    layout->setSpacing(4);
    layout->addWidget(FEdit);
    QToolButton* previous = NewButton(Qt::UpArrow, QStringLiteral("Previous (Shift+F3)"));
    QToolButton* next = NewButton(Qt::DownArrow, QStringLiteral("Next (F3)"));
    layout->addSpacing(8);
    layout->addWidget(FCountLabel);
    layout->addStretch();
    auto* close = NewButton(Qt::NoArrow, QStringLiteral("Close (Escape)"));
    close->setText(QStringLiteral("\u00d7"));
    connect(FEdit, &QLineEdit::textChanged, this, [this] { GuardedCall(this, [this] { Search(); }); });
    connect(previous, &QToolButton::clicked, this,
            [this] { GuardedCall(this, [this] { GoPrevious(FFromView); }); });
    connect(next, &QToolButton::clicked, this, [this] { GuardedCall(this, [this] { GoNext(FFromView); }); });
    connect(close, &QToolButton::clicked, this, [this] { GuardedCall(this, [this] { Close(); }); });
    connect(&FFinder, &TZOTextFinder::Changed, this, [this] {
        UpdateMarks();
        UpdateCount();
    });
    connect(&FFinder, &TZOTextFinder::Moved, this, [this] { GuardedCall(this, [this] { ShowCurrent(); }); });
}

QToolButton* TZOFindBar::NewButton(Qt::ArrowType AArrow, const QString& AName) {
    auto* button = new QToolButton;
    button->setArrowType(AArrow);
    button->setAutoRaise(true);
    button->setFixedSize(24, 24);
    button->setFocusPolicy(Qt::TabFocus);
    button->setToolTip(AName);
    button->setAccessibleName(AName);
    layout()->addWidget(button);
    return button;
}

void TZOFindBar::SetViews(const QList<TZORestView*>& AViews) {
    FViews = AViews;
    FFinder.SetViews(AViews);
}

void TZOFindBar::UpdateColors(const TZOIdeTheming* ATheming) {
    const bool isDark = ATheming->IsDarkTheme();
    SetBackColor(this, ATheming->GetSystemColor(clBtnFace));
    SetFontColor(FCountLabel, ATheming->GetSystemColor(TZOShellFrame::GRAY_COLORS[isDark]));
}

void TZOFindBar::Open(TZORestView* AView) {
    FFromView = AView;
    const bool wasHidden = isHidden();
    show();
    FEdit->setFocus();
    FEdit->selectAll();
    if (wasHidden)
        Search();
}

void TZOFindBar::Close() {
    TZORestView* view = FFinder.CurrentView();
    TZOViewRow* row = FFinder.CurrentRow();
    const bool hadFocus = isAncestorOf(window()->focusWidget());
    hide();
    FFinder.Stop();
    if (!hadFocus)
        return;
    (view ? view : FFromView)->setFocus();
    if (row && view->TryCloseEditor(true))
        view->SelectRow(row, seHide);
}

bool TZOFindBar::Reopen(TZORestView* AView) {
    if (!isHidden())
        return false;
    if (FEdit->text().isEmpty()) {
        Open(AView);
        return true;
    }
    FFromView = AView;
    show();
    Search();
    return false;
}

void TZOFindBar::GoNext(TZORestView* AView) {
    if (!Reopen(AView))
        FFinder.GoNext();
}

void TZOFindBar::GoPrevious(TZORestView* AView) {
    if (!Reopen(AView))
        FFinder.GoPrevious();
}

void TZOFindBar::Search() {
    // A longer or shorter text is looked for from where the user is now.
    TZORestView* view = FFinder.CurrentView() ? FFinder.CurrentView() : FFromView;
    TZOViewRow* row = FFinder.CurrentView() ? FFinder.CurrentRow() : FFromView->Selected();
    FFinder.Start(FEdit->text(), view, row);
}

void TZOFindBar::ShowCurrent() {
    UpdateMarks();
    FFinder.CurrentView()->ScrollTo(FFinder.CurrentRow());
}

void TZOFindBar::UpdateMarks() {
    for (TZORestView* view : FViews)
        view->SetMarks(FFinder.Text(), view == FFinder.CurrentView() ? FFinder.CurrentRow() : nullptr);
}

void TZOFindBar::UpdateCount() {
    const QString count = NumberText(FFinder.Count());
    if (FFinder.Text().isEmpty())
        FCountLabel->clear();
    else if (!FFinder.IsDone())
        FCountLabel->setText(QStringLiteral("%1 so far").arg(count));
    else if (FFinder.Count() == 0)
        FCountLabel->setText(QStringLiteral("not found"));
    else
        FCountLabel->setText(QStringLiteral("%1 of %2").arg(NumberText(FFinder.Ordinal()), count));
}

void TZOFindBar::paintEvent(QPaintEvent* AEvent) {
    QWidget::paintEvent(AEvent);
    // What scrolls above it has the same ground.
    QPainter(this).fillRect(0, 0, width(), 1, palette().color(QPalette::Mid));
}

bool TZOFindBar::eventFilter(QObject* AObject, QEvent* AEvent) {
    if (AObject != FEdit || AEvent->type() != QEvent::KeyPress)
        return QWidget::eventFilter(AObject, AEvent);
    const auto* key = static_cast<QKeyEvent*>(AEvent);
    const bool isReturn = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
    if (key->key() == Qt::Key_Escape)
        GuardedCall(this, [this] { Close(); });
    else if (isReturn && key->modifiers().testFlag(Qt::ShiftModifier))
        GuardedCall(this, [this] { GoPrevious(FFromView); });
    else if (isReturn)
        GuardedCall(this, [this] { GoNext(FFromView); });
    else
        return QWidget::eventFilter(AObject, AEvent);
    return true;
}
