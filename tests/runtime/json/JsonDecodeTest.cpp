#include "runtime/json/JsonCodec.h"

#include "runtime/types/JsonText.h"
#include "runtime/types/TypeLibrary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace {

/// A library with one type of every kind in an object, and a polymorphic object and unions beside it.
struct TTypes {
    TZOTypeLibrary Library;
    const ZOObject::TTypeInfo* Record = nullptr;
    const ZOObject::TTypeInfo* Medium = nullptr;
    const ZOUnion::TTypeInfo* Terms = nullptr;
    const ZOUnion::TTypeInfo* Bare = nullptr;

    TTypes() {
        const auto scalar = &TZOTypeLibrary::Scalar;
        TZOObjectBuilder medium = Library.NewObject(QStringLiteral("Medium"));
        const auto* book = Library.NewObject(QStringLiteral("Book"))
                               .Property(QStringLiteral("pages"), scalar(vkInteger))
                               .Type();
        const auto* film = Library.NewObject(QStringLiteral("Film"))
                               .Property(QStringLiteral("kind"), scalar(vkString))
                               .Property(QStringLiteral("minutes"), scalar(vkInteger))
                               .Type();
        Medium = medium.Discriminator(QStringLiteral("kind"))
                     .Subtype(QStringLiteral("book"), book)
                     .Subtype(QStringLiteral("film"), film)
                     .Type();
        Terms = Library.NewUnion(QStringLiteral("Terms"), QStringLiteral("tag"), ufTagged)
                    .Tag(QStringLiteral("days"), scalar(vkInteger))
                    .Tag(QStringLiteral("medium"), Medium)
                    .Tag(QStringLiteral("open"), nullptr)
                    .Type();
        const auto* cat = Library.NewObject(QStringLiteral("Cat"))
                              .Property(QStringLiteral("lives"), scalar(vkInteger), {.Required = true})
                              .Type();
        const auto* dog = Library.NewObject(QStringLiteral("Dog"))
                              .Property(QStringLiteral("name"), scalar(vkString))
                              .Type();
        Bare = Library.NewUnion(QStringLiteral("Bare"), QStringLiteral("type"), ufBare)
                   .Tag(QStringLiteral("number"), scalar(vkInteger))
                   .Tag(QStringLiteral("cat"), cat)
                   .Tag(QStringLiteral("dog"), dog)
                   .Tag(QStringLiteral("texts"), Library.NewList(scalar(vkString)))
                   .Tag(QStringLiteral("nothing"), nullptr)
                   .Type();
        TZOObjectBuilder record = Library.NewObject(QStringLiteral("Record"));
        record.Property(QStringLiteral("s"), scalar(vkString))
            .Property(QStringLiteral("i"), scalar(vkInteger))
            .Property(QStringLiteral("l"), scalar(vkInt64))
            .Property(QStringLiteral("b"), scalar(vkBoolean))
            .Property(QStringLiteral("f"), scalar(vkFloat))
            .Property(QStringLiteral("t"), scalar(vkDateTime))
            .Property(QStringLiteral("d"), scalar(vkDate))
            .Property(QStringLiteral("any"), scalar(vkAny))
            .Property(QStringLiteral("list"), Library.NewList(scalar(vkInteger)))
            .Property(QStringLiteral("map"), Library.NewMap(scalar(vkString)))
            .Property(QStringLiteral("self"), record.Type())
            .Property(QStringLiteral("medium"), Medium)
            .Property(QStringLiteral("terms"), Terms)
            .Property(QStringLiteral("bare"), Bare)
            .Property(QStringLiteral("a/b~c"), scalar(vkInteger));
        Record = record.Type();
    }
};

/// What comes back when AJson is read as AType and written again.
QByteArray Through(const TZOTypeInfo* AType, const QByteArray& AJson) {
    TZOValueHolder holder(AType, true);
    TZOJson::Decode(AJson, holder);
    return TZOJson::Encode(holder);
}

QString Failure(const TZOTypeInfo* AType, const QByteArray& AJson) {
    TZOValueHolder holder(AType, true);
    try {
        TZOJson::Decode(AJson, holder);
    } catch (const EZOJsonError& e) {
        EXPECT_FALSE(holder.HasValue());
        return e.Message();
    }
    return QStringLiteral("no failure");
}

struct TCase {
    const char* Json;
    const char* Again;
};

struct TBadCase {
    const char* Json;
    const char* Message;
};

} // namespace

class JsonDecodes : public testing::TestWithParam<TCase> {};

TEST_P(JsonDecodes, TheTextIntoARecord) {
    const TTypes types;
    EXPECT_EQ(Through(types.Record, GetParam().Json), GetParam().Again);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, JsonDecodes,
    testing::Values(
        TCase{"{}", "{}"}, TCase{"null", "null"}, TCase{" { \"i\" : 1 } ", "{\"i\":1}"},
        TCase{R"({"s":"h\u00e9\n\ud83d\ude00\"","i":-5,"l":9223372036854775807,"b":true,"f":0.1})",
              "{\"s\":\"h\xC3\xA9\\n\xF0\x9F\x98\x80\\\"\",\"i\":-5,\"l\":9223372036854775807,\"b\":true,"
              "\"f\":0.1}"},
        TCase{R"({"t":"2024-02-29T12:30:00+01:00","d":"2024-02-29"})",
              R"({"t":"2024-02-29T11:30:00Z","d":"2024-02-29"})"},
        TCase{R"({"any":{ "z" : 1.00000000000000000001, "a" : [ ] }, "i":7})",
              R"({"i":7,"any":{"z":1.00000000000000000001,"a":[]}})"},
        TCase{R"({"any":null})", "{}"}, TCase{R"({"any":"x\ud800"})", R"({"any":"x\ud800"})"},
        TCase{R"({"list":[1,null,3],"map":{"b":"x","a":null}})",
              R"({"list":[1,null,3],"map":{"b":"x","a":null}})"},
        TCase{R"({"self":{"self":{"i":1}}})", R"({"self":{"self":{"i":1}}})"},
        TCase{R"({"i":1,"s":null,"i":2,"i":null,"i":3})", R"({"i":3})"},
        TCase{R"({"self":{"i":1},"self":{"s":"a"}})", R"({"self":{"s":"a"}})"},
        TCase{R"({"map":{"k":"1","k":"2"}})", R"({"map":{"k":"2"}})"},
        TCase{R"({"map":{"\u006b":"1","k":"2","\"":"q"}})", R"({"map":{"k":"2","\"":"q"}})"},
        TCase{R"({"\u0069":1,"s" :"a"})", R"({"s":"a","i":1})"},
        TCase{R"({"unknown":{"a":[1,"\u00e9",{"b":null}]},"i":1,"more":[[]]})", R"({"i":1})"},
        TCase{R"({"l":1e3,"i":2.0,"f":3})", R"({"i":2,"l":1000,"f":3})"},
        TCase{R"({"medium":{"minutes":90,"kind":"film"}})", R"({"medium":{"kind":"film","minutes":90}})"},
        TCase{R"({"medium":{"kind":"b\u006fok","pages":3}})", R"({"medium":{"kind":"book","pages":3}})"},
        TCase{R"({"terms":{"value":14,"tag":"days"}})", R"({"terms":{"tag":"days","value":14}})"},
        TCase{R"({"medium":{"pages":[{"kind":"film"},"}"],"kind":"film"}})", R"({"medium":{"kind":"film"}})"},
        TCase{R"({"medium":{"\u006bind":"film"}})", R"({"medium":{"kind":"film"}})"},
        TCase{R"({"terms":{"tag":"medium","value":{"kind":"book","pages":1},"value":{"kind":"book"}}})",
              R"({"terms":{"tag":"medium","value":{"kind":"book"}}})"},
        TCase{R"({"terms":{"tag":"open"}})", R"({"terms":{"tag":"open"}})"},
        TCase{R"({"terms":{"tag":"medium","value":{"kind":"book","pages":1},"x":[1]}})",
              R"({"terms":{"tag":"medium","value":{"kind":"book","pages":1}}})"},
        TCase{R"({"bare":5})", R"({"bare":5})"}, TCase{R"({"bare":["a","b"]})", R"({"bare":["a","b"]})"},
        TCase{R"({"bare":{"lives":9}})", R"({"bare":{"lives":9}})"},
        TCase{R"({"bare":{"name":"Rex"}})", R"({"bare":{"name":"Rex"}})"},
        TCase{R"({"bare":null,"i":1})", R"({"i":1,"bare":null})"}));

class JsonRefuses : public testing::TestWithParam<TBadCase> {};

TEST_P(JsonRefuses, TheTextAndNamesThePlace) {
    const TTypes types;
    EXPECT_EQ(
        Failure(types.Record, GetParam().Json),
        QStringLiteral("The JSON text is not as expected at %1.").arg(QString::fromUtf8(GetParam().Message)));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, JsonRefuses,
    testing::Values(
        TBadCase{"", "line 1, column 1: there is no value"},
        TBadCase{"<html>", "line 1, column 1: <html> is no JSON value"},
        TBadCase{"[]", "line 1, column 1: an object is expected, not an array"},
        TBadCase{"5", "line 1, column 1: an object is expected, not a number"},
        TBadCase{"{\"i\":1", "line 1, column 7: the text ends too early"},
        TBadCase{"{\"s\":\"abc", "line 1, column 10: the text ends too early"},
        TBadCase{"{\n  \"self\": {\n    \"i\": \"x\"\n}}",
                 "line 3, column 10 (/self/i): a whole number is expected, not a string"},
        TBadCase{R"({"s":5})", "line 1, column 6 (/s): a string is expected, not a number"},
        TBadCase{R"({"b":"true"})", "line 1, column 6 (/b): a boolean is expected, not a string"},
        TBadCase{R"({"b":tru})", "line 1, column 6 (/b): tru is no JSON value"},
        TBadCase{R"({"list":[1,2,[3]]})",
                 "line 1, column 14 (/list/2): a whole number is expected, not an array"},
        TBadCase{R"({"map":{"k":1}})", "line 1, column 13 (/map/k): a string is expected, not a number"},
        TBadCase{R"({"a/b~c":"x"})",
                 "line 1, column 10 (/a~1b~0c): a whole number is expected, not a string"},
        TBadCase{R"({"i":2147483648})", "line 1, column 6 (/i): 2147483648 does not fit the integer type"},
        TBadCase{R"({"l":9223372036854775808})",
                 "line 1, column 6 (/l): 9223372036854775808 does not fit the integer type"},
        TBadCase{R"({"l":1.5})", "line 1, column 6 (/l): 1.5 is not a whole number"},
        TBadCase{R"({"l":1e30})", "line 1, column 6 (/l): 1e30 does not fit the integer type"},
        TBadCase{R"({"i":01})", "line 1, column 6 (/i): 01 is no JSON value"},
        TBadCase{R"({"f":1e400})", "line 1, column 6 (/f): 1e400 does not fit the float type"},
        TBadCase{R"({"f":.5})", "line 1, column 6 (/f): .5 is no JSON value"},
        TBadCase{R"({"s":"\ud800"})", "line 1, column 6 (/s): the string escapes half a character"},
        TBadCase{R"({"s":"\q"})",
                 "line 1, column 6 (/s): the string holds an escape that JSON does not know"},
        TBadCase{R"({"t":"yesterday"})",
                 "line 1, column 6 (/t): \"yesterday\" is not a valid RFC 3339 date or date-time"},
        TBadCase{R"({"unknown":[1,{"x":nul}]})", "line 1, column 20 (/unknown/1/x): nul is no JSON value"},
        TBadCase{R"({"unknown":01})", "line 1, column 12 (/unknown): 01 is no JSON value"},
        TBadCase{R"({"unknown":"\q"})",
                 "line 1, column 12 (/unknown): the string holds an escape that JSON does not know"},
        TBadCase{R"({"medium":{"kind":"book","kind":nul,"pages":1}})",
                 "line 1, column 33 (/medium/kind): nul is no JSON value"},
        TBadCase{R"({"terms":{"tag":"days","tag":01,"value":1}})",
                 "line 1, column 30 (/terms/tag): 01 is no JSON value"},
        TBadCase{R"({"unknown":[1 2]})", "line 1, column 15 (/unknown): the text is no JSON from here on"},
        TBadCase{R"({"unknown":{"\q":1}})",
                 "line 1, column 13 (/unknown): the key holds an escape that JSON does not know"},
        TBadCase{R"({"unknown":{"\udc00":1}})",
                 "line 1, column 13 (/unknown): the key escapes half a character"},
        TBadCase{R"({"self":{"\u0073":1}})",
                 "line 1, column 19 (/self/s): a string is expected, not a number"},
        TBadCase{"{\"i\":1\x01}", "line 1, column 6 (/i): 1\x01 is no JSON value"},
        TBadCase{"{\"i\":1\f}", "line 1, column 7: the text is no JSON from here on"},
        TBadCase{"{\"s\":\"a\nb\"}", "line 1, column 1: a string holds a control character"},
        TBadCase{R"({"s":"a"b})", "line 1, column 9: the text is no JSON from here on"},
        TBadCase{R"({"s":"a""b"})", "line 1, column 9: the text is no JSON from here on"},
        TBadCase{R"({"i":1"b"})", "line 1, column 6 (/i): 1\"b\" is no JSON value"},
        TBadCase{R"({"i":1,})", "line 1, column 8: the text is no JSON from here on"},
        TBadCase{R"({"i" 1})", "line 1, column 6: the text is no JSON from here on"},
        TBadCase{R"({i:1})", "line 1, column 2: the text is no JSON from here on"},
        TBadCase{R"({"list":[1,]})", "line 1, column 12 (/list/1): ] is no JSON value"},
        TBadCase{R"({"list":[1})", "line 1, column 11 (/list): the text is no JSON from here on"},
        TBadCase{R"({"medium":{"kind":"film","kind":[1 2]}})",
                 "line 1, column 36 (/medium/kind): the text is no JSON from here on"},
        TBadCase{R"({"medium":{"kind":5}})", "line 1, column 19 (/medium): the name of a type is expected"},
        TBadCase{R"({"medium":{"pages":1)", "line 1, column 21 (/medium): the text ends too early"},
        TBadCase{R"({"medium":{"pages":)", "line 1, column 20 (/medium): the text ends too early"},
        TBadCase{R"({"terms":{"value":)", "line 1, column 19 (/terms): the text ends too early"},
        TBadCase{R"({"medium":{"pages":]]]})",
                 "line 1, column 20 (/medium): the text is no JSON from here on"},
        TBadCase{R"({"bare":{"lives":[tru]}})", "line 1, column 19 (/bare/lives/0): tru is no JSON value"},
        TBadCase{R"({"i":1}})", "line 1, column 8: there is more text behind the value"},
        TBadCase{R"({"i":1} x)", "line 1, column 9: there is more text behind the value"},
        TBadCase{R"({"medium":{"pages":1}})",
                 "line 1, column 11 (/medium): the object has no \"kind\" to tell its type"},
        TBadCase{R"({"medium":{"kind":"opera"}})",
                 "line 1, column 11 (/medium/kind): \"opera\" is none of the types that can stand here"},
        TBadCase{R"({"terms":{"tag":"never"}})",
                 "line 1, column 10 (/terms): \"never\" is none of the alternatives that can stand here"},
        TBadCase{R"({"bare":true})",
                 "line 1, column 9 (/bare): the value fits none of the alternatives that can stand here"},
        TBadCase{"{\"s\":\"\xC3\"}", "line 1, column 1: the text is not valid UTF-8"}));

TEST(JsonDecode, RefusesATextThatIsCutAnywhere) {
    const TTypes types;
    const QByteArray whole =
        R"({"s":"a\"","i":1,"b":true,"t":"2024-05-17T08:30:00Z","any":{"x":[null]},"list":[1,2],"map":{"k":"v"},)"
        R"("unknown":[{"a":1}],"medium":{"more":{"x":1},"kind":"book","pages":3},)"
        R"("terms":{"value":5,"tag":"days"},"bare":{"name":"Rex"}})";
    ASSERT_EQ(Failure(types.Record, whole), QStringLiteral("no failure"));
    for (qsizetype size = 0; size < whole.size(); ++size) {
        SCOPED_TRACE(size);
        EXPECT_THAT(Failure(types.Record, whole.first(size)).toStdString(),
                    testing::StartsWith("The JSON text is not as expected at line 1"));
    }
}

TEST(JsonDecode, TakesNoControlCharactersForWhiteSpace) {
    const TTypes types;
    for (const char sign : {'\0', '\x01', '\v', '\f', '\x1f'}) {
        SCOPED_TRACE(int(sign));
        for (const QByteArray& text :
             {QByteArray("{\"i\":5#}"), QByteArray("{\"unknown\":5#}"), QByteArray("{\"i\":5}#"),
              QByteArray("{\"b\":true#}"), QByteArray("{\"list\":[1#,2]}")})
            EXPECT_THAT(Failure(types.Record, QByteArray(text).replace('#', sign)).toStdString(),
                        testing::StartsWith("The JSON text is not as expected at line 1"));
    }
}

TEST(JsonDecode, ReadsScalarsAtTheRoot) {
    EXPECT_EQ(Through(TZOTypeLibrary::Scalar(vkString), " \"a\" "), "\"a\"");
    EXPECT_EQ(Through(TZOTypeLibrary::Scalar(vkFloat), "-1.5e3"), "-1500");
    EXPECT_EQ(Through(TZOTypeLibrary::Scalar(vkAny), "[1, 2]"), "[1,2]");
    EXPECT_EQ(Through(TZOTypeLibrary::Scalar(vkBoolean), " null"), "null");
    const QString more = QStringLiteral("The JSON text is not as expected at line 1, column %1: "
                                        "there is more text behind the value.");
    EXPECT_EQ(Failure(TZOTypeLibrary::Scalar(vkInteger), "1,2"), more.arg(2));
    EXPECT_EQ(Failure(TZOTypeLibrary::Scalar(vkInteger), "12 x"), more.arg(4));
}

TEST(JsonDecode, BoundsTheDepthOfWhatIsReadAndOfWhatIsSkipped) {
    const TTypes types;
    const QByteArray deep =
        QByteArray("{\"self\":").repeated(JsonText::MaxDepth) + "{}" + QByteArray(JsonText::MaxDepth, '}');
    EXPECT_TRUE(Failure(types.Record, deep).contains(QStringLiteral("values nest more than 1000 deep")));
    const QByteArray skipped = "{\"x\":" + QByteArray(100'000, '[') + QByteArray(100'000, ']') + "}";
    EXPECT_TRUE(Failure(types.Record, skipped).contains(QStringLiteral("values nest more than 1000 deep")));
    const QByteArray any =
        "{\"any\":" + QByteArray(JsonText::MaxDepth - 1, '[') + QByteArray(JsonText::MaxDepth - 1, ']') + "}";
    EXPECT_EQ(Through(types.Record, any), any);
}

TEST(JsonDecode, SurvivesEveryTruncationOfAText) {
    const TTypes types;
    const QByteArray whole =
        R"({"s":"a\u00e9b","list":[1,2],"any":{"x":[true,null]},"terms":{"tag":"days","value":1},)"
        R"("medium":{"kind":"film","minutes":1},"bare":{"name":"x"},"unknown":[{"y":1.5e3}]})";
    EXPECT_NE(Through(types.Record, whole), "null");
    for (qsizetype size = 0; size < whole.size(); ++size)
        EXPECT_NE(Failure(types.Record, whole.first(size)), QStringLiteral("no failure")) << size;
}

TEST(JsonDecode, FindsPropertiesWhoseNamesHoldWhatIsEscaped) {
    TZOTypeLibrary types;
    const auto with = [&](const QString& AName) {
        return types.NewObject(AName).Property(AName, TZOTypeLibrary::Scalar(vkInteger)).Type();
    };
    const auto* quoted = with(QStringLiteral("c\"d"));
    EXPECT_EQ(Through(quoted, R"({"c\"d":2})"), R"({"c\"d":2})");
    const auto* type = with(QStringLiteral("a\\nb"));
    EXPECT_EQ(Through(type, R"({"a\\nb":1})"), R"({"a\\nb":1})");
    EXPECT_EQ(Through(type, R"({"a\nb":1})"), "{}") << "a line break is another name";
}

TEST(JsonDecode, TakesTheFirstOfAlternativesThatFitAsWell) {
    TZOTypeLibrary types;
    const auto one = [&](const char* AName) {
        return types.NewObject(QLatin1String(AName))
            .Property(QStringLiteral("name"), TZOTypeLibrary::Scalar(vkString))
            .Type();
    };
    const auto* type = types.NewUnion(QStringLiteral("Animal"), QStringLiteral("type"), ufBare)
                           .Tag(QStringLiteral("cat"), one("Cat"))
                           .Tag(QStringLiteral("dog"), one("Dog"))
                           .Type();
    for (const char* json : {R"({"name":"Tom"})", R"({"name":"Tom","age":1})"}) {
        TZOValueHolder holder(type, true);
        TZOJson::Decode(json, holder);
        void* ref = nullptr;
        ASSERT_TRUE(holder.GetValue(ref));
        EXPECT_EQ(ZOUnion::TData::GetTag(*static_cast<ZOUnion**>(ref))->Name, QStringLiteral("cat")) << json;
    }
}

TEST(JsonDecode, ReplacesWhatTheHolderHeld) {
    const TTypes types;
    TZOValueHolder holder(types.Record, true);
    TZOJson::Decode(R"({"i":1})", holder);
    TZOJson::Decode(R"({"s":"a"})", holder);
    EXPECT_EQ(TZOJson::Encode(holder), R"({"s":"a"})");
}

/// A text that is read in several pieces, with all that can stand where a piece ends.
QByteArray LongText(unsigned ASeed) {
    std::mt19937 random(ASeed);
    const QByteArray texts[] = {"", ",", "a,b", "\\\",\\\\", "h\xC3\xA9", "}],[{", ", , ,", "x"};
    QByteArray json = "[";
    while (json.size() < 500'000) {
        const QByteArray& text = texts[random() % 8];
        json += (json.size() > 1 ? "," : "") + QByteArray(int(random() % 3), ' ') + "{\"any\":\"" +
                text.repeated(random() % 100 ? 3 : int(random() % 100'000)) + "\",\"list\":[" +
                QByteArray::number(random() % 1000) + ",2]}";
        if (random() % 500 == 0)
            json += QByteArray(int(random() % 200'000), '\n');
    }
    return json + ']';
}

TEST(JsonDecode, ReadsLongTextsWhole) {
    TTypes types;
    const TZOTypeInfo* list = types.Library.NewList(types.Record);
    for (unsigned seed = 0; seed < 20; ++seed) {
        const QByteArray json = LongText(seed);
        const QByteArray dense = JsonText::WithoutWhiteSpace(json);
        EXPECT_TRUE(Through(list, json) == dense) << seed;
        EXPECT_TRUE(Through(TZOTypeLibrary::Scalar(vkAny), json) == dense) << seed;
    }
}

TEST(JsonDecode, ReadsLongTextsWhoseTypesAreTold) {
    TTypes types;
    const TZOTypeInfo* list = types.Library.NewList(types.Record);
    const QByteArray skipped = "[" + QByteArray("\"a, b\",").repeated(50'000) + "1]";
    const QByteArray film = "{\"minutes\":5,\"more\":" + skipped + ",\"kind\":\"film\"}";
    const QByteArray json = "[{\"medium\":" + film + ",\"bare\":" + skipped.chopped(3) +
                            "]},{\"bare\":" + film + ",\"terms\":{\"value\":" + film +
                            ",\"tag\":\"medium\"}}]";
    EXPECT_EQ(
        Through(list, json),
        "[{\"medium\":{\"kind\":\"film\",\"minutes\":5},\"bare\":[" +
            QByteArray("\"a, b\",").repeated(50'000).chopped(1) +
            "]},{\"terms\":{\"tag\":\"medium\",\"value\":{\"kind\":\"film\",\"minutes\":5}},\"bare\":{}}]");
}

TEST(JsonDecode, RefusesALongTextThatIsBadAnywhere) {
    const TZOTypeInfo* any = TZOTypeLibrary::Scalar(vkAny);
    const QByteArray json = LongText(1);
    const auto refuses = [&](const QByteArray& AText) { return Failure(any, AText) != u"no failure"; };
    std::mt19937 random(2);
    for (int i = 0; i < 30; ++i) {
        const auto place = qsizetype(random() % unsigned(json.size()));
        EXPECT_TRUE(refuses(json.first(place))) << place;
        EXPECT_TRUE(refuses(json.first(place) + '\xFF' + json.sliced(place))) << place;
        EXPECT_TRUE(refuses(json.first(place) + '\x01' + json.sliced(place))) << place;
    }
    EXPECT_FALSE(refuses(json + QByteArray(300'000, ' ')));
    EXPECT_TRUE(refuses(json + QByteArray(300'000, ' ') + '\xFF'));
    EXPECT_TRUE(refuses(json + QByteArray(300'000, ' ') + ','));
    EXPECT_TRUE(refuses(json + QByteArray(300'000, ' ') + '"'));
}

TEST(JsonDecode, AcceptsExactlyWhatIsJson) {
    const QByteArray whole =
        R"({"s" : "a\u00e9\"b", "list":[1,-2.5e3,[]], "any":{"x":[true,null],"y":{}}, "n":false})";
    const QByteArray pieces = "{}[],:\"\\ \n\t\f\x01u0e-+.1tfn\xC3\xA9";
    std::mt19937 random(11);
    const TZOTypeInfo* any = TZOTypeLibrary::Scalar(vkAny);
    int accepted = 0;
    for (int i = 0; i < 50'000; ++i) {
        QByteArray text = whole;
        for (auto changes = random() % 3; changes <= 2; ++changes) {
            const auto place = qsizetype(random() % unsigned(text.size()));
            const char piece = pieces[qsizetype(random() % unsigned(pieces.size()))];
            switch (random() % 4) {
            case 0:
                text[place] = piece;
                break;
            case 1:
                text.insert(place, piece);
                break;
            case 2:
                text.remove(place, 1);
                break;
            default:
                text.insert(place, text.mid(qsizetype(random() % unsigned(text.size())), 5));
            }
        }
        const bool isValid = JsonText::IsValid(text);
        accepted += isValid;
        ASSERT_EQ(Failure(any, text) == QStringLiteral("no failure"), isValid) << text.constData();
    }
    EXPECT_GT(accepted, 1000);
}
