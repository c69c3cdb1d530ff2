#include "runtime/json/JsonTokens_p.h"

TZOJsonTokens::TZOJsonTokens(const char* AText, std::size_t ASize) : FText(AText), FSize(ASize) {}

simdjson::error_code TZOJsonTokens::Find() {
    if (FSize == 0)
        return simdjson::EMPTY;
    // The depth bounds a stack of the parser's second stage, which is not used.
    constexpr std::size_t depth = 1;
    auto error =
        simdjson::get_active_implementation()->create_dom_parser_implementation(FSize, depth, FParser);
    if (!error)
        error =
            FParser->stage1(reinterpret_cast<const uint8_t*>(FText), FSize, simdjson::stage1_mode::regular);
    if (error)
        return error;
    // Behind the last token stands the text's size, twice.
    FNext = FParser->structural_indexes.get();
    FEnd = FNext + FParser->n_structural_indexes;
    return simdjson::SUCCESS;
}

std::string_view TZOJsonTokens::Unescaped(std::string_view AContent) {
    if (FUnescaped.size() < AContent.size() + simdjson::SIMDJSON_PADDING)
        FUnescaped.resize(AContent.size() + simdjson::SIMDJSON_PADDING);
    const auto* end =
        FParser->parse_string(reinterpret_cast<const uint8_t*>(AContent.data()), FUnescaped.data());
    return {reinterpret_cast<const char*>(FUnescaped.data()),
            end ? static_cast<std::size_t>(end - FUnescaped.data()) : 0};
}
