// Text over several lines that ends where its rectangle does.
#pragma once

#include <QFont>
#include <QRect>
#include <QString>
#include <QStringList>

class QPainter;

/// The lines of AText, broken at words where possible, within AWidth pixels: AMaxLines of them at most, the
/// last of which ends in an ellipsis when there was more. Costs what is kept, not what AText holds.
QStringList WrapText(const QString& AText, const QFont& AFont, int AWidth, int AMaxLines);

/// Draws AText, left and top aligned, with the painter's font and pen: as many whole lines as fit into ARect
/// (but at least one). Nothing is drawn into an empty rectangle.
void DrawWrappedText(QPainter& APainter, const QRect& ARect, const QString& AText);
