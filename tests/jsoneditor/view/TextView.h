// A row editor whose rows, selection and caret are written and read as text.
#pragma once

#include "jsoneditor/view/DataSource.h"
#include "jsoneditor/view/InplaceEditor.h"
#include "jsoneditor/view/RestView.h"
#include "platform/ExceptionDisplay.h"

#include <QRegion>
#include <QStringList>
#include <QWidget>

#include <source_location>
#include <vector>

/// Rows made from text, one line each: two blanks per level, then chunks parted by blanks, editable ones in
/// brackets: "  [name] : [value]". Chunks are numbered from 1.
class TTextSource : public TZODataSource {
public:
    struct TRow : TZOViewRow {
        using TZOViewRow::TZOViewRow;
        struct TChunk {
            QString Text;
            bool Editable;
        };
        std::vector<TChunk> Chunks;
    };

    explicit TTextSource(const QString& AText = {}) : FText(AText) {}

    void RefreshContent() override;
    void ConfigureRow(TZOViewRow* ARow, TZOViewRowLayout* ALayout) override;
    /// Refuses the text "bad".
    void RowEdited(TZOViewRow* ARow, int AChunkId, const QString& AText) override;
    void KeyDown(int& AKey, Qt::KeyboardModifiers AShift) override;
    void DblClick() override { ++DoubleClicks; }

    static TRow* MakeRow(const QString& ALine);

    /// Rows asked for since the last reset.
    int Configured = 0;
    int DoubleClicks = 0;
    /// "row chunk text" of each edit that came.
    QStringList Edits;
    /// Every key that came, in order.
    std::vector<int> Keys;
    /// Consumed without effect.
    int KeyToConsume = 0;
    /// Runs before an edit is stored.
    std::function<void(TZOViewRow*)> OnEdited;

private:
    QString FText;
};

/// A window with one view in it that has the focus. Keys go to whatever has the focus, as a user's do.
class TTextView {
public:
    /// A line that begins with ">" is selected.
    explicit TTextView(const QString& ARows, const QSize& ASize = {400, 300});
    ~TTextView();

    /// Names as in shortcuts ("Shift+Tab", "Return"), parted by blanks; text in single quotes is typed.
    void Press(const QString& AKeys);
    /// All rows: ">" marks the selected one; the chunk under the editor stands in braces, with its selection
    /// between "<" and ">" or the caret as "|", and "*" behind it when the user has changed it.
    QString Rows() const;
    /// Fails at the caller's line.
    void Expect(const QString& ARows, std::source_location AWhere = std::source_location::current()) const;

    TZOViewRow* Row(int AIndex) const { return View.RowAt(AIndex); }
    /// The middle of a chunk's area, in the view's coordinates; the row must be on screen.
    QPoint ChunkPoint(int ARow, int AChunkId) const;
    /// Moves the real pointer.
    void MoveMouse(const QPoint& APoint);
    void Click(const QPoint& APoint);

    /// Counts what reached it unused.
    class THost : public QWidget {
    public:
        std::vector<int> Keys;
        int Wheels = 0;

    protected:
        void keyPressEvent(QKeyEvent* AEvent) override;
        void wheelEvent(QWheelEvent* AEvent) override;
    };

    /// Messages that the user was shown.
    QStringList Shown;
    THost Host;
    TTextSource Source;
    TZORestView View;

private:
    TZOExceptionDisplay FPrevious;
};

/// "[row0]", "[row1]" and so on, one chunk a row.
QString NumberedRows(int ACount);
/// Sees what a widget paints.
class TPaintWatch : public QObject {
public:
    explicit TPaintWatch(QObject* AWatched) { AWatched->installEventFilter(this); }
    int Paints = 0;
    QRegion Painted;

protected:
    bool eventFilter(QObject* AWatched, QEvent* AEvent) override;
};

/// Turns the wheel over AWidget by ADelta (120 a notch, negative is down).
void TurnWheel(QWidget* AWidget, int ADelta);
/// Runs the event loop until ACondition holds; false after five seconds.
bool WaitFor(const std::function<bool()>& ACondition);
