#include "platform/Contrast.h"

#include <algorithm>
#include <cmath>

namespace {

double Luminance(const QColor& AColor) {
    const auto linear = [](double AValue) {
        return AValue <= 0.04045 ? AValue / 12.92 : std::pow((AValue + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(AColor.redF()) + 0.7152 * linear(AColor.greenF()) +
           0.0722 * linear(AColor.blueF());
}

} // namespace

double Contrast::Between(const QColor& A, const QColor& B) {
    const double a = Luminance(A), b = Luminance(B);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QColor Contrast::Readable(const QColor& AColor, const QColor& AGround, const QColor& AText) {
    constexpr int steps = 16;
    for (int i = 0; i < steps; ++i) {
        const auto mixed = [i](int A, int B) { return A + (B - A) * i / steps; };
        const QColor color(mixed(AColor.red(), AText.red()), mixed(AColor.green(), AText.green()),
                           mixed(AColor.blue(), AText.blue()));
        if (Between(color, AGround) >= Needed)
            return color;
    }
    return AText;
}
