#include "platform/WrappedText.h"

#include "platform/Fonts.h"

#include <QElapsedTimer>
#include <QFontMetrics>

#include <gtest/gtest.h>

namespace {

QFont Font() { return UiFont(QStringLiteral("Segoe UI"), 12); }

int WidthOf(const QString& AText) { return QFontMetrics(Font()).horizontalAdvance(AText) + 2; }

} // namespace

TEST(WrappedText, BreaksAtWords) {
    const int width = WidthOf(QStringLiteral("one two"));
    EXPECT_EQ(WrapText(QStringLiteral("one two six ten"), Font(), width, 5),
              (QStringList{QStringLiteral("one two"), QStringLiteral("six ten")}));
}

TEST(WrappedText, EndsInAnEllipsisWhereItNoLongerFits) {
    const int width = WidthOf(QStringLiteral("one two xx"));
    const QStringList lines = WrapText(QStringLiteral("one two six ten big red"), Font(), width, 2);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines[0], QStringLiteral("one two"));
    EXPECT_TRUE(lines[1].startsWith(QStringLiteral("six"))) << lines[1].toStdString();
    EXPECT_TRUE(lines[1].endsWith(QChar(0x2026)));
    EXPECT_LE(QFontMetrics(Font()).horizontalAdvance(lines[1]), width);
}

TEST(WrappedText, BreaksAWordThatIsLongerThanTheLine) {
    const QStringList lines = WrapText(QStringLiteral("x").repeated(40), Font(), 80, 100);
    ASSERT_GT(lines.size(), 1);
    EXPECT_EQ(lines.join(QString()), QStringLiteral("x").repeated(40));
}

TEST(WrappedText, KeepsLineEnds) {
    for (const char* end : {"\n", "\r\n", "\r"})
        EXPECT_EQ(WrapText(QStringLiteral("a%1b").arg(QLatin1String(end)), Font(), 200, 3),
                  (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    EXPECT_EQ(WrapText(QStringLiteral("a\nb"), Font(), 200, 1), QStringList{QStringLiteral("a\u2026")});
}

TEST(WrappedText, IsNothingWithoutTextOrRoom) {
    EXPECT_EQ(WrapText(QString(), Font(), 100, 2), QStringList());
    EXPECT_EQ(WrapText(QStringLiteral("a"), Font(), 0, 2), QStringList());
    EXPECT_EQ(WrapText(QStringLiteral("a"), Font(), -5, 2), QStringList());
    EXPECT_EQ(WrapText(QStringLiteral("a"), Font(), 100, 0), QStringList());
}

TEST(WrappedText, CostsWhatIsShown) {
    const QString text = QStringLiteral("word ").repeated(10'000'000);
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(WrapText(text, Font(), 200, 2).size(), 2);
    EXPECT_LT(timer.elapsed(), 1000);
}
