#include "benchmarks/WindowTiming.h"

#include <QApplication>
#include <QWheelEvent>
#include <QWidget>

#include <algorithm>
#include <ctime>
#include <stdexcept>
#include <vector>

void WindowTiming::Expect(bool AHolds, const char* AWhat) {
    if (!AHolds)
        throw std::runtime_error(AWhat);
}

double WindowTiming::Now() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

void WindowTiming::Flush() { QApplication::processEvents(); }

double WindowTiming::TimeOf(const std::function<void()>& AWhat) {
    const double start = Now();
    AWhat();
    Flush();
    return Now() - start;
}

WindowTiming::TSpread WindowTiming::Spread(int ACount, const std::function<void(int)>& AStep) {
    std::vector<double> times;
    for (int i = 0; i < ACount; ++i)
        times.push_back(TimeOf([&] { AStep(i); }));
    std::sort(times.begin(), times.end());
    return {times[times.size() / 2], times[times.size() * 99 / 100]};
}

double WindowTiming::Median(int ACount, const std::function<void(int)>& AStep) {
    return Spread(ACount, AStep).Median;
}

void WindowTiming::Wheel(QWidget* AWidget, int ADelta) {
    const QPointF point = AWidget->rect().center();
    QWheelEvent event(point, AWidget->mapToGlobal(point), {}, QPoint(0, ADelta), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(AWidget, &event);
}

void WindowTiming::Key(QWidget* AWidget, int AKey, const QString& AText, Qt::KeyboardModifiers AShift) {
    QKeyEvent press(QEvent::KeyPress, AKey, AShift, AText);
    QApplication::sendEvent(AWidget, &press);
    QKeyEvent release(QEvent::KeyRelease, AKey, AShift, AText);
    QApplication::sendEvent(AWidget, &release);
}

std::string WindowTiming::RowsText(int ACount) {
    return ACount >= 1000000 ? std::to_string(ACount / 1000000) + ",000,000 rows"
                             : std::to_string(ACount / 1000) + ",000 rows";
}
