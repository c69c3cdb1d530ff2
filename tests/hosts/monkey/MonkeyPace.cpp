#include "tests/hosts/monkey/MonkeyPace.h"

#include "tests/hosts/monkey/ProcessFigures.h"

#include <QApplication>
#include <QEventLoop>
#include <QWidget>

#include <cstdio>
#include <cstdlib>
#include <thread>

namespace {

/// What a user bears.
constexpr int BearableMs = 2000;
/// An act that takes longer is one with a loop of its own, or a slow one: the next comes meanwhile.
constexpr int PatienceMs = 20;
/// Nothing comes any more.
constexpr int DeadMs = 120'000;

} // namespace

TMonkeyPace::TMonkeyPace() {
    FClock.start();
    QCoreApplication::instance()->installEventFilter(this);
}

TMonkeyPace::~TMonkeyPace() { QCoreApplication::instance()->removeEventFilter(this); }

void TMonkeyPace::Run(int ACount, const std::function<void()>& AAct, const std::function<void()>& AEnd) {
    QEventLoop loop;
    std::thread thread([&] {
        for (int i = 0; i < ACount; ++i)
            Do(AAct);
        // What is inside of an act lasts until somebody ends it.
        while (FDepth > 0)
            Do(AEnd);
        QMetaObject::invokeMethod(
            &loop, [&] { loop.quit(); }, Qt::QueuedConnection);
    });
    loop.exec();
    thread.join();
}

void TMonkeyPace::Do(const std::function<void()>& AAct) {
    const qint64 posted = FClock.elapsed();
    const std::string during = Said();
    QMetaObject::invokeMethod(
        this,
        [this, AAct] {
            ++FDepth;
            FStarted.release();
            AAct();
            --FDepth;
            FEnded.release();
        },
        Qt::QueuedConnection);
    if (!FStarted.tryAcquire(1, DeadMs * Slowness())) {
        std::fprintf(stderr, "Nothing happens any more after: %s\n", during.c_str());
        std::abort();
    }
    const qint64 pause = FClock.elapsed() - posted;
    FLongestMs = qMax(FLongestMs, pause);
    if (pause > BearableMs * Slowness())
        FPauses.push_back({pause, during});
    FEnded.tryAcquire(1, PatienceMs);
}

void TMonkeyPace::Say(std::string AWhat) {
    const std::lock_guard lock(FMutex);
    FSaid = std::move(AWhat);
}

std::string TMonkeyPace::Said() {
    const std::lock_guard lock(FMutex);
    return FSaid;
}

bool TMonkeyPace::eventFilter(QObject* AObject, QEvent* AEvent) {
    const QEvent::Type type = AEvent->type();
    if (type != QEvent::Paint && type != QEvent::Hide)
        return false;
    if (AObject != FProgress && AObject->objectName() != QLatin1String("ProgressLabel"))
        return false;
    if (type == QEvent::Hide || AObject != FProgress) {
        FPaintedMs = -1;
        FProgress = AObject;
    }
    if (type == QEvent::Paint) {
        const qint64 now = FClock.elapsed();
        if (FPaintedMs >= 0)
            FRepaints.push_back(now - FPaintedMs);
        FPaintedMs = now;
    }
    return false;
}
