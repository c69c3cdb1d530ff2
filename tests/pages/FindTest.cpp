// Finding a text in request and response, by the keys and clicks of a user.
#include "tests/pages/ExecutePageFixture.h"

#include "pages/FindBar.h"

#include "jsoneditor/view/ViewRowLayout.h"

#include "platform/IdeTheming.h"

#include <QScrollArea>
#include <QScrollBar>
#include <QToolButton>

namespace {

class Find : public ExecutePageTest {
protected:
    /// An answer of the numbers from 1 to 2000, beside a text.
    void ShowAnswer() {
        Server.Answer = R"({"text": "Seventeen birds", "numbers": [)";
        for (int i = 1; i <= 2000; ++i)
            Server.Answer += (i > 1 ? ", " : "") + std::to_string(i);
        Server.Answer += "]}";
        ShowOperation(QStringLiteral("Echo"));
        Execute();
    }
    QLineEdit* Edit() const { return ExecutePageTest::Find<QLineEdit>("FindEdit"); }
    TZOFindBar* Bar() const { return ExecutePageTest::Find<TZOFindBar>("FindBar"); }
    QString Count() const {
        EXPECT_TRUE(QTest::qWaitFor([this] { return Bar()->Finder().IsDone(); }));
        return ExecutePageTest::Find<QLabel>("FindCountLabel")->text();
    }
    /// The line of the row that is marked as the current one.
    QString Current() const {
        const TZOViewRow* row = Bar()->Finder().CurrentRow();
        if (!row)
            return QString();
        EXPECT_TRUE(row->Layout()) << "it is not in sight";
        QString line;
        for (int i = 0; row->Layout() && i < row->Layout()->GetChunkCount(); ++i)
            line += row->Layout()->GetChunks(i)->Text();
        return line;
    }
    void Look(const QString& AText) {
        KeyInWindow(Qt::Key_F, Qt::ControlModifier);
        ASSERT_EQ(QApplication::focusWidget(), Edit());
        QTest::keyClicks(Edit(), AText);
        Count();
    }
};

TEST_F(Find, OpensByCtrlFFromAnywhere) {
    ShowAnswer();
    EXPECT_FALSE(Bar()->isVisible());
    GoTo(QStringLiteral("text"));
    for (QWidget* place : {QApplication::focusWidget(), static_cast<QWidget*>(RespView()),
                           static_cast<QWidget*>(ExecButton())}) {
        place->setFocus();
        KeyInWindow(Qt::Key_F, Qt::ControlModifier);
        EXPECT_TRUE(Bar()->isVisible());
        EXPECT_EQ(QApplication::focusWidget(), Edit());
        KeyInWindow(Qt::Key_Escape);
        EXPECT_FALSE(Bar()->isVisible());
    }
}

TEST_F(Find, FindsKeysAndValuesInAnyCase) {
    ShowAnswer();
    RespView()->setFocus();
    Look(QStringLiteral("SEVENTEEN"));
    EXPECT_EQ(Current(), QStringLiteral("text: Seventeen birds"));
    EXPECT_EQ(Count(), QStringLiteral("1 of 1"));
    Look(QStringLiteral("numb"));
    EXPECT_EQ(Current(), QStringLiteral("numbers: ["));
    Look(QStringLiteral("["));
    EXPECT_EQ(Count(), QStringLiteral("not found"));
    Look(QStringLiteral(": "));
    EXPECT_EQ(Count(), QStringLiteral("not found"));
}

TEST_F(Find, CountsAndGoesRound) {
    ShowAnswer();
    RespView()->setFocus();
    Look(QStringLiteral("199"));
    EXPECT_EQ(Count(), QStringLiteral("1 of 12")); // 199, 1199, 1990 to 1999
    EXPECT_EQ(Current(), QStringLiteral("199"));
    KeyInWindow(Qt::Key_Return);
    EXPECT_EQ(Current(), QStringLiteral("1199"));
    KeyInWindow(Qt::Key_F3);
    EXPECT_EQ(Current(), QStringLiteral("1990"));
    EXPECT_EQ(Count(), QStringLiteral("3 of 12"));
    for (int i = 0; i < 3; ++i)
        KeyInWindow(Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(Current(), QStringLiteral("1999"));
    EXPECT_EQ(Count(), QStringLiteral("12 of 12"));
    KeyInWindow(Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(Current(), QStringLiteral("1998"));
    KeyInWindow(Qt::Key_F3);
    KeyInWindow(Qt::Key_F3);
    EXPECT_EQ(Current(), QStringLiteral("199"));
}

TEST_F(Find, GoesOnInTheOtherEditor) {
    ShowAnswer();
    Fill(QStringLiteral("text"), QStringLiteral("birds of the request"));
    ReqView()->setFocus();
    Look(QStringLiteral("birds"));
    EXPECT_EQ(Bar()->Finder().CurrentView(), ReqView());
    EXPECT_EQ(Count(), QStringLiteral("1 of 2"));
    KeyInWindow(Qt::Key_F3);
    EXPECT_EQ(Bar()->Finder().CurrentView(), RespView());
    EXPECT_EQ(Count(), QStringLiteral("2 of 2"));
    KeyInWindow(Qt::Key_F3);
    EXPECT_EQ(Bar()->Finder().CurrentView(), ReqView());
    // From the response, its match comes first.
    KeyInWindow(Qt::Key_Escape);
    RespView()->setFocus();
    Look(QStringLiteral("birds"));
    EXPECT_EQ(Bar()->Finder().CurrentView(), RespView());
    EXPECT_EQ(Count(), QStringLiteral("2 of 2"));
}

TEST_F(Find, ScrollsThePageToTheRowAndMarksIt) {
    ShowAnswer();
    RespView()->setFocus();
    auto* bar = ExecutePageTest::Find<QScrollArea>("ScrollBox")->verticalScrollBar();
    const int before = bar->value();
    Look(QStringLiteral("1777"));
    EXPECT_GT(bar->value(), before + 10'000);
    TZOViewRow* row = Bar()->Finder().CurrentRow();
    ASSERT_TRUE(row && row->Layout());
    EXPECT_TRUE(RespView()->visibleRegion().contains(row->Layout()->Bounds().center()));
    for (const TZOTheme theme : {thLight, thDark}) {
        TZOIdeTheming::SetTheme(theme);
        Settle();
        const auto share = [this](TZOViewRow* ARow) { // of pixels in neither text nor ground colours
            const QImage image = RespView()->grab(ARow->Layout()->Bounds()).toImage();
            int count = 0;
            for (int x = 0; x < 200; ++x)
                count += image.pixelColor(x, image.height() / 2).hsvSaturation() > 100;
            return count;
        };
        EXPECT_GT(share(row), 10);
        EXPECT_EQ(share(row->Next()), 0);
    }
}

TEST_F(Find, LeavesTheFocusOnWhatWasFound) {
    ShowAnswer();
    RespView()->setFocus();
    Look(QStringLiteral("1234"));
    TZOViewRow* found = Bar()->Finder().CurrentRow();
    KeyInWindow(Qt::Key_Escape);
    EXPECT_EQ(RespView()->Selected(), found);
    EXPECT_TRUE(RespView()->Focused());
    // F3 takes the search up again where it was.
    KeyInWindow(Qt::Key_F3);
    EXPECT_TRUE(Bar()->isVisible());
    EXPECT_EQ(Current(), QStringLiteral("1234"));
}

TEST_F(Find, WithoutATextF3AsksForOne) {
    ShowAnswer();
    KeyInWindow(Qt::Key_F3);
    EXPECT_EQ(QApplication::focusWidget(), Edit());
    EXPECT_EQ(Count(), QString());
    KeyInWindow(Qt::Key_F3);
    EXPECT_EQ(Count(), QString());
}

TEST_F(Find, TheButtonsDoTheSame) {
    ShowAnswer();
    RespView()->setFocus();
    Look(QStringLiteral("birds"));
    EXPECT_EQ(Count(), QStringLiteral("1 of 1"));
    Edit()->selectAll();
    QTest::keyClicks(Edit(), QStringLiteral("200"));
    EXPECT_EQ(Count(), QStringLiteral("1 of 3")); // 200, 1200, 2000
    const auto buttons = Bar()->findChildren<QToolButton*>(QString(), Qt::FindDirectChildrenOnly);
    ASSERT_EQ(buttons.size(), 3);
    QTest::mouseClick(buttons[1], Qt::LeftButton);
    EXPECT_EQ(Count(), QStringLiteral("2 of 3"));
    QTest::mouseClick(buttons[0], Qt::LeftButton);
    EXPECT_EQ(Count(), QStringLiteral("1 of 3"));
    QTest::mouseClick(buttons[2], Qt::LeftButton);
    EXPECT_FALSE(Bar()->isVisible());
}

TEST_F(Find, ALongerTextIsLookedForFromThePlaceOfTheShorter) {
    ShowAnswer();
    RespView()->setFocus();
    Look(QStringLiteral("9"));
    KeyInWindow(Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(Current(), QStringLiteral("1999"));
    QTest::keyClicks(Edit(), QStringLiteral("9"));
    EXPECT_EQ(Count(), QStringLiteral("38 of 38"));
    EXPECT_EQ(Current(), QStringLiteral("1999"));
}

TEST_F(Find, FollowsAnAnswerThatIsReplaced) {
    ShowAnswer();
    RespView()->setFocus();
    Look(QStringLiteral("birds"));
    EXPECT_EQ(Count(), QStringLiteral("1 of 1"));
    Server.Answer = R"({"text": "fish", "numbers": []})";
    KeyInWindow(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(Count(), QStringLiteral("not found"));
    Server.Answer = R"({"text": "birds", "numbers": []})";
    KeyInWindow(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(Count(), QStringLiteral("1 of 1"));
    Shell->GetServices(0)->Component()->SetServerUrl(QStringLiteral("http://127.0.0.1:1"));
    KeyInWindow(Qt::Key_Return, Qt::ControlModifier);
    QTest::keyClicks(Edit(), QStringLiteral("x"));
    Edit()->selectAll();
    QTest::keyClicks(Edit(), QStringLiteral("connectionrefused"));
    EXPECT_EQ(Count(), QStringLiteral("1 of 1"));
}

TEST_F(Find, TheBarTakesPartInF6) {
    ShowAnswer();
    KeyInWindow(Qt::Key_F, Qt::ControlModifier);
    KeyInWindow(Qt::Key_F6);
    EXPECT_TRUE(ReqView()->Focused());
    KeyInWindow(Qt::Key_F6, Qt::ShiftModifier);
    EXPECT_EQ(QApplication::focusWidget(), Edit());
    KeyInWindow(Qt::Key_F6, Qt::ShiftModifier);
    EXPECT_TRUE(RespView()->Focused());
}

} // namespace
