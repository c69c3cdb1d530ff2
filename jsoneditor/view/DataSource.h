// What fills a view with rows and takes back what the user does to them.
#pragma once

#include "platform/Exceptions.h"

#include <QString>
#include <Qt>

#include <functional>
#include <memory>

class QMenu;
class TZORestView;
class TZORowSearch;
class TZOViewRow;
class TZOViewRowLayout;

/// The row editor's own errors.
ZO_EXCEPTION(EZORestView, EException);

/// Base of everything a view can show: list operations on the view's rows for the deriving class, and the
/// moments at which the view needs it. Connected to at most one view at a time, by the view's SetDataSource.
/// The list operations raise EZORestView while it is connected to none. Changes to rows update the view;
/// many changes at once belong into BeginUpdate/EndUpdate, which updates once.
class TZODataSource {
public:
    TZODataSource() = default;
    /// Disconnects from the view, which then frees the rows.
    virtual ~TZODataSource();
    TZODataSource(const TZODataSource&) = delete;
    TZODataSource& operator=(const TZODataSource&) = delete;

    /// Null while not connected.
    TZORestView* View() const { return FView; }

    /// Fill the view from the model. Runs inside an update bracket, at each connection and on request.
    virtual void RefreshContent();
    /// Add ARow's chunks to its new, empty layout. Must not change the rows.
    virtual void ConfigureRow(TZOViewRow* ARow, TZOViewRowLayout* ALayout);
    /// The user has left the chunk with AText in it: write it into the model. Raising refuses the text: the
    /// user sees the message and stays in the editor. ARow may be freed here.
    virtual void RowEdited(TZOViewRow* ARow, int AChunkId, const QString& AText);
    /// Every key that reaches the view or its editor, before the view's own use of it. AKey is a Qt::Key;
    /// set it to 0 to consume it. Backtab comes as Key_Tab with Shift, Key_Enter as Key_Return.
    virtual void KeyDown(int& AKey, Qt::KeyboardModifiers AShift);
    virtual void DblClick();
    /// Whether KeyDown has a use for the key, so that no shortcut of the host may take it away. The default
    /// claims Insert, Ctrl+Delete and F5; the view claims the keys of its own map by itself.
    virtual bool WantsKey(int AKey, Qt::KeyboardModifiers AShift) const;
    /// Add what can be done with the selected row to the view's context menu, which is about to be shown.
    virtual void FillMenu(QMenu* AMenu);
    /// What the user is told about ARow when the pointer rests on it, and assistive technology with it:
    /// plain text, perhaps of several lines.
    virtual QString RowHint(TZOViewRow* ARow);

    /// A search for AText, which is not empty, in the rows of this source; must not outlive it. The default
    /// asks for the chunks of each row; a source of many rows knows better.
    virtual std::unique_ptr<TZORowSearch> NewSearch(const QString& AText);

    void BeginUpdate();
    void EndUpdate();
    /// Runs AAction inside an update bracket. The deferred update runs before this returns and may raise.
    void Updating(const std::function<void()>& AAction);
    /// These hand ARow over to the view and return it. A row that is in the view already is moved.
    TZOViewRow* Add(TZOViewRow* ARow);
    TZOViewRow* InsertBefore(TZOViewRow* ABefore, TZOViewRow* ARow);
    TZOViewRow* InsertAfter(TZOViewRow* AAfter, TZOViewRow* ARow);
    /// Move the run from AStart to AEnd, which must not contain the anchor. Costs the run's length.
    void MoveRangeBefore(TZOViewRow* ABefore, TZOViewRow* AStart, TZOViewRow* AEnd);
    void MoveRangeAfter(TZOViewRow* AAfter, TZOViewRow* AStart, TZOViewRow* AEnd);
    /// Frees ARow.
    void Remove(TZOViewRow* ARow);
    /// Frees every row of the view.
    void Clear();
    /// Null when there are no rows.
    TZOViewRow* GetFirst() const;
    TZOViewRow* GetLast() const;

protected:
    /// Raises EZORestView while the source is connected to no view.
    void CheckView() const {
        if (!FView)
            RaiseNoView();
    }

private:
    friend class TZORestView;
    [[noreturn]] static void RaiseNoView();
    TZORestView* FView = nullptr;
};
