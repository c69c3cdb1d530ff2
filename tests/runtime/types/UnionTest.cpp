#include "runtime/types/TypeLibrary.h"

#include "platform/Exceptions.h"

#include <gtest/gtest.h>

namespace {

struct Unions : testing::Test {
    TZOTypeLibrary Types;
    const ZOUnion::TTypeInfo* Terms =
        Types.NewUnion(QStringLiteral("Terms"), QStringLiteral("kind"), ufTagged)
            .Tag(QStringLiteral("days"), TZOTypeLibrary::Scalar(vkInteger))
            .Tag(QStringLiteral("reason"), TZOTypeLibrary::Scalar(vkString))
            .Tag(QStringLiteral("open"), nullptr)
            .Type();
    std::unique_ptr<ZOUnion> Union = Terms->CreateInstance();
    void* Ref = nullptr;

    QString TagName() const {
        const PTag tag = ZOUnion::TData::GetTag(Union.get());
        return tag ? tag->Name : QString();
    }
};

} // namespace

TEST_F(Unions, StartWithoutATag) {
    EXPECT_EQ(ZOUnion::TData::GetTag(Union.get()), nullptr);
    EXPECT_FALSE(ZOUnion::TData::GetTag(Union.get(), 0, Ref));
}

TEST_F(Unions, HoldTheValueOfTheTagThatIsSet) {
    ASSERT_TRUE(ZOUnion::TData::SetTag(Union.get(), 1, true, Ref));
    *static_cast<QString*>(Ref) = QStringLiteral("exam");
    EXPECT_EQ(TagName(), QStringLiteral("reason"));
    EXPECT_FALSE(ZOUnion::TData::GetTag(Union.get(), 0, Ref));
    ASSERT_TRUE(ZOUnion::TData::SetTag(Union.get(), 1, true, Ref));
    EXPECT_EQ(*static_cast<QString*>(Ref), QStringLiteral("exam"));
    ASSERT_TRUE(ZOUnion::TData::SetTag(Union.get(), 0, true, Ref));
    EXPECT_EQ(*static_cast<qint32*>(Ref), 0);
    EXPECT_FALSE(ZOUnion::TData::GetTag(Union.get(), 1, Ref));
}

TEST_F(Unions, KeepTheOldTagAndValueUntilTheNewTagsValueIsStored) {
    ZOUnion::TData::GetByRef(Union.get(), 1, Ref);
    *static_cast<QString*>(Ref) = QStringLiteral("exam");
    ASSERT_TRUE(ZOUnion::TData::SetTag(Union.get(), 0, false, Ref));
    EXPECT_EQ(TagName(), QStringLiteral("reason"));
    ASSERT_TRUE(ZOUnion::TData::GetTag(Union.get(), 1, Ref));
    EXPECT_EQ(*static_cast<QString*>(Ref), QStringLiteral("exam"));
}

TEST_F(Unions, SwitchAtOnceToATagThatCarriesNoValue) {
    ZOUnion::TData::GetByRef(Union.get(), 1, Ref);
    ASSERT_TRUE(ZOUnion::TData::SetTag(Union.get(), 2, true, Ref));
    EXPECT_EQ(TagName(), QStringLiteral("open"));
    EXPECT_FALSE(ZOUnion::TData::GetTag(Union.get(), 2, Ref));
    EXPECT_THROW(ZOUnion::TData::GetByRef(Union.get(), 2, Ref), EListError);
}

TEST_F(Unions, RefuseATagTheyDoNotHave) {
    EXPECT_FALSE(ZOUnion::TData::SetTag(Union.get(), 3, true, Ref));
    EXPECT_FALSE(ZOUnion::TData::SetTag(Union.get(), -1, true, Ref));
    EXPECT_FALSE(ZOUnion::TData::SetTag(nullptr, 0, true, Ref));
    EXPECT_EQ(ZOUnion::TData::GetTag(nullptr), nullptr);
}

TEST_F(Unions, AreCopiedWithTheirValue) {
    ZOUnion::TData::GetByRef(Union.get(), 1, Ref);
    *static_cast<QString*>(Ref) = QStringLiteral("exam");
    const auto copy = ZOUnion::TData::Clone(Union.get());
    Union.reset();
    ASSERT_TRUE(ZOUnion::TData::GetTag(copy.get(), 1, Ref));
    EXPECT_EQ(*static_cast<QString*>(Ref), QStringLiteral("exam"));
}
