#include "tests/hosts/OutsideUser.h"

#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <QThread>

#include <stdexcept>

namespace {

constexpr int PatienceMs = 120'000; // a gibibyte on a busy machine
constexpr int LookEveryMs = 40;
constexpr int RestMs = 1000;

} // namespace

TOutsideUser::TOutsideUser(const QString& AProgram, const QStringList& AArguments, const QString& AFolder) {
    const QImage empty = Screen();
    FProcess.setProcessChannelMode(QProcess::ForwardedChannels);
    FProcess.setWorkingDirectory(AFolder);
    FProcess.start(AProgram, AArguments);
    const bool isThere = WaitFor([this] {
        FWindow = QString::fromUtf8(Xdotool({"search", "--onlyvisible", "--name", "^ZO Bridgework"}))
                      .section(u'\n', 0, 0);
        return !FWindow.isEmpty();
    });
    if (!isThere)
        throw std::runtime_error("the explorer's window does not come");
    Xdotool({"windowsize", "--sync", FWindow, "1000", "800"});
    Xdotool({"windowactivate", "--sync", FWindow});
    QImage last;
    const auto rests = [&] {
        const QImage now = Screen();
        return std::exchange(last, now) == now && now != empty;
    };
    if (!WaitFor(rests))
        throw std::runtime_error("the explorer's window does not come to rest");
}

TOutsideUser::~TOutsideUser() {
    if (FProcess.state() != QProcess::NotRunning) {
        FProcess.kill();
        FProcess.waitForFinished(5000);
    }
}

QByteArray TOutsideUser::Xdotool(const QStringList& AArguments) {
    QProcess process;
    process.start(QStringLiteral("xdotool"), AArguments);
    if (!process.waitForFinished(PatienceMs))
        throw std::runtime_error("xdotool does not end");
    return process.readAllStandardOutput();
}

QImage TOutsideUser::Screen() { return QGuiApplication::primaryScreen()->grabWindow(0).toImage(); }

bool TOutsideUser::WaitFor(const std::function<bool()>& AIsThere) {
    QElapsedTimer timer;
    timer.start();
    while (!AIsThere()) {
        if (timer.elapsed() > PatienceMs)
            return false;
        QThread::msleep(LookEveryMs);
    }
    return true;
}

bool TOutsideUser::WaitForWindow(const QString& ATitle) {
    return WaitFor([&] {
        return QString::fromUtf8(Xdotool({"getactivewindow", "getwindowname"})).trimmed() == ATitle;
    });
}

bool TOutsideUser::WaitForRest() {
    QImage last;
    QElapsedTimer rest;
    return WaitFor([&] {
        const QImage now = Screen();
        if (std::exchange(last, now) != now)
            rest.start();
        return rest.elapsed() > RestMs;
    });
}

void TOutsideUser::Do(const QStringList& AArguments) {
    const QImage before = Screen();
    QImage last = before;
    Xdotool(AArguments);
    const auto hasChanged = [&] {
        const QImage now = Screen();
        return std::exchange(last, now) == now && now != before;
    };
    if (!WaitFor(hasChanged)) {
        Picture(QStringLiteral("stuck"));
        throw std::runtime_error("nothing happens on the screen after " +
                                 AArguments.join(u' ').toStdString());
    }
}

void TOutsideUser::Press(const QString& AKey) { Do({"key", AKey}); }

void TOutsideUser::PressOnly(const QString& AKey) { Xdotool({"key", AKey}); }

void TOutsideUser::Type(const QString& AText) { Do({"type", "--delay", "8", "--", AText}); }

void TOutsideUser::Click(const QPoint& APlace, int ATimes) {
    // The hover editor comes up where the pointer stands.
    Xdotool({"mousemove", "--sync", "--window", FWindow, QString::number(APlace.x()),
             QString::number(APlace.y())});
    Do({"click", "--repeat", QString::number(ATimes), "--delay", "60", "1"});
}

void TOutsideUser::Open(const QString& AName) {
    Type(AName);
    Press(QStringLiteral("Down"));
    Press(QStringLiteral("Return"));
}

bool TOutsideUser::Quit() {
    PressOnly(QStringLiteral("ctrl+q"));
    return FProcess.waitForFinished(PatienceMs) && FProcess.exitStatus() == QProcess::NormalExit &&
           FProcess.exitCode() == 0;
}

qint64 TOutsideUser::PeakMemory() const {
    QFile file(QStringLiteral("/proc/%1/status").arg(FProcess.processId()));
    if (file.open(QIODevice::ReadOnly))
        for (const QByteArray& line : file.readAll().split('\n'))
            if (line.startsWith("VmHWM:"))
                return line.mid(6).trimmed().split(' ').first().toLongLong() * 1024;
    return -1;
}

void TOutsideUser::Picture(const QString& AName) const {
    const QByteArray folder = qgetenv("ZO_PICTURES");
    if (!folder.isEmpty())
        Screen().save(QStringLiteral("%1/%2.png").arg(QFile::decodeName(folder), AName));
}
