// How one row is laid out while it is on screen.
#pragma once

#include "jsoneditor/view/LinkedList.h"
#include "jsoneditor/view/RowChunk.h"

#include <QPoint>
#include <QRect>
#include <QString>

#include <cstddef>
#include <memory>
#include <vector>

class TZORestView;
class TZOViewRow;

/// The chunks of one row and their place. The view makes it when the row comes into sight, the data source
/// fills it with AddChunk, and the view drops it when the row changes or leaves: keep no pointer to it or to
/// a chunk across an update, keep the row and the chunk's identifier.
class TZOViewRowLayout : public TZOLinkedList::TItem {
public:
    /// Becomes ARow's layout.
    TZOViewRowLayout(TZORestView* AView, TZOViewRow* ARow);
    ~TZOViewRowLayout();

    static void* operator new(std::size_t ASize);
    static void operator delete(void* ALayout, std::size_t ASize) noexcept;

    TZORestView* View() const { return FView; }
    TZOViewRow* Row() const { return FRow; }
    /// In the view's client coordinates: the client width by one row height, after scrolling.
    const QRect& Bounds() const { return FBounds; }

    /// The neighbours among the layouts on screen, or null.
    TZOViewRowLayout* Next() const { return static_cast<TZOViewRowLayout*>(DoNext()); }
    TZOViewRowLayout* Prev() const { return static_cast<TZOViewRowLayout*>(DoPrev()); }

    /// The new chunk stands after all others and is owned by the layout.
    TZORowChunk* AddChunk(int AId);
    TZORowChunk* AddChunk(int AId, const QString& AText, bool AIsEditable, TZOChunkToken ATextToken);

    int GetChunkCount() const { return static_cast<int>(FChunks.size()); }
    /// AIndex counts from 0 in the order of adding; raises EListError outside.
    TZORowChunk* GetChunks(int AIndex) const;

    /// The index of the first chunk that contains APoint (layout coordinates) or has AId, else -1.
    int IndexOfChunk(const QPoint& APoint) const;
    int IndexOfChunk(int AId) const;

    /// These answer false, and leave AChunk alone, when there is no such chunk.
    bool TryGetChunk(const QPoint& APoint, TZORowChunk*& AChunk) const;
    /// Looks at the first chunk with AId only.
    bool TryGetChunk(int AId, bool AEditableOnly, TZORowChunk*& AChunk) const;
    bool TryGetFirstEditable(TZORowChunk*& AChunk) const;
    bool TryGetLastEditable(TZORowChunk*& AChunk) const;
    /// The nearest editable chunk strictly after, or before, the first chunk with AId.
    bool TryGetNextEditable(int AId, TZORowChunk*& AChunk) const;
    bool TryGetPrevEditable(int AId, TZORowChunk*& AChunk) const;

private:
    friend class TZORestView;
    friend class TZORowChunk;

    /// The source has filled the layout: from here on a chunk that is asked for its place has one.
    void Filled() { FIsMeasured = false; }
    void MeasureOnce();
    bool TryGetEditableFrom(int AIndex, int AStep, TZORowChunk*& AChunk) const;

    TZORestView* FView;
    TZOViewRow* FRow;
    QRect FBounds;
    bool FIsMeasured = true;
    std::vector<std::unique_ptr<TZORowChunk>> FChunks;
};
