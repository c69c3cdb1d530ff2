// Numbers and truth values to and from text, as a user reads and types them.
#pragma once

#include <QString>

/// Decimal integer of 32 bits; blanks around it are ignored. Raises EConvertError, which quotes the text.
qint32 StrToInt(const QString& AText);
/// Floating point number with the user's decimal separator or a dot, no group separators; blanks around it
/// are ignored. Raises EConvertError for anything else, infinities included.
double StrToFloat(const QString& AText);
/// "True" or "False" in any case, or a number (0 is false). Raises EConvertError.
bool StrToBool(const QString& AText);

/// The shortest text that reads back as the same number, with the user's decimal separator.
QString FloatToStr(double AValue);
/// "True" or "False".
QString BoolToStr(bool AValue);
