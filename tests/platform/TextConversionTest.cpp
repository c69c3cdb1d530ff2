#include "platform/TextConversion.h"
#include "platform/Exceptions.h"

#include <QLocale>

#include <gtest/gtest.h>

#include <limits>

namespace {

QString MessageOf(const std::function<void()>& AAction) {
    try {
        AAction();
    } catch (const EConvertError& e) {
        return e.Message();
    }
    return QStringLiteral("no error");
}

} // namespace

TEST(TextConversion, ReadsWholeNumbersOf32BitsOnly) {
    EXPECT_EQ(StrToInt(QStringLiteral(" -5 ")), -5);
    EXPECT_EQ(StrToInt(QStringLiteral("2147483647")), std::numeric_limits<qint32>::max());
    for (const char* text : {"", "abc", "1.5", "3000000000", "1 2", "0x10"}) {
        EXPECT_EQ(MessageOf([&] { StrToInt(QString::fromLatin1(text)); }),
                  QStringLiteral("'%1' is not a valid integer value").arg(QString::fromLatin1(text)));
    }
}

TEST(TextConversion, PrintsTheShortestTextThatReadsBackTheSame) {
    for (double value : {0.1, 1e300, -2.5, 1.0 / 3.0, 5e-324, 123456789012345680.0})
        EXPECT_EQ(StrToFloat(FloatToStr(value)), value);
    EXPECT_EQ(FloatToStr(0.1), QStringLiteral("0.1"));
    for (const char* text : {"", "x", "inf", "nan", "1e999", "1,5,5", "1 000"}) {
        EXPECT_EQ(MessageOf([&] { StrToFloat(QString::fromLatin1(text)); }),
                  QStringLiteral("'%1' is not a valid floating point value").arg(QString::fromLatin1(text)));
    }
}

TEST(TextConversion, FollowsTheDecimalSeparatorOfTheUser) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(FloatToStr(2.5), QStringLiteral("2,5"));
    EXPECT_EQ(StrToFloat(QStringLiteral("2,5")), 2.5);
    EXPECT_EQ(StrToFloat(QStringLiteral("2.5")), 2.5);
    QLocale::setDefault(before);
}

TEST(TextConversion, ReadsTruthValuesByNameOrNumber) {
    EXPECT_TRUE(StrToBool(QStringLiteral("true")));
    EXPECT_TRUE(StrToBool(QStringLiteral("1")));
    EXPECT_FALSE(StrToBool(QStringLiteral("FALSE")));
    EXPECT_FALSE(StrToBool(QStringLiteral("0")));
    EXPECT_EQ(MessageOf([] { StrToBool(QStringLiteral("yes")); }),
              QStringLiteral("'yes' is not a valid Boolean value"));
    EXPECT_EQ(BoolToStr(true), QStringLiteral("True"));
    EXPECT_EQ(BoolToStr(false), QStringLiteral("False"));
}
