#include "runtime/types/TypeLibrary.h"

#include "platform/Exceptions.h"

#include <gtest/gtest.h>

namespace {

struct Objects : testing::Test {
    TZOTypeLibrary Types;
    const ZOObject::TTypeInfo* Medium = nullptr;
    const ZOObject::TTypeInfo* Book = nullptr;
    const ZOObject::TTypeInfo* Film = nullptr;
    const ZOObject::TTypeInfo* Author = nullptr;
    void* Ref = nullptr;

    void SetUp() override {
        const auto* text = TZOTypeLibrary::Scalar(vkString);
        TZOObjectBuilder medium = Types.NewObject(QStringLiteral("Medium"));
        medium.Property(QStringLiteral("id"), TZOTypeLibrary::Scalar(vkInt64))
            .Property(QStringLiteral("lent"), TZOTypeLibrary::Scalar(vkBoolean));
        Author = Types.NewObject(QStringLiteral("Author")).Property(QStringLiteral("name"), text).Type();
        Book = Types.NewObject(QStringLiteral("Book"))
                   .Base(medium.Type())
                   .Property(QStringLiteral("title"), text)
                   .Property(QStringLiteral("author"), Author)
                   .Type();
        Film = Types.NewObject(QStringLiteral("Film")).Base(medium.Type()).Type();
        Medium = medium.Discriminator(QStringLiteral("kind"))
                     .Subtype(QStringLiteral("book"), Book)
                     .Subtype(QStringLiteral("film"), Film)
                     .Type();
    }
};

} // namespace

TEST_F(Objects, StartWithAllPropertiesAbsent) {
    const auto book = Book->CreateInstance();
    for (int i = 0; i < Book->PropertyCount(); ++i)
        EXPECT_FALSE(ZOObject::TData::GetProp(book.get(), i, Ref));
    EXPECT_EQ(ZOObject::TData::Type(book.get()), Book);
}

TEST_F(Objects, NumberTheirPropertiesThroughAllGroups) {
    ASSERT_EQ(Book->Groups().size(), 2u);
    EXPECT_EQ(Book->Groups()[0].Name, QStringLiteral("Medium"));
    EXPECT_EQ(Book->Groups()[1].Name, QStringLiteral("Book"));
    QStringList names;
    for (int i = 0; i < Book->PropertyCount(); ++i) {
        EXPECT_EQ(Book->Property(i)->Index, i);
        names << Book->Property(i)->Name;
    }
    EXPECT_EQ(names.join(QLatin1Char(' ')), QStringLiteral("id lent title author"));
    EXPECT_EQ(Book->FindProperty(u"title")->Index, 2);
    EXPECT_EQ(Book->FindProperty(u"Title"), nullptr);
}

TEST_F(Objects, SetReadAndDropProperties) {
    const auto book = Book->CreateInstance();
    ASSERT_TRUE(ZOObject::TData::SetProp(book.get(), 0, true, Ref));
    *static_cast<qint64*>(Ref) = 1LL << 40;
    ZOObject::TData::GetByRef(book.get(), 2, Ref);
    *static_cast<QString*>(Ref) = QStringLiteral("Emma");
    ASSERT_TRUE(ZOObject::TData::GetProp(book.get(), 0, Ref));
    EXPECT_EQ(*static_cast<qint64*>(Ref), 1LL << 40);
    ASSERT_TRUE(ZOObject::TData::GetProp(book.get(), u"title", Ref));
    EXPECT_EQ(*static_cast<QString*>(Ref), QStringLiteral("Emma"));
    EXPECT_FALSE(ZOObject::TData::GetProp(book.get(), u"unknown", Ref));
    ASSERT_TRUE(ZOObject::TData::SetProp(book.get(), 2, false, Ref));
    EXPECT_FALSE(ZOObject::TData::GetProp(book.get(), 2, Ref));
    ZOObject::TData::GetByRef(book.get(), 2, Ref);
    EXPECT_TRUE(static_cast<QString*>(Ref)->isEmpty());
}

TEST_F(Objects, OwnTheObjectsInTheirProperties) {
    const auto book = Book->CreateInstance();
    ZOObject::TData::GetByRef(book.get(), 3, Ref);
    auto* author = *static_cast<ZOObject**>(Ref);
    ASSERT_NE(author, nullptr);
    EXPECT_EQ(ZOObject::TData::Type(author), Author);
    ZOObject::TData::GetByRef(author, 0, Ref);
    *static_cast<QString*>(Ref) = QStringLiteral("Austen");

    const auto copy = ZOObject::TData::Clone(book.get());
    ZOObject::TData::SetProp(book.get(), 3, false, Ref);
    ASSERT_TRUE(ZOObject::TData::GetProp(copy.get(), 3, Ref));
    ASSERT_TRUE(ZOObject::TData::GetProp(*static_cast<ZOObject**>(Ref), 0, Ref));
    EXPECT_EQ(*static_cast<QString*>(Ref), QStringLiteral("Austen"));
}

TEST_F(Objects, KnowTheirSubtypes) {
    EXPECT_TRUE(Medium->GetHasSubtypes());
    EXPECT_FALSE(Book->GetHasSubtypes());
    EXPECT_EQ(Medium->GetSubtypeByType(Film)->Name, QStringLiteral("film"));
    EXPECT_EQ(Medium->FindSubtype(u"book")->Type, Book);
    EXPECT_EQ(Medium->FindSubtype(u"opera"), nullptr);
}

TEST_F(Objects, FindNoSubtypeForATypeThatIsNotAmongThem) {
    EXPECT_EQ(Medium->GetSubtypeByType(Author), nullptr);
    EXPECT_EQ(Medium->GetSubtypeByType(Medium), nullptr);
}

TEST_F(Objects, WriteNothingThroughANullReference) {
    EXPECT_FALSE(ZOObject::TData::SetProp(nullptr, 0, true, Ref));
    EXPECT_FALSE(ZOObject::TData::GetProp(nullptr, 0, Ref));
}

TEST_F(Objects, RefuseASecondPropertyOfOneName) {
    TZOObjectBuilder builder = Types.NewObject(QStringLiteral("Twice"));
    builder.Property(QStringLiteral("a"), TZOTypeLibrary::Scalar(vkString));
    EXPECT_THROW(builder.Property(QStringLiteral("a"), TZOTypeLibrary::Scalar(vkString)), EListError);
}

TEST_F(Objects, MayContainTheirOwnType) {
    TZOObjectBuilder node = Types.NewObject(QStringLiteral("Node"));
    node.Property(QStringLiteral("next"), node.Type());
    const auto first = node.Type()->CreateInstance();
    ZOObject* last = first.get();
    for (int i = 0; i < 100; ++i) {
        ZOObject::TData::GetByRef(last, 0, Ref);
        last = *static_cast<ZOObject**>(Ref);
    }
    EXPECT_FALSE(ZOObject::TData::GetProp(last, 0, Ref));
}
