#include "runtime/types/Storage.h"
#include "runtime/types/TypeLibrary.h"
#include "runtime/types/ValueHolder.h"

#include "platform/Exceptions.h"

#include <gtest/gtest.h>

#include <random>

namespace {

struct ListOfStrings : testing::Test {
    TZOTypeLibrary Types;
    TZOValueHolder Holder{Types.NewList(TZOTypeLibrary::Scalar(vkString)), true};
    ZOList* List = nullptr;
    void* Ref = nullptr;

    void SetUp() override {
        Holder.GetByRef(Ref);
        List = static_cast<ZOList*>(Ref);
    }
    void Insert(int AIndex, const char* AText) {
        ASSERT_TRUE(List->Insert(AIndex, true, Ref));
        *static_cast<QString*>(Ref) = QString::fromLatin1(AText);
    }
    QStringList Texts() {
        QStringList texts;
        for (int i = 0; i < List->Count(); ++i)
            texts << (List->GetItem(i, Ref) ? *static_cast<QString*>(Ref) : QStringLiteral("(absent)"));
        return texts;
    }
};

} // namespace

TEST_F(ListOfStrings, TakesAnElementAtZeroOfTheEmptyListAndAfterTheLast) {
    Insert(0, "a");
    Insert(List->Count(), "b");
    EXPECT_EQ(Texts(), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
}

TEST_F(ListOfStrings, MovesLaterElementsUpOnInsertAndDownOnDelete) {
    Insert(0, "a");
    Insert(1, "c");
    Insert(1, "b");
    EXPECT_EQ(Texts().join(QLatin1Char(' ')), QStringLiteral("a b c"));
    List->Delete(0);
    EXPECT_EQ(Texts().join(QLatin1Char(' ')), QStringLiteral("b c"));
}

TEST_F(ListOfStrings, KeepsPresenceWithItsElement) {
    Insert(0, "a");
    ASSERT_TRUE(List->Insert(0, false, Ref));
    Insert(0, "b");
    EXPECT_EQ(Texts().join(QLatin1Char(' ')), QStringLiteral("b (absent) a"));
    ASSERT_TRUE(List->SetItem(2, false, Ref));
    List->GetByRef(1, Ref);
    *static_cast<QString*>(Ref) = QStringLiteral("x");
    EXPECT_EQ(Texts().join(QLatin1Char(' ')), QStringLiteral("b x (absent)"));
}

TEST_F(ListOfStrings, RefusesPlacesOutsideIt) {
    EXPECT_FALSE(List->Insert(1, true, Ref));
    EXPECT_FALSE(List->Insert(-1, true, Ref));
    EXPECT_FALSE(List->GetItem(0, Ref));
    EXPECT_FALSE(List->SetItem(0, true, Ref));
    EXPECT_THROW(List->GetByRef(0, Ref), EListError);
    EXPECT_THROW(List->Delete(0), EListError);
}

TEST_F(ListOfStrings, BehavesLikeAPlainVectorUnderRandomOperations) {
    std::mt19937 random(7);
    QStringList model;
    for (int step = 0; step < 3000; ++step) {
        const int place = int(random() % unsigned(model.size() + 1));
        if (random() % 3 || model.isEmpty()) {
            const QByteArray text = "t" + QByteArray::number(step);
            Insert(place, text.constData());
            model.insert(place, QString::fromLatin1(text));
        } else if (place < model.size()) {
            List->Delete(place);
            model.removeAt(place);
        }
    }
    EXPECT_EQ(Texts(), model);
}

TEST(Map, KeepsKeysInTheOrderTheyCameAndFindsThemSmallOrLarge) {
    TZOTypeLibrary types;
    TZOValueHolder holder(types.NewMap(TZOTypeLibrary::Scalar(vkInteger)), true);
    void* ref = nullptr;
    holder.GetByRef(ref);
    auto* map = static_cast<ZOMap*>(ref);
    QStringList keys;
    for (int i = 0; i < 200; ++i) {
        keys << QStringLiteral("key%1").arg(i * 7919 % 200);
        ASSERT_TRUE(map->SetItem(keys.last(), true, ref));
        *static_cast<qint32*>(ref) = i;
        ASSERT_EQ(map->Keys(), keys);
        ASSERT_TRUE(map->GetItem(keys.first(), ref));
        ASSERT_EQ(*static_cast<qint32*>(ref), 0);
    }
    map->Remove(keys.takeAt(3));
    map->Remove(QStringLiteral("unknown"));
    EXPECT_EQ(map->Keys(), keys);
    for (const QString& key : keys)
        EXPECT_TRUE(map->ContainsKey(key));
    EXPECT_FALSE(map->ContainsKey(QStringLiteral("unknown")));
    EXPECT_FALSE(map->GetItem(QStringLiteral("unknown"), ref));
}

TEST(Map, HoldsItemsWithoutValue) {
    TZOTypeLibrary types;
    TZOValueHolder holder(types.NewMap(TZOTypeLibrary::Scalar(vkString)), true);
    void* ref = nullptr;
    holder.GetByRef(ref);
    auto* map = static_cast<ZOMap*>(ref);
    ASSERT_TRUE(map->SetItem(QStringLiteral("a"), false, ref));
    EXPECT_TRUE(map->ContainsKey(QStringLiteral("a")));
    EXPECT_FALSE(map->GetItem(QStringLiteral("a"), ref));
    map->GetByRef(QStringLiteral("a"), ref);
    EXPECT_TRUE(map->GetItem(QStringLiteral("a"), ref));
    EXPECT_EQ(map->Count(), 1);
}

TEST(Storage, CopiesDeeply) {
    TZOTypeLibrary types;
    const auto* list = types.NewList(types.NewMap(TZOTypeLibrary::Scalar(vkString)));
    TZOValueHolder holder(list, true);
    void* ref = nullptr;
    holder.GetByRef(ref);
    auto* original = static_cast<ZOList*>(ref);
    original->Insert(0, true, ref);
    static_cast<ZOMap*>(ref)->SetItem(QStringLiteral("k"), true, ref);
    *static_cast<QString*>(ref) = QStringLiteral("v");
    original->Insert(1, false, ref);

    alignas(ZOStorage::MaxAlign) std::byte memory[ZOStorage::MaxSize];
    ZOStorage::CopyConstruct(list, memory, original);
    original->Delete(0);
    auto* copy = reinterpret_cast<ZOList*>(memory);
    ASSERT_EQ(copy->Count(), 2);
    ASSERT_TRUE(copy->GetItem(0, ref));
    ASSERT_TRUE(static_cast<ZOMap*>(ref)->GetItem(QStringLiteral("k"), ref));
    EXPECT_EQ(*static_cast<QString*>(ref), QStringLiteral("v"));
    EXPECT_FALSE(copy->GetItem(1, ref));
    ZOStorage::Destroy(list, memory);
}

TEST(Map, TakesANewItemAtAnyPlace) {
    TZOTypeLibrary types;
    TZOValueHolder holder(types.NewMap(TZOTypeLibrary::Scalar(vkInteger)), true);
    void* ref = nullptr;
    holder.GetByRef(ref);
    auto* map = static_cast<ZOMap*>(ref);
    QStringList keys;
    for (int i = 0; i < 40; ++i) {
        const int place = i * 7 % (i + 1);
        keys.insert(place, QString::number(i));
        ASSERT_TRUE(map->Insert(place, QString::number(i), i % 2, ref));
        if (i % 2)
            *static_cast<qint32*>(ref) = i;
        ASSERT_EQ(map->Keys(), keys);
    }
    for (int i = 0; i < 40; ++i) {
        EXPECT_EQ(map->IndexOf(QString::number(i)), keys.indexOf(QString::number(i)));
        ASSERT_EQ(map->GetItem(QString::number(i), ref), i % 2 == 1);
        EXPECT_TRUE(i % 2 == 0 || *static_cast<qint32*>(ref) == i);
    }
    EXPECT_FALSE(map->Insert(0, QStringLiteral("7"), true, ref));
    EXPECT_FALSE(map->Insert(41, QStringLiteral("new"), true, ref));
    EXPECT_FALSE(map->Insert(-1, QStringLiteral("new"), true, ref));
    EXPECT_EQ(map->Keys(), keys);
}
