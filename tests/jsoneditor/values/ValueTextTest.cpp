#include "jsoneditor/values/ValueText.h"

#include "platform/Exceptions.h"
#include "runtime/types/TypeLibrary.h"
#include "runtime/types/ValueHolder.h"

#include <gtest/gtest.h>

namespace {

struct TTextCase {
    TZOValueKind Kind;
    const char* Typed;
    const char* Shown;
};

class GoodText : public testing::TestWithParam<TTextCase> {};
class BadText : public testing::TestWithParam<TTextCase> {};

QString TypedAndShown(TZOValueKind AKind, const char* ATyped) {
    TZOValueHolder holder(TZOTypeLibrary::Scalar(AKind), true);
    void* value = nullptr;
    holder.GetByRef(value);
    ValueText::FromText(holder.Type(), QString::fromUtf8(ATyped), value);
    return ValueText::ToText(holder.Type(), value);
}

} // namespace

TEST_P(GoodText, IsReadAndShownAgain) {
    EXPECT_EQ(TypedAndShown(GetParam().Kind, GetParam().Typed), QString::fromUtf8(GetParam().Shown));
}

INSTANTIATE_TEST_SUITE_P(
    All, GoodText,
    testing::Values(TTextCase{vkString, "", ""}, TTextCase{vkString, " \"x\" ", " \"x\" "},
                    TTextCase{vkInteger, "-2147483648", "-2147483648"}, TTextCase{vkInteger, " 7 ", "7"},
                    TTextCase{vkInt64, "-5", "-5"}, TTextCase{vkInt64, "2147483647", "2147483647"},
                    TTextCase{vkBoolean, "true", "True"}, TTextCase{vkBoolean, "FALSE", "False"},
                    TTextCase{vkBoolean, "1", "True"}, TTextCase{vkFloat, "1e3", "1000"},
                    TTextCase{vkFloat, "0.10", "0.1"},
                    TTextCase{vkDateTime, "2024-02-29T12:00:00.5+01:00", "2024-02-29T11:00:00.5Z"},
                    TTextCase{vkDateTime, "2024-02-29", "2024-02-29T00:00:00Z"},
                    TTextCase{vkDate, "2024-02-29", "2024-02-29"},
                    TTextCase{vkDate, "2024-02-29T23:59:59Z", "2024-02-29"},
                    TTextCase{vkAny, " [1, 2.50] ", "[1,2.50]"}, TTextCase{vkAny, "null", "null"},
                    TTextCase{vkUpload, "x", "(Upload)"}, TTextCase{vkDownload, "x", "(Download)"}));

TEST_P(BadText, IsRefusedWithAReason) {
    try {
        TypedAndShown(GetParam().Kind, GetParam().Typed);
        ADD_FAILURE() << "taken: " << GetParam().Typed;
    } catch (const EConvertError& e) {
        EXPECT_EQ(e.Message(), QString::fromUtf8(GetParam().Shown));
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, BadText,
    testing::Values(TTextCase{vkInteger, "abc", "'abc' is not a valid integer value"},
                    TTextCase{vkInteger, "2147483648", "'2147483648' is not a valid integer value"},
                    TTextCase{vkInt64, "3000000000", "'3000000000' is not a valid integer value"},
                    TTextCase{vkBoolean, "yes", "'yes' is not a valid Boolean value"},
                    TTextCase{vkFloat, "1,5,0", "'1,5,0' is not a valid floating point value"},
                    TTextCase{vkAny, "{", "ZOAny value should be a valid JSON value"},
                    TTextCase{vkAny, "", "ZOAny value should be a valid JSON value"},
                    TTextCase{vkAny, "1 2", "ZOAny value should be a valid JSON value"}));

TEST(ValueText, RefusesWhatIsNoDate) {
    EXPECT_THROW(TypedAndShown(vkDate, "2023-02-29"), EConvertError);
    EXPECT_THROW(TypedAndShown(vkDateTime, "tomorrow"), EConvertError);
}

TEST(ValueText, CallsContainersByTheirKindAndTheRestValue) {
    EXPECT_EQ(ValueText::Hint(vkAny), QStringLiteral("any"));
    EXPECT_EQ(ValueText::Hint(vkUnion), QStringLiteral("union"));
    EXPECT_EQ(ValueText::Hint(vkUpload), QStringLiteral("value"));
    EXPECT_FALSE(ValueText::IsContainer(vkDownload));
    EXPECT_TRUE(ValueText::IsContainer(vkList));
}
