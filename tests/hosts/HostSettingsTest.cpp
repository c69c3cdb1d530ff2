#include "hosts/standalone/HostSettings.h"

#include "tests/hosts/HostFixture.h"

namespace {

const QString Bridgework = QStringLiteral("SOFTWARE\\Orvane Labs\\ZO-Tools 2020\\Bridgework");

using HostSettingsTest = HostTest;

} // namespace

TEST_F(HostSettingsTest, StartWithTheThemeOfTheSystem) {
    EXPECT_EQ(HostSettings::Theme(), thSystem);
    EXPECT_EQ(HostSettings::Geometry(), QByteArray());
}

TEST_F(HostSettingsTest, KeepWhatIsStored) {
    for (const TZOTheme theme : {thLight, thDark, thSystem}) {
        HostSettings::SetTheme(theme);
        EXPECT_EQ(HostSettings::Theme(), theme);
    }
    HostSettings::SetGeometry(QByteArray("\0\1geo", 5));
    EXPECT_EQ(HostSettings::Geometry(), QByteArray("\0\1geo", 5));
    EXPECT_EQ(HostSettings::Theme(), thSystem);
}

TEST_F(HostSettingsTest, StandBesideTheExplorersOwn) {
    HostSettings::SetTheme(thDark);
    TRegistry registry;
    ASSERT_TRUE(registry.OpenKeyReadOnly(Bridgework));
    EXPECT_EQ(registry.GetKeyNames(), QStringList{QStringLiteral("Explorer")});
}

TEST_F(HostSettingsTest, TakeAStrangeValueForNone) {
    {
        TRegistry registry;
        registry.OpenKey(Bridgework + QStringLiteral("\\Explorer"), true);
        registry.WriteBinaryData(QStringLiteral("Theme"), "dark");
        registry.WriteString(QStringLiteral("Geometry"), QStringLiteral("wide"));
        registry.CloseKey();
    }
    EXPECT_EQ(HostSettings::Theme(), thSystem);
    EXPECT_EQ(HostSettings::Geometry(), QByteArray());
}
