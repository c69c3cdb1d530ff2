#include "jsoneditor/view/ShapedTexts_p.h"

#include <utility>

namespace {

constexpr qsizetype MaxTexts = 512;
/// Longer ones are seldom the same.
constexpr qsizetype MaxLength = 64;

} // namespace

void TZOShapedTexts::UseFont(const QFont& AFont) {
    if (FKnowsFont && FFont == AFont)
        return;
    Clear();
    FFont = AFont;
    FPlainFont = TZOPlainFont::Of(AFont);
    FKnowsFont = true;
}

std::shared_ptr<const TZOShapedText> TZOShapedTexts::Get(const QString& AText) {
    if (AText.size() > MaxLength)
        return std::make_shared<const TZOShapedText>(AText, FFont);
    if (const auto found = FRecent.constFind(AText); found != FRecent.cend())
        return *found;
    std::shared_ptr<const TZOShapedText> shaped = FEarlier.take(AText);
    if (!shaped)
        shaped = std::make_shared<const TZOShapedText>(AText, FFont);
    if (FRecent.size() >= MaxTexts)
        FEarlier = std::exchange(FRecent, {});
    if (FRecent.isEmpty())
        FRecent.reserve(MaxTexts);
    FRecent.insert(AText, shaped);
    return shaped;
}

void TZOShapedTexts::Clear() {
    FRecent.clear();
    FEarlier.clear();
    FKnowsFont = false;
}
