// The tokens of a JSON text.
#pragma once

#include <simdjson.h>

#include <QtGlobal>

#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

/// Walks over the tokens of a text: brackets, commas, colons, and scalars (strings, numbers, words) that
/// nobody has looked into yet. The parser's first stage finds where each begins; it also checks UTF-8, that
/// strings are closed, and that they hold no control character. No byte but white space lies outside of the
/// tokens, so whoever accepts each of them in its place has checked all of the text.
class TZOJsonTokens {
public:
    using TPlace = const quint32*;

    /// AText stays alive; a zero byte and simdjson's padding stand behind its ASize bytes.
    TZOJsonTokens(const char* AText, std::size_t ASize);

    /// Finds the tokens; call once, first.
    simdjson::error_code Find();

    /// The first character of the next token; zero at the end.
    char Peek() const { return FText[*FNext]; }
    bool IsAtEnd() const { return FNext == FEnd; }
    /// Where the next token begins; the end of the text behind the last one.
    const char* Start() const { return FText + *FNext; }
    /// The next token, which goes on to the white space or token behind it; empty at the end.
    std::string_view Token() const {
        const char* start = Start();
        const char* end = FText + FNext[IsAtEnd() ? 0 : 1];
        while (end > start && IsBlank(end[-1]))
            --end;
        return {start, static_cast<std::size_t>(end - start)};
    }
    /// Goes behind the next token. Not at the end.
    void Drop() { ++FNext; }
    /// Goes behind the next token if it is the bracket, comma or colon AChar.
    bool Take(char AChar) {
        if (Peek() != AChar)
            return false;
        Drop();
        return true;
    }
    /// Whether the next token is the string AContent, which has no escapes.
    bool IsString(std::string_view AContent) const {
        const std::size_t place = *FNext;
        return AContent.size() + 1 < FSize - place && FText[place] == '"' &&
               FText[place + 1 + AContent.size()] == '"' &&
               std::memcmp(FText + place + 1, AContent.data(), AContent.size()) == 0;
    }

    /// The place among the tokens, to come back to.
    TPlace Place() const { return FNext; }
    void GoTo(TPlace APlace) { FNext = APlace; }
    /// The text from AStart to the end of the token before the next one, which is a bracket.
    std::string_view TextSince(const char* AStart) const {
        return {AStart, static_cast<std::size_t>(FText + FNext[-1] + 1 - AStart)};
    }

    /// A string's content, all of whose escapes are valid, without them. It is good until the next call.
    std::string_view Unescaped(std::string_view AContent);

    const char* Text() const { return FText; }
    std::size_t Size() const { return FSize; }

private:
    static bool IsBlank(char AChar) {
        return AChar == ' ' || AChar == '\n' || AChar == '\r' || AChar == '\t';
    }

    const char* FText;
    std::size_t FSize;
    TPlace FNext = nullptr;
    TPlace FEnd = nullptr;
    std::unique_ptr<simdjson::internal::dom_parser_implementation> FParser;
    std::vector<quint8> FUnescaped;
};
