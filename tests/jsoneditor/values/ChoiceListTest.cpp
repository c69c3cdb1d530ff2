// The list of allowed values below the editor.
#include "tests/jsoneditor/values/ValueTypes.h"
#include "tests/jsoneditor/values/ValueView.h"

#include "jsoneditor/view/InplaceEditor.h"
#include "jsoneditor/view/ViewRowLayout.h"

#include <QApplication>
#include <QListWidget>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>

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

    /// A list of values of which there are more than a list shows at once.
    const ZOList::TTypeInfo* Long =
        Types.Library.NewList(Types.Library.NewScalar(vkString, QStringLiteral("Long"), QString(), [] {
            QStringList values;
            for (int i = 0; i < 30; ++i)
                values.append(QStringLiteral("value %1").arg(i));
            return values;
        }()));

    static QListWidget* Open(const TValueView& AView) {
        for (auto* list : AView.Window.findChildren<QListWidget*>(QStringLiteral("Choices"))) {
            if (list->isVisible())
                return list;
        }
        return nullptr;
    }
    static QRect EditorIn(const TValueView& AView) {
        const QWidget* editor = AView.View.Editor();
        return {editor->mapTo(&AView.Window, QPoint()), editor->size()};
    }
    /// The texts of the open list, the current one in brackets; empty when none is open.
    static std::string Shown(const TValueView& AView) {
        QStringList texts;
        const QListWidget* list = Open(AView);
        for (int i = 0; list && i < list->count(); ++i)
            texts.append(i == list->currentRow() ? '[' + list->item(i)->text() + ']' : list->item(i)->text());
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

TEST_F(ChoiceList, TextThatIsNoneOfThemIsTheEditors) {
    TValueView view(Paint, Json);
    view.PressOn("colour: <green>", "Ctrl+Space");
    QTest::keyClicks(view.View.Editor(), "mauve");
    EXPECT_EQ(Shown(view), "red green blue");
    view.Press("Return");
    EXPECT_EQ(Shown(view), "");
    view.ExpectJson(R"({"colour":"mauve","n":1,"gloss":true})");
}

TEST_F(ChoiceList, UpFromNoneGoesToTheLast) {
    TValueView view(Paint, Json);
    view.PressOn("colour: <green>", "Ctrl+Space");
    QTest::keyClicks(view.View.Editor(), "x");
    view.Press("Up");
    EXPECT_EQ(Shown(view), "red green [blue]");
}

TEST_F(ChoiceList, AWholeWordGoesBeforeALongerOneThatBeginsLikeIt) {
    const auto* state = Types.Library.NewScalar(vkString, QStringLiteral("State"), QString(),
                                                {QStringLiteral("inside"), QStringLiteral("in")});
    TValueView view(Types.Library.NewList(state), R"(["inside"])");
    view.PressOn("<inside>", "Ctrl+Space");
    QTest::keyClicks(view.View.Editor(), "in");
    EXPECT_EQ(Shown(view), "inside [in]");
    view.Press("Return");
    view.ExpectJson(R"(["in"])");
}

TEST_F(ChoiceList, AClickStoresTooAndLeavesTheFocusInTheView) {
    TValueView view(Paint, Json);
    view.PressOn("colour: <green>", "Ctrl+Space");
    const auto* list = Open(view);
    ASSERT_TRUE(list);
    const QPoint first = list->viewport()->mapTo(&view.Window, list->visualItemRect(list->item(0)).center());
    QTest::mouseMove(view.Window.windowHandle(), first);
    QTest::mouseClick(view.Window.windowHandle(), Qt::LeftButton, {}, first);
    view.ExpectJson(R"({"colour":"red","n":1,"gloss":true})");
    EXPECT_EQ(Shown(view), "");
    view.Press("Down");
    EXPECT_EQ(view.Selected(), "n: <1>");
}

TEST_F(ChoiceList, AClickBesideItOnlyClosesIt) {
    TValueView view(Paint, Json);
    view.PressOn("colour: <green>", "Ctrl+Space");
    view.Click("}");
    EXPECT_EQ(Shown(view), "");
    view.ExpectJson(Json);
}

TEST_F(ChoiceList, TheWheelOverItScrollsItAlone) {
    TValueView view(Long, R"(["value 1"])");
    view.PressOn("<value 1>", "Ctrl+Space");
    const auto* list = Open(view);
    ASSERT_TRUE(list);
    EXPECT_EQ(list->verticalScrollBar()->value(), 0);
    const QPointF point = list->mapTo(&view.Window, list->rect().center());
    QWheelEvent wheel(point, view.Window.mapToGlobal(point), {}, QPoint(0, -120), Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(view.Window.windowHandle(), &wheel);
    EXPECT_GT(list->verticalScrollBar()->value(), 0);
    EXPECT_NE(Shown(view), "");
}

TEST_F(ChoiceList, OpensAboveTheEditorWhereThereIsMoreRoom) {
    TValueView view(Long, R"(["a","b","c","d","e","f","g","h","i","j","k","l","m","n"])");
    view.Window.resize(700, view.Find("]")->Layout()->Bounds().top());
    view.PressOn("<n>", "Ctrl+Space");
    const auto* list = Open(view);
    ASSERT_TRUE(list);
    EXPECT_EQ(list->geometry().bottom() + 1, view.View.Editor()->mapTo(&view.Window, QPoint(0, 0)).y());
    EXPECT_TRUE(view.Window.rect().contains(list->geometry()));
}

TEST_F(ChoiceList, StaysInsideALowWindow) {
    TValueView view(Long, R"(["a","b","c"])");
    view.Window.resize(700, view.Find("]")->Layout()->Bounds().bottom() + 1);
    for (const char* line : {"<a>", "<b>", "<c>"}) {
        view.PressOn(line, "Ctrl+Space");
        const auto* list = Open(view);
        ASSERT_TRUE(list);
        EXPECT_TRUE(view.Window.rect().contains(list->geometry())) << line;
        EXPECT_FALSE(list->geometry().intersects(EditorIn(view))) << line;
        EXPECT_GE(list->height(), list->sizeHintForRow(0)) << line;
        view.Press("Escape Escape");
    }
}

TEST_F(ChoiceList, StaysInsideTheWindowsRightEdge) {
    const auto* deep = Types.Library.NewMap(Long);
    TValueView view(deep, R"({"a rather long key that reaches far to the right":["value 1"]})");
    view.Type("<value 1>", "value 1");
    const int left = EditorIn(view).left();
    view.Press("Escape");
    view.Window.resize(left + 30, 1000);
    view.View.resize(left + 30, 1000);
    view.PressOn("<value 1>", "Ctrl+Space");
    const auto* list = Open(view);
    ASSERT_TRUE(list);
    EXPECT_EQ(list->geometry().right(), view.Window.rect().right());
    EXPECT_GE(list->width(), list->sizeHintForColumn(0));
}

TEST_F(ChoiceList, StaysOnTheScreenWhereTheWindowReachesBeyondIt) {
    TValueView view(Paint, Json);
    const QRect screen = view.Window.screen()->availableGeometry();
    const int bottom = view.Find("colour: <green>")->Layout()->Bounds().bottom();
    view.Window.move(0, screen.bottom() - bottom - 5);
    view.PressOn("colour: <green>", "Ctrl+Space");
    const auto* list = Open(view);
    ASSERT_TRUE(list);
    EXPECT_LE(list->mapToGlobal(QPoint(0, list->height() - 1)).y(), screen.bottom());
}

TEST_F(ChoiceList, GoesAlongInAScrollBoxUntilItsEditorIsOutOfSight) {
    TValueView view(Paint, Json);
    QScrollArea box(&view.Window);
    box.setGeometry(0, 0, 700, 200);
    view.View.resize(600, 1000);
    box.setWidget(&view.View);
    box.show();
    view.View.setFocus();
    view.PressOn("gloss: <True>", "Ctrl+Space");
    const auto* list = Open(view);
    ASSERT_TRUE(list);
    box.verticalScrollBar()->setValue(20);
    EXPECT_EQ(list->geometry().top(), EditorIn(view).bottom() + 1);
    EXPECT_NE(Shown(view), "");
    box.verticalScrollBar()->setValue(500);
    EXPECT_EQ(Shown(view), "");
    box.takeWidget();
    view.View.setParent(&view.Window);
}

TEST_F(ChoiceList, TheKeypadsEnterChoosesToo) {
    TValueView view(Paint, Json);
    view.PressOn("colour: <green>", "Ctrl+Space Up");
    QTest::keyClick(view.View.Editor(), Qt::Key_Enter, Qt::KeypadModifier);
    view.ExpectJson(R"({"colour":"red","n":1,"gloss":true})");
}

TEST_F(ChoiceList, KeysAreTheViewsOwnAgainAfterAChoice) {
    TValueView view(Paint, Json);
    view.PressOn("colour: <green>", "Ctrl+Space Down Return Down Down Up");
    EXPECT_EQ(view.Selected(), "n: <1>");
    view.ExpectJson(R"({"colour":"blue","n":1,"gloss":true})");
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

TEST_F(ChoiceList, ShowsWhatWouldActAndStoresItAsItIs) {
    const QString evil = QString::fromUtf8("b\x1b[31m\u202Ec\nd");
    const TZOTypeInfo* text =
        Types.Library.NewScalar(vkString, QStringLiteral("Evil"), QString(), {QStringLiteral("a"), evil});
    const auto* object =
        Types.Library.NewObject(QStringLiteral("Object")).Property(QStringLiteral("text"), text).Type();
    TValueView view(object, R"({"text":"a"})");
    view.PressOn("text: <a>", "Ctrl+Space");
    EXPECT_EQ(Shown(view), "[a] b␛[31m\\u202Ec␊d");
    view.Press("Down Return");
    view.ExpectJson(QString::fromUtf8(R"({"text":"b\u001b[31m%1c\nd"})").arg(QChar(0x202E)).toUtf8());
    // The editor's text is the value: the list opens on it.
    view.Press("Ctrl+Space");
    EXPECT_EQ(Shown(view), "a [b␛[31m\\u202Ec␊d]");
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
