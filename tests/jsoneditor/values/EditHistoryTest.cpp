// Undo and redo by key, one step for each action.
#include "tests/jsoneditor/values/ValueTypes.h"
#include "tests/jsoneditor/values/ValueView.h"

#include "runtime/json/JsonCodec.h"

#include <QTest>

#include <gtest/gtest.h>

namespace {

struct EditHistory : testing::Test {
    TValueTypes Types;

    /// Ctrl+Z leads to ABefore, Ctrl+Y to AAfter again, and Ctrl+Z once more to the rows as they were.
    static void ExpectStep(TValueView& AView, const QByteArray& ABefore, const QByteArray& AAfter,
                           std::source_location AWhere = std::source_location::current()) {
        AView.ExpectJson(AAfter, AWhere);
        AView.Press("Ctrl+Z");
        AView.ExpectJson(ABefore, AWhere);
        AView.Press("Ctrl+Y");
        AView.ExpectJson(AAfter, AWhere);
        AView.Press("Ctrl+Z");
        AView.ExpectJson(ABefore, AWhere);
        AView.Press("Escape F5");
        TValueView fresh(&AView.Holder);
        EXPECT_EQ(AView.Rows().toStdString(), fresh.Rows().toStdString());
        AView.Window.activateWindow();
        AView.View.setFocus();
    }
};

} // namespace

TEST_F(EditHistory, TakesAnEditBack) {
    TValueView view(Types.Person, R"({"name":"Ann","age":1})");
    view.Enter("name: <Ann>", "Bea");
    view.Press("Ctrl+Z");
    view.Expect("{\n  name: <Ann>\n  age: <1>\n}");
    EXPECT_EQ(view.Selected(), "name: <Ann>");
    view.Press("Ctrl+Shift+Z");
    view.Expect("{\n  name: <Bea>\n  age: <1>\n}");
    ExpectStep(view, R"({"name":"Ann","age":1})", R"({"name":"Bea","age":1})");
}

TEST_F(EditHistory, TextThatChangesNothingIsNoStep) {
    TValueView view(Types.Person, R"({"name":"Ann","age":1})");
    view.Enter("age: <1>", "2");
    view.Enter("name: <Ann>", "Ann");
    view.Press("Ctrl+Z");
    view.ExpectJson(R"({"name":"Ann","age":1})");
}

TEST_F(EditHistory, ARefusedTextThatMadeTheValuePresentIsAStep) {
    TValueView view(Types.Person, R"({"name":"Ann"})");
    view.DoubleClick("{");
    view.Enter("~age: <value>", "abc");
    EXPECT_EQ(view.Shown.size(), 1);
    view.Press("Escape");
    ExpectStep(view, R"({"name":"Ann"})", R"({"name":"Ann","age":0})");
}

TEST_F(EditHistory, DeletedPropertyComesBackWithAllThatIsInIt) {
    TValueView view(Types.Holding(Types.Numbers), R"({"p":[1,2,3]})");
    view.PressOn("p: [", "Ctrl+Delete");
    view.Press("F5");
    ExpectStep(view, R"({"p":[1,2,3]})", "{}");
}

TEST_F(EditHistory, DeletedRootComesBack) {
    TValueView view(Types.Numbers, "[1,2]");
    view.PressOn("[", "Ctrl+Delete");
    view.Expect("null");
    ExpectStep(view, "[1,2]", "null");
}

TEST_F(EditHistory, InsertedElementGoes) {
    TValueView view(Types.Numbers, "[1,2,3]");
    view.DoubleClick("[");
    view.Enter("~<value>", "7");
    ExpectStep(view, "[1,2,3]", "[7,1,2,3]");
}

TEST_F(EditHistory, DeletedItemComesBackToItsPlace) {
    TValueView view(Types.Scores, R"({"a":1,"b":2,"c":3})");
    view.PressOn("b: <2>", "Ctrl+Delete");
    view.Press("Ctrl+Z");
    view.Expect("{\n  a: <1>\n  b: <2>\n  c: <3>\n}");
    view.Press("Ctrl+Y");
    ExpectStep(view, R"({"a":1,"b":2,"c":3})", R"({"a":1,"c":3})");
}

TEST_F(EditHistory, AKeyIsAStepOfItsOwn) {
    TValueView view(Types.Scores, "{}");
    view.DoubleClick("{");
    view.Enter("~<key>: value", "a");
    view.Expect("{\n  ~a: <value>\n}");
    view.Press("Ctrl+Z");
    view.Expect("{\n  ~<key>: value\n}");
    view.Press("Ctrl+Y");
    view.Expect("{\n  ~a: <value>\n}");
    view.Enter("~a: <value>", "5");
    ExpectStep(view, "{}", R"({"a":5})");
}

TEST_F(EditHistory, WhatAPlaceholderMadeAroundItGoesWithIt) {
    TValueView view(Types.Holding(Types.Library.NewList(Types.Numbers)), "{}");
    view.DoubleClick("{");
    view.DoubleClick("~p: list");
    view.DoubleClick("~list");
    view.Enter("~<value>", "4");
    ExpectStep(view, "{}", R"({"p":[[4]]})");
}

TEST_F(EditHistory, AMovedRowGoesBack) {
    TValueView view(Types.Person, R"({"name":"Ann","age":1})");
    view.PressOn("name: <Ann>", "Alt+Down");
    view.Expect("{\n  age: <1>\n  name: <Ann>\n}");
    view.Press("Ctrl+Z");
    view.Expect("{\n  name: <Ann>\n  age: <1>\n}");
    view.Press("Ctrl+Y");
    view.Expect("{\n  age: <1>\n  name: <Ann>\n}");
}

TEST_F(EditHistory, APickedSubtypeGivesTheOldObjectBack) {
    TValueView view(Types.Shape, R"({"type":"circle","radius":5})");
    view.DoubleClick("type: circle");
    view.DoubleClick("~> square");
    ExpectStep(view, R"({"type":"circle","radius":5})", R"({"type":"square"})");
}

TEST_F(EditHistory, APickedTagGivesTheOldValueBack) {
    TValueView view(Types.Choice, R"({"kind":"person","value":{"name":"Ann"}})");
    view.DoubleClick("kind: person");
    view.DoubleClick("~> none");
    ExpectStep(view, R"({"kind":"person","value":{"name":"Ann"}})", R"({"kind":"none"})");
}

TEST_F(EditHistory, ATagStoredWithItsValueIsOneStep) {
    TValueView view(Types.Choice, R"({"kind":"person","value":{"name":"Ann"}})");
    view.DoubleClick("kind: person");
    view.DoubleClick("~> number");
    view.Enter("~value: <value>", "8");
    ExpectStep(view, R"({"kind":"person","value":{"name":"Ann"}})", R"({"kind":"number","value":8})");
}

TEST_F(EditHistory, AFailedStoreAfterPickingATagKeepsTheValue) {
    TValueView view(Types.Choice, R"({"kind":"person","value":{"name":"Ann"}})");
    view.DoubleClick("kind: person");
    view.DoubleClick("~> number");
    view.ExpectJson(R"({"kind":"person","value":{"name":"Ann"}})");
    EXPECT_FALSE(view.Source.CanUndo());
}

TEST_F(EditHistory, TypedTextIsTakenBackByTheEditorFirst) {
    TValueView view(Types.Person, R"({"name":"Ann","age":1})");
    view.Enter("age: <1>", "2");
    view.Type("name: <Ann>", "Bea");
    view.Press("Ctrl+Z");
    view.ExpectJson(R"({"name":"Ann","age":2})");
    EXPECT_TRUE(view.View.EditorShown());
    view.Press("Escape Ctrl+Z");
    view.ExpectJson(R"({"name":"Ann","age":1})");
}

TEST_F(EditHistory, AnEditorOnUnchangedTextGivesWay) {
    TValueView view(Types.Person, R"({"name":"Ann","age":1})");
    view.Enter("age: <1>", "2");
    view.Press("Up Down");
    EXPECT_TRUE(view.View.EditorShown());
    view.Press("Ctrl+Z");
    view.ExpectJson(R"({"name":"Ann","age":1})");
}

TEST_F(EditHistory, ANewChangeEndsTheWayForward) {
    TValueView view(Types.Integer, "1");
    view.Enter("<1>", "2");
    view.Press("Ctrl+Z");
    view.Enter("<1>", "3");
    view.Press("Ctrl+Y");
    view.ExpectJson("3");
    view.Press("Ctrl+Z Ctrl+Z Ctrl+Z");
    view.ExpectJson("1");
}

TEST_F(EditHistory, IsDroppedWhenTheValueWasChangedBehindIt) {
    TValueView view(Types.Numbers, "[1,2,3]");
    view.Enter("<3>", "4");
    view.SetJson("[1]");
    view.Press("Ctrl+Z");
    view.ExpectJson("[1]");
    view.Expect("[\n  <1>\n]");
    EXPECT_FALSE(view.Source.CanUndo());
}
