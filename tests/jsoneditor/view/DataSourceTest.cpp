#include "jsoneditor/view/DataSource.h"

#include "jsoneditor/view/DemoDataSource.h"
#include "jsoneditor/view/RowSearch.h"
#include "tests/jsoneditor/view/TextView.h"

#include <QRegularExpression>
#include <QTest>

#include <gtest/gtest.h>

namespace {

/// Says what AAction raises as EZORestView, or nothing.
QString Raised(const std::function<void()>& AAction) {
    try {
        AAction();
    } catch (const EZORestView& e) {
        return e.Message();
    }
    return {};
}

/// Counts the updates of a view that stands at its top, by a scroll task that asks for itself again.
class TUpdateCounter {
public:
    explicit TUpdateCounter(TZORestView& AView) : FView(AView) { Arm(); }
    ~TUpdateCounter() { FView.SetScrollTask({}); }
    int Updates = 0;

private:
    void Arm() {
        FArming = true; // a new task is tried at once
        FView.SetScrollTask([this] {
            if (!FArming) {
                ++Updates;
                Arm();
            }
            return 0;
        });
        FArming = false;
    }

    TZORestView& FView;
    bool FArming = false;
};

/// Counts how often it is asked for a row.
class TCountingSource : public TZODataSource {
public:
    void ConfigureRow(TZOViewRow*, TZOViewRowLayout*) override { ++Configured; }
    int Configured = 0;
};

} // namespace

TEST(DataSource, RaisesOnEveryListOperationWhileConnectedToNoView) {
    TZODataSource source;
    TZOViewRow row(0);
    const std::vector<std::function<void()>> operations = {
        [&] { source.BeginUpdate(); },
        [&] { source.EndUpdate(); },
        [&] { source.Updating([] {}); },
        [&] { source.Add(&row); },
        [&] { source.InsertBefore(&row, &row); },
        [&] { source.InsertAfter(&row, &row); },
        [&] { source.MoveRangeBefore(&row, &row, &row); },
        [&] { source.MoveRangeAfter(&row, &row, &row); },
        [&] { source.Remove(&row); },
        [&] { source.Clear(); },
        [&] { source.GetFirst(); },
        [&] { source.GetLast(); },
    };
    for (size_t i = 0; i < operations.size(); ++i)
        EXPECT_EQ(Raised(operations[i]), QStringLiteral("DataSource is not connected to view.")) << i;
}

TEST(DataSource, HasNoFirstAndLastRowAtFirst) {
    TZODataSource source;
    TZORestView view;
    view.SetDataSource(&source);
    EXPECT_EQ(source.View(), &view);
    EXPECT_EQ(source.GetFirst(), nullptr);
    EXPECT_EQ(source.GetLast(), nullptr);
}

TEST(DataSource, UpdatesTheViewOnceForABracketOfManyChanges) {
    TTextView text(QString{});
    TCountingSource source;
    text.View.SetDataSource(&source);
    TUpdateCounter counter(text.View);
    source.BeginUpdate();
    for (int i = 0; i < 20; ++i)
        source.Add(new TZOViewRow(0));
    EXPECT_EQ(source.Configured, 0);
    EXPECT_EQ(text.View.Layouts().GetCount(), 0);
    EXPECT_EQ(text.View.ContentHeight(), 0);
    EXPECT_EQ(counter.Updates, 0);
    source.EndUpdate();
    EXPECT_EQ(counter.Updates, 1);
    EXPECT_EQ(text.View.ContentHeight(), 20 * text.View.RowHeight());
    EXPECT_EQ(source.Configured, text.View.Layouts().GetCount());
    EXPECT_GT(source.Configured, 0);
    source.Add(new TZOViewRow(0));
    source.Add(new TZOViewRow(0));
    EXPECT_EQ(counter.Updates, 3) << "one each without a bracket";
    text.View.SetDataSource(nullptr);
}

TEST(DataSource, UpdatesOnlyAtTheOutermostEnd) {
    TTextView text(QString{});
    TCountingSource source;
    text.View.SetDataSource(&source);
    source.Updating([&] {
        source.Updating([&] { source.Add(new TZOViewRow(0)); });
        EXPECT_EQ(source.Configured, 0);
    });
    EXPECT_EQ(source.Configured, 1);
    text.View.SetDataSource(nullptr);
}

TEST(DataSource, MovesARowThatIsInsertedElsewhereInTheView) {
    TTextView text(QStringLiteral("  [a]\n  [b]\n  [c]\n"));
    TZOViewRow* a = text.Row(0);
    EXPECT_EQ(text.Source.InsertAfter(text.Row(2), a), a);
    text.Expect(QStringLiteral("  [b]\n  [c]\n  [a]\n"));
    EXPECT_EQ(a->Source(), &text.Source);
    EXPECT_EQ(text.View.IndexOfRow(a), 2);
    text.Source.InsertBefore(text.Row(0), a);
    text.Expect(QStringLiteral("  [a]\n  [b]\n  [c]\n"));
}

TEST(DataSource, MovesRunsOfRows) {
    TTextView text(QStringLiteral("  [a]\n  [b]\n  [c]\n  [d]\n"));
    text.Source.MoveRangeAfter(text.Row(3), text.Row(0), text.Row(1));
    text.Expect(QStringLiteral("  [c]\n  [d]\n  [a]\n  [b]\n"));
    text.Source.MoveRangeBefore(text.Row(0), text.Row(2), text.Row(3));
    text.Expect(QStringLiteral("  [a]\n  [b]\n  [c]\n  [d]\n"));
}

TEST(DataSource, LeavesItsRowsToTheNextSourceOfTheView) {
    TTextView text(QStringLiteral("  [a]\n"));
    TZODataSource other;
    text.View.SetDataSource(&other);
    EXPECT_EQ(text.View.GetRowCount(), 0);
    EXPECT_EQ(text.Source.View(), nullptr);
    EXPECT_EQ(other.View(), &text.View);
}

TEST(DataSource, IsFreedByAViewThatOwnsIt) {
    static int freed = 0;
    struct TCounted : TZODataSource {
        ~TCounted() override { ++freed; }
    };
    freed = 0;
    {
        TZORestView view;
        view.SetOwnDataSource(true);
        view.SetDataSource(new TCounted);
        view.SetDataSource(new TCounted);
        EXPECT_EQ(freed, 1);
    }
    EXPECT_EQ(freed, 2);
}

TEST(DataSource, MayGoBeforeItsView) {
    TZORestView view;
    {
        TTextSource source(QStringLiteral("[a]\n[b]"));
        view.SetDataSource(&source);
        EXPECT_EQ(view.GetRowCount(), 2);
    }
    EXPECT_EQ(view.DataSource(), nullptr);
    EXPECT_EQ(view.GetRowCount(), 0);
}

TEST(DataSource, LeavesTheViewItWasConnectedToBefore) {
    TZORestView first;
    TZORestView second;
    TTextSource source(QStringLiteral("[a]"));
    first.SetDataSource(&source);
    second.SetDataSource(&source);
    EXPECT_EQ(first.DataSource(), nullptr);
    EXPECT_EQ(first.GetRowCount(), 0);
    EXPECT_EQ(second.GetRowCount(), 1);
    EXPECT_EQ(source.View(), &second);
}

TEST(DemoDataSource, FillsThreeLevelsWithRandomNamesAndValues) {
    static const QRegularExpression name(QStringLiteral("^row_[0-9]{1,3}$"));
    static const QRegularExpression value(QStringLiteral("^value_[0-9]{1,3}$"));
    for (quint32 seed = 0; seed < 50; ++seed) {
        TZORestView view;
        TZODemoDataSource source(seed);
        view.SetDataSource(&source);
        std::array<int, 3> siblings{};
        ASSERT_NE(source.GetFirst(), nullptr);
        EXPECT_EQ(source.GetFirst()->Level(), 0);
        for (TZOViewRow* row = source.GetFirst(); row; row = row->Next()) {
            ASSERT_LE(row->Level(), 2);
            const auto level = static_cast<size_t>(row->Level());
            EXPECT_LE(++siblings[level], 10 / (row->Level() + 1));
            // Every row above the deepest level is followed by a child of its own.
            if (level < 2) {
                ASSERT_NE(row->Next(), nullptr);
                EXPECT_EQ(row->Next()->Level(), row->Level() + 1);
                siblings[level + 1] = 0;
            }
            const auto* demo = static_cast<TZODemoDataSource::TDemoRow*>(row);
            EXPECT_TRUE(name.match(demo->FName).hasMatch()) << demo->FName.toStdString();
            EXPECT_TRUE(value.match(demo->FValue).hasMatch()) << demo->FValue.toStdString();
        }
    }
}

TEST(DemoDataSource, InsertsAChildOfTheSelectedRowAtAnyDepth) {
    TTextView text(QString{});
    TZODemoDataSource source(1);
    text.View.SetDataSource(&source);
    for (int i = 0; i < 4; ++i) {
        TZOViewRow* parent = i == 0 ? source.GetFirst() : text.View.Selected()->Next();
        text.View.SelectRow(parent, seHide);
        const int rows = text.View.GetRowCount();
        text.Press(QStringLiteral("Ins"));
        EXPECT_EQ(text.View.GetRowCount(), rows + 1);
        EXPECT_EQ(parent->Next()->Level(), parent->Level() + 1);
    }
    EXPECT_EQ(text.View.Selected()->Next()->Level(), 4);
    text.View.SetDataSource(nullptr);
}

TEST(DemoDataSource, DeletesTheSelectedRowWithCtrlDeleteOnly) {
    TTextView text(QString{});
    TZODemoDataSource source(1);
    text.View.SetDataSource(&source);
    const int rows = text.View.GetRowCount();
    text.Press(QStringLiteral("Ctrl+Del Ins"));
    EXPECT_EQ(text.View.GetRowCount(), rows);
    text.View.SelectRow(source.GetFirst(), seHide);
    text.Press(QStringLiteral("Del"));
    EXPECT_EQ(text.View.GetRowCount(), rows);
    text.Press(QStringLiteral("Ctrl+Del"));
    EXPECT_EQ(text.View.GetRowCount(), rows - 1);
    EXPECT_EQ(text.View.Selected(), nullptr);
    text.View.SetDataSource(nullptr);
}

TEST(DemoDataSource, StoresEditedNamesAndValues) {
    TTextView text(QString{});
    TZODemoDataSource source(1);
    text.View.SetDataSource(&source);
    auto* row = static_cast<TZODemoDataSource::TDemoRow*>(source.GetFirst());
    text.View.SelectRow(row, seFirstChunk);
    text.Press(QStringLiteral("'first' Tab 'second' Return"));
    EXPECT_EQ(row->FName, QStringLiteral("first"));
    EXPECT_EQ(row->FValue, QStringLiteral("second"));
    source.RowEdited(row, 2, QStringLiteral("ignored"));
    EXPECT_EQ(row->FName, QStringLiteral("first"));
    EXPECT_EQ(row->FValue, QStringLiteral("second"));
    text.View.SetDataSource(nullptr);
}

TEST(DemoDataSource, ConfiguresItsOwnRowsOnly) {
    TTextView text(QString{});
    TZODemoDataSource source(1);
    text.View.SetDataSource(&source);
    const TZOViewRowLayout* layout = source.GetFirst()->Layout();
    ASSERT_EQ(layout->GetChunkCount(), 3);
    EXPECT_EQ(layout->GetChunks(1)->Text(), QStringLiteral(": "));
    EXPECT_FALSE(layout->GetChunks(1)->IsEditable());
    EXPECT_EQ(layout->GetChunks(2)->Id(), 3);
    EXPECT_TRUE(layout->GetChunks(2)->IsEditable());
    TZOViewRow foreign(0);
    TZOViewRowLayout made(&text.View, &foreign);
    EXPECT_THROW(source.ConfigureRow(&foreign, &made), EInvalidCast);
    text.View.SetDataSource(nullptr);
}

TEST(DataSource, LooksForATextInWhatRowsWouldShow) {
    QString rows;
    for (int i = 0; i < 200; ++i)
        rows += QStringLiteral("  [key%1] : [Value]\n").arg(i);
    TTextView text(rows, {200, 60});
    const auto search = text.View.DataSource()->NewSearch(QStringLiteral("KEY19"));
    QStringList found;
    for (int i = 0; i < text.View.GetRowCount(); ++i)
        if (search->Matches(text.Row(i)))
            found.append(QString::number(i));
    EXPECT_EQ(found.join(u' '), QStringLiteral("19 190 191 192 193 194 195 196 197 198 199"));
    EXPECT_FALSE(text.Row(199)->Layout());
    EXPECT_TRUE(text.View.DataSource()->NewSearch(QStringLiteral("value"))->Matches(text.Row(150)));
}

TEST(DataSource, TheViewTellsWhenRowsHaveChanged) {
    TTextView text(QStringLiteral("  [one]\n  [two]\n"));
    int told = 0;
    QObject::connect(&text.View, &TZORestView::RowsChanged, [&] { ++told; });
    const quint64 before = text.View.Revision();
    text.View.DataSource()->Updating([&] {
        text.View.DataSource()->Add(TTextSource::MakeRow(QStringLiteral("[three]")));
        text.View.DataSource()->Add(TTextSource::MakeRow(QStringLiteral("[four]")));
        EXPECT_EQ(told, 0);
    });
    EXPECT_EQ(told, 1);
    EXPECT_NE(text.View.Revision(), before);
    text.View.DataSource()->Remove(text.Row(0));
    EXPECT_EQ(told, 2);
    text.View.InvalidateLayout(text.Row(0));
    EXPECT_EQ(told, 3);
    text.View.ScrollTo(0);
    text.View.UpdateView();
    EXPECT_EQ(told, 3);
}
