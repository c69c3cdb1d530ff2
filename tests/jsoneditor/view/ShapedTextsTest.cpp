#include "jsoneditor/view/ShapedTexts_p.h"

#include <gtest/gtest.h>

namespace {

QFont FontOf(int APixels) {
    QFont font;
    font.setPixelSize(APixels);
    return font;
}

class ShapedTexts : public testing::Test {
protected:
    void SetUp() override { Texts.UseFont(FontOf(12)); }

    TZOShapedTexts Texts;
};

} // namespace

TEST_F(ShapedTexts, ShapesATextOnce) {
    const auto name = Texts.Get(QStringLiteral("name"));
    EXPECT_EQ(Texts.Get(QStringLiteral("name")), name);
    EXPECT_NE(Texts.Get(QStringLiteral("Name")), name);
}

TEST_F(ShapedTexts, ForgetsWhatWasShapedInAnotherFont) {
    const int narrow = Texts.Get(QStringLiteral("name"))->Width();
    Texts.UseFont(FontOf(30));
    EXPECT_GT(Texts.Get(QStringLiteral("name"))->Width(), narrow);
    Texts.UseFont(FontOf(12));
    EXPECT_EQ(Texts.Get(QStringLiteral("name"))->Width(), narrow);
}

TEST_F(ShapedTexts, KeepsWhatIsAskedForAgainAndForgetsTheRest) {
    const std::weak_ptr<const TZOShapedText> once = Texts.Get(QStringLiteral("once"));
    const std::weak_ptr<const TZOShapedText> often = Texts.Get(QStringLiteral("often"));
    for (int i = 0; i < 5000; ++i) {
        Texts.Get(QString::number(i));
        if (i % 100 == 0)
            Texts.Get(QStringLiteral("often"));
    }
    EXPECT_TRUE(once.expired());
    EXPECT_FALSE(often.expired());
}

TEST_F(ShapedTexts, KeepsNoLongTexts) {
    const std::weak_ptr<const TZOShapedText> text = Texts.Get(QString(200, u'x'));
    EXPECT_TRUE(text.expired());
}
