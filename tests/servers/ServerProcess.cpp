#include "tests/servers/ServerProcess.h"

#include "tests/servers/RawServer.h"

#include <QElapsedTimer>

#include <csignal>
#include <stdexcept>
#include <sys/prctl.h>

namespace {

constexpr int StartMs = 60'000;
constexpr int StopMs = 10'000;
constexpr int PollMs = 20;

} // namespace

TServerProcess::TServerProcess(const QString& AProgram, const QStringList& AArguments) {
    FProcess.setProcessChannelMode(QProcess::MergedChannels);
    // A test that crashes must not leave its servers behind.
    FProcess.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    FProcess.start(AProgram, AArguments);
    if (!FProcess.waitForStarted())
        throw std::runtime_error(AProgram.toStdString() + " cannot be started");
}

TServerProcess::~TServerProcess() {
    FProcess.terminate();
    if (!FProcess.waitForFinished(StopMs)) {
        FProcess.kill();
        FProcess.waitForFinished();
    }
}

QString TServerProcess::WaitFor(const QRegularExpression& APattern) {
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        FOutput += FProcess.readAll();
        const auto match = APattern.match(QString::fromUtf8(FOutput));
        if (match.hasMatch())
            return match.captured(1);
        const auto left = StartMs - static_cast<int>(timer.elapsed());
        if (left <= 0 || FProcess.state() == QProcess::NotRunning || !FProcess.waitForReadyRead(left))
            Fail();
    }
}

void TServerProcess::WaitForPorts(const QList<int>& APorts) {
    QElapsedTimer timer;
    timer.start();
    for (const int port : APorts) {
        while (!IsListening(port)) {
            if (FProcess.waitForFinished(PollMs) || timer.elapsed() > StartMs)
                Fail();
        }
    }
}

void TServerProcess::Fail() {
    FOutput += FProcess.readAll();
    throw std::runtime_error(FProcess.program().toStdString() + ": " + FOutput.toStdString());
}
