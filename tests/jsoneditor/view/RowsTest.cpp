// Rows, their layouts and chunks, and what lies under a point.
#include "platform/Exceptions.h"
#include "tests/jsoneditor/view/TextView.h"

#include <gtest/gtest.h>

namespace {

const QString TwoChunkRows = QStringLiteral("  [name] : [value]\n  [second] : [2]\n  [third]\n");

/// A layout with the chunks 1 "a" editable, 2 ":" not, 3 "b" editable, 4 "" not.
class Layout : public testing::Test {
protected:
    Layout()
        : Text(QStringLiteral("  [one]\n")),
          Row(0),
          Made(std::make_unique<TZOViewRowLayout>(&Text.View, &Row)) {}

    void AddFour() {
        Made->AddChunk(1, QStringLiteral("a"), true, ctNormal);
        Made->AddChunk(2, QStringLiteral(":"), false, ctSymbol);
        Made->AddChunk(3, QStringLiteral("b"), true, ctGray);
        Made->AddChunk(4);
    }

    TTextView Text;
    TZOViewRow Row;
    std::unique_ptr<TZOViewRowLayout> Made;
    TZORowChunk* Chunk = nullptr;
};

} // namespace

TEST(Chunk, IsEmptyAndNotEditableAtFirst) {
    const TZORowChunk chunk(7);
    EXPECT_EQ(chunk.Id(), 7);
    EXPECT_TRUE(chunk.Text().isEmpty());
    EXPECT_FALSE(chunk.IsEditable());
    EXPECT_EQ(chunk.TextToken(), ctNormal);
    EXPECT_TRUE(chunk.Bounds().isEmpty());
}

TEST_F(Layout, WithoutChunksAnswersNothing) {
    TZORowChunk other(9);
    Chunk = &other;
    EXPECT_FALSE(Made->TryGetChunk(QPoint(0, 0), Chunk));
    EXPECT_FALSE(Made->TryGetChunk(1, false, Chunk));
    EXPECT_FALSE(Made->TryGetFirstEditable(Chunk));
    EXPECT_FALSE(Made->TryGetLastEditable(Chunk));
    EXPECT_FALSE(Made->TryGetNextEditable(1, Chunk));
    EXPECT_FALSE(Made->TryGetPrevEditable(1, Chunk));
    EXPECT_EQ(Made->IndexOfChunk(1), -1);
    EXPECT_EQ(Made->IndexOfChunk(QPoint(0, 0)), -1);
    EXPECT_EQ(Chunk, &other);
}

TEST_F(Layout, FindsEditableChunksFromEitherEnd) {
    AddFour();
    ASSERT_TRUE(Made->TryGetFirstEditable(Chunk));
    EXPECT_EQ(Chunk->Id(), 1);
    ASSERT_TRUE(Made->TryGetLastEditable(Chunk));
    EXPECT_EQ(Chunk->Id(), 3);
}

TEST_F(Layout, StepsBetweenEditableChunks) {
    AddFour();
    ASSERT_TRUE(Made->TryGetNextEditable(1, Chunk));
    EXPECT_EQ(Chunk->Id(), 3);
    ASSERT_TRUE(Made->TryGetPrevEditable(4, Chunk));
    EXPECT_EQ(Chunk->Id(), 3);
    EXPECT_FALSE(Made->TryGetNextEditable(3, Chunk));
    EXPECT_FALSE(Made->TryGetPrevEditable(1, Chunk));
    EXPECT_FALSE(Made->TryGetNextEditable(99, Chunk));
    EXPECT_FALSE(Made->TryGetPrevEditable(99, Chunk));
}

TEST_F(Layout, FindsTheFirstOfTwoChunksWithOneIdentifier) {
    Made->AddChunk(5, QStringLiteral("fixed"), false, ctNormal);
    Made->AddChunk(5, QStringLiteral("open"), true, ctNormal);
    EXPECT_EQ(Made->IndexOfChunk(5), 0);
    ASSERT_TRUE(Made->TryGetChunk(5, false, Chunk));
    EXPECT_EQ(Chunk->Text(), QStringLiteral("fixed"));
    EXPECT_FALSE(Made->TryGetChunk(5, true, Chunk));
    ASSERT_TRUE(Made->TryGetNextEditable(5, Chunk));
    EXPECT_EQ(Chunk->Text(), QStringLiteral("open"));
}

TEST_F(Layout, RefusesAnIndexOutsideItsChunks) {
    AddFour();
    EXPECT_EQ(Made->GetChunkCount(), 4);
    EXPECT_EQ(Made->GetChunks(3)->Id(), 4);
    EXPECT_THROW(Made->GetChunks(4), EListError);
    EXPECT_THROW(Made->GetChunks(-1), EListError);
}

TEST_F(Layout, LeavesItsRowWithoutOneWhenFreed) {
    EXPECT_EQ(Row.Layout(), Made.get());
    Made.reset();
    EXPECT_EQ(Row.Layout(), nullptr);
}

TEST(Rows, AreIndentedByLevel) {
    const TTextView text(QStringLiteral("  [a]\n      [b]\n"));
    EXPECT_EQ(text.Row(0)->Layout()->GetChunks(0)->Bounds().left(), 4);
    EXPECT_EQ(text.Row(1)->Layout()->GetChunks(0)->Bounds().left(), 52);
}

TEST(Rows, LeaveTwoPixelsBetweenChunksAndEightForAnEmptyEditableOne) {
    const TTextView text(QStringLiteral("  [] : [value]\n"));
    const TZOViewRowLayout* layout = text.Row(0)->Layout();
    const QRect empty = layout->GetChunks(0)->Bounds();
    const QRect separator = layout->GetChunks(1)->Bounds();
    const QRect value = layout->GetChunks(2)->Bounds();
    EXPECT_EQ(empty.width(), 8);
    EXPECT_EQ(separator.left(), empty.left() + empty.width() + 2);
    EXPECT_EQ(separator.width(), text.View.fontMetrics().horizontalAdvance(QLatin1Char(':')));
    EXPECT_EQ(value.left(), separator.left() + separator.width() + 2);
    EXPECT_EQ(value.top(), 6);
    EXPECT_EQ(value.height(), text.View.TextHeight());
}

TEST(Rows, GiveAnEmptyFixedChunkNoWidthButItsGap) {
    class TSource : public TZODataSource {
    public:
        void RefreshContent() override { Add(new TZOViewRow(0)); }
        void ConfigureRow(TZOViewRow*, TZOViewRowLayout* ALayout) override {
            ALayout->AddChunk(1, QString(), false, ctNormal);
            ALayout->AddChunk(2, QStringLiteral("x"), false, ctNormal);
        }
    };
    TTextView text(QStringLiteral("  a\n"));
    TSource source;
    text.View.SetDataSource(&source);
    const TZOViewRowLayout* layout = text.Row(0)->Layout();
    EXPECT_EQ(layout->GetChunks(0)->Bounds().width(), 0);
    EXPECT_EQ(layout->GetChunks(1)->Bounds().left(), 6);
    text.View.SetDataSource(nullptr);
}

TEST(Rows, AreNotAskedForAgainWhenTheLevelStays) {
    TTextView text(TwoChunkRows);
    text.Source.Configured = 0;
    text.Row(1)->SetLevel(0);
    EXPECT_EQ(text.Source.Configured, 0);
    text.Row(1)->SetLevel(3);
    EXPECT_EQ(text.Source.Configured, 1);
    EXPECT_EQ(text.Row(1)->Layout()->GetChunks(0)->Bounds().left(), 76);
}

TEST(Rows, TakeOnlyTheirOwnLayoutWithThem) {
    TTextView text(TwoChunkRows);
    const TZOViewRowLayout* first = text.Row(0)->Layout();
    const TZOViewRowLayout* third = text.Row(2)->Layout();
    text.Source.Configured = 0;
    delete text.Row(1);
    EXPECT_EQ(text.View.GetRowCount(), 2);
    EXPECT_EQ(text.View.Layouts().GetCount(), 2);
    EXPECT_EQ(text.Row(0)->Layout(), first);
    EXPECT_EQ(text.Row(1)->Layout(), third);
    EXPECT_EQ(text.Source.Configured, 0);
    EXPECT_EQ(third->Bounds().top(), text.View.RowHeight());
}

TEST(HitTest, FindsRowAndChunk) {
    const TTextView text(TwoChunkRows);
    const TZOHitTest hit = text.View.GetHitTest(text.ChunkPoint(1, 3));
    EXPECT_EQ(hit.Flags, htRow | htChunk);
    EXPECT_EQ(hit.Row, text.Row(1));
    EXPECT_EQ(hit.Chunk->Text(), QStringLiteral("2"));
}

TEST(HitTest, FindsTheRowAloneBesideItsChunks) {
    const TTextView text(TwoChunkRows);
    const int middle = text.View.RowHeight() / 2;
    const QRect first = text.Row(0)->Layout()->GetChunks(0)->Bounds();
    for (int x : {0, 3, first.right() + 1, first.right() + 2, 390}) {
        const TZOHitTest hit = text.View.GetHitTest(QPoint(x, middle));
        EXPECT_EQ(hit.Flags, TZOHitTestFlags(htRow)) << x;
        EXPECT_EQ(hit.Row, text.Row(0)) << x;
    }
    EXPECT_TRUE(text.View.GetHitTest(QPoint(first.left(), middle)).Flags.testFlag(htChunk));
    EXPECT_TRUE(text.View.GetHitTest(QPoint(first.right(), middle)).Flags.testFlag(htChunk));
}

TEST(HitTest, FindsNothingBelowTheLastRow) {
    const TTextView text(TwoChunkRows);
    const TZOHitTest hit = text.View.GetHitTest(QPoint(10, 3 * text.View.RowHeight()));
    EXPECT_EQ(hit.Flags, TZOHitTestFlags());
    EXPECT_EQ(hit.Row, nullptr);
}
