// What is painted again when little has changed.
#include "tests/jsoneditor/view/TextView.h"

#include <QCoreApplication>
#include <QImage>
#include <QScreen>
#include <QScrollBar>
#include <QWindow>

#include <gtest/gtest.h>

namespace {

QImage Plain(const QPixmap& APicture) { return APicture.toImage().convertToFormat(QImage::Format_RGB32); }

class Repaint : public testing::Test {
protected:
    void SetUp() override { QCoreApplication::processEvents(); }
    void ExpectAsPaintedAnew() {
        QCoreApplication::processEvents();
        EXPECT_EQ(Plain(Text.Host.screen()->grabWindow(Text.Host.winId())), Plain(Text.Host.grab()));
    }
    /// Everything that AAction makes the view paint.
    QRegion PaintedBy(const std::function<void()>& AAction) {
        TPaintWatch watch(&Text.View);
        AAction();
        QCoreApplication::processEvents();
        return watch.Painted;
    }
    QRect Place(int ARow) const { return Text.Row(ARow)->Layout()->Bounds(); }
    QScrollBar* Bar() const { return Text.View.findChild<QScrollBar*>(); }

    TTextView Text{NumberedRows(200)};
};

} // namespace

TEST_F(Repaint, ShowsTwoRowsAnewWhenTheSelectionMoves) {
    Text.View.SelectRow(Text.Row(3), seFirstChunk);
    QCoreApplication::processEvents();
    const QRegion painted = PaintedBy([&] { Text.Press(QStringLiteral("Down")); });
    EXPECT_EQ(painted, QRegion(Place(3)) + Place(4));
    ExpectAsPaintedAnew();
}

TEST_F(Repaint, ShowsTheSelectedRowAloneWhenTheFocusComesAndGoes) {
    Text.View.SelectRow(Text.Row(3), seHide);
    QWidget other(&Text.Host);
    other.setFocusPolicy(Qt::StrongFocus);
    other.setGeometry(Place(3));
    other.show();
    QCoreApplication::processEvents();
    const QRegion row = QRegion(Place(3));
    EXPECT_EQ(PaintedBy([&] { other.setFocus(); }), row);
    EXPECT_EQ(PaintedBy([&] { Text.View.setFocus(); }), row);
}

TEST_F(Repaint, CarriesThePictureAlongWhenTheSelectionScrolls) {
    const int last = Text.View.ClientRect().height() / Text.View.RowHeight() - 1;
    Text.View.SelectRow(Text.Row(last), seFirstChunk);
    QCoreApplication::processEvents();
    for (int i = 1; i < 4; ++i) {
        const QRegion painted = PaintedBy([&] { Text.Press(QStringLiteral("Down")); });
        ASSERT_GT(Text.View.YScroll(), 0);
        // The row that was left, where it stood and where it stands, and the one that came into sight.
        const QRegion rows = painted & Text.View.ClientRect();
        EXPECT_LE(rows.boundingRect().height(), 3 * Text.View.RowHeight());
        ExpectAsPaintedAnew();
    }
}

TEST_F(Repaint, CarriesTheRowsBelowAnInsertedOneAndARemovedOneAlong) {
    QRegion painted =
        PaintedBy([&] { Text.Source.InsertAfter(Text.Row(2), TTextSource::MakeRow(QStringLiteral("new"))); });
    EXPECT_EQ(painted & Text.View.ClientRect(), QRegion(Place(3)));
    ExpectAsPaintedAnew();
    painted = PaintedBy([&] { Text.Source.Remove(Text.Row(3)); });
    const int lastWhole = Text.View.ClientRect().height() / Text.View.RowHeight();
    EXPECT_GE((painted & Text.View.ClientRect()).boundingRect().top(), Place(lastWhole - 1).top());
    ExpectAsPaintedAnew();
}

TEST_F(Repaint, CarriesTheEditorsRowAlong) {
    Text.View.SelectRow(Text.Row(4), seFirstChunk);
    Text.MoveMouse(Text.ChunkPoint(6, 1));
    QCoreApplication::processEvents();
    Text.Source.InsertAfter(Text.Row(1), TTextSource::MakeRow(QStringLiteral("new")));
    ExpectAsPaintedAnew();
    Text.Source.Remove(Text.Row(0));
    ExpectAsPaintedAnew();
    Text.Press(QStringLiteral("'typed'"));
    Text.Source.Remove(Text.Row(1));
    ExpectAsPaintedAnew();
}

TEST_F(Repaint, ShowsARunOfRowsWhereItWasMovedTo) {
    Text.Source.MoveRangeAfter(Text.Row(6), Text.Row(1), Text.Row(2));
    ExpectAsPaintedAnew();
    Text.Source.MoveRangeBefore(Text.Row(0), Text.Row(3), Text.Row(7));
    ExpectAsPaintedAnew();
    // Further than it is long.
    Text.Source.MoveRangeAfter(Text.Row(5), Text.Row(0), Text.Row(0));
    ExpectAsPaintedAnew();
    // Out of sight and back.
    Text.Source.MoveRangeAfter(Text.Row(150), Text.Row(2), Text.Row(4));
    ExpectAsPaintedAnew();
    Text.Source.MoveRangeAfter(Text.Row(1), Text.Row(148), Text.Row(150));
    ExpectAsPaintedAnew();
}

TEST_F(Repaint, ShowsWhatChangedInOneGo) {
    Text.View.SelectRow(Text.Row(5), seFirstChunk);
    QCoreApplication::processEvents();
    Text.Source.BeginUpdate();
    Text.Source.InsertAfter(Text.Row(1), TTextSource::MakeRow(QStringLiteral("new")));
    Text.Source.Remove(Text.Row(4));
    Text.Source.Remove(Text.Row(4));
    Text.View.SelectRow(Text.Row(0), seHide);
    Text.View.ScrollTo(3 * Text.View.RowHeight());
    Text.Source.EndUpdate();
    ExpectAsPaintedAnew();
}

TEST_F(Repaint, ShowsTheEmptyGroundBelowRowsThatMovedUp) {
    while (Text.View.GetRowCount() > 6)
        Text.Source.Remove(Text.View.GetLast());
    ExpectAsPaintedAnew();
    Text.Source.Remove(Text.Row(2));
    ExpectAsPaintedAnew();
    Text.Source.InsertAfter(Text.Row(0), TTextSource::MakeRow(QStringLiteral("new")));
    ExpectAsPaintedAnew();
}

TEST_F(Repaint, ShowsOfTheScrollBarWhatHasMoved) {
    TPaintWatch watch(Bar());
    TurnWheel(&Text.View, -120);
    QCoreApplication::processEvents();
    ASSERT_GT(Bar()->value(), 0);
    EXPECT_FALSE(watch.Painted.isEmpty());
    EXPECT_LT(watch.Painted.boundingRect().height(), Bar()->height() * 2 / 3);
    ExpectAsPaintedAnew();
    Text.Press(QStringLiteral("Ctrl+End"));
    EXPECT_EQ(Bar()->value(), Bar()->maximum());
    ExpectAsPaintedAnew();
    TurnWheel(&Text.View, 120);
    ExpectAsPaintedAnew();
    Text.Press(QStringLiteral("Ctrl+Home"));
    ExpectAsPaintedAnew();
}

TEST(RepaintOfTheScrollBar, WaitsUntilItsSliderMoves) {
    TTextView text(NumberedRows(20000));
    QCoreApplication::processEvents();
    TPaintWatch watch(text.View.findChild<QScrollBar*>());
    text.Source.InsertAfter(text.Row(0), TTextSource::MakeRow(QStringLiteral("new")));
    QCoreApplication::processEvents();
    EXPECT_EQ(watch.Painted, QRegion());
    while (text.View.GetRowCount() > 14)
        text.Source.Remove(text.View.GetLast());
    QCoreApplication::processEvents();
    EXPECT_FALSE(watch.Painted.isEmpty());
    EXPECT_EQ(Plain(text.Host.screen()->grabWindow(text.Host.winId())), Plain(text.Host.grab()));
}

TEST_F(Repaint, ShowsTheWholeScrollBarWhereAStyleSheetPaintsIt) {
    Bar()->setStyleSheet(QStringLiteral("QScrollBar::add-page { background: red } "
                                        "QScrollBar::sub-page { background: green } "
                                        "QScrollBar::handle { background: blue }"));
    ExpectAsPaintedAnew();
    Text.View.ScrollTo(Text.View.ContentHeight() / 2);
    ExpectAsPaintedAnew();
}

TEST(RepaintOfTheEditor, ShowsItInItsPlaceAfterAnotherOneWasHiddenHalfOutOfSight) {
    TTextView text{NumberedRows(200)};
    const int whole = 5 * text.View.RowHeight();
    text.Host.resize(400, whole + text.View.RowHeight() / 2 + 1);
    text.View.setGeometry(text.Host.rect());
    QCoreApplication::processEvents();
    text.MoveMouse({text.ChunkPoint(5, 1).x(), text.View.height() - 1});
    ASSERT_TRUE(text.View.Hover()->isVisible());
    ASSERT_FALSE(text.View.rect().contains(text.View.Hover()->geometry()));
    text.Source.Remove(text.Row(5));
    QCoreApplication::processEvents();

    text.View.SelectRow(text.Row(198), seFirstChunk);
    // The wheel at the end wants more than there is, and gets it with the next row.
    TurnWheel(&text.View, -120);
    QCoreApplication::processEvents();
    const QRect place = text.View.Editor()->geometry();
    text.Source.InsertAfter(text.Row(1), TTextSource::MakeRow(QStringLiteral("new")));
    QCoreApplication::processEvents();
    EXPECT_EQ(text.View.Editor()->geometry(), place);
    EXPECT_EQ(Plain(text.Host.screen()->grabWindow(text.Host.winId())), Plain(text.Host.grab()));
}

TEST(RepaintOfTheMouseEditor, ShowsItsNextRowWhenRowsMoveUnderThePointer) {
    TTextView text(
        QStringLiteral("[aaaaaaaa] -\n  [bbbbbbbb] -\n    [cccccccc] -\n  [dddddddd] -\n[eeeeeeee] -"));
    for (int from : {1, 2, 3}) {
        text.MoveMouse(text.ChunkPoint(from, 1));
        QCoreApplication::processEvents();
        ASSERT_TRUE(text.View.Hover()->isVisible());
        text.Source.InsertAfter(text.Row(0), TTextSource::MakeRow(QStringLiteral("  [xxxxxxxx] -")));
        QCoreApplication::processEvents();
        EXPECT_EQ(Plain(text.Host.screen()->grabWindow(text.Host.winId())), Plain(text.Host.grab()));
    }
}
