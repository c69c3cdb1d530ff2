#include "runtime/json/TextBlocks_p.h"

#include "platform/Utf8.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace {

/// Code units of the largest block; a text from OwnBlockFrom bytes on shares none.
constexpr std::size_t LargestBlock = 1024;
constexpr std::size_t OwnBlockFrom = 256;

constexpr std::size_t Stride = TZOTextBlocks::SlackBytes;
using TBytes = quint8 __attribute__((vector_size(Stride)));
using TUnits = char16_t __attribute__((vector_size(Stride * sizeof(char16_t))));

/// Writes the code units of a text that is not all ASCII and returns the place behind them.
char16_t* PutUnits(std::string_view AText, char16_t* AUnits) {
    const auto* bytes = reinterpret_cast<const quint8*>(AText.data());
    const auto* end = bytes + AText.size();
    const auto more = [&] { return *bytes++ & 0x3Fu; };
    while (bytes < end) {
        char32_t code = *bytes++;
        if (code >= 0xF0) {
            code = (code & 7) << 18;
            code |= more() << 12;
            code |= more() << 6;
            code |= more();
            *AUnits++ = QChar::highSurrogate(code);
            *AUnits++ = QChar::lowSurrogate(code);
            continue;
        }
        if (code >= 0xE0) {
            code = (code & 15) << 12;
            code |= more() << 6;
            code |= more();
        } else if (code >= 0xC0) {
            code = (code & 31) << 6;
            code |= more();
        }
        *AUnits++ = static_cast<char16_t>(code);
    }
    return AUnits;
}

/// The same for any text, as many bytes at a time as fit a register while they are ASCII. Up to Stride units
/// behind the text's own are overwritten.
char16_t* PutText(std::string_view AText, char16_t* AUnits) {
    for (std::size_t i = 0; i < AText.size(); i += Stride) {
        TBytes bytes;
        std::memcpy(&bytes, AText.data() + i, Stride);
        quint64 halves[2];
        std::memcpy(halves, &bytes, Stride);
        if ((halves[0] | halves[1]) & 0x8080808080808080)
            return PutUnits(AText.substr(i), AUnits + i);
        const TUnits units = __builtin_convertvector(bytes, TUnits);
        std::memcpy(AUnits + i, &units, sizeof units);
    }
    return AUnits + AText.size();
}

} // namespace

QString TZOTextBlocks::Make(std::string_view AText) {
    if (AText.empty() || AText.size() >= OwnBlockFrom)
        return TextFromUtf8(AText);
    const std::size_t most = AText.size() + 1 + Stride;
    if (static_cast<std::size_t>(FEnd - FFree) < most)
        Open(most);
    char16_t* const text = FFree;
    char16_t* const end = PutText(AText, text);
    *end = u'\0';
    FFree = end + 1;
    --FSpareReferences;
    return QString(QString::DataPointer(FBlock, text, end - text));
}

void TZOTextBlocks::Open(std::size_t ASize) {
    Close();
    const std::size_t size = std::max(ASize, FNextSize);
    const auto [block, units] = TBlock::allocate(qsizetype(size));
    if (!block)
        throw std::bad_alloc();
    FBlock = block;
    FFree = units;
    FEnd = units + size;
    FNextSize = std::min(FNextSize * 2, LargestBlock);
    // Counted all at once: each text takes a unit at least. One more is our own.
    FSpareReferences = static_cast<int>(size);
    FBlock->ref_.storeRelaxed(FSpareReferences + 1);
}

void TZOTextBlocks::Close() noexcept {
    const int givenBack = FSpareReferences + 1;
    if (FBlock && FBlock->ref_.fetchAndAddOrdered(-givenBack) == givenBack)
        TBlock::deallocate(FBlock);
    FBlock = nullptr;
}
