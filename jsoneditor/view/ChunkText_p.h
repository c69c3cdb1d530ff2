// The text of a chunk as it is measured and painted.
#pragma once

#include <QString>

/// AText with one blank for each character that has no glyph (line breaks, tabs and other controls), as an
/// edit box shows it on its single line.
QString ChunkDisplayText(const QString& AText);
