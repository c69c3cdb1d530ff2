// Dates and times as text (RFC 3339).
#pragma once

#include "runtime/types/TypeInfo.h"

#include <string_view>

class TZORfc3339 {
public:
    /// Date-time in UTC, "2024-02-29T12:30:00Z", with as many of six fractional digits as are not zero. A
    /// TDateTime holds the microsecond until 2079, ten microseconds from then on to 2617.
    static QString ToStr(TDateTime AValue);
    /// Full-date, "2024-02-29".
    static QString DateToStr(TDateTime AValue);
    /// Reads a date-time with any offset (the instant is kept to the microsecond; a leap second counts as
    /// the second that follows it) or a full-date. Years 0000 to 9999, in UTC, too. Raises EConvertError,
    /// quoting the text, for anything that RFC 3339 does not allow.
    static TDateTime Parse(const QString& AText);
    /// The same without exceptions; false leaves AValue alone.
    static bool TryParse(QStringView AText, TDateTime& AValue);
    static bool TryParse(std::string_view AText, TDateTime& AValue);
};
