// RFC 8259 to the letter, wherever JSON is read.
#include "tests/runtime/json/ConformanceCases.h"

#include "runtime/json/JsonCodec.h"
#include "runtime/types/Any.h"
#include "runtime/types/JsonText.h"
#include "runtime/types/TypeLibrary.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>

namespace {

const TZOTypeInfo* Any() { return TZOTypeLibrary::Scalar(vkAny); }

/// Whether AText can be read as AType; what was read is written to AAgain.
bool Reads(const TZOTypeInfo* AType, const QByteArray& AText, QByteArray* AAgain = nullptr) {
    TZOValueHolder holder(AType, true);
    try {
        TZOJson::Decode(AText, holder);
    } catch (const EZOJsonError&) {
        EXPECT_FALSE(holder.HasValue());
        return false;
    }
    if (AAgain)
        *AAgain = TZOJson::Encode(holder);
    return true;
}

bool IsUtf8(const QByteArray& AText) {
    return !AText.startsWith("\xEF\xBB\xBF") && QString::fromUtf8(AText).toUtf8() == AText &&
           !AText.contains("\xEF\xBF\xBD");
}

/// AText, which is valid, without what stands between tokens.
QByteArray Dense(const QByteArray& AText) {
    QByteArray dense;
    bool isInString = false;
    for (qsizetype i = 0; i < AText.size(); ++i) {
        const char sign = AText[i];
        if (isInString && sign == '\\')
            dense += AText[i++];
        else if (sign == '"')
            isInString = !isInString;
        if (isInString || !QByteArray(" \t\r\n").contains(sign))
            dense += AText[i];
    }
    return dense;
}

int DepthOf(const QByteArray& AText) { return int(AText.count('[') + AText.count('{')); }

} // namespace

TEST(JsonConformance, HasEnoughCases) {
    int taken = 0, choices = 0;
    const auto all = JsonCases::All();
    for (const TJsonCase& item : all) {
        taken += item.IsTaken;
        choices += item.IsChoice;
    }
    EXPECT_GT(all.size(), 3000);
    EXPECT_GT(taken, 200);
    EXPECT_GT(choices, 15);
}

TEST(JsonConformance, AnyValuesAreJudgedRight) {
    for (const TJsonCase& item : JsonCases::All()) {
        EXPECT_EQ(JsonText::IsValid(item.Text), item.IsTaken) << item.Name;
        if (IsUtf8(item.Text)) {
            EXPECT_EQ(ZOAny::IsValidJson(QString::fromUtf8(item.Text)), item.IsTaken) << item.Name;
        }
    }
}

TEST(JsonConformance, AnyValuesAreReadRightAndWrittenAsTheyCame) {
    for (const TJsonCase& item : JsonCases::All()) {
        QByteArray again;
        EXPECT_EQ(Reads(Any(), item.Text, &again), item.IsTaken) << item.Name;
        if (item.IsTaken) {
            EXPECT_TRUE(again == Dense(item.Text)) << item.Name;
        }
    }
}

TEST(JsonConformance, ElementsAndItemsOfAnyKindAreReadRight) {
    TZOTypeLibrary types;
    const TZOTypeInfo* list = types.NewList(Any());
    const TZOTypeInfo* map = types.NewMap(Any());
    for (const TJsonCase& item : JsonCases::All()) {
        // An empty array is one, and one array more may be one too many.
        if (item.Text.trimmed().isEmpty() || DepthOf(item.Text) >= JsonText::MaxDepth)
            continue;
        QByteArray again;
        const QByteArray element = '[' + item.Text + "\n]", value = "{\"a\":" + item.Text + "\n}";
        const bool isElement = Reads(list, element, &again);
        // Two values behind each other are two elements.
        if (item.Text != "0,0" && item.Text != "1,5") {
            EXPECT_EQ(isElement, item.IsTaken) << item.Name;
        }
        if (isElement) {
            EXPECT_TRUE(again == Dense(element)) << item.Name;
        }
        EXPECT_EQ(Reads(map, value, &again), item.IsTaken) << item.Name;
        if (item.IsTaken) {
            EXPECT_TRUE(again == Dense(value)) << item.Name;
        }
    }
}

TEST(JsonConformance, WhatIsSkippedIsCheckedAllTheSame) {
    TZOTypeLibrary types;
    const TZOTypeInfo* object = types.NewObject(QStringLiteral("Object"))
                                    .Property(QStringLiteral("known"), TZOTypeLibrary::Scalar(vkInteger))
                                    .Type();
    for (const TJsonCase& item : JsonCases::All()) {
        if (DepthOf(item.Text) >= JsonText::MaxDepth)
            continue;
        QByteArray again;
        EXPECT_EQ(Reads(object, "{\"other\":" + item.Text + "\n,\"known\":1}", &again), item.IsTaken)
            << item.Name;
        if (item.IsTaken) {
            EXPECT_EQ(again, "{\"known\":1}") << item.Name;
        }
    }
}

TEST(JsonConformance, StringsBecomeTheirCharacters) {
    const TZOTypeInfo* text = TZOTypeLibrary::Scalar(vkString);
    for (const TJsonCase& item : JsonCases::Strings()) {
        QByteArray again, twice;
        const bool isTaken = item.IsTaken && !item.HasHalfCharacter;
        ASSERT_EQ(Reads(text, item.Text, &again), isTaken) << item.Name;
        if (!isTaken)
            continue;
        EXPECT_TRUE(Reads(text, again, &twice) && twice == again) << item.Name;
        // Without escapes it is the same text.
        if (!item.Text.contains('\\') && !item.Text.contains('\x7F')) {
            EXPECT_TRUE(again == item.Text) << item.Name;
        }
    }
}

TEST(JsonConformance, NumbersBecomeTheNearestFloat) {
    const TZOTypeInfo* number = TZOTypeLibrary::Scalar(vkFloat);
    for (const TJsonCase& item : JsonCases::Numbers()) {
        double expected = 0;
        const auto result = std::from_chars(item.Text.cbegin(), item.Text.cend(), expected);
        // Too large for a float, or nearer to zero than any.
        const bool fits = result.ec == std::errc();
        QByteArray again;
        ASSERT_EQ(Reads(number, item.Text, &again), item.IsTaken && fits) << item.Name;
        if (item.IsTaken && fits) {
            EXPECT_EQ(again.toDouble(), expected) << item.Name;
        }
    }
}

TEST(JsonConformance, WholeNumbersAreExactOrRefused) {
    const TZOTypeInfo* number = TZOTypeLibrary::Scalar(vkInt64);
    struct TCase {
        const char* Text;
        const char* Value; // null: refused
    };
    for (const TCase& item :
         std::initializer_list<TCase>{{"0", "0"},
                                      {"-0", "0"},
                                      {"9007199254740993", "9007199254740993"},
                                      {"9223372036854775807", "9223372036854775807"},
                                      {"-9223372036854775808", "-9223372036854775808"},
                                      {"9223372036854775807.0", "9223372036854775807"},
                                      {"922337203685477580.7e1", "9223372036854775807"},
                                      {"9223372036854775808", nullptr},
                                      {"-9223372036854775809", nullptr},
                                      {"18446744073709551617", nullptr},
                                      {"1e18", "1000000000000000000"},
                                      {"1e19", nullptr},
                                      {"1.5e1", "15"},
                                      {"10e-1", "1"},
                                      {"1e-1", nullptr},
                                      {"0.5", nullptr},
                                      {"-9.223372036854775808e18", "-9223372036854775808"},
                                      {"-9.223372036854775809e18", nullptr},
                                      {"9999999999999999999", nullptr},
                                      {"0.000000000000000000001e21", "1"},
                                      {"12000e-3", "12"},
                                      {"12000e-4", nullptr},
                                      {"-0.0e5", "0"},
                                      {"1e99999999999999999999", nullptr},
                                      {"0e99999999999999999999", "0"},
                                      {"0e999999", "0"},
                                      {"1e-999999", nullptr},
                                      {"9223372036854775807.1", nullptr},
                                      {"9007199254740992.5", nullptr}}) {
        QByteArray again;
        EXPECT_EQ(Reads(number, item.Text, &again), item.Value != nullptr) << item.Text;
        if (item.Value) {
            EXPECT_EQ(again, item.Value) << item.Text;
        }
    }
}
