// The list of allowed values below the editor.
#include "tests/jsoneditor/values/ValueTypes.h"
#include "tests/jsoneditor/values/ValueView.h"

#include "jsoneditor/view/InplaceEditor.h"

#include <QListWidget>
#include <QTest>

#include <gtest/gtest.h>

namespace {

struct ChoiceList : testing::Test {
    TValueTypes Types;
    const TZOTypeInfo* Colour =
        Types.Library.NewScalar(vkString, QStringLiteral("Colour"), QString(),
                                {QStringLiteral("red"), QStringLiteral("green"), QStringLiteral("blue")});
    const ZOObject::TTypeInfo* Paint =
        Types.Library.NewObject(QStringLiteral("Paint"))
            .Property(QStringLiteral("colour"), Colour)
            .Property(QStringLiteral("n"), Types.Integer)
            .Property(QStringLiteral("gloss"), TZOTypeLibrary::Scalar(vkBoolean))
            .Type();
    const char* Json = R"({"colour":"green","n":1,"gloss":true})";

    /// The texts of the open list, the current one in brackets; empty when none is open.
    static std::string Shown(const TValueView& AView) {
        QStringList texts;
        for (const auto* list : AView.Window.findChildren<QListWidget*>(QStringLiteral("Choices"))) {
            for (int i = 0; list->isVisible() && i < list->count(); ++i)
                texts.append(i == list->currentRow() ? '[' + list->item(i)->text() + ']'
                                                     : list->item(i)->text());
        }
        return texts.join(QLatin1Char(' ')).toStdString();
    }
};

} // namespace

TEST_F(ChoiceList, OpensOnWhatStandsInTheEditorAndReturnStoresAnother) {
    TValueView view(Paint, Json);
    view.PressOn("colour: <green>", "Ctrl+Space");
    EXPECT_EQ(Shown(view), "red [green] blue");
    view.Press("Down");
    EXPECT_EQ(Shown(view), "red green [blue]");
    view.Press("Return");
    EXPECT_EQ(Shown(view), "");
    view.ExpectJson(R"({"colour":"blue","n":1,"gloss":true})");
    view.Press("Ctrl+Z");
    view.ExpectJson(Json);
}

TEST_F(ChoiceList, StandsRightBelowTheEditor) {
    TValueView view(Paint, Json);
    view.PressOn("colour: <green>", "Ctrl+Space");
    const auto* list = view.Window.findChild<QListWidget*>(QStringLiteral("Choices"));
    ASSERT_TRUE(list);
    EXPECT_EQ(list->mapToGlobal(QPoint(0, 0)),
              view.View.Editor()->mapToGlobal(QPoint(0, view.View.Editor()->height())));
}

TEST_F(ChoiceList, UpFromTheFirstGoesToTheLast) {
    TValueView view(Paint, R"({"colour":"red"})");
    view.PressOn("colour: <red>", "Ctrl+Space Up");
    EXPECT_EQ(Shown(view), "red green [blue]");
    view.Press("Down");
    EXPECT_EQ(Shown(view), "[red] green blue");
}

TEST_F(ChoiceList, EscapeClosesItAloneAndLeavesTheEditor) {
    TValueView view(Paint, Json);
    view.PressOn("colour: <green>", "Ctrl+Space Escape");
    EXPECT_EQ(Shown(view), "");
    EXPECT_TRUE(view.View.EditorShown());
    view.Press("Down");
    EXPECT_EQ(view.Selected(), "n: <1>");
    view.ExpectJson(Json);
}

TEST_F(ChoiceList, FollowsWhatIsTyped) {
    TValueView view(Paint, Json);
    view.PressOn("colour: <green>", "Ctrl+Space");
    QTest::keyClicks(view.View.Editor(), "b");
    EXPECT_EQ(Shown(view), "red green [blue]");
    view.Press("Return");
    view.ExpectJson(R"({"colour":"blue","n":1,"gloss":true})");
}

TEST_F(ChoiceList, AClickStoresToo) {
    TValueView view(Paint, Json);
    view.PressOn("colour: <green>", "Ctrl+Space");
    auto* list = view.Window.findChild<QListWidget*>(QStringLiteral("Choices"));
    ASSERT_TRUE(list);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(0)).center());
    view.ExpectJson(R"({"colour":"red","n":1,"gloss":true})");
}

TEST_F(ChoiceList, ClosesWithItsEditor) {
    TValueView view(Paint, Json);
    view.PressOn("colour: <green>", "Ctrl+Space Tab");
    EXPECT_EQ(Shown(view), "");
    EXPECT_EQ(view.Selected(), "n: <1>");
    view.Press("Ctrl+Space");
    EXPECT_EQ(Shown(view), "");
}

TEST_F(ChoiceList, FillsInWhatIsOffered) {
    TValueView view(Paint, "{}");
    view.DoubleClick("{");
    view.PressOn("~colour: <value>", "Ctrl+Space Return");
    view.ExpectJson(R"({"colour":"red"})");
}

TEST_F(ChoiceList, BooleansHaveBothTheirTexts) {
    TValueView view(Paint, Json);
    view.PressOn("gloss: <True>", "Ctrl+Space");
    EXPECT_EQ(Shown(view), "[True] False");
    view.Press("Down Return");
    view.ExpectJson(R"({"colour":"green","n":1,"gloss":false})");
}

TEST_F(ChoiceList, WaitsForTheKeyOfANewItem) {
    TValueView view(Types.Library.NewMap(Colour), "{}");
    view.DoubleClick("{");
    view.PressOn("~<key>: value", "Ctrl+Space");
    EXPECT_EQ(Shown(view), "");
}

TEST_F(ChoiceList, GoesWithItsSource) {
    TValueView view(Paint, Json);
    view.PressOn("colour: <green>", "Ctrl+Space");
    view.View.SetDataSource(nullptr);
    EXPECT_EQ(Shown(view), "");
}
