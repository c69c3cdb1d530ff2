#include "runtime/types/ValueRef.h"
#include "runtime/types/TypeLibrary.h"
#include "runtime/types/ValueHolder.h"

#include "platform/Exceptions.h"

#include <QTimeZone>

#include <gtest/gtest.h>

namespace {

class ValueRef : public testing::Test {
protected:
    ValueRef() {
        const auto scalar = [](TZOValueKind AKind) { return TZOTypeLibrary::Scalar(AKind); };
        const auto inner = Types.NewObject("Inner")
                               .Property("text", scalar(vkString))
                               .Property("flag", scalar(vkBoolean))
                               .Type();
        const auto outer = Types.NewObject("Outer")
                               .Property("small", scalar(vkInteger))
                               .Property("large", scalar(vkInt64))
                               .Property("real", scalar(vkFloat))
                               .Property("at", scalar(vkDateTime))
                               .Property("day", scalar(vkDate))
                               .Property("inner", inner)
                               .Property("list", Types.NewList(inner))
                               .Property("map", Types.NewMap(scalar(vkInteger)))
                               .Type();
        Holder.emplace(outer, true);
        void* storage = nullptr;
        Holder->GetByRef(storage);
        Value = TZOValueRef(outer, storage);
    }

    TZOTypeLibrary Types;
    std::optional<TZOValueHolder> Holder;
    TZOValueRef Value;
};

} // namespace

TEST_F(ValueRef, ReadsWhatWasSet) {
    Value.Make("small").Set(-7);
    Value.Make("large").Set(qint64(1) << 40);
    Value.Make("real").Set(2.5);
    Value.Make("inner").Make("text").Set("Gdańsk");
    Value["inner"].Make("flag").Set(true);
    EXPECT_EQ(Value["small"].As<qint32>(), -7);
    EXPECT_EQ(Value["small"].As<qint64>(), -7);
    EXPECT_EQ(Value["small"].As<double>(), -7.0);
    EXPECT_EQ(Value["large"].As<qint64>(), qint64(1) << 40);
    EXPECT_EQ(Value["real"].As<double>(), 2.5);
    EXPECT_EQ(Value["inner"]["text"].As<QString>(), "Gdańsk");
    EXPECT_TRUE(Value["inner"]["flag"].As<bool>());
    Value.Make("inner").Make("text").Set("\uFEFFmarked");
    EXPECT_EQ(Value["inner"]["text"].As<QString>(), QStringLiteral("\uFEFFmarked"));
    Value["real"].Set(3);
    EXPECT_EQ(Value["real"].As<double>(), 3.0);
}

TEST_F(ValueRef, KeepsMomentsAndDays) {
    const QDateTime moments[] = {
        QDateTime(QDate(2024, 2, 29), QTime(23, 59, 59, 999), QTimeZone::utc()),
        QDateTime(QDate(1899, 12, 29), QTime(6, 0), QTimeZone::utc()),
        QDateTime(QDate(1, 1, 1), QTime(0, 0, 1), QTimeZone::utc()),
        QDateTime(QDate(2024, 1, 1), QTime(1, 0), QTimeZone(3600)),
    };
    for (const QDateTime& moment : moments) {
        Value.Make("at").Set(moment);
        EXPECT_EQ(Value["at"].As<QDateTime>(), moment);
        EXPECT_EQ(Value["at"].As<QDateTime>().offsetFromUtc(), 0);
        Value.Make("day").Set(moment.date());
        EXPECT_EQ(Value["day"].As<QDate>(), moment.date());
    }
    EXPECT_EQ(*static_cast<const double*>(Value["day"].Storage()), 45292.0);
}

TEST_F(ValueRef, GoesThroughListsAndMaps) {
    for (const char* text : {"one", "two", "three"})
        Value.Make("list").Append().Make("text").Set(text);
    QStringList texts;
    for (const TZOValueRef entry : Value["list"])
        texts.append(entry["text"].As<QString>());
    EXPECT_EQ(texts, QStringList({"one", "two", "three"}));
    EXPECT_EQ(Value["list"][1]["text"].As<QString>(), "two");
    EXPECT_THROW(Value["list"][3], EListError);
    EXPECT_THROW(Value["list"][-1], EListError);

    Value.Make("map").Make("b").Set(2);
    Value["map"].Make("a").Set(1);
    EXPECT_EQ(Value["map"].Count(), 2);
    EXPECT_EQ(Value["map"].Keys(), QStringList({"b", "a"}));
    EXPECT_EQ(Value["map"]["a"].As<qint32>(), 1);
    EXPECT_FALSE(Value["map"]["c"].IsPresent());
}

TEST_F(ValueRef, IsAbsentAllTheWayDown) {
    EXPECT_FALSE(Value["inner"].IsPresent());
    EXPECT_FALSE(Value["inner"]["text"].IsPresent());
    EXPECT_EQ(Value["inner"]["text"].As<QString>("none"), "none");
    EXPECT_EQ(Value["list"].Count(), 0);
    for (const TZOValueRef entry : Value["list"])
        FAIL() << entry.IsPresent();
    EXPECT_TRUE(Value["map"].Keys().isEmpty());
    EXPECT_THROW(Value["list"][0], EListError);
    EXPECT_THROW(Value["small"].As<qint32>(), EInvalidCast);
    EXPECT_THROW(Value["small"].Set(1), EInvalidCast);
    EXPECT_THROW(Value["inner"].Make("text"), EInvalidCast);
    EXPECT_THROW(Value["list"].Append(), EInvalidCast);
}

TEST_F(ValueRef, RefusesAnotherKind) {
    Value.Make("small").Set(1);
    Value.Make("large").Set(1);
    EXPECT_THROW(Value["nothing"], EInvalidCast);
    EXPECT_THROW(Value.Make("nothing"), EInvalidCast);
    EXPECT_THROW(Value[0], EInvalidCast);
    EXPECT_THROW(Value.Count(), EInvalidCast);
    EXPECT_THROW(Value["small"]["x"], EInvalidCast);
    EXPECT_THROW(Value["small"].As<QString>(), EInvalidCast);
    EXPECT_THROW(Value["small"].Set("1"), EInvalidCast);
    EXPECT_THROW(Value["large"].As<qint32>(), EInvalidCast);
    EXPECT_THROW(Value["small"].Set(qint64(1) << 31), EConvertError);
    EXPECT_EQ(Value["small"].As<qint32>(), 1);
}
