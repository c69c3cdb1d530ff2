#include "runtime/types/Rfc3339.h"

#include "platform/Exceptions.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <optional>

namespace {

constexpr qint64 MicrosPerDay = 86'400'000'000;
constexpr qint64 MicrosPerSecond = 1'000'000;
/// Days from 1899-12-30 to 1970-01-01.
constexpr qint64 UnixEpoch = 25569;
/// 0000-01-01 and 9999-12-31, the days that four digits of a year can name first and last.
constexpr qint64 FirstDay = -693959;
constexpr qint64 LastDay = 2958465;

/// Reads fixed-width fields from the front of a text.
class TFields {
public:
    explicit TFields(std::string_view AText) : FText(AText) {}

    bool AtEnd() const { return FText.empty(); }

    bool Take(char AChar) {
        if (FText.empty() ||
            (FText.front() != AChar && (!IsLetter(AChar) || FText.front() != (AChar | 0x20))))
            return false;
        FText.remove_prefix(1);
        return true;
    }

    /// Exactly ACount ASCII digits of a value from AMin to AMax.
    std::optional<int> Number(std::size_t ACount, int AMin, int AMax) {
        if (FText.size() < ACount)
            return {};
        int value = 0;
        for (std::size_t i = 0; i < ACount; ++i) {
            const char digit = FText[i];
            if (digit < '0' || digit > '9')
                return {};
            value = value * 10 + (digit - '0');
        }
        FText.remove_prefix(ACount);
        if (value < AMin || value > AMax)
            return {};
        return value;
    }

    /// One or more digits as a fraction of a second, in microseconds, rounded to the nearest.
    std::optional<qint64> Micros() {
        qint64 micros = 0;
        qint64 unit = MicrosPerSecond;
        bool roundUp = false;
        std::size_t count = 0;
        for (; count < FText.size(); ++count) {
            const char digit = FText[count];
            if (digit < '0' || digit > '9')
                break;
            if (unit > 1) {
                unit /= 10;
                micros += (digit - '0') * unit;
            } else if (count == 6) {
                roundUp = digit >= '5';
            }
        }
        if (count == 0)
            return {};
        FText.remove_prefix(count);
        return micros + (roundUp ? 1 : 0);
    }

private:
    static bool IsLetter(char AChar) { return AChar >= 'A' && AChar <= 'Z'; }

    std::string_view FText;
};

/// Days since 1899-12-30; nothing for a day that the calendar does not have.
std::optional<qint64> DayOf(int AYear, int AMonth, int ADay) {
    const std::chrono::year_month_day date{std::chrono::year(AYear), std::chrono::month(unsigned(AMonth)),
                                           std::chrono::day(unsigned(ADay))};
    if (!date.ok())
        return {};
    return std::chrono::sys_days(date).time_since_epoch().count() + UnixEpoch;
}

/// Fields at fixed places of a text that is long enough. One wrong character makes all of it wrong, and what
/// is read until then does not matter.
class TFixedFields {
public:
    explicit TFixedFields(const char* AText) : FText(AText) {}

    int TwoDigits(int APlace) {
        const unsigned tens = Digit(APlace);
        const unsigned ones = Digit(APlace + 1);
        FIsRight &= tens <= 9 && ones <= 9;
        return int(tens * 10 + ones);
    }
    void Expect(int APlace, char AChar) { FIsRight &= FText[APlace] == AChar; }
    bool IsRight() const { return FIsRight; }

private:
    unsigned Digit(int APlace) const { return static_cast<unsigned char>(FText[APlace]) - unsigned('0'); }

    const char* FText;
    bool FIsRight = true;
};

/// Reads what nearly all servers send: "2024-02-29T12:30:00Z", or a full-date. Nothing for any other text,
/// right or wrong.
std::optional<TDateTime> ReadUsual(std::string_view AText) {
    constexpr std::string_view dateForm = "2024-02-29";
    constexpr std::string_view timeForm = "2024-02-29T12:30:00Z";
    if (AText.size() != dateForm.size() && AText.size() != timeForm.size())
        return {};
    TFixedFields fields(AText.data());
    const int year = fields.TwoDigits(0) * 100 + fields.TwoDigits(2);
    fields.Expect(4, '-');
    const int month = fields.TwoDigits(5);
    fields.Expect(7, '-');
    const int day = fields.TwoDigits(8);
    int seconds = 0;
    if (AText.size() == timeForm.size()) {
        fields.Expect(10, 'T');
        const int hour = fields.TwoDigits(11);
        fields.Expect(13, ':');
        const int minute = fields.TwoDigits(14);
        fields.Expect(16, ':');
        const int second = fields.TwoDigits(17);
        fields.Expect(19, 'Z');
        if (hour > 23 || minute > 59 || second > 59)
            return {};
        seconds = (hour * 60 + minute) * 60 + second;
    }
    if (!fields.IsRight())
        return {};
    const auto days = DayOf(year, month, day);
    if (!days)
        return {};
    return double(*days) + double(seconds * MicrosPerSecond) / double(MicrosPerDay);
}

/// Days since 1899-12-30 of a full-date.
std::optional<qint64> ReadDate(TFields& AFields) {
    const auto year = AFields.Number(4, 0, 9999);
    if (!year || !AFields.Take('-'))
        return {};
    const auto month = AFields.Number(2, 1, 12);
    if (!month || !AFields.Take('-'))
        return {};
    const auto day = AFields.Number(2, 1, 31);
    if (!day)
        return {};
    return DayOf(*year, *month, *day);
}

/// Microseconds that the text's offset lies east of UTC.
std::optional<qint64> ReadOffset(TFields& AFields) {
    if (AFields.Take('Z'))
        return 0;
    const bool west = AFields.Take('-');
    if (!west && !AFields.Take('+'))
        return {};
    const auto hours = AFields.Number(2, 0, 23);
    if (!hours || !AFields.Take(':'))
        return {};
    const auto minutes = AFields.Number(2, 0, 59);
    if (!minutes)
        return {};
    const qint64 offset = (*hours * 60 + *minutes) * 60 * MicrosPerSecond;
    return west ? -offset : offset;
}

/// Microseconds since midnight UTC of what follows the "T"; may lie outside the day by the offset.
std::optional<qint64> ReadTime(TFields& AFields, bool& AIsLeapSecond) {
    const auto hour = AFields.Number(2, 0, 23);
    if (!hour || !AFields.Take(':'))
        return {};
    const auto minute = AFields.Number(2, 0, 59);
    if (!minute || !AFields.Take(':'))
        return {};
    const auto second = AFields.Number(2, 0, 60);
    if (!second)
        return {};
    qint64 micros = ((*hour * 60 + *minute) * 60 + *second) * MicrosPerSecond;
    if (AFields.Take('.')) {
        const auto fraction = AFields.Micros();
        if (!fraction)
            return {};
        micros += *fraction;
    }
    const auto offset = ReadOffset(AFields);
    if (!offset)
        return {};
    AIsLeapSecond = *second == 60;
    return micros - *offset;
}

/// Microseconds that neighbouring date-times near AValue lie apart, as a power of ten: from the year 2079 on
/// a date-time holds less than a microsecond, and digits beyond that would be noise.
qint64 Resolution(TDateTime AValue) {
    const double apart =
        (std::nextafter(std::abs(AValue), HUGE_VAL) - std::abs(AValue)) * double(MicrosPerDay);
    qint64 resolution = 1;
    while (double(resolution) < apart)
        resolution *= 10;
    return resolution;
}

/// Writes ANumber with exactly ADigits digits and returns the place behind it.
char* PutNumber(char* APlace, qint64 ANumber, int ADigits) {
    for (int i = ADigits; i-- > 0; ANumber /= 10)
        APlace[i] = static_cast<char>('0' + ANumber % 10);
    return APlace + ADigits;
}

char* PutDate(char* APlace, qint64 ADays) {
    const std::chrono::sys_days day{std::chrono::days(std::clamp(ADays, FirstDay, LastDay) - UnixEpoch)};
    const std::chrono::year_month_day date(day);
    APlace = PutNumber(APlace, int(date.year()), 4);
    *APlace++ = '-';
    APlace = PutNumber(APlace, unsigned(date.month()), 2);
    *APlace++ = '-';
    return PutNumber(APlace, unsigned(date.day()), 2);
}

char* PutTime(char* APlace, qint64 AMicros) {
    const qint64 seconds = AMicros / MicrosPerSecond;
    *APlace++ = 'T';
    APlace = PutNumber(APlace, seconds / 3600, 2);
    *APlace++ = ':';
    APlace = PutNumber(APlace, seconds / 60 % 60, 2);
    *APlace++ = ':';
    APlace = PutNumber(APlace, seconds % 60, 2);
    if (AMicros % MicrosPerSecond) {
        *APlace++ = '.';
        APlace = PutNumber(APlace, AMicros % MicrosPerSecond, 6);
        while (APlace[-1] == '0')
            --APlace;
    }
    *APlace++ = 'Z';
    return APlace;
}

} // namespace

QString TZORfc3339::ToStr(TDateTime AValue) {
    const double wholeDays = std::floor(AValue);
    qint64 days = static_cast<qint64>(wholeDays);
    qint64 micros = std::llround((AValue - wholeDays) * double(MicrosPerDay));
    const qint64 resolution = Resolution(AValue);
    micros = (micros + resolution / 2) / resolution * resolution;
    if (micros >= MicrosPerDay) {
        micros = days < LastDay ? 0 : MicrosPerDay - resolution;
        ++days;
    }
    char text[32];
    const char* end = PutTime(PutDate(text, days), micros);
    return QString::fromLatin1(text, end - text);
}

QString TZORfc3339::DateToStr(TDateTime AValue) {
    char text[16];
    const char* end = PutDate(text, static_cast<qint64>(std::floor(AValue)));
    return QString::fromLatin1(text, end - text);
}

bool TZORfc3339::TryParse(QStringView AText, TDateTime& AValue) {
    // Characters outside Latin-1 become "?", which no date holds.
    const QByteArray text = AText.toLatin1();
    return TryParse(std::string_view(text.constData(), std::size_t(text.size())), AValue);
}

bool TZORfc3339::TryParse(std::string_view AText, TDateTime& AValue) {
    if (const auto usual = ReadUsual(AText)) {
        AValue = *usual;
        return true;
    }
    TFields fields(AText);
    const auto days = ReadDate(fields);
    if (!days)
        return false;
    if (fields.AtEnd()) {
        AValue = static_cast<double>(*days);
        return true;
    }
    if (!fields.Take('T'))
        return false;
    bool isLeapSecond = false;
    const auto micros = ReadTime(fields, isLeapSecond);
    if (!micros || !fields.AtEnd())
        return false;
    // Leap seconds are inserted at the end of a UTC day only.
    const qint64 ofDay = ((*micros % MicrosPerDay) + MicrosPerDay) % MicrosPerDay;
    if (isLeapSecond && ofDay > MicrosPerSecond) // its fraction may have been rounded up
        return false;
    const qint64 total = *days * MicrosPerDay + *micros;
    const qint64 wholeDays =
        (total - (((total % MicrosPerDay) + MicrosPerDay) % MicrosPerDay)) / MicrosPerDay;
    if (wholeDays < FirstDay || wholeDays > LastDay)
        return false;
    AValue = std::min(double(wholeDays) + double(total - wholeDays * MicrosPerDay) / double(MicrosPerDay),
                      std::nextafter(double(LastDay + 1), 0));
    return true;
}

TDateTime TZORfc3339::Parse(const QString& AText) {
    TDateTime value = 0;
    if (!TryParse(AText, value))
        throw EConvertError(QStringLiteral("'%1' is not a valid RFC 3339 date or date-time").arg(AText));
    return value;
}
