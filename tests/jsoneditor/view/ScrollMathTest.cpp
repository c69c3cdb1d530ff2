#include "jsoneditor/view/ScrollMath_p.h"

#include <gtest/gtest.h>

TEST(ScrollMath, ClampsToTheContent) {
    const TZOScrollSizes sizes{0, 1000, 300};
    EXPECT_EQ(ClampScrollOffset(-5, sizes), 0);
    EXPECT_EQ(ClampScrollOffset(400, sizes), 400);
    EXPECT_EQ(ClampScrollOffset(900, sizes), 700);
    EXPECT_EQ(ClampScrollOffset(50, {0, 200, 300}), 0);
}

TEST(ScrollMath, ShowsARowWithTheSmallestChange) {
    const TZOScrollSizes sizes{100, 1000, 300};
    EXPECT_EQ(OffsetToShow(100, 30, sizes), 100) << "at the top edge";
    EXPECT_EQ(OffsetToShow(370, 30, sizes), 100) << "at the bottom edge";
    EXPECT_EQ(OffsetToShow(371, 30, sizes), 101) << "one pixel below";
    EXPECT_EQ(OffsetToShow(99, 30, sizes), 99) << "one pixel above";
    EXPECT_EQ(OffsetToShow(600, 400, sizes), 600) << "higher than the view: its top";
}

TEST(ScrollMath, FollowsEveryActionOfTheBar) {
    const TZOScrollSizes sizes{200, 1000, 300};
    const auto after = [&](QAbstractSlider::SliderAction AAction) {
        return OffsetAfterAction(AAction, 123, 32, sizes);
    };
    EXPECT_EQ(after(QAbstractSlider::SliderSingleStepSub), 168);
    EXPECT_EQ(after(QAbstractSlider::SliderSingleStepAdd), 232);
    EXPECT_EQ(after(QAbstractSlider::SliderPageStepSub), -100);
    EXPECT_EQ(after(QAbstractSlider::SliderPageStepAdd), 500);
    EXPECT_EQ(after(QAbstractSlider::SliderMove), 123);
    EXPECT_EQ(after(QAbstractSlider::SliderToMinimum), 0);
    EXPECT_EQ(after(QAbstractSlider::SliderToMaximum), 700);
    EXPECT_EQ(after(QAbstractSlider::SliderNoAction), 200);
}

TEST(ScrollMath, KeepsRowsThatShowOnePixel) {
    const auto rows = [](int ATop, int ABottom) {
        const TZORowRange range = RowsWithin(ATop, ABottom, 30, 100);
        return std::pair(range.First, range.Last);
    };
    EXPECT_EQ(rows(0, 300), std::pair(0, 9));
    EXPECT_EQ(rows(0, 301), std::pair(0, 10));
    EXPECT_EQ(rows(29, 300), std::pair(0, 9));
    EXPECT_EQ(rows(30, 300), std::pair(1, 9)) << "a row exactly above the edge is out";
    EXPECT_EQ(rows(2950, 4000), std::pair(98, 99));
    EXPECT_EQ(rows(-100, 20), std::pair(0, 0));
    const TZORowRange none = RowsWithin(100, 100, 30, 100);
    EXPECT_LT(none.Last, none.First);
    const TZORowRange above = RowsWithin(-100, -10, 30, 100);
    EXPECT_LT(above.Last, above.First);
    const TZORowRange empty = RowsWithin(0, 100, 30, 0);
    EXPECT_LT(empty.Last, empty.First);
}
