#include "benchmarks/Table.h"

#include <benchmark/benchmark.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <vector>

namespace {

constexpr int Repetitions = 5;

struct TEntry {
    TBenchTask Task;
    std::string Unit;
    std::function<void()> Check, TimeOurs, TimeTheirs;
    std::function<double()> MeasureOurs, MeasureTheirs;
    double Ours = 0, Theirs = 0;

    std::string Name() const { return Task.Task + "/" + Task.Size + "/" + Task.Peer; }
    double Ratio() const { return Theirs > 0 ? Ours / Theirs : 0; }
};

std::vector<std::unique_ptr<TEntry>>& Entries() {
    static std::vector<std::unique_ptr<TEntry>> entries;
    return entries;
}

/// Keeps the median of each benchmark's repetitions, in milliseconds.
class TMedians : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& ARuns) override {
        for (const Run& run : ARuns) {
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median")
                Medians[run.run_name.function_name] = run.GetAdjustedRealTime();
        }
    }
    std::map<std::string, double> Medians;
};

void Register(const std::string& AName, const std::function<void()>& ABody) {
    benchmark::RegisterBenchmark(AName.c_str(),
                                 [ABody](benchmark::State& state) {
                                     for (auto _ : state)
                                         ABody();
                                 })
        ->Repetitions(Repetitions)
        ->ReportAggregatesOnly(true)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
}

void RunTimed(const std::vector<TEntry*>& AChosen) {
    for (TEntry* entry : AChosen) {
        if (!entry->TimeOurs)
            continue;
        Register(entry->Name() + "/ours", entry->TimeOurs);
        Register(entry->Name() + "/theirs", entry->TimeTheirs);
    }
    TMedians reporter;
    if (std::any_of(AChosen.begin(), AChosen.end(), [](const TEntry* e) { return bool(e->TimeOurs); }))
        benchmark::RunSpecifiedBenchmarks(&reporter);
    for (TEntry* entry : AChosen) {
        if (!entry->TimeOurs)
            continue;
        entry->Ours = reporter.Medians[entry->Name() + "/ours"];
        entry->Theirs = reporter.Medians[entry->Name() + "/theirs"];
    }
}

QJsonObject JsonRow(const TEntry& AEntry) {
    const auto text = [](const std::string& s) { return QString::fromStdString(s); };
    const auto& target = AEntry.Task.Target;
    return {{QStringLiteral("task"), text(AEntry.Task.Task)},
            {QStringLiteral("size"), text(AEntry.Task.Size)},
            {QStringLiteral("peer"), text(AEntry.Task.Peer)},
            {QStringLiteral("ours"), AEntry.Ours},
            {QStringLiteral("theirs"), AEntry.Theirs},
            {QStringLiteral("unit"), text(AEntry.Unit)},
            {QStringLiteral("ratio"), AEntry.Ratio()},
            {QStringLiteral("target"), target ? QJsonValue(*target) : QJsonValue()},
            {QStringLiteral("holds"), target ? QJsonValue(AEntry.Ratio() <= *target) : QJsonValue()}};
}

void PrintRow(const TEntry& AEntry) {
    const auto& target = AEntry.Task.Target;
    char wanted[32] = "-";
    if (target)
        std::snprintf(wanted, sizeof wanted, "%.2f", *target);
    std::printf("%-34s %-10s %-22s %12.3f %12.3f %-10s %7.2f %7s  %s\n", AEntry.Task.Task.c_str(),
                AEntry.Task.Size.c_str(), AEntry.Task.Peer.c_str(), AEntry.Ours, AEntry.Theirs,
                AEntry.Unit.c_str(), AEntry.Ratio(), wanted,
                !target                     ? ""
                : AEntry.Ratio() <= *target ? "holds"
                                            : "MISSED");
}

} // namespace

void Bench::Compare(const TBenchTask& ATask, std::function<void()> ACheck, std::function<void()> AOurs,
                    std::function<void()> ATheirs) {
    auto entry = std::make_unique<TEntry>();
    entry->Task = ATask;
    entry->Unit = "ms";
    entry->Check = std::move(ACheck);
    entry->TimeOurs = std::move(AOurs);
    entry->TimeTheirs = std::move(ATheirs);
    Entries().push_back(std::move(entry));
}

void Bench::Measure(const TBenchTask& ATask, const std::string& AUnit, std::function<double()> AOurs,
                    std::function<double()> ATheirs) {
    auto entry = std::make_unique<TEntry>();
    entry->Task = ATask;
    entry->Unit = AUnit;
    entry->MeasureOurs = std::move(AOurs);
    entry->MeasureTheirs = std::move(ATheirs);
    Entries().push_back(std::move(entry));
}

int Bench::Run(const std::string& AFilter, const std::string& AJsonFile) {
    std::vector<TEntry*> chosen;
    for (const auto& entry : Entries()) {
        if (entry->Name().find(AFilter) != std::string::npos)
            chosen.push_back(entry.get());
    }
    try {
        for (TEntry* entry : chosen) {
            if (entry->Check)
                entry->Check();
        }
        RunTimed(chosen);
        for (TEntry* entry : chosen) {
            if (!entry->MeasureOurs)
                continue;
            entry->Ours = entry->MeasureOurs();
            entry->Theirs = entry->MeasureTheirs();
        }
    } catch (const std::exception& e) {
        std::fprintf(stderr, "Wrong answer: %s\n", e.what());
        return 1;
    }
    std::printf("%-34s %-10s %-22s %12s %12s %-10s %7s %7s\n", "task", "size", "peer", "ours", "theirs",
                "unit", "ratio", "target");
    QJsonArray rows;
    for (const TEntry* entry : chosen) {
        PrintRow(*entry);
        rows.append(JsonRow(*entry));
    }
    QFile file(QString::fromStdString(AJsonFile));
    const QByteArray json = QJsonDocument(rows).toJson();
    if (!file.open(QIODevice::WriteOnly) || file.write(json) != json.size()) {
        std::fprintf(stderr, "%s cannot be written\n", AJsonFile.c_str());
        return 1;
    }
    return 0;
}

std::int64_t Bench::HeapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<std::int64_t>(info.uordblks + info.hblkhd);
}
