#include "jsoneditor/view/LinkedList.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

struct TElement : TZOLinkedList::TItem {
    explicit TElement(char AName) : Name(AName) {}
    TElement* Next() const { return static_cast<TElement*>(DoNext()); }
    TElement* Prev() const { return static_cast<TElement*>(DoPrev()); }
    char Name;
};

using TList = TZOLinkedListOf<TElement*>;

/// The names from first to last; checks on the way back that both directions agree.
std::string Names(const TList& AList) {
    std::string forward;
    for (TElement* element = AList.GetFirst(); element; element = element->Next()) {
        EXPECT_EQ(element->List(), &AList);
        forward += element->Name;
    }
    std::string backward;
    for (TElement* element = AList.GetLast(); element; element = element->Prev())
        backward.insert(backward.begin(), element->Name);
    EXPECT_EQ(forward, backward);
    EXPECT_EQ(static_cast<int>(forward.size()), AList.GetCount());
    return forward;
}

class LinkedList : public testing::Test {
protected:
    void Fill() {
        for (TElement* element : {&A, &B, &C, &D})
            List.Add(element);
        Changes = 0;
    }

    TElement A{'a'}, B{'b'}, C{'c'}, D{'d'};
    int Changes = 0;
    TList List{[this] { ++Changes; }};
};

} // namespace

TEST_F(LinkedList, IsEmptyAtFirst) {
    EXPECT_EQ(List.GetFirst(), nullptr);
    EXPECT_EQ(List.GetLast(), nullptr);
    EXPECT_EQ(List.GetCount(), 0);
    EXPECT_TRUE(List.ToArray().empty());
}

TEST_F(LinkedList, EndsInNullAtBothEnds) {
    Fill();
    EXPECT_EQ(A.Prev(), nullptr);
    EXPECT_EQ(D.Next(), nullptr);
}

TEST_F(LinkedList, GivesNoNeighboursToAnElementOfNoList) {
    EXPECT_EQ(A.Next(), nullptr);
    EXPECT_EQ(A.Prev(), nullptr);
    EXPECT_EQ(A.List(), nullptr);
}

TEST_F(LinkedList, AddsAtTheEndAndInsertsOnEitherSide) {
    EXPECT_EQ(List.Add(&A), &A);
    EXPECT_EQ(List.InsertBefore(&A, &B), &B);
    EXPECT_EQ(List.InsertAfter(&A, &C), &C);
    EXPECT_EQ(List.InsertAfter(&B, &D), &D);
    EXPECT_EQ(Names(List), "bdac");
    EXPECT_EQ(Changes, 4);
}

TEST_F(LinkedList, TakesAnElementOutOfTheListThatHoldsIt) {
    std::string order;
    TList first([&] { order += '1'; });
    TList second([&] { order += '2'; });
    first.Add(&A);
    first.Add(&B);
    order.clear();
    second.Add(&A);
    EXPECT_EQ(order, "12");
    EXPECT_EQ(Names(first), "b");
    EXPECT_EQ(Names(second), "a");
}

TEST_F(LinkedList, MovesItsOwnElementWithTwoNotifications) {
    Fill();
    List.Add(&A);
    EXPECT_EQ(Names(List), "bcda");
    EXPECT_EQ(Changes, 2);
    Changes = 0;
    List.InsertAfter(&B, &A);
    EXPECT_EQ(Names(List), "bacd");
    List.InsertBefore(&C, &D);
    EXPECT_EQ(Names(List), "badc");
    EXPECT_EQ(Changes, 4);
}

TEST_F(LinkedList, CountsItsOwnElementOutAndInAgain) {
    std::vector<int> counts;
    TList list([&] { counts.push_back(list.GetCount()); });
    list.Add(&A);
    list.Add(&B);
    counts.clear();
    list.Add(&A);
    EXPECT_EQ(counts, (std::vector<int>{1, 2}));
}

TEST_F(LinkedList, KeepsAnElementThatIsAddedWhereItStands) {
    Fill();
    List.Add(&D);
    EXPECT_EQ(Names(List), "abcd");
    List.InsertBefore(&B, &A);
    EXPECT_EQ(Names(List), "abcd");
    List.InsertAfter(&B, &C);
    EXPECT_EQ(Names(List), "abcd");
    List.InsertAfter(&B, &B);
    EXPECT_EQ(Names(List), "abcd");
    List.InsertBefore(&B, &B);
    EXPECT_EQ(Names(List), "abcd");
}

TEST_F(LinkedList, RemovesOnlyWhatItHolds) {
    Fill();
    List.Remove(&B);
    EXPECT_EQ(Names(List), "acd");
    EXPECT_EQ(B.List(), nullptr);
    EXPECT_EQ(Changes, 1);
    List.Remove(&B);
    TList other;
    other.Add(&B);
    List.Remove(&B);
    EXPECT_EQ(Names(other), "b");
    EXPECT_EQ(Changes, 1);
}

TEST_F(LinkedList, NotifiesOnceWhenClearedEvenIfEmpty) {
    List.Clear();
    EXPECT_EQ(Changes, 1);
    Fill();
    List.Clear();
    EXPECT_EQ(Changes, 1);
    EXPECT_EQ(List.GetCount(), 0);
    EXPECT_EQ(A.List(), nullptr);
    EXPECT_EQ(A.Next(), nullptr);
}

TEST_F(LinkedList, IsDestroyedWithoutANotification) {
    int changes = 0;
    {
        TList list([&] { ++changes; });
        list.Add(&A);
        changes = 0;
    }
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(A.List(), nullptr);
}

TEST_F(LinkedList, MovesASingleElementAfterAnother) {
    Fill();
    List.MoveRangeAfter(&C, &A, &A);
    EXPECT_EQ(Names(List), "bcad");
    EXPECT_EQ(Changes, 1);
}

TEST_F(LinkedList, MovesRunsBothWays) {
    Fill();
    List.MoveRangeAfter(&D, &A, &B);
    EXPECT_EQ(Names(List), "cdab");
    List.MoveRangeBefore(&C, &A, &B);
    EXPECT_EQ(Names(List), "abcd");
    List.MoveRangeBefore(&B, &C, &D);
    EXPECT_EQ(Names(List), "acdb");
    EXPECT_EQ(Changes, 3);
}

TEST_F(LinkedList, DoesNotMoveARunOfAnotherList) {
    Fill();
    TElement x('x'), y('y');
    TList other;
    other.Add(&x);
    other.Add(&y);
    List.MoveRangeAfter(&A, &x, &y);
    List.MoveRangeBefore(&A, &x, &y);
    EXPECT_EQ(Names(List), "abcd");
    EXPECT_EQ(Names(other), "xy");
    EXPECT_EQ(Changes, 0);
}

TEST_F(LinkedList, DoesNotMoveARunThatBeginsInNoList) {
    Fill();
    TElement loose('x');
    List.MoveRangeAfter(&D, &loose, &B);
    List.MoveRangeBefore(&A, &loose, &C);
    List.MoveRangeAfter(&D, &loose, &loose);
    EXPECT_EQ(Names(List), "abcd");
    EXPECT_EQ(loose.List(), nullptr);
    EXPECT_EQ(Changes, 0);
}

TEST_F(LinkedList, ReversesWhatItMovesToAnotherList) {
    List.Add(&A);
    List.Add(&B);
    List.Add(&C);
    TList destination;
    List.MoveTo(destination);
    EXPECT_EQ(Names(destination), "cba");
    EXPECT_EQ(Names(List), "");
}

TEST_F(LinkedList, ListsItsElementsInOrder) {
    Fill();
    EXPECT_EQ(List.ToArray(), (std::vector<TElement*>{&A, &B, &C, &D}));
}
