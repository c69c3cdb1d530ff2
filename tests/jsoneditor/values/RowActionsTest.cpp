// Every edit action on every kind of row: where the new entry is offered, and what is deleted.
#include "tests/jsoneditor/values/ValueTypes.h"
#include "tests/jsoneditor/values/ValueView.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QTest>

#include <gtest/gtest.h>

namespace {

const char* Json = R"({"text":"x","list":[1],"map":{"k":1},"pick":{"kind":"number","value":5},)"
                   R"("shape":{"type":"circle"},"one":{"age":3}})";

const QStringList Base = {
    "{",                //
    "  text: <x>",      // 1
    "  list: [",        // 2
    "    <1>",          //
    "  ]",              // 4
    "  map: {",         // 5
    "    k: <1>",       //
    "  }",              // 7
    "  pick: {",        // 8
    "    kind: number", //
    "    value: <5>",   // 10
    "  }",              // 11
    "  shape: {",       // 12
    "    type: circle", //
    "  }",              // 14
    "  one: {",         // 15
    "    age: <3>",     //
    "  }",              // 17
    "}",                // 18
};

const char* Last = "  ~last: <value>";
const char* Element = "    ~<value>";
const char* Item = "    ~<key>: value";
const char* Name = "    ~name: <value>";
const char* Radius = "    ~radius: <value>";
const char* Tags = "      ~> number\n      ~> person\n      ~> none";
const char* Subtypes = "      ~> circle\n      ~> square";

/// What the action does to the rows: AText comes before row APlace, in the place of ATaken rows.
struct TCase {
    int Row;
    const char* Action; // keys, or "double-click", or a command of the menu
    int Place = -1;     // -1: nothing changes
    const char* Text = "";
    int Taken = 0;
    const char* JsonAfter = nullptr; // null: the value stays
};

const TCase Inserts[] = {
    {0, "double-click", 1, Last},
    {0, "Insert", 1, Last},
    {0, "Shift+Insert"},
    {1, "double-click"},
    {1, "Insert", 2, Last},
    {1, "Shift+Insert", 1, Last},
    {2, "double-click", 3, Element},
    {2, "Insert", 3, Element},
    {2, "Shift+Insert", 2, Last},
    {3, "double-click"},
    {3, "Insert"},
    {3, "Shift+Insert"},
    {3, "Insert After", 4, Element},
    {3, "Insert Before", 3, Element},
    {4, "double-click", 5, Last},
    {4, "Insert", 5, Last},
    {4, "Shift+Insert", 4, Element},
    {5, "double-click", 6, Item},
    {5, "Insert", 6, Item},
    {5, "Shift+Insert", 5, Last},
    {6, "double-click"},
    {6, "Insert", 7, Item},
    {6, "Shift+Insert", 6, Item},
    {7, "double-click", 8, Last},
    {7, "Insert", 8, Last},
    {7, "Shift+Insert", 7, Item},
    {8, "double-click"}, // a union offers its tags on its tag row only
    {8, "Insert"},
    {8, "Shift+Insert", 8, Last},
    {9, "double-click", 10, Tags},
    {9, "Insert", 10, Tags},
    {9, "Shift+Insert", 10, Tags},
    {10, "double-click"},
    {10, "Insert"},
    {10, "Shift+Insert"},
    {11, "double-click", 12, Last},
    {11, "Insert", 12, Last},
    {11, "Shift+Insert"},
    {12, "double-click", 14, Radius}, // never before the tag
    {12, "Insert", 14, Radius},
    {12, "Shift+Insert", 12, Last},
    {13, "double-click", 14, Subtypes},
    {13, "Insert", 14, Subtypes},
    {13, "Shift+Insert", 14, Subtypes},
    {14, "double-click", 15, Last},
    {14, "Insert", 15, Last},
    {14, "Shift+Insert", 14, Radius},
    {15, "double-click", 16, Name},
    {15, "Insert", 16, Name},
    {15, "Shift+Insert", 15, Last},
    {16, "double-click"},
    {16, "Insert", 17, Name},
    {16, "Shift+Insert", 16, Name},
    {17, "double-click", 18, Last},
    {17, "Insert", 18, Last},
    {17, "Shift+Insert", 17, Name},
    {18, "double-click", 18, Last}, // behind the outermost nothing can stand
    {18, "Insert", 18, Last},
    {18, "Shift+Insert", 18, Last},
};

const TCase Deletes[] = {
    {0, "Ctrl+Delete", 0, "null", 19, "null"},
    {1, "Ctrl+Delete", 1, "  ~text: <value>", 1,
     R"({"list":[1],"map":{"k":1},"pick":{"kind":"number","value":5},"shape":{"type":"circle"},"one":{"age":3}})"},
    {2, "Ctrl+Delete", 2, "  ~list: list", 3,
     R"({"text":"x","map":{"k":1},"pick":{"kind":"number","value":5},"shape":{"type":"circle"},"one":{"age":3}})"},
    {3, "Ctrl+Delete"},
    {3, "Delete Element", 3, nullptr, 1,
     R"({"text":"x","list":[],"map":{"k":1},"pick":{"kind":"number","value":5},"shape":{"type":"circle"},"one":{"age":3}})"},
    {4, "Ctrl+Delete"},
    {5, "Ctrl+Delete", 5, "  ~map: map", 3,
     R"({"text":"x","list":[1],"pick":{"kind":"number","value":5},"shape":{"type":"circle"},"one":{"age":3}})"},
    {6, "Ctrl+Delete", 6, nullptr, 1,
     R"({"text":"x","list":[1],"map":{},"pick":{"kind":"number","value":5},"shape":{"type":"circle"},"one":{"age":3}})"},
    {7, "Ctrl+Delete"},
    {8, "Ctrl+Delete", 8, "  ~pick: union", 4,
     R"({"text":"x","list":[1],"map":{"k":1},"shape":{"type":"circle"},"one":{"age":3}})"},
    {9, "Ctrl+Delete"},
    {10, "Ctrl+Delete"}, // another tag is picked instead
    {11, "Ctrl+Delete"},
    {12, "Ctrl+Delete", 12, "  ~shape: object", 3,
     R"({"text":"x","list":[1],"map":{"k":1},"pick":{"kind":"number","value":5},"one":{"age":3}})"},
    {13, "Ctrl+Delete"},
    {14, "Ctrl+Delete"},
    {15, "Ctrl+Delete", 15, "  ~one: object", 3,
     R"({"text":"x","list":[1],"map":{"k":1},"pick":{"kind":"number","value":5},"shape":{"type":"circle"}})"},
    {16, "Ctrl+Delete", 16, "    ~age: <value>", 1,
     R"({"text":"x","list":[1],"map":{"k":1},"pick":{"kind":"number","value":5},"shape":{"type":"circle"},"one":{}})"},
    {17, "Ctrl+Delete"},
    {18, "Ctrl+Delete"},
};

/// Does the action on a row of Base as it stands on screen.
void Act(TValueView& AView, int ARow, const QString& AAction) {
    const QString line = Base[ARow].trimmed();
    int number = 0;
    for (int i = 0; i <= ARow; ++i)
        number += Base[i].trimmed() == line;
    if (AAction == QLatin1String("double-click"))
        return AView.DoubleClick(line, number);
    AView.Click(line, number);
    if (!AAction.contains(QLatin1Char(' ')))
        return AView.Press(AAction);
    AView.Press("Shift+F10");
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(menu);
    for (int i = 0; i < 30 && !(menu->activeAction() && menu->activeAction()->text() == AAction); ++i)
        QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Return);
}

class RowActions : public testing::TestWithParam<TCase> {
protected:
    TValueTypes Types;
    const TZOTypeInfo* All = Types.Library.NewObject(QStringLiteral("All"))
                                 .Property(QStringLiteral("text"), Types.String)
                                 .Property(QStringLiteral("list"), Types.Numbers)
                                 .Property(QStringLiteral("map"), Types.Scores)
                                 .Property(QStringLiteral("pick"), Types.Choice)
                                 .Property(QStringLiteral("shape"), Types.Shape)
                                 .Property(QStringLiteral("one"), Types.Person)
                                 .Property(QStringLiteral("last"), Types.Integer)
                                 .Type();
};

std::string NameOf(const testing::TestParamInfo<TCase>& AInfo) {
    QString name = QStringLiteral("Row%1_%2").arg(AInfo.param.Row).arg(QLatin1String(AInfo.param.Action));
    for (const char c : {' ', '+', '-'})
        name.remove(QLatin1Char(c));
    return name.toStdString();
}

} // namespace

TEST_P(RowActions, ChangeTheseRowsOnly) {
    TValueView view(All, Json);
    view.Expect(Base.join('\n'));
    Act(view, GetParam().Row, GetParam().Action);
    QStringList rows = Base;
    if (GetParam().Place >= 0) {
        rows.erase(rows.begin() + GetParam().Place, rows.begin() + GetParam().Place + GetParam().Taken);
        if (GetParam().Text)
            rows.insert(GetParam().Place, GetParam().Text);
    }
    view.Expect(rows.join('\n'));
    view.ExpectJson(GetParam().JsonAfter ? GetParam().JsonAfter : Json);
    EXPECT_EQ(view.Source.CanUndo(), GetParam().JsonAfter != nullptr);
    // Taken back, or out of insert mode, it is as it was.
    view.Press(GetParam().JsonAfter ? "Ctrl+Z" : "Escape");
    view.Press("F5");
    view.Expect(Base.join('\n'));
    view.ExpectJson(Json);
}

INSTANTIATE_TEST_SUITE_P(Inserts, RowActions, testing::ValuesIn(Inserts), NameOf);
INSTANTIATE_TEST_SUITE_P(Deletes, RowActions, testing::ValuesIn(Deletes), NameOf);
