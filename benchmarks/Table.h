// The benchmark table: what is timed, against what, and which ratio is wanted.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

/// One line of the table: a task of ours beside a peer's, in one run.
struct TBenchTask {
    std::string Task;
    std::string Size;
    std::string Peer;
    /// Ours divided by theirs must not be above this; nothing where no target was set.
    std::optional<double> Target;
};

namespace Bench {

/// Times two functions with Google Benchmark, several repetitions of each, interleaved, and compares the
/// medians. ACheck runs once before anything is timed and raises when one of them answers wrongly.
/// Bodies are run as they are: what they need is prepared by ACheck or lazily by themselves.
void Compare(const TBenchTask& ATask, std::function<void()> ACheck, std::function<void()> AOurs,
             std::function<void()> ATheirs);

/// Compares two numbers that are measured some other way, in unit AUnit.
void Measure(const TBenchTask& ATask, const std::string& AUnit, std::function<double()> AOurs,
             std::function<double()> ATheirs);

/// The tasks added from now on, up to the next call, are of the group AName. Each group is run in a process
/// of its own: memory that one task has freed makes the next one faster, ours or a peer's.
void Group(const std::string& AName);

/// Runs every task whose "Task/Size/Peer" contains AFilter, group by group, prints the table, and writes it
/// to AJsonFile. Returns the process's exit code: 0 also when a target is missed, 1 when an answer was wrong.
int Run(const std::string& AFilter, const std::string& AJsonFile);

/// What Run starts this program for: the lines of one group.
int RunGroup(const std::string& AGroup, const std::string& AFilter, const std::string& AJsonFile);

/// Bytes of heap in use.
std::int64_t HeapInUse();

} // namespace Bench

/// One function a file of benchmarks: adds its tasks.
void AddFindBenchmarks();
void AddHttpBenchmarks();
void AddJsonBenchmarks();
void AddOpenApiBenchmarks();
void AddSettingsBenchmarks();
void AddValuesBenchmarks();
void AddViewBenchmarks();
