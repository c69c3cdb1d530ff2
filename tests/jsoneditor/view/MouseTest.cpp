// Clicks, and the editor that follows the pointer.
#include "tests/jsoneditor/view/TextView.h"

#include <QMenu>
#include <QTest>

#include <gtest/gtest.h>

namespace {

const QString Three = QStringLiteral("  [a] : [first]\n  [b] : [second]\n  fixed\n");

} // namespace

TEST(Mouse, SelectsARowBesideItsChunks) {
    TTextView text(Three);
    text.Click(QPoint(390, text.View.RowHeight() + 5));
    text.Expect(QStringLiteral("  [a] : [first]\n> [b] : [second]\n  fixed\n"));
    text.Click(text.ChunkPoint(2, 1));
    text.Expect(QStringLiteral("  [a] : [first]\n  [b] : [second]\n> fixed\n"));
}

TEST(Mouse, ChangesNothingBelowTheRows) {
    TTextView text(Three);
    text.View.SelectRow(text.Row(1), seHide);
    text.Click(QPoint(100, 290));
    EXPECT_EQ(text.View.Selected(), text.Row(1));
}

TEST(Mouse, BringsAnEditorUnderThePointer) {
    TTextView text(Three);
    text.MoveMouse(text.ChunkPoint(1, 3));
    EXPECT_TRUE(text.View.Hover()->IsShownAt(text.Row(1), 3));
    EXPECT_EQ(text.View.Hover()->text(), QStringLiteral("second"));
    EXPECT_FALSE(text.View.EditorShown());
    text.MoveMouse(text.ChunkPoint(0, 1));
    EXPECT_TRUE(text.View.Hover()->IsShownAt(text.Row(0), 1));
    text.MoveMouse(text.ChunkPoint(2, 1));
    EXPECT_TRUE(text.View.Hover()->isHidden());
}

TEST(Mouse, ClicksLandInTheEditorUnderThePointer) {
    TTextView text(Three);
    const TZOInplaceEditor* hover = text.View.Hover();
    text.Click(text.ChunkPoint(1, 3));
    EXPECT_EQ(text.View.Editor(), hover) << "they have swapped roles";
    EXPECT_TRUE(text.View.Editor()->IsShownAt(text.Row(1), 3));
    EXPECT_TRUE(text.View.Editor()->hasFocus());
    EXPECT_EQ(text.View.Selected(), text.Row(1));
    EXPECT_FALSE(text.View.Editor()->hasSelectedText()) << "the click puts the caret";
    text.Press(QStringLiteral("End 's' Return"));
    text.Expect(QStringLiteral("  [a] : [first]\n> [b] : [seconds]\n  fixed\n"));
}

TEST(Mouse, AppliesTheOpenEditWhenAnotherChunkIsClicked) {
    TTextView text(Three);
    text.View.SelectRow(text.Row(0), seFirstChunk);
    text.Press(QStringLiteral("'x'"));
    text.Click(text.ChunkPoint(1, 1));
    EXPECT_EQ(text.Source.Edits, QStringList{QStringLiteral("0 1 x")});
    EXPECT_TRUE(text.View.Editor()->IsShownAt(text.Row(1), 1));
    EXPECT_EQ(text.View.Selected(), text.Row(1));
}

TEST(Mouse, StaysInTheEditorWhenTheTextIsRefused) {
    for (int chunk : {1, 2}) {
        TTextView text(Three);
        text.View.SelectRow(text.Row(0), seFirstChunk);
        text.Press(QStringLiteral("'bad'"));
        text.Click(text.ChunkPoint(1, chunk));
        text.Expect(QStringLiteral("> {<bad>}* : [first]\n  [b] : [second]\n  fixed\n"));
        EXPECT_TRUE(text.View.Editor()->hasFocus());
        EXPECT_EQ(text.Shown.size(), 1);
    }
}

TEST(Mouse, ShowsNoSecondEditorWhereTheFocusedOneStands) {
    TTextView text(Three);
    text.View.SelectRow(text.Row(0), seFirstChunk);
    text.MoveMouse(text.ChunkPoint(0, 3));
    ASSERT_TRUE(text.View.Hover()->IsShownAt(text.Row(0), 3));
    text.MoveMouse(text.ChunkPoint(0, 2));
    text.MoveMouse(text.ChunkPoint(0, 1));
    EXPECT_TRUE(text.View.Hover()->isHidden());
    // The view looks at the pointer again when it lays the row out for what is typed.
    text.Press(QStringLiteral("'typed'"));
    EXPECT_TRUE(text.View.Hover()->isHidden());
    EXPECT_TRUE(text.View.Editor()->IsShownAt(text.Row(0), 1));
}

TEST(Mouse, TakesTheEditorAwayWhenThePointerLeaves) {
    TTextView text(Three);
    text.MoveMouse(text.ChunkPoint(0, 1));
    ASSERT_FALSE(text.View.Hover()->isHidden());
    QCursor::setPos(2000, 2000);
    EXPECT_TRUE(WaitFor([&] { return text.View.Hover()->isHidden(); }));
}

TEST(Mouse, FollowsTheRowsThatScrollUnderThePointer) {
    TTextView text(NumberedRows(100));
    text.MoveMouse(text.ChunkPoint(1, 1));
    ASSERT_TRUE(text.View.Hover()->IsShownAt(text.Row(1), 1));
    text.View.ScrollTo(10 * text.View.RowHeight());
    EXPECT_TRUE(text.View.Hover()->IsShownAt(text.Row(11), 1));
    EXPECT_EQ(text.View.Hover()->text(), QStringLiteral("row11"));
}

TEST(Mouse, TellsTheSourceOfADoubleClick) {
    TTextView text(Three);
    const QPoint point = text.View.mapTo(&text.Host, text.ChunkPoint(2, 1));
    QTest::mouseDClick(text.Host.windowHandle(), Qt::LeftButton, Qt::NoModifier, point);
    EXPECT_EQ(text.Source.DoubleClicks, 1);
    EXPECT_EQ(text.View.Selected(), text.Row(2));
}

TEST(Mouse, OpensTheViewsMenuFromTheEditorToo) {
    TTextView text(Three);
    text.View.SelectRow(text.Row(0), seFirstChunk);
    QTest::mouseClick(text.Host.windowHandle(), Qt::RightButton, Qt::NoModifier,
                      text.View.mapTo(&text.Host, text.ChunkPoint(0, 1)));
    QContextMenuEvent menuEvent(QContextMenuEvent::Mouse, QPoint(2, 2),
                                text.View.Editor()->mapToGlobal(QPoint(2, 2)));
    QApplication::sendEvent(text.View.Editor(), &menuEvent);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    QStringList enabled;
    for (const QAction* action : menu->actions()) {
        if (action->isEnabled() && !action->isSeparator())
            enabled.append(action->text());
    }
    EXPECT_TRUE(enabled.contains(QStringLiteral("Delete Row")));
    EXPECT_FALSE(enabled.contains(QStringLiteral("Undo")));
    menu->close();
}

TEST(Mouse, IsNotNeededForTheMenuWhichShiftF10OpensBelowTheSelectedRow) {
    TTextView text(QStringLiteral("  [name] : [value]\n  [second] : [2]\n"));
    for (const TZOShowEditor mode : {seHide, seLastChunk}) {
        text.View.SelectRow(text.Row(1), mode);
        text.Press(QStringLiteral("Shift+F10"));
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        const QRect row = text.Row(1)->Layout()->Bounds();
        EXPECT_EQ(menu->pos(), text.View.mapToGlobal(QPoint(row.left(), row.bottom() + 1)));
        menu->close();
    }
}

TEST(Mouse, HasClipboardAndRowCommandsWithTheirKeysInItsMenu) {
    TTextView text(Three);
    text.View.SelectRow(text.Row(0), seFirstChunk);
    QContextMenuEvent menuEvent(QContextMenuEvent::Mouse, QPoint(2, 2), text.View.mapToGlobal(QPoint(2, 2)));
    QApplication::sendEvent(&text.View, &menuEvent);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    QStringList captions;
    for (const QAction* action : menu->actions()) {
        if (!action->isSeparator())
            captions.append(action->text() + QLatin1Char(' ') + action->shortcut().toString());
    }
    EXPECT_EQ(captions.join(QStringLiteral(", ")),
              QStringLiteral("Undo Ctrl+Z, Cut Ctrl+X, Copy Ctrl+C, Paste Ctrl+V, Select All Ctrl+A, "
                             "Insert Row Ins, Delete Row Ctrl+Del"));
    menu->close();
}

TEST(Mouse, GivesTheRowCommandsOfItsMenuToTheSource) {
    TTextView text(Three);
    text.View.SelectRow(text.Row(1), seHide);
    const auto choose = [&](const char* ACaption) {
        QContextMenuEvent menuEvent(QContextMenuEvent::Mouse, QPoint(2, 2),
                                    text.View.mapToGlobal(QPoint(2, 2)));
        QApplication::sendEvent(&text.View, &menuEvent);
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        for (QAction* action : menu->actions()) {
            if (action->text() == QLatin1String(ACaption))
                QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier,
                                  menu->actionGeometry(action).center());
        }
    };
    choose("Insert Row");
    choose("Delete Row");
    EXPECT_EQ(text.Source.Keys, (std::vector<int>{Qt::Key_Insert, Qt::Key_Delete}));
}

TEST(Mouse, OpensTheMenuOfTheKeyboardBelowTheSelectedRow) {
    TTextView text(Three);
    text.View.SelectRow(text.Row(1), seHide);
    QContextMenuEvent menuEvent(QContextMenuEvent::Keyboard, QPoint(300, 250),
                                text.View.mapToGlobal(QPoint(300, 250)));
    QApplication::sendEvent(&text.View, &menuEvent);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->pos(), text.View.mapToGlobal(QPoint(0, 2 * text.View.RowHeight())));
    menu->close();
}

TEST(Mouse, OffersNoNewRowWhereNoneIsSelected) {
    TTextView text(Three);
    EXPECT_FALSE(text.View.CanInsertRow());
    text.View.SelectRow(text.Row(0), seHide);
    EXPECT_TRUE(text.View.CanInsertRow());
}
