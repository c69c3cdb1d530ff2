// Keys and focus.
#include "jsoneditor/view/DataSource.h"
#include "jsoneditor/view/InplaceEditor.h"
#include "jsoneditor/view/RestView.h"
#include "platform/ExceptionDisplay.h"

#include <QApplication>
#include <QKeyEvent>

namespace {

struct TKey {
    int Key;
    Qt::KeyboardModifiers Shift;
};

/// The key as data sources and the map below know it.
TKey NormalKey(const QKeyEvent* AEvent) {
    TKey key{AEvent->key(), AEvent->modifiers() & ~Qt::KeypadModifier};
    if (key.Key == Qt::Key_Enter)
        key.Key = Qt::Key_Return;
    if (key.Key == Qt::Key_Backtab)
        key = {Qt::Key_Tab, key.Shift | Qt::ShiftModifier};
    return key;
}

/// With Ctrl or Alt, they turn the pages of the host.
bool IsPageKey(int AKey, Qt::KeyboardModifiers AShift) {
    return (AKey == Qt::Key_PageUp || AKey == Qt::Key_PageDown) &&
           !(AShift & (Qt::ControlModifier | Qt::AltModifier));
}

} // namespace

bool TZORestView::ClaimKey(QKeyEvent* AEvent) {
    // A new key begins here: an event at the address of an old one is not the old one.
    FOfferedKey = nullptr;
    const TKey key = NormalKey(AEvent);
    const bool control = key.Shift.testFlag(Qt::ControlModifier);
    // Ctrl+Enter is the host's, where it has a shortcut on it.
    const bool own = IsPageKey(key.Key, key.Shift) || key.Key == Qt::Key_Up || key.Key == Qt::Key_Down ||
                     key.Key == Qt::Key_Tab || (key.Key == Qt::Key_Return && !control) ||
                     key.Key == Qt::Key_Escape ||
                     (control && (key.Key == Qt::Key_Home || key.Key == Qt::Key_End)) ||
                     (key.Key == Qt::Key_F10 && key.Shift == Qt::ShiftModifier);
    if (!own && !(FDataSource && FDataSource->WantsKey(key.Key, key.Shift)))
        return false;
    AEvent->accept();
    return true;
}

bool TZORestView::OfferKey(QKeyEvent* AEvent) {
    // What the editor has offered and not used travels on to its parent, which is the view.
    if (FOfferedKey == AEvent)
        return false;
    TKey key = NormalKey(AEvent);
    const bool done = GuardedCall(this, [&] { KeyDown(key.Key, key.Shift); });
    const bool consumed = !done || key.Key == 0;
    FOfferedKey = consumed ? nullptr : AEvent;
    return consumed;
}

void TZORestView::keyReleaseEvent(QKeyEvent* AEvent) {
    FOfferedKey = nullptr;
    QWidget::keyReleaseEvent(AEvent);
}

void TZORestView::KeyDown(int& AKey, Qt::KeyboardModifiers AShift) {
    if (FDataSource)
        FDataSource->KeyDown(AKey, AShift);
    const bool control = AShift.testFlag(Qt::ControlModifier);
    switch (AKey) {
    case Qt::Key_Home:
        KeyToRow(AKey, control ? FRows.GetFirst() : nullptr);
        break;
    case Qt::Key_End:
        KeyToRow(AKey, control ? FRows.GetLast() : nullptr);
        break;
    case Qt::Key_Up:
        KeyToRow(AKey, FSelected ? FSelected->Prev() : nullptr);
        break;
    case Qt::Key_Down:
        KeyToRow(AKey, FSelected ? FSelected->Next() : nullptr);
        break;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        KeyToRow(AKey, IsPageKey(AKey, AShift) ? RowAPageAway(AKey == Qt::Key_PageDown) : nullptr);
        break;
    case Qt::Key_Tab:
        KeyTab(AKey, AShift.testFlag(Qt::ShiftModifier));
        break;
    case Qt::Key_F10:
        // The Menu key comes as an event of its own; where Shift+F10 does not, it means the same.
        if (AShift == Qt::ShiftModifier) {
            AKey = 0;
            ShowRowMenu();
        }
        break;
    case Qt::Key_Return:
        if (TryCloseEditor(true))
            AKey = 0;
        break;
    case Qt::Key_Escape:
        CancelEditing();
        AKey = 0;
        break;
    default:
        break;
    }
}

void TZORestView::KeyToRow(int& AKey, TZOViewRow* ATarget) {
    if (!ATarget)
        return;
    AKey = 0;
    MoveSelection(ATarget, seDefaultChunk);
}

TZOViewRow* TZORestView::RowAPageAway(bool ADown) const {
    if (!FSelected || FRowHeight <= 0)
        return nullptr;
    // One row of the old page stays in sight.
    const int height = FAutoSize ? ExposedRect().height() : ClientRect().height();
    const int page = qMax(1, height / FRowHeight - 1);
    const int index = IndexOfRow(FSelected);
    const int target = qBound(0, ADown ? index + page : index - page, FRows.GetCount() - 1);
    return target == index ? nullptr : RowAt(target);
}

void TZORestView::KeyTab(int& AKey, bool ABackwards) {
    if (!FSelected)
        return;
    AKey = 0;
    const TZOViewRowLayout* layout = FSelected->Layout();
    if (!layout) {
        MoveSelection(FSelected, seHide);
        return;
    }
    TZORowChunk* chunk = nullptr;
    const int current = FEditor->ChunkId();
    const bool inRow = EditorShown() && (ABackwards ? layout->TryGetPrevEditable(current, chunk)
                                                    : layout->TryGetNextEditable(current, chunk));
    TZOViewRow* beyond = ABackwards ? FSelected->Prev() : FSelected->Next();
    if (inRow)
        MoveSelection(FSelected, ABackwards ? sePrevChunk : seNextChunk);
    else if (beyond)
        MoveSelection(beyond, ABackwards ? seLastChunk : seFirstChunk);
    else
        // Closing the editor is how an edit is applied: it opens again where it was.
        MoveSelection(FSelected, EditorShown() ? seDefaultChunk : seNoChange);
}

// The base class repaints the whole widget whenever the focus comes or goes, which it does between the view
// and its editors with each row that is selected. What looks different is repainted by ActiveStateChanged.
void TZORestView::focusOutEvent(QFocusEvent*) {}

void TZORestView::focusInEvent(QFocusEvent*) {
    if (EditorShown() && !FEditor->FHiding)
        FEditor->SetFocus();
}

bool TZORestView::Focused() const { return hasFocus() || FEditor->hasFocus() || FHover->hasFocus(); }

void TZORestView::FocusChanged() {
    const bool focused = Focused();
    const QWidget* holder = QApplication::focusWidget();
    // The whole window went to the back: within it nothing has changed.
    if (!focused && !isActiveWindow() && (!holder || holder->window() != window()))
        return;
    if (FActive == focused)
        return;
    FActive = focused;
    ActiveStateChanged();
}
