#include "tests/faults/FaultRun.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <string_view>

namespace {

/// A call that is made again and again until it works would never end.
constexpr int MaxTurns = 400;
constexpr int SanitizerExitCode = 99;

struct TKind {
    std::string_view Name;
    std::vector<int> Errors; ///< the first one is the usual one
};

const TKind& KindOf(std::string_view AName) {
    static const TKind kinds[] = {{"open", {EACCES, EMFILE}},
                                  {"read", {EIO}},
                                  {"write", {ENOSPC, EIO}},
                                  {"fsync", {EIO, ENOSPC}},
                                  {"rename", {EACCES, EIO}},
                                  {"unlink", {EACCES, EIO}},
                                  {"connect", {ECONNREFUSED, ENETUNREACH}},
                                  {"send", {ECONNRESET, EPIPE}},
                                  {"recv", {ECONNRESET, ETIMEDOUT}}};
    for (const TKind& kind : kinds) {
        if (kind.Name == AName)
            return kind;
    }
    std::abort();
}

/// One run with one fault.
struct TTurn {
    const char* Kind;
    int Number;
    int Error;
    bool IsLasting;

    std::string Text() const {
        return std::string(Kind) + ' ' + std::to_string(Number) + ' ' + std::strerror(Error) +
               (IsLasting ? " from then on" : "");
    }
};

void AddOption(QProcessEnvironment& AEnvironment, const QString& AName, const QString& AOption) {
    const QString before = AEnvironment.value(AName);
    AEnvironment.insert(AName, before.isEmpty() ? AOption : before + u':' + AOption);
}

QProcessEnvironment EnvironmentOf(const TTurn& ATurn, const QString& AFolder, const QString& ALog) {
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(ZO_FAULTY_CALLS));
    environment.insert(QStringLiteral("ZO_FAULT"), QStringLiteral("%1 %2 %3%4")
                                                       .arg(QLatin1String(ATurn.Kind))
                                                       .arg(ATurn.Number)
                                                       .arg(ATurn.Error)
                                                       .arg(QLatin1String(ATurn.IsLasting ? " on" : "")));
    environment.insert(QStringLiteral("ZO_FAULT_FOLDER"), AFolder);
    environment.insert(QStringLiteral("ZO_FAULT_LOG"), ALog);
    environment.insert(QStringLiteral("ZO_SETTINGS_FILE"), AFolder + QStringLiteral("/settings.db"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    // The program's own exit codes are small.
    const QString exit = QStringLiteral("exitcode=%1").arg(SanitizerExitCode);
    AddOption(environment, QStringLiteral("ASAN_OPTIONS"),
              QStringLiteral("verify_asan_link_order=0:") + exit);
    AddOption(environment, QStringLiteral("LSAN_OPTIONS"), exit);
    AddOption(environment, QStringLiteral("UBSAN_OPTIONS"), exit);
    return environment;
}

QByteArray ReadAll(const QString& AFileName) {
    QFile file(AFileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

void CheckEveryRun(const QProcess& AProcess, const TFaultScript& AScript, const TFaultOutcome& AOutcome) {
    EXPECT_EQ(AProcess.exitStatus(), QProcess::NormalExit);
    EXPECT_TRUE(AOutcome.ExitCode >= 0 && AOutcome.ExitCode <= 2) << AOutcome.ExitCode;
    EXPECT_FALSE(AOutcome.Errors.contains("Sanitizer") || AOutcome.Errors.contains("runtime error"));
    EXPECT_TRUE(AOutcome.IsGood() || !AOutcome.Failed.isEmpty() || AScript.AlwaysComplains)
        << "failed by itself";
    EXPECT_FALSE(!AOutcome.IsGood() && AOutcome.Errors.isEmpty() && AOutcome.Output.isEmpty())
        << "says nothing";
}

/// Whether the fault was met.
bool RunOnce(const TFaultScript& AScript, const TTurn& ATurn) {
    const QTemporaryDir outer;
    TFaultOutcome outcome;
    outcome.Folder = QDir(outer.path()).canonicalPath() + QStringLiteral("/run");
    QDir().mkdir(outcome.Folder);
    const QString log = outer.filePath(QStringLiteral("log"));
    if (AScript.Prepare)
        AScript.Prepare(outcome.Folder);
    QProcess process;
    process.setProcessEnvironment(EnvironmentOf(ATurn, outcome.Folder, log));
    process.setWorkingDirectory(outcome.Folder);
    QStringList arguments = AScript.Arguments;
    process.start(AScript.Program, arguments.replaceInStrings(QStringLiteral("%1"), outcome.Folder));
    process.closeWriteChannel();
    if (AScript.Meanwhile) {
        while (process.state() != QProcess::NotRunning && !process.waitForFinished(0))
            AScript.Meanwhile(outcome.Folder);
    }
    EXPECT_TRUE(process.state() == QProcess::NotRunning || process.waitForFinished(60'000))
        << process.errorString().toStdString();
    outcome.ExitCode = process.exitCode();
    outcome.Output = process.readAllStandardOutput();
    outcome.Errors = process.readAllStandardError();
    // The next start is made by a process that has not seen these files before, such as this one.
    const QString next = outer.filePath(QStringLiteral("next"));
    EXPECT_TRUE(QDir().rename(outcome.Folder, next));
    outcome.Folder = next;
    if (QFile::exists(log))
        outcome.AllFailed = ReadAll(log).trimmed().split('\n');
    outcome.Failed = outcome.AllFailed.value(0);
    SCOPED_TRACE(ATurn.Text() + ": " + outcome.Failed.toStdString() + "\nexit code " +
                 std::to_string(outcome.ExitCode) + "\n" + outcome.Errors.toStdString() +
                 outcome.Output.toStdString());
    CheckEveryRun(process, AScript, outcome);
    AScript.Check(outcome);
    return !outcome.Failed.isEmpty();
}

} // namespace

QByteArray TFaultOutcome::Content(const QString& AName) const { return ReadAll(Path(AName)); }

QStringList TFaultOutcome::Files() const {
    return QDir(Folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

void RunWithEveryFault(const TFaultScript& AScript, const std::vector<const char*>& AKinds, bool AIsLasting) {
    const bool isAll = qEnvironmentVariableIsSet("ZO_FAULTS");
    for (const char* kind : AKinds) {
        for (const int error : KindOf(kind).Errors) {
            for (const bool isLasting : {false, true}) {
                if (!isAll && ((isLasting && !AIsLasting) || error != KindOf(kind).Errors.front()))
                    continue;
                int number = 1;
                while (RunOnce(AScript, {kind, number, error, isLasting})) {
                    if (testing::Test::HasFailure())
                        return;
                    ASSERT_LT(++number, MaxTurns) << kind << " never ends";
                }
                EXPECT_GT(number, 1) << "there is no call of the kind " << kind;
            }
        }
    }
}
