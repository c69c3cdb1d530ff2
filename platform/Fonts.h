// The fonts of the user interface, by the names they are asked for.
#pragma once

#include <QFont>

/// The font of family AFamily at APixelSize device-independent pixels (a font height of -12 is 12). Where the
/// family is missing, the nearest one present stands in: "Courier New" falls back to a fixed-width family,
/// every other name to a sans-serif one.
QFont UiFont(const QString& AFamily, int APixelSize);
