#include "platform/IdeTheming.h"
#include "platform/ExceptionDisplay.h"
#include "platform/Exceptions.h"
#include "platform/Fonts.h"

#include <QApplication>
#include <QFontInfo>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

namespace {

class IdeTheming : public testing::Test {
protected:
    void SetUp() override { TZOIdeTheming::SetTheme(thLight); }
    void TearDown() override { TZOIdeTheming::SetTheme(thSystem); }
};

double Luminance(const QColor& AColor) {
    const auto part = [](double AValue) {
        return AValue <= 0.03928 ? AValue / 12.92 : std::pow((AValue + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(AColor.redF()) + 0.7152 * part(AColor.greenF()) + 0.0722 * part(AColor.blueF());
}

double Contrast(const QColor& AOne, const QColor& AOther) {
    const double one = Luminance(AOne) + 0.05;
    const double other = Luminance(AOther) + 0.05;
    return std::max(one, other) / std::min(one, other);
}

} // namespace

TEST_F(IdeTheming, CallsBackOnceAtRegistrationAndAtEachSwitch) {
    QFrame component;
    QList<bool> calls;
    TZOIdeTheming* given = nullptr;
    TZOIdeTheming* theming = TZOIdeTheming::ThemeComponent(&component, [&](TZOIdeTheming* ATheming) {
        given = ATheming;
        calls.append(ATheming->IsDarkTheme());
    });
    EXPECT_EQ(calls, QList<bool>{false});
    EXPECT_EQ(given, theming);
    TZOIdeTheming::SetTheme(thDark);
    EXPECT_EQ(calls, (QList<bool>{false, true}));
    EXPECT_EQ(TZOIdeTheming::Theme(), thDark);
    TZOIdeTheming::SetTheme(thLight);
    EXPECT_EQ(calls, (QList<bool>{false, true, false}));
}

TEST_F(IdeTheming, DoesNotCallBackForAComponentsOwnPalette) {
    QFrame component;
    int calls = 0;
    TZOIdeTheming::ThemeComponent(&component, [&](TZOIdeTheming*) { ++calls; });
    SetBackColor(&component, Qt::blue);
    component.setFont(UiFont(QStringLiteral("Tahoma"), 13));
    EXPECT_EQ(calls, 1);
}

TEST_F(IdeTheming, StopsWhenTheComponentDies) {
    auto component = std::make_unique<QFrame>();
    int calls = 0;
    TZOIdeTheming::ThemeComponent(component.get(), [&](TZOIdeTheming*) { ++calls; });
    component.reset();
    TZOIdeTheming::SetTheme(thDark);
    EXPECT_EQ(calls, 1);
}

TEST_F(IdeTheming, ShowsWhatACallbackRaisesDuringASwitch) {
    QFrame component;
    bool raises = false;
    TZOIdeTheming::ThemeComponent(&component, [&](TZOIdeTheming*) {
        if (raises)
            throw EConvertError(QStringLiteral("no colour"));
    });
    QStringList shown;
    auto previous =
        SetExceptionDisplay([&](QWidget*, const std::exception& e) { shown.append(ExceptionMessage(e)); });
    raises = true;
    TZOIdeTheming::SetTheme(thDark);
    EXPECT_EQ(shown, QStringList{QStringLiteral("no colour")});
    SetExceptionDisplay(std::move(previous));
}

TEST_F(IdeTheming, LeavesNoHandleWhenTheFirstCallRaises) {
    QFrame component;
    EXPECT_THROW(TZOIdeTheming::ThemeComponent(
                     &component, [](TZOIdeTheming*) { throw EConvertError(QStringLiteral("no")); }),
                 EConvertError);
    EXPECT_EQ(component.children().size(), 0);
}

TEST_F(IdeTheming, ReadsColoursInBlueGreenRedOrder) {
    EXPECT_EQ(TZOIdeTheming::GetSystemColor(0x00CC6600), QColor(0, 102, 204));
    EXPECT_EQ(TZOIdeTheming::GetSystemColor(0x000000FF), QColor(255, 0, 0));
}

TEST_F(IdeTheming, BlendsByWeight) {
    EXPECT_EQ(TZOIdeTheming::Blend(QColor(0, 100, 200), QColor(100, 200, 0), 3), QColor(25, 125, 150));
    EXPECT_EQ(TZOIdeTheming::Blend(QColor(0, 0, 0), QColor(10, 20, 30), 0), QColor(10, 20, 30));
}

TEST_F(IdeTheming, IsReadableInBothThemes) {
    for (const TZOTheme theme : {thLight, thDark}) {
        TZOIdeTheming::SetTheme(theme);
        const auto color = [](TColor AColor) { return TZOIdeTheming::GetSystemColor(AColor); };
        EXPECT_GE(Contrast(color(clWindowText), color(clWindow)), 7);
        EXPECT_GE(Contrast(color(clWindowText), color(clBtnFace)), 7);
        EXPECT_GE(Contrast(color(clBtnText), color(clBtnFace)), 7);
        EXPECT_GE(Contrast(color(clHighlightText), color(clHighlight)), 4.5);
        EXPECT_GE(Contrast(color(clGrayText), color(clWindow)), 4.5);
        EXPECT_EQ(TZOIdeTheming::IsDarkTheme(), theme == thDark);
    }
}

TEST_F(IdeTheming, GoesBackToTheDesktopsPalette) {
    TZOIdeTheming::SetTheme(thSystem);
    const QColor before = TZOIdeTheming::GetSystemColor(clWindow);
    TZOIdeTheming::SetTheme(thDark);
    EXPECT_NE(TZOIdeTheming::GetSystemColor(clWindow), before);
    TZOIdeTheming::SetTheme(thSystem);
    EXPECT_EQ(TZOIdeTheming::GetSystemColor(clWindow), before);
    EXPECT_EQ(TZOIdeTheming::Theme(), thSystem);
}

TEST_F(IdeTheming, KeepsRolesThatWereNotSetFollowingTheTheme) {
    QFrame panel;
    QLineEdit edit(&panel);
    SetBackColor(&panel, Qt::lightGray);
    SetFontColor(&edit, Qt::red);
    SetBackColor(&panel, Qt::darkGray);
    EXPECT_EQ(edit.palette().color(QPalette::Window), QColor(Qt::darkGray));
    EXPECT_EQ(edit.palette().color(QPalette::Text), QColor(Qt::red));
    TZOIdeTheming::SetTheme(thDark);
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return edit.palette().color(QPalette::Base) == TZOIdeTheming::GetSystemColor(clWindow); }));
    EXPECT_EQ(edit.palette().color(QPalette::Text), QColor(Qt::red));
    EXPECT_EQ(panel.palette().color(QPalette::WindowText), TZOIdeTheming::GetSystemColor(clWindowText));
}

TEST_F(IdeTheming, FillsWhatABackColourWasSetOn) {
    QFrame panel;
    panel.resize(10, 10);
    SetBackColor(&panel, QColor(1, 2, 3));
    EXPECT_EQ(panel.grab().toImage().pixelColor(5, 5), QColor(1, 2, 3));
}

TEST(Fonts, AreAskedForByNameWithFamiliesToFallBackOn) {
    for (const char* name : {"Segoe UI", "Tahoma", "Courier New"}) {
        const QFont font = UiFont(QLatin1String(name), 13);
        EXPECT_EQ(font.pixelSize(), 13);
        EXPECT_EQ(font.families().value(0), QLatin1String(name));
        EXPECT_GT(font.families().size(), 1);
    }
    EXPECT_TRUE(QFontInfo(UiFont(QStringLiteral("Courier New"), 13)).fixedPitch());
    EXPECT_FALSE(QFontInfo(UiFont(QStringLiteral("Segoe UI"), 13)).fixedPitch());
}
