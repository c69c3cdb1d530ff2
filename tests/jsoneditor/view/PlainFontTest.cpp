// Text that is painted without being shaped, against Qt's own painting of it.
#include "jsoneditor/view/PlainFont_p.h"
#include "jsoneditor/view/ShapedText_p.h"

#include <QFontDatabase>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace {

constexpr QPoint BaseLine(9, 40);

QFont FontOf(const QString& AFamily, int APixels) {
    QFont font(AFamily);
    font.setPixelSize(APixels);
    return font;
}

/// The first family in which texts are plain.
QString PlainFamily() {
    const QStringList families = QFontDatabase::families();
    for (const QString& family : families) {
        if (TZOPlainFont::Of(FontOf(family, 13)))
            return family;
    }
    return {};
}

/// Every character beside every other one.
QStringList AllPairs() {
    QStringList lines;
    for (char16_t first = u' '; first <= u'~'; ++first) {
        QString line;
        for (char16_t second = u' '; second <= u'~'; ++second)
            line += QStringLiteral("%1%2").arg(QChar(first), QChar(second));
        lines.append(line);
    }
    return lines;
}

template <class TDraw>
QImage Painted(qreal ARatio, TDraw ADraw) {
    QImage image(QSize(3000, 60) * ARatio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ARatio);
    image.fill(Qt::white);
    QPainter painter(&image);
    ADraw(painter);
    painter.end();
    return image;
}

class PlainFont : public testing::TestWithParam<double> {};

} // namespace

TEST_P(PlainFont, PaintsWhatDrawingTheTextPaintsInEveryFontItTakes) {
    const QStringList families = QFontDatabase::families();
    for (const QString& family : families) {
        for (int pixels : {11, 13}) {
            const QFont font = FontOf(family, pixels);
            const auto plain = TZOPlainFont::Of(font);
            if (!plain)
                continue;
            for (const QString& line : AllPairs()) {
                const QImage painted = Painted(GetParam(), [&](QPainter& painter) {
                    TZOPlainTexts texts;
                    texts.Add(*plain, line, Qt::darkBlue, BaseLine, 1 << 20);
                    texts.Draw(painter);
                });
                const QImage expected = Painted(GetParam(), [&](QPainter& painter) {
                    painter.setFont(font);
                    painter.setPen(Qt::darkBlue);
                    painter.drawText(BaseLine, line);
                });
                ASSERT_EQ(painted, expected) << family.toStdString() << pixels << line.toStdString();
            }
        }
    }
}

TEST(PlainFonts, MeasureAsShapingDoes) {
    const QStringList families = QFontDatabase::families();
    for (const QString& family : families) {
        for (int pixels = 8; pixels < 30; ++pixels) {
            const QFont font = FontOf(family, pixels);
            const auto plain = TZOPlainFont::Of(font);
            for (char16_t last = u' '; plain && last <= u'~'; ++last) {
                for (const QString& lead : {QString(), QStringLiteral("x"), QStringLiteral("W some ")}) {
                    const QString text = lead + QChar(last);
                    ASSERT_EQ(plain->Width(text), TZOShapedText(text, font).Width())
                        << family.toStdString() << pixels << text.toStdString();
                }
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(OnScreens, PlainFont, testing::Values(1.0, 1.5, 2.0));

TEST(PlainFonts, AreAmongTheInstalledOnes) { EXPECT_FALSE(PlainFamily().isEmpty()); }

TEST(PlainFonts, AreNotProportional) {
    for (const char* family : {"Liberation Sans", "DejaVu Sans", "sans-serif"})
        EXPECT_FALSE(TZOPlainFont::Of(FontOf(QLatin1String(family), 13))) << family;
}

TEST(PlainFonts, HaveNothingBesideTheirGlyphs) {
    const QFont plain = FontOf(PlainFamily(), 13);
    const std::vector<std::pair<const char*, std::function<void(QFont&)>>> changes = {
        {"underline", [](QFont& AFont) { AFont.setUnderline(true); }},
        {"overline", [](QFont& AFont) { AFont.setOverline(true); }},
        {"strike-out", [](QFont& AFont) { AFont.setStrikeOut(true); }},
        {"wide blanks", [](QFont& AFont) { AFont.setWordSpacing(3); }},
    };
    for (const auto& [name, change] : changes) {
        QFont font = plain;
        change(font);
        EXPECT_FALSE(TZOPlainFont::Of(font)) << name;
    }
}

TEST(PlainFonts, HoldPrintableAsciiAlone) {
    EXPECT_TRUE(TZOPlainFont::Holds(QString()));
    EXPECT_TRUE(TZOPlainFont::Holds(QStringLiteral(" Az09~")));
    for (const char16_t character :
         {u'\t', u'\n', u'\x1F', u'\x7F', u'\x80', u'\u00A0', u'\u00E9', u'\u05D0'})
        EXPECT_FALSE(TZOPlainFont::Holds(QStringLiteral("a") + QChar(character))) << int(character);
    EXPECT_FALSE(TZOPlainFont::Holds(QStringLiteral("a\U0001F600")));
}

TEST(PlainFonts, HaveInkWhereTheySay) {
    const QFont font = FontOf(PlainFamily(), 13);
    const auto plain = TZOPlainFont::Of(font);
    ASSERT_TRUE(plain);
    for (const QString& line : AllPairs()) {
        const QImage image = Painted(1, [&](QPainter& painter) {
            painter.setFont(font);
            painter.drawText(BaseLine, line);
        });
        const QRect above(0, 0, image.width(), BaseLine.y() - plain->InkAbove());
        const QRect below(0, BaseLine.y() + plain->InkBelow(), image.width(), 60);
        for (const QRect& clear : {above & image.rect(), below & image.rect()}) {
            QImage white(clear.size(), QImage::Format_RGB32);
            white.fill(Qt::white);
            ASSERT_EQ(image.copy(clear), white);
        }
    }
}

TEST(PlainTexts, LeaveOutWhatIsOutOfSight) {
    const auto plain = TZOPlainFont::Of(FontOf(PlainFamily(), 13));
    ASSERT_TRUE(plain);
    const auto painted = [&](qsizetype ALength) {
        return Painted(1,
                       [&](QPainter& painter) {
                           TZOPlainTexts texts;
                           texts.Add(*plain, QString(ALength, u'x'), Qt::black, BaseLine, 500);
                           texts.Draw(painter);
                       })
            .copy(0, 0, 500, 60);
    };
    EXPECT_EQ(painted(1000000), painted(100));
}
