// PageUp and PageDown move the selection by what is in sight, less one row.
#include "tests/jsoneditor/view/TextView.h"

#include <QScrollArea>
#include <QShortcut>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class PageKeys : public testing::Test {
protected:
    int Selected() const { return Text.View.IndexOfRow(Text.View.Selected()); }
    int Page() const { return Text.View.ClientRect().height() / Text.View.RowHeight() - 1; }

    TTextView Text{NumberedRows(100)};
};

} // namespace

TEST_F(PageKeys, MoveTheSelectionByAPage) {
    Text.View.SelectRow(Text.Row(0), seHide);
    Text.Press(QStringLiteral("PgDown"));
    EXPECT_EQ(Selected(), Page());
    EXPECT_TRUE(Text.View.Editor()->IsShownAt(Text.Row(Page()), 1)) << "as Down does";
    Text.Press(QStringLiteral("PgDown PgDown PgUp"));
    EXPECT_EQ(Selected(), 2 * Page());
    EXPECT_TRUE(Text.Host.Keys.empty());
}

TEST_F(PageKeys, BringTheNewRowIntoSight) {
    Text.View.SelectRow(Text.Row(0), seHide);
    Text.Press(QStringLiteral("PgDown PgDown"));
    EXPECT_TRUE(Text.View.ClientRect().contains(Text.View.Selected()->Layout()->Bounds()));
}

TEST_F(PageKeys, StopAtTheEndsAndLeaveTheKeyToTheHostThere) {
    Text.View.SelectRow(Text.Row(98), seHide);
    Text.Press(QStringLiteral("PgDown"));
    EXPECT_EQ(Selected(), 99);
    EXPECT_TRUE(Text.Host.Keys.empty());
    Text.Press(QStringLiteral("PgDown"));
    EXPECT_EQ(Selected(), 99);
    EXPECT_EQ(Text.Host.Keys, std::vector<int>{Qt::Key_PageDown});
    Text.View.SelectRow(Text.Row(1), seHide);
    Text.Press(QStringLiteral("PgUp PgUp"));
    EXPECT_EQ(Selected(), 0);
    EXPECT_EQ(Text.Host.Keys.back(), Qt::Key_PageUp);
}

TEST_F(PageKeys, AreTheHostsWhileNothingIsSelectedAndWithCtrl) {
    Text.Press(QStringLiteral("PgDown"));
    EXPECT_EQ(Text.View.Selected(), nullptr);
    Text.View.SelectRow(Text.Row(5), seHide);
    Text.Press(QStringLiteral("Ctrl+PgDown"));
    EXPECT_EQ(Selected(), 5);
    EXPECT_EQ(Text.Host.Keys.size(), 2u);
}

TEST_F(PageKeys, GoBeforeTheShortcutsOfTheHost) {
    int taken = 0;
    QShortcut shortcut(QKeySequence(Qt::Key_PageDown), &Text.Host, [&] { ++taken; });
    Text.View.SelectRow(Text.Row(0), seHide);
    Text.Press(QStringLiteral("PgDown"));
    EXPECT_EQ(taken, 0);
    EXPECT_EQ(Selected(), Page());
}

TEST_F(PageKeys, StayWhereAnEditIsRefused) {
    Text.View.SelectRow(Text.Row(0), seFirstChunk);
    Text.Press(QStringLiteral("'bad' PgDown"));
    EXPECT_EQ(Selected(), 0);
    EXPECT_EQ(Text.Shown.size(), 1);
    EXPECT_TRUE(Text.View.EditorModified());
}

TEST(PageKeysInAScrollArea, GoByWhatTheScrollAreaShows) {
    TTextSource source(NumberedRows(200));
    QScrollArea area;
    auto* view = new TZORestView;
    view->SetAutoSize(true);
    view->SetDataSource(&source);
    area.setWidgetResizable(true);
    area.setWidget(view);
    area.resize(400, 300);
    area.show();
    area.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&area));
    view->setFocus();
    view->SelectRow(view->RowAt(0), seHide);
    const int page = area.viewport()->height() / view->RowHeight() - 1;
    for (int i = 1; i <= 3; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_PageDown);
        EXPECT_EQ(view->IndexOfRow(view->Selected()), i * page);
        EXPECT_TRUE(view->ExposedRect().contains(view->Selected()->Layout()->Bounds().center()));
    }
    view->SetDataSource(nullptr);
}
