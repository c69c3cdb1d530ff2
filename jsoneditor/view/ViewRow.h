// One line of a view, as its data source makes it.
#pragma once

#include "jsoneditor/view/LinkedList.h"

#include <cstddef>

class TZODataSource;
class TZORestView;
class TZORowIndex;
class TZOViewRowLayout;
struct TZORowBlock;

/// One line of a view. A data source derives from it, creates it with new and puts it into its view, which
/// frees it; freeing it earlier, by the source's Remove or by delete, takes it out of the view first.
class TZOViewRow : public TZOLinkedList::TItem {
public:
    /// ALevel is the indentation, 0 for the outermost rows.
    explicit TZOViewRow(int ALevel) : FLevel(ALevel) {}
    virtual ~TZOViewRow();

    /// Rows have memory of their own, as there may be millions of them.
    static void* operator new(std::size_t ASize);
    static void operator delete(void* ARow, std::size_t ASize) noexcept;

    /// The source that put the row into its view, or null while it is in none.
    TZODataSource* Source() const;
    /// Null while the row is out of sight or has changed since the last update.
    TZOViewRowLayout* Layout() const { return FLayout; }
    int Level() const { return FLevel; }
    /// Calls Changed when ALevel differs. The row must have a source then.
    void SetLevel(int ALevel);

    TZOViewRow* Next() const { return static_cast<TZOViewRow*>(DoNext()); }
    TZOViewRow* Prev() const { return static_cast<TZOViewRow*>(DoPrev()); }

    /// What the row shows has changed: its view asks for its chunks again. The row must have a source.
    virtual void Changed();

private:
    friend class TZORestView;
    friend class TZORowIndex;
    friend class TZOViewRowLayout;

    TZOViewRowLayout* FLayout = nullptr;
    TZORowBlock* FBlock = nullptr;
    int FLevel;
};
