// A view that is as high as its content, inside a scroll area.
#include "tests/jsoneditor/view/TextView.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace {

/// As many rows as wanted, each showing its number.
class TManyRows : public TZODataSource {
public:
    explicit TManyRows(int ACount) : FCount(ACount) {}
    void RefreshContent() override {
        Clear();
        for (int i = 0; i < FCount; ++i)
            Add(new TZOViewRow(0));
    }
    void ConfigureRow(TZOViewRow* ARow, TZOViewRowLayout* ALayout) override {
        ++Configured;
        ALayout->AddChunk(1, QString::number(View()->IndexOfRow(ARow)), true, ctNormal);
    }
    int Configured = 0;

private:
    int FCount;
};

/// A label, a panel with the view in it, and another label, in a scroll area, as a page has them.
class TScrolledView {
public:
    explicit TScrolledView(int ARows) : Source(ARows) {
        QCursor::setPos(2000, 2000);
        Area.setWidgetResizable(true);
        auto* content = new QWidget;
        auto* stack = new QVBoxLayout(content);
        auto* header = new QLabel(QStringLiteral("Header"));
        header->setFixedHeight(200);
        stack->addWidget(header);
        Panel = new QWidget;
        auto* inside = new QVBoxLayout(Panel);
        View = new TZORestView;
        View->SetAutoSize(true);
        inside->addWidget(View);
        stack->addWidget(Panel);
        stack->addWidget(new QLabel(QStringLiteral("Footer")));
        stack->addStretch();
        Area.setWidget(content);
        Area.resize(500, 400);
        View->SetDataSource(&Source);
        Area.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&Area));
        Area.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&Area));
        Settle();
    }
    ~TScrolledView() { View->SetDataSource(nullptr); }

    void Settle() {
        EXPECT_TRUE(WaitFor(
            [this] { return View->ExposedRect().isValid() || Area.verticalScrollBar()->value() > 0; }));
        QCoreApplication::processEvents();
    }
    int First() const { return View->IndexOfRow(View->Layouts().GetFirst()->Row()); }
    int Last() const { return View->IndexOfRow(View->Layouts().GetLast()->Row()); }
    /// Whether every row with a pixel in sight has its layout at the right place.
    bool ExposedRowsAreLaidOut() const {
        const QRect exposed = View->ExposedRect();
        for (int i = 0; i < View->GetRowCount(); ++i) {
            const QRect row(0, i * View->RowHeight() - View->YScroll(), View->ClientRect().width(),
                            View->RowHeight());
            if (!row.intersects(exposed))
                continue;
            const TZOViewRowLayout* layout = View->RowAt(i)->Layout();
            if (!layout || layout->Bounds() != row)
                return false;
        }
        return !exposed.isEmpty();
    }
    /// Whether ARow stands whole within the scroll area's viewport.
    bool IsInSight(int ARow) const {
        const int top =
            View->mapTo(Area.viewport(), QPoint(0, ARow * View->RowHeight() - View->YScroll())).y();
        return top >= 0 && top + View->RowHeight() <= Area.viewport()->height();
    }

    TManyRows Source;
    QScrollArea Area;
    QWidget* Panel;
    TZORestView* View;
};

} // namespace

TEST(AutoSize, IsAsHighAsTheContent) {
    TScrolledView scrolled(1000);
    EXPECT_EQ(scrolled.View->height(), 1000 * scrolled.View->RowHeight());
    EXPECT_TRUE(scrolled.View->findChild<QScrollBar*>()->isHidden());
    scrolled.Source.Remove(scrolled.View->GetFirst());
    EXPECT_EQ(scrolled.View->height(), 999 * scrolled.View->RowHeight());
    scrolled.Source.Clear();
    EXPECT_EQ(scrolled.View->height(), 0);
}

TEST(AutoSize, LaysOutExposedRowsAndASmallMarginOnly) {
    TScrolledView scrolled(1000);
    EXPECT_TRUE(scrolled.ExposedRowsAreLaidOut());
    EXPECT_EQ(scrolled.First(), 0);
    EXPECT_LT(scrolled.View->Layouts().GetCount(), 400 / scrolled.View->RowHeight() + 12);
    EXPECT_LT(scrolled.Source.Configured, 60);
}

TEST(AutoSize, FollowsTheScrollAreaAroundIt) {
    TScrolledView scrolled(1000);
    QScrollBar* bar = scrolled.Area.verticalScrollBar();
    for (int value : {100, 5000, 5040, bar->maximum(), 200}) {
        bar->setValue(value);
        EXPECT_TRUE(scrolled.ExposedRowsAreLaidOut()) << value;
        EXPECT_LT(scrolled.View->Layouts().GetCount(), 400 / scrolled.View->RowHeight() + 12) << value;
    }
}

TEST(AutoSize, AsksOnlyForRowsThatTheScrollAreaBrings) {
    TScrolledView scrolled(1000);
    scrolled.Area.verticalScrollBar()->setValue(5000);
    scrolled.Source.Configured = 0;
    scrolled.Area.verticalScrollBar()->setValue(5000 + 3 * scrolled.View->RowHeight());
    EXPECT_EQ(scrolled.Source.Configured, 3);
}

TEST(AutoSize, FollowsTheSizeOfTheScrollArea) {
    TScrolledView scrolled(1000);
    const int before = scrolled.Last();
    scrolled.Area.resize(500, 800);
    EXPECT_TRUE(WaitFor([&] { return scrolled.Last() > before + 10; }));
    EXPECT_TRUE(scrolled.ExposedRowsAreLaidOut());
}

TEST(AutoSize, FollowsAPanelThatIsMovedToAnotherScrollArea) {
    QScrollArea other;
    TScrolledView scrolled(1000);
    other.resize(300, 300);
    other.setWidgetResizable(true);
    other.setWidget(scrolled.Panel);
    scrolled.Panel->show();
    other.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&other));
    other.verticalScrollBar()->setValue(9000);
    EXPECT_TRUE(scrolled.ExposedRowsAreLaidOut());
    EXPECT_GT(scrolled.First(), 100);
}

TEST(AutoSize, KeepsALayoutForTheSelectedRowAndTheOneBeingEdited) {
    TScrolledView scrolled(1000);
    scrolled.View->SelectRow(scrolled.View->RowAt(2), seFirstChunk);
    scrolled.Area.verticalScrollBar()->setValue(10000);
    EXPECT_NE(scrolled.View->RowAt(2)->Layout(), nullptr);
    EXPECT_EQ(scrolled.View->RowAt(3)->Layout(), nullptr);
    EXPECT_TRUE(scrolled.View->Editor()->IsShownAt(scrolled.View->RowAt(2), 1));
    EXPECT_EQ(scrolled.View->Editor()->text(), QStringLiteral("2"));
    EXPECT_EQ(scrolled.First(), 2) << "layouts stay in the order of their rows";
}

TEST(AutoSize, ShowsASelectedRowInTheScrollAreaFirst) {
    TScrolledView scrolled(1000);
    for (int row : {500, 999, 0, 40}) {
        scrolled.View->SelectRow(scrolled.View->RowAt(row), seFirstChunk);
        EXPECT_TRUE(scrolled.IsInSight(row)) << row;
        EXPECT_TRUE(scrolled.ExposedRowsAreLaidOut()) << row;
        EXPECT_TRUE(scrolled.View->Editor()->IsShownAt(scrolled.View->RowAt(row), 1)) << row;
        EXPECT_TRUE(scrolled.View->ExposedRect().contains(scrolled.View->Editor()->geometry())) << row;
    }
    const int value = scrolled.Area.verticalScrollBar()->value();
    scrolled.View->SelectRow(scrolled.View->RowAt(39), seHide);
    EXPECT_EQ(scrolled.Area.verticalScrollBar()->value(), value) << "in sight already";
}

TEST(AutoSize, ShowsARowThatWasAddedInTheSameBracket) {
    TScrolledView scrolled(1000);
    TZOViewRow* added = nullptr;
    scrolled.View->Updating([&] {
        for (int i = 0; i < 100; ++i)
            added = scrolled.Source.Add(new TZOViewRow(0));
        scrolled.View->SelectRow(added, seFirstChunk);
    });
    EXPECT_TRUE(scrolled.IsInSight(1099));
    EXPECT_TRUE(scrolled.View->Editor()->IsShownAt(added, 1));
}

TEST(AutoSize, LeavesTheWheelToTheScrollArea) {
    TScrolledView scrolled(1000);
    TurnWheel(scrolled.View, -120);
    EXPECT_EQ(scrolled.View->YScroll(), 0);
    EXPECT_GT(scrolled.Area.verticalScrollBar()->value(), 0);
}

TEST(AutoSize, DoesNotAskForRowsAgainWhenItsOwnHeightChanges) {
    TScrolledView scrolled(1000);
    scrolled.Source.Configured = 0;
    scrolled.Source.InsertAfter(scrolled.View->RowAt(2), new TZOViewRow(0));
    EXPECT_EQ(scrolled.Source.Configured, 1);
}

TEST(AutoSize, LetsGoOfItsHeightWhenSwitchedOff) {
    TScrolledView scrolled(1000);
    scrolled.View->SetAutoSize(false);
    EXPECT_EQ(scrolled.View->minimumHeight(), 0);
    EXPECT_EQ(scrolled.View->maximumHeight(), QWIDGETSIZE_MAX);
}

TEST(AutoSize, ScrollsByItselfPastTheGreatestHeight) {
    TScrolledView scrolled(10);
    const int rowHeight = scrolled.View->RowHeight();
    const int fitting = TZORestView::MaxAutoHeight / rowHeight;
    scrolled.Source.Updating([&] {
        while (scrolled.View->GetRowCount() < fitting)
            scrolled.Source.Add(new TZOViewRow(0));
    });
    EXPECT_EQ(scrolled.View->height(), fitting * rowHeight) << "the last height that fits";
    scrolled.View->SelectRow(scrolled.View->GetLast(), seFirstChunk);
    EXPECT_TRUE(scrolled.IsInSight(fitting - 1));

    scrolled.Source.Add(new TZOViewRow(0));
    scrolled.Settle();
    EXPECT_EQ(scrolled.View->height(), scrolled.Area.viewport()->height());
    EXPECT_EQ(scrolled.View->ContentHeight(), (fitting + 1) * rowHeight);
    EXPECT_FALSE(scrolled.View->findChild<QScrollBar*>()->isHidden());
    for (int row : {fitting, 0, 300000, fitting}) {
        scrolled.View->SelectRow(scrolled.View->RowAt(row), seFirstChunk);
        EXPECT_TRUE(scrolled.IsInSight(row)) << row;
        EXPECT_TRUE(scrolled.View->Editor()->IsShownAt(scrolled.View->RowAt(row), 1)) << row;
    }
    EXPECT_LT(scrolled.View->Layouts().GetCount(), 40);
    scrolled.View->ScrollTo(0);
    TurnWheel(scrolled.View, -120);
    EXPECT_EQ(scrolled.View->YScroll(), 96);

    scrolled.Area.resize(500, 700);
    EXPECT_TRUE(WaitFor([&] { return scrolled.View->height() == scrolled.Area.viewport()->height(); }));
    scrolled.Source.Remove(scrolled.View->GetLast());
    EXPECT_EQ(scrolled.View->height(), fitting * rowHeight) << "back to one height with the content";
    EXPECT_EQ(scrolled.View->YScroll(), 0);
}

TEST(AutoSize, CostsWhatIsShownAtAMillionRows) {
    TScrolledView scrolled(1000000);
    EXPECT_LT(scrolled.Source.Configured, 200);
    scrolled.View->SelectRow(scrolled.View->RowAt(777777), seFirstChunk);
    scrolled.Source.Configured = 0;
    QTest::keyClicks(scrolled.View->Editor(), QStringLiteral("abc"));
    EXPECT_EQ(scrolled.Source.Configured, 3);
    EXPECT_LT(scrolled.View->Layouts().GetCount(), 60);
    scrolled.Source.Clear();
    EXPECT_EQ(scrolled.View->GetRowCount(), 0);
}
