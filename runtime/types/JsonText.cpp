#include "runtime/types/JsonText.h"

#include <QStringView>

#include <simdjson.h>

#include <cstdint>

namespace {

bool IsDigit(char AChar) { return AChar >= '0' && AChar <= '9'; }
bool IsBlank(char AChar) { return AChar == ' ' || AChar == '\n' || AChar == '\r' || AChar == '\t'; }

int HexValue(char AChar) {
    if (IsDigit(AChar))
        return AChar - '0';
    const char lower = static_cast<char>(AChar | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// The code unit of the four hexadecimal digits at APlace, or -1.
int HexUnit(std::string_view AText, std::size_t APlace) {
    if (APlace + 4 > AText.size())
        return -1;
    int unit = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const int digit = HexValue(AText[APlace + i]);
        if (digit < 0)
            return -1;
        unit = unit * 16 + digit;
    }
    return unit;
}

/// One pass over a text, without recursion: AOpen remembers what is open.
class TChecker {
public:
    explicit TChecker(std::string_view AText) : FText(AText) {}

    bool Run() {
        if (!Value())
            return false;
        while (!FOpen.empty()) {
            if (!AfterValue())
                return false;
        }
        SkipBlanks();
        return FPlace == FText.size();
    }

private:
    char Peek() const { return FPlace < FText.size() ? FText[FPlace] : '\0'; }

    bool Take(char AChar) {
        SkipBlanks();
        if (Peek() != AChar || FPlace == FText.size())
            return false;
        ++FPlace;
        return true;
    }

    void SkipBlanks() {
        while (FPlace < FText.size() && IsBlank(FText[FPlace]))
            ++FPlace;
    }

    bool Literal(std::string_view AWord) {
        if (FText.substr(FPlace, AWord.size()) != AWord)
            return false;
        FPlace += AWord.size();
        return true;
    }

    bool String() {
        if (!Take('"'))
            return false;
        const std::size_t start = FPlace;
        while (FPlace < FText.size() && FText[FPlace] != '"')
            FPlace += FText[FPlace] == '\\' ? 2 : 1;
        if (FPlace >= FText.size())
            return false;
        return JsonText::IsStringContent(FText.substr(start, FPlace++ - start));
    }

    bool Number() {
        const std::size_t start = FPlace;
        while (FPlace < FText.size() && std::string_view("+-.eE0123456789").find(FText[FPlace]) != FText.npos)
            ++FPlace;
        return JsonText::IsNumber(FText.substr(start, FPlace - start));
    }

    bool Key() { return String() && Take(':'); }

    /// A scalar, or the opening of a container down to its first scalar or its closing.
    bool Value() {
        while (true) {
            SkipBlanks();
            switch (Peek()) {
            case '{':
            case '[': {
                if (FOpen.size() == JsonText::MaxDepth)
                    return false;
                const bool isObject = FText[FPlace++] == '{';
                if (Take(isObject ? '}' : ']'))
                    return true;
                FOpen.push_back(isObject ? '}' : ']');
                if (isObject && !Key())
                    return false;
                break;
            }
            case '"':
                return String();
            case 't':
                return Literal("true");
            case 'f':
                return Literal("false");
            case 'n':
                return Literal("null");
            default:
                return Number();
            }
        }
    }

    bool AfterValue() {
        if (Take(FOpen.back())) {
            FOpen.pop_back();
            return true;
        }
        return Take(',') && (FOpen.back() == ']' || Key()) && Value();
    }

    std::string_view FText;
    std::size_t FPlace = 0;
    std::string FOpen;
};

char* PutEscape(char* APlace, ushort AUnit) {
    static constexpr char hex[] = "0123456789abcdef";
    *APlace++ = '\\';
    switch (AUnit) {
    case '"':
    case '\\':
        *APlace++ = static_cast<char>(AUnit);
        return APlace;
    case '\n':
        *APlace++ = 'n';
        return APlace;
    case '\r':
        *APlace++ = 'r';
        return APlace;
    case '\t':
        *APlace++ = 't';
        return APlace;
    default:
        break;
    }
    *APlace++ = 'u';
    for (int shift = 12; shift >= 0; shift -= 4)
        *APlace++ = hex[(AUnit >> shift) & 15];
    return APlace;
}

bool NeedsEscape(ushort AUnit) { return AUnit < 0x20 || AUnit == '"' || AUnit == '\\'; }

/// Writes one code point as UTF-8 and returns the place behind it.
char* PutUtf8(char* APlace, char32_t ACode) {
    if (ACode < 0x80) {
        *APlace++ = static_cast<char>(ACode);
    } else if (ACode < 0x800) {
        *APlace++ = static_cast<char>(0xC0 | (ACode >> 6));
        *APlace++ = static_cast<char>(0x80 | (ACode & 0x3F));
    } else if (ACode < 0x10000) {
        *APlace++ = static_cast<char>(0xE0 | (ACode >> 12));
        *APlace++ = static_cast<char>(0x80 | ((ACode >> 6) & 0x3F));
        *APlace++ = static_cast<char>(0x80 | (ACode & 0x3F));
    } else {
        *APlace++ = static_cast<char>(0xF0 | (ACode >> 18));
        *APlace++ = static_cast<char>(0x80 | ((ACode >> 12) & 0x3F));
        *APlace++ = static_cast<char>(0x80 | ((ACode >> 6) & 0x3F));
        *APlace++ = static_cast<char>(0x80 | (ACode & 0x3F));
    }
    return APlace;
}

} // namespace

bool JsonText::IsValid(QByteArrayView AText) {
    const std::string_view text(AText.data(), static_cast<std::size_t>(AText.size()));
    return simdjson::validate_utf8(text.data(), text.size()) && TChecker(text).Run();
}

bool JsonText::IsNumber(std::string_view AToken) {
    std::size_t place = 0;
    const auto digits = [&] {
        const std::size_t start = place;
        while (place < AToken.size() && IsDigit(AToken[place]))
            ++place;
        return place - start;
    };
    if (place < AToken.size() && AToken[place] == '-')
        ++place;
    const std::size_t first = place;
    const std::size_t whole = digits();
    if (whole == 0 || (whole > 1 && AToken[first] == '0'))
        return false;
    if (place < AToken.size() && AToken[place] == '.') {
        ++place;
        if (digits() == 0)
            return false;
    }
    if (place < AToken.size() && (AToken[place] | 0x20) == 'e') {
        ++place;
        if (place < AToken.size() && (AToken[place] == '+' || AToken[place] == '-'))
            ++place;
        if (digits() == 0)
            return false;
    }
    return place == AToken.size();
}

bool JsonText::IsStringContent(std::string_view AContent) {
    for (std::size_t i = 0; i < AContent.size(); ++i) {
        if (static_cast<unsigned char>(AContent[i]) < 0x20 || AContent[i] == '"')
            return false;
        if (AContent[i] != '\\')
            continue;
        if (++i == AContent.size())
            return false;
        if (AContent[i] == 'u') {
            if (HexUnit(AContent, i + 1) < 0)
                return false;
            i += 4;
        } else if (std::string_view("\"\\/bfnrt").find(AContent[i]) == std::string_view::npos) {
            return false;
        }
    }
    return true;
}

bool JsonText::HasLoneSurrogate(std::string_view AContent) {
    for (std::size_t i = AContent.find('\\'); i != std::string_view::npos; i = AContent.find('\\', i)) {
        if (AContent[i + 1] != 'u') {
            i += 2;
            continue;
        }
        const int unit = HexUnit(AContent, i + 2);
        i += 6;
        if (unit >= 0xDC00 && unit <= 0xDFFF)
            return true;
        if (unit < 0xD800 || unit > 0xDBFF)
            continue;
        const int low = AContent.substr(i, 2) == "\\u" ? HexUnit(AContent, i + 2) : -1;
        if (low < 0xDC00 || low > 0xDFFF)
            return true;
        i += 6;
    }
    return false;
}

QByteArray JsonText::WithoutWhiteSpace(QByteArray AText) {
    if (std::find_if(AText.cbegin(), AText.cend(), IsBlank) == AText.cend())
        return AText;
    QByteArray result(AText.size() + qsizetype(simdjson::SIMDJSON_PADDING), Qt::Uninitialized);
    std::size_t size = 0;
    const auto error =
        simdjson::minify(AText.constData(), static_cast<std::size_t>(AText.size()), result.data(), size);
    if (error)
        return AText;
    result.resize(static_cast<qsizetype>(size));
    return result;
}

char* JsonText::PutQuoted(char* APlace, QStringView AText) {
    const auto* text = reinterpret_cast<const ushort*>(AText.utf16());
    const auto* end = text + AText.size();
    *APlace++ = '"';
    while (text < end) {
        const ushort unit = *text++;
        if (NeedsEscape(unit))
            APlace = PutEscape(APlace, unit);
        else if (unit < 0x80)
            *APlace++ = static_cast<char>(unit);
        else if (QChar::isHighSurrogate(unit) && text < end && QChar::isLowSurrogate(*text))
            APlace = PutUtf8(APlace, QChar::surrogateToUcs4(unit, *text++));
        else if (QChar::isSurrogate(unit))
            APlace = PutEscape(APlace, unit);
        else
            APlace = PutUtf8(APlace, unit);
    }
    *APlace++ = '"';
    return APlace;
}

void JsonText::AppendQuoted(QByteArray& AJson, QStringView AText) {
    const qsizetype before = AJson.size();
    AJson.resize(before + QuotedSize(AText));
    AJson.resize(PutQuoted(AJson.data() + before, AText) - AJson.constData());
}
