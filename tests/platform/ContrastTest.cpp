#include "platform/Contrast.h"

#include <gtest/gtest.h>

#include <tuple>

TEST(Contrast, IsAsTheGuidelinesHaveIt) {
    const std::tuple<QColor, QColor, double> cases[] = {
        {0x000000, 0xFFFFFF, 21.0}, {0xFFFFFF, 0x000000, 21.0}, {0x777777, 0x777777, 1.0},
        {0x777777, 0xFFFFFF, 4.48}, {0x0000FF, 0xFFFFFF, 8.59}, {0xFF0000, 0xFFFFFF, 4.00},
    };
    for (const auto& [a, b, ratio] : cases)
        EXPECT_NEAR(Contrast::Between(a, b), ratio, 0.005) << a.name().toStdString();
}

TEST(Contrast, AReadableColourStaysAsItIs) {
    EXPECT_EQ(Contrast::Readable(QColor(0x0066CC), Qt::white, Qt::black), QColor(0x0066CC));
}

TEST(Contrast, AnotherComesNearerToTheTextJustFarEnough) {
    const QColor ground(0xC6C7C8), text(0x1B1F24), link(0x0066CC);
    ASSERT_LT(Contrast::Between(link, ground), 4.5);
    const QColor readable = Contrast::Readable(link, ground, text);
    EXPECT_GE(Contrast::Between(readable, ground), 4.5);
    EXPECT_LT(Contrast::Between(readable, ground), 5.5);
    EXPECT_GT(readable.blue(), readable.red());
    const QColor bright = Contrast::Readable(QColor(0x7D8188), QColor(0x4E5053), Qt::white);
    EXPECT_GE(Contrast::Between(bright, QColor(0x4E5053)), 4.5);
}

TEST(Contrast, WhereNothingCanBeReadTheTextsOwnColourIsTaken) {
    EXPECT_EQ(Contrast::Readable(Qt::red, QColor(0x777777), QColor(0x666666)), QColor(0x666666));
}
