// What a value of many rows costs: counted in work done, not in time.
#include "tests/jsoneditor/values/ValueTypes.h"

#include "jsoneditor/values/ListElem_p.h"
#include "jsoneditor/values/MapItem_p.h"
#include "jsoneditor/values/ObjectProp_p.h"
#include "jsoneditor/view/RestView.h"
#include "runtime/json/JsonCodec.h"

#include <QTest>

#include <gtest/gtest.h>

namespace {

constexpr int Records = 20000;

/// A view in a scroll-sized window over a list of many small objects. Counts the texts asked for.
struct LargeValue : testing::Test {
    void SetUp() override {
        QByteArray json = "[";
        for (int i = 0; i < Records; ++i)
            json +=
                (i ? ",{\"name\":\"n\",\"age\":" : "{\"name\":\"n\",\"age\":") + QByteArray::number(i) + '}';
        TZOJson::Decode(json + ']', Holder);
        Source.OnGetValue = [this](TZOObjectDataSource*, const TZOTypeInfo*, bool, const void*, QString&) {
            ++Texts;
        };
        Window.resize(400, 300);
        View.setGeometry(Window.rect());
        Window.show();
        Window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&Window));
        View.setFocus();
        View.SetDataSource(&Source);
    }
    void TearDown() override { View.SetDataSource(nullptr); }

    TZOObjectDataSource::TRow* Row(int AIndex) const {
        return dynamic_cast<TZOObjectDataSource::TRow*>(View.RowAt(AIndex));
    }

    TValueTypes Types;
    TZOValueHolder Holder{Types.Library.NewList(Types.Person), true};
    QWidget Window;
    TZORestView View{&Window};
    TZOObjectDataSource Source{&Holder, false, false};
    int Texts = 0;
};

} // namespace

TEST_F(LargeValue, OnlyRowsInSightHaveTexts) {
    EXPECT_EQ(View.GetRowCount(), Records * 4 + 2);
    EXPECT_GT(Texts, 0);
    EXPECT_LT(Texts, 100);
}

TEST_F(LargeValue, AnEditAsksForTheRowItChangedOnly) {
    View.SelectRow(Row(3), seFirstChunk);
    Texts = 0;
    QTest::keyClicks(View.childAt(View.mapFromGlobal(QApplication::focusWidget()->mapToGlobal(QPoint(2, 2)))),
                     "7");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_LT(Texts, 10);
    EXPECT_TRUE(TZOJson::Encode(Holder).startsWith(R"([{"name":"n","age":7})"));
}

TEST_F(LargeValue, ALastElementKnowsItsPlaceAfterManyInsertsBeforeIt) {
    auto* last = dynamic_cast<TZOObjectDataSource::TListElem*>(Row(Records * 4 - 3));
    ASSERT_TRUE(last);
    EXPECT_EQ(last->Index(), Records - 1);
    auto* list = dynamic_cast<TZOObjectDataSource::TDataRow*>(Row(0));
    for (int i = 0; i < 50; ++i) {
        list->DoEditAction(TZOObjectDataSource::eaDblClick);
        dynamic_cast<TZOObjectDataSource::TDataRow*>(Row(1))->DoEditAction(TZOObjectDataSource::eaDblClick);
    }
    EXPECT_EQ(last->Index(), Records + 49);
    dynamic_cast<TZOObjectDataSource::TDataRow*>(Row(1))->DoEditAction(TZOObjectDataSource::eaDelete);
    EXPECT_EQ(last->Index(), Records + 48);
    Source.UpdateRows();
    EXPECT_EQ(last->Index(), Records + 48);
}

TEST_F(LargeValue, ScrollingReadsWhatComesIntoSight) {
    Texts = 0;
    QTest::keyClick(&View, Qt::Key_End, Qt::ControlModifier);
    EXPECT_GT(Texts, 0);
    EXPECT_LT(Texts, 100);
}

TEST(RowSize, IsSmall) {
    EXPECT_LE(sizeof(TZOObjectDataSource::TObjectProp), 88u);
    EXPECT_LE(sizeof(TZOObjectDataSource::TListElem), 88u);
    EXPECT_LE(sizeof(TZOObjectDataSource::TMapItem), 104u);
}
