// The intrusive list that holds the rows of a view and the layouts that are on screen.
#pragma once

#include <cstddef>
#include <functional>
#include <type_traits>
#include <vector>

/// Doubly linked list whose links lie inside its elements. It never owns an element. An element is in at
/// most one list: adding it to a list takes it out of the one that holds it. Everything is constant time and
/// allocation-free except clearing, ToArray, MoveTo and the walk over a run that is moved.
class TZOLinkedList {
public:
    /// Called with no argument after each structural change.
    using TProc = std::function<void()>;

    struct THeader;
    using PHeader = THeader*;
    struct THeader {
        PHeader Next = nullptr;
        PHeader Prev = nullptr;
    };

    /// Base of everything that can be put into a list. Whoever frees an element takes it out first.
    class TItem {
    public:
        TItem() = default;
        TItem(const TItem&) = delete;
        TItem& operator=(const TItem&) = delete;

        /// The list that holds the element, or null.
        TZOLinkedList* List() const { return FList; }

    protected:
        ~TItem() = default;

        /// The neighbour, or null at either end and in no list.
        TItem* DoNext() const;
        TItem* DoPrev() const;

    private:
        friend class TZOLinkedList;
        TZOLinkedList* FList = nullptr;
        THeader FHeader;
    };

    TZOLinkedList();
    explicit TZOLinkedList(TProc AOnChange);
    /// Unlinks the elements without a notification.
    virtual ~TZOLinkedList();
    TZOLinkedList(const TZOLinkedList&) = delete;
    TZOLinkedList& operator=(const TZOLinkedList&) = delete;

    int GetCount() const { return FCount; }

protected:
    /// Runs after every structural change; calls the closure if there is one.
    virtual void Changed() {
        if (FOnChange)
            FOnChange();
    }

    void DoAdd(PHeader AHeader, PHeader APrev, PHeader ANext) {
        if (ItemOf(AHeader)->FList)
            TakeOver(AHeader, APrev, ANext);
        else
            Link(AHeader, APrev, ANext);
    }
    void DoRemove(PHeader AHeader, PHeader APrev, PHeader ANext);
    void DoClear();
    /// The run must end after its start in this list and must not contain the anchor: neither is checked.
    void DoMoveBefore(PHeader AFirst, PHeader ALast, PHeader ABefore);
    void DoMoveAfter(PHeader AFirst, PHeader ALast, PHeader AAfter);
    void DoCheckRange(PHeader AFirst, PHeader ALast, PHeader ATarget);

    /// Null for a null header.
    static TItem* ItemOf(PHeader AHeader);
    static PHeader HeaderOf(TItem* AItem) { return &AItem->FHeader; }
    static TItem* NextOf(const TItem* AItem) { return AItem->DoNext(); }

    THeader FFirst;
    THeader FLast;

private:
    /// As DoAdd, for an element that a list holds, perhaps this one.
    void TakeOver(PHeader AHeader, PHeader APrev, PHeader ANext);
    void Link(PHeader AHeader, PHeader APrev, PHeader ANext);
    void Unlink(PHeader AFirst, PHeader ALast);

    int FCount = 0;
    TProc FOnChange;
};

inline TZOLinkedList::TItem* TZOLinkedList::ItemOf(PHeader AHeader) {
    if (!AHeader)
        return nullptr;
    return reinterpret_cast<TItem*>(reinterpret_cast<char*>(AHeader) - offsetof(TItem, FHeader));
}

inline void TZOLinkedList::Link(PHeader AHeader, PHeader APrev, PHeader ANext) {
    ANext->Prev = AHeader;
    APrev->Next = AHeader;
    AHeader->Next = ANext;
    AHeader->Prev = APrev;
    ItemOf(AHeader)->FList = this;
    ++FCount;
    Changed();
}

inline TZOLinkedList::TItem* TZOLinkedList::TItem::DoNext() const {
    return FList && FHeader.Next != &FList->FLast ? ItemOf(FHeader.Next) : nullptr;
}

inline TZOLinkedList::TItem* TZOLinkedList::TItem::DoPrev() const {
    return FList && FHeader.Prev != &FList->FFirst ? ItemOf(FHeader.Prev) : nullptr;
}

/// The list as its users see it. T is a pointer to a class derived from TZOLinkedList::TItem. The anchor
/// comes first in every operation, the element or run to place beside it after it.
template <class T>
class TZOLinkedListOf : public TZOLinkedList {
    static_assert(std::is_pointer_v<T>);

public:
    using TZOLinkedList::TZOLinkedList;

    /// Null when the list is empty.
    T GetFirst() const { return GetCount() < 1 ? nullptr : Typed(ItemOf(FFirst.Next)); }
    T GetLast() const { return GetCount() < 1 ? nullptr : Typed(ItemOf(FLast.Prev)); }

    T Add(T AItem) {
        DoAdd(HeaderOf(AItem), FLast.Prev, &FLast);
        return AItem;
    }
    T InsertBefore(T ABefore, T AItem) {
        DoAdd(HeaderOf(AItem), HeaderOf(ABefore)->Prev, HeaderOf(ABefore));
        return AItem;
    }
    T InsertAfter(T AAfter, T AItem) {
        DoAdd(HeaderOf(AItem), HeaderOf(AAfter), HeaderOf(AAfter)->Next);
        return AItem;
    }
    void MoveRangeBefore(T ABefore, T AStart, T AEnd) {
        DoMoveBefore(HeaderOf(AStart), HeaderOf(AEnd), HeaderOf(ABefore));
    }
    void MoveRangeAfter(T AAfter, T AStart, T AEnd) {
        DoMoveAfter(HeaderOf(AStart), HeaderOf(AEnd), HeaderOf(AAfter));
    }
    /// An element of another list, or of none, is left where it is.
    void Remove(T AItem) { DoRemove(HeaderOf(AItem), HeaderOf(AItem)->Prev, HeaderOf(AItem)->Next); }
    void Clear() { DoClear(); }
    std::vector<T> ToArray() const {
        std::vector<T> array;
        array.reserve(static_cast<size_t>(GetCount()));
        for (TItem* item = GetCount() < 1 ? nullptr : ItemOf(FFirst.Next); item; item = NextOf(item))
            array.push_back(Typed(item));
        return array;
    }
    /// Takes from the end of this list: the elements arrive at the end of ADest in reverse order.
    void MoveTo(TZOLinkedListOf& ADest) {
        while (T last = GetLast())
            ADest.Add(last);
    }

private:
    static T Typed(TItem* AItem) { return static_cast<T>(AItem); }
};
