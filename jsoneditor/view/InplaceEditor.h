// The edit box that a view lays over an editable chunk.
#pragma once

#include <QLineEdit>

class TZORestView;
class TZOViewRow;

/// A frameless single-line edit box over one editable chunk of a view, its text exactly on the painted one.
/// The view owns two: the focused one, and one that follows the mouse so that a click lands in an edit box.
/// Remembers row and chunk identifier, never the chunk.
class TZOInplaceEditor : public QLineEdit {
    Q_OBJECT
public:
    /// AView is the parent. Starts hidden.
    explicit TZOInplaceEditor(TZORestView* AView);

    /// Kept when the editor is hidden.
    TZOViewRow* Row() const { return FRow; }
    int ChunkId() const { return FChunkId; }
    /// The user has changed the text since it was shown.
    bool Modified() const { return FModified; }

    /// An input method is composing text that is shown and not yet part of the text.
    bool Composing() const { return !FPreedit.isEmpty(); }
    /// The text with what is being composed in it.
    QString ComposedText() const;
    /// Makes what is being composed part of the text, or drops it.
    void EndComposition(bool AKeep);

    /// Goes to the chunk and takes its text, which shows nothing when the row has no such editable chunk on
    /// screen. Text that the user changed stays when the editor is at that place already.
    void Show(TZOViewRow* ARow, int AChunkId);
    /// Clears the text; gives the focus back to the view if it is here.
    void Hide();
    bool IsShownAt(const TZOViewRow* ARow, int AChunkId) const;
    void ResetModified() { FModified = false; }
    /// Does nothing while hidden.
    void SetFocus();
    /// Takes the view's font.
    void UpdateFont();

protected:
    bool event(QEvent* AEvent) override;
    void focusInEvent(QFocusEvent* AEvent) override;
    void focusOutEvent(QFocusEvent* AEvent) override;
    void inputMethodEvent(QInputMethodEvent* AEvent) override;
    void contextMenuEvent(QContextMenuEvent* AEvent) override;

private:
    friend class TZORestView;

    void TextEdited();

    TZORestView* FView;
    TZOViewRow* FRow = nullptr;
    int FChunkId = 0;
    QString FPreedit;
    bool FModified = false;
    bool FHiding = false;
    bool FShowing = false;
};
