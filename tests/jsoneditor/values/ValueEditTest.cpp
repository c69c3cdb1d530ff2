// Typing values, deleting them, moving their rows, and what of it is shown.
#include "tests/jsoneditor/values/ValueTypes.h"
#include "tests/jsoneditor/values/ValueView.h"

#include "jsoneditor/view/ViewRow.h"
#include "jsoneditor/view/ViewRowLayout.h"

#include <QBuffer>

#include <gtest/gtest.h>

namespace {

struct ValueEdit : testing::Test {
    TValueTypes Types;
    const ZOObject::TTypeInfo* Group = Types.Library.NewObject(QStringLiteral("Group"))
                                           .Property(QStringLiteral("title"), Types.String)
                                           .Property(QStringLiteral("boss"), Types.Person)
                                           .Property(QStringLiteral("marks"), Types.Numbers)
                                           .Type();
};

} // namespace

TEST_F(ValueEdit, TypedTextIsStoredAndShown) {
    TValueView view(Types.Person, R"({"name":"Ann","age":1})");
    view.Enter("name: <Ann>", "Bob");
    view.Enter("age: <1>", "-5");
    view.Expect("{\n  name: <Bob>\n  age: <-5>\n}");
    view.ExpectJson(R"({"name":"Bob","age":-5})");
}

TEST_F(ValueEdit, TextThatCannotBeReadStaysInTheEditor) {
    TValueView view(Types.Person, R"({"age":1})");
    view.Enter("age: <1>", "abc");
    EXPECT_EQ(view.Shown, QStringList("'abc' is not a valid integer value"));
    EXPECT_TRUE(view.View.EditorShown());
    view.Expect("{\n  age: <abc>\n}");
    view.ExpectJson(R"({"age":1})");
    view.Press("Escape");
    view.Expect("{\n  age: <1>\n}");
}

TEST_F(ValueEdit, RefusedTextLeavesAPlaceholdersValuePresentButItsRowAHint) {
    TValueView view(Types.Person, "{}");
    view.DoubleClick("{");
    view.Enter("~age: <value>", "abc");
    view.ExpectJson(R"({"age":0})");
    view.Press("Escape");
    view.Expect("{\n  ~name: <value>\n  ~age: <value>\n}");
    view.Press("F5");
    view.Expect("{\n  ~name: <value>\n  age: <0>\n}");
}

TEST_F(ValueEdit, SixtyFourBitNumbersAreTypedWithThirtyTwo) {
    TValueView view(Types.Library.NewList(TZOTypeLibrary::Scalar(vkInt64)), "[1]");
    view.Enter("<1>", "3000000000");
    EXPECT_EQ(view.Shown.size(), 1);
    view.Press("Escape");
    view.Enter("<1>", "-5");
    view.ExpectJson("[-5]");
}

TEST_F(ValueEdit, BadJsonIsRefused) {
    TValueView view(Types.Library.NewList(TZOTypeLibrary::Scalar(vkAny)), "[1]");
    view.Enter("<1>", "{");
    EXPECT_EQ(view.Shown, QStringList("ZOAny value should be a valid JSON value"));
}

TEST_F(ValueEdit, DeletingTheRootLeavesNull) {
    TValueView view(Types.Person, R"({"age":1})");
    view.PressOn("{", "Ctrl+Delete");
    view.Expect("null");
    view.ExpectJson("null");
}

TEST_F(ValueEdit, DeletedPropertyStaysAsAHintUntilItsObjectIsShownAnew) {
    TValueView view(Group, R"({"title":"x","boss":{"name":"Ann"},"marks":[1]})");
    view.PressOn("boss: {", "Ctrl+Delete");
    view.Expect("{\n  title: <x>\n  ~boss: object\n  marks: [\n    <1>\n  ]\n}");
    view.ExpectJson(R"({"title":"x","marks":[1]})");
    view.Press("F5");
    view.Expect("{\n  title: <x>\n  marks: [\n    <1>\n  ]\n}");
}

TEST_F(ValueEdit, DeletingDiscardsWhatWasBeingTyped) {
    TValueView view(Types.Person, R"({"name":"Ann","age":1})");
    view.Type("age: <1>", "abc");
    view.Press("Ctrl+Delete");
    EXPECT_TRUE(view.Shown.isEmpty());
    view.ExpectJson(R"({"name":"Ann"})");
}

TEST_F(ValueEdit, DeletedMapItemIsGone) {
    TValueView view(Types.Scores, R"({"b":1,"a":2,"c":3})");
    view.PressOn("a: <2>", "Ctrl+Delete");
    view.Expect("{\n  b: <1>\n  c: <3>\n}");
    view.ExpectJson(R"({"b":1,"c":3})");
}

TEST_F(ValueEdit, TheNextItemTakesTheSelectionOverFromADeletedOne) {
    TValueView view(Types.Scores, R"({"b":1,"a":2,"c":3})");
    view.PressOn("a: <2>", "Ctrl+Delete Ctrl+Delete");
    view.Expect("{\n  b: <1>\n}");
    EXPECT_EQ(view.Selected(), "}");
}

TEST_F(ValueEdit, ListElementsTakeNoKeys) {
    TValueView view(Types.Numbers, "[1,2,3]");
    view.PressOn("<2>", "Ctrl+Delete Insert Shift+Insert Alt+Down");
    view.Expect("[\n  <1>\n  <2>\n  <3>\n]");
    view.ExpectJson("[1,2,3]");
}

TEST_F(ValueEdit, AltArrowsMoveAPropertyWithItsSubtree) {
    TValueView view(Group, R"({"title":"x","boss":{"name":"Ann"},"marks":[1]})");
    view.PressOn("title: <x>", "Alt+Down");
    view.Expect("{\n  boss: {\n    name: <Ann>\n  }\n  title: <x>\n  marks: [\n    <1>\n  ]\n}");
    view.PressOn("marks: [", "Alt+Up Alt+Up Alt+Up");
    view.Expect("{\n  marks: [\n    <1>\n  ]\n  boss: {\n    name: <Ann>\n  }\n  title: <x>\n}");
    view.PressOn("title: <x>", "Alt+Down");
    view.Press("F5");
    view.Expect("{\n  marks: [\n    <1>\n  ]\n  boss: {\n    name: <Ann>\n  }\n  title: <x>\n}");
    view.ExpectJson(R"({"title":"x","boss":{"name":"Ann"},"marks":[1]})");
}

TEST_F(ValueEdit, AltArrowsMoveAMapItem) {
    TValueView view(Types.Scores, R"({"b":1,"a":2})");
    view.PressOn("b: <1>", "Alt+Down Alt+Down");
    view.Expect("{\n  a: <2>\n  b: <1>\n}");
    view.PressOn("b: <1>", "Alt+Up Alt+Up");
    view.Expect("{\n  b: <1>\n  a: <2>\n}");
}

TEST_F(ValueEdit, AMoveIsRefusedOnceWithTheTextInTheEditor) {
    TValueView view(Types.Person, R"({"name":"Ann","age":1})");
    view.Type("age: <1>", "abc");
    view.Press("Alt+Up");
    EXPECT_EQ(view.Shown.size(), 1);
    view.Expect("{\n  name: <Ann>\n  age: <abc>\n}");
}

TEST_F(ValueEdit, RefreshKeepsTheRowsThatAreStillThere) {
    TValueView view(Group, R"({"title":"x","marks":[1,2]})");
    TZOViewRow* title = view.Find("title: <x>");
    TZOViewRow* first = view.Find("<1>");
    view.Click("title: <x>");
    view.SetJson(R"({"title":"y","boss":{"age":5},"marks":[7]})");
    view.Press("F5");
    view.Expect("{\n  title: <y>\n  marks: [\n    <7>\n  ]\n  boss: {\n    age: <5>\n  }\n}");
    EXPECT_EQ(view.Find("title: <y>"), title);
    EXPECT_EQ(view.Find("<7>"), first);
    EXPECT_EQ(view.Selected(), "title: <y>");
}

TEST_F(ValueEdit, RefreshLeavesRowsThatShowTheSameAlone) {
    TValueView view(Types.Person, R"({"name":"Ann","age":1})");
    view.Click("name: <Ann>");
    view.Source.Configured = 0;
    view.Press("F5");
    EXPECT_EQ(view.Source.Configured, 0);
    view.SetJson(R"({"name":"Ann","age":2})");
    view.Press("F5");
    EXPECT_EQ(view.Source.Configured, 1);
    view.Expect("{\n  name: <Ann>\n  age: <2>\n}");
}

TEST_F(ValueEdit, RefreshFollowsMapsKeyByKey) {
    TValueView view(Types.Scores, R"({"a":1,"b":2,"c":3})");
    TZOViewRow* c = view.Find("c: <3>");
    view.SetJson(R"({"d":4,"c":30,"a":10})");
    view.Press("F5");
    view.Expect("{\n  a: <10>\n  c: <30>\n  d: <4>\n}");
    EXPECT_EQ(view.Find("c: <30>"), c);
}

TEST_F(ValueEdit, AnEmptyKeyFromOutsideIsAnItemLikeAnyOther) {
    TValueView view(Types.Scores, R"({"":1})");
    view.Expect("{\n  key: <1>\n}");
    view.Enter("key: <1>", "2");
    view.ExpectJson(R"({"":2})");
}

TEST_F(ValueEdit, SymbolsAndTextsHaveTheirColours) {
    TValueView view(Types.Person, R"({"age":1})");
    const TZOViewRowLayout* brace = view.Find("{")->Layout();
    const TZOViewRowLayout* age = view.Find("age: <1>")->Layout();
    EXPECT_EQ(brace->GetChunks(0)->TextToken(), ctSymbol);
    EXPECT_EQ(age->GetChunks(0)->TextToken(), ctNormal);
    EXPECT_EQ(age->GetChunks(1)->TextToken(), ctSymbol);
    EXPECT_EQ(age->GetChunks(2)->TextToken(), ctNormal);
    EXPECT_EQ(age->GetChunks(0)->Id(), 0);
    EXPECT_EQ(age->GetChunks(1)->Id(), 1);
    EXPECT_EQ(age->GetChunks(2)->Id(), 2);
}

TEST_F(ValueEdit, AHandlerMayReplaceTheTextsOfPlainValues) {
    TValueView view(Group, R"({"title":"x","marks":[1]})");
    view.Source.OnGetValue = [](TZOObjectDataSource*, const TZOTypeInfo* AType, bool AHasValue,
                                const void* AValue, QString& AText) {
        EXPECT_EQ(AHasValue, AValue != nullptr);
        if (AType->Kind() == vkInteger)
            AText = QLatin1Char('#') + AText;
    };
    view.Press("F5");
    view.Expect("{\n  title: <x>\n  marks: [\n    <#1>\n  ]\n}");
}

TEST_F(ValueEdit, AHandlerMayStoreTypedTextByItself) {
    TValueView view(Types.Person, "{}");
    view.Source.OnSetValue = [&](TZOObjectDataSource* ASender, const TZOTypeInfo* AType, const QString& AText,
                                 void* AValue, bool& AHandled) {
        EXPECT_EQ(ASender, &view.Source);
        EXPECT_FALSE(AHandled);
        if (AType->Kind() != vkInteger)
            return;
        *static_cast<qint32*>(AValue) = static_cast<qint32>(AText.size());
        AHandled = true;
    };
    view.DoubleClick("{");
    view.Enter("~age: <value>", "four");
    view.Enter("~name: <value>", "Ann");
    view.Expect("{\n  name: <Ann>\n  age: <4>\n}");
}

TEST_F(ValueEdit, AnUploadIsChosenInADialog) {
    TValueView view(Types.Holding(TZOTypeLibrary::Scalar(vkUpload)), "{}");
    QBuffer stream;
    bool accepts = false;
    view.Source.OnUploadDialog = [&](TZOObjectDataSource*, ZOUpload& AUpload, bool& AHandled) {
        AUpload.SetStream(&stream);
        AHandled = accepts;
    };
    view.DoubleClick("{");
    view.DoubleClick("~p: <value>");
    view.Expect("{\n  ~p: <value>\n}");
    accepts = true;
    view.DoubleClick("~p: <value>");
    view.Expect("{\n  p: <(Upload)>\n}");
    void* object = nullptr;
    void* upload = nullptr;
    ASSERT_TRUE(view.Holder.GetValue(object));
    ASSERT_TRUE(ZOObject::TData::GetProp(*static_cast<ZOObject**>(object), 0, upload));
    EXPECT_EQ(static_cast<ZOUpload*>(upload)->GetStream(), &stream);
}

TEST_F(ValueEdit, AValueThatCannotBeStoredIsLeftAlone) {
    TZOObjectDataSource source(Types.Numbers, nullptr, false, true);
    TZORestView view;
    view.SetDataSource(&source);
    ASSERT_EQ(view.GetRowCount(), 3);
    view.SelectRow(view.RowAt(1), seHide);
    source.RowEdited(view.RowAt(1), 2, QStringLiteral("5"));
    EXPECT_EQ(view.GetRowCount(), 3);
    EXPECT_FALSE(source.Value()->HasValue());
}

TEST_F(ValueEdit, RowsOfAValueThatWasReplacedShowAndWriteNothing) {
    TValueView view(Types.Shape, R"({"type":"circle","radius":1})");
    view.SetJson(R"({"type":"square","side":2})");
    view.View.InvalidateAllLayouts();
    view.Expect("{\n  type: circle\n  radius: <>\n}");
    view.Enter("radius: <>", "5");
    view.ExpectJson(R"({"type":"square","side":2})");
    view.Press("F5");
    view.Expect("{\n  type: square\n  side: <2>\n}");
}

TEST_F(ValueEdit, RowsOfElementsThatAreGoneShowNothing) {
    TValueView view(Types.Numbers, "[1,2]");
    view.SetJson("[3]");
    view.View.InvalidateAllLayouts();
    view.Expect("[\n  <3>\n  <>\n]");
    view.Enter("<>", "5");
    view.ExpectJson("[3]");
}

TEST_F(ValueEdit, ASourceMayGoBeforeItsViewAndWithIt) {
    TZOValueHolder holder(Types.Numbers, true);
    TZORestView view;
    {
        TZOObjectDataSource source(&holder, false, true);
        view.SetDataSource(&source);
        EXPECT_EQ(view.GetRowCount(), 3);
    }
    EXPECT_EQ(view.GetRowCount(), 0);
    view.SetOwnDataSource(true);
    view.SetDataSource(new TZOObjectDataSource(&holder, false, true));
    EXPECT_EQ(view.GetRowCount(), 3);
}

TEST_F(ValueEdit, TheRowsMayBeShownAnewInAnotherView) {
    TZOValueHolder holder(Types.Numbers, true);
    TZOObjectDataSource source(&holder, false, true);
    TZORestView first;
    TZORestView second;
    first.SetDataSource(&source);
    first.SetDataSource(nullptr);
    second.SetDataSource(&source);
    // Insert mode was asked for the first time only.
    EXPECT_EQ(second.GetRowCount(), 1);
    second.SetDataSource(nullptr);
}
