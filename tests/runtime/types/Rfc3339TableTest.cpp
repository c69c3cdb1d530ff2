// RFC 3339 to the letter: its grammar rule by rule, with the rule that each refused text breaks.
#include "runtime/types/Rfc3339.h"

#include <gtest/gtest.h>

namespace {

/// A text and its instant in UTC.
struct TTaken {
    const char* Text;
    const char* InUtc;
};

/// A text and the rule that it breaks.
struct TRefused {
    const char* Text;
    const char* Rule;
};

bool Reads(const QString& AText) {
    TDateTime fromText = 0, fromBytes = 0;
    const bool isTaken = TZORfc3339::TryParse(QStringView(AText), fromText);
    const QByteArray bytes = AText.toUtf8();
    EXPECT_EQ(TZORfc3339::TryParse(std::string_view(bytes.constData(), std::size_t(bytes.size())), fromBytes),
              isTaken);
    EXPECT_EQ(fromText, fromBytes);
    return isTaken;
}

constexpr bool IsLeap(int AYear) { return AYear % 4 == 0 && (AYear % 100 != 0 || AYear % 400 == 0); }

constexpr int DaysOf(int AYear, int AMonth) {
    constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return AMonth == 2 && IsLeap(AYear) ? 29 : days[AMonth - 1];
}

QString Two(int ANumber) { return QStringLiteral("%1").arg(ANumber, 2, 10, QLatin1Char('0')); }
QString Four(int ANumber) { return QStringLiteral("%1").arg(ANumber, 4, 10, QLatin1Char('0')); }

constexpr TTaken Taken[] = {
    // time-secfrac = "." 1*DIGIT
    {"2001-02-03T04:05:06Z", "2001-02-03T04:05:06Z"},
    {"2001-02-03T04:05:06.7Z", "2001-02-03T04:05:06.7Z"},
    {"2001-02-03T04:05:06.07Z", "2001-02-03T04:05:06.07Z"},
    {"2001-02-03T04:05:06.700Z", "2001-02-03T04:05:06.7Z"},
    {"2001-02-03T04:05:06.000Z", "2001-02-03T04:05:06Z"},
    {"2001-02-03T04:05:06.0Z", "2001-02-03T04:05:06Z"},
    {"2001-02-03T04:05:06.000001Z", "2001-02-03T04:05:06.000001Z"},
    {"2001-02-03T04:05:06.0000004Z", "2001-02-03T04:05:06Z"},
    {"2001-02-03T04:05:06.0000005Z", "2001-02-03T04:05:06.000001Z"},
    {"2001-02-03T04:05:06.123456789Z", "2001-02-03T04:05:06.123457Z"},
    {"2001-02-03T04:05:06.12345649999999999999999999999Z", "2001-02-03T04:05:06.123456Z"},
    {"2001-02-03T04:05:06.999999Z", "2001-02-03T04:05:06.999999Z"},
    {"2001-02-03T04:05:59.9999999Z", "2001-02-03T04:06:00Z"},
    {"2001-12-31T23:59:59.9999999Z", "2002-01-01T00:00:00Z"},
    {"2001-02-03T04:05:06.7+01:00", "2001-02-03T03:05:06.7Z"},
    // time-offset = "Z" / time-numoffset
    {"2001-02-03T04:05:06+00:00", "2001-02-03T04:05:06Z"},
    {"2001-02-03T04:05:06-00:00", "2001-02-03T04:05:06Z"},
    {"2001-02-03T04:05:06+01:00", "2001-02-03T03:05:06Z"},
    {"2001-02-03T04:05:06-01:00", "2001-02-03T05:05:06Z"},
    {"2001-02-03T04:05:06+05:30", "2001-02-02T22:35:06Z"},
    {"2001-02-03T04:05:06+05:45", "2001-02-02T22:20:06Z"},
    {"2001-02-03T04:05:06-03:30", "2001-02-03T07:35:06Z"},
    {"2001-02-03T04:05:06+14:00", "2001-02-02T14:05:06Z"},
    {"2001-02-03T04:05:06-12:00", "2001-02-03T16:05:06Z"},
    {"2001-02-03T04:05:06+23:59", "2001-02-02T04:06:06Z"},
    {"2001-02-03T04:05:06-23:59", "2001-02-04T04:04:06Z"},
    {"2001-02-03T04:05:06+00:01", "2001-02-03T04:04:06Z"},
    {"2001-02-03T04:05:06-00:59", "2001-02-03T05:04:06Z"},
    {"2001-01-01T00:00:00+00:01", "2000-12-31T23:59:00Z"},
    {"2000-02-28T23:30:00-01:00", "2000-02-29T00:30:00Z"},
    {"2001-02-28T23:30:00-01:00", "2001-03-01T00:30:00Z"},
    // "T" and "Z" may be lower case
    {"2001-02-03t04:05:06Z", "2001-02-03T04:05:06Z"},
    {"2001-02-03T04:05:06z", "2001-02-03T04:05:06Z"},
    {"2001-02-03t04:05:06.5z", "2001-02-03T04:05:06.5Z"},
    {"2001-02-03t04:05:06+01:00", "2001-02-03T03:05:06Z"},
    // The first and last of every field
    {"2001-01-01T00:00:00Z", "2001-01-01T00:00:00Z"},
    {"2001-12-31T23:59:59Z", "2001-12-31T23:59:59Z"},
    {"0000-01-01T00:00:00Z", "0000-01-01T00:00:00Z"},
    {"0000-02-29T00:00:00Z", "0000-02-29T00:00:00Z"},
    {"0001-01-01T00:00:00Z", "0001-01-01T00:00:00Z"},
    {"1582-10-10T00:00:00Z", "1582-10-10T00:00:00Z"},
    {"1899-12-30T00:00:00Z", "1899-12-30T00:00:00Z"},
    {"1969-12-31T23:59:59Z", "1969-12-31T23:59:59Z"},
    {"1970-01-01T00:00:00Z", "1970-01-01T00:00:00Z"},
    {"2038-01-19T03:14:08Z", "2038-01-19T03:14:08Z"},
    {"9999-12-31T00:00:00Z", "9999-12-31T00:00:00Z"},
    // Leap seconds, at the end of a day in UTC
    {"1972-06-30T23:59:60Z", "1972-07-01T00:00:00Z"},
    {"2016-12-31T23:59:60Z", "2017-01-01T00:00:00Z"},
    {"2016-12-31T23:59:60.5Z", "2017-01-01T00:00:00.5Z"},
    {"2017-01-01T00:59:60+01:00", "2017-01-01T00:00:00Z"},
    {"2016-12-31T18:59:60-05:00", "2017-01-01T00:00:00Z"},
    {"2017-01-01T05:29:60+05:30", "2017-01-01T00:00:00Z"},
    {"2016-12-31T23:59:60+00:00", "2017-01-01T00:00:00Z"},
    {"2016-12-31t23:59:60z", "2017-01-01T00:00:00Z"},
    // full-date
    {"2001-02-03", "2001-02-03T00:00:00Z"},
    {"0000-01-01", "0000-01-01T00:00:00Z"},
    {"9999-12-31", "9999-12-31T00:00:00Z"},
};

constexpr TRefused Refused[] = {
    {"", "date-fullyear"},
    {"T", "date-fullyear"},
    {"Z", "date-fullyear"},
    {"04:05:06Z", "date-fullyear"},
    {"201-02-03T04:05:06Z", "date-fullyear = 4DIGIT"},
    {"20001-02-03T04:05:06Z", "date-fullyear = 4DIGIT"},
    {"01-02-03T04:05:06Z", "date-fullyear = 4DIGIT"},
    {"+2001-02-03T04:05:06Z", "date-fullyear = 4DIGIT"},
    {"-2001-02-03T04:05:06Z", "date-fullyear = 4DIGIT"},
    {"-001-02-03T04:05:06Z", "date-fullyear = 4DIGIT"},
    {"200A-02-03T04:05:06Z", "date-fullyear = 4DIGIT"},
    {"2 01-02-03T04:05:06Z", "date-fullyear = 4DIGIT"},
    {"2001-2-03T04:05:06Z", "date-month = 2DIGIT"},
    {"2001-002-03T04:05:06Z", "date-month = 2DIGIT"},
    {"2001--2-03T04:05:06Z", "date-month = 2DIGIT"},
    {"2001- 2-03T04:05:06Z", "date-month = 2DIGIT"},
    {"2001-Feb-03T04:05:06Z", "date-month = 2DIGIT"},
    {"2001-00-03T04:05:06Z", "date-month: 01-12"},
    {"2001-13-03T04:05:06Z", "date-month: 01-12"},
    {"2001-99-03T04:05:06Z", "date-month: 01-12"},
    {"2001-02-3T04:05:06Z", "date-mday = 2DIGIT"},
    {"2001-02-003T04:05:06Z", "date-mday = 2DIGIT"},
    {"2001-02-00T04:05:06Z", "date-mday: from 01"},
    {"2001-02-99T04:05:06Z", "date-mday: to the month's last"},
    {"2001/02/03T04:05:06Z", "full-date: \"-\""},
    {"2001.02.03T04:05:06Z", "full-date: \"-\""},
    {"20010203T040506Z", "full-date: \"-\""},
    {"2001-0203T04:05:06Z", "full-date: \"-\""},
    {"2001\xE2\x88\x92"
     "02-03T04:05:06Z",
     "full-date: \"-\""},
    {"2001-02", "full-date: date-mday"},
    {"2001-02-", "full-date: date-mday"},
    {"2001-W05-6", "full-date"},
    {"2001-034", "full-date"},
    {"2001-02-03 04:05:06Z", "date-time: \"T\""},
    {"2001-02-03_04:05:06Z", "date-time: \"T\""},
    {"2001-02-0304:05:06Z", "date-time: \"T\""},
    {"2001-02-03TT04:05:06Z", "date-time: \"T\""},
    {"2001-02-03Z", "date-time: \"T\""},
    {"2001-02-03+01:00", "date-time: \"T\""},
    {"2001-02-03T", "time-hour"},
    {"2001-02-03TZ", "time-hour"},
    {"2001-02-03T4:05:06Z", "time-hour = 2DIGIT"},
    {"2001-02-03T004:05:06Z", "time-hour = 2DIGIT"},
    {"2001-02-03T-4:05:06Z", "time-hour = 2DIGIT"},
    {"2001-02-03T24:00:00Z", "time-hour: 00-23"},
    {"2001-02-03T25:05:06Z", "time-hour: 00-23"},
    {"2001-02-03T04Z", "partial-time: \":\""},
    {"2001-02-03T0405Z", "partial-time: \":\""},
    {"2001-02-03T04.05.06Z", "partial-time: \":\""},
    {"2001-02-03T04-05-06Z", "partial-time: \":\""},
    {"2001-02-03T04:5:06Z", "time-minute = 2DIGIT"},
    {"2001-02-03T04:005:06Z", "time-minute = 2DIGIT"},
    {"2001-02-03T04:60:06Z", "time-minute: 00-59"},
    {"2001-02-03T04:99:06Z", "time-minute: 00-59"},
    {"2001-02-03T04:05Z", "partial-time: time-second"},
    {"2001-02-03T04:05:Z", "partial-time: time-second"},
    {"2001-02-03T04:05:6Z", "time-second = 2DIGIT"},
    {"2001-02-03T04:05:006Z", "time-second = 2DIGIT"},
    {"2001-02-03T04:05:61Z", "time-second: 00-60"},
    {"2001-02-03T04:05:99Z", "time-second: 00-60"},
    {"2001-02-03T04:05:60Z", "time-second: 60 at the end of a day in UTC"},
    {"2001-02-03T23:58:60Z", "time-second: 60 at the end of a day in UTC"},
    {"2001-02-03T22:59:60Z", "time-second: 60 at the end of a day in UTC"},
    {"2001-02-03T23:59:60+01:00", "time-second: 60 at the end of a day in UTC"},
    {"2001-02-03T23:59:60-01:00", "time-second: 60 at the end of a day in UTC"},
    {"2001-02-03T00:00:60Z", "time-second: 60 at the end of a day in UTC"},
    {"2001-02-03T23:59:61Z", "time-second: 00-60"},
    {"2001-02-03T04:05:06.Z", "time-secfrac: 1*DIGIT"},
    {"2001-02-03T04:05:06.+01:00", "time-secfrac: 1*DIGIT"},
    {"2001-02-03T04:05:06.xZ", "time-secfrac: 1*DIGIT"},
    {"2001-02-03T04:05:06..5Z", "time-secfrac: 1*DIGIT"},
    {"2001-02-03T04:05:06.5.5Z", "time-secfrac: 1*DIGIT"},
    {"2001-02-03T04:05:06.-5Z", "time-secfrac: 1*DIGIT"},
    {"2001-02-03T04:05:06.5e1Z", "time-secfrac: 1*DIGIT"},
    {"2001-02-03T04:05:06.\xD9\xA5Z", "time-secfrac: 1*DIGIT"},
    {"2001-02-03T04:05:06,5Z", "time-secfrac: \".\""},
    {"2001-02-03T04:05:06:5Z", "time-secfrac: \".\""},
    {"2001-02-03T04:05.5Z", "partial-time: time-second"},
    {"2001-02-03T04.5Z", "partial-time: time-minute"},
    {"2001-02-03T04:05:06", "time-offset"},
    {"2001-02-03T04:05:06.5", "time-offset"},
    {"2001-02-03T04:05:06 ", "time-offset"},
    {"2001-02-03T04:05:06 Z", "time-offset"},
    {"2001-02-03T04:05:06 +01:00", "time-offset"},
    {"2001-02-03T04:05:06A", "time-offset"},
    {"2001-02-03T04:05:06UTC", "time-offset"},
    {"2001-02-03T04:05:06GMT", "time-offset"},
    {"2001-02-03T04:05:06EST", "time-offset"},
    {"2001-02-03T04:05:06Europe/Oslo", "time-offset"},
    {"2001-02-03T04:05:06+", "time-numoffset: time-hour"},
    {"2001-02-03T04:05:06-", "time-numoffset: time-hour"},
    {"2001-02-03T04:05:06+1", "time-numoffset: time-hour"},
    {"2001-02-03T04:05:06+01", "time-numoffset: \":\""},
    {"2001-02-03T04:05:06+0100", "time-numoffset: \":\""},
    {"2001-02-03T04:05:06+01:", "time-numoffset: time-minute"},
    {"2001-02-03T04:05:06+01:0", "time-numoffset: time-minute"},
    {"2001-02-03T04:05:06+1:00", "time-numoffset: time-hour"},
    {"2001-02-03T04:05:06+001:00", "time-numoffset: time-hour"},
    {"2001-02-03T04:05:06+24:00", "time-numoffset: 00-23"},
    {"2001-02-03T04:05:06-24:00", "time-numoffset: 00-23"},
    {"2001-02-03T04:05:06+99:00", "time-numoffset: 00-23"},
    {"2001-02-03T04:05:06+01:60", "time-numoffset: 00-59"},
    {"2001-02-03T04:05:06-01:99", "time-numoffset: 00-59"},
    {"2001-02-03T04:05:06+01:00:00", "the end"},
    {"2001-02-03T04:05:06+-1:00", "time-numoffset: time-hour"},
    {"2001-02-03T04:05:06\xE2\x88\x92"
     "01:00",
     "time-numoffset: \"+\" / \"-\""},
    {"2001-02-03T04:05:06Z+01:00", "the end"},
    {"2001-02-03T04:05:06+01:00Z", "the end"},
    {"2001-02-03T04:05:06ZZ", "the end"},
    {"2001-02-03T04:05:06Z ", "the end"},
    {"2001-02-03T04:05:06Z\n", "the end"},
    {"2001-02-03T04:05:06Z[Europe/Oslo]", "the end"},
    {"2001-02-03T04:05:06Z/2001-02-04T04:05:06Z", "the end"},
    {" 2001-02-03T04:05:06Z", "the start"},
    {"\n2001-02-03", "the start"},
    {"2001-02-03 ", "the end"},
    {"2001-02-03\n", "the end"},
    {"\xEF\xBC\x92"
     "001-02-03",
     "DIGIT"},
    {"2001-02-0\xC2\xB3", "DIGIT"},
    {"2001-02-03\xD2\xAC"
     "04:05:06Z",
     "\"T\""},
    // Outside the years that four digits can name
    {"0000-01-01T00:00:00+00:01", "the year in UTC: 0000-9999"},
    {"9999-12-31T23:59:59-00:01", "the year in UTC: 0000-9999"},
    {"9999-12-31T23:59:60Z", "the year in UTC: 0000-9999"},
    {"1e3", "date-fullyear"},
    {"now", "date-fullyear"},
    {"Sat, 03 Feb 2001 04:05:06 GMT", "date-fullyear"},
    {"981173106", "full-date: \"-\""},
};

} // namespace

TEST(Rfc3339Table, TakesWhatTheGrammarHas) {
    for (const TTaken& item : Taken) {
        TDateTime value = 0;
        ASSERT_TRUE(TZORfc3339::TryParse(std::string_view(item.Text), value)) << item.Text;
        EXPECT_EQ(TZORfc3339::ToStr(value), QString::fromLatin1(item.InUtc)) << item.Text;
        EXPECT_TRUE(Reads(QString::fromUtf8(item.Text)));
    }
}

TEST(Rfc3339Table, RefusesWhatBreaksARule) {
    for (const TRefused& item : Refused)
        EXPECT_FALSE(Reads(QString::fromUtf8(item.Text))) << item.Text << " breaks " << item.Rule;
    EXPECT_FALSE(Reads(QString(QChar(0)) + QStringLiteral("2001-02-03")));
    EXPECT_FALSE(Reads(QStringLiteral("2001-02-03") + QChar(0)));
    EXPECT_GE(std::size(Taken) + std::size(Refused), 150u);
}

TEST(Rfc3339Table, KnowsTheDaysOfEveryMonth) {
    for (const int year : {0, 1, 4, 100, 400, 1600, 1700, 1896, 1900, 1904, 1999, 2000, 2004, 2023, 2024,
                           2100, 2400, 9996, 9999}) {
        for (int month = 0; month <= 99; ++month) {
            for (int day = 0; day <= 32; ++day) {
                const QString text = Four(year) + u'-' + Two(month) + u'-' + Two(day);
                const bool isDay = month >= 1 && month <= 12 && day >= 1 && day <= DaysOf(year, month);
                ASSERT_EQ(Reads(text), isDay) << text.toStdString();
                if (!isDay)
                    continue;
                const TDateTime value = TZORfc3339::Parse(text);
                ASSERT_EQ(TZORfc3339::DateToStr(value), text);
                ASSERT_EQ(TZORfc3339::ToStr(value), text + QStringLiteral("T00:00:00Z"));
            }
        }
    }
}

TEST(Rfc3339Table, KnowsTheDaysOfEveryYear) {
    // Day after day from the first to the last, each one further than the day before.
    TDateTime before = TZORfc3339::Parse(QStringLiteral("0000-01-01")) - 1;
    for (int year = 0; year <= 9999; ++year) {
        for (int month = 1; month <= 12; ++month) {
            const QString last = Four(year) + u'-' + Two(month) + u'-' + Two(DaysOf(year, month));
            const TDateTime value = TZORfc3339::Parse(last);
            ASSERT_EQ(value - before, DaysOf(year, month)) << last.toStdString();
            before = value;
        }
    }
}

TEST(Rfc3339Table, KnowsTheRangeOfEveryField) {
    const QString date = QStringLiteral("2016-12-31T");
    for (int number = 0; number <= 99; ++number) {
        const QString two = Two(number);
        EXPECT_EQ(Reads(date + two + QStringLiteral(":05:06Z")), number <= 23) << number;
        EXPECT_EQ(Reads(date + QStringLiteral("04:%1:06Z").arg(two)), number <= 59) << number;
        EXPECT_EQ(Reads(date + QStringLiteral("04:05:%1Z").arg(two)), number <= 59) << number;
        EXPECT_EQ(Reads(date + QStringLiteral("23:59:%1Z").arg(two)), number <= 60) << number;
        for (const QChar sign : {u'+', u'-'}) {
            EXPECT_EQ(Reads(date + QStringLiteral("04:05:06") + sign + two + QStringLiteral(":00")),
                      number <= 23);
            EXPECT_EQ(Reads(date + QStringLiteral("04:05:06") + sign + QStringLiteral("01:") + two),
                      number <= 59);
        }
    }
}

TEST(Rfc3339Table, TakesNoPartOfAText) {
    const QString whole = QStringLiteral("2001-02-03T04:05:06.789+01:30");
    ASSERT_TRUE(Reads(whole));
    for (qsizetype length = 0; length < whole.size(); ++length)
        EXPECT_EQ(Reads(whole.left(length)), length == 10) << whole.left(length).toStdString();
    for (qsizetype place = 0; place < whole.size(); ++place) {
        for (const QChar sign : {u'x', u' ', u'/', u'\u0661', u'\0'}) {
            QString text = whole;
            text[place] = sign;
            EXPECT_FALSE(Reads(text)) << text.toStdString();
        }
    }
}
