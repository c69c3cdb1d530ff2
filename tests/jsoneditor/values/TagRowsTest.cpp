// Choosing the subtype of an object and the tag of a union.
#include "tests/jsoneditor/values/ValueTypes.h"
#include "tests/jsoneditor/values/ValueView.h"

#include <gtest/gtest.h>

namespace {

struct TagRows : testing::Test {
    TValueTypes Types;
};

} // namespace

TEST_F(TagRows, TheChoicesOfASubtypeOpenAndClose) {
    for (const bool byKey : {false, true}) {
        TValueView view(Types.Shape, R"({"type":"circle","radius":1})");
        if (byKey)
            view.PressOn("type: circle", "Insert");
        else
            view.DoubleClick("type: circle");
        view.Expect("{\n  type: circle\n    ~> circle\n    ~> square\n  radius: <1>\n}");
        view.Press("Escape");
        view.Expect("{\n  type: circle\n  radius: <1>\n}");
        view.ExpectJson(R"({"type":"circle","radius":1})");
    }
}

TEST_F(TagRows, AnotherSubtypeMakesAFreshObjectThatOffersItsProperties) {
    for (const bool byKey : {false, true}) {
        TValueView view(Types.Shape, R"({"type":"circle","radius":1})");
        view.DoubleClick("type: circle");
        if (byKey)
            view.PressOn("~> square", "Return");
        else
            view.DoubleClick("~> square");
        view.Expect("{\n  type: square\n  ~side: <value>\n}");
        view.ExpectJson(R"({"type":"square"})");
        view.Enter("~side: <value>", "2");
        view.ExpectJson(R"({"type":"square","side":2})");
    }
}

TEST_F(TagRows, TheSameSubtypeAgainMakesAFreshObjectToo) {
    TValueView view(Types.Shape, R"({"type":"circle","radius":1})");
    view.DoubleClick("type: circle");
    view.DoubleClick("~> circle");
    view.ExpectJson(R"({"type":"circle"})");
}

TEST_F(TagRows, AnAbsentObjectBeginsWithTheChoiceOfItsSubtype) {
    for (const bool atStart : {false, true}) {
        TValueView view(Types.Shape, {}, atStart);
        if (!atStart)
            view.DoubleClick("null");
        view.Expect("{\n  ~type:\n    ~> circle\n    ~> square\n}");
        view.ExpectJson("null");
        view.DoubleClick("~> circle");
        view.Expect("{\n  type: circle\n  ~radius: <value>\n}");
        view.ExpectJson(R"({"type":"circle"})");
    }
}

TEST_F(TagRows, APlaceholderElementBecomesTheChosenSubtype) {
    TValueView view(Types.Library.NewList(Types.Shape), "[]");
    view.DoubleClick("[");
    view.DoubleClick("~object");
    view.Expect("[\n  ~{\n    ~type:\n      ~> circle\n      ~> square\n  ~}\n]");
    view.PressOn("~> square", "Return");
    view.Expect("[\n  {\n    type: square\n    ~side: <value>\n  }\n]");
    view.ExpectJson(R"([{"type":"square"}])");
}

TEST_F(TagRows, AnObjectOfNoSubtypeShowsAnEmptyTag) {
    TValueView view(Types.Holding(Types.Shape), "{}");
    void* object = nullptr;
    void* shape = nullptr;
    view.Holder.GetByRef(object);
    ZOObject::TData::GetByRef(*static_cast<ZOObject**>(object), 0, shape);
    view.Press("F5");
    view.Expect("{\n  p: {\n    type:\n  }\n}");
    view.DoubleClick("p: {");
    view.Expect("{\n  p: {\n    type:\n    ~title: <value>\n  }\n}");
}

TEST_F(TagRows, ATagWithoutValueIsSetAtOnce) {
    for (const bool byKey : {false, true}) {
        TValueView view(Types.Choice, R"({"kind":"number","value":5})");
        view.DoubleClick("kind: number");
        view.Expect("{\n  kind: number\n    ~> number\n    ~> person\n    ~> none\n  value: <5>\n}");
        if (byKey)
            view.PressOn("~> none", "Return");
        else
            view.DoubleClick("~> none");
        view.Expect("{\n  kind: none\n}");
        view.ExpectJson(R"({"kind":"none"})");
    }
}

TEST_F(TagRows, ATagWithAValueIsSetWithIt) {
    TValueView view(Types.Choice, R"({"kind":"none"})");
    view.PressOn("kind: none", "Insert");
    view.PressOn("~> number", "Return");
    view.Expect("{\n  ~kind: number\n  ~value: <value>\n}");
    view.ExpectJson(R"({"kind":"none"})");
    view.Enter("~value: <value>", "7");
    view.Expect("{\n  kind: number\n  value: <7>\n}");
    view.ExpectJson(R"({"kind":"number","value":7})");
}

TEST_F(TagRows, ATagThatWasPickedAndNotStoredIsDroppedWithInsertMode) {
    TValueView view(Types.Choice, R"({"kind":"number","value":5})");
    view.DoubleClick("kind: number");
    view.DoubleClick("~> person");
    view.Expect("{\n  ~kind: person\n  ~value: object\n}");
    view.Press("F5");
    view.Expect("{\n  ~kind: person\n  ~value: object\n}");
    view.Press("Escape");
    view.Expect("{\n  kind: number\n  value: <5>\n}");
    view.ExpectJson(R"({"kind":"number","value":5})");
}

TEST_F(TagRows, AnObjectUnderATagIsStoredWhenItIsOpened) {
    TValueView view(Types.Choice, R"({"kind":"none"})");
    view.DoubleClick("kind: none");
    view.DoubleClick("~> person");
    view.DoubleClick("~value: object");
    view.Expect("{\n  kind: person\n  value: {\n    ~name: <value>\n    ~age: <value>\n  }\n}");
    view.Enter("~age: <value>", "3");
    view.ExpectJson(R"({"kind":"person","value":{"age":3}})");
}

TEST_F(TagRows, AnAbsentUnionIsMadeWithItsTag) {
    TValueView view(Types.Holding(Types.Choice), "{}");
    view.DoubleClick("{");
    view.DoubleClick("~p: union");
    view.DoubleClick("~kind:");
    view.Expect("{\n  ~p: {\n    ~kind:\n      ~> number\n      ~> person\n      ~> none\n  ~}\n}");
    view.ExpectJson("{}");
    view.DoubleClick("~> none");
    view.Expect("{\n  p: {\n    kind: none\n  }\n}");
    view.ExpectJson(R"({"p":{"kind":"none"}})");
}

TEST_F(TagRows, AUnionsValueCannotBeDeleted) {
    TValueView view(Types.Choice, R"({"kind":"number","value":5})");
    view.PressOn("value: <5>", "Ctrl+Delete");
    view.Expect("{\n  kind: number\n  value: <5>\n}");
    view.ExpectJson(R"({"kind":"number","value":5})");
}

TEST_F(TagRows, ADeletedUnionForgetsTheTagThatWasPicked) {
    TValueView view(Types.Holding(Types.Choice), R"({"p":{"kind":"none"}})");
    view.DoubleClick("kind: none");
    view.DoubleClick("~> number");
    view.PressOn("p: {", "Ctrl+Delete");
    view.Expect("{\n  ~p: union\n}");
    view.ExpectJson("{}");
}

TEST_F(TagRows, ATagAndItsChoicesIgnoreDelete) {
    TValueView view(Types.Choice, R"({"kind":"number","value":5})");
    view.DoubleClick("kind: number");
    view.PressOn("kind: number", "Ctrl+Delete");
    view.PressOn("~> none", "Ctrl+Delete Insert");
    view.Expect("{\n  kind: number\n    ~> number\n    ~> person\n    ~> none\n  value: <5>\n}");
}

TEST_F(TagRows, TheTagRowTakesTheSelectionOverFromAChoice) {
    TValueView view(Types.Choice, R"({"kind":"number","value":5})");
    view.DoubleClick("kind: number");
    view.PressOn("~> none", "Return");
    EXPECT_EQ(view.Selected(), "kind: none");
    TValueView shape(Types.Shape, R"({"type":"circle"})");
    shape.DoubleClick("type: circle");
    shape.DoubleClick("~> square");
    EXPECT_EQ(shape.Selected(), "type: square");
}

TEST_F(TagRows, EscapeLeavesTheSelectionOnATagRow) {
    TValueView view(Types.Choice, R"({"kind":"none"})");
    view.DoubleClick("kind: none");
    view.DoubleClick("~> number");
    view.PressOn("~kind: number", "Escape");
    EXPECT_EQ(view.Selected(), "kind: none");
}
