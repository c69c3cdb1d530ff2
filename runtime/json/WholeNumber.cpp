#include "runtime/json/WholeNumber_p.h"

#include <algorithm>
#include <limits>
#include <string>

namespace {

/// Further than any text has digits.
constexpr qint64 MaxExponent = qint64(1) << 40;
/// Each number of so many digits fits into quint64, and none of qint64 has more.
constexpr qint64 MaxDigits = 19;

qint64 ReadExponent(std::string_view AText) {
    const bool isNegative = AText.front() == '-';
    if (isNegative || AText.front() == '+')
        AText.remove_prefix(1);
    qint64 exponent = 0;
    for (const char digit : AText)
        exponent = std::min(exponent * 10 + (digit - '0'), MaxExponent);
    return isNegative ? -exponent : exponent;
}

} // namespace

TZOWholeNumber ReadWholeNumber(std::string_view AToken, qint64& ANumber) {
    const bool isNegative = AToken.front() == '-';
    AToken.remove_prefix(isNegative ? 1 : 0);
    const auto mantissaEnd = std::min(AToken.find_first_of("eE"), AToken.size());
    qint64 exponent = mantissaEnd < AToken.size() ? ReadExponent(AToken.substr(mantissaEnd + 1)) : 0;
    std::string digits(AToken.substr(0, mantissaEnd));
    if (const auto point = digits.find('.'); point != digits.npos) {
        exponent -= qint64(digits.size() - point - 1);
        digits.erase(point, 1);
    }
    while (!digits.empty() && digits.back() == '0') {
        digits.pop_back();
        ++exponent;
    }
    digits.erase(0, digits.find_first_not_of('0'));
    if (digits.empty()) {
        ANumber = 0;
        return wnWhole;
    }
    if (exponent < 0)
        return wnFraction;
    if (qint64(digits.size()) + exponent > MaxDigits)
        return wnTooLarge;
    digits.append(std::size_t(exponent), '0');
    quint64 number = 0;
    for (const char digit : digits)
        number = number * 10 + quint64(digit - '0');
    const auto largest = quint64(std::numeric_limits<qint64>::max());
    if (number > largest + (isNegative ? 1 : 0))
        return wnTooLarge;
    ANumber = isNegative ? qint64(0 - number) : qint64(number);
    return wnWhole;
}
