// Where new entries are offered, and how they become part of the value.
#include "tests/jsoneditor/values/ValueTypes.h"
#include "tests/jsoneditor/values/ValueView.h"

#include "jsoneditor/values/ListElem_p.h"

#include <gtest/gtest.h>

namespace {

struct InsertMode : testing::Test {
    TValueTypes Types;
    const ZOList::TTypeInfo* Rows = Types.Library.NewList(Types.Numbers);
    const ZOList::TTypeInfo* People = Types.Library.NewList(Types.Person);

    /// Where no key reaches: list elements take none.
    static TZOObjectDataSource::TListElem* Element(TZOViewRow* ARow) {
        return dynamic_cast<TZOObjectDataSource::TListElem*>(ARow);
    }
};

} // namespace

TEST_F(InsertMode, ObjectOffersItsAbsentPropertiesAtItsStart) {
    TValueView view(Types.Person, R"({"age":1})");
    view.DoubleClick("{");
    view.Expect("{\n  ~name: <value>\n  age: <1>\n}");
    view.ExpectJson(R"({"age":1})");
}

TEST_F(InsertMode, AnOpenObjectKeepsItsOffersWhileTheyAreFilledIn) {
    TValueView view(Types.Person, "{}");
    view.DoubleClick("{");
    view.Enter("~name: <value>", "Ann");
    view.Expect("{\n  name: <Ann>\n  ~age: <value>\n}");
    view.Press("F5");
    view.Expect("{\n  name: <Ann>\n  ~age: <value>\n}");
    view.Enter("~age: <value>", "3");
    view.ExpectJson(R"({"name":"Ann","age":3})");
}

TEST_F(InsertMode, ReadOnlyPropertiesAreNotOffered) {
    TValueView view(Types.Person, R"({"id":1})");
    view.DoubleClick("{");
    view.Expect("{\n  ~name: <value>\n  ~age: <value>\n  id: <1>\n}");
}

TEST_F(InsertMode, InsertOnAPropertyOffersBehindIt) {
    TValueView view(Types.Person, R"({"name":"Ann","id":1})");
    view.PressOn("name: <Ann>", "Insert");
    view.Expect("{\n  name: <Ann>\n  ~age: <value>\n  id: <1>\n}");
}

TEST_F(InsertMode, ShiftInsertOnAPropertyOffersBeforeIt) {
    TValueView view(Types.Person, R"({"name":"Ann","id":1})");
    view.PressOn("name: <Ann>", "Shift+Insert");
    view.Expect("{\n  ~age: <value>\n  name: <Ann>\n  id: <1>\n}");
}

TEST_F(InsertMode, InsertOnAContainerOpensItAtItsStart) {
    TValueView view(Types.Holding(Types.Numbers), R"({"p":[1,2]})");
    view.PressOn("p: [", "Insert");
    view.Expect("{\n  p: [\n    ~<value>\n    <1>\n    <2>\n  ]\n}");
}

TEST_F(InsertMode, InsertOnAClosingRowGoesIntoTheParentBehindTheContainer) {
    TValueView view(Rows, "[[1],[2]]");
    view.Click("]", 1);
    view.Press("Insert");
    view.Expect("[\n  [\n    <1>\n  ]\n  ~list\n  [\n    <2>\n  ]\n]");
}

TEST_F(InsertMode, ShiftInsertOnAClosingRowGoesToTheContainersEnd) {
    TValueView view(Rows, "[[1],[2]]");
    view.Click("]", 1);
    view.Press("Shift+Insert");
    view.Expect("[\n  [\n    <1>\n    ~<value>\n  ]\n  [\n    <2>\n  ]\n]");
}

TEST_F(InsertMode, DoubleClickOnAClosingRowGoesIntoTheParent) {
    TValueView view(Rows, "[[1],[2]]");
    view.DoubleClick("]", 2);
    view.Expect("[\n  [\n    <1>\n  ]\n  [\n    <2>\n  ]\n  ~list\n]");
}

TEST_F(InsertMode, TheLastClosingRowAlwaysGoesToTheContainersEnd) {
    for (const char* keys : {"Insert", "Shift+Insert"}) {
        TValueView view(Types.Numbers, "[1]");
        view.PressOn("]", keys);
        view.Expect("[\n  <1>\n  ~<value>\n]");
    }
    TValueView view(Types.Numbers, "[1]");
    view.DoubleClick("]");
    view.Expect("[\n  <1>\n  ~<value>\n]");
}

TEST_F(InsertMode, NothingStandsBesideTheRoot) {
    TValueView view(Types.Numbers, "[1]");
    view.PressOn("[", "Shift+Insert");
    view.Expect("[\n  <1>\n]");
    TValueView scalar(Types.Integer, "5");
    scalar.PressOn("<5>", "Insert Shift+Insert");
    scalar.DoubleClick("<5>");
    scalar.Expect("<5>");
    scalar.ExpectJson("5");
}

TEST_F(InsertMode, NothingIsOfferedBeforeATag) {
    TValueView view(Types.Shape, R"({"type":"circle"})");
    view.DoubleClick("{");
    view.Expect("{\n  type: circle\n  ~radius: <value>\n}");
}

TEST_F(InsertMode, OpenChoicesStayBeforeWhatIsOffered) {
    TValueView view(Types.Shape, R"({"type":"circle"})");
    view.DoubleClick("type: circle");
    view.PressOn("{", "Insert");
    view.Expect("{\n  type: circle\n    ~> circle\n    ~> square\n  ~radius: <value>\n}");
}

TEST_F(InsertMode, AnOfferStaysWhereItIsWhenAskedForAgain) {
    TValueView view(Types.Numbers, "[1,2]");
    view.PressOn("]", "Insert");
    view.DoubleClick("[");
    view.Expect("[\n  <1>\n  <2>\n  ~<value>\n]");
}

TEST_F(InsertMode, ADoubleClickOnAPlainValueInsertsNothing) {
    TValueView view(Types.Person, R"({"name":"Ann"})");
    view.DoubleClick("name: <Ann>");
    view.Expect("{\n  name: <Ann>\n}");
}

TEST_F(InsertMode, ANewElementIsStoredWhereItStands) {
    TValueView view(Types.Numbers, "[1,2,3]");
    view.PressOn("]", "Insert");
    view.Enter("~<value>", "7");
    view.Expect("[\n  <1>\n  <2>\n  <3>\n  <7>\n]");
    view.ExpectJson("[1,2,3,7]");
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(Element(view.View.RowAt(i + 1))->Index(), i);
}

TEST_F(InsertMode, ElementsBehindANewOneAreStillThemselves) {
    TValueView view(Types.Numbers, "[1,2,3]");
    view.DoubleClick("[");
    view.Enter("~<value>", "0");
    view.ExpectJson("[0,1,2,3]");
    view.Enter("<3>", "30");
    view.Enter("<1>", "10");
    view.ExpectJson("[0,10,2,30]");
    view.Expect("[\n  <0>\n  <10>\n  <2>\n  <30>\n]");
}

TEST_F(InsertMode, ANewElementBeforeTheFirstIsStoredFirst) {
    TValueView view(Types.Numbers, "[1,2]");
    Element(view.Find("<1>"))->DoEditAction(TZOObjectDataSource::eaInsertBefore);
    view.Expect("[\n  ~<value>\n  <1>\n  <2>\n]");
    view.Enter("~<value>", "9");
    view.ExpectJson("[9,1,2]");
}

TEST_F(InsertMode, ANewElementBehindAnotherIsStoredBehindIt) {
    TValueView view(Types.Numbers, "[1,2,3]");
    Element(view.Find("<2>"))->DoEditAction(TZOObjectDataSource::eaInsertAfter);
    view.Enter("~<value>", "9");
    view.ExpectJson("[1,2,9,3]");
}

TEST_F(InsertMode, ADeletedElementLeavesTheOthersInPlace) {
    TValueView view(Types.Numbers, "[1,2,3,4]");
    Element(view.Find("<2>"))->DoEditAction(TZOObjectDataSource::eaDelete);
    view.Expect("[\n  <1>\n  <3>\n  <4>\n]");
    view.ExpectJson("[1,3,4]");
    view.Enter("<4>", "40");
    view.PressOn("]", "Insert");
    Element(view.Find("~<value>"))->DoEditAction(TZOObjectDataSource::eaDelete);
    view.Expect("[\n  <1>\n  <3>\n  <40>\n]");
    view.ExpectJson("[1,3,40]");
}

TEST_F(InsertMode, ContainersAreStoredWithTheirFirstEntry) {
    TValueView view(Types.Holding(Rows), "{}");
    view.DoubleClick("{");
    view.DoubleClick("~p: list");
    view.DoubleClick("~list");
    view.Expect("{\n  ~p: [\n    ~[\n      ~<value>\n    ~]\n  ~]\n}");
    view.ExpectJson("{}");
    view.Enter("~<value>", "7");
    view.Expect("{\n  p: [\n    [\n      <7>\n    ]\n  ]\n}");
    view.ExpectJson(R"({"p":[[7]]})");
}

TEST_F(InsertMode, AnObjectIsStoredAsSoonAsItIsOpened) {
    TValueView view(People, "[]");
    view.DoubleClick("[");
    view.DoubleClick("~object");
    view.Expect("[\n  {\n    ~name: <value>\n    ~age: <value>\n  }\n]");
    view.ExpectJson("[{}]");
}

TEST_F(InsertMode, TheRootStartsOpenOnRequest) {
    TValueView view(Types.Person, {}, true);
    view.Expect("{\n  ~name: <value>\n  ~age: <value>\n}");
    view.ExpectJson("null");
    view.Enter("~age: <value>", "3");
    view.ExpectJson(R"({"age":3})");
    view.Press("Escape");
    view.Expect("{\n  age: <3>\n}");
}

TEST_F(InsertMode, AnAbsentRootOpensOnADoubleClick) {
    TValueView view(Types.Numbers);
    view.DoubleClick("null");
    view.Expect("[\n  ~<value>\n]");
    view.Press("Escape");
    view.Expect("null");
}

TEST_F(InsertMode, EscapeInAnOpenEditorOnlyLeavesTheEditor) {
    TValueView view(Types.Numbers, "[1]");
    view.DoubleClick("[");
    view.Type("~<value>", "5");
    view.Press("Escape");
    view.Expect("[\n  ~<value>\n  <1>\n]");
    view.Press("Escape");
    view.Expect("[\n  <1>\n]");
    view.ExpectJson("[1]");
}

TEST_F(InsertMode, EscapeLeavesInsertModeEverywhere) {
    TValueView view(Rows, "[[1],[2]]");
    view.DoubleClick("[", 1);
    view.DoubleClick("[", 2);
    view.DoubleClick("[", 3);
    view.Press("Escape");
    view.Expect("[\n  [\n    <1>\n  ]\n  [\n    <2>\n  ]\n]");
}

TEST_F(InsertMode, EscapeSelectsTheNearestRowThatStays) {
    TValueView view(Types.Numbers, "[1,2]");
    view.PressOn("]", "Insert");
    view.PressOn("~<value>", "Escape");
    view.Expect("[\n  <1>\n  <2>\n]");
    EXPECT_EQ(view.Selected(), "<2>");
}

TEST_F(InsertMode, ANewItemGetsItsKeyFirst) {
    TValueView view(Types.Scores, R"({"a":1})");
    view.DoubleClick("{");
    view.Expect("{\n  ~<key>: value\n  a: <1>\n}");
    view.Enter("~<key>: value", "b");
    view.Expect("{\n  ~b: <value>\n  a: <1>\n}");
    view.ExpectJson(R"({"a":1})");
    view.Enter("~b: <value>", "2");
    view.Expect("{\n  b: <2>\n  a: <1>\n}");
    view.ExpectJson(R"({"a":1,"b":2})");
    view.Press("F5");
    view.Expect("{\n  b: <2>\n  a: <1>\n}");
}

TEST_F(InsertMode, AnItemsKeyMustBeNew) {
    TValueView view(Types.Scores, R"({"a":1})");
    view.PressOn("}", "Insert");
    view.Enter("~<key>: value", "a");
    view.Enter("~a: <value>", "2");
    EXPECT_EQ(view.Shown, QStringList("Item key should be unique"));
    view.ExpectJson(R"({"a":1})");
    view.Press("Escape");
    view.Expect("{\n  a: <1>\n  ~a: <value>\n}");
}

TEST_F(InsertMode, AnItemIsNotOpenedBeforeItHasAKey) {
    TValueView view(Types.Library.NewMap(Types.Person), "{}");
    view.DoubleClick("{");
    view.DoubleClick("~<key>: object");
    EXPECT_EQ(view.Shown, QStringList("Please specify item key"));
    view.Press("F5");
    view.Expect("{\n  ~<key>: object\n}");
    view.Enter("~<key>: object", "ann");
    view.DoubleClick("~ann: object");
    view.Expect("{\n  ann: {\n    ~name: <value>\n    ~age: <value>\n  }\n}");
    view.ExpectJson(R"({"ann":{}})");
}

TEST_F(InsertMode, DeletingAPlaceholderEndsInsertMode) {
    TValueView view(Types.Scores, R"({"a":1})");
    view.PressOn("}", "Insert");
    view.PressOn("~<key>: value", "Ctrl+Delete");
    view.Expect("{\n  a: <1>\n}");
    view.Press("F5");
    view.Expect("{\n  a: <1>\n}");
    view.ExpectJson(R"({"a":1})");
}

TEST_F(InsertMode, DeletingTheOnlyPlaceholderClosesAContainerThatIsNotStored) {
    TValueView view(Types.Holding(Types.Scores), "{}");
    view.DoubleClick("{");
    view.DoubleClick("~p: map");
    view.PressOn("~<key>: value", "Ctrl+Delete");
    view.Expect("{\n  ~p: map\n}");
    view.ExpectJson("{}");
}

TEST_F(InsertMode, OffersGoToTheEndWhenTheRowTheyStoodBeforeIsGone) {
    TValueView view(Types.Shape, R"({"type":"circle","radius":1})");
    view.PressOn("radius: <1>", "Shift+Insert");
    view.SetJson(R"({"type":"square"})");
    view.Press("F5");
    view.Expect("{\n  type: square\n  ~side: <value>\n}");
}
