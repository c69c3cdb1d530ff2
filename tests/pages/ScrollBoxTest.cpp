#include "pages/ScrollBox.h"

#include "tests/pages/Wheel.h"

#include <QScrollBar>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <gtest/gtest.h>

namespace {

/// Counts the wheel events that nobody inside wanted.
class TOutside : public QWidget {
public:
    int Count = 0;

protected:
    void wheelEvent(QWheelEvent*) override { ++Count; }
};

class ScrollBox : public testing::Test {
protected:
    ScrollBox() {
        auto* content = new QWidget;
        content->setMinimumHeight(500);
        Box = new TZOScrollBox;
        Box->setWidget(content);
        auto* layout = new QVBoxLayout(&Outside);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(Box);
        Outside.resize(300, 300);
        Outside.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&Outside));
    }

    void Wheel(int ADelta) { TurnWheel(Box->widget(), ADelta); }
    int Position() const { return Box->verticalScrollBar()->value(); }

    TOutside Outside;
    TZOScrollBox* Box;
};

} // namespace

TEST_F(ScrollBox, MovesBy96PixelsANotch) {
    Wheel(-120);
    EXPECT_EQ(Position(), 96);
    Wheel(-120);
    EXPECT_EQ(Position(), 192);
    Wheel(120);
    EXPECT_EQ(Position(), 96);
    Wheel(-240);
    EXPECT_EQ(Position(), 200); // the end
    EXPECT_EQ(Outside.Count, 0);
}

TEST_F(ScrollBox, AddsSmallDeltasUpToANotch) {
    for (int i = 0; i < 3; ++i)
        Wheel(-30);
    EXPECT_EQ(Position(), 0);
    Wheel(-30);
    EXPECT_EQ(Position(), 96);
    Wheel(-60);
    Wheel(60); // turning back starts anew
    EXPECT_EQ(Position(), 96);
    Wheel(60);
    EXPECT_EQ(Position(), 0);
    EXPECT_EQ(Outside.Count, 0);
}

TEST_F(ScrollBox, LeavesTheWheelToOthersAtItsEnds) {
    Wheel(120);
    EXPECT_EQ(Outside.Count, 1);
    Wheel(-240);
    Wheel(-240);
    EXPECT_EQ(Position(), 200);
    EXPECT_EQ(Outside.Count, 1);
    Wheel(-120);
    EXPECT_EQ(Outside.Count, 2);
}

TEST_F(ScrollBox, MovesTheSameWayUnderItsBar) {
    TurnWheel(Box->verticalScrollBar(), -120);
    EXPECT_EQ(Position(), 96);
}

TEST_F(ScrollBox, LeavesAWheelThatDoesNotTurnToOthers) {
    Wheel(-120);
    Wheel(0);
    EXPECT_EQ(Position(), 96);
    EXPECT_EQ(Outside.Count, 1);
    TurnWheel(Box->verticalScrollBar(), 0);
    EXPECT_EQ(Position(), 96);
}
