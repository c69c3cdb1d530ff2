// zobench [FILTER] [JSON FILE]; zobench --cold TASK is what it runs itself, for times of a fresh process
#include "benchmarks/OpenApiCold.h"
#include "benchmarks/Table.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <string>

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

    AddFindBenchmarks();
    AddHttpBenchmarks();
    AddJsonBenchmarks();
    AddOpenApiBenchmarks();
    AddSettingsBenchmarks();
    AddValuesBenchmarks();
    AddViewBenchmarks();
    return Bench::Run(AArgc > 1 ? AArgv[1] : "", AArgc > 2 ? AArgv[2] : "bench.json");
}
