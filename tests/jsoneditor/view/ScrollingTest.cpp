// Scrolling of a view that is not auto-sized.
#include "tests/jsoneditor/view/TextView.h"

#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class Scrolling : public testing::Test {
protected:
    int Bottom() const { return Text.View.ContentHeight() - Text.View.height(); }
    QScrollBar* Bar() const { return Text.View.findChild<QScrollBar*>(); }
    int RowHeight() const { return Text.View.RowHeight(); }

    TTextView Text{NumberedRows(100)};
};

} // namespace

TEST_F(Scrolling, EndsWithTheContent) {
    Text.View.ScrollTo(1000000);
    EXPECT_EQ(Text.View.YScroll(), Bottom());
    Text.View.ScrollTo(Bottom() - 1);
    TurnWheel(&Text.View, -120);
    EXPECT_EQ(Text.View.YScroll(), Bottom());
    // Rows that go take the end with them.
    while (Text.View.GetRowCount() > 20)
        delete Text.View.GetLast();
    EXPECT_EQ(Text.View.YScroll(), 20 * RowHeight() - Text.View.height());
    Text.View.ScrollTo(-10);
    EXPECT_EQ(Text.View.YScroll(), 0);
}

TEST(ScrollingShortContent, StaysAtTheTop) {
    TTextView text(NumberedRows(3));
    text.View.ScrollTo(50);
    EXPECT_EQ(text.View.YScroll(), 0);
    TurnWheel(&text.View, -120);
    EXPECT_EQ(text.View.YScroll(), 0);
    EXPECT_EQ(text.Host.Wheels, 1);
    EXPECT_TRUE(text.View.findChild<QScrollBar*>()->isHidden());
}

TEST_F(Scrolling, LaysOutRowsThatShowOnePixel) {
    Text.View.resize(400, 5 * RowHeight());
    EXPECT_EQ(Text.View.Layouts().GetCount(), 5);
    Text.View.ScrollTo(1);
    EXPECT_EQ(Text.View.Layouts().GetCount(), 6);
    EXPECT_EQ(Text.View.Layouts().GetFirst()->Row(), Text.Row(0));
    Text.View.ScrollTo(RowHeight() - 1);
    EXPECT_NE(Text.Row(0)->Layout(), nullptr);
    EXPECT_NE(Text.Row(5)->Layout(), nullptr);
    Text.View.ScrollTo(RowHeight());
    EXPECT_EQ(Text.Row(0)->Layout(), nullptr);
    EXPECT_EQ(Text.View.Layouts().GetCount(), 5);
    EXPECT_EQ(Text.View.Layouts().GetFirst()->Bounds().top(), 0);
}

TEST_F(Scrolling, AsksOnlyForRowsThatComeIntoSight) {
    Text.View.resize(400, 5 * RowHeight());
    Text.Source.Configured = 0;
    Text.View.ScrollTo(2 * RowHeight());
    EXPECT_EQ(Text.Source.Configured, 2);
}

TEST_F(Scrolling, KeepsLayoutsInOrderOfTheirRows) {
    Text.View.ScrollTo(500);
    Text.View.ScrollTo(430);
    TZOViewRow* row = Text.View.Layouts().GetFirst()->Row();
    for (TZOViewRowLayout* layout = Text.View.Layouts().GetFirst(); layout; layout = layout->Next()) {
        EXPECT_EQ(layout->Row(), row);
        EXPECT_EQ(layout->Bounds().top(), Text.View.IndexOfRow(row) * RowHeight() - 430);
        row = row->Next();
    }
}

TEST_F(Scrolling, ShowsARowWithTheSmallestChange) {
    Text.View.resize(400, 5 * RowHeight());
    Text.View.ScrollTo(Text.Row(9));
    EXPECT_EQ(Text.View.YScroll(), 5 * RowHeight()) << "at the bottom edge";
    Text.View.ScrollTo(Text.Row(2));
    EXPECT_EQ(Text.View.YScroll(), 2 * RowHeight()) << "at the top edge";
}

TEST_F(Scrolling, DoesNothingForARowThatIsWhollyInSight) {
    Text.View.ScrollTo(40);
    QCoreApplication::processEvents();
    TPaintWatch watch(&Text.View);
    Text.View.ScrollTo(Text.Row(4));
    QCoreApplication::processEvents();
    EXPECT_EQ(Text.View.YScroll(), 40);
    EXPECT_EQ(watch.Paints, 0);
}

TEST_F(Scrolling, RunsATaskOnTheSizesOfTheUpdate) {
    Text.Source.Updating([&] {
        Text.View.SetScrollTask([&] { return Text.View.ContentHeight(); });
        for (int i = 0; i < 50; ++i)
            Text.Source.Add(TTextSource::MakeRow(QStringLiteral("[late]")));
    });
    EXPECT_EQ(Text.View.ContentHeight(), 150 * RowHeight());
    EXPECT_EQ(Text.View.YScroll(), Bottom());
}

TEST_F(Scrolling, GoesThreeWheelStepsDownAndUp) {
    TurnWheel(&Text.View, -120);
    EXPECT_EQ(Text.View.YScroll(), 96);
    TurnWheel(&Text.View, -240);
    EXPECT_EQ(Text.View.YScroll(), 288);
    TurnWheel(&Text.View, 120);
    EXPECT_EQ(Text.View.YScroll(), 192);
    EXPECT_EQ(Text.Host.Wheels, 0);
}

TEST_F(Scrolling, AddsPartsOfAWheelNotchUp) {
    for (int i = 0; i < 7; ++i)
        TurnWheel(&Text.View, -15);
    EXPECT_EQ(Text.View.YScroll(), 0);
    TurnWheel(&Text.View, -15);
    EXPECT_EQ(Text.View.YScroll(), 96);
    EXPECT_EQ(Text.Host.Wheels, 0);
}

TEST_F(Scrolling, LeavesTheWheelToTheHostAtEitherEnd) {
    TurnWheel(&Text.View, 120);
    EXPECT_EQ(Text.Host.Wheels, 1);
    Text.View.ScrollTo(Bottom());
    TurnWheel(&Text.View, -120);
    EXPECT_EQ(Text.Host.Wheels, 2);
    EXPECT_EQ(Text.View.YScroll(), Bottom());
}

TEST_F(Scrolling, OffersTheWheelToItsOwnHandlerFirst) {
    int offered = 0;
    Text.View.OnMouseWheelDown = [&](Qt::KeyboardModifiers, const QPoint&) { return ++offered == 1; };
    TurnWheel(&Text.View, -120);
    EXPECT_EQ(Text.View.YScroll(), 0);
    TurnWheel(&Text.View, -120);
    EXPECT_EQ(Text.View.YScroll(), 96);
    EXPECT_EQ(offered, 2);
}

TEST_F(Scrolling, TakesTheWheelOverItsBarAndItsEditor) {
    TurnWheel(Bar(), -120);
    EXPECT_EQ(Text.View.YScroll(), 96);
    Text.View.SelectRow(Text.Row(5), seFirstChunk);
    TurnWheel(Text.View.Editor(), -120);
    EXPECT_EQ(Text.View.YScroll(), 192);
}

TEST_F(Scrolling, KeepsItsBarWhereTheContentIs) {
    EXPECT_FALSE(Bar()->isHidden());
    EXPECT_EQ(Bar()->maximum(), Bottom());
    EXPECT_EQ(Bar()->pageStep(), Text.View.height());
    Text.View.ScrollTo(77);
    EXPECT_EQ(Bar()->value(), 77);
    EXPECT_EQ(Text.View.Layouts().GetFirst()->Bounds().width(), 400 - Bar()->width());
}

TEST_F(Scrolling, FollowsItsBar) {
    const std::vector<std::pair<QAbstractSlider::SliderAction, int>> steps = {
        {QAbstractSlider::SliderSingleStepAdd, 32},
        {QAbstractSlider::SliderPageStepAdd, 32 + Text.View.height()},
        {QAbstractSlider::SliderSingleStepSub, Text.View.height()},
        {QAbstractSlider::SliderPageStepSub, 0},
        {QAbstractSlider::SliderToMaximum, Bottom()},
        {QAbstractSlider::SliderToMinimum, 0},
    };
    for (const auto& [action, offset] : steps) {
        Bar()->triggerAction(action);
        EXPECT_EQ(Text.View.YScroll(), offset) << action;
        EXPECT_EQ(Bar()->value(), offset) << action;
    }
    Bar()->setSliderDown(true);
    Bar()->setSliderPosition(123);
    EXPECT_EQ(Text.View.YScroll(), 123);
}

TEST_F(Scrolling, CarriesTheEditorWithItsRow) {
    Text.View.SelectRow(Text.Row(3), seFirstChunk);
    const int top = Text.View.Editor()->y();
    Text.View.ScrollTo(20);
    EXPECT_EQ(Text.View.Editor()->y(), top - 20);
    Text.View.ScrollTo(2000);
    EXPECT_TRUE(Text.View.Editor()->geometry().isEmpty());
    EXPECT_EQ(Text.Row(3)->Layout(), nullptr);
    Text.View.ScrollTo(20);
    EXPECT_EQ(Text.View.Editor()->y(), top - 20);
    EXPECT_EQ(Text.View.Editor()->text(), QStringLiteral("row3"));
}
