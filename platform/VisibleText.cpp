#include "platform/VisibleText.h"

#include <algorithm>

namespace {

/// Of the Unicode block of control pictures, which follows the order of the controls.
constexpr char16_t FirstPicture = 0x2400;
constexpr char16_t DeletePicture = 0x2421;
constexpr char16_t NewLinePicture = 0x2424;

bool IsBetween(QChar AChar, char16_t AFirst, char16_t ALast) {
    return AChar.unicode() >= AFirst && AChar.unicode() <= ALast;
}

bool Acts(QChar AChar) {
    const char16_t code = AChar.unicode();
    if (code < 0x7F)
        return code < 0x20;
    return code <= 0x9F || code == 0x061C || IsBetween(AChar, 0x200E, 0x200F) ||
           IsBetween(AChar, 0x2028, 0x202E) || IsBetween(AChar, 0x2066, 0x2069) || code == 0xFEFF ||
           code == 0xFFFC;
}

bool ActsWithinALine(QChar AChar) { return AChar != u'\n' && Acts(AChar); }

void AppendVisible(QString& AText, QChar AChar) {
    const char16_t code = AChar.unicode();
    if (code < 0x20)
        AText += QChar(static_cast<char16_t>(FirstPicture + code));
    else if (code == 0x7F)
        AText += QChar(DeletePicture);
    else if (AChar == QChar::LineSeparator || AChar == QChar::ParagraphSeparator)
        AText += QChar(NewLinePicture);
    else
        AText += QStringLiteral("\\u%1").arg(QString::number(code, 16).toUpper(), 4, u'0');
}

template <class TActs>
QString Visible(const QString& AText, TActs AActs) {
    if (std::none_of(AText.cbegin(), AText.cend(), AActs))
        return AText;
    QString text;
    text.reserve(AText.size());
    for (const QChar character : AText) {
        if (AActs(character))
            AppendVisible(text, character);
        else
            text += character;
    }
    return text;
}

} // namespace

QString VisibleText(const QString& AText) { return Visible(AText, Acts); }

QString VisibleLines(const QString& AText) {
    if (!AText.contains(u'\r') && !AText.contains(QChar::LineSeparator) &&
        !AText.contains(QChar::ParagraphSeparator))
        return Visible(AText, ActsWithinALine);
    QString text = AText;
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    for (const QChar end : {QChar(u'\r'), QChar(QChar::LineSeparator), QChar(QChar::ParagraphSeparator)})
        text.replace(end, u'\n');
    return Visible(text, ActsWithinALine);
}
