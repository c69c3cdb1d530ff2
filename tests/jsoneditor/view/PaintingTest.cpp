#include "tests/jsoneditor/view/TextView.h"

#include <QFontMetrics>
#include <QImage>
#include <QTest>

#include <gtest/gtest.h>

namespace {

const QString Two = QStringLiteral("  [name] : [value]\n  [second] : [2]\n");

/// Every colour that is painted in AArea of AView.
QSet<QRgb> Colors(TZORestView& AView, const QRect& AArea) {
    const QImage image = AView.grab(AArea).toImage();
    QSet<QRgb> colors;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            colors.insert(image.pixel(x, y));
    }
    return colors;
}

/// The colours of marks, of which ordinary rows have none.
int Marks(TZORestView& AView, TZOViewRow* ARow) {
    int count = 0;
    for (const QRgb color : Colors(AView, ARow->Layout()->Bounds()))
        count += color == qRgb(0xFF, 0xE9, 0x9A) ? 1 : color == qRgb(0xFF, 0xB8, 0x4D) ? 10 : 0;
    return count;
}

class TTokenSource : public TZODataSource {
public:
    void RefreshContent() override { Add(new TZOViewRow(0)); }
    void ConfigureRow(TZOViewRow*, TZOViewRowLayout* ALayout) override {
        for (int token = ctNormal; token <= ctError + 1; ++token)
            ALayout->AddChunk(token, QStringLiteral("MMMM"), false, static_cast<TZOChunkToken>(token));
    }
};

} // namespace

TEST(Painting, TakesTheRowHeightFromTheFont) {
    const TTextView text(Two);
    EXPECT_EQ(text.View.font().family(), QStringLiteral("Courier New"));
    EXPECT_EQ(text.View.font().pointSize(), 10);
    EXPECT_EQ(text.View.TextHeight(), QFontMetrics(text.View.font()).height());
    EXPECT_EQ(text.View.RowHeight(), text.View.TextHeight() + 12);
    EXPECT_EQ(text.View.ContentHeight(), 2 * text.View.RowHeight());
}

TEST(Painting, PaintsEachTokenInItsColour) {
    TTextView text(QString{});
    TTokenSource source;
    text.View.SetDataSource(&source);
    text.View.SetColor(Qt::white);
    text.View.SetFontColor(QColor(0, 0, 1));
    text.View.SetGrayColor(QColor(100, 100, 100));
    const QColor wanted[] = {QColor(0, 0, 1), QColor(100, 100, 100), QColor(0, 102, 204), QColor(255, 0, 0)};
    const TZOViewRowLayout* layout = text.Row(0)->Layout();
    for (int token = ctNormal; token <= ctError; ++token) {
        const TZORowChunk* chunk = layout->GetChunks(token);
        EXPECT_EQ(text.View.GetChunkTextColor(chunk), wanted[token]);
        EXPECT_TRUE(Colors(text.View, chunk->Bounds()).contains(wanted[token].rgb())) << token;
    }
    const TZORowChunk* unknown = layout->GetChunks(ctError + 1);
    EXPECT_FALSE(text.View.GetChunkTextColor(unknown).isValid());
    EXPECT_EQ(Colors(text.View, unknown->Bounds()).size(), 1);
    text.View.SetDataSource(nullptr);
}

TEST(Painting, ShowsWhatWouldTurnTheTextAround) {
    const QString value = QString::fromUtf8("a\u202Eb\ac\uFEFF");
    TTextView acting(QStringLiteral("  [%1] : fixed\n").arg(value));
    TTextView shown(QString::fromUtf8("  [a\\u202Eb\u2407c\\uFEFF] : fixed\n"));
    EXPECT_EQ(acting.View.grab().toImage(), shown.View.grab().toImage());
    // Its own characters are what is edited.
    acting.View.SelectRow(acting.Row(0), seFirstChunk);
    EXPECT_EQ(acting.View.Editor()->text(), value);
}

TEST(Painting, FollowsThePaletteWhereNoColourWasSet) {
    TTextView text(Two);
    QPalette colors = text.View.palette();
    colors.setColor(QPalette::Base, QColor(1, 2, 3));
    colors.setColor(QPalette::Button, QColor(4, 5, 6));
    colors.setColor(QPalette::Disabled, QPalette::Text, QColor(7, 8, 9));
    text.Host.setPalette(colors);
    EXPECT_EQ(text.View.Color(), QColor(1, 2, 3));
    EXPECT_EQ(text.View.SelectedColor(), QColor(4, 5, 6));
    EXPECT_EQ(text.View.GrayColor(), QColor(7, 8, 9));
    EXPECT_EQ(text.View.ErrorColor(), QColor(255, 0, 0));
    EXPECT_EQ(text.View.SymbolColor(), QColor(0, 102, 204));
    EXPECT_EQ(Colors(text.View, QRect(300, 250, 20, 20)), QSet<QRgb>{QColor(1, 2, 3).rgb()});
}

TEST(Painting, MarksTheSelectedRowWhileActive) {
    TTextView text(Two);
    text.View.SetColor(Qt::white);
    text.View.SetSelectedColor(Qt::yellow);
    text.View.SelectRow(text.Row(1), seHide);
    const QRect first(300, 2, 20, 10);
    const QRect second = first.translated(0, text.View.RowHeight());
    EXPECT_EQ(Colors(text.View, first), QSet<QRgb>{QColor(Qt::white).rgb()});
    EXPECT_EQ(Colors(text.View, second), QSet<QRgb>{QColor(Qt::yellow).rgb()});
    QLineEdit other(&text.Host);
    other.show();
    other.setFocus();
    EXPECT_EQ(Colors(text.View, second), QSet<QRgb>{QColor(Qt::white).rgb()});
}

TEST(Painting, RepaintsForANewColourWithoutAskingForRowsAgain) {
    TTextView text(Two);
    text.View.SelectRow(text.Row(0), seFirstChunk);
    QPalette palette = text.View.palette();
    palette.setColor(QPalette::Button, QColor(9, 9, 9));
    text.View.setPalette(palette);
    text.MoveMouse(text.ChunkPoint(0, 3));
    ASSERT_TRUE(text.View.Hover()->IsShownAt(text.Row(0), 3));
    const TZOViewRowLayout* layout = text.Row(0)->Layout();
    text.Source.Configured = 0;
    TPaintWatch watch(&text.View);
    text.View.SetSelectedColor(Qt::yellow);
    EXPECT_TRUE(WaitFor([&] { return watch.Paints > 0; }));
    EXPECT_EQ(text.Source.Configured, 0);
    EXPECT_EQ(text.Row(0)->Layout(), layout);
    for (const TZOInplaceEditor* editor : {text.View.Editor(), text.View.Hover()})
        EXPECT_EQ(editor->palette().color(QPalette::Base), QColor(9, 9, 9));
    QCoreApplication::processEvents();
    watch.Paints = 0;
    text.View.SetSelectedColor(Qt::yellow);
    QCoreApplication::processEvents();
    EXPECT_EQ(watch.Paints, 0);
}

TEST(Painting, RepaintsOnlyTheRowThatIsTypedInto) {
    TTextView text(Two);
    text.View.SelectRow(text.Row(1), seFirstChunk);
    QCoreApplication::processEvents();
    TPaintWatch watch(&text.View);
    text.Press(QStringLiteral("'x'"));
    EXPECT_TRUE(WaitFor([&] { return watch.Paints > 0; }));
    EXPECT_EQ(watch.Painted.boundingRect(), text.Row(1)->Layout()->Bounds());
}

TEST(Painting, AsksForEveryRowAgainAfterAFontOrASize) {
    TTextView text(Two);
    text.Source.Configured = 0;
    QFont font = text.View.font();
    font.setPointSize(20);
    text.View.setFont(font);
    EXPECT_EQ(text.Source.Configured, 2);
    EXPECT_EQ(text.View.RowHeight(), QFontMetrics(font).height() + 12);
    EXPECT_EQ(text.View.Editor()->font().pointSize(), 20);
    text.Source.Configured = 0;
    text.View.resize(350, 280);
    EXPECT_EQ(text.Source.Configured, 2);
}

TEST(Painting, ReusesTheLayoutsThatAreStillGood) {
    TTextView text(Two);
    text.Source.Configured = 0;
    text.View.UpdateView();
    EXPECT_EQ(text.Source.Configured, 0);
    text.View.InvalidateLayout(text.Row(1));
    EXPECT_EQ(text.Source.Configured, 1);
}

TEST(Painting, PassesOnWhatTheSourceRaisesAndRecoversLater) {
    class TRaising : public TTextSource {
    public:
        using TTextSource::TTextSource;
        void ConfigureRow(TZOViewRow* ARow, TZOViewRowLayout* ALayout) override {
            if (Raise && View()->IndexOfRow(ARow) == 1)
                throw EZORestView(QStringLiteral("no chunks"));
            TTextSource::ConfigureRow(ARow, ALayout);
        }
        bool Raise = false;
    };
    TTextView text(QString{});
    TRaising source(QStringLiteral("[a]\n[b]\n[c]"));
    text.View.SetDataSource(&source);
    source.Raise = true;
    EXPECT_THROW(text.View.InvalidateAllLayouts(), EZORestView);
    EXPECT_TRUE(text.Shown.isEmpty());
    text.View.resize(300, 200);
    EXPECT_EQ(text.Shown, QStringList{QStringLiteral("no chunks")});
    source.Raise = false;
    text.View.UpdateView();
    EXPECT_EQ(text.View.Layouts().GetCount(), 3);
    text.View.SetDataSource(nullptr);
}

TEST(Painting, ShowsNothingBeforeTheWindowIsCreated) {
    TTextSource source(QStringLiteral("[a]\n[b]"));
    TZORestView view;
    view.SetDataSource(&source);
    view.SelectRow(view.RowAt(1), seFirstChunk);
    EXPECT_EQ(source.Configured, 0);
    EXPECT_EQ(view.Layouts().GetCount(), 0);
    view.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
    EXPECT_EQ(view.Layouts().GetCount(), 2);
    EXPECT_TRUE(view.Editor()->IsShownAt(view.RowAt(1), 1));
}

TEST(Painting, MarksATextWhereRowsShowIt) {
    TTextView text(QStringLiteral("  [one] [two]\n  [TWO]\n  [three]\n"));
    text.View.SetColor(Qt::white);
    text.View.SetFontColor(Qt::black);
    const auto marks = [&](int ARow) { return Marks(text.View, text.Row(ARow)); };
    EXPECT_EQ(marks(0) + marks(1) + marks(2), 0);
    text.View.SetMarks(QStringLiteral("two"), text.Row(1));
    EXPECT_EQ(marks(0), 1);
    EXPECT_EQ(marks(1), 10);
    EXPECT_EQ(marks(2), 0);
    text.View.SetMarks(QStringLiteral("thre"), nullptr);
    EXPECT_EQ(marks(0) + marks(1), 0);
    EXPECT_EQ(marks(2), 1);
    text.View.SetMarks(QString(), nullptr);
    EXPECT_EQ(marks(2), 0);
}

TEST(Painting, MarksTheEndOfARowThatHasTheTextBeyondIt) {
    TTextView text(QStringLiteral("  [") + QString(100, u'x') + QStringLiteral("needle]\n  [plain]\n"),
                   {200, 100});
    text.View.SetColor(Qt::white);
    text.View.SetFontColor(Qt::black);
    text.View.SetMarks(QStringLiteral("needle"), nullptr);
    EXPECT_EQ(Marks(text.View, text.Row(0)), 1);
}

TEST(Painting, ForgetsAMarkedRowThatGoes) {
    TTextView text(QStringLiteral("  [two]\n  [two]\n"));
    text.View.SetMarks(QStringLiteral("two"), text.Row(0));
    text.View.DataSource()->Remove(text.Row(0));
    text.View.SetMarks(QStringLiteral("two"), nullptr);
    EXPECT_EQ(text.View.GetRowCount(), 1);
}
