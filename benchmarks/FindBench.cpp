// Finding a text in the rows of a large answer.
#include "benchmarks/Table.h"
#include "benchmarks/ValuesFixture.h"
#include "benchmarks/WindowTiming.h"

#include "pages/TextFinder.h"

#include "jsoneditor/values/ObjectDataSource.h"
#include "jsoneditor/view/RestView.h"
#include "runtime/json/JsonCodec.h"

#include <QApplication>

#include <algorithm>
#include <memory>

using namespace WindowTiming;

namespace {

constexpr int Repetitions = 5;
constexpr double FirstHitMs = 100;
constexpr double FrameMs = 16;

struct TNumbers {
    double Nowhere = 0, AllRows = 0, Number = 0, LongestPause = 0;
};

class TFindWindow {
public:
    explicit TFindWindow(const TRecordsFixture& AFixture)
        : FHolder(AFixture.Type(), true), FSource(&FHolder, false, false) {
        TZOJson::Decode(AFixture.Json(), FHolder);
        FView.resize(WindowSize);
        FView.show();
        FView.SetDataSource(&FSource);
        FFinder.SetViews({&FView});
        Flush();
    }
    ~TFindWindow() { FView.SetDataSource(nullptr); }

    /// Milliseconds until the first row with AText, which is ARow, is found from the top.
    double FirstHit(const QString& AText, int ARow) {
        return Median(Repetitions, [&](int) {
            FFinder.Start(AText, &FView, nullptr);
            while (FFinder.Count() == 0 && !FFinder.IsDone())
                Pump();
            Expect(FFinder.CurrentIndex() == ARow, "another row was found");
        });
    }

    double Count(const QString& AText, int ACount) {
        return Median(Repetitions, [&](int) {
            FFinder.Start(AText, &FView, nullptr);
            while (!FFinder.IsDone())
                Pump();
            Expect(FFinder.Count() == ACount, "another number of rows was found");
        });
    }

    double LongestPause() const { return FLongestPause; }

private:
    /// What the user's next key waits for.
    void Pump() {
        const double start = Now();
        QApplication::processEvents();
        FLongestPause = std::max(FLongestPause, Now() - start);
    }

    TZOValueHolder FHolder;
    TZORestView FView;
    TZOObjectDataSource FSource;
    TZOTextFinder FFinder;
    double FLongestPause = 0;
};

const TNumbers& NumbersOf(int ARows) {
    static std::unique_ptr<TNumbers> numbers;
    if (numbers)
        return *numbers;
    const TRecordsFixture fixture(ARows);
    TFindWindow window(fixture);
    const int last = 1 + (fixture.Records() - 1) * TRecordsFixture::RowsPerRecord;
    const QString lastId = QString::number(1'000'000 + fixture.Records() - 1);
    numbers = std::make_unique<TNumbers>();
    // The first property of the last record: nothing before it holds the number.
    numbers->Number = window.FirstHit(lastId, last + 1);
    // A word that is nowhere, so that every row is looked at.
    numbers->Nowhere = window.Count(QStringLiteral("nowhere to be found"), 0);
    numbers->AllRows = window.Count(QStringLiteral("title"), fixture.Records());
    numbers->LongestPause = window.LongestPause();
    return *numbers;
}

} // namespace

void AddFindBenchmarks() {
    constexpr int rows = 1'000'000;
    const auto add = [](const char* ATask, const char* APeer, double AWanted, double TNumbers::*AOurs) {
        Bench::Measure(
            {std::string("find: ") + ATask, RowsText(rows), APeer, 1.0}, "ms",
            [=] { return NumbersOf(rows).*AOurs; }, [=] { return AWanted; });
    };
    add("a number in the last record", "100 ms", FirstHitMs, &TNumbers::Number);
    add("a text that no row has", "100 ms", FirstHitMs, &TNumbers::Nowhere);
    add("every row of a key", "100 ms", FirstHitMs, &TNumbers::AllRows);
    add("longest pause for the user", "a frame", FrameMs, &TNumbers::LongestPause);
}
