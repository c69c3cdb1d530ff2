// zobench [FILTER] [JSON FILE]; it runs itself with --group for the tasks of one process, and with --cold for
// times of a fresh one
#include "benchmarks/OpenApiCold.h"
#include "benchmarks/Table.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <string>
#include <utility>

namespace {

void AddAll() {
    const std::pair<const char*, void (*)()> groups[] = {
        {"find", &AddFindBenchmarks},         {"http", &AddHttpBenchmarks},
        {"json", &AddJsonBenchmarks},         {"openapi", &AddOpenApiBenchmarks},
        {"settings", &AddSettingsBenchmarks}, {"values", &AddValuesBenchmarks},
        {"view", &AddViewBenchmarks},
    };
    for (const auto& [name, add] : groups) {
        Bench::Group(name);
        add();
    }
}

} // namespace

int main(int AArgc, char** AArgv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(AArgc, AArgv);
    if (AArgc > 2 && std::string(AArgv[1]) == "--cold")
        return OpenApiCold::RunTask(AArgv[2]);
    // Ours and theirs take turns, so that a change of the machine's pace meets both alike.
    char name[] = "zobench", interleave[] = "--benchmark_enable_random_interleaving=true";
    char* arguments[] = {name, interleave, nullptr};
    int count = 2;
    benchmark::Initialize(&count, arguments);

    AddAll();
    const auto argument = [&](int index, const char* missing) {
        return std::string(index < AArgc ? AArgv[index] : missing);
    };
    if (argument(1, "") == "--group")
        return Bench::RunGroup(argument(2, ""), argument(3, ""), argument(4, "bench.json"));
    return Bench::Run(argument(1, ""), argument(2, "bench.json"));
}
