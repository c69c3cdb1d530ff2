#include "platform/VisibleText.h"

#include <gtest/gtest.h>

namespace {

struct TCase {
    const char* Name;
    QString Text;
    QString Shown;
    QString Lines;
};

void PrintTo(const TCase& ACase, std::ostream* AStream) { *AStream << ACase.Name; }

class VisibleTexts : public testing::TestWithParam<TCase> {};

const TCase Cases[] = {
    {"Plain", "Zürich, 日本 & <b>", "Zürich, 日本 & <b>", "Zürich, 日本 & <b>"},
    {"Hebrew", "שלום", "שלום", "שלום"},
    {"JoinedEmoji", "👩\u200D🚀", "👩\u200D🚀", "👩\u200D🚀"},
    {"Bell", "a\ab", "a␇b", "a␇b"},
    {"Escape", "\x1B[31mred", "␛[31mred", "␛[31mred"},
    {"Null", QString(QChar(0)), "␀", "␀"},
    {"Delete", "a\x7F", "a␡", "a␡"},
    {"Tab", "a\tb", "a␉b", "a␉b"},
    {"LineFeed", "a\nb", "a␊b", "a\nb"},
    {"WindowsLine", "a\r\nb", "a␍␊b", "a\nb"},
    {"Return", "a\rb", "a␍b", "a\nb"},
    {"LineSeparator", "a\u2028b", "a␤b", "a\nb"},
    {"ParagraphSeparator", "a\u2029b", "a␤b", "a\nb"},
    {"NextLine", QString(QChar(0x85)), "\\u0085", "\\u0085"},
    {"ControlSequence", QString(QChar(0x9B)), "\\u009B", "\\u009B"},
    {"Override", "moc.\u202Egpj.exe", "moc.\\u202Egpj.exe", "moc.\\u202Egpj.exe"},
    {"Embedding", "\u202A\u202B\u202C\u202D", "\\u202A\\u202B\\u202C\\u202D", "\\u202A\\u202B\\u202C\\u202D"},
    {"Isolate", "\u2066\u2067\u2068\u2069", "\\u2066\\u2067\\u2068\\u2069", "\\u2066\\u2067\\u2068\\u2069"},
    {"Marks", "\u200E\u200F\u061C", "\\u200E\\u200F\\u061C", "\\u200E\\u200F\\u061C"},
    {"ByteOrderMark", "a\uFEFF", "a\\uFEFF", "a\\uFEFF"},
    {"Object", "\uFFFC", "\\uFFFC", "\\uFFFC"},
};

TEST_P(VisibleTexts, ActOnNothing) {
    EXPECT_EQ(VisibleText(GetParam().Text), GetParam().Shown);
    EXPECT_EQ(VisibleLines(GetParam().Text), GetParam().Lines);
}

INSTANTIATE_TEST_SUITE_P(All, VisibleTexts, testing::ValuesIn(Cases),
                         [](const auto& AInfo) { return AInfo.param.Name; });

} // namespace
