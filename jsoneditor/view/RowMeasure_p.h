// Where the chunks of a row stand.
#pragma once

class QFont;
class TZOShapedTexts;
class TZOViewRowLayout;

/// Sets the bounds of every chunk of ALayout: indented by the row's level, one after the other, in the middle
/// of a row that is ARowHeight pixels high.
void MeasureRow(TZOViewRowLayout& ALayout, TZOShapedTexts& ATexts, const QFont& AFont, int ARowHeight);
