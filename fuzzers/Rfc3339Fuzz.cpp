// Dates and times: a text is taken exactly when the grammar of RFC 3339 has it, and what is written is read
// as the same instant.
#include "fuzzers/Fuzz.h"

#include "runtime/types/Rfc3339.h"

#include <cmath>
#include <string_view>

namespace {

/// Reads texts by the grammar of RFC 3339, section 5.6, sign by sign.
class TGrammar {
public:
    explicit TGrammar(std::string_view AText) : FText(AText) {}

    bool IsFullDate() { return Date() && FText.empty(); }

    bool IsDateTime() {
        if (!Date() || !(Sign('T') || Sign('t')))
            return false;
        const int hour = Number(2, 23);
        const bool minuteFollows = hour >= 0 && Sign(':');
        const int minute = minuteFollows ? Number(2, 59) : -1;
        if (minute < 0 || !Sign(':'))
            return false;
        const int second = Number(2, 60);
        if (second < 0 || (Sign('.') && !Digits()))
            return false;
        int offset = 0;
        if (!Offset(offset) || !FText.empty())
            return false;
        return second < 60 || MinuteOfDay(hour * 60 + minute - offset) == 23 * 60 + 59;
    }

private:
    static int MinuteOfDay(int AMinute) { return (AMinute % 1440 + 1440) % 1440; }

    bool Date() {
        static constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
        const int year = Number(4, 9999);
        if (year < 0 || !Sign('-'))
            return false;
        const int month = Number(2, 12);
        if (month < 1 || !Sign('-'))
            return false;
        const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
        return Number(2, days[month - 1] + (leap && month == 2 ? 1 : 0)) >= 1;
    }

    bool Offset(int& AMinutes) {
        if (Sign('Z') || Sign('z'))
            return true;
        const bool minus = Sign('-');
        if (!minus && !Sign('+'))
            return false;
        const int hour = Number(2, 23);
        if (hour < 0 || !Sign(':'))
            return false;
        const int minute = Number(2, 59);
        AMinutes = (minus ? -1 : 1) * (hour * 60 + minute);
        return minute >= 0;
    }

    bool Sign(char ASign) {
        if (FText.empty() || FText.front() != ASign)
            return false;
        FText.remove_prefix(1);
        return true;
    }

    bool Digits() {
        const std::size_t count = std::min(FText.find_first_not_of("0123456789"), FText.size());
        FText.remove_prefix(count);
        return count > 0;
    }

    /// The next ACount digits, or -1 when they are none or more than AMax.
    int Number(std::size_t ACount, int AMax) {
        const std::string_view digits = FText.substr(0, ACount);
        if (digits.size() < ACount || digits.find_first_not_of("0123456789") != digits.npos)
            return -1;
        FText.remove_prefix(ACount);
        int number = 0;
        for (const char digit : digits)
            number = number * 10 + (digit - '0');
        return number <= AMax ? number : -1;
    }

    std::string_view FText;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* AData, std::size_t ASize) {
    const std::string_view text(reinterpret_cast<const char*>(AData), ASize);
    TDateTime value = 0;
    const bool isDateTime = TGrammar(text).IsDateTime();
    const bool isDate = TGrammar(text).IsFullDate();
    const bool taken = TZORfc3339::TryParse(text, value);
    // An offset may carry the first and the last day out of the years that can be written.
    const bool isAtTheEdge = isDateTime && (text.starts_with("0000-01-01") || text.starts_with("9999-12-31"));
    Fuzz::Require(taken == (isDateTime || isDate) || (isAtTheEdge && !taken),
                  "a text is taken exactly when the grammar has it");
    if (!taken)
        return 0;
    TDateTime again = 0;
    const QString written = isDate ? TZORfc3339::DateToStr(value) : TZORfc3339::ToStr(value);
    Fuzz::Require(TZORfc3339::TryParse(written, again), "what is written can be read");
    Fuzz::Require(std::abs(again - value) * 86'400'000'000.0 <= 150, "it is the same instant");
    return 0;
}
