// What assistive technology sees and hears of a view.
#include "jsoneditor/view/AccessibleView_p.h"
#include "tests/jsoneditor/view/TextView.h"

#include <QAccessible>
#include <QApplication>
#include <QTest>

#include <gtest/gtest.h>

namespace {

const QString Three = QStringLiteral("  [name] : [value]\n    [inner] = [1] (integer)\n  fixed\n");

QString Numbered(int ACount) {
    QString rows;
    for (int i = 0; i < ACount; ++i)
        rows += QStringLiteral("  [row%1] : [%1]\n").arg(i);
    return rows;
}

/// "name|value|description" of each child.
QStringList Children(QAccessibleInterface* AParent) {
    QStringList all;
    for (int i = 0; i < AParent->childCount(); ++i) {
        const QAccessibleInterface* child = AParent->child(i);
        all.append(QStringList{child->text(QAccessible::Name), child->text(QAccessible::Value),
                               child->text(QAccessible::Description)}
                       .join(QLatin1Char('|')));
    }
    return all;
}

QStringList& Heard() {
    static QStringList heard;
    return heard;
}

void Hear(QAccessibleEvent& AEvent) {
    QAccessibleInterface* about = AEvent.accessibleInterface();
    const QString name = about ? about->text(QAccessible::Name) : QString();
    switch (AEvent.type()) {
    case QAccessible::Selection:
        Heard().append(QStringLiteral("selected ") + name);
        break;
    case QAccessible::Focus:
        Heard().append(QStringLiteral("focus ") + name);
        break;
    case QAccessible::ValueChanged:
        Heard().append(QStringLiteral("value of ") + name + QStringLiteral(": ") +
                       static_cast<QAccessibleValueChangeEvent&>(AEvent).value().toString());
        break;
    case QAccessible::ObjectReorder:
        Heard().append(QStringLiteral("reordered"));
        break;
    default:
        break;
    }
}

/// Assistive technology is running and hears every event while this lives.
class TListener {
public:
    TListener() : FPrevious(SetAnnouncer([](QAccessibleEvent& AEvent) { Hear(AEvent); })) { Heard().clear(); }
    ~TListener() { SetAnnouncer(std::move(FPrevious)); }

private:
    TZOAnnouncer FPrevious;
};

} // namespace

TEST(Accessibility, ShowsAListOfRowsWithNameValueLevelAndPosition) {
    TTextView text(Three);
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&text.View);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->role(), QAccessible::List);
    EXPECT_EQ(Children(list), (QStringList{QStringLiteral("name|value|level 1, row 1 of 3"),
                                           QStringLiteral("inner|1(integer)|level 2, row 2 of 3"),
                                           QStringLiteral("fixed||level 1, row 3 of 3")}));
    for (int i = 0; i < 3; ++i) {
        QAccessibleInterface* row = list->child(i);
        EXPECT_EQ(row->role(), QAccessible::ListItem);
        EXPECT_EQ(row->parent(), list);
        EXPECT_EQ(list->indexOfChild(row), i);
        EXPECT_EQ(row->tableCellInterface()->rowIndex(), i);
        EXPECT_EQ(row->state().readOnly, i == 2);
        EXPECT_EQ(row->rect().topLeft(), text.View.mapToGlobal(QPoint(0, i * text.View.RowHeight())));
        EXPECT_EQ(list->childAt(row->rect().center().x(), row->rect().center().y()), row);
    }
    EXPECT_EQ(list->child(3), nullptr);
    EXPECT_EQ(list->child(-1), nullptr);
}

TEST(Accessibility, HasTheRowsInSightForChildrenOnly) {
    TTextView text(Numbered(10000));
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&text.View);
    const int shown = text.View.Layouts().GetCount();
    ASSERT_LT(shown, 20);
    // The scroll bar is the last.
    EXPECT_EQ(list->childCount(), shown + 1);
    EXPECT_EQ(list->child(shown)->role(), QAccessible::ScrollBar);
    text.View.ScrollTo(5000 * text.View.RowHeight());
    EXPECT_EQ(list->child(0)->text(QAccessible::Name), QStringLiteral("row5000"));
    EXPECT_EQ(list->child(0)->tableCellInterface()->rowIndex(), 5000);
}

TEST(Accessibility, AnswersForARowOutOfSightWithoutLayingItOut) {
    TTextView text(Numbered(10000));
    QAccessibleTableInterface* table = QAccessible::queryAccessibleInterface(&text.View)->tableInterface();
    EXPECT_EQ(table->rowCount(), 10000);
    EXPECT_EQ(table->columnCount(), 1);
    text.Source.Configured = 0;
    QAccessibleInterface* row = table->cellAt(9000, 0);
    EXPECT_EQ(text.Source.Configured, 0);
    EXPECT_EQ(row->text(QAccessible::Name), QStringLiteral("row9000"));
    EXPECT_EQ(row->text(QAccessible::Value), QStringLiteral("9000"));
    EXPECT_EQ(text.Row(9000)->Layout(), nullptr);
    EXPECT_TRUE(row->state().offscreen);
    EXPECT_EQ(table->cellAt(10000, 0), nullptr);
}

TEST(Accessibility, KnowsTheSelectionAndTheFocus) {
    TTextView text(Three);
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&text.View);
    text.View.SelectRow(text.Row(1), seHide);
    EXPECT_TRUE(list->child(1)->state().selected);
    EXPECT_FALSE(list->child(0)->state().selected);
    EXPECT_EQ(list->focusChild(), list->child(1));
    EXPECT_EQ(list->tableInterface()->selectedRows(), QList<int>{1});
    text.View.SelectRow(text.Row(1), seFirstChunk);
    EXPECT_EQ(list->focusChild()->object(), text.View.Editor());
    EXPECT_EQ(list->indexOfChild(list->focusChild()), 3);
    EXPECT_EQ(list->focusChild()->text(QAccessible::Name), QStringLiteral("inner"));
}

TEST(Accessibility, SelectsAndEditsARowOnRequest) {
    TTextView text(Three);
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&text.View);
    QAccessibleActionInterface* actions = list->child(0)->actionInterface();
    EXPECT_EQ(list->child(2)->actionInterface()->actionNames().size(), 1) << "nothing to edit there";
    actions->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_EQ(text.View.Selected(), text.Row(0));
    EXPECT_FALSE(text.View.EditorShown());
    actions->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(text.View.Editor()->IsShownAt(text.Row(0), 1));
    EXPECT_TRUE(list->tableInterface()->selectRow(2));
    EXPECT_EQ(text.View.Selected(), text.Row(2));
}

TEST(Accessibility, IsToldOfTheSelection) {
    TTextView text(QStringLiteral("> fixed\n  [a] : [1]\n  other\n"));
    const TListener listener;
    text.Press(QStringLiteral("Down"));
    EXPECT_TRUE(Heard().contains(QStringLiteral("selected a")));
    Heard().clear();
    text.Press(QStringLiteral("Down"));
    EXPECT_TRUE(Heard().contains(QStringLiteral("selected other")));
    EXPECT_TRUE(Heard().contains(QStringLiteral("focus other")));
}

TEST(Accessibility, IsToldOfAnEditThatWasApplied) {
    TTextView text(QStringLiteral("> [a] : [1]\n  [b] : [2]\n"));
    const TListener listener;
    text.View.SelectRow(text.Row(0), seLastChunk);
    text.Press(QStringLiteral("'25' Return"));
    EXPECT_TRUE(Heard().contains(QStringLiteral("value of a: 25"))) << Heard().join(u'\n').toStdString();
    Heard().clear();
    text.View.SelectRow(text.Row(0), seLastChunk);
    text.Press(QStringLiteral("'bad' Return"));
    EXPECT_EQ(Heard().filter(QStringLiteral("value of a")).size(), 0) << "refused";
}

TEST(Accessibility, IsToldWhenOtherRowsAreInSight) {
    TTextView text(Numbered(100));
    const TListener listener;
    text.View.ScrollTo(20 * text.View.RowHeight());
    EXPECT_EQ(Heard().filter(QStringLiteral("reordered")).size(), 1);
}

TEST(Accessibility, ForgetsRowsThatAreFreed) {
    TTextView text(Three);
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&text.View);
    const QAccessible::Id id = QAccessible::uniqueId(list->child(0));
    ASSERT_NE(QAccessible::accessibleInterface(id), nullptr);
    text.Source.Remove(text.Row(0));
    EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr);
    EXPECT_EQ(list->child(0)->text(QAccessible::Name), QStringLiteral("inner"));
}
