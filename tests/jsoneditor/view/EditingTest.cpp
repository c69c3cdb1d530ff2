// The focused editor: what it shows, keeps, applies and discards, and the operations of a host's menu.
#include "tests/jsoneditor/view/TextView.h"

#include <QApplication>
#include <QClipboard>
#include <QImage>
#include <QTest>

#include <gtest/gtest.h>

namespace {

const QString Two = QStringLiteral("  [name] : [value]\n  [second] : [2]\n");

/// Where anything but the background is painted in AImage, within AArea.
QRect Ink(const QImage& AImage, const QRect& AArea, const QColor& ABackground) {
    QRect ink;
    for (int y = AArea.top(); y <= AArea.bottom(); ++y) {
        for (int x = AArea.left(); x <= AArea.right(); ++x) {
            if (AImage.pixelColor(x, y) != ABackground)
                ink |= QRect(x, y, 1, 1);
        }
    }
    return ink;
}

} // namespace

TEST(Editing, OpensOnTheChunkThatIsAskedFor) {
    TTextView text(QStringLiteral("  [a] : [b] : [c]\n  fixed\n"));
    const auto shownAt = [&](TZOShowEditor AShow) {
        text.View.SelectRow(text.Row(0), AShow);
        return text.View.EditorShown() ? text.View.Editor()->ChunkId() : 0;
    };
    EXPECT_EQ(shownAt(seHide), 0);
    EXPECT_EQ(shownAt(seFirstChunk), 1);
    EXPECT_EQ(shownAt(seNextChunk), 3);
    EXPECT_EQ(shownAt(seNextChunk), 5);
    EXPECT_EQ(shownAt(seNextChunk), 1) << "none after the last: the first";
    EXPECT_EQ(shownAt(sePrevChunk), 5) << "none before the first: the last";
    EXPECT_EQ(shownAt(sePrevChunk), 3);
    EXPECT_EQ(shownAt(seDefaultChunk), 3);
    EXPECT_EQ(shownAt(seNoChange), 3);
    EXPECT_EQ(shownAt(seLastChunk), 5);
    EXPECT_EQ(shownAt(seHide), 0);
    EXPECT_EQ(shownAt(seNoChange), 0);
    text.View.SelectRow(text.Row(1), seFirstChunk);
    EXPECT_FALSE(text.View.EditorShown());
}

TEST(Editing, StartsAtTheEndsOnARowTheEditorWasNotOn) {
    TTextView text(QStringLiteral("  [a] : [b]\n  [c] : [d]\n"));
    text.View.SelectRow(text.Row(0), seFirstChunk);
    text.View.SelectRow(text.Row(1), seNextChunk);
    EXPECT_EQ(text.View.Editor()->ChunkId(), 1);
    text.View.SelectRow(text.Row(0), sePrevChunk);
    EXPECT_EQ(text.View.Editor()->ChunkId(), 3);
}

TEST(Editing, DiscardsAnEditWhenAnotherRowIsSelectedWithoutApplying) {
    TTextView text(Two);
    text.View.SelectRow(text.Row(0), seFirstChunk);
    text.Press(QStringLiteral("'x'"));
    text.View.SelectRow(text.Row(1), seHide);
    text.Expect(QStringLiteral("  [name] : [value]\n> [second] : [2]\n"));
    EXPECT_TRUE(text.Source.Edits.isEmpty());
}

TEST(Editing, LaysTheRowOutWithWhatIsTyped) {
    TTextView text(Two);
    text.View.SelectRow(text.Row(0), seFirstChunk);
    const int before = text.Row(0)->Layout()->GetChunks(2)->Bounds().left();
    text.Press(QStringLiteral("'averylongname'"));
    const TZOViewRowLayout* layout = text.Row(0)->Layout();
    EXPECT_EQ(layout->GetChunks(0)->Text(), QStringLiteral("averylongname"));
    EXPECT_EQ(layout->GetChunks(2)->Bounds().left() - before,
              text.View.fontMetrics().horizontalAdvance(QStringLiteral("averylongname")) -
                  text.View.fontMetrics().horizontalAdvance(QStringLiteral("name")));
    EXPECT_EQ(text.View.Editor()->geometry().left(), 4);
    EXPECT_GE(text.View.Editor()->width(), layout->GetChunks(0)->Bounds().width());
}

TEST(Editing, AsksForTheEditedRowOnlyWhileTyping) {
    TTextView text(Two);
    text.View.SelectRow(text.Row(0), seFirstChunk);
    text.Source.Configured = 0;
    text.Press(QStringLiteral("'abc'"));
    EXPECT_EQ(text.Source.Configured, 3);
}

TEST(Editing, KeepsTypedTextThroughARebuildOfTheLayouts) {
    TTextView text(Two);
    text.View.SelectRow(text.Row(0), seFirstChunk);
    text.Press(QStringLiteral("'typed' Left"));
    text.View.InvalidateAllLayouts();
    text.Expect(QStringLiteral("> {type|d}* : [value]\n  [second] : [2]\n"));
}

TEST(Editing, ReplacesTheTextAtAnotherChunkAndClearsItsSelection) {
    TTextView text(Two);
    text.View.SelectRow(text.Row(0), seFirstChunk);
    text.Press(QStringLiteral("'typed' Shift+Home"));
    text.View.Editor()->Show(text.Row(0), 3);
    EXPECT_EQ(text.View.Editor()->text(), QStringLiteral("value"));
    EXPECT_FALSE(text.View.Editor()->hasSelectedText());
    EXPECT_FALSE(text.View.EditorModified());
}

TEST(Editing, ShowsNothingWhereThereIsNoEditableChunk) {
    TTextView text(Two);
    text.View.Editor()->Show(text.Row(0), 2);
    EXPECT_TRUE(text.View.Editor()->text().isEmpty());
    EXPECT_TRUE(text.View.Editor()->geometry().isEmpty());
}

TEST(Editing, RefreshDiscardsAnOpenEdit) {
    TTextView text(Two);
    text.View.SelectRow(text.Row(0), seFirstChunk);
    text.Press(QStringLiteral("'typed'"));
    text.View.RefreshContent();
    text.Expect(Two);
    EXPECT_FALSE(text.View.EditorShown());
    EXPECT_TRUE(text.Source.Edits.isEmpty());
    EXPECT_TRUE(text.View.hasFocus());
}

TEST(Editing, HidesTheEditorOfARowThatIsFreed) {
    TTextView text(Two);
    text.View.SelectRow(text.Row(0), seFirstChunk);
    text.Press(QStringLiteral("'typed'"));
    delete text.Row(0);
    EXPECT_FALSE(text.View.EditorShown());
    EXPECT_EQ(text.View.Selected(), nullptr);
    EXPECT_EQ(text.View.Editor()->Row(), nullptr);
    EXPECT_TRUE(text.View.hasFocus());
}

TEST(Editing, SurvivesASourceThatFreesTheEditedRow) {
    TTextView text(Two);
    text.View.SelectRow(text.Row(0), seFirstChunk);
    text.Source.OnEdited = [](TZOViewRow* ARow) { delete ARow; };
    text.Press(QStringLiteral("'typed' Return"));
    text.Expect(QStringLiteral("  [second] : [2]\n"));
    EXPECT_TRUE(text.Shown.isEmpty());
}

TEST(Editing, KeepsTheRefusedTextWhenTheSourceHasChangedRowsBeforeItRefused) {
    class TSource : public TTextSource {
    public:
        using TTextSource::TTextSource;
        void RowEdited(TZOViewRow* ARow, int, const QString&) override {
            delete ARow->Next();
            throw EZORestView(QStringLiteral("refused"));
        }
    };
    TTextView text(QString{});
    TSource source(QStringLiteral("[a]\n[b]"));
    text.View.SetDataSource(&source);
    text.View.SelectRow(text.Row(0), seFirstChunk);
    text.Press(QStringLiteral("'typed' Return"));
    text.Expect(QStringLiteral("> {<typed>}*\n"));
    text.View.SetDataSource(nullptr);
}

TEST(Editing, ClosesOnRequestWithOrWithoutApplying) {
    TTextView text(Two);
    text.View.SelectRow(text.Row(0), seFirstChunk);
    text.Press(QStringLiteral("'one'"));
    EXPECT_TRUE(text.View.TryCloseEditor(true));
    text.View.SelectRow(text.Row(0), seFirstChunk);
    text.Press(QStringLiteral("'two'"));
    EXPECT_TRUE(text.View.CancelEditing());
    text.Expect(QStringLiteral("> [one] : [value]\n  [second] : [2]\n"));
    text.View.SelectRow(text.Row(0), seFirstChunk);
    text.Press(QStringLiteral("'bad'"));
    EXPECT_FALSE(text.View.TryCloseEditor(true));
    EXPECT_TRUE(text.View.EditorShown());
    EXPECT_TRUE(text.View.CancelEditing());
}

TEST(Editing, TakesTextsOfAnyLength) {
    TTextView text(Two);
    text.View.SelectRow(text.Row(0), seFirstChunk);
    QApplication::clipboard()->setText(QString(70000, QLatin1Char('x')));
    text.View.Paste();
    text.Press(QStringLiteral("Return"));
    EXPECT_EQ(text.Row(0)->Layout()->GetChunks(0)->Text().size(), 70000);
}

TEST(Editing, KeepsTheCaretOfALongTextInSight) {
    TTextView text(Two);
    text.View.SelectRow(text.Row(0), seFirstChunk);
    QApplication::clipboard()->setText(QString(500, QLatin1Char('x')));
    text.View.Paste();
    text.View.grab();
    EXPECT_LE(text.View.Editor()->geometry().right(), text.View.ClientRect().right());
    EXPECT_LE(text.View.Editor()->inputMethodQuery(Qt::ImCursorRectangle).toRectF().left(),
              text.View.Editor()->width());
}

TEST(Editing, AnswersWhatAMenuAsks) {
    TTextView text(Two);
    EXPECT_FALSE(text.View.CanUndo() || text.View.CanCut() || text.View.CanCopy() || text.View.CanPaste() ||
                 text.View.CanSelectAll());
    EXPECT_TRUE(text.View.CanDeleteRow());
    QApplication::clipboard()->clear();
    text.View.SelectRow(text.Row(0), seFirstChunk);
    EXPECT_TRUE(text.View.CanCut() && text.View.CanCopy());
    EXPECT_FALSE(text.View.CanSelectAll()) << "all is selected";
    EXPECT_FALSE(text.View.CanUndo() || text.View.CanPaste());
    text.View.Cut();
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("name"));
    EXPECT_TRUE(text.View.CanUndo() && text.View.CanPaste());
    EXPECT_FALSE(text.View.CanCut());
    text.View.Undo();
    text.Press(QStringLiteral("End"));
    EXPECT_TRUE(text.View.CanSelectAll());
    text.View.Paste();
    EXPECT_EQ(text.View.Editor()->text(), QStringLiteral("namename"));
    text.View.SelectAll();
    text.View.Copy();
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("namename"));
}

TEST(Editing, DeletesARowThroughTheSourcesOwnKey) {
    TTextView text(Two);
    text.View.DeleteRow();
    EXPECT_EQ(text.Source.Keys, std::vector<int>{Qt::Key_Delete});
}

namespace {

/// Compares every editable chunk as it is painted with the editor on it.
void ExpectEditorOnPaintedText(const QString& ARows) {
    TTextView text(ARows, {600, 200});
    text.View.SetFontColor(Qt::black);
    text.View.SetColor(Qt::white);
    text.View.SetSelectedColor(Qt::white);
    QPalette colors = text.View.palette();
    colors.setColor(QPalette::Button, Qt::white);
    text.View.setPalette(colors);
    for (int row = 0; row < text.View.GetRowCount(); ++row) {
        for (const bool last : {false, true}) {
            text.View.SelectRow(nullptr, seHide);
            const TZOViewRowLayout* layout = text.Row(row)->Layout();
            const QRect area = layout->Bounds();
            const QImage painted = text.View.grab(area).toImage();
            const QRect chunk = layout->GetChunks(last ? layout->GetChunkCount() - 1 : 0)->Bounds();
            text.View.SelectRow(text.Row(row), last ? seLastChunk : seFirstChunk);
            text.View.Editor()->deselect();
            text.View.setFocus();
            text.View.Editor()->clearFocus();
            const QImage edited = text.View.grab(area).toImage();
            const QRect ink = Ink(painted, chunk, Qt::white);
            ASSERT_FALSE(ink.isEmpty());
            EXPECT_EQ(Ink(edited, chunk, Qt::white), ink);
            EXPECT_EQ(painted.copy(chunk), edited.copy(chunk)) << row << " " << last;
        }
    }
}

} // namespace

TEST(Editing, PutsTheEditorsTextExactlyOnThePaintedOne) {
    ExpectEditorOnPaintedText(QStringLiteral("  [Wnglj] : [Wnglj]\n      [iXi|]\n"));
}

TEST(Editing, PutsRightToLeftTextExactlyOnThePaintedOne) {
    ExpectEditorOnPaintedText(QStringLiteral("  [שלום] : [שלום עולם]\n  [مرحبا 123] : [abc مرحبا def]\n"));
}

TEST(Editing, PutsEmojiExactlyOnThePaintedOnes) {
    ExpectEditorOnPaintedText(QStringLiteral("  [😀 ok] : [👩‍👩‍👧 e\u0301]\n"));
}
