// The grammar of JSON text (RFC 8259), apart from any type.
#pragma once

#include "runtime/types/Limits.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QStringView>

#include <string_view>

namespace JsonText {

/// Arrays and objects may stand inside each other this deep; deeper text counts as invalid, so that no
/// nesting can exhaust the stack.
inline constexpr int MaxDepth = Limits::MaxJsonDepth;

/// Whether AText (UTF-8) is one complete JSON value: strict grammar, valid UTF-8, at most MaxDepth deep.
/// Escapes of lone surrogates and repeated keys are valid, as RFC 8259 has it.
bool IsValid(QByteArrayView AText);
/// Whether AToken is exactly one JSON number.
bool IsNumber(std::string_view AToken);
/// Whether what stands between the quotes of a string is valid but for its UTF-8.
bool IsStringContent(std::string_view AContent);
/// Whether the content of a valid string escapes a surrogate without its other half.
bool HasLoneSurrogate(std::string_view AContent);

/// AText, which must be valid, without white space between its tokens.
QByteArray WithoutWhiteSpace(QByteArray AText);
/// Bytes that PutQuoted writes at most.
inline qsizetype QuotedSize(QStringView AText) { return AText.size() * 6 + 2; }
/// Writes AText as a JSON string with its quotes and returns the place behind it. A lone surrogate is
/// escaped.
char* PutQuoted(char* APlace, QStringView AText);
/// Appends what PutQuoted writes.
void AppendQuoted(QByteArray& AJson, QStringView AText);

} // namespace JsonText
