// Selection, the two in-place editors, and what a host's menus ask of the focused one.
#include "jsoneditor/view/AccessibleView_p.h"
#include "jsoneditor/view/DataSource.h"
#include "jsoneditor/view/InplaceEditor.h"
#include "jsoneditor/view/RestView.h"
#include "platform/ExceptionDisplay.h"

#include <QApplication>
#include <QClipboard>
#include <QCursor>
#include <QMimeData>
#include <QMouseEvent>

void TZORestView::SelectRow(TZOViewRow* ARow, TZOShowEditor AShowEditor) {
    Updating([&] {
        if (ARow != FEditor->Row())
            CancelEditing();
        for (const TZOViewRow* row : {FSelected, ARow}) {
            if (row && row->Layout())
                update(row->Layout()->Bounds());
        }
        FSelected = ARow;
        FEditorTask = AShowEditor;
        if (ARow)
            ScrollTo(ARow);
        UpdateEditorsColor();
        RequestUpdate();
    });
    FAccessible->AnnounceSelection();
}

void TZORestView::MoveSelection(TZOViewRow* ARow, TZOShowEditor AShowEditor) {
    // Applying the edit may free the row that the user is on the way to.
    FTargetRow = ARow;
    const bool closed = TryCloseEditor(true);
    TZOViewRow* target = std::exchange(FTargetRow, nullptr);
    if (closed && target)
        SelectRow(target, AShowEditor);
}

bool TZORestView::TryCloseEditor(bool AApply) {
    try {
        FEditor->EndComposition(AApply);
        if (FEditor->Modified())
            ApplyEdit(AApply);
        FEditor->Hide();
        return true;
    } catch (const std::exception& e) {
        ShowException(this, e);
        if (!FEditor->isHidden()) {
            FEditor->selectAll();
            FEditor->SetFocus();
            FEditor->FModified = true;
        }
        return false;
    }
}

void TZORestView::ApplyEdit(bool AApply) {
    FFlushingRow = FEditor->Row();
    const int chunkId = FEditor->ChunkId();
    const QString text = FEditor->text();
    TZOViewRow* edited = nullptr;
    Updating([&] {
        FEditor->ResetModified();
        try {
            if (AApply && FDataSource)
                FDataSource->RowEdited(FFlushingRow, chunkId, text);
        } catch (...) {
            // Before the bracket closes: an update must find the text to be the user's still.
            FEditor->FModified = !FEditor->isHidden();
            FFlushingRow = nullptr;
            throw;
        }
        if (FFlushingRow)
            InvalidateLayout(FFlushingRow);
        edited = std::exchange(FFlushingRow, nullptr);
    });
    if (AApply && edited && edited->List() == &FRows)
        FAccessible->AnnounceEdit(edited);
}

bool TZORestView::EditorModified() const { return FEditor->Modified(); }

bool TZORestView::EditorShown() const { return !FEditor->isHidden(); }

void TZORestView::EditorValueChanged(TZOInplaceEditor* AEditor) {
    if (AEditor == FEditor && AEditor->Row())
        InvalidateLayout(AEditor->Row());
}

void TZORestView::EditorSetModifiedToLayout(const TZOInplaceEditor* AEditor,
                                            TZOViewRowLayout* ALayout) const {
    TZORowChunk* chunk = nullptr;
    if ((AEditor->Modified() || AEditor->Composing()) && AEditor->Row() == ALayout->Row() &&
        ALayout->TryGetChunk(AEditor->ChunkId(), false, chunk))
        chunk->SetText(AEditor->ComposedText());
}

void TZORestView::EditorFocused(TZOInplaceEditor* AEditor) {
    if (AEditor != FHover || !TryCloseEditor(true))
        return;
    // What was applied may have freed the row under the mouse.
    if (FHover->isHidden() || !FHover->Row())
        return;
    std::swap(FHover, FEditor);
    UpdateEditorsColor();
    SelectRow(FEditor->Row(), seNoChange);
}

void TZORestView::UpdateEditor() {
    // Taken first: closing the editor may run a whole update of its own.
    const TZOShowEditor task = std::exchange(FEditorTask, seNoChange);
    if (task != seNoChange)
        CancelEditing();
    int chunkId = 0;
    if (!FSelected || !TargetChunk(task, chunkId))
        return;
    const bool shownThere = FEditor->IsShownAt(FSelected, chunkId);
    FEditor->Show(FSelected, chunkId);
    if (!shownThere) {
        FEditor->selectAll();
        FEditor->SetFocus();
    }
}

bool TZORestView::TargetChunk(TZOShowEditor ATask, int& AChunkId) const {
    if (ATask == seNoChange) {
        AChunkId = FEditor->ChunkId();
        return EditorShown();
    }
    const TZOViewRowLayout* layout = FSelected->Layout();
    if (ATask == seHide || !layout)
        return false;
    const bool onRow = FEditor->Row() == FSelected;
    const int current = FEditor->ChunkId();
    TZORowChunk* chunk = nullptr;
    bool found = false;
    switch (ATask) {
    case seDefaultChunk:
        found = layout->TryGetChunk(current, true, chunk);
        break;
    case seNextChunk:
        found = onRow && layout->TryGetNextEditable(current, chunk);
        break;
    case sePrevChunk:
        found = onRow && layout->TryGetPrevEditable(current, chunk);
        break;
    default:
        break;
    }
    const bool fromEnd = ATask == sePrevChunk || ATask == seLastChunk;
    if (!found)
        found = fromEnd ? layout->TryGetLastEditable(chunk) : layout->TryGetFirstEditable(chunk);
    if (found)
        AChunkId = chunk->Id();
    return found;
}

void TZORestView::UpdateTracking() {
    const QPoint point = mapFromGlobal(QCursor::pos());
    if (isVisible() && underMouse() && ExposedRect().contains(point))
        UpdateTracking(point);
    else
        HideHover();
}

void TZORestView::UpdateTracking(const QPoint& APoint) {
    // With the focus in it, it is on its way to become the focused editor.
    if (FHover->hasFocus())
        return;
    const TZOHitTest hit = GetHitTest(APoint);
    const bool captured = QWidget::mouseGrabber() || QApplication::mouseButtons() != Qt::NoButton;
    if (hit.Flags.testFlag(htChunk) && hit.Chunk->IsEditable() && !captured &&
        !FEditor->IsShownAt(hit.Row, hit.Chunk->Id())) {
        FHover->Show(hit.Row, hit.Chunk->Id());
        UpdateEditorsColor();
    } else {
        FHover->Hide();
    }
}

void TZORestView::HideHover() {
    if (!FHover->hasFocus())
        FHover->Hide();
}

void TZORestView::mousePressEvent(QMouseEvent* AEvent) {
    GuardedCall(this, [&] {
        setFocus(Qt::MouseFocusReason);
        const TZOHitTest hit = GetHitTest(AEvent->position().toPoint());
        if (hit.Flags.testFlag(htRow))
            MoveSelection(hit.Row, seHide);
    });
    AEvent->accept();
}

void TZORestView::mouseMoveEvent(QMouseEvent* AEvent) {
    UpdateTracking(AEvent->position().toPoint());
    QWidget::mouseMoveEvent(AEvent);
}

void TZORestView::leaveEvent(QEvent* AEvent) {
    HideHover();
    QWidget::leaveEvent(AEvent);
}

void TZORestView::mouseDoubleClickEvent(QMouseEvent* AEvent) {
    // The press before has selected the row; another selection now would close what the source opens.
    if (AEvent->button() == Qt::LeftButton && FDataSource)
        GuardedCall(this, [this] { FDataSource->DblClick(); });
    AEvent->accept();
}

bool TZORestView::CanUndo() const { return EditorShown() && FEditor->isUndoAvailable(); }
bool TZORestView::CanCut() const { return EditorShown() && FEditor->selectedText().length() > 0; }
bool TZORestView::CanCopy() const { return CanCut(); }

bool TZORestView::CanPaste() const {
    const QMimeData* mime = EditorShown() ? QApplication::clipboard()->mimeData() : nullptr;
    return mime && mime->hasText();
}

bool TZORestView::CanSelectAll() const {
    return EditorShown() && FEditor->selectedText().length() < FEditor->text().length();
}

bool TZORestView::CanDeleteRow() const { return true; }
void TZORestView::Undo() { FEditor->undo(); }
void TZORestView::Cut() { FEditor->cut(); }
void TZORestView::Copy() { FEditor->copy(); }
void TZORestView::Paste() { FEditor->paste(); }
void TZORestView::SelectAll() { FEditor->selectAll(); }
