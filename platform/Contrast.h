// Whether a text can be read on its ground.
#pragma once

#include <QColor>

namespace Contrast {

/// What a text of the usual size needs (WCAG 2, level AA).
inline constexpr double Needed = 4.5;

/// How far two opaque colours stand apart, from 1 to 21, as WCAG 2 defines it.
double Between(const QColor& A, const QColor& B);
/// AColor, moved towards AText no further than needed to be read on AGround; AText where nothing less will
/// do. AText is a colour that can be read there.
QColor Readable(const QColor& AColor, const QColor& AGround, const QColor& AText);

} // namespace Contrast
