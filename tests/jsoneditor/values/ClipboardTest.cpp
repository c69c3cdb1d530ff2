// Values to and from the clipboard as JSON.
#include "tests/jsoneditor/values/ValueTypes.h"
#include "tests/jsoneditor/values/ValueView.h"

#include <QApplication>
#include <QClipboard>

#include <gtest/gtest.h>

namespace {

struct JsonClipboard : testing::Test {
    TValueTypes Types;

    static void Put(const char* AText) { QApplication::clipboard()->setText(QString::fromUtf8(AText)); }
    static std::string Text() { return QApplication::clipboard()->text().toStdString(); }
};

struct TCopy {
    const char* Line;
    const char* Json;
};
class Copied : public JsonClipboard, public testing::WithParamInterface<TCopy> {};

} // namespace

TEST_P(Copied, IsTheValueOfTheRow) {
    TValueView view(Types.Library.NewObject("All")
                        .Property("s", Types.String)
                        .Property("l", Types.Numbers)
                        .Property("p", Types.Person)
                        .Property("c", Types.Choice)
                        .Type(),
                    R"({"s":"a\"b","l":[1,null],"p":{"age":3},"c":{"kind":"number","value":4}})");
    Put("before");
    view.PressOn(GetParam().Line, "Ctrl+C");
    EXPECT_EQ(Text(), GetParam().Json);
}

INSTANTIATE_TEST_SUITE_P(Rows, Copied,
                         testing::Values(TCopy{"s: <a\"b>", R"("a\"b")"}, TCopy{"l: [", "[1,null]"},
                                         TCopy{"<1>", "1"}, TCopy{"null", "null"}, TCopy{"]", "[1,null]"},
                                         TCopy{"p: {", R"({"age":3})"},
                                         TCopy{"c: {", R"({"kind":"number","value":4})"},
                                         TCopy{"value: <4>", "4"}, TCopy{"kind: number", "before"}));

TEST_F(JsonClipboard, PastingReplacesTheRowsValue) {
    TValueView view(Types.Holding(Types.Numbers), R"({"p":[1]})");
    Put("[4, 5]");
    view.PressOn("p: [", "Ctrl+V");
    view.Expect("{\n  p: [\n    <4>\n    <5>\n  ]\n}");
    view.Press("Ctrl+Z");
    view.Expect("{\n  p: [\n    <1>\n  ]\n}");
}

TEST_F(JsonClipboard, PastingStoresAPlaceholder) {
    TValueView view(Types.Library.NewList(Types.Person), "[]");
    Put(R"({"name":"Ann"})");
    view.DoubleClick("[");
    view.PressOn("~object", "Ctrl+V");
    view.Expect("[\n  {\n    name: <Ann>\n  }\n]");
    view.ExpectJson(R"([{"name":"Ann"}])");
}

TEST_F(JsonClipboard, WhatDoesNotFitIsNamedAndNothingIsLost) {
    const auto* people = Types.Library.NewList(Types.Person);
    TValueView view(Types.Holding(people), R"({"p":[{"name":"Ann"}]})");
    Put(R"([{"name":"Bea"},{"name":"Cid","age":"old"}])");
    view.PressOn("p: [", "Ctrl+V");
    ASSERT_EQ(view.Shown.size(), 1);
    EXPECT_TRUE(view.Shown[0].contains("/1/age")) << view.Shown[0].toStdString();
    view.ExpectJson(R"({"p":[{"name":"Ann"}]})");
    view.Expect("{\n  p: [\n    {\n      name: <Ann>\n    }\n  ]\n}");
    EXPECT_FALSE(view.Source.CanUndo());
}

TEST_F(JsonClipboard, ANewItemNeedsItsKeyFirst) {
    TValueView view(Types.Scores, "{}");
    Put("5");
    view.DoubleClick("{");
    view.PressOn("~<key>: value", "Ctrl+V");
    EXPECT_EQ(view.Shown, QStringList("Please specify item key"));
    view.ExpectJson("{}");
}

TEST_F(JsonClipboard, NullMakesAValueAbsent) {
    TValueView view(Types.Numbers, "[1,2]");
    Put("null");
    view.PressOn("<2>", "Ctrl+V");
    view.ExpectJson("[1,null]");
    view.PressOn("[", "Ctrl+V");
    view.Expect("null");
}

TEST_F(JsonClipboard, NullLeavesAUnionsValueAlone) {
    TValueView view(Types.Choice, R"({"kind":"number","value":4})");
    Put("null");
    view.PressOn("value: <4>", "Ctrl+V");
    view.ExpectJson(R"({"kind":"number","value":4})");
}

TEST_F(JsonClipboard, AllSixtyFourBitsArePasted) {
    TValueView view(TZOTypeLibrary::Scalar(vkInt64), "1");
    Put("9223372036854775807");
    view.PressOn("<1>", "Ctrl+V");
    view.ExpectJson("9223372036854775807");
}

TEST_F(JsonClipboard, PlainTextGoesIntoAStringAsItIs) {
    TValueView view(Types.String, R"("old")");
    Put("no JSON");
    view.PressOn("<old>", "Ctrl+V");
    view.ExpectJson(R"("no JSON")");
}

TEST_F(JsonClipboard, AnOpenEditorKeepsItsKeys) {
    TValueView view(Types.String, R"("old")");
    Put("new");
    view.Type("<old>", "a");
    view.Press("Ctrl+V Ctrl+A Ctrl+C");
    EXPECT_EQ(Text(), "anew");
    view.ExpectJson(R"("old")");
    view.Press("Return");
    view.ExpectJson(R"("anew")");
}

TEST_F(JsonClipboard, AResponsePastesIntoARequest) {
    TValueView response(Types.Library.NewList(Types.Person), R"([{"name":"Ann","age":3,"id":9}])");
    response.PressOn("{", "Ctrl+C");
    TValueView request(Types.Holding(Types.Person), "{}");
    request.DoubleClick("{");
    request.PressOn("~p: object", "Ctrl+V");
    request.ExpectJson(R"({"p":{"name":"Ann","age":3,"id":9}})");
}
