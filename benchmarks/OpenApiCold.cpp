#include "benchmarks/OpenApiCold.h"

#include "benchmarks/OpenApiFixture.h"
#include "benchmarks/WindowTiming.h"

#include "openapi/ApiDocument.h"

#include <QApplication>
#include <QFile>
#include <QProcess>

#include <simdjson.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

using WindowTiming::Expect;

namespace {

/// Runs AStep and answers its milliseconds.
double Once(const std::function<void()>& AStep) {
    const double start = OpenApiFixture::Now();
    AStep();
    return OpenApiFixture::Now() - start;
}

double Dom() {
    return Once([] {
        simdjson::dom::parser parser;
        Expect(!parser.load(OpenApiFixture::JsonFile().toStdString()).error(),
               "simdjson refuses the document");
    });
}

std::unique_ptr<TZOApiDocument> Load() { return TZOApiDocument::Load(OpenApiFixture::JsonFile()); }

double First() {
    const auto document = Load();
    const TZORestService::TTypeInfo* type = document->ServiceClass()->TypeInfo();
    return Once([type] { type->Complete(&type->Opers()[40]); });
}

const std::map<std::string, std::function<double()>>& Tasks() {
    static const std::map<std::string, std::function<double()>> tasks = {
        {"dom", &Dom},
        {"list", [] { return Once([] { Expect(!!Load()->ServiceClass(), "no service"); }); }},
        {"all", [] { return Once([] { Load()->CompleteAll(); }); }},
        {"first", &First},
        {"window", [] { return OpenApiFixture::WindowOnce().ListPainted; }},
    };
    return tasks;
}

/// Takes the document's pages out of the cache; they are clean, as nobody writes to it.
void DropPages() {
    const int handle = ::open(OpenApiFixture::JsonFile().toUtf8().constData(), O_RDONLY);
    Expect(handle >= 0 && ::posix_fadvise(handle, 0, 0, POSIX_FADV_DONTNEED) == 0,
           "the document's pages cannot be dropped");
    ::close(handle);
}

QByteArray RunCold(const QString& AProgram, const QStringList& AArguments) {
    DropPages();
    QProcess process;
    process.start(AProgram, AArguments);
    Expect(process.waitForFinished(60000) && process.exitCode() == 0, "a cold task failed");
    return process.readAllStandardOutput();
}

double MedianOf(const std::function<double()>& AMeasure) {
    std::vector<double> times;
    for (int i = 0; i < 7; ++i)
        times.push_back(AMeasure());
    std::nth_element(times.begin(), times.begin() + 3, times.end());
    return times[3];
}

} // namespace

int OpenApiCold::RunTask(const char* ATask) {
    const auto task = Tasks().find(ATask);
    if (task == Tasks().end())
        return 1;
    std::printf("%.3f\n", task->second());
    return 0;
}

double OpenApiCold::Time(const char* ATask) {
    return MedianOf([ATask] {
        return RunCold(QApplication::applicationFilePath(), {QStringLiteral("--cold"), QLatin1String(ATask)})
            .trimmed()
            .toDouble();
    });
}

double OpenApiCold::ZoApi() {
    return MedianOf([] {
        return Once([] {
            const QByteArray lines = RunCold(QApplication::applicationDirPath() + QStringLiteral("/zoapi"),
                                             {QStringLiteral("operations"), OpenApiFixture::JsonFile()});
            Expect(lines.count('\n') == 1223, "zoapi lists another number of operations");
        });
    });
}
