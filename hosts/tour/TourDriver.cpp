#include "hosts/tour/TourDriver.h"

#include "hosts/tour/Screen.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMetaObject>
#include <QProcess>
#include <QThread>

namespace {

constexpr int PatienceMs = 10'000;
constexpr int LookEveryMs = 25;

/// Asks the explorer's thread.
template <class F>
auto OnScreen(F&& AQuestion) {
    decltype(AQuestion()) answer{};
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [&] { answer = AQuestion(); }, Qt::BlockingQueuedConnection);
    return answer;
}

} // namespace

TZOTourDriver::TZOTourDriver(const QString& AFolder)
    : FFolder(AFolder), FTranscript(FFolder.filePath("transcript.txt")) {
    if (!QDir().mkpath(AFolder) || !FTranscript.open(QIODevice::WriteOnly | QIODevice::Text))
        throw EFCreateError(QStringLiteral("Cannot write the tour to \"%1\"").arg(AFolder));
}

void TZOTourDriver::Say(const QString& AText) {
    FTranscript.write(AText.toUtf8() + '\n');
    FTranscript.flush();
}

void TZOTourDriver::Step(const QString& ATitle) {
    FStep = ATitle;
    Say(QStringLiteral("\n== %1").arg(ATitle));
}

void TZOTourDriver::Fail(const QString& AWhat) {
    const QStringList lines = OnScreen([] { return Screen::Lines(); });
    const QString focus = OnScreen([] { return Screen::Focus(); });
    const QString picture = FilePath(QStringLiteral("failed.png"));
    OnScreen([&] { return Screen::Save(picture); });
    Say(QStringLiteral("FAILED: %1\nFocus: %2\n%3").arg(AWhat, focus, lines.join(QLatin1Char('\n'))));
    throw EZOTourError(
        QStringLiteral("%1: %2 (the focus is on %3; see %4)").arg(FStep, AWhat, focus, picture));
}

void TZOTourDriver::WaitFor(const QString& AWhat, const std::function<bool()>& ACondition) {
    QElapsedTimer timer;
    timer.start();
    while (!OnScreen([&] { return ACondition(); })) {
        if (timer.elapsed() > PatienceMs)
            Fail(AWhat);
        QThread::msleep(LookEveryMs);
    }
}

void TZOTourDriver::See(const QString& AText) {
    WaitFor(QStringLiteral("\"%1\" is not on the screen").arg(AText), [&] { return Screen::Shows(AText); });
}

void TZOTourDriver::SeeNoMore(const QString& AText) {
    WaitFor(QStringLiteral("\"%1\" is still on the screen").arg(AText),
            [&] { return !Screen::Shows(AText); });
}

void TZOTourDriver::Xdotool(const QStringList& AArguments) {
    QProcess process;
    process.start(QStringLiteral("xdotool"), AArguments);
    if (!process.waitForFinished(PatienceMs) || process.exitCode() != 0)
        Fail(QStringLiteral("xdotool %1: %2")
                 .arg(AArguments.join(QLatin1Char(' ')), QString::fromUtf8(process.readAllStandardError())));
}

void TZOTourDriver::Type(const QString& AText) {
    Say(QStringLiteral("type: %1").arg(AText));
    Xdotool({QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("8"), QStringLiteral("--"),
             AText});
}

void TZOTourDriver::Press(const QStringList& AKeys) {
    Say(QStringLiteral("press: %1").arg(AKeys.join(QLatin1Char(' '))));
    for (const QString& key : AKeys) {
        Xdotool({QStringLiteral("key"), key});
        // The explorer has worked the key off before the next one comes, as with a person's hands.
        OnScreen([] { return true; });
        QThread::msleep(LookEveryMs);
    }
}

void TZOTourDriver::PressUntilAt(const QString& AKey, const QString& AText) {
    for (int i = 0; i < 40; ++i) {
        if (OnScreen([] { return Screen::CurrentRow(); }).contains(AText))
            return;
        Press({AKey});
    }
    Fail(QStringLiteral("%1 does not lead to \"%2\"").arg(AKey, AText));
}

void TZOTourDriver::TabTo(const QString& AClassName) {
    for (int i = 0; i < 20; ++i) {
        if (OnScreen([] { return Screen::Focus(); }).startsWith(AClassName))
            return;
        Press({QStringLiteral("Tab")});
    }
    Fail(QStringLiteral("Tab does not lead to a %1").arg(AClassName));
}

void TZOTourDriver::Click(const QString& AText, int ATimes) {
    See(AText);
    const auto place = OnScreen([&] { return Screen::Find(AText); });
    if (!place)
        Fail(QStringLiteral("\"%1\" stands nowhere").arg(AText));
    Say(QStringLiteral("%1: %2").arg(ATimes == 2 ? QStringLiteral("double-click") : QStringLiteral("click"),
                                     AText));
    MoveTo(*place);
    Xdotool({QStringLiteral("click"), QStringLiteral("--repeat"), QString::number(ATimes),
             QStringLiteral("--delay"), QStringLiteral("60"), QStringLiteral("1")});
    OnScreen([] { return true; });
}

void TZOTourDriver::ClickAt(const QPoint& APlace, int AButton) {
    Say(QStringLiteral("click: %1 at %2, %3").arg(AButton).arg(APlace.x()).arg(APlace.y()));
    MoveTo(APlace);
    Xdotool({QStringLiteral("click"), QString::number(AButton)});
    OnScreen([] { return true; });
}

void TZOTourDriver::Drag(const QPoint& AFrom, const QPoint& ATo) {
    constexpr int steps = 8;
    Say(QStringLiteral("drag: %1, %2 to %3, %4").arg(AFrom.x()).arg(AFrom.y()).arg(ATo.x()).arg(ATo.y()));
    MoveTo(AFrom);
    Xdotool({QStringLiteral("mousedown"), QStringLiteral("1")});
    // A drag begins and goes on by moves that are seen one by one.
    for (int i = 1; i <= steps; ++i)
        MoveTo(AFrom + (ATo - AFrom) * i / steps);
    Xdotool({QStringLiteral("mouseup"), QStringLiteral("1")});
    OnScreen([] { return true; });
}

void TZOTourDriver::MoveTo(const QPoint& APlace) {
    Xdotool({QStringLiteral("mousemove"), QString::number(APlace.x()), QString::number(APlace.y())});
    QThread::msleep(2 * LookEveryMs);
    OnScreen([] { return true; });
}

void TZOTourDriver::Picture(const QString& AName) {
    // The pointer's hover and the caret's blinking have settled by then.
    QThread::msleep(150);
    const QString name = QStringLiteral("%1-%2.png").arg(++FPictures, 2, 10, QLatin1Char('0')).arg(AName);
    const QString path = FilePath(name);
    if (!OnScreen([&] { return Screen::Save(path); }))
        Fail(QStringLiteral("the picture %1 cannot be taken").arg(name));
    const QStringList lines = OnScreen([] { return Screen::Lines(); });
    Say(QStringLiteral("-- %1\n%2").arg(name, lines.join(QLatin1Char('\n'))));
}
