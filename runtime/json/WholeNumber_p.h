// Whole numbers in any form that JSON has for them. Private to the decoder.
#pragma once

#include <QtGlobal>

#include <string_view>

enum TZOWholeNumber { wnWhole, wnFraction, wnTooLarge };

/// Reads AToken, a valid JSON number, digit by digit: "1e3" and "2.0" are whole, and nothing is rounded.
/// ANumber is set where the answer is wnWhole.
TZOWholeNumber ReadWholeNumber(std::string_view AToken, qint64& ANumber);
