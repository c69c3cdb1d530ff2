#include "jsoneditor/view/InplaceEditor.h"

#include "jsoneditor/view/AccessibleView_p.h"
#include "jsoneditor/view/RestView.h"
#include "platform/ExceptionDisplay.h"
#include "platform/VisibleText.h"

#include <QContextMenuEvent>
#include <QFocusEvent>
#include <QGuiApplication>
#include <QInputMethod>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QScopedValueRollback>

#include <limits>

namespace {

// What a line edit without a frame keeps free on either side of its text.
constexpr int EditMargin = 2;
// The caret behind the last character stands in the gap between two chunks.
constexpr int CaretWidth = 2;

} // namespace

TZOInplaceEditor::TZOInplaceEditor(TZORestView* AView) : QLineEdit(AView), FView(AView) {
    hide();
    setFrame(false);
    setTextMargins(-EditMargin, 0, -EditMargin, 0);
    setAlignment(Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter);
    setMaxLength(std::numeric_limits<int>::max());
    // Tab never stops at an editor by itself: it is the view that decides where the editor stands.
    setFocusPolicy(Qt::ClickFocus);
    UpdateFont();
    connect(this, &QLineEdit::textChanged, this, &TZOInplaceEditor::TextEdited);
}

void TZOInplaceEditor::Show(TZOViewRow* ARow, int AChunkId) {
    if (FShowing)
        return;
    const QScopedValueRollback<bool> guard(FShowing, true);
    const bool moving = !IsShownAt(ARow, AChunkId);
    if (moving)
        EndComposition(false);
    FRow = ARow;
    FChunkId = AChunkId;
    QString shownText;
    QRect bounds;
    TZORowChunk* chunk = nullptr;
    if (const TZOViewRowLayout* layout = ARow->Layout();
        layout && layout->TryGetChunk(AChunkId, true, chunk)) {
        shownText = chunk->Text();
        bounds = chunk->Bounds().translated(layout->Bounds().topLeft()).adjusted(0, 0, CaretWidth, 0);
        // Text that runs out of sight scrolls in the editor, so that the caret stays in sight.
        const int right = FView->ClientRect().right();
        if (bounds.left() < right)
            bounds.setRight(qMin(bounds.right(), right));
    }
    if (moving && ARow->Layout())
        setAccessibleName(VisibleText(SpeechOf(*ARow->Layout()).Name));
    if (moving || (!FModified && !Composing())) {
        if (moving || text() != shownText)
            setText(shownText);
        if (moving)
            deselect();
        FModified = false;
    }
    setGeometry(bounds);
    show();
}

void TZOInplaceEditor::Hide() {
    if (FHiding)
        return;
    const QScopedValueRollback<bool> guard(FHiding, true);
    EndComposition(false);
    clear();
    FModified = false;
    // Hiding the control that has the focus would hand it on to whatever comes next.
    if (hasFocus())
        FView->setFocus();
    if (isVisible())
        FView->FUncovered += geometry();
    hide();
}

bool TZOInplaceEditor::IsShownAt(const TZOViewRow* ARow, int AChunkId) const {
    return !isHidden() && FRow == ARow && FChunkId == AChunkId;
}

void TZOInplaceEditor::SetFocus() {
    if (isVisible())
        setFocus();
}

void TZOInplaceEditor::UpdateFont() { setFont(FView->font()); }

void TZOInplaceEditor::TextEdited() {
    if (isHidden() || FHiding || FShowing)
        return;
    FModified = true;
    GuardedCall(FView, [this] { FView->EditorValueChanged(this); });
}

bool TZOInplaceEditor::event(QEvent* AEvent) {
    if (AEvent->type() == QEvent::ShortcutOverride) {
        if (FView->ClaimKey(static_cast<QKeyEvent*>(AEvent)))
            return true;
    } else if (AEvent->type() == QEvent::KeyPress) {
        // Before the base class, which takes Tab for moving the focus.
        auto* key = static_cast<QKeyEvent*>(AEvent);
        if (FView->OfferKey(key)) {
            key->accept();
            return true;
        }
        if (isHidden()) {
            key->ignore();
            return true;
        }
    }
    return QLineEdit::event(AEvent);
}

void TZOInplaceEditor::focusInEvent(QFocusEvent* AEvent) {
    QLineEdit::focusInEvent(AEvent);
    GuardedCall(FView, [this] { FView->EditorFocused(this); });
}

void TZOInplaceEditor::inputMethodEvent(QInputMethodEvent* AEvent) {
    const QString before = std::exchange(FPreedit, AEvent->preeditString());
    QLineEdit::inputMethodEvent(AEvent);
    // What is being composed pushes the rest of the row along like typed text.
    if (FPreedit != before && !FHiding && !FShowing && !isHidden())
        GuardedCall(FView, [this] { FView->EditorValueChanged(this); });
}

QString TZOInplaceEditor::ComposedText() const { return text().insert(cursorPosition(), FPreedit); }

void TZOInplaceEditor::EndComposition(bool AKeep) {
    if (!Composing())
        return;
    if (AKeep && hasFocus())
        QGuiApplication::inputMethod()->commit();
    // Most input methods have committed now; for the others it is done here.
    if (!Composing())
        return;
    QInputMethodEvent end;
    if (AKeep)
        end.setCommitString(FPreedit);
    inputMethodEvent(&end);
    if (hasFocus())
        QGuiApplication::inputMethod()->reset();
}

void TZOInplaceEditor::focusOutEvent(QFocusEvent* AEvent) {
    if (AEvent->reason() != Qt::PopupFocusReason)
        EndComposition(true);
    // The base class drops the selection for every other reason.
    QFocusEvent kept(QEvent::FocusOut, AEvent->reason() == Qt::PopupFocusReason
                                           ? Qt::PopupFocusReason
                                           : Qt::ActiveWindowFocusReason);
    QLineEdit::focusOutEvent(&kept);
}

void TZOInplaceEditor::contextMenuEvent(QContextMenuEvent* AEvent) {
    if (AEvent->reason() == QContextMenuEvent::Keyboard)
        FView->ShowRowMenu();
    else
        FView->ShowContextMenu(AEvent->globalPos());
    AEvent->accept();
}
