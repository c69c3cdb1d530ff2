// Texts from outside as tool tips.
#pragma once

#include <QString>

/// A tool tip that shows AText as visible text, in its own lines, the long ones broken: without this a tip
/// takes what looks like tags for markup. The same goes for "What's this?".
QString TipText(const QString& AText);
