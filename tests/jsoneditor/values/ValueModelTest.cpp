// Thousands of edits by key and mouse, chosen at random, against an independent account of the value.
#include "tests/jsoneditor/values/ScreenModel.h"
#include "tests/jsoneditor/values/ValueTypes.h"
#include "tests/jsoneditor/values/ValueView.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>

#include <gtest/gtest.h>

namespace {

/// A type with every kind of container, in itself again.
const ZOObject::TTypeInfo* MakeNode(TValueTypes& ATypes) {
    TZOTypeLibrary& library = ATypes.Library;
    TZOObjectBuilder node = library.NewObject(QStringLiteral("Node"));
    const auto* type = node.Type();
    const auto* choice = library.NewUnion(QStringLiteral("Pick"), QStringLiteral("kind"), ufTagged)
                             .Tag(QStringLiteral("number"), ATypes.Integer)
                             .Tag(QStringLiteral("node"), type)
                             .Tag(QStringLiteral("none"), nullptr)
                             .Type();
    node.Property(QStringLiteral("n"), ATypes.Integer)
        .Property(QStringLiteral("s"), ATypes.String)
        .Property(QStringLiteral("list"), ATypes.Numbers)
        .Property(QStringLiteral("nodes"), library.NewList(type))
        .Property(QStringLiteral("shapes"), library.NewList(ATypes.Shape))
        .Property(QStringLiteral("map"), ATypes.Scores)
        .Property(QStringLiteral("mapOfLists"), library.NewMap(ATypes.Numbers))
        .Property(QStringLiteral("pick"), choice)
        .Property(QStringLiteral("shape"), ATypes.Shape);
    return type;
}

QByteArray Canonical(const QJsonValue& AValue) {
    return QJsonDocument(QJsonArray{AValue}).toJson(QJsonDocument::Compact);
}

class TRandomUser {
public:
    explicit TRandomUser(quint32 ASeed) : FRandom(ASeed) {}

    void Act() {
        FModel.Read(FView.Lines());
        const int row = FRandom.bounded(static_cast<int>(FModel.Rows().size()));
        Done = FModel.Rows()[static_cast<size_t>(row)].Line;
        if (FModel.Rows().size() > 110)
            Press(0, "Ctrl+Delete");
        else
            ActOn(row);
        if (!FView.Shown.isEmpty()) {
            FView.Press("Escape F5");
            FView.Shown.clear();
        }
    }

    QByteArray Expected() const { return Canonical(FModel.Root.ToJson()); }
    QByteArray Actual() const {
        return Canonical(QJsonDocument::fromJson('[' + FView.Json() + ']').array().at(0));
    }
    /// The rows in an order of their own: they may have been moved.
    static QStringList Sorted(const TValueView& AView) {
        QStringList lines = AView.Lines();
        lines.sort();
        return lines;
    }
    void ExpectFreshRows() {
        FView.Press("Escape Escape F5");
        TValueView fresh(&FView.Holder);
        EXPECT_EQ(Sorted(FView), Sorted(fresh)) << FView.Rows().toStdString();
        FView.Window.activateWindow();
        FView.View.setFocus();
    }

    QString Done;

private:
    void ActOn(int ARow) {
        const TScreenRow& row = FModel.Rows()[static_cast<size_t>(ARow)];
        const int dice = FRandom.bounded(100);
        if (row.IsChoice() && dice < 80)
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
        return row.Key == "shape" ||
               (parent >= 0 && FModel.Rows()[static_cast<size_t>(parent)].Key == "shapes");
    }

    int NumberOf(int ARow) const {
        int number = 0;
        for (int i = 0; i <= ARow; ++i)
            number +=
                FModel.Rows()[static_cast<size_t>(i)].Line == FModel.Rows()[static_cast<size_t>(ARow)].Line;
        return number;
    }

    TValueTypes FTypes;
    TValueView FView{MakeNode(FTypes)};
    TScreenModel FModel;
    QRandomGenerator FRandom;
};

class RandomEdits : public testing::TestWithParam<quint32> {};

} // namespace

TEST_P(RandomEdits, LeaveTheValueThatAnIndependentAccountExpects) {
    TRandomUser user(GetParam());
    QStringList history;
    for (int i = 0; i < 1000 && !HasFailure(); ++i) {
        user.Act();
        history.append(user.Done);
        ASSERT_EQ(user.Actual().toStdString(), user.Expected().toStdString())
            << "after\n"
            << history.mid(qMax(0, i - 8)).join(QLatin1Char('\n')).toStdString();
        if (i % 50 == 49)
            user.ExpectFreshRows();
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomEdits, testing::Values(1u, 2u, 3u, 4u, 5u));
