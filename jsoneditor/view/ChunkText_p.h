// The text of a chunk as it is measured and painted.
#pragma once

#include <QString>

/// AText on one line, with characters that can be seen in the place of those that act.
QString ChunkDisplayText(const QString& AText);
