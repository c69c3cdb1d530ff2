// What the context menu does to list elements, which take no keys, and what is told about a row.
#include "tests/jsoneditor/values/ValueTypes.h"
#include "tests/jsoneditor/values/ValueView.h"

#include "jsoneditor/view/ViewRowLayout.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QMenu>
#include <QTest>
#include <QToolTip>

#include <gtest/gtest.h>

namespace {

struct RowCommands : testing::Test {
    TValueTypes Types;
    const ZOList::TTypeInfo* Rows = Types.Library.NewList(Types.Numbers);

    /// The menu that the Menu key and Shift+F10 open on the selected row.
    static QMenu* OpenMenu(TValueView& AView) {
        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(1, 1),
                                AView.View.mapToGlobal(QPoint(1, 1)));
        QApplication::sendEvent(&AView.View, &event);
        return AView.View.findChild<QMenu*>();
    }

    static bool Offers(TValueView& AView, const QString& ALine, const QString& ACaption) {
        AView.Click(ALine);
        QMenu* menu = OpenMenu(AView);
        bool offers = false;
        for (const QAction* action : menu->actions())
            offers = offers || action->text() == ACaption;
        menu->close();
        delete menu;
        return offers;
    }

    /// Chooses the command by keys: down to it, then Return.
    static void Choose(TValueView& AView, const QString& ALine, const QString& ACaption, int ANumber = 1) {
        AView.Click(ALine, ANumber);
        QMenu* menu = OpenMenu(AView);
        for (int i = 0; i < 30; ++i) {
            if (menu->activeAction() && menu->activeAction()->text() == ACaption)
                break;
            QTest::keyClick(menu, Qt::Key_Down);
        }
        ASSERT_TRUE(menu->activeAction());
        ASSERT_EQ(menu->activeAction()->text(), ACaption);
        QTest::keyClick(menu, Qt::Key_Return);
        delete menu;
        AView.View.setFocus();
    }
};

} // namespace

TEST_F(RowCommands, InsertAfterTheLastElementThenTypingAppends) {
    TValueView view(Types.Numbers, "[1,2,3]");
    Choose(view, "<3>", "Insert After");
    view.Expect("[\n  <1>\n  <2>\n  <3>\n  ~<value>\n]");
    view.Press("Down 7 Return");
    view.Expect("[\n  <1>\n  <2>\n  <3>\n  <7>\n]");
    view.ExpectJson("[1,2,3,7]");
}

TEST_F(RowCommands, InsertBeforeTheFirstElementStoresAtItsPlace) {
    TValueView view(Types.Numbers, "[1,2]");
    Choose(view, "<1>", "Insert Before");
    view.Expect("[\n  ~<value>\n  <1>\n  <2>\n]");
    view.Press("Up 7 Return");
    view.ExpectJson("[7,1,2]");
}

TEST_F(RowCommands, InsertAfterAnElementThatIsAContainerOpensIt) {
    TValueView view(Rows, "[[1],[2]]");
    Choose(view, "[", "Insert After", 2);
    view.Expect("[\n  [\n    ~<value>\n    <1>\n  ]\n  [\n    <2>\n  ]\n]");
}

TEST_F(RowCommands, DeleteElementTakesItOutAndSelectsTheNext) {
    TValueView view(Types.Numbers, "[1,2,3]");
    Choose(view, "<2>", "Delete Element");
    view.Expect("[\n  <1>\n  <3>\n]");
    EXPECT_EQ(view.Selected(), "<3>");
    Choose(view, "<1>", "Undo Change");
    view.ExpectJson("[1,2,3]");
    Choose(view, "<1>", "Redo Change");
    view.ExpectJson("[1,3]");
}

TEST_F(RowCommands, DeleteElementOfAPlaceholderEndsInsertMode) {
    TValueView view(Types.Numbers, "[1]");
    view.DoubleClick("[");
    Choose(view, "~<value>", "Delete Element");
    view.Expect("[\n  <1>\n]");
    EXPECT_FALSE(view.Source.CanUndo());
}

TEST_F(RowCommands, ChooseFileAsksForAnUpload) {
    const auto* uploads = Types.Library.NewList(TZOTypeLibrary::Scalar(vkUpload));
    TValueView view(uploads, "[null]");
    int asked = 0;
    view.Source.OnUploadDialog = [&](TZOObjectDataSource*, ZOUpload& AUpload, bool& AHandled) {
        ++asked;
        AUpload.SetMimeType(QStringLiteral("text/plain"));
        AHandled = asked == 2;
    };
    Choose(view, "null", "Choose file...");
    view.Expect("[\n  null\n]");
    Choose(view, "null", "Choose file...");
    view.Expect("[\n  <(Upload)>\n]");
    view.Press("Ctrl+Z");
    view.Expect("[\n  null\n]");
}

TEST_F(RowCommands, AreOfferedWhereTheyDoSomething) {
    TValueView view(Types.Holding(Types.Numbers), R"({"p":[1]})");
    EXPECT_TRUE(Offers(view, "<1>", "Insert Before"));
    EXPECT_FALSE(Offers(view, "p: [", "Insert Before"));
    EXPECT_FALSE(Offers(view, "]", "Delete Element"));
    EXPECT_FALSE(Offers(view, "<1>", "Choose file..."));
}

TEST_F(RowCommands, CopyAndPasteAsJson) {
    TValueView view(Rows, "[[1],[2]]");
    Choose(view, "<1>", "Copy as JSON");
    Choose(view, "<2>", "Paste JSON");
    view.ExpectJson("[[1],[1]]");
}

namespace {

struct RowHints : testing::Test {
    TValueTypes Types;
    const TZOTypeInfo* Colour =
        Types.Library.NewScalar(vkString, "Colour", "What it looks like <b>here</b>", {"red", "green"});
    const ZOObject::TTypeInfo* Thing =
        Types.Library.NewObject("Thing")
            .Property("a/b~c", Colour, {.Required = true, .Description = "The paint"})
            .Property("list", Types.Library.NewList(Types.Numbers))
            .Property("pick", Types.Choice)
            .Property("scores", Types.Scores)
            .Property("id", Types.Integer, {.ReadOnly = true})
            .Type();
    const char* Json = R"({"a/b~c":"red","list":[[1,2]],"pick":{"kind":"number","value":4},)"
                       R"("scores":{"x":1},"id":5})";

    static std::string Hint(TValueView& AView, const QString& ALine, int ANumber = 1) {
        return AView.Source.RowHint(AView.Find(ALine, ANumber)).toStdString();
    }
};

} // namespace

TEST_F(RowHints, SayPlaceTypeAndDescription) {
    TValueView view(Thing, Json);
    EXPECT_EQ(Hint(view, "{"), "Thing (object)");
    EXPECT_EQ(Hint(view, "a/b~c: <red>"), "/a~1b~0c: Colour (string), required\nThe paint\n"
                                          "What it looks like <b>here</b>\nOne of: red, green");
    EXPECT_EQ(Hint(view, "list: ["), "/list: list of list of integer");
    EXPECT_EQ(Hint(view, "<2>"), "/list/0/1: integer");
    EXPECT_EQ(Hint(view, "value: <4>"), "/pick/value: integer");
    EXPECT_EQ(Hint(view, "kind: number"), "/pick: Choice (union)");
    EXPECT_EQ(Hint(view, "x: <1>"), "/scores/x: integer");
    EXPECT_EQ(Hint(view, "id: <5>"), "/id: integer, read-only");
    EXPECT_EQ(Hint(view, "]"), "/list/0: list of integer");
}

TEST_F(RowHints, EndForTypesThatAreListsAndMapsOfThemselves) {
    TZOTypeLibrary types;
    ZOList::TTypeInfo* list = types.NewOpenList();
    ZOMap::TTypeInfo* map = types.NewOpenMap();
    TZOTypeLibrary::SetItemType(list, map);
    TZOTypeLibrary::SetItemType(map, list);
    TValueView view(list, R"([{"x": [{}]}])");
    EXPECT_EQ(Hint(view, "["), "list of map of list of map of list of map of list of map of ...");
    EXPECT_EQ(Hint(view, "x: ["), "/0/x: list of map of list of map of list of map of list of map of ...");
}

TEST_F(RowHints, AreShownAsPlainTextWhenThePointerRests) {
    TValueView view(Thing, Json);
    const QPoint point = view.Find("a/b~c: <red>")->Layout()->Bounds().center();
    QHelpEvent event(QEvent::ToolTip, point, view.View.mapToGlobal(point));
    QApplication::sendEvent(&view.View, &event);
    EXPECT_TRUE(QToolTip::isVisible());
    EXPECT_TRUE(QToolTip::text().contains("&lt;b&gt;here")) << QToolTip::text().toStdString();
    QToolTip::hideText();
}

TEST_F(RowHints, ReachAssistiveTechnology) {
    TValueView view(Thing, Json);
    view.Click("id: <5>");
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&view.View);
    ASSERT_TRUE(list && list->focusChild());
    EXPECT_EQ(list->focusChild()->text(QAccessible::Help), "/id: integer, read-only");
}
