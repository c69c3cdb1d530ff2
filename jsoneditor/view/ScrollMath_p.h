// The arithmetic of scrolling: whole pixels, rows of one height. Needs no window.
#pragma once

#include <QAbstractSlider>

/// The sizes a scroll offset is computed from, all in pixels.
struct TZOScrollSizes {
    int Offset = 0;
    int ContentHeight = 0;
    int ClientHeight = 0;
};

/// The rows First .. Last, counted from 0; none when Last is below First.
struct TZORowRange {
    int First = 0;
    int Last = -1;
};

/// AOffset within 0 .. content height less client height.
int ClampScrollOffset(int AOffset, const TZOScrollSizes& ASizes);
/// The offset nearest to the one in use that shows ATop .. ATop + AHeight whole; the top wins.
int OffsetToShow(int ATop, int AHeight, const TZOScrollSizes& ASizes);
/// What an action of the scroll bar asks for, not clamped. ATracking is the position of the slider.
int OffsetAfterAction(QAbstractSlider::SliderAction AAction, int ATracking, int AStep,
                      const TZOScrollSizes& ASizes);
/// The rows that show at least one pixel within ATop (inclusive) .. ABottom (exclusive) of the content.
TZORowRange RowsWithin(int ATop, int ABottom, int ARowHeight, int ARowCount);
