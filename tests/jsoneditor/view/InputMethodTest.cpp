// Input methods and dead keys in the in-place editor.
#include "tests/jsoneditor/view/TextView.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QTest>

#include <gtest/gtest.h>

namespace {

/// What an input method sends to whatever has the focus.
void Compose(const QString& APreedit, const QString& ACommit = {}) {
    QInputMethodEvent event(APreedit, {});
    event.setCommitString(ACommit);
    QApplication::sendEvent(QApplication::focusObject(), &event);
}

class InputMethod : public testing::Test {
protected:
    InputMethod() { Text.View.SelectRow(Text.Row(0), seFirstChunk); }
    const TZORowChunk* Chunk(int AIndex) const { return Text.Row(0)->Layout()->GetChunks(AIndex); }

    TTextView Text{QStringLiteral("  [ab] : [value]\n  [second]\n")};
};

} // namespace

TEST_F(InputMethod, IsWantedByTheEditorOnly) {
    EXPECT_TRUE(Text.View.Editor()->inputMethodQuery(Qt::ImEnabled).toBool());
    EXPECT_FALSE(Text.View.inputMethodQuery(Qt::ImEnabled).toBool());
}

TEST_F(InputMethod, CommitsIntoTheText) {
    Text.Press(QStringLiteral("End"));
    Compose(QStringLiteral("に"));
    Compose(QStringLiteral("にほ"));
    Compose({}, QStringLiteral("日本"));
    Text.Expect(QString::fromUtf8("> {ab日本|}* : [value]\n  [second]\n"));
    Text.Press(QStringLiteral("Return"));
    EXPECT_EQ(Text.Source.Edits, QStringList{QString::fromUtf8("0 1 ab日本")});
}

TEST_F(InputMethod, TakesTheCharacterOfADeadKey) {
    Text.Press(QStringLiteral("End"));
    QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(), Qt::Key_Dead_Acute, QString(),
                        Qt::NoModifier);
    Compose({}, QStringLiteral("é"));
    Text.Expect(QString::fromUtf8("> {abé|}* : [value]\n  [second]\n"));
}

TEST_F(InputMethod, PushesTheRestOfTheRowAlongWhileComposing) {
    Text.Press(QStringLiteral("End"));
    const int before = Chunk(1)->Bounds().left();
    Compose(QStringLiteral("xyz"));
    const int width = Text.View.fontMetrics().horizontalAdvance(QStringLiteral("abxyz"));
    EXPECT_EQ(Chunk(0)->Bounds().width(), width);
    EXPECT_GT(Chunk(1)->Bounds().left(), before);
    EXPECT_GE(Text.View.Editor()->width(), width);
    EXPECT_EQ(Text.View.Editor()->text(), QStringLiteral("ab"));
    EXPECT_FALSE(Text.View.EditorModified());
    Compose({});
    EXPECT_EQ(Chunk(1)->Bounds().left(), before);
    EXPECT_FALSE(Text.View.EditorModified()) << "given up: nothing was changed";
}

TEST_F(InputMethod, ComposesInTheMiddleOfTheText) {
    Text.Press(QStringLiteral("Home Right"));
    Compose(QStringLiteral("x"));
    EXPECT_EQ(Text.View.Editor()->ComposedText(), QStringLiteral("axb"));
    Compose({}, QStringLiteral("X"));
    Text.Expect(QStringLiteral("> {aX|b}* : [value]\n  [second]\n"));
}

TEST_F(InputMethod, GoesOnThroughAnUpdateOfTheView) {
    Text.Press(QStringLiteral("End"));
    Compose(QStringLiteral("x"));
    Text.View.InvalidateAllLayouts();
    EXPECT_TRUE(Text.View.Editor()->Composing());
    Compose({}, QStringLiteral("X"));
    Text.Expect(QStringLiteral("> {abX|}* : [value]\n  [second]\n"));
}

TEST_F(InputMethod, AppliesWhatIsBeingComposedWhenTheUserGoesOn) {
    Text.Press(QStringLiteral("End"));
    Compose(QStringLiteral("x"));
    Text.Click(QPoint(390, Text.View.RowHeight() + 5));
    EXPECT_EQ(Text.Source.Edits, QStringList{QStringLiteral("0 1 abx")});
    Text.Expect(QStringLiteral("  [abx] : [value]\n> [second]\n"));
}

TEST_F(InputMethod, DropsWhatIsBeingComposedWithEscape) {
    Text.Press(QStringLiteral("End"));
    Compose(QStringLiteral("x"));
    Text.Press(QStringLiteral("Esc"));
    EXPECT_TRUE(Text.Source.Edits.isEmpty());
    Text.View.SelectRow(Text.Row(1), seFirstChunk);
    EXPECT_FALSE(Text.View.Editor()->Composing());
    Text.Expect(QStringLiteral("  [ab] : [value]\n> {<second>}\n"));
}
