#include "jsoneditor/view/LinkedList.h"

#include <utility>

TZOLinkedList::TZOLinkedList() {
    FFirst.Next = &FLast;
    FLast.Prev = &FFirst;
}

TZOLinkedList::TZOLinkedList(TProc AOnChange) : TZOLinkedList() { FOnChange = std::move(AOnChange); }

TZOLinkedList::~TZOLinkedList() {
    FOnChange = nullptr;
    DoClear();
}

void TZOLinkedList::TakeOver(PHeader AHeader, PHeader APrev, PHeader ANext) {
    // An element that is itself one of the two neighbours leaves a gap there: its own neighbour closes it.
    if (APrev == AHeader)
        APrev = AHeader->Prev;
    if (ANext == AHeader)
        ANext = AHeader->Next;
    ItemOf(AHeader)->FList->DoRemove(AHeader, AHeader->Prev, AHeader->Next);
    Link(AHeader, APrev, ANext);
}

void TZOLinkedList::DoRemove(PHeader AHeader, PHeader APrev, PHeader ANext) {
    TItem* item = ItemOf(AHeader);
    if (item->FList != this)
        return;
    AHeader->Next = nullptr;
    AHeader->Prev = nullptr;
    APrev->Next = ANext;
    ANext->Prev = APrev;
    item->FList = nullptr;
    --FCount;
    Changed();
}

void TZOLinkedList::DoClear() {
    for (PHeader header = FFirst.Next; header != &FLast;) {
        PHeader next = header->Next;
        header->Next = nullptr;
        header->Prev = nullptr;
        ItemOf(header)->FList = nullptr;
        header = next;
    }
    FFirst.Next = &FLast;
    FLast.Prev = &FFirst;
    FCount = 0;
    Changed();
}

void TZOLinkedList::Unlink(PHeader AFirst, PHeader ALast) {
    AFirst->Prev->Next = ALast->Next;
    ALast->Next->Prev = AFirst->Prev;
}

void TZOLinkedList::DoMoveBefore(PHeader AFirst, PHeader ALast, PHeader ABefore) {
    if (ItemOf(AFirst)->FList != this)
        return;
    DoCheckRange(AFirst, ALast, ABefore);
    Unlink(AFirst, ALast);
    PHeader prev = ABefore->Prev;
    ABefore->Prev = ALast;
    prev->Next = AFirst;
    ALast->Next = ABefore;
    AFirst->Prev = prev;
    Changed();
}

void TZOLinkedList::DoMoveAfter(PHeader AFirst, PHeader ALast, PHeader AAfter) {
    if (ItemOf(AFirst)->FList != this)
        return;
    DoCheckRange(AFirst, ALast, AAfter);
    Unlink(AFirst, ALast);
    PHeader next = AAfter->Next;
    next->Prev = ALast;
    AAfter->Next = AFirst;
    ALast->Next = next;
    AFirst->Prev = AAfter;
    Changed();
}

void TZOLinkedList::DoCheckRange(PHeader AFirst, PHeader ALast, PHeader) {
    // A run that does not reach its end in this list is a caller's error and faults here, before any link
    // has been changed.
    for (PHeader header = AFirst; header != ALast; header = header->Next) {
    }
}
