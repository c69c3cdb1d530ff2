// The strings of one response.
#pragma once

#include "runtime/json/ShortTexts_p.h"
#include "runtime/json/TextBlocks_p.h"

#include <memory>

class TZOJsonTexts {
public:
    /// The string of a text without escapes as it stands in the document, which has padding behind it.
    QString Get(std::string_view AText) {
        if (AText.empty() || AText.size() > TZOShortTexts::MaxBytes)
            return FBlocks.Make(AText);
        if (!FShortTexts) {
            if (++FShortTextCount < TextsOfASmallResponse)
                return FBlocks.Make(AText);
            FShortTexts = std::make_unique<TZOShortTexts>();
        }
        return FShortTexts->Get(AText, FBlocks);
    }
    /// The string of any text; SlackBytes bytes behind it can be read.
    QString GetUnescaped(std::string_view AText) { return FBlocks.Make(AText); }

private:
    static constexpr int TextsOfASmallResponse = 64;

    TZOTextBlocks FBlocks;
    int FShortTextCount = 0;
    std::unique_ptr<TZOShortTexts> FShortTexts; ///< none in a small response, which ends before it pays
};
