// What lies under a point of a view.
#pragma once

#include <QFlags>

class TZORowChunk;
class TZOViewRow;

enum TZOHitTestFlag { htRow = 1, htChunk = 2 };
Q_DECLARE_FLAGS(TZOHitTestFlags, TZOHitTestFlag)
Q_DECLARE_OPERATORS_FOR_FLAGS(TZOHitTestFlags)

/// The row and chunk under a point. Valid until the view's next update.
struct TZOHitTest {
    TZOHitTestFlags Flags;
    /// Set when Flags holds htRow.
    TZOViewRow* Row = nullptr;
    /// Set when Flags holds htChunk.
    TZORowChunk* Chunk = nullptr;
};
