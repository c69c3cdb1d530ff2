#include "jsoneditor/view/ChunkText_p.h"

#include <algorithm>

namespace {

bool HasNoGlyph(QChar AChar) {
    return AChar.unicode() < 0x20 || AChar == QChar::LineSeparator || AChar == QChar::ParagraphSeparator ||
           AChar == QChar::ObjectReplacementCharacter;
}

} // namespace

QString ChunkDisplayText(const QString& AText) {
    if (std::none_of(AText.cbegin(), AText.cend(), HasNoGlyph))
        return AText;
    QString text = AText;
    std::replace_if(text.begin(), text.end(), HasNoGlyph, QLatin1Char(' '));
    return text;
}
