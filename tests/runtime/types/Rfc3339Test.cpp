#include "runtime/types/Rfc3339.h"

#include "platform/Exceptions.h"

#include <gtest/gtest.h>

namespace {

struct TCase {
    const char* Text;
    const char* InUtc;
};

} // namespace

class Rfc3339Accepts : public testing::TestWithParam<TCase> {};

TEST_P(Rfc3339Accepts, TheTextAndKeepsItsInstant) {
    EXPECT_EQ(TZORfc3339::ToStr(TZORfc3339::Parse(QString::fromLatin1(GetParam().Text))),
              QString::fromLatin1(GetParam().InUtc));
}

INSTANTIATE_TEST_SUITE_P(Texts, Rfc3339Accepts,
                         testing::Values(TCase{"2024-02-29T12:30:00Z", "2024-02-29T12:30:00Z"},
                                         TCase{"1985-04-12T23:20:50.52Z", "1985-04-12T23:20:50.52Z"},
                                         TCase{"1996-12-19T16:39:57-08:00", "1996-12-20T00:39:57Z"},
                                         TCase{"1990-12-31T23:59:60Z", "1991-01-01T00:00:00Z"},
                                         TCase{"1990-12-31T15:59:60-08:00", "1991-01-01T00:00:00Z"},
                                         TCase{"1990-12-31T23:59:60.9999999Z", "1991-01-01T00:00:01Z"},
                                         TCase{"1937-01-01T12:00:27.87+00:20", "1937-01-01T11:40:27.87Z"},
                                         TCase{"2024-01-01t00:00:00z", "2024-01-01T00:00:00Z"},
                                         TCase{"2024-01-01T00:00:00.123456Z", "2024-01-01T00:00:00.123456Z"},
                                         TCase{"2024-01-01T00:00:00.1234565Z", "2024-01-01T00:00:00.123457Z"},
                                         TCase{"2024-01-01T00:00:00.99999999Z", "2024-01-01T00:00:01Z"},
                                         TCase{"2024-01-01T00:00:00-00:00", "2024-01-01T00:00:00Z"},
                                         TCase{"2024-06-01T23:59:59+23:59", "2024-06-01T00:00:59Z"},
                                         TCase{"0000-01-01T00:00:00Z", "0000-01-01T00:00:00Z"},
                                         TCase{"9999-12-31T23:59:59Z", "9999-12-31T23:59:59Z"},
                                         TCase{"9999-12-31T23:59:59.999999Z", "9999-12-31T23:59:59.9999Z"},
                                         TCase{"0000-01-01T01:00:00+01:00", "0000-01-01T00:00:00Z"},
                                         TCase{"1899-12-29T06:00:00Z", "1899-12-29T06:00:00Z"},
                                         TCase{"2024-02-29", "2024-02-29T00:00:00Z"}));

class Rfc3339Refuses : public testing::TestWithParam<const char*> {};

TEST_P(Rfc3339Refuses, TheTextAndQuotesIt) {
    const QString text = QString::fromUtf8(GetParam());
    try {
        TZORfc3339::Parse(text);
        FAIL() << GetParam();
    } catch (const EConvertError& e) {
        EXPECT_EQ(e.Message(), QStringLiteral("'%1' is not a valid RFC 3339 date or date-time").arg(text));
    }
}

INSTANTIATE_TEST_SUITE_P(Texts, Rfc3339Refuses,
                         testing::Values("", "2024", "2024-1-1", "2023-02-29", "2024-13-01", "2024-00-10",
                                         "2024-01-32", "2024-01-00", "24-01-01", "2024-01-01T",
                                         "2024-01-01T00:00Z", "2024-01-01T00:00:00", "2024-01-01 00:00:00Z",
                                         "2024-01-01T24:00:00Z", "2024-01-01T00:60:00Z",
                                         "2024-01-01T00:00:61Z", "2024-01-01T12:00:60Z",
                                         "2024-01-01T00:00:00.Z", "2024-01-01T00:00:00,5Z",
                                         "2024-01-01T00:00:00+24:00", "2024-01-01T00:00:00+0100",
                                         "2024-01-01T00:00:00+01", "2024-01-01T00:00:00Zx", "2024-01-01x",
                                         " 2024-01-01", "+2024-01-01", "9999-12-31T23:59:60Z",
                                         "9999-12-31T23:59:59-00:01", "0000-01-01T00:59:59+01:00",
                                         "2024-W01-1", "2024-001", "\xD9\xA2\xD9\xA0\xD9\xA2\xD9\xA4-01-01"));

TEST(Rfc3339, WritesFullDates) {
    EXPECT_EQ(TZORfc3339::DateToStr(TZORfc3339::Parse(QStringLiteral("2024-02-29"))),
              QStringLiteral("2024-02-29"));
    EXPECT_EQ(TZORfc3339::DateToStr(TZORfc3339::Parse(QStringLiteral("2024-02-29T23:59:59.999999Z"))),
              QStringLiteral("2024-02-29"));
}

TEST(Rfc3339, KeepsEveryMicrosecondOfADay) {
    for (int micro = 0; micro < 1'000'000; micro += 997) {
        QString text = QStringLiteral("2031-07-15T17:41:09.%1").arg(micro, 6, 10, QLatin1Char('0'));
        while (text.endsWith(QLatin1Char('0')))
            text.chop(1);
        if (text.endsWith(QLatin1Char('.')))
            text.chop(1);
        text += QLatin1Char('Z');
        ASSERT_EQ(TZORfc3339::ToStr(TZORfc3339::Parse(text)), text);
    }
}
