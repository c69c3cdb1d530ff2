#include "benchmarks/Table.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

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
    std::string Group;
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

std::string& CurrentGroup() {
    static std::string group;
    return group;
}

TEntry& AddEntry(const TBenchTask& ATask, const std::string& AUnit) {
    auto entry = std::make_unique<TEntry>();
    entry->Task = ATask;
    entry->Group = CurrentGroup();
    entry->Unit = AUnit;
    Entries().push_back(std::move(entry));
    return *Entries().back();
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

void PrintHeader() {
    std::printf("%-34s %-10s %-22s %12s %12s %-10s %7s %7s\n", "task", "size", "peer", "ours", "theirs",
                "unit", "ratio", "target");
    std::fflush(stdout);
}

void MeasureAll(const std::vector<TEntry*>& AChosen) {
    for (TEntry* entry : AChosen) {
        if (entry->Check)
            entry->Check();
    }
    RunTimed(AChosen);
    for (TEntry* entry : AChosen) {
        if (!entry->MeasureOurs)
            continue;
        entry->Ours = entry->MeasureOurs();
        entry->Theirs = entry->MeasureTheirs();
    }
}

bool Write(const QJsonArray& ARows, const QString& AFile) {
    QFile file(AFile);
    const QByteArray json = QJsonDocument(ARows).toJson();
    if (file.open(QIODevice::WriteOnly) && file.write(json) == json.size())
        return true;
    std::fprintf(stderr, "%s cannot be written\n", qPrintable(AFile));
    return false;
}

/// The groups with a task that is chosen, in their order.
std::vector<std::string> Groups(const std::string& AFilter) {
    std::vector<std::string> groups;
    for (const auto& entry : Entries()) {
        const bool isChosen = entry->Name().find(AFilter) != std::string::npos;
        if (isChosen && std::find(groups.begin(), groups.end(), entry->Group) == groups.end())
            groups.push_back(entry->Group);
    }
    return groups;
}

/// Runs a group in a process of its own, which prints its lines.
bool StartGroup(const std::string& AGroup, const std::string& AFilter, const QString& AFile,
                QJsonArray& ARows) {
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(
        QCoreApplication::applicationFilePath(),
        {QStringLiteral("--group"), QString::fromStdString(AGroup), QString::fromStdString(AFilter), AFile});
    QFile file(AFile);
    if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0 || !file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "The benchmarks of the group \"%s\" have failed\n", AGroup.c_str());
        return false;
    }
    for (const QJsonValue& row : QJsonDocument::fromJson(file.readAll()).array())
        ARows.append(row);
    return true;
}

} // namespace

void Bench::Group(const std::string& AName) { CurrentGroup() = AName; }

void Bench::Compare(const TBenchTask& ATask, std::function<void()> ACheck, std::function<void()> AOurs,
                    std::function<void()> ATheirs) {
    TEntry& entry = AddEntry(ATask, "ms");
    entry.Check = std::move(ACheck);
    entry.TimeOurs = std::move(AOurs);
    entry.TimeTheirs = std::move(ATheirs);
}

void Bench::Measure(const TBenchTask& ATask, const std::string& AUnit, std::function<double()> AOurs,
                    std::function<double()> ATheirs) {
    TEntry& entry = AddEntry(ATask, AUnit);
    entry.MeasureOurs = std::move(AOurs);
    entry.MeasureTheirs = std::move(ATheirs);
}

int Bench::RunGroup(const std::string& AGroup, const std::string& AFilter, const std::string& AJsonFile) {
    std::vector<TEntry*> chosen;
    for (const auto& entry : Entries()) {
        if (entry->Group == AGroup && entry->Name().find(AFilter) != std::string::npos)
            chosen.push_back(entry.get());
    }
    try {
        MeasureAll(chosen);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "Wrong answer: %s\n", e.what());
        return 1;
    }
    QJsonArray rows;
    for (const TEntry* entry : chosen) {
        PrintRow(*entry);
        rows.append(JsonRow(*entry));
    }
    return Write(rows, QString::fromStdString(AJsonFile)) ? 0 : 1;
}

int Bench::Run(const std::string& AFilter, const std::string& AJsonFile) {
    const QTemporaryDir folder;
    PrintHeader();
    QJsonArray rows;
    bool areAllRight = true;
    for (const std::string& group : Groups(AFilter))
        areAllRight &= StartGroup(group, AFilter, folder.filePath(QStringLiteral("group.json")), rows);
    return Write(rows, QString::fromStdString(AJsonFile)) && areAllRight ? 0 : 1;
}

std::int64_t Bench::HeapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<std::int64_t>(info.uordblks + info.hblkhd);
}
