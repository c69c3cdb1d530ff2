// Typed values of many rows: from the bytes to the screen, and edits in the middle of them.
#include "benchmarks/Table.h"
#include "benchmarks/ValuesFixture.h"
#include "benchmarks/WindowTiming.h"

#include "jsoneditor/values/ObjectDataSource.h"
#include "jsoneditor/view/InplaceEditor.h"
#include "jsoneditor/view/RestView.h"
#include "runtime/json/JsonCodec.h"

#include <simdjson.h>

#include <QMenu>

#include <algorithm>
#include <map>
#include <memory>

using namespace WindowTiming;

namespace {

constexpr int Repetitions = 5;
constexpr double FrameMs = 16;

/// What one size takes, in milliseconds.
struct TNumbers {
    double Dom = 0, Decode = 0, Rows = 0, FirstPaint = 0, ToFirstPaint = 0, Refresh = 0, Clear = 0,
           BytesPerRow = 0;
    TSpread Edit, Keystroke;
};

struct TListNumbers {
    double Offer = 0;
    TSpread Insert, UndoInsert, Delete, UndoDelete;
};

double TimeOfDom(const QByteArray& AJson) {
    const double start = Now();
    simdjson::dom::parser parser;
    Expect(!parser.parse(AJson.constData(), std::size_t(AJson.size())).error(), "simdjson refuses the text");
    return Now() - start;
}

/// A window with one value in it.
struct TValueWindow {
    TValueWindow(const ZOList::TTypeInfo* AType, const QByteArray& AJson)
        : Holder(AType, true), Source(&Holder, false, false) {
        View.resize(WindowSize);
        View.show();
        Flush();
        EmptyHeap = Bench::HeapInUse();
        const double start = Now();
        TZOJson::Decode(AJson, Holder);
        Decode = Now() - start;
        const double fill = Now();
        View.SetDataSource(&Source);
        Rows = Now() - fill;
        FirstPaint = TimeOf([] {});
        View.setFocus();
    }
    ~TValueWindow() { View.SetDataSource(nullptr); }

    ZOList& List() {
        void* list = nullptr;
        Expect(Holder.GetValue(list), "there is no list");
        return *static_cast<ZOList*>(list);
    }
    void Type(const char* AText) {
        for (const char* c = AText; *c; ++c)
            Key(View.Editor(), QChar::fromLatin1(*c).toUpper().unicode(), QString(QLatin1Char(*c)));
        Key(View.Editor(), Qt::Key_Return);
    }
    /// What the user chooses in the context menu of the selected row.
    void Choose(const QString& ACaption) {
        QMenu menu;
        Source.FillMenu(&menu);
        for (QAction* action : menu.actions()) {
            if (action->text() == ACaption)
                return action->trigger();
        }
        Expect(false, "the menu lacks a command");
    }

    TZOValueHolder Holder;
    TZORestView View;
    TZOObjectDataSource Source;
    double Decode = 0, Rows = 0, FirstPaint = 0;
    std::int64_t EmptyHeap = 0;
};

void MeasureEdits(TValueWindow& AWindow, const TRecordsFixture& AFixture, TNumbers& ANumbers) {
    TZORestView& view = AWindow.View;
    const int row = 1 + AFixture.Records() / 2 * TRecordsFixture::RowsPerRecord + TRecordsFixture::TitleRow;
    view.ScrollTo(view.RowAt(row));
    Flush();
    ANumbers.Refresh = Median(Repetitions, [&](int) { Key(&view, Qt::Key_F5); });
    Expect(view.GetRowCount() == AFixture.Rows(), "a refresh changed the rows");
    ANumbers.Edit = Spread(51, [&](int i) {
        view.SelectRow(view.RowAt(row), seLastChunk);
        AWindow.Type(i % 2 ? "even" : "odd");
    });
    void* object = nullptr;
    void* title = nullptr;
    Expect(AWindow.List().GetItem(AFixture.Records() / 2, object) &&
               ZOObject::TData::GetProp(*static_cast<ZOObject**>(object), 1, title) &&
               *static_cast<QString*>(title) == QLatin1String("odd"),
           "the text typed was not stored");
    view.SelectRow(view.RowAt(row), seLastChunk);
    Flush();
    ANumbers.Keystroke = Spread(101, [&](int) { Key(view.Editor(), Qt::Key_X, QStringLiteral("x")); });
    view.CancelEditing();
}

TNumbers MeasureRecords(int ARows) {
    const TRecordsFixture fixture(ARows);
    TNumbers numbers;
    for (int i = 0; i < Repetitions; ++i) {
        const double dom = TimeOfDom(fixture.Json());
        TValueWindow window(fixture.Type(), fixture.Json());
        Expect(window.View.GetRowCount() == fixture.Rows(), "rows are missing");
        numbers.BytesPerRow = double(Bench::HeapInUse() - window.EmptyHeap) / fixture.Rows();
        const double sum = window.Decode + window.Rows + window.FirstPaint;
        const auto keepLeast = [&](double& AKept, double ATime) {
            AKept = i == 0 ? ATime : std::min(AKept, ATime);
        };
        keepLeast(numbers.Dom, dom);
        keepLeast(numbers.Decode, window.Decode);
        keepLeast(numbers.Rows, window.Rows);
        keepLeast(numbers.FirstPaint, window.FirstPaint);
        keepLeast(numbers.ToFirstPaint, sum);
        if (i == Repetitions - 1)
            MeasureEdits(window, fixture, numbers);
        const double start = Now();
        window.View.SetDataSource(nullptr);
        keepLeast(numbers.Clear, Now() - start);
    }
    return numbers;
}

/// Each step is timed by itself: the placeholder appears, its value is stored, and all is taken back.
TListNumbers MeasureList(int ACount) {
    TZOTypeLibrary types;
    QByteArray json = "[";
    for (int i = 0; i < ACount; ++i)
        json += (i ? "," : "") + QByteArray::number(i);
    TValueWindow window(types.NewList(TZOTypeLibrary::Scalar(vkInteger)), json + ']');
    TZORestView& view = window.View;
    const int middle = ACount / 2;
    const auto select = [&](int ARow) { view.SelectRow(view.RowAt(ARow), seHide); };
    view.ScrollTo(view.RowAt(middle));
    select(middle);
    Flush();
    TListNumbers numbers;
    const auto offer = [&] {
        select(middle);
        window.Choose(QStringLiteral("Insert After"));
    };
    numbers.Offer = TimeOf([&] { offer(); });
    window.Source.CancelInsertMode();
    numbers.Insert = Spread(31, [&](int) {
        offer();
        view.SelectRow(view.RowAt(middle + 1), seLastChunk);
        window.Type("7");
    });
    Expect(window.List().Count() == ACount + 31 && view.GetRowCount() == ACount + 33, "not inserted");
    numbers.UndoInsert = Spread(31, [&](int) { Key(&view, Qt::Key_Z, {}, Qt::ControlModifier); });
    Expect(window.List().Count() == ACount && view.GetRowCount() == ACount + 2, "not taken back");
    numbers.Delete = Spread(31, [&](int) {
        select(middle);
        window.Choose(QStringLiteral("Delete Element"));
    });
    Expect(window.List().Count() == ACount - 31 && view.GetRowCount() == ACount - 29, "not deleted");
    numbers.UndoDelete = Spread(31, [&](int) { Key(&view, Qt::Key_Z, {}, Qt::ControlModifier); });
    Expect(TZOJson::Encode(window.Holder) == json + ']', "the list is another after everything was undone");
    return numbers;
}

const TNumbers& Records(int ARows) {
    static std::map<int, TNumbers> known;
    const auto found = known.find(ARows);
    return found != known.end() ? found->second : known.emplace(ARows, MeasureRecords(ARows)).first->second;
}

const TListNumbers& List(int ACount) {
    static std::map<int, TListNumbers> known;
    const auto found = known.find(ACount);
    return found != known.end() ? found->second : known.emplace(ACount, MeasureList(ACount)).first->second;
}

void AddRecords(int ARows) {
    const auto add = [=](const char* ATask, const char* APeer, std::optional<double> ATarget,
                         const char* AUnit, double (*AOurs)(const TNumbers&),
                         double (*ATheirs)(const TNumbers&)) {
        Bench::Measure(
            {std::string("value: ") + ATask, RowsText(ARows), APeer, ATarget}, AUnit,
            [=] { return AOurs(Records(ARows)); }, [=] { return ATheirs(Records(ARows)); });
    };
    constexpr auto dom = [](const TNumbers& n) { return n.Dom; };
    constexpr auto frame = [](const TNumbers&) { return FrameMs; };
    add(
        "decode", "simdjson DOM", {}, "ms", [](const TNumbers& n) { return n.Decode; }, dom);
    add(
        "rows ready", "simdjson DOM", {}, "ms", [](const TNumbers& n) { return n.Rows; }, dom);
    add(
        "first paint", "a frame", 1.0, "ms", [](const TNumbers& n) { return n.FirstPaint; }, frame);
    add(
        "bytes to first paint", "5 DOM + 100 ms", 1.0, "ms", [](const TNumbers& n) { return n.ToFirstPaint; },
        [](const TNumbers& n) { return 5 * n.Dom + 100; });
    add(
        "refresh, nothing changed", "simdjson DOM", {}, "ms", [](const TNumbers& n) { return n.Refresh; },
        dom);
    add(
        "rows freed", "simdjson DOM", {}, "ms", [](const TNumbers& n) { return n.Clear; }, dom);
    add(
        "edit a text, median", "a frame", 1.0, "ms", [](const TNumbers& n) { return n.Edit.Median; }, frame);
    add(
        "edit a text, worst", "a frame", 1.0, "ms", [](const TNumbers& n) { return n.Edit.Worst; }, frame);
    add(
        "keystroke, worst", "a frame", 1.0, "ms", [](const TNumbers& n) { return n.Keystroke.Worst; }, frame);
    add(
        "memory per row and value", "200 bytes", 1.0, "bytes",
        [](const TNumbers& n) { return n.BytesPerRow; }, [](const TNumbers&) { return 200.0; });
}

void AddList(int ACount) {
    const auto add = [=](const char* ATask, double (*AOurs)(const TListNumbers&)) {
        Bench::Measure(
            {std::string("long list: ") + ATask, RowsText(ACount), "a frame", 1.0}, "ms",
            [=] { return AOurs(List(ACount)); }, [] { return FrameMs; });
    };
    add("offer a new element", [](const TListNumbers& n) { return n.Offer; });
    add("insert, worst", [](const TListNumbers& n) { return n.Insert.Worst; });
    add("insert undone, worst", [](const TListNumbers& n) { return n.UndoInsert.Worst; });
    add("delete, worst", [](const TListNumbers& n) { return n.Delete.Worst; });
    add("delete undone, worst", [](const TListNumbers& n) { return n.UndoDelete.Worst; });
}

} // namespace

void AddValuesBenchmarks() {
    for (const int rows : {10000, 100000, 1000000, 4000000})
        AddRecords(rows);
    AddList(1000000);
}
