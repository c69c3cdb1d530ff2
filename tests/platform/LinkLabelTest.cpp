#include "platform/LinkLabel.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <QWidget>

#include <gtest/gtest.h>

namespace {

class LinkLabel : public testing::Test {
protected:
    void SetUp() override {
        for (TZOLinkLabel* label : {&First, &Second}) {
            label->setText(QStringLiteral("<b>Go</b>"));
            Layout.addWidget(label);
        }
        Window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&Window));
        Window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&Window));
    }

    QWidget Window;
    QVBoxLayout Layout{&Window};
    TZOLinkLabel First, Second;
    QSignalSpy Clicks{&First, &TZOLinkLabel::Clicked};
};

} // namespace

TEST_F(LinkLabel, IsPlainTextUnderAHand) {
    EXPECT_EQ(First.textFormat(), Qt::PlainText);
    EXPECT_EQ(First.cursor().shape(), Qt::PointingHandCursor);
}

TEST_F(LinkLabel, AnswersTheLeftButtonReleasedInside) {
    QTest::mouseClick(&First, Qt::LeftButton);
    EXPECT_EQ(Clicks.size(), 1);
    QTest::mouseClick(&First, Qt::RightButton);
    EXPECT_EQ(Clicks.size(), 1);
    QTest::mousePress(&First, Qt::LeftButton);
    QTest::mouseRelease(&First, Qt::LeftButton, Qt::NoModifier, QPoint(-5, -5));
    EXPECT_EQ(Clicks.size(), 1);
}

TEST_F(LinkLabel, AnswersSpaceAndEnter) {
    First.setFocus(Qt::TabFocusReason);
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter})
        QTest::keyClick(&First, key);
    EXPECT_EQ(Clicks.size(), 3);
    QTest::keyClick(&First, Qt::Key_A);
    QTest::keyClick(&First, Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(Clicks.size(), 3);
}

TEST_F(LinkLabel, IsReachedByTabAndShowsIt) {
    Second.setFocus(Qt::MouseFocusReason);
    const QImage without = First.grab().toImage();
    QTest::keyClick(&Window, Qt::Key_Tab);
    ASSERT_TRUE(First.hasFocus());
    EXPECT_NE(First.grab().toImage(), without);
    QTest::keyClick(&Window, Qt::Key_Tab);
    EXPECT_FALSE(First.hasFocus());
    EXPECT_EQ(First.grab().toImage(), without);
}

TEST_F(LinkLabel, IsAnOrdinaryLabelWhileItIsNoLink) {
    First.setFocus();
    First.SetLink(false);
    EXPECT_FALSE(First.hasFocus());
    EXPECT_EQ(First.focusPolicy(), Qt::NoFocus);
    EXPECT_EQ(First.cursor().shape(), Qt::ArrowCursor);
    QTest::mouseClick(&First, Qt::LeftButton);
    QTest::keyClick(&First, Qt::Key_Space);
    EXPECT_EQ(Clicks.size(), 0);
    First.SetLink(true);
    QTest::mouseClick(&First, Qt::LeftButton);
    EXPECT_EQ(Clicks.size(), 1);
}

TEST_F(LinkLabel, TellsAssistiveToolsWhatItIs) {
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&First);
    ASSERT_TRUE(accessible);
    EXPECT_EQ(accessible->role(), QAccessible::Link);
    EXPECT_EQ(accessible->text(QAccessible::Name), QStringLiteral("<b>Go</b>"));
    accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(Clicks.size(), 1);
    First.SetLink(false);
    EXPECT_EQ(accessible->role(), QAccessible::StaticText);
    EXPECT_FALSE(
        accessible->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
    accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(Clicks.size(), 1);
}

TEST_F(LinkLabel, EndsInAnEllipsisWhereItsTextDoesNotFit) {
    EXPECT_LT(First.minimumSizeHint().width(), First.sizeHint().width());
    TZOLinkLabel narrow;
    narrow.setText(QString(40, u'i'));
    narrow.resize(60, 20);
    const QImage elided = narrow.grab().toImage();
    narrow.setText(QString(50, u'i'));
    EXPECT_EQ(narrow.grab().toImage(), elided); // what differs is beyond the ellipsis
    narrow.resize(500, 20);
    EXPECT_NE(narrow.grab().toImage().copy(0, 0, 60, 20), elided);
}
