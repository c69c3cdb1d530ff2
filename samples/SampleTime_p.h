// Dates and instants of the sample server, apart from the runtime's own conversions.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace SampleTime {

using TInstant = std::chrono::sys_time<std::chrono::microseconds>;
using TDay = std::chrono::sys_days;

/// An RFC 3339 full-date.
std::optional<TDay> ParseDate(std::string_view AText);
/// An RFC 3339 date-time with any offset; no leap seconds.
std::optional<TInstant> ParseInstant(std::string_view AText);
std::string FormatDate(TDay ADay);
/// In UTC, with as many of six fractional digits as are not zero.
std::string FormatInstant(TInstant AInstant);
TInstant Now();

} // namespace SampleTime
