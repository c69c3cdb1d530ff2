// The keyboard map: rows before, keys, rows after. A chunk in braces is under the editor.
#include "tests/jsoneditor/view/TextView.h"

#include <QShortcut>
#include <QTest>

#include <gtest/gtest.h>

namespace {

QString Rows(const char* AText) { return QString::fromUtf8(AText).mid(1); }

const char* const Three = R"(
> [a] : [1]
  [b] : [2]
  [c] : [3]
)";

} // namespace

TEST(Keyboard, DownAndUpMoveTheSelectionAndTheEditor) {
    TTextView text(Rows(Three));
    text.Press(QStringLiteral("Down"));
    text.Expect(Rows(R"(
  [a] : [1]
> {<b>} : [2]
  [c] : [3]
)"));
    text.Press(QStringLiteral("Tab Down"));
    text.Expect(Rows(R"(
  [a] : [1]
  [b] : [2]
> [c] : {<3>}
)"));
    text.Press(QStringLiteral("Up Up"));
    text.Expect(Rows(R"(
> [a] : {<1>}
  [b] : [2]
  [c] : [3]
)"));
    EXPECT_TRUE(text.Host.Keys.empty());
}

TEST(Keyboard, KeepsTheColumnWhereTheNewRowHasItElseTakesTheFirst) {
    TTextView text(Rows("\n> [a] : [1]\n  [b]\n  c : [3]\n"));
    text.View.SelectRow(text.Row(0), seLastChunk);
    text.Press(QStringLiteral("Down"));
    text.Expect(Rows("\n  [a] : [1]\n> {<b>}\n  c : [3]\n"));
    text.Press(QStringLiteral("Down"));
    text.Expect(Rows("\n  [a] : [1]\n  [b]\n> c : {<3>}\n"));
}

TEST(Keyboard, LeavesDownOnTheLastRowToTheHost) {
    TTextView text(Rows(Three));
    text.View.SelectRow(text.Row(2), seHide);
    text.Press(QStringLiteral("Down"));
    text.Expect(Rows("\n  [a] : [1]\n  [b] : [2]\n> [c] : [3]\n"));
    EXPECT_EQ(text.Host.Keys, std::vector<int>{Qt::Key_Down});
}

TEST(Keyboard, LeavesUpOnTheFirstRowToTheHost) {
    TTextView text(Rows(Three));
    text.Press(QStringLiteral("Up"));
    text.Expect(Rows(Three));
    EXPECT_EQ(text.Host.Keys, std::vector<int>{Qt::Key_Up});
}

TEST(Keyboard, LeavesUpAndDownToTheHostWhileNothingIsSelected) {
    TTextView text(QStringLiteral("  [a]\n  [b]\n"));
    text.Press(QStringLiteral("Down Up"));
    text.Expect(QStringLiteral("  [a]\n  [b]\n"));
    EXPECT_EQ(text.Host.Keys, (std::vector<int>{Qt::Key_Down, Qt::Key_Up}));
}

TEST(Keyboard, GoesToTheEndsWithCtrlOnly) {
    TTextView text(Rows(Three));
    text.Press(QStringLiteral("Ctrl+End"));
    text.Expect(Rows("\n  [a] : [1]\n  [b] : [2]\n> {<c>} : [3]\n"));
    text.Press(QStringLiteral("Ctrl+Home"));
    text.Expect(Rows("\n> {<a>} : [1]\n  [b] : [2]\n  [c] : [3]\n"));
    EXPECT_TRUE(text.Host.Keys.empty());
    text.Press(QStringLiteral("Escape Home End"));
    text.Expect(Rows(Three));
    EXPECT_EQ(text.Host.Keys, (std::vector<int>{Qt::Key_Home, Qt::Key_End}));
}

TEST(Keyboard, LeavesCtrlHomeToTheHostWhereThereAreNoRows) {
    TTextView text(QString{});
    text.Press(QStringLiteral("Ctrl+Home Ctrl+End"));
    EXPECT_EQ(text.Host.Keys, (std::vector<int>{Qt::Key_Home, Qt::Key_End}));
}

TEST(Keyboard, WalksTheEditableChunksWithTab) {
    TTextView text(Rows("\n> [a] : [1]\n  fixed\n  [c] : [3]\n"));
    text.Press(QStringLiteral("Tab"));
    text.Expect(Rows("\n  [a] : [1]\n> fixed\n  [c] : [3]\n"));
    text.Press(QStringLiteral("Tab"));
    text.Expect(Rows("\n  [a] : [1]\n  fixed\n> {<c>} : [3]\n"));
    text.Press(QStringLiteral("Tab"));
    text.Expect(Rows("\n  [a] : [1]\n  fixed\n> [c] : {<3>}\n"));
    EXPECT_TRUE(text.Host.Keys.empty());
}

TEST(Keyboard, StaysWithTabOnTheLastChunkOfTheLastRow) {
    TTextView text(Rows(Three));
    text.View.SelectRow(text.Row(2), seLastChunk);
    const QString last = Rows("\n  [a] : [1]\n  [b] : [2]\n> [c] : {<3>}\n");
    text.Expect(last);
    text.Press(QStringLiteral("Tab"));
    text.Expect(last);
    EXPECT_TRUE(text.View.Focused());
    EXPECT_TRUE(text.Host.Keys.empty());
}

TEST(Keyboard, AppliesTheEditWithTabOnTheLastChunkOfTheLastRow) {
    TTextView text(QStringLiteral("> [a]\n"));
    text.View.SelectRow(text.Row(0), seFirstChunk);
    text.Press(QStringLiteral("'new' Tab"));
    text.Expect(QStringLiteral("> {<new>}\n"));
    EXPECT_EQ(text.Source.Edits, QStringList{QStringLiteral("0 1 new")});
}

TEST(Keyboard, WalksBackwardsWithShiftTab) {
    TTextView text(Rows(Three));
    text.View.SelectRow(text.Row(1), seFirstChunk);
    text.Press(QStringLiteral("Shift+Tab"));
    text.Expect(Rows("\n> [a] : {<1>}\n  [b] : [2]\n  [c] : [3]\n"));
    text.Press(QStringLiteral("Shift+Tab"));
    text.Expect(Rows("\n> {<a>} : [1]\n  [b] : [2]\n  [c] : [3]\n"));
    text.Press(QStringLiteral("Shift+Tab"));
    text.Expect(Rows("\n> {<a>} : [1]\n  [b] : [2]\n  [c] : [3]\n"));
    EXPECT_TRUE(text.Host.Keys.empty());
}

TEST(Keyboard, LeavesTabToTheHostWhileNothingIsSelected) {
    TTextView text(QStringLiteral("  [a]\n"));
    QLineEdit next(&text.Host);
    next.show();
    text.Press(QStringLiteral("Tab"));
    EXPECT_TRUE(next.hasFocus());
}

TEST(Keyboard, HidesTheEditorWithTabWhenTheSelectedRowIsOutOfSight) {
    QString rows = QStringLiteral("> [first] : [1]\n");
    for (int i = 0; i < 100; ++i)
        rows += QStringLiteral("  [row]\n");
    TTextView text(rows);
    text.View.SelectRow(text.Row(0), seFirstChunk);
    text.View.ScrollTo(1000);
    ASSERT_EQ(text.Row(0)->Layout(), nullptr);
    text.Press(QStringLiteral("Tab"));
    EXPECT_EQ(text.View.Selected(), text.Row(0));
    EXPECT_FALSE(text.View.EditorShown());
    EXPECT_EQ(text.View.YScroll(), 0);
    EXPECT_TRUE(text.Host.Keys.empty());
}

TEST(Keyboard, HidesAnUnchangedEditorWithEnter) {
    TTextView text(Rows(Three));
    text.View.SelectRow(text.Row(0), seFirstChunk);
    text.Press(QStringLiteral("Return"));
    text.Expect(Rows(Three));
    EXPECT_TRUE(text.Source.Edits.isEmpty());
    EXPECT_TRUE(text.Host.Keys.empty());
    EXPECT_TRUE(text.View.hasFocus());
}

TEST(Keyboard, TakesTheEnterOfTheKeypadForTheSame) {
    TTextView text(Rows(Three));
    text.View.SelectRow(text.Row(0), seFirstChunk);
    QTest::keyClick(text.View.Editor(), Qt::Key_Enter, Qt::KeypadModifier);
    text.Expect(Rows(Three));
    EXPECT_EQ(text.Source.Keys, std::vector<int>{Qt::Key_Return});
}

TEST(Keyboard, AppliesTypedTextWithEnter) {
    TTextView text(Rows(Three));
    text.View.SelectRow(text.Row(0), seFirstChunk);
    text.Press(QStringLiteral("'new'"));
    text.Expect(Rows("\n> {new|}* : [1]\n  [b] : [2]\n  [c] : [3]\n"));
    text.Press(QStringLiteral("Return"));
    text.Expect(Rows("\n> [new] : [1]\n  [b] : [2]\n  [c] : [3]\n"));
    EXPECT_EQ(text.Source.Edits, QStringList{QStringLiteral("0 1 new")});
}

TEST(Keyboard, StaysInTheEditorWithARefusedTextSelected) {
    for (const QString& key : {QStringLiteral("Return"), QStringLiteral("Down"), QStringLiteral("Tab"),
                               QStringLiteral("Ctrl+End")}) {
        TTextView text(Rows(Three));
        text.View.SelectRow(text.Row(0), seFirstChunk);
        text.Press(QStringLiteral("'bad' ") + key);
        text.Expect(Rows("\n> {<bad>}* : [1]\n  [b] : [2]\n  [c] : [3]\n"));
        EXPECT_EQ(text.Shown, QStringList{QStringLiteral("\"bad\" is refused")}) << key.toStdString();
        EXPECT_TRUE(text.View.Editor()->hasFocus());
        // Only Enter is left to the host then.
        EXPECT_EQ(text.Host.Keys.size(), key == QStringLiteral("Return") ? 1u : 0u) << key.toStdString();
    }
}

TEST(Keyboard, DiscardsTypedTextWithEscapeAndConsumesItAlways) {
    TTextView text(Rows(Three));
    text.View.SelectRow(text.Row(0), seFirstChunk);
    text.Press(QStringLiteral("'new' Escape"));
    text.Expect(Rows(Three));
    EXPECT_TRUE(text.Source.Edits.isEmpty());
    text.Press(QStringLiteral("Escape"));
    EXPECT_TRUE(text.Host.Keys.empty());
}

TEST(Keyboard, ConsumesEscapeWithAnUnchangedEditorAndWithNothingSelected) {
    TTextView text(QStringLiteral("  [a]\n  [b]\n"));
    text.Press(QStringLiteral("Escape"));
    text.View.SelectRow(text.Row(1), seFirstChunk);
    text.Press(QStringLiteral("Escape"));
    text.Expect(QStringLiteral("  [a]\n> [b]\n"));
    EXPECT_TRUE(text.Host.Keys.empty());
}

TEST(Keyboard, OffersEachKeyToTheSourceOnce) {
    TTextView text(Rows(Three));
    text.View.SelectRow(text.Row(0), seFirstChunk);
    text.Press(QStringLiteral("F5 Ins PgUp Up x"));
    EXPECT_EQ(text.Source.Keys,
              (std::vector<int>{Qt::Key_F5, Qt::Key_Insert, Qt::Key_PageUp, Qt::Key_Up, Qt::Key_X}));
    EXPECT_EQ(text.Host.Keys, (std::vector<int>{Qt::Key_F5, Qt::Key_Insert, Qt::Key_PageUp, Qt::Key_Up}));
}

TEST(Keyboard, LeavesOutWhatTheSourceConsumes) {
    TTextView text(Rows(Three));
    text.Source.KeyToConsume = Qt::Key_Down;
    text.Press(QStringLiteral("Down"));
    text.Expect(Rows(Three));
    EXPECT_TRUE(text.Host.Keys.empty());
}

TEST(Keyboard, ShowsWhatTheSourceRaisesForAKey) {
    class TRaising : public TTextSource {
    public:
        using TTextSource::TTextSource;
        void KeyDown(int&, Qt::KeyboardModifiers) override { throw EZORestView(QStringLiteral("no keys")); }
    };
    TTextView text(QString{});
    TRaising source(QStringLiteral("[a]"));
    text.View.SetDataSource(&source);
    text.Press(QStringLiteral("F5"));
    EXPECT_EQ(text.Shown, QStringList{QStringLiteral("no keys")});
    EXPECT_TRUE(text.Host.Keys.empty());
    text.View.SetDataSource(nullptr);
}

TEST(Keyboard, GoesBeforeTheShortcutsOfTheHost) {
    int fired = 0;
    TTextView text(Rows(Three));
    for (const char* keys : {"Down", "Return", "Esc", "Tab", "Ctrl+End", "Ins", "Ctrl+Del", "F5"}) {
        auto* shortcut = new QShortcut(QKeySequence(QString::fromLatin1(keys)), &text.Host);
        QObject::connect(shortcut, &QShortcut::activated, &text.Host, [&] { ++fired; });
    }
    QTest::keyClick(text.Host.windowHandle(), Qt::Key_Down);
    text.Expect(Rows("\n  [a] : [1]\n> {<b>} : [2]\n  [c] : [3]\n"));
    for (Qt::Key key : {Qt::Key_Insert, Qt::Key_F5, Qt::Key_Tab, Qt::Key_Return, Qt::Key_Escape})
        QTest::keyClick(text.Host.windowHandle(), key);
    QTest::keyClick(text.Host.windowHandle(), Qt::Key_Delete, Qt::ControlModifier);
    EXPECT_EQ(fired, 0);
    EXPECT_EQ(text.Source.Keys.size(), 7u);
}

TEST(Keyboard, LeavesOtherShortcutsToTheHost) {
    int fired = 0;
    TTextView text(Rows(Three));
    QShortcut shortcut(QKeySequence(QStringLiteral("Ctrl+E")), &text.Host);
    QObject::connect(&shortcut, &QShortcut::activated, &text.Host, [&] { ++fired; });
    QTest::keyClick(text.Host.windowHandle(), Qt::Key_E, Qt::ControlModifier);
    EXPECT_EQ(fired, 1);
}

TEST(Keyboard, DoesNotFollowARowThatItsOwnEditFreed) {
    TTextView text(Rows(Three));
    text.View.SelectRow(text.Row(0), seFirstChunk);
    text.Source.OnEdited = [&](TZOViewRow* ARow) { delete ARow->Next(); };
    text.Press(QStringLiteral("'new' Down"));
    text.Expect(Rows("\n> [new] : [1]\n  [c] : [3]\n"));
}

TEST(Keyboard, CtrlEnterIsTheHostsWhereItHasAShortcut) {
    TTextView text(QStringLiteral("  [one]\n> [two]\n"));
    QShortcut shortcut(QKeySequence(QStringLiteral("Ctrl+Return")), &text.Host);
    int count = 0;
    QObject::connect(&shortcut, &QShortcut::activated, [&] { ++count; });
    text.Source.Keys.clear();
    QTest::keyClick(text.Host.windowHandle(), Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(count, 1);
    EXPECT_TRUE(text.Source.Keys.empty());
}
