#include "runtime/json/JsonCodec.h"

#include "runtime/types/TypeLibrary.h"

#include <gtest/gtest.h>

namespace {

/// A union of twelve records, each of which may hold the union again beside a property of its own.
struct TNested {
    static constexpr int Alternatives = 12;
    static constexpr int Depth = 200;

    TZOTypeLibrary Library;
    const ZOUnion::TTypeInfo* Union = nullptr;

    TNested() {
        TZOUnionBuilder choice = Library.NewUnion(QStringLiteral("Choice"), QStringLiteral("type"), ufBare);
        for (int i = 0; i < Alternatives; ++i) {
            const QString name = QStringLiteral("own%1").arg(i);
            choice.Tag(name, Library.NewObject(name)
                                 .Property(name, TZOTypeLibrary::Scalar(vkInteger))
                                 .Property(QStringLiteral("inner"), choice.Type())
                                 .Type());
        }
        Union = choice.Type();
    }
};

/// Depth records in one another; AName(level) is the name of the record's own property.
template <class F>
QByteArray Nested(F&& AName) {
    QByteArray json;
    for (int level = 0; level < TNested::Depth; ++level)
        json += "{\"" + AName(level) + "\":1,\"inner\":";
    return json + "{}" + QByteArray(TNested::Depth, '}');
}

QByteArray Through(const TZOTypeInfo* AType, const QByteArray& AJson) {
    TZOValueHolder holder(AType, true);
    TZOJson::Decode(AJson, holder);
    return TZOJson::Encode(holder);
}

} // namespace

TEST(BareUnions, AreReadAtAnyDepthAsTheAlternativeThatFitsBest) {
    const TNested types;
    const QByteArray json = Nested([](int level) { return "own" + QByteArray::number(level * 5 % 12); });
    EXPECT_EQ(Through(types.Union, json), json);
}

TEST(BareUnions, AreReadAtAnyDepthAsTheFirstOfAlternativesThatFitAlike) {
    const TNested types;
    TZOValueHolder holder(types.Union, true);
    TZOJson::Decode(Nested([](int) { return QByteArray("unknown"); }), holder);
    void* ref = nullptr;
    ASSERT_TRUE(holder.GetValue(ref));
    int depth = 0;
    for (; ref; ++depth) {
        const auto* choice = *static_cast<ZOUnion**>(ref);
        ASSERT_TRUE(ZOUnion::TData::GetTag(choice, 0, ref)) << depth;
        const auto* record = *static_cast<ZOObject**>(ref);
        if (!ZOObject::TData::GetProp(record, 1, ref))
            break;
    }
    EXPECT_EQ(depth, TNested::Depth);
}

TEST(BareUnions, AreRefusedAtAnyDepthWhenNoneFits) {
    const TNested types;
    const QByteArray json = Nested([](int) { return QByteArray("unknown"); }).replace("{}", "5");
    TZOValueHolder holder(types.Union, true);
    try {
        TZOJson::Decode(json, holder);
        FAIL();
    } catch (const EZOJsonError& e) {
        EXPECT_EQ(e.Message(),
                  QStringLiteral("The JSON text is not as expected at line 1, column 1: the value "
                                 "fits none of the alternatives that can stand here."));
    }
}

TEST(BareUnions, InsideOthersKeepTheirValuesWhenALaterAlternativeIsTaken) {
    TZOTypeLibrary library;
    const auto* integer = TZOTypeLibrary::Scalar(vkInteger);
    const auto* inner = library.NewUnion(QStringLiteral("Inner"), QStringLiteral("type"), ufBare)
                            .Tag(QStringLiteral("number"), integer)
                            .Tag(QStringLiteral("texts"), library.NewList(TZOTypeLibrary::Scalar(vkString)))
                            .Tag(QStringLiteral("nothing"), nullptr)
                            .Type();
    const auto record = [&](const QString& name) {
        return library.NewObject(name)
            .Property(QStringLiteral("inner"), library.NewList(inner))
            .Property(name, integer)
            .Type();
    };
    const auto* outer = library.NewUnion(QStringLiteral("Outer"), QStringLiteral("type"), ufBare)
                            .Tag(QStringLiteral("a"), record(QStringLiteral("a")))
                            .Tag(QStringLiteral("b"), record(QStringLiteral("b")))
                            .Tag(QStringLiteral("c"), record(QStringLiteral("c")))
                            .Type();
    for (const QByteArray own : {"a", "b", "c"}) {
        const QByteArray json = R"({"inner":[1,["x","y"],null,2],")" + own + R"(":3})";
        EXPECT_EQ(Through(library.NewList(outer), "[" + json + "," + json + "]"),
                  "[" + json + "," + json + "]");
    }
}

TEST(BareUnions, ThatNameThemselvesAreReadAsTheirOtherAlternatives) {
    TZOTypeLibrary library;
    TZOUnionBuilder choice = library.NewUnion(QStringLiteral("Choice"), QStringLiteral("type"), ufBare);
    choice.Tag(QStringLiteral("itself"), choice.Type())
        .Tag(QStringLiteral("text"), TZOTypeLibrary::Scalar(vkString));
    EXPECT_EQ(Through(choice.Type(), "\"x\""), "\"x\"");
}
