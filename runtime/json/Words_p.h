// Short texts, many bytes at a time: a call of the library's functions costs more than what it does for
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

/// Whether there is a backslash in the text, or among up to 15 bytes behind it, which can be read.
inline bool MayHaveBackslash(std::string_view AText) {
    constexpr std::size_t few = 64;
    constexpr std::size_t step = 16;
    using TBytes = quint8 __attribute__((vector_size(step)));
    if (AText.size() > few)
        return AText.find('\\') != AText.npos;
    TBytes found{};
    for (std::size_t i = 0; i < AText.size(); i += step) {
        TBytes bytes;
        std::memcpy(&bytes, AText.data() + i, step);
        found |= TBytes(bytes == quint8('\\'));
    }
    quint64 halves[2];
    std::memcpy(halves, &found, step);
    return (halves[0] | halves[1]) != 0;
}

} // namespace Words
