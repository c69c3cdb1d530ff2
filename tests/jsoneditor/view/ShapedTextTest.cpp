#include "jsoneditor/view/ShapedText_p.h"

#include <QFontMetrics>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <cmath>

namespace {

struct TCase {
    const char* Name;
    QString Text;
};

class ShapedText : public testing::TestWithParam<TCase> {
protected:
    template <class TDraw>
    static QImage Painted(TDraw ADraw) {
        QImage image(400, 60, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setFont(Font());
        painter.setPen(Qt::darkBlue);
        ADraw(painter);
        painter.end();
        return image;
    }
    static QFont Font() {
        QFont font;
        font.setPixelSize(15);
        return font;
    }
};

constexpr QPoint BaseLine(7, 40);

} // namespace

TEST_P(ShapedText, IsAsWideAsItsFontSays) {
    const TZOShapedText shaped(GetParam().Text, Font());
    EXPECT_EQ(shaped.Width(), QFontMetrics(Font()).horizontalAdvance(GetParam().Text));
}

TEST_P(ShapedText, PaintsWhatDrawingTheTextPaints) {
    const TZOShapedText shaped(GetParam().Text, Font());
    const QImage painted = Painted([&](QPainter& painter) { shaped.Draw(painter, BaseLine); });
    const QImage expected = Painted([&](QPainter& painter) { painter.drawText(BaseLine, GetParam().Text); });
    EXPECT_EQ(painted, expected);
}

TEST_P(ShapedText, PaintsTheSameTwice) {
    const TZOShapedText shaped(GetParam().Text, Font());
    const QImage first = Painted([&](QPainter& painter) { shaped.Draw(painter, BaseLine); });
    EXPECT_EQ(Painted([&](QPainter& painter) { shaped.Draw(painter, BaseLine); }), first);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ShapedText,
    testing::Values(TCase{"Empty", QString()}, TCase{"Plain", QStringLiteral("value_0001234")},
                    TCase{"Kerned", QStringLiteral("AVATAR To We.")}, TCase{"Blank", QStringLiteral(" ")},
                    TCase{"TrailingBlanks", QStringLiteral("name:   ")},
                    TCase{"LeadingBlanks", QStringLiteral("   name")},
                    TCase{"Combining", QStringLiteral("e\u0301a\u0308o\u0302")},
                    TCase{"RightToLeft", QStringLiteral("\u05E9\u05DC\u05D5\u05DD")},
                    TCase{"Mixed", QStringLiteral("abc \u05E9\u05DC\u05D5\u05DD def 12")},
                    TCase{"Wide", QStringLiteral("\u65E5\u672C\u8A9E text")},
                    TCase{"Emoji", QStringLiteral("ok \U0001F600 done")}),
    [](const auto& AInfo) { return AInfo.param.Name; });
