// The row editor: shows the rows of a data source as indented lines of text, some of it editable in place.
#pragma once

#include "jsoneditor/view/HitTest.h"
#include "jsoneditor/view/LinkedList.h"
#include "jsoneditor/view/ShowEditor.h"
#include "jsoneditor/view/ViewRow.h"
#include "jsoneditor/view/ViewRowLayout.h"

#include <QColor>
#include <QPixmap>
#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

class QHelpEvent;
class QScrollBar;
class TZOAccessibleRows;
class TZODataSource;
class TZOExposureWatch;
class TZOInplaceEditor;
class TZOPlainTexts;
class TZORowIndex;
class TZOShapedTexts;
struct TZOMarks;
struct TZORowRange;
struct TZOScrollSizes;

/// A keyboard-driven editor of the rows of one data source. Cost follows what is exposed: only rows in sight
/// have layouts, whatever their number. It scrolls by itself, or, auto-sized, is as high as its content and
/// leaves scrolling to the scroll area around it, up to the greatest height a widget can have; past it, it
/// takes the scroll area's height and scrolls by itself again.
class TZORestView : public QWidget {
    Q_OBJECT
public:
    /// The greatest height an auto-sized view takes, in pixels: what a widget can have, less some room for
    /// what stands beside the view in the same scroll area, which ends at the same height.
    static constexpr int MaxAutoHeight = QWIDGETSIZE_MAX - 65535;

    explicit TZORestView(QWidget* AParent = nullptr);
    ~TZORestView() override;

    // --- Data source and rows ---

    TZODataSource* DataSource() const { return FDataSource; }
    /// Frees the rows and, when owned, the source in use; connects ASource (which may be null) and fills the
    /// view. What the source raises while filling passes to the caller.
    void SetDataSource(TZODataSource* ASource);
    /// Whether the view frees its source when it is replaced and when the view goes. Default false.
    bool OwnDataSource() const { return FOwnDataSource; }
    void SetOwnDataSource(bool AOwn) { FOwnDataSource = AOwn; }
    /// Discards an open edit and lets the source fill the view again.
    void RefreshContent();
    TZOViewRow* GetFirst() const { return FRows.GetFirst(); }
    TZOViewRow* GetLast() const { return FRows.GetLast(); }
    int GetRowCount() const { return FRows.GetCount(); }
    /// The place of ARow counted from 0; the number of rows when it is not here. Walks no rows beyond its
    /// block.
    int IndexOfRow(const TZOViewRow* ARow) const;
    /// Null outside 0 .. GetRowCount() - 1. Walks no rows beyond its block.
    TZOViewRow* RowAt(int AIndex) const;
    void ClearRows();

    // --- Update ---

    /// Brackets nest; the update that was asked for inside runs once, at the outermost end.
    void DoBeginUpdate() { ++FUpdateCount; }
    void DoEndUpdate() {
        if (--FUpdateCount < 1 && FNeedUpdate)
            RunPutOffUpdate();
    }
    /// Runs AAction inside a bracket. The deferred update runs before this returns and may raise.
    void Updating(const std::function<void()>& AAction);
    /// Brings layouts, scroll bar and editors up to date and repaints; does nothing before the widget is
    /// created.
    void UpdateView();
    /// The row shows something else: asks the source again if the row is on screen.
    void InvalidateLayout(TZOViewRow* ARow);
    void InvalidateAllLayouts();
    void ClearLayouts();
    /// For the destructors of layouts and rows.
    void LayoutRemoved(TZOViewRowLayout* ALayout);
    void RowRemoved(TZOViewRow* ARow);
    /// Another number whenever rows came, went, moved or were told to have changed.
    quint64 Revision() const { return FRevision; }
    /// The layouts on screen, top to bottom.
    const TZOLinkedListOf<TZOViewRowLayout*>& Layouts() const { return FLayouts; }

    // --- Measures and scrolling, in pixels ---

    int TextHeight() const { return FTextHeight; }
    int RowHeight() const { return FRowHeight; }
    /// Row count times row height, as of the last update.
    int ContentHeight() const { return FContentHeight; }
    int YScroll() const { return FYScroll; }
    /// The widget less its scroll bar.
    QRect ClientRect() const;
    /// The part of the client rectangle that ancestors (scroll areas among them) leave visible.
    QRect ExposedRect() const;
    TZOHitTest GetHitTest(const QPoint& APoint) const;
    /// AOffset within 0 .. content height less client height.
    int AdjustScrollOffset(int AOffset) const;
    void ScrollTo(int AOffset);
    /// The smallest change that shows ARow whole, in the scroll areas around the view too.
    void ScrollTo(TZOViewRow* ARow);
    /// ATask answers the wanted offset; it runs at the next update, so it sees the sizes of that moment.
    void SetScrollTask(std::function<int()> ATask);
    /// Offered each wheel notch first; answers whether it was handled.
    std::function<bool(Qt::KeyboardModifiers AShift, const QPoint& APoint)> OnMouseWheelDown;
    std::function<bool(Qt::KeyboardModifiers AShift, const QPoint& APoint)> OnMouseWheelUp;

    // --- Looks. An invalid colour restores the default, which follows the palette where it can. ---

    bool AutoSize() const { return FAutoSize; }
    void SetAutoSize(bool AAutoSize);
    QColor Color() const;
    void SetColor(const QColor& AColor);
    /// With ParentColor, which is off at first, Color is the parent's background.
    bool ParentColor() const { return FParentColor; }
    void SetParentColor(bool AParentColor);
    /// With ParentFont, which is off at first, the font is the parent's.
    void SetParentFont(bool AParentFont);
    QColor FontColor() const;
    void SetFontColor(const QColor& AColor);
    QColor SelectedColor() const;
    void SetSelectedColor(const QColor& AColor);
    QColor ErrorColor() const;
    void SetErrorColor(const QColor& AColor);
    QColor GrayColor() const;
    void SetGrayColor(const QColor& AColor);
    QColor SymbolColor() const;
    void SetSymbolColor(const QColor& AColor);
    /// Invalid (nothing is painted) for a token that is none of the four.
    virtual QColor GetChunkTextColor(const TZORowChunk* AChunk) const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /// Marks AText wherever rows in sight show it, in any case, and more strongly in ACurrent, which may be
    /// null. An empty text marks nothing.
    void SetMarks(const QString& AText, const TZOViewRow* ACurrent);

    // --- Selection and editing ---

    /// Null when no row is selected.
    TZOViewRow* Selected() const { return FSelected; }
    /// Selects ARow (null selects nothing) and shows it. An edit that is open on another row is discarded:
    /// close it with TryCloseEditor(true) first to keep it.
    void SelectRow(TZOViewRow* ARow, TZOShowEditor AShowEditor);
    /// Hides the editor; with AApply its text goes to the source. False, with the editor still open on its
    /// text, when the source raised; the user has seen the message then.
    bool TryCloseEditor(bool AApply);
    bool CancelEditing() { return TryCloseEditor(false); }
    bool EditorModified() const;
    bool EditorShown() const;
    /// The focused editor, and the one that follows the mouse. They swap roles.
    TZOInplaceEditor* Editor() const { return FEditor; }
    TZOInplaceEditor* Hover() const { return FHover; }
    /// Whether the focus is in the view or one of its editors.
    bool Focused() const;
    /// As Focused, but kept while the whole window is inactive.
    bool Active() const { return FActive; }
    /// What a key does: the source first, then the view's keyboard map. AKey becomes 0 when it is consumed.
    void KeyDown(int& AKey, Qt::KeyboardModifiers AShift);

    bool CanUndo() const;
    bool CanCut() const;
    bool CanCopy() const;
    bool CanPaste() const;
    bool CanSelectAll() const;
    bool CanDeleteRow() const;
    /// Whether a row is selected and the source has a use for the Insert key.
    bool CanInsertRow() const;
    void Undo();
    void Cut();
    void Copy();
    void Paste();
    void SelectAll();
    /// The source's Ctrl+Delete and Insert keys.
    void DeleteRow();
    void InsertRow();

    /// The view's side of what assistive technology sees.
    TZOAccessibleRows* AccessibleRows() const { return FAccessible.get(); }

Q_SIGNALS:
    /// Revision is another one. Comes once for all that an update has brought.
    void RowsChanged();

protected:
    bool event(QEvent* AEvent) override;
    void changeEvent(QEvent* AEvent) override;
    void contextMenuEvent(QContextMenuEvent* AEvent) override;
    void focusInEvent(QFocusEvent* AEvent) override;
    void focusOutEvent(QFocusEvent* AEvent) override;
    void keyReleaseEvent(QKeyEvent* AEvent) override;
    void leaveEvent(QEvent* AEvent) override;
    void mouseDoubleClickEvent(QMouseEvent* AEvent) override;
    void mouseMoveEvent(QMouseEvent* AEvent) override;
    void mousePressEvent(QMouseEvent* AEvent) override;
    void moveEvent(QMoveEvent* AEvent) override;
    void paintEvent(QPaintEvent* AEvent) override;
    void resizeEvent(QResizeEvent* AEvent) override;
    void showEvent(QShowEvent* AEvent) override;
    void wheelEvent(QWheelEvent* AEvent) override;
    bool eventFilter(QObject* AObject, QEvent* AEvent) override;

private:
    friend class TZOAccessibleRow;
    friend class TZODataSource;
    friend class TZOInplaceEditor;
    friend class TZOViewRowLayout;

    // Rows
    void AppendRow(TZOViewRow* ARow);
    /// At the end where there is no anchor.
    void PlaceRow(TZOViewRow* ARow, TZOViewRow* AAnchor, bool AAfter);
    void TakeFromItsPlace(TZOViewRow* ARow);
    void MoveRows(TZOViewRow* AAnchor, TZOViewRow* AStart, TZOViewRow* AEnd, bool AAfter);
    void ReleaseSource();

    // Layout
    bool HandleExists() const { return testAttribute(Qt::WA_WState_Created); }
    void RequestUpdate() {
        if (FUpdateCount >= 1)
            FNeedUpdate = true;
        else if (HandleExists())
            RunUpdate();
    }
    void RunPutOffUpdate();
    void RowsTouched() {
        ++FRevision;
        RequestUpdate();
    }
    void RunUpdate();
    void PrepareUpdate();
    void LayoutRows();
    void CarryPainted(int AOldScroll, int AOldBottom);
    void CarryShifted(const TZORowRange& ARange, const QRect& AClient);
    void MovePicture(const QRect& AArea, int ADown);
    QRect BoundsOfRow(int AIndex, const QRect& AClient) const;
    TZORowRange RowsToLayOut() const;
    std::vector<int> ExtraRows(const TZORowRange& ARange) const;
    void PutLayout(TZOViewRow* ARow, int AIndex, const QRect& AClient);
    void MeasureLayout(TZOViewRowLayout& ALayout);
    void PlaceScrollBar();
    void ExposureChanged();
    void AdjustSize();
    bool IsAsHighAsContent() const;
    int WantedAutoHeight() const;

    // Painting
    QColor RowColor(const TZOViewRow* ARow) const;
    void AddTexts(const TZOViewRowLayout& ALayout, TZOPlainTexts& ATexts) const;
    void DrawRow(QPainter& APainter, const TZOViewRowLayout* ALayout);
    void ActiveStateChanged();
    void UpdateEditorsColor();
    TZOMarks MarksOf(const TZOViewRow* ARow) const;
    QColor EditorTextColor(const TZOInplaceEditor* AEditor) const;
    void SetAndRepaint(QColor& AColor, const QColor& AValue);

    // Scrolling
    TZOScrollSizes ScrollSizes() const;
    void ExposeRow();
    void UpdateScrollBar();
    void ScrollBarAction(int AAction);
    bool DoMouseWheel(bool ADown, Qt::KeyboardModifiers AShift, const QPoint& APoint);
    bool CanScroll(bool ADown) const;

    // Keys and focus
    bool ClaimKey(QKeyEvent* AEvent);
    bool OfferKey(QKeyEvent* AEvent);
    void KeyToRow(int& AKey, TZOViewRow* ATarget);
    void KeyTab(int& AKey, bool ABackwards);
    TZOViewRow* RowAPageAway(bool ADown) const;
    void FocusChanged();

    // Editing
    void MoveSelection(TZOViewRow* ARow, TZOShowEditor AShowEditor);
    void ApplyEdit(bool AApply);
    void EditorValueChanged(TZOInplaceEditor* AEditor);
    void EditorSetModifiedToLayout(const TZOInplaceEditor* AEditor, TZOViewRowLayout* ALayout) const;
    void EditorFocused(TZOInplaceEditor* AEditor);
    void UpdateEditor();
    bool TargetChunk(TZOShowEditor ATask, int& AChunkId) const;
    void UpdateTracking();
    void UpdateTracking(const QPoint& APoint);
    void HideHover();
    void ShowContextMenu(const QPoint& AGlobal);
    /// Asked for by a key, the menu belongs to the selected row, wherever the pointer is.
    void ShowRowMenu();
    void ShowRowHint(const QHelpEvent* AEvent);

    int FScrollStep = 32;
    int FMouseWheelStep = 96;
    int FTextHeight = 0;
    int FRowHeight = 0;
    std::function<int()> FYScrollTask;
    int FYScroll = 0;
    bool FActive = false;
    TZOLinkedListOf<TZOViewRow*> FRows;
    TZOLinkedListOf<TZOViewRowLayout*> FLayouts;
    std::unique_ptr<TZORowIndex> FIndex;
    std::unique_ptr<TZOShapedTexts> FTexts;
    std::unique_ptr<TZOExposureWatch> FExposure;
    std::unique_ptr<TZOAccessibleRows> FAccessible;
    QRect FLaidOutRect;
    QRegion FUncovered; // where an editor stood that was hidden since the last paint
    quint64 FRevision = 0;
    quint64 FToldRevision = 0;
    QString FMarkText;
    const TZOViewRow* FMarkRow = nullptr;
    int FUpdateCount = 0;
    bool FNeedUpdate = false;
    bool FRepaintAll = false;
    bool FIsRepainting = false;
    bool FAutoSize = false;
    bool FAdjustingSize = false;
    QPixmap FRowBuffer;
    int FContentHeight = 0;
    int FWheelRest = 0;
    TZODataSource* FDataSource = nullptr;
    bool FOwnDataSource = false;
    bool FParentColor = false;
    QScrollBar* FScrollBar = nullptr;
    TZOInplaceEditor* FHover = nullptr;
    TZOInplaceEditor* FEditor = nullptr;
    TZOViewRow* FSelected = nullptr;
    TZOViewRow* FExposeRow = nullptr;
    TZOViewRow* FTargetRow = nullptr;
    TZOShowEditor FEditorTask = seNoChange;
    TZOViewRow* FFlushingRow = nullptr;
    const QKeyEvent* FOfferedKey = nullptr;
    QColor FColor;
    QColor FFontColor;
    QColor FSelectedColor;
    QColor FErrorColor;
    QColor FGrayColor;
    QColor FSymbolColor;
};
