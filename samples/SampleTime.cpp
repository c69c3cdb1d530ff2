#include "samples/SampleTime_p.h"

#include <array>
#include <charconv>
#include <cstdio>

namespace SampleTime {

namespace {

using namespace std::chrono;

/// ACount digits at APos, or nothing.
std::optional<int> Digits(std::string_view AText, std::size_t APos, std::size_t ACount) {
    if (APos + ACount > AText.size())
        return {};
    int value = 0;
    const char* first = AText.data() + APos;
    if (*first == '-')
        return {};
    const auto [end, error] = std::from_chars(first, first + ACount, value);
    if (error != std::errc() || end != first + ACount)
        return {};
    return value;
}

bool Has(std::string_view AText, std::size_t APos, std::string_view AAllowed) {
    return APos < AText.size() && AAllowed.find(AText[APos]) != std::string_view::npos;
}

/// Reads ".digits" at APos, which moves behind it.
std::optional<microseconds> Fraction(std::string_view AText, std::size_t& APos) {
    if (!Has(AText, APos, "."))
        return microseconds(0);
    const std::size_t start = ++APos;
    int64_t micros = 0;
    for (; Has(AText, APos, "0123456789"); ++APos) {
        if (APos - start < 6)
            micros = micros * 10 + (AText[APos] - '0');
    }
    if (APos == start)
        return {};
    for (std::size_t digits = APos - start; digits < 6; ++digits)
        micros *= 10;
    return microseconds(micros);
}

/// Reads "Z" or "+hh:mm" at APos, up to the end of the text.
std::optional<minutes> Offset(std::string_view AText, std::size_t APos) {
    if (Has(AText, APos, "Zz") && APos + 1 == AText.size())
        return minutes(0);
    if (!Has(AText, APos, "+-") || !Has(AText, APos + 3, ":") || APos + 6 != AText.size())
        return {};
    const auto hour = Digits(AText, APos + 1, 2);
    const auto minute = Digits(AText, APos + 4, 2);
    if (!hour || !minute || *hour > 23 || *minute > 59)
        return {};
    const minutes offset = hours(*hour) + minutes(*minute);
    return AText[APos] == '-' ? -offset : offset;
}

template <class... T>
std::string Print(const char* AFormat, T... AValues) {
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), AFormat, AValues...);
    return text.data();
}

} // namespace

std::optional<TDay> ParseDate(std::string_view AText) {
    const auto y = Digits(AText, 0, 4);
    const auto m = Digits(AText, 5, 2);
    const auto d = Digits(AText, 8, 2);
    if (AText.size() != 10 || AText[4] != '-' || AText[7] != '-' || !y || !m || !d)
        return {};
    const year_month_day date{year(*y), month(static_cast<unsigned>(*m)), day(static_cast<unsigned>(*d))};
    if (!date.ok())
        return {};
    return sys_days(date);
}

std::optional<TInstant> ParseInstant(std::string_view AText) {
    const auto date = ParseDate(AText.substr(0, 10));
    const auto hour = Digits(AText, 11, 2);
    const auto minute = Digits(AText, 14, 2);
    const auto second = Digits(AText, 17, 2);
    if (!date || !Has(AText, 10, "Tt") || !Has(AText, 13, ":") || !Has(AText, 16, ":"))
        return {};
    if (!hour || !minute || !second || *hour > 23 || *minute > 59 || *second > 59)
        return {};
    std::size_t pos = 19;
    const auto fraction = Fraction(AText, pos);
    const auto offset = Offset(AText, pos);
    if (!fraction || !offset)
        return {};
    return *date + hours(*hour) + minutes(*minute) + seconds(*second) + *fraction - *offset;
}

std::string FormatDate(TDay ADay) {
    const year_month_day date(ADay);
    return Print("%04d-%02u-%02u", int(date.year()), unsigned(date.month()), unsigned(date.day()));
}

std::string FormatInstant(TInstant AInstant) {
    const TDay day = floor<days>(AInstant);
    const hh_mm_ss<microseconds> time(AInstant - day);
    std::string text = FormatDate(day) + Print("T%02d:%02d:%02d", int(time.hours().count()),
                                               int(time.minutes().count()), int(time.seconds().count()));
    if (time.subseconds().count() != 0) {
        text += Print(".%06d", int(time.subseconds().count()));
        text.erase(text.find_last_not_of('0') + 1);
    }
    return text + "Z";
}

TInstant Now() { return floor<microseconds>(system_clock::now()); }

} // namespace SampleTime
