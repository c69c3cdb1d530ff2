// What benchmarks of controls share: a clock, and a user's hands.
#pragma once

#include <QSize>
#include <QString>

#include <functional>
#include <string>

class QWidget;

namespace WindowTiming {

/// The size of the windows that are measured.
constexpr QSize WindowSize(1000, 800);

/// Raises std::runtime_error(AWhat) unless AHolds.
void Expect(bool AHolds, const char* AWhat);
/// The processor time of this thread, in milliseconds: what other programs take meanwhile is left out.
double Now();
/// Paints what waits to be painted.
void Flush();
/// Does it, and paints what it has changed.
double TimeOf(const std::function<void()>& AWhat);

struct TSpread {
    double Median = 0, Worst = 0;
};
/// The median and the 99th percentile of ACount runs.
TSpread Spread(int ACount, const std::function<void(int)>& AStep);
double Median(int ACount, const std::function<void(int)>& AStep);

void Wheel(QWidget* AWidget, int ADelta);
void Key(QWidget* AWidget, int AKey, const QString& AText = {}, Qt::KeyboardModifiers AShift = {});

/// "10,000 rows".
std::string RowsText(int ACount);

} // namespace WindowTiming
