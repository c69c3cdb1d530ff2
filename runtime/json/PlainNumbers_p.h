// The numbers that nearly all of a response's are: few digits and no exponent.
#pragma once

#include <QtGlobal>

#include <array>
#include <cstddef>
#include <string_view>

/// Both take a token of which nothing is known. They return false for every text that is no JSON number, and
/// for numbers that are not plain.
namespace PlainNumbers {

/// Reads digits from APlace on, and adds them to ANumber.
inline const char* TakeDigits(const char* APlace, const char* AEnd, qint64& ANumber) {
    for (; APlace < AEnd; ++APlace) {
        const unsigned digit = static_cast<unsigned char>(*APlace) - unsigned('0');
        if (digit > 9)
            break;
        ANumber = ANumber * 10 + digit;
    }
    return APlace;
}

inline bool ToWhole(std::string_view AToken, qint64& ANumber) {
    constexpr std::ptrdiff_t mostDigits = 18;
    const char* const end = AToken.data() + AToken.size();
    const bool isNegative = !AToken.empty() && AToken.front() == '-';
    const char* const first = AToken.data() + isNegative;
    if (end - first < 1 || end - first > mostDigits || (*first == '0' && end - first > 1))
        return false;
    qint64 number = 0;
    if (TakeDigits(first, end, number) != end)
        return false;
    ANumber = isNegative ? -number : number;
    return true;
}

/// The double nearest to the number: digits and power of ten have doubles of their own, so that there is one
/// rounding.
inline bool ToDouble(std::string_view AToken, double& ANumber) {
    constexpr std::array powers{1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    const char* const end = AToken.data() + AToken.size();
    const bool isNegative = !AToken.empty() && AToken.front() == '-';
    const char* const first = AToken.data() + isNegative;
    if (end - first > std::ptrdiff_t(powers.size()))
        return false;
    qint64 digits = 0;
    const char* const point = TakeDigits(first, end, digits);
    if (point == first || (*first == '0' && point - first > 1))
        return false;
    std::size_t decimals = 0;
    if (point != end) {
        const char* const fraction = point + 1;
        if (*point != '.' || fraction == end || TakeDigits(fraction, end, digits) != end)
            return false;
        decimals = static_cast<std::size_t>(end - fraction);
    }
    const double number = double(digits) / powers[decimals];
    ANumber = isNegative ? -number : number;
    return true;
}

} // namespace PlainNumbers
