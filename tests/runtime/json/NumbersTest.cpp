#include "runtime/json/JsonCodec.h"

#include "runtime/types/JsonText.h"
#include "runtime/types/TypeLibrary.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <random>

namespace {

constexpr const char* Texts[] = {"0",
                                 "-0",
                                 "00",
                                 "01",
                                 "-01",
                                 "-",
                                 "--1",
                                 "+1",
                                 "1-",
                                 ".5",
                                 "5.",
                                 "-.5",
                                 "0.5",
                                 "00.5",
                                 "1.2.3",
                                 "-0.0",
                                 "0.1",
                                 "0.3",
                                 "9007199254740993",
                                 "9999999999999999",
                                 "-9999999999999999",
                                 "99999999999999999",
                                 "0.9999999999999999",
                                 "999999999999999.9",
                                 "12345678901234567890.5",
                                 "123456789012345678",
                                 "999999999999999999",
                                 "-999999999999999999",
                                 "1000000000000000000",
                                 "9223372036854775807",
                                 "-9223372036854775808",
                                 "1e2",
                                 "1.5e-3",
                                 "1,5",
                                 "1x"};

template <class T>
bool Read(TZOValueKind AKind, const char* AText, T& ANumber) {
    TZOValueHolder holder(TZOTypeLibrary::Scalar(AKind), true);
    try {
        TZOJson::Decode(AText, holder);
    } catch (const EZOJsonError&) {
        return false;
    }
    void* ref = nullptr;
    const bool hasValue = holder.GetValue(ref);
    if (hasValue)
        ANumber = *static_cast<T*>(ref);
    return hasValue;
}

} // namespace

TEST(JsonNumbers, AreTheNearestDoubles) {
    for (const char* text : Texts) {
        double number = 0;
        const bool isRead = Read(vkFloat, text, number);
        EXPECT_EQ(isRead, JsonText::IsNumber(text)) << text;
        if (!isRead)
            continue;
        const double expected = std::strtod(text, nullptr);
        EXPECT_EQ(std::memcmp(&number, &expected, sizeof number), 0) << text;
    }
}

TEST(JsonNumbers, OfAnyLengthAreTheNearestDoubles) {
    std::mt19937_64 random(7);
    for (int i = 0; i < 20'000; ++i) {
        QByteArray text = QByteArray::number(quint64(random() >> (random() % 64)));
        const auto place = qsizetype(random() % std::uint64_t(text.size() + 1));
        if (place > 0 && place < text.size() && (place == 1 || text.front() != '0'))
            text.insert(place, '.');
        double number = 0;
        ASSERT_TRUE(Read(vkFloat, text.constData(), number)) << text.constData();
        ASSERT_EQ(number, std::strtod(text.constData(), nullptr)) << text.constData();
    }
}

TEST(JsonNumbers, AreWholeWithoutLossOrRefused) {
    for (const char* text : Texts) {
        qint64 number = 0;
        const bool isRead = Read(vkInt64, text, number);
        const double value = std::strtod(text, nullptr);
        const bool isWhole = JsonText::IsNumber(text) && value == std::trunc(value) &&
                             (std::strpbrk(text, ".eE") == nullptr || std::abs(value) <= 9007199254740992.0);
        EXPECT_EQ(isRead, isWhole) << text;
        if (isRead && !std::strpbrk(text, ".eE")) {
            EXPECT_EQ(number, std::strtoll(text, nullptr, 10)) << text;
        }
    }
}

TEST(JsonTexts, WithAnEscapeAtAnyPlaceLoseIt) {
    for (int size = 1; size < 80; ++size) {
        for (int place = 0; place < size; ++place) {
            QByteArray text(size, 'x');
            text.replace(place, 1, "\\u0061");
            TZOValueHolder holder(TZOTypeLibrary::Scalar(vkString), true);
            TZOJson::Decode('"' + text + '"', holder);
            void* ref = nullptr;
            ASSERT_TRUE(holder.GetValue(ref));
            ASSERT_EQ(*static_cast<QString*>(ref),
                      QString::fromUtf8(QByteArray(size, 'x').replace(place, 1, "a")));
        }
    }
}

TEST(JsonTexts, KeysAreFoundWhateverTheirLength) {
    TZOTypeLibrary library;
    TZOObjectBuilder record = library.NewObject(QStringLiteral("Record"));
    QByteArray json = "{";
    for (int size = 0; size < 40; ++size) {
        const QByteArray name = QByteArray(size, 'k');
        record.Property(QString::fromUtf8(name), TZOTypeLibrary::Scalar(vkInteger));
        json += (size ? ",\"" : "\"") + name + "\":" + QByteArray::number(size);
    }
    json += "}";
    const ZOList::TTypeInfo* list = library.NewList(record.Type());
    // Many of them, so that the texts of some keys lie across the ends of what is read at a time.
    QByteArray all = "[" + json;
    for (int i = 0; i < 500; ++i)
        all += "," + json;
    all += "]";
    TZOValueHolder holder(list, true);
    TZOJson::Decode(all, holder);
    EXPECT_EQ(TZOJson::Encode(holder), all);
    // A key that starts like the expected one, or goes on behind it.
    TZOValueHolder other(record.Type(), true);
    TZOJson::Decode(R"({"":0,"kk":2,"k":1,"kkj":5,"jkk":5,"kkkk":4})", other);
    EXPECT_EQ(TZOJson::Encode(other), R"({"":0,"k":1,"kk":2,"kkkk":4})");
}
