// Who has the focus, and what stays while it goes elsewhere.
#include "tests/jsoneditor/view/TextView.h"

#include <QApplication>
#include <QTest>

#include <gtest/gtest.h>

namespace {

const QString Two = QStringLiteral("  [name] : [value]\n  [second] : [2]\n");

} // namespace

TEST(Focus, IsTheViewsInItsEditorsToo) {
    TTextView text(Two);
    QLineEdit other(&text.Host);
    other.show();
    EXPECT_TRUE(text.View.Focused() && text.View.Active());
    text.View.SelectRow(text.Row(0), seFirstChunk);
    EXPECT_FALSE(text.View.hasFocus());
    EXPECT_TRUE(text.View.Focused() && text.View.Active());
    other.setFocus();
    EXPECT_FALSE(text.View.Focused() || text.View.Active());
}

TEST(Focus, GoesToAVisibleEditorFromTheView) {
    TTextView text(Two);
    QLineEdit other(&text.Host);
    other.show();
    text.View.SelectRow(text.Row(0), seFirstChunk);
    text.Press(QStringLiteral("'typed'"));
    other.setFocus();
    text.Expect(QStringLiteral("> {typed|}* : [value]\n  [second] : [2]\n"));
    text.View.setFocus();
    EXPECT_TRUE(text.View.Editor()->hasFocus());
    text.Expect(QStringLiteral("> {typed|}* : [value]\n  [second] : [2]\n"));
}

TEST(Focus, KeepsTheSelectionOfTheEditorWhenItLeaves) {
    TTextView text(Two);
    QLineEdit other(&text.Host);
    other.show();
    text.View.SelectRow(text.Row(0), seFirstChunk);
    other.setFocus();
    text.Expect(QStringLiteral("> {<name>} : [value]\n  [second] : [2]\n"));
}

TEST(Focus, NeverFlickersBetweenViewAndEditors) {
    TTextView text(Two);
    int inactive = 0;
    const auto watching = QObject::connect(qApp, &QApplication::focusChanged, &text.Host,
                                           [&] { inactive += !text.View.Active(); });
    text.View.SelectRow(text.Row(0), seFirstChunk);
    text.Press(QStringLiteral("Tab Down Return Tab Escape"));
    text.Click(text.ChunkPoint(0, 1));
    text.Click(text.ChunkPoint(1, 2));
    EXPECT_EQ(inactive, 0);
    QObject::disconnect(watching);
}

TEST(Focus, StaysActiveWhileAnotherWindowIsInFront) {
    TTextView text(Two);
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    EXPECT_FALSE(text.View.Focused());
    EXPECT_TRUE(text.View.Active());
}

TEST(Focus, StopsAtTheViewOnceWithTab) {
    TTextView text(Two);
    QLineEdit before(&text.Host);
    QLineEdit after(&text.Host);
    QWidget::setTabOrder(&before, &text.View);
    QWidget::setTabOrder(&text.View, &after);
    before.setGeometry(0, 250, 100, 30);
    after.setGeometry(200, 250, 100, 30);
    before.show();
    after.show();
    text.MoveMouse(text.ChunkPoint(0, 1));
    ASSERT_FALSE(text.View.Hover()->isHidden());
    before.setFocus();
    text.Press(QStringLiteral("Tab"));
    EXPECT_TRUE(text.View.hasFocus());
    text.Press(QStringLiteral("Tab"));
    EXPECT_TRUE(after.hasFocus());
}
