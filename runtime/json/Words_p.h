// Short texts, eight bytes at a time: a call of the library's functions costs more than what it does for
// them.
#pragma once

#include <QtGlobal>

#include <cstddef>
#include <cstring>
#include <string_view>

namespace Words {

inline constexpr std::size_t Size = sizeof(quint64);

inline quint64 At(const char* APlace) {
    quint64 word = 0;
    std::memcpy(&word, APlace, Size);
    return word;
}

/// The first ASize bytes of AWord, 1 or more of them, at its end and behind zeros.
inline quint64 First(quint64 AWord, std::size_t ASize) {
    return ASize < Size ? AWord << ((Size - ASize) * 8) : AWord;
}

/// Whether ASize bytes are the same, 1 or more. Up to 7 bytes behind them are read.
inline bool AreEqual(const char* AFirst, const char* ASecond, std::size_t ASize) {
    for (; ASize > Size; ASize -= Size, AFirst += Size, ASecond += Size) {
        if (At(AFirst) != At(ASecond))
            return false;
    }
    return First(At(AFirst) ^ At(ASecond), ASize) == 0;
}

/// Up to 7 bytes behind the text are read.
inline bool HasBackslash(std::string_view AText) {
    constexpr std::size_t few = 64;
    constexpr quint64 ones = 0x0101010101010101;
    if (AText.size() > few)
        return AText.find('\\') != AText.npos;
    for (std::size_t i = 0; i < AText.size(); i += Size) {
        // Backslashes become zeros; the lowest zero byte, and no other before it, borrows its highest bit.
        const quint64 word = First(At(AText.data() + i), AText.size() - i) ^ (ones * '\\');
        if ((word - ones) & ~word & (ones * 0x80))
            return true;
    }
    return false;
}

} // namespace Words
