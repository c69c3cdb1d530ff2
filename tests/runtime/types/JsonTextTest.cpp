#include "runtime/types/JsonText.h"
#include "runtime/types/Any.h"

#include <gtest/gtest.h>

namespace {

QByteArray Quoted(const QString& AText) {
    QByteArray json;
    JsonText::AppendQuoted(json, AText);
    return json;
}

} // namespace

class ValidJson : public testing::TestWithParam<const char*> {};

TEST_P(ValidJson, IsAccepted) { EXPECT_TRUE(JsonText::IsValid(GetParam())); }

INSTANTIATE_TEST_SUITE_P(Texts, ValidJson,
                         testing::Values("null", " true ", "false", "0", "-0", "1.5e-10", "1E+2",
                                         "123456789012345678901234567890", "1e400", "\"\"",
                                         "\"a\\u00e9\\n\\/\"", "\"\\ud800\"", "[]", "{}", "[ ]", "{ }",
                                         "[1,[2,{\"a\":[]}],null]", "{\"a\":1,\"a\":2}",
                                         "\t{\"a\" : [ 1 , 2 ]\r\n}", "\"\xF0\x9F\x98\x80\"", "{\"\":0}"));

class InvalidJson : public testing::TestWithParam<const char*> {};

TEST_P(InvalidJson, IsRefused) { EXPECT_FALSE(JsonText::IsValid(GetParam())); }

INSTANTIATE_TEST_SUITE_P(Texts, InvalidJson,
                         testing::Values("", " ", "nul", "True", "01", "-", "+1", "1.", ".5", "1e", "1e+",
                                         "0x10", "NaN", "Infinity", "\"", "\"\\\"", "\"\\x\"", "\"\\u12g4\"",
                                         "\"\n\"", "'a'", "[", "]", "[1", "[1,]", "[,1]", "[1 2]", "{",
                                         "{\"a\"}", "{\"a\":}", "{\"a\":1,}", "{a:1}", "{1:1}",
                                         "{\"a\":1 \"b\":2}", "[1}", "{\"a\":1]", "1 2", "{}{}", "null,",
                                         "/**/1", "\"\x80\"", "\"\xED\xA0\x80\"", "\xEF\xBB\xBF{}"));

TEST(JsonText, BoundsTheDepth) {
    const auto nested = [](int ADepth) { return QByteArray(ADepth, '[') + QByteArray(ADepth, ']'); };
    EXPECT_TRUE(JsonText::IsValid(nested(JsonText::MaxDepth)));
    EXPECT_FALSE(JsonText::IsValid(nested(JsonText::MaxDepth + 1)));
    EXPECT_FALSE(JsonText::IsValid(nested(1'000'000)));
}

TEST(JsonText, QuotesWhatJsonCannotHoldPlain) {
    EXPECT_EQ(Quoted(QStringLiteral("a\"b\\c\n\r\t")), "\"a\\\"b\\\\c\\n\\r\\t\"");
    EXPECT_EQ(Quoted(QString(QChar(1))), "\"\\u0001\"");
    EXPECT_EQ(Quoted(QString::fromUtf8("h\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80")),
              "\"h\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80\"");
    EXPECT_EQ(Quoted(QString(QChar(0xD800)) + QLatin1Char('x')), "\"\\ud800x\"");
    EXPECT_EQ(Quoted(QString()), "\"\"");
}

TEST(JsonText, FindsHalfCharactersAmongEscapes) {
    EXPECT_TRUE(JsonText::HasLoneSurrogate("\\ud800"));
    EXPECT_TRUE(JsonText::HasLoneSurrogate("a\\udc00b"));
    EXPECT_TRUE(JsonText::HasLoneSurrogate("\\ud83d\\u0041"));
    EXPECT_FALSE(JsonText::HasLoneSurrogate("\\ud83d\\ude00"));
    EXPECT_FALSE(JsonText::HasLoneSurrogate("\\\\ud800"));
    for (const char* half :
         {"\\ud7ff\\udc00", "\\udbff", "\\udc00", "\\udfff", "\\udbff\\ue000", "\\ud800\\udbff"})
        EXPECT_TRUE(JsonText::HasLoneSurrogate(half)) << half;
    for (const char* whole : {"plain", "\\ud7ff", "\\ue000", "\\ud800\\udc00", "\\udbff\\udfff"})
        EXPECT_FALSE(JsonText::HasLoneSurrogate(whole)) << whole;
}

TEST(AnyValue, KeepsDigitsAndKeyOrderButNotBlanks) {
    const QString text = QStringLiteral("{ \"z\": 1.000000000000000000001, \"a\": [ 1e400, \"x y\" ] }");
    ASSERT_TRUE(ZOAny::IsValidJson(text));
    EXPECT_EQ(ZOAny::FromJson(text).GetJson(),
              QStringLiteral("{\"z\":1.000000000000000000001,\"a\":[1e400,\"x y\"]}"));
}

TEST(AnyValue, IsNullWhenNew) { EXPECT_EQ(ZOAny().GetJson(), QStringLiteral("null")); }

TEST(AnyValue, RefusesTextWithHalfCharacters) {
    EXPECT_FALSE(ZOAny::IsValidJson(QLatin1Char('"') + QString(QChar(0xD800)) + QLatin1Char('"')));
    EXPECT_FALSE(ZOAny::IsValidJson(QStringLiteral("{")));
}
