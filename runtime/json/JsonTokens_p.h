// The tokens of a JSON text.
#pragma once

#include "runtime/json/Words_p.h"

#include <simdjson.h>

#include <QtGlobal>

#include <memory>
#include <string_view>
#include <vector>

/// Walks over the tokens of a text: brackets, commas, colons, and scalars (strings, numbers, words) that
/// nobody has looked into yet. The parser's first stage finds where each begins; it also checks UTF-8, that
/// strings are closed, and that they hold no control character. No byte but white space lies outside of the
/// tokens, so whoever accepts each of them in its place has checked all of the text.
///
/// A list of all tokens could be larger than the text. They are found in one window of the text after the
/// other, which is small enough for the processor's cache. Where the text is not good, the tokens end.
class TZOJsonTokens {
public:
    /// Where a token begins.
    using TPlace = const char*;

    /// AText stays alive; a zero byte and simdjson's padding stand behind its ASize bytes.
    TZOJsonTokens(const char* AText, std::size_t ASize);

    /// The first character of the next token; zero at the end.
    char Peek() const { return FWindow[*FNext]; }
    bool IsAtEnd() const { return FNext == FEnd; }
    /// Why the tokens end before the text does; once found, it stays.
    simdjson::error_code Error() const { return FError; }
    /// Where the next token begins; the end of the text behind the last one.
    TPlace Start() const { return FWindow + *FNext; }
    /// The next token, which goes on to the white space or token behind it; empty at the end.
    std::string_view Token() const { return Trimmed(Start(), FWindow + FNext[IsAtEnd() ? 0 : 1]); }
    /// Goes behind the next token. Not at the end.
    void Drop() {
        if (++FNext == FEnd)
            FindFrom(FWindowEnd);
    }
    /// Goes behind the next token if it is the bracket, comma or colon AChar.
    bool Take(char AChar) {
        if (Peek() != AChar)
            return false;
        Drop();
        return true;
    }
    /// Goes behind the next token and its colon if it is AKey, a string as it stands in a text. It may miss
    /// the key where a window ends. 7 bytes behind AKey can be read.
    bool TakeKey(std::string_view AKey) {
        const bool fits =
            !AKey.empty() && FEnd - FNext > 2 && AKey.size() < static_cast<std::size_t>(FTextEnd - Start());
        if (!fits || !Words::AreEqual(Start(), AKey.data(), AKey.size()) || FWindow[FNext[1]] != ':')
            return false;
        FNext += 2;
        return true;
    }
    /// Goes back, or forth again, to the token at APlace.
    void GoTo(TPlace APlace);
    /// The text from AStart to the end of the last token dropped.
    std::string_view TextSince(TPlace AStart) const { return Trimmed(AStart, Start()); }

    /// A string's content, all of whose escapes are valid, without them. It is good until the next call.
    std::string_view Unescaped(std::string_view AContent);

    const char* Text() const { return FText; }
    const char* TextEnd() const { return FTextEnd; }

private:
    static std::string_view Trimmed(const char* AStart, const char* AEnd) {
        while (AEnd > AStart && IsBlank(AEnd[-1]))
            --AEnd;
        return {AStart, static_cast<std::size_t>(AEnd - AStart)};
    }
    static bool IsBlank(char AChar) {
        return AChar == ' ' || AChar == '\n' || AChar == '\r' || AChar == '\t';
    }

    /// Makes the token at APlace, or the first one behind it, the next one.
    void FindFrom(TPlace APlace);
    /// Finds the tokens between APlace, where no token is under way, and AEnd.
    simdjson::error_code FindBetween(TPlace APlace, const char* AEnd);
    /// Makes the parser ready for a window of ASize bytes.
    simdjson::error_code MakeRoom(std::size_t ASize);
    /// An end for a window of about ASize bytes from APlace, where probably no token is under way.
    const char* WindowEnd(TPlace APlace, std::size_t ASize) const;

    const char* FText;
    const char* FTextEnd;
    const char* FWindow; // the places of its tokens count from here
    const char* FWindowEnd;
    const quint32* FNext;
    const quint32* FEnd; // behind the places, where the window's size stands
    simdjson::error_code FError = simdjson::SUCCESS;
    std::unique_ptr<simdjson::internal::dom_parser_implementation> FParser;
    std::vector<quint8> FUnescaped;
};
