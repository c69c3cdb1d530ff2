#include "pages/TransferText.h"

#include <gtest/gtest.h>

namespace {

TEST(TransferText, SizesHaveTwoOrThreeDigitsOfTheirUnit) {
    const std::pair<qint64, const char*> cases[] = {{0, "0 bytes"},
                                                    {1, "1 byte"},
                                                    {1023, "1023 bytes"},
                                                    {1024, "1.0 KiB"},
                                                    {1536, "1.5 KiB"},
                                                    {10'188, "9.9 KiB"},
                                                    {10'240, "10 KiB"},
                                                    {1'048'575, "1.0 MiB"},
                                                    {qint64(1) << 30, "1.0 GiB"},
                                                    {qint64(5) << 40, "5.0 TiB"},
                                                    {qint64(2048) << 40, "2048 TiB"}};
    for (const auto& [bytes, text] : cases)
        EXPECT_EQ(TransferText::Size(bytes).toStdString(), text) << bytes;
}

TEST(TransferText, TimesAreCutNotRounded) {
    const std::pair<qint64, const char*> cases[] = {
        {0, "0 ms"},        {499, "499 ms"},       {500, "0.5 s"},        {999, "0.9 s"},
        {59'999, "59.9 s"}, {60'000, "1 min 0 s"}, {125'400, "2 min 5 s"}};
    for (const auto& [milliseconds, text] : cases)
        EXPECT_EQ(TransferText::Duration(milliseconds).toStdString(), text) << milliseconds;
}

} // namespace
