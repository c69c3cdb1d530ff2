// Thousands of edits by key and mouse, chosen at random, against an independent account of the value.
#include "tests/jsoneditor/values/ScreenModel.h"
#include "tests/jsoneditor/values/ValueTypes.h"
#include "tests/jsoneditor/values/ValueView.h"

#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMenu>
#include <QRandomGenerator>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <vector>

namespace {

/// A type of random properties, with containers of every kind, in themselves again. What the account knows
/// about a row's type it sees from the key: "s" is a text, "map" a map, "shape" an object of two subtypes.
const ZOObject::TTypeInfo* MakeNode(TValueTypes& ATypes, QRandomGenerator& ARandom) {
    TZOTypeLibrary& library = ATypes.Library;
    TZOObjectBuilder node = library.NewObject(QStringLiteral("Node"));
    const auto* type = node.Type();
    const auto* choice = library.NewUnion(QStringLiteral("Pick"), QStringLiteral("kind"), ufTagged)
                             .Tag(QStringLiteral("number"), ATypes.Integer)
                             .Tag(QStringLiteral("list"), ATypes.Numbers)
                             .Tag(QStringLiteral("node"), type)
                             .Tag(QStringLiteral("none"), nullptr)
                             .Type();
    const std::pair<const char*, const TZOTypeInfo*> offered[] = {
        {"n", ATypes.Integer},
        {"s", ATypes.String},
        {"list", ATypes.Numbers},
        {"lists", library.NewList(ATypes.Numbers)},
        {"nodes", library.NewList(type)},
        {"picks", library.NewList(choice)},
        {"shapes", library.NewList(ATypes.Shape)},
        {"map", ATypes.Scores},
        {"mapOfLists", library.NewMap(ATypes.Numbers)},
        {"mapOfNodes", library.NewMap(type)},
        {"pick", choice},
        {"shape", ATypes.Shape},
        {"node", type},
    };
    const int count = 4 + ARandom.bounded(6);
    for (int i = 0; i < count; ++i) {
        const auto& [name, property] = offered[ARandom.bounded(static_cast<int>(std::size(offered)))];
        node.Property(QLatin1String(name) + QString::number(i), property);
    }
    return type;
}

QByteArray Canonical(const QJsonValue& AValue) {
    return QJsonDocument(QJsonArray{AValue}).toJson(QJsonDocument::Compact);
}

class TRandomUser {
public:
    explicit TRandomUser(quint32 ASeed) : FRandom(ASeed) {
        // Painting what nobody looks at would take most of the time.
        FFresh.Window.setUpdatesEnabled(false);
        FView.View.resize(700, 2500);
        FView.Window.resize(700, 2500);
        FView.Window.activateWindow();
        FView.View.setFocus();
        Store();
    }

    /// Does one thing, which may be to take one back.
    void Act() {
        FModel.Read(FView.Lines());
        const int row = FRandom.bounded(static_cast<int>(FModel.Rows().size()));
        Done = FModel.Rows()[static_cast<size_t>(row)].Line;
        if (FModel.Rows().size() > MaxRows)
            Press(0, "Ctrl+Delete");
        else if (const int dice = FRandom.bounded(100); dice < 8)
            Step(dice < 5);
        else
            ActOn(row);
        if (!FView.Shown.isEmpty()) {
            FView.Press("Escape");
            FView.Shown.clear();
        }
        FView.Press("F5");
        Store();
    }

    /// One step back or forward in the history; the account goes to the value before or after, unless it was
    /// a step that only concerned rows.
    void Step(bool ABack) {
        Done = ABack ? "Ctrl+Z" : "Ctrl+Y";
        FView.Press("Escape " + Done);
        if (FView.Json() == FStates[FState].Json)
            return;
        FState += ABack ? -1 : 1;
        ASSERT_LT(FState, FStates.size());
        FModel.Root = FStates[FState].Root;
        EXPECT_EQ(FView.Json().toStdString(), FStates[FState].Json.toStdString())
            << "after " + Done.toStdString();
    }

    void UndoAll() {
        FView.Press("Escape Escape");
        while (FView.Source.CanUndo() && !testing::Test::HasFailure())
            Step(true);
        EXPECT_EQ(FState, 0u);
        EXPECT_EQ(FView.Json().toStdString(), "null");
    }

    void RedoAll() {
        while (FView.Source.CanRedo() && !testing::Test::HasFailure())
            Step(false);
        EXPECT_EQ(FState, FStates.size() - 1);
        EXPECT_EQ(FView.Json().toStdString(), FStates.back().Json.toStdString());
    }

    QByteArray Expected() const { return Canonical(FModel.Root.ToJson()); }
    QByteArray Actual() const {
        return Canonical(QJsonDocument::fromJson('[' + FView.Json() + ']').array().at(0));
    }

    /// The rows are those of a new view of the value, in an order of their own, as they may have been moved.
    void ExpectFreshRows() {
        FFresh.View.SetDataSource(nullptr);
        FFresh.View.SetDataSource(&FFresh.Source);
        QStringList fresh = StoredLines(FFresh.Lines());
        QStringList rows = StoredLines(FView.Lines());
        // Open on nothing, the outermost container shows its brackets; a tag that was picked hides the old.
        const bool isOpenOnNothing = fresh == QStringList("null");
        const auto isPicked = [](const QString& ALine) { return ALine.trimmed().startsWith("~kind:"); };
        const QStringList all = FView.Lines();
        if (isOpenOnNothing || std::any_of(all.begin(), all.end(), isPicked))
            return;
        EXPECT_EQ(InOrder(rows), InOrder(fresh)) << FView.Rows().toStdString();
    }

    QString Done;

private:
    static constexpr size_t MaxRows = 70;
    struct TState {
        QByteArray Json;
        TNode Root;
    };

    /// The rows with those sorted that can be moved by hand: all that stand side by side, but for elements.
    static std::string InOrder(const QStringList& ALines) {
        return Blocks(ALines, true).join('\n').toStdString();
    }

    static QStringList Blocks(const QStringList& ALines, bool ASorted) {
        const auto level = [&](int AIndex) {
            return AIndex < ALines.size() ? TScreenRow(ALines[AIndex]).Level : -1;
        };
        QStringList blocks;
        for (int i = 0; i < ALines.size();) {
            int end = i + 1;
            while (level(end) > level(i))
                ++end;
            const bool isList = TScreenRow(ALines[i]).Text == QLatin1String("[");
            QStringList block = Blocks(ALines.mid(i + 1, end - i - 1), !isList);
            block.prepend(ALines[i]);
            if (TScreenRow(ALines[i]).IsOpener() && level(end) == level(i))
                block.append(ALines[end++]);
            blocks.append(block.join('\n'));
            i = end;
        }
        if (ASorted)
            blocks.sort();
        return blocks;
    }

    /// Without what insert mode offers.
    static QStringList StoredLines(const QStringList& ALines) {
        QStringList stored;
        std::copy_if(ALines.begin(), ALines.end(), std::back_inserter(stored),
                     [](const QString& ALine) { return !ALine.trimmed().startsWith('~'); });
        return stored;
    }

    /// Notes the value if it is another than the last; what could have been made again is forgotten then.
    void Store() {
        const QByteArray json = FView.Json();
        // A moved row is no other value, but nothing can be made again after it.
        if (!FView.Source.CanRedo() && !FStates.empty())
            FStates.resize(FState + 1);
        if (!FStates.empty() && json == FStates[FState].Json)
            return;
        if (!FStates.empty())
            FStates.resize(++FState);
        FStates.push_back({json, FModel.Root});
    }

    void ActOn(int ARow) {
        const TScreenRow& row = FModel.Rows()[static_cast<size_t>(ARow)];
        const int dice = FRandom.bounded(100);
        if (FModel.IsElement(ARow) && FRandom.bounded(4) == 0)
            ChooseFromMenu(ARow);
        else if (row.IsChoice() && dice < 80)
            Choose(ARow, dice < 40);
        else if ((row.Editable || row.KeyEditable) && dice < 70)
            Type(ARow);
        else if (dice < 45 || (!row.IsOpener() && dice < 60))
            Open(ARow, dice % 2 == 0);
        else if (dice < 60)
            Press(ARow, dice % 2 ? "Shift+Insert" : "Alt+Up");
        else if (dice < 70)
            Press(ARow, "Alt+Down");
        else if (dice < 75)
            Press(ARow, "F5");
        else if (dice < 78)
            Press(ARow, "Escape");
        else if (dice < 90 && !row.IsOpener())
            Press(ARow, "Ctrl+Delete");
        else if (dice < 92 && ARow > 0)
            Press(ARow, "Ctrl+Delete");
    }

    void Type(int ARow) {
        const TScreenRow row = FModel.Rows()[static_cast<size_t>(ARow)];
        const bool bad = FRandom.bounded(20) == 0;
        const QString text = row.KeyEditable
                                 ? QStringLiteral("k%1").arg(FRandom.bounded(6))
                                 : (bad ? QStringLiteral("bad") : QString::number(FRandom.bounded(1000)));
        Done += " <- " + text;
        if (!row.KeyEditable)
            FModel.Type(ARow, text);
        FView.Enter(row.Line, text, NumberOf(ARow));
    }

    /// A double-click, or the Insert key, which only differ on scalars and list elements.
    void Open(int ARow, bool AByKey) {
        const TScreenRow row = FModel.Rows()[static_cast<size_t>(ARow)];
        const bool takesKeys = row.HasKey || ARow == 0 || row.IsCloser();
        const bool isObject = row.IsHint("object") || (ARow == 0 && row.Text == "null");
        if (isObject && !IsShape(ARow) && (!AByKey || takesKeys)) {
            if (TNode* node = FModel.Store(ARow)) {
                *node = TNode();
                node->Kind = TNode::Object;
            }
        }
        Done += AByKey ? " Insert" : " double-click";
        FView.Click(row.Line, NumberOf(ARow));
        if (AByKey)
            FView.Press("Insert");
        else
            FView.DoubleClick(row.Line, NumberOf(ARow));
    }

    /// List elements take no keys; their commands are in the context menu.
    void ChooseFromMenu(int ARow) {
        const TScreenRow row = FModel.Rows()[static_cast<size_t>(ARow)];
        const int dice = FRandom.bounded(3);
        const QString command = dice == 0   ? QStringLiteral("Delete Element")
                                : dice == 1 ? QStringLiteral("Insert Before")
                                            : QStringLiteral("Insert After");
        Done += QLatin1Char(' ') + command;
        if (dice == 0)
            FModel.DeleteElement(ARow);
        else if (dice == 2 && row.IsHint("object") && !IsShape(ARow))
            FModel.Store(ARow)->Kind = TNode::Object;
        FView.Click(row.Line, NumberOf(ARow));
        FView.Press("Shift+F10");
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_TRUE(menu);
        for (QAction* action : menu->actions()) {
            if (action->text() == command)
                menu->setActiveAction(action);
        }
        QTest::keyClick(menu, Qt::Key_Return);
        // Without a window manager the menu may take the window's activation along.
        FView.View.window()->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(FView.View.window()));
        FView.View.setFocus();
    }

    void Choose(int ARow, bool AByKey) {
        const TScreenRow row = FModel.Rows()[static_cast<size_t>(ARow)];
        FModel.Choose(ARow);
        Done += " chosen";
        if (AByKey) {
            FView.Click(row.Line, NumberOf(ARow));
            FView.Press("Return");
        } else {
            FView.DoubleClick(row.Line, NumberOf(ARow));
        }
    }

    void Press(int ARow, const char* AKeys) {
        const TScreenRow row = FModel.Rows()[static_cast<size_t>(ARow)];
        if (qstrcmp(AKeys, "Ctrl+Delete") == 0)
            FModel.Delete(ARow);
        Done += QLatin1Char(' ') + QLatin1String(AKeys);
        FView.Click(row.Line, NumberOf(ARow));
        FView.Press(AKeys);
    }

    bool IsShape(int ARow) const {
        const TScreenRow& row = FModel.Rows()[static_cast<size_t>(ARow)];
        const int parent = FModel.ParentOf(ARow);
        const bool isShape = row.Key.startsWith("shape") && !row.Key.startsWith("shapes");
        return isShape || (!row.HasKey && parent >= 0 &&
                           FModel.Rows()[static_cast<size_t>(parent)].Key.startsWith("shapes"));
    }

    int NumberOf(int ARow) const {
        int number = 0;
        for (int i = 0; i <= ARow; ++i)
            number +=
                FModel.Rows()[static_cast<size_t>(i)].Line == FModel.Rows()[static_cast<size_t>(ARow)].Line;
        return number;
    }

    QRandomGenerator FRandom;
    TValueTypes FTypes;
    TZOValueHolder FHolder{MakeNode(FTypes, FRandom), true};
    TValueView FFresh{&FHolder};
    TValueView FView{&FHolder};
    TScreenModel FModel;
    std::vector<TState> FStates;
    size_t FState = 0;
};

#ifdef __SANITIZE_ADDRESS__
constexpr int Actions = 100;
#else
constexpr int Actions = 1000;
#endif

class RandomEdits : public testing::TestWithParam<quint32> {};

} // namespace

TEST_P(RandomEdits, LeaveTheValueThatAnIndependentAccountExpectsAndCanAllBeTakenBack) {
    TRandomUser user(GetParam());
    QStringList history;
    for (int i = 0; i < Actions && !HasFailure(); ++i) {
        user.Act();
        history.append(user.Done);
        const auto last = [&] { return history.mid(qMax(0, i - 8)).join(QLatin1Char('\n')).toStdString(); };
        ASSERT_EQ(user.Actual().toStdString(), user.Expected().toStdString()) << "after\n" << last();
        user.ExpectFreshRows();
        ASSERT_FALSE(HasFailure()) << "after\n" << last();
    }
    user.UndoAll();
    user.ExpectFreshRows();
    user.RedoAll();
    user.ExpectFreshRows();
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomEdits, testing::Range(1u, 51u));
