// Icons that are drawn, and so are sharp on every screen.
#pragma once

#include <QIcon>
#include <QList>

#include <functional>

class QPainter;

/// Draws into a square of AUnits by AUnits, whatever size the icon has on the screen. What it holds is copied
/// with the icon.
using TIconDrawing = std::function<void(QPainter& APainter, QIcon::Mode AMode)>;

/// ASizes are the edges, in pixels, that are offered to those who choose among sizes.
QIcon DrawnIcon(int AUnits, const QList<int>& ASizes, const TIconDrawing& ADrawing);
