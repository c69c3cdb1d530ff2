#include "runtime/json/JsonTokens_p.h"

#include <algorithm>

namespace {

/// Text and places of a window's tokens are in the cache together.
constexpr std::size_t WindowBytes = 64 * 1024;

/// Where the places of no tokens end.
constexpr quint32 NoPlaces[] = {0, 0};

} // namespace

TZOJsonTokens::TZOJsonTokens(const char* AText, std::size_t ASize) : FText(AText), FTextEnd(AText + ASize) {
    FindFrom(FText);
}

void TZOJsonTokens::GoTo(TPlace APlace) {
    const bool isInWindow = APlace >= FWindow && APlace < FWindowEnd && FParser;
    if (!isInWindow)
        return FindFrom(APlace);
    FNext = std::lower_bound<const quint32*>(FParser->structural_indexes.get(), FEnd,
                                             static_cast<quint32>(APlace - FWindow));
}

void TZOJsonTokens::FindFrom(TPlace APlace) {
    std::size_t size = WindowBytes;
    while (APlace < FTextEnd) {
        const char* const end = WindowEnd(APlace, size);
        const auto error = FindBetween(APlace, end);
        if (!error)
            return;
        if (error == simdjson::EMPTY) {
            APlace = end;
        } else if (error == simdjson::UNCLOSED_STRING && end < FTextEnd) {
            // It ended within a string, which may be a long one.
            size *= 2;
        } else {
            FError = error;
            break;
        }
    }
    FWindow = FWindowEnd = FTextEnd;
    FNext = FEnd = NoPlaces;
}

const char* TZOJsonTokens::WindowEnd(TPlace APlace, std::size_t ASize) const {
    if (static_cast<std::size_t>(FTextEnd - APlace) < 2 * ASize)
        return FTextEnd;
    const char* const end = std::find(APlace + ASize, FTextEnd, ',');
    return end == FTextEnd ? end : end + 1;
}

simdjson::error_code TZOJsonTokens::FindBetween(TPlace APlace, const char* AEnd) {
    const auto size = static_cast<std::size_t>(AEnd - APlace);
    if (const auto error = MakeRoom(size))
        return error;
    const auto* bytes = reinterpret_cast<const uint8_t*>(APlace);
    if (const auto error = FParser->stage1(bytes, size, simdjson::stage1_mode::regular))
        return error;
    FWindow = APlace;
    FWindowEnd = AEnd;
    FNext = FParser->structural_indexes.get();
    FEnd = FNext + FParser->n_structural_indexes;
    return simdjson::SUCCESS;
}

simdjson::error_code TZOJsonTokens::MakeRoom(std::size_t ASize) {
    if (FParser && FParser->capacity() >= ASize)
        return simdjson::SUCCESS;
    const auto textSize = static_cast<std::size_t>(FTextEnd - FText);
    const std::size_t room = std::max(ASize, std::min(textSize, 2 * WindowBytes));
    if (FParser)
        return FParser->set_capacity(room);
    // The depth bounds a stack of the parser's second stage, which is not used.
    constexpr std::size_t depth = 1;
    return simdjson::get_active_implementation()->create_dom_parser_implementation(room, depth, FParser);
}

std::string_view TZOJsonTokens::Unescaped(std::string_view AContent) {
    if (FUnescaped.size() < AContent.size() + simdjson::SIMDJSON_PADDING)
        FUnescaped.resize(AContent.size() + simdjson::SIMDJSON_PADDING);
    const auto* end =
        FParser->parse_string(reinterpret_cast<const uint8_t*>(AContent.data()), FUnescaped.data());
    return {reinterpret_cast<const char*>(FUnescaped.data()),
            end ? static_cast<std::size_t>(end - FUnescaped.data()) : 0};
}
