#include "runtime/types/ValueHolder.h"
#include "runtime/types/Any.h"
#include "runtime/types/Streams.h"
#include "runtime/types/TypeLibrary.h"

#include <QBuffer>

#include <gtest/gtest.h>

TEST(ValueHolder, HoldsAValueOfEveryKindWithItsPresence) {
    TZOTypeLibrary types;
    std::vector<const TZOTypeInfo*> all;
    for (int kind = vkString; kind <= vkDownload; ++kind)
        all.push_back(TZOTypeLibrary::Scalar(static_cast<TZOValueKind>(kind)));
    all.push_back(types.NewList(TZOTypeLibrary::Scalar(vkString)));
    all.push_back(types.NewMap(TZOTypeLibrary::Scalar(vkString)));
    all.push_back(types.NewObject(QStringLiteral("Object")).Type());
    all.push_back(types.NewUnion(QStringLiteral("Union"), QStringLiteral("tag"), ufBare).Type());
    for (const TZOTypeInfo* type : all) {
        TZOValueHolder holder(type, true);
        void* ref = nullptr;
        EXPECT_FALSE(holder.HasValue());
        EXPECT_FALSE(holder.GetValue(ref));
        holder.GetByRef(ref);
        ASSERT_NE(ref, nullptr);
        void* again = nullptr;
        EXPECT_TRUE(holder.GetValue(again));
        EXPECT_EQ(ref, again);
        EXPECT_TRUE(holder.SetValue(false, ref));
        EXPECT_FALSE(holder.HasValue()) << KindName(type->Kind()).toStdString();
        EXPECT_TRUE(holder.SetValue(true, ref));
    }
}

TEST(ValueHolder, ShowsAndChangesStorageThatLivesElsewhere) {
    QString text = QStringLiteral("before");
    TZOValueHolder holder(TZOTypeLibrary::Scalar(vkString), &text, false);
    void* ref = nullptr;
    ASSERT_TRUE(holder.GetValue(ref));
    EXPECT_EQ(ref, &text);
    *static_cast<QString*>(ref) = QStringLiteral("after");
    EXPECT_EQ(text, QStringLiteral("after"));
    holder.Clear();
    EXPECT_FALSE(holder.HasValue());
    EXPECT_TRUE(text.isNull());
}

TEST(ValueHolder, LeavesAListAndAMapThatLiveElsewhereEmptyAndUsable) {
    TZOTypeLibrary types;
    const TZOTypeInfo* text = TZOTypeLibrary::Scalar(vkString);
    ZOList list(types.NewList(text));
    list.Append();
    TZOValueHolder(list.Type(), &list, false).Clear();
    EXPECT_EQ(list.Count(), 0);
    list.Append();
    EXPECT_EQ(list.Count(), 1);

    ZOMap map(types.NewMap(text));
    void* ref = nullptr;
    map.GetByRef(QStringLiteral("a"), ref);
    TZOValueHolder(map.Type(), &map, false).Clear();
    EXPECT_EQ(map.Count(), 0);
    map.GetByRef(QStringLiteral("b"), ref);
    EXPECT_EQ(map.Keys(), QStringList{QStringLiteral("b")});
}

TEST(ValueHolder, TakesANullReferenceForAnAbsentObject) {
    TZOTypeLibrary types;
    const auto* type = types.NewObject(QStringLiteral("Object")).Type();
    ZOObject* object = nullptr;
    TZOValueHolder holder(type, &object, true);
    EXPECT_FALSE(holder.HasValue());
    void* ref = nullptr;
    ASSERT_TRUE(holder.SetValue(true, ref));
    EXPECT_NE(object, nullptr);
    holder.Clear();
    EXPECT_EQ(object, nullptr);
}

TEST(ValueHolder, PassesEverythingOnToTheHolderItIsBoundTo) {
    TZOValueHolder source(TZOTypeLibrary::Scalar(vkInteger), true);
    TZOValueHolder bound(&source, false);
    EXPECT_EQ(bound.Type(), source.Type());
    void* ref = nullptr;
    ASSERT_TRUE(bound.SetValue(true, ref));
    *static_cast<qint32*>(ref) = 5;
    ASSERT_TRUE(source.GetValue(ref));
    EXPECT_EQ(*static_cast<qint32*>(ref), 5);
    bound.Clear();
    EXPECT_FALSE(source.HasValue());
}

TEST(ValueHolder, WithoutStorageCannotBeSet) {
    TZOValueHolder holder(TZOTypeLibrary::Scalar(vkInteger), nullptr, false);
    void* ref = nullptr;
    EXPECT_FALSE(holder.SetValue(true, ref));
    EXPECT_FALSE(holder.HasValue());
}

TEST(Streams, AreNeverOwnedAndMayMarkSeveralValues) {
    QBuffer stream;
    ZOUpload first, second;
    first.SetStream(&stream);
    second.SetStream(&stream);
    EXPECT_EQ(first.GetStream(), second.GetStream());
    first.SetMimeType(QStringLiteral("image/png"));
    EXPECT_EQ(first.GetMimeType(), QStringLiteral("image/png"));
    ZODownload download;
    EXPECT_EQ(download.GetStream(), nullptr);
    download.SetStream(&stream);
    EXPECT_EQ(download.GetStream(), &stream);
}

TEST(TypeInfo, KnowsTheStorageOfScalars) {
    EXPECT_EQ(TZOTypeInfo::Get(typeid(QString)), TZOTypeLibrary::Scalar(vkString));
    EXPECT_EQ(TZOTypeInfo::Get(typeid(qint32)), TZOTypeLibrary::Scalar(vkInteger));
    EXPECT_EQ(TZOTypeInfo::Get(typeid(qint64)), TZOTypeLibrary::Scalar(vkInt64));
    EXPECT_EQ(TZOTypeInfo::Get(typeid(bool)), TZOTypeLibrary::Scalar(vkBoolean));
    EXPECT_EQ(TZOTypeInfo::Get(typeid(double)), TZOTypeLibrary::Scalar(vkFloat));
    EXPECT_EQ(TZOTypeInfo::Get(typeid(ZOAny)), TZOTypeLibrary::Scalar(vkAny));
    EXPECT_EQ(TZOTypeInfo::Get(typeid(ZOUpload)), TZOTypeLibrary::Scalar(vkUpload));
    EXPECT_EQ(TZOTypeInfo::Get(typeid(ZODownload)), TZOTypeLibrary::Scalar(vkDownload));
}

TEST(TypeInfo, IsFoundByItsCompiledType) {
    struct TCompiled {};
    EXPECT_EQ(TZOTypeInfo::Get(typeid(TCompiled)), nullptr);
    TZOTypeInfo::Register(typeid(TCompiled), TZOTypeLibrary::Scalar(vkDate));
    EXPECT_EQ(TZOTypeInfo::Get(typeid(TCompiled)), TZOTypeLibrary::Scalar(vkDate));
    TZOTypeInfo::Register(typeid(TCompiled), nullptr);
    EXPECT_EQ(TZOTypeInfo::Get(typeid(TCompiled)), nullptr);
}
