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

TEST_F(Repaint, ShowsTheWholeScrollBarWhereAStyleSheetPaintsIt) {
    Bar()->setStyleSheet(QStringLiteral("QScrollBar::add-page { background: red } "
                                        "QScrollBar::sub-page { background: green } "
                                        "QScrollBar::handle { background: blue }"));
    ExpectAsPaintedAnew();
    Text.View.ScrollTo(Text.View.ContentHeight() / 2);
    ExpectAsPaintedAnew();
}
