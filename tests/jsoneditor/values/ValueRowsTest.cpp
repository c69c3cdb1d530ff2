// How values of each kind look in each of their states.
#include "tests/jsoneditor/values/ValueTypes.h"
#include "tests/jsoneditor/values/ValueView.h"

#include <gtest/gtest.h>

namespace {

struct TKindCase {
    const char* Name;
    const TZOTypeInfo* (*Type)(TValueTypes&);
    const char* Json;
    const char* Present;
    const char* Placeholder;
    const char* OpenedEmpty; // null for kinds that cannot be opened
};

template <TZOValueKind Kind>
const TZOTypeInfo* Scalar(TValueTypes&) {
    return TZOTypeLibrary::Scalar(Kind);
}

const TKindCase Kinds[] = {
    {"String", Scalar<vkString>, R"({"p":"say \"hi\""})", R"(p: <say "hi">)", "~p: <value>", nullptr},
    {"Integer", Scalar<vkInteger>, R"({"p":-42})", "p: <-42>", "~p: <value>", nullptr},
    {"Int64", Scalar<vkInt64>, R"({"p":9223372036854775807})", "p: <9223372036854775807>", "~p: <value>",
     nullptr},
    {"Boolean", Scalar<vkBoolean>, R"({"p":true})", "p: <True>", "~p: <value>", nullptr},
    {"Float", Scalar<vkFloat>, R"({"p":0.1})", "p: <0.1>", "~p: <value>", nullptr},
    {"DateTime", Scalar<vkDateTime>, R"({"p":"2024-02-29T12:30:00+02:00"})", "p: <2024-02-29T10:30:00Z>",
     "~p: <value>", nullptr},
    {"Date", Scalar<vkDate>, R"({"p":"2024-02-29"})", "p: <2024-02-29>", "~p: <value>", nullptr},
    {"Any", Scalar<vkAny>, R"({"p":{"b":1.00,"a":[]}})", R"(p: <{"b":1.00,"a":[]}>)", "~p: <any>", nullptr},
    {"Upload", Scalar<vkUpload>, nullptr, "p: <(Upload)>", "~p: <value>", nullptr},
    {"Download", Scalar<vkDownload>, nullptr, "p: <(Download)>", "~p: <value>", nullptr},
    {"List", [](TValueTypes& t) -> const TZOTypeInfo* { return t.Numbers; }, R"({"p":[1,null,3]})",
     "p: [\n    <1>\n    null\n    <3>\n  ]", "~p: list", "~p: [\n    ~<value>\n  ~]"},
    {"Map", [](TValueTypes& t) -> const TZOTypeInfo* { return t.Scores; }, R"({"p":{"b":1,"a":2}})",
     "p: {\n    b: <1>\n    a: <2>\n  }", "~p: map", "~p: {\n    ~<key>: value\n  ~}"},
    {"Object", [](TValueTypes& t) -> const TZOTypeInfo* { return t.Person; },
     R"({"p":{"id":7,"name":"Ann"}})", "p: {\n    name: <Ann>\n    id: <7>\n  }", "~p: object",
     "p: {\n    ~name: <value>\n    ~age: <value>\n  }"},
    {"Polymorphic", [](TValueTypes& t) -> const TZOTypeInfo* { return t.Shape; },
     R"({"p":{"type":"square","side":2}})", "p: {\n    type: square\n    side: <2>\n  }", "~p: object",
     "~p: {\n    ~type:\n      ~> circle\n      ~> square\n  ~}"},
    {"Union", [](TValueTypes& t) -> const TZOTypeInfo* { return t.Choice; },
     R"({"p":{"kind":"person","value":{"age":3}}})",
     "p: {\n    kind: person\n    value: {\n      age: <3>\n    }\n  }", "~p: union",
     "~p: {\n    ~kind:\n  ~}"},
    {"UnionWithoutValue", [](TValueTypes& t) -> const TZOTypeInfo* { return t.Choice; },
     R"({"p":{"kind":"none"}})", "p: {\n    kind: none\n  }", "~p: union", "~p: {\n    ~kind:\n  ~}"},
};

class KindRows : public testing::TestWithParam<TKindCase> {
protected:
    QString InObject(const char* ARows) const {
        return QStringLiteral("{\n  %1\n}").arg(QString::fromUtf8(ARows));
    }
    /// The rows of the property "p" as those of something else at the same level.
    static QString As(const char* AKey, const char* ARows) {
        QString rows = QString::fromUtf8(ARows);
        return rows.replace(rows.indexOf(QLatin1String("p: ")), 3, QLatin1String(AKey));
    }
    /// The same one level further out.
    static QString Outermost(const QString& ARows) {
        return QString(ARows).replace(QLatin1String("\n  "), QLatin1String("\n"));
    }
    /// What a placeholder is before its key is known: it cannot be typed into.
    static QString WithoutBrackets(QString ARows) { return ARows.remove('<').remove('>'); }
    /// The value of "p" alone, or nothing for a stream, which has no JSON to be read from.
    static QByteArray ValueJson() {
        const QByteArray json = GetParam().Json;
        return json.isEmpty() ? "" : json.mid(5, json.size() - 6);
    }

    TValueTypes Types;
    const TZOTypeInfo* Type = GetParam().Type(Types);
    const TZOTypeInfo* Holder = Types.Holding(Type);
    const TZOTypeInfo* List = Types.Library.NewList(Type);
    const TZOTypeInfo* Map = Types.Library.NewMap(Type);
    const TZOTypeInfo* Union =
        Types.Library.NewUnion(QStringLiteral("Wrapped"), QStringLiteral("tag"), ufTagged)
            .Tag(QStringLiteral("it"), Type)
            .Tag(QStringLiteral("none"), nullptr)
            .Type();
};

} // namespace

TEST_P(KindRows, AbsentRootShowsNull) {
    TValueView view(Type);
    view.Expect("null");
}

TEST_P(KindRows, AbsentPropertyHasNoRow) {
    TValueView view(Holder, "{}");
    view.Expect("{\n}");
}

TEST_P(KindRows, AbsentElementShowsNull) {
    TValueView view(Types.Library.NewList(Type), "[null]");
    view.Expect("[\n  null\n]");
}

TEST_P(KindRows, PresentValueShowsItsText) {
    TValueView view(Holder, GetParam().Json ? GetParam().Json : "{}");
    if (!GetParam().Json) {
        // A stream has no JSON to be read from.
        void* object = nullptr;
        void* stream = nullptr;
        view.Holder.GetByRef(object);
        ZOObject::TData::GetByRef(*static_cast<ZOObject**>(object), 0, stream);
        view.Press("F5");
    }
    view.Expect(InObject(GetParam().Present));
}

TEST_P(KindRows, PlaceholderShowsAGreyHint) {
    TValueView view(Holder, "{}");
    view.DoubleClick("{");
    view.Expect(InObject(GetParam().Placeholder));
}

TEST_P(KindRows, PlaceholderOpensEmptyOnADoubleClickIfItIsAContainer) {
    TValueView view(Holder, "{}");
    view.DoubleClick("{");
    view.DoubleClick(GetParam().Placeholder);
    view.Expect(InObject(GetParam().OpenedEmpty ? GetParam().OpenedEmpty : GetParam().Placeholder));
}

TEST_P(KindRows, EscapeTakesWhatWasNotStoredAway) {
    TValueView view(Holder, "{}");
    view.DoubleClick("{");
    view.Press("Escape");
    view.Expect("{\n}");
    view.ExpectJson("{}");
}

TEST_P(KindRows, PresentRootShowsItsText) {
    if (ValueJson().isEmpty()) {
        TValueView view(Type);
        void* stream = nullptr;
        view.Holder.SetValue(true, stream);
        view.Press("F5");
        return view.Expect(As("", GetParam().Present));
    }
    TValueView view(Type, ValueJson());
    view.Expect(Outermost(As("", GetParam().Present)));
}

TEST_P(KindRows, PresentElementHasNoKey) {
    TValueView view(List, ValueJson().isEmpty() ? "[]" : '[' + ValueJson() + ']');
    if (ValueJson().isEmpty()) {
        void* list = nullptr;
        void* stream = nullptr;
        ASSERT_TRUE(view.Holder.GetValue(list));
        static_cast<ZOList*>(list)->Insert(0, true, stream);
        view.Press("F5");
    }
    view.Expect("[\n  " + As("", GetParam().Present) + "\n]");
}

TEST_P(KindRows, PresentItemHasItsKey) {
    TValueView view(Map, GetParam().Json ? GetParam().Json : "{}");
    if (!GetParam().Json) {
        void* map = nullptr;
        void* stream = nullptr;
        ASSERT_TRUE(view.Holder.GetValue(map));
        static_cast<ZOMap*>(map)->SetItem(QStringLiteral("p"), true, stream);
        view.Press("F5");
    }
    view.Expect(InObject(GetParam().Present));
}

TEST_P(KindRows, AbsentItemShowsNull) {
    TValueView view(Map, R"({"p":null})");
    view.Expect("{\n  p: null\n}");
}

TEST_P(KindRows, PresentValueOfAUnionStandsUnderItsTag) {
    TValueView view(Union, ValueJson().isEmpty() ? R"({"tag":"none"})"
                                                 : R"({"tag":"it","value":)" + ValueJson() + '}');
    if (ValueJson().isEmpty()) {
        void* held = nullptr;
        void* stream = nullptr;
        ASSERT_TRUE(view.Holder.GetValue(held));
        ZOUnion::TData::SetTag(*static_cast<ZOUnion**>(held), 0, true, stream);
        view.Press("F5");
    }
    view.Expect("{\n  tag: it\n  " + As("value: ", GetParam().Present) + "\n}");
}

TEST_P(KindRows, NewElementShowsAGreyHintAndOpens) {
    TValueView view(List, "[]");
    view.DoubleClick("[");
    const QString hint = As("", GetParam().Placeholder);
    view.Expect("[\n  " + hint + "\n]");
    view.DoubleClick(hint);
    const QString opened = GetParam().OpenedEmpty ? As("", GetParam().OpenedEmpty) : hint;
    view.Expect("[\n  " + opened + "\n]");
}

TEST_P(KindRows, NewItemWaitsForItsKeyThenShowsAGreyHintAndOpens) {
    TValueView view(Map, "{}");
    view.DoubleClick("{");
    const QString keyless = "~<key>: " + WithoutBrackets(As("", GetParam().Placeholder)).remove('~');
    view.Expect("{\n  " + keyless + "\n}");
    view.Enter(keyless, "p");
    view.Expect(InObject(GetParam().Placeholder));
    view.DoubleClick(GetParam().Placeholder);
    view.Expect(InObject(GetParam().OpenedEmpty ? GetParam().OpenedEmpty : GetParam().Placeholder));
}

TEST_P(KindRows, PickedTagShowsAGreyHintAndOpens) {
    TValueView view(Union, R"({"tag":"none"})");
    view.DoubleClick("tag: none");
    view.DoubleClick("~> it");
    const QString hint = As("value: ", GetParam().Placeholder);
    view.Expect("{\n  ~tag: it\n  " + hint + "\n}");
    view.DoubleClick(hint);
    const QString opened = GetParam().OpenedEmpty ? As("value: ", GetParam().OpenedEmpty) : hint;
    // Opening an object stores it, and its tag with it.
    view.Expect((opened.startsWith('~') ? "{\n  ~tag: it\n  " : "{\n  tag: it\n  ") + opened + "\n}");
}

TEST_P(KindRows, AbsentRootOpensEmptyWithoutGrey) {
    TValueView view(Type);
    view.DoubleClick("null");
    if (!GetParam().OpenedEmpty)
        return view.Expect("null");
    // The outermost row is no placeholder: neither its brackets nor the tag row of a union hide that.
    QString rows = Outermost(As("", GetParam().OpenedEmpty));
    if (rows.startsWith('~'))
        rows.remove(0, 1);
    view.Expect(rows.replace(QLatin1String("\n~]"), QLatin1String("\n]"))
                    .replace(QLatin1String("\n~}"), QLatin1String("\n}")));
}

INSTANTIATE_TEST_SUITE_P(All, KindRows, testing::ValuesIn(Kinds),
                         [](const auto& AInfo) { return std::string(AInfo.param.Name); });
