#include "benchmarks/Table.h"
#include "benchmarks/ViewFixture.h"
#include "benchmarks/WindowTiming.h"

#include "jsoneditor/view/InplaceEditor.h"
#include "jsoneditor/view/RestView.h"

#include <QApplication>
#include <QCursor>
#include <QListView>
#include <QScrollBar>
#include <QTreeView>

#include <algorithm>
#include <limits>
#include <map>
#include <memory>
#include <vector>

using namespace WindowTiming;

namespace {

constexpr int WheelSteps = 200;
constexpr int SelectSteps = 1000;
constexpr int KeyRounds = 20;
/// A thousand rows are in within the time of a few cache misses: one round says nothing of them.
constexpr int FillRoundsOf(int ACount) { return ACount <= 1000 ? 100 : 4; }
/// Beside every window: what stands under the pointer gets something of its own to do.
constexpr QPoint PointerAside(2000, 2000);
constexpr int JumpCount = 21;
constexpr int JumpRows = 47; // more than are in sight; no place comes twice

/// What one view takes for one number of rows, in milliseconds.
struct TNumbers {
    double Fill = 0, FirstPaint = 0, JumpToEnd = 0, JumpToMiddle = 0, SelectNext = 0;
    double Insert = 0, Remove = 0, Move = 0, Clear = 0, BytesPerRow = 0;
    TSpread Frame;
};

double BytesPerRow(int ACount) {
    TZORestView view;
    TPlainSource source(ACount);
    const auto before = Bench::HeapInUse();
    view.SetDataSource(&source);
    return double(Bench::HeapInUse() - before) / ACount;
}

void MeasureScrolling(TZORestView& AView, TNumbers& ANumbers) {
    ANumbers.Frame = Spread(WheelSteps, [&](int) { Wheel(&AView, -120); });
    Expect(AView.YScroll() == WheelSteps * 96, "the wheel does not scroll 96 pixels a notch");
    TZOViewRow* last = AView.GetLast();
    const int middle = AView.GetRowCount() / 2;
    ANumbers.JumpToEnd = Median(JumpCount, [&](int i) {
        if (i % 2 == 0)
            AView.ScrollTo(AView.ContentHeight());
        else
            AView.ScrollTo(0);
    });
    Expect(last->Layout(), "the last row is not shown at the end");
    // Each jump goes to other rows, so that nothing helps that was kept of the last one.
    const auto target = [&](int i) { return AView.RowAt((middle + i * JumpRows) % AView.GetRowCount()); };
    ANumbers.JumpToMiddle = Median(JumpCount, [&](int i) { AView.ScrollTo(target(i)); });
    Expect(target(JumpCount - 1)->Layout(), "a row in the middle is not shown");
}

void MeasureSelecting(TZORestView& AView, TNumbers& ANumbers) {
    const int first = std::max(0, AView.GetRowCount() / 2 - SelectSteps / 2);
    AView.SelectRow(AView.RowAt(first), seHide);
    const int steps = std::min(SelectSteps, AView.GetRowCount() - first - 1);
    ANumbers.SelectNext =
        Median(steps, [&](int) { Key(QApplication::focusWidget(), Qt::Key_Down); }) * SelectSteps;
    Expect(AView.Selected() == AView.RowAt(first + steps), "another row was selected");
    AView.SelectRow(nullptr, seHide);
}

void MeasureRows(TZORestView& AView, TPlainSource& ASource, TNumbers& ANumbers) {
    const int count = AView.GetRowCount();
    const int middle = count / 2;
    AView.ScrollTo(AView.RowAt(middle));
    Flush();
    std::vector<TZOViewRow*> made;
    ANumbers.Insert =
        Median(51, [&](int) { made.push_back(ASource.InsertAfter(AView.RowAt(middle), new TZOViewRow(1))); });
    Expect(AView.GetRowCount() == count + 51 && AView.IndexOfRow(made.back()) == middle + 1, "not inserted");
    ANumbers.Remove = Median(51, [&](int i) { ASource.Remove(made[size_t(i)]); });
    Expect(AView.GetRowCount() == count, "not removed");
    const int run = std::min(1000, count / 4);
    TZOViewRow* start = AView.RowAt(10);
    TZOViewRow* end = AView.RowAt(10 + run - 1);
    TZOViewRow* front = AView.GetFirst();
    TZOViewRow* back = AView.RowAt(middle + 10);
    ANumbers.Move = Median(21, [&](int i) { ASource.MoveRangeAfter(i % 2 ? front : back, start, end); });
    Expect(AView.IndexOfRow(start) == middle + 10 - run + 1, "not moved");
}

/// What a keystroke takes in a view of a thousand rows and in one of many, in milliseconds.
struct TKeystrokes {
    double Few = std::numeric_limits<double>::max(), Many = std::numeric_limits<double>::max();
};

double MedianKeystroke(TZORestView& AView) {
    AView.activateWindow();
    AView.setFocus();
    AView.SelectRow(AView.RowAt(AView.GetRowCount() / 2), seLastChunk);
    Flush();
    const double median = Median(100, [&](int i) {
        if (i % 2 == 0)
            Key(AView.Editor(), Qt::Key_X, QStringLiteral("x"));
        else
            Key(AView.Editor(), Qt::Key_Backspace);
    });
    Key(AView.Editor(), Qt::Key_X, QStringLiteral("x"));
    Expect(AView.Editor()->text() == QStringLiteral("x"), "the text typed is another");
    AView.CancelEditing();
    return median;
}

/// Turn and turn about, as a hundred keys are over in ten milliseconds and the machine's pace changes by
/// half.
TKeystrokes MeasureKeystrokes(int ACount) {
    QCursor::setPos(PointerAside);
    TPlainSource fewRows(1000), manyRows(ACount);
    TZORestView few, many;
    few.SetDataSource(&fewRows);
    many.SetDataSource(&manyRows);
    for (TZORestView* view : {&few, &many}) {
        view->resize(WindowSize);
        view->show();
    }
    TKeystrokes keystrokes;
    for (int i = 0; i < KeyRounds; ++i) {
        keystrokes.Few = std::min(keystrokes.Few, MedianKeystroke(few));
        keystrokes.Many = std::min(keystrokes.Many, MedianKeystroke(many));
    }
    few.SetDataSource(nullptr);
    many.SetDataSource(nullptr);
    return keystrokes;
}

/// What filling takes at best, in milliseconds.
struct TFills {
    double Ours = std::numeric_limits<double>::max(), Tree = std::numeric_limits<double>::max();
};

/// Turn and turn about, so that the machine's pace is the same for both.
TFills MeasureFills(int ACount) {
    QCursor::setPos(PointerAside);
    TPlainSource source(ACount);
    TZORestView view;
    TPlainModel model(ACount, true);
    QTreeView tree;
    tree.setUniformRowHeights(true);
    tree.setHeaderHidden(true);
    for (QWidget* widget : {static_cast<QWidget*>(&view), static_cast<QWidget*>(&tree)}) {
        widget->resize(WindowSize);
        widget->show();
    }
    view.SetDataSource(&source);
    tree.setModel(&model);
    Flush();
    TFills fills;
    const auto keep = [](double& ABest, auto AFill) {
        const double start = Now();
        AFill();
        ABest = std::min(ABest, Now() - start);
    };
    for (int i = 0; i < FillRoundsOf(ACount); ++i) {
        view.ClearRows();
        keep(fills.Ours, [&] { view.RefreshContent(); });
        tree.collapseAll();
        keep(fills.Tree, [&] { tree.expandAll(); });
    }
    Expect(view.GetRowCount() == ACount && tree.isExpanded(model.index(0, 0, {})), "not filled");
    view.SetDataSource(nullptr);
    return fills;
}

TNumbers MeasureOurs(int ACount) {
    TNumbers numbers;
    numbers.BytesPerRow = BytesPerRow(ACount);
    QCursor::setPos(PointerAside);
    TPlainSource none(0), source(ACount);
    TZORestView view;
    view.resize(WindowSize);
    view.show();
    view.SetDataSource(&none);
    view.setFocus();
    Flush();
    const double start = Now();
    view.SetDataSource(&source);
    numbers.Fill = Now() - start;
    Expect(view.GetRowCount() == ACount, "rows are missing");
    numbers.FirstPaint = TimeOf([] {});
    MeasureScrolling(view, numbers);
    MeasureSelecting(view, numbers);
    MeasureRows(view, source, numbers);
    numbers.Clear = TimeOf([&] { view.ClearRows(); });
    Expect(view.GetRowCount() == 0, "not cleared");
    view.SetDataSource(nullptr);
    return numbers;
}

/// What the two views of Qt have in common.
void MeasurePeer(QAbstractItemView& AView, TPlainModel& AModel, TNumbers& ANumbers) {
    QCursor::setPos(PointerAside);
    const TZORestView ours;
    AView.setFont(ours.font());
    AModel.RowHeight = ours.fontMetrics().height() + 12;
    AView.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    AView.setEditTriggers(QAbstractItemView::NoEditTriggers);
    AView.setFrameShape(QFrame::NoFrame);
    AView.resize(WindowSize);
    AView.show();
    Flush();
    const double start = Now();
    AView.setModel(&AModel);
    if (auto* tree = qobject_cast<QTreeView*>(&AView))
        tree->expandAll();
    else
        AView.doItemsLayout();
    ANumbers.Fill = Now() - start;
    ANumbers.FirstPaint = TimeOf([] {});
    QScrollBar* bar = AView.verticalScrollBar();
    bar->setSingleStep(32);
    ANumbers.Frame = Spread(WheelSteps, [&](int) { Wheel(AView.viewport(), -120); });
    Expect(bar->value() == WheelSteps * 96, "the peer's wheel does not scroll 96 pixels a notch");
    ANumbers.JumpToEnd = Median(JumpCount, [&](int i) { bar->setValue(i % 2 ? 0 : bar->maximum()); });
    ANumbers.JumpToMiddle = Median(JumpCount, [&](int i) {
        bar->setValue((bar->maximum() / 2 + i * JumpRows * AModel.RowHeight) % bar->maximum());
    });
    AView.setFocus();
    AView.setCurrentIndex(AView.indexAt(QPoint(60, 400)));
    Flush();
    ANumbers.SelectNext = Median(300, [&](int) { Key(&AView, Qt::Key_Down); }) * SelectSteps;
}

TNumbers MeasureTree(int ACount) {
    TNumbers numbers;
    TPlainModel model(ACount, true);
    QTreeView view;
    view.setUniformRowHeights(true);
    view.setHeaderHidden(true);
    MeasurePeer(view, model, numbers);
    Expect(view.model()->rowCount() == ACount / GroupSize, "the tree's rows are others");
    const double start = Now();
    view.setModel(nullptr);
    numbers.Clear = Now() - start;
    return numbers;
}

TNumbers MeasureList(int ACount) {
    TNumbers numbers;
    TPlainModel model(ACount, false);
    QListView view;
    view.setUniformItemSizes(true);
    MeasurePeer(view, model, numbers);
    Expect(view.model()->rowCount() == ACount, "the list's rows are others");
    const double start = Now();
    view.setModel(nullptr);
    numbers.Clear = Now() - start;
    return numbers;
}

/// What is measured for each number of rows only once, as several lines of the table show it.
template <auto Measure>
const auto& Once(int ACount) {
    static std::map<int, decltype(Measure(ACount))> known;
    const auto found = known.find(ACount);
    return found != known.end() ? found->second : known.emplace(ACount, Measure(ACount)).first->second;
}

constexpr auto Ours = Once<MeasureOurs>;
constexpr auto Tree = Once<MeasureTree>;
constexpr auto List = Once<MeasureList>;
constexpr auto Keystrokes = Once<MeasureKeystrokes>;
constexpr auto Fills = Once<MeasureFills>;

using TPick = std::function<double(const TNumbers&)>;

void AddSize(int ACount) {
    const std::string size = RowsText(ACount);
    const auto add = [&](const char* ATask, const char* APeer, std::optional<double> ATarget, TPick APick,
                         const TNumbers& (*ATheirs)(int), int ATheirCount) {
        Bench::Measure(
            {ATask, size, APeer, ATarget}, "ms", [=] { return APick(Ours(ACount)); },
            [=] { return APick(ATheirs(ATheirCount)); });
    };
    const auto limit = [&](const char* ATask, const char* APeer, const char* AUnit, double ALimit,
                           TPick APick) {
        Bench::Measure(
            {ATask, size, APeer, 1.0}, AUnit, [=] { return APick(Ours(ACount)); }, [=] { return ALimit; });
    };
    const TPick fill = [](const TNumbers& n) { return n.Fill; };
    const TPick paint = [](const TNumbers& n) { return n.FirstPaint; };
    const TPick both = [](const TNumbers& n) { return n.Fill + n.FirstPaint; };
    const TPick frame = [](const TNumbers& n) { return n.Frame.Median; };
    const TPick worst = [](const TNumbers& n) { return n.Frame.Worst; };
    const TPick end = [](const TNumbers& n) { return n.JumpToEnd; };
    const TPick middle = [](const TNumbers& n) { return n.JumpToMiddle; };
    const TPick select = [](const TNumbers& n) { return n.SelectNext; };
    const TPick clear = [](const TNumbers& n) { return n.Clear; };
    Bench::Measure(
        {"fill the view", size, "QTreeView expandAll", 0.1}, "ms", [=] { return Fills(ACount).Ours; },
        [=] { return Fills(ACount).Tree; });
    add("fill the view", "QListView", {}, fill, List, ACount);
    add("first paint", "QTreeView", {}, paint, Tree, ACount);
    add("first paint", "QListView", {}, paint, List, ACount);
    add("fill and first paint", "QTreeView", {}, both, Tree, ACount);
    add("fill and first paint", "QListView", {}, both, List, ACount);
    add("wheel step, median", "QListView", 1.0, frame, List, ACount);
    add("wheel step, median", "QTreeView", {}, frame, Tree, ACount);
    add("wheel step, 99th percentile", "QListView", 1.0, worst, List, ACount);
    add("wheel step, 99th percentile", "QTreeView", {}, worst, Tree, ACount);
    add("select the next row 1,000 times", "QTreeView", {}, select, Tree, ACount);
    add("select the next row 1,000 times", "QListView", {}, select, List, ACount);
    add("jump to the end", "QListView", {}, end, List, ACount);
    add("jump to the middle", "QListView", {}, middle, List, ACount);
    add("clear", "QTreeView", {}, clear, Tree, ACount);
    if (ACount > 1000) {
        add("wheel step, median", "ours, 1,000 rows", 1.2, frame, Ours, 1000);
        Bench::Measure(
            {"keystroke to repaint", size, "ours, 1,000 rows", 1.2}, "ms",
            [=] { return Keystrokes(ACount).Many; }, [=] { return Keystrokes(ACount).Few; });
        add("select the next row 1,000 times", "ours, 1,000 rows", 1.2, select, Ours, 1000);
    }
    limit("jump to the end", "1 ms", "ms", 1, end);
    limit("jump to the middle", "1 ms", "ms", 1, middle);
    limit("insert a row in the middle", "1 ms", "ms", 1, [](const TNumbers& n) { return n.Insert; });
    limit("remove a row in the middle", "1 ms", "ms", 1, [](const TNumbers& n) { return n.Remove; });
    limit("move a run of 1,000 rows", "1 ms", "ms", 1, [](const TNumbers& n) { return n.Move; });
    limit("memory per plain row", "80 bytes", "bytes", 80, [](const TNumbers& n) { return n.BytesPerRow; });
}

} // namespace

void AddViewBenchmarks() {
    for (const int count : {1000, 100000, 1000000, 4000000})
        AddSize(count);
}
