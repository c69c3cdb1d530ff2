// Looking for a text in rows, whether they are in sight or not.
#pragma once

class TZOViewRow;

/// One search for one text, as the rows' data source makes it. Holds until rows or values change.
class TZORowSearch {
public:
    virtual ~TZORowSearch() = default;

    /// Whether ARow shows the text, in any case. Costs least when rows are asked about one after another.
    virtual bool Matches(TZOViewRow* ARow) = 0;
};
