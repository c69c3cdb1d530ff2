// How values of every kind stand in paths, queries, headers, cookies and forms.
#include "tests/runtime/service/ServiceFixture.h"

namespace {

using namespace ServiceCalls;

struct TStyleCase {
    const char* Type; ///< one of TypeOf
    TZOParamStyle Style;
    bool Explode;
    const char* Value;    ///< as JSON
    const char* Expected; ///< what is sent
};

const TZOTypeInfo* Scalar(const QByteArray& AName) {
    static const std::pair<const char*, TZOValueKind> kinds[] = {
        {"text", vkString}, {"int", vkInteger},      {"long", vkInt64}, {"bool", vkBoolean},
        {"float", vkFloat}, {"instant", vkDateTime}, {"date", vkDate},  {"any", vkAny}};
    for (const auto& [name, kind] : kinds) {
        if (AName == name)
            return TZOTypeLibrary::Scalar(kind);
    }
    return nullptr;
}

const TZOTypeInfo* TypeOf(TZOTypeLibrary& ATypes, const QByteArray& AName) {
    const auto* text = TZOTypeLibrary::Scalar(vkString);
    const auto* integer = TZOTypeLibrary::Scalar(vkInteger);
    if (const auto* scalar = Scalar(AName))
        return scalar;
    if (AName == "list")
        return ATypes.NewList(text);
    if (AName == "map")
        return ATypes.NewMap(text);
    if (AName == "lists")
        return ATypes.NewList(ATypes.NewList(integer));
    const auto* color =
        ATypes.NewObject("Color").Property("R", integer).Property("G", integer).Property("B", integer).Type();
    if (AName == "color")
        return color;
    if (AName == "deep")
        return ATypes.NewObject("Deep")
            .Property("a", text)
            .Property("list", ATypes.NewList(text))
            .Property("color", color)
            .Type();
    if (AName == "union")
        return ATypes.NewUnion("Union", "tag", ufBare).Tag("number", integer).Tag("color", color).Type();
    if (AName == "shape") {
        TZOObjectBuilder shape = ATypes.NewObject("Shape");
        shape.Property("name", text);
        const auto* circle = ATypes.NewObject("Circle").Base(shape.Type()).Property("r", integer).Type();
        return shape.Discriminator("kind").Subtype("circle", circle).Type();
    }
    throw std::invalid_argument("no type " + AName.toStdString());
}

class TParamStyleTest : public TServiceTest {
protected:
    /// Sends the case's value as the parameter "v" of an operation.
    void Send(const TStyleCase& ACase, TZOParamPlace APlace, const QString& APath) const {
        TZOServiceBuilder builder("TTestService", {}, Url());
        TZOServiceParam param{"v", TypeOf(builder.Types(), ACase.Type), {}, false, {}};
        param.Binding.Place = APlace;
        param = param.Styled(ACase.Style, ACase.Explode);
        param.Binding.Property = "v";
        builder.Operation("Call", {}, APlace == ppFormField ? "POST" : "GET", APath, {param}, nullptr);
        const auto serviceClass = ClassOf(builder);
        const auto service = serviceClass->Create();
        Exec(*service, "Call", QByteArray("{\"v\":") + ACase.Value + "}");
    }

    template <class TSent, std::size_t TCount>
    void ExpectAll(const TStyleCase (&ACases)[TCount], TZOParamPlace APlace, const QString& APath,
                   TSent ASent) {
        for (const TStyleCase& each : ACases) {
            SCOPED_TRACE(std::string(each.Type) + " " + std::to_string(each.Style) +
                         (each.Explode ? " exploded " : " ") + each.Value);
            try {
                Send(each, APlace, APath);
                EXPECT_EQ(ASent(), QByteArray(each.Expected));
            } catch (const std::exception& failure) {
                ADD_FAILURE() << failure.what();
            }
        }
    }
};

// Most rows are examples of RFC 6570, section 3.2, and of the OpenAPI parameter table.
constexpr char Rgb[] = R"({"R":100,"G":200,"B":150})";
constexpr char Words[] = R"(["red","green","blue"])";
constexpr char Marks[] = R"({"semi":";","dot":".","comma":","})";

TEST_F(TParamStyleTest, InThePath) {
    const TStyleCase cases[] = {
        {"text", psSimple, false, R"("value")", "value"},
        {"text", psDefault, false, R"("Hello World!")", "Hello%20World%21"},
        {"text", psSimple, false, R"("/foo/bar")", "%2Ffoo%2Fbar"},
        {"text", psSimple, false, R"("50%?#ü~-._")", "50%25%3F%23%C3%BC~-._"},
        {"text", psSimple, false, R"("..")", "%2E%2E"},
        {"text", psSimple, false, R"("")", ""},
        {"int", psSimple, false, "-5", "-5"},
        {"long", psSimple, false, "9007199254740993", "9007199254740993"},
        {"bool", psSimple, false, "true", "true"},
        {"float", psSimple, false, "0.1", "0.1"},
        {"instant", psSimple, false, R"("2024-02-29T13:30:00+01:00")", "2024-02-29T12%3A30%3A00Z"},
        {"date", psSimple, false, R"("2024-02-29")", "2024-02-29"},
        {"any", psSimple, false, R"("a b")", "a%20b"},
        {"any", psSimple, false, "1.50", "1.50"},
        {"list", psSimple, false, Words, "red,green,blue"},
        {"list", psSimple, true, Words, "red,green,blue"},
        {"list", psSimple, true, R"(["a,b","c"])", "a%2Cb,c"},
        {"map", psSimple, false, Marks, "semi,%3B,dot,.,comma,%2C"},
        {"map", psSimple, true, Marks, "semi=%3B,dot=.,comma=%2C"},
        {"color", psSimple, false, Rgb, "R,100,G,200,B,150"},
        {"color", psSimple, true, Rgb, "R=100,G=200,B=150"},
        {"text", psLabel, false, R"("who")", ".who"},
        {"list", psLabel, false, Words, ".red,green,blue"},
        {"list", psLabel, true, Words, ".red.green.blue"},
        {"map", psLabel, false, Marks, ".semi,%3B,dot,.,comma,%2C"},
        {"map", psLabel, true, Marks, ".semi=%3B.dot=..comma=%2C"},
        {"list", psLabel, true, "[]", ""},
        {"text", psLabel, false, R"(".")", "%2E%2E"},
        {"text", psMatrix, false, R"("1024")", ";v=1024"},
        {"text", psMatrix, false, R"("")", ";v"},
        {"list", psMatrix, false, Words, ";v=red,green,blue"},
        {"list", psMatrix, true, Words, ";v=red;v=green;v=blue"},
        {"map", psMatrix, false, Marks, ";v=semi,%3B,dot,.,comma,%2C"},
        {"map", psMatrix, true, Marks, ";semi=%3B;dot=.;comma=%2C"},
        {"color", psMatrix, false, Rgb, ";v=R,100,G,200,B,150"},
        {"color", psMatrix, true, Rgb, ";R=100;G=200;B=150"},
        {"list", psMatrix, true, "[]", ""},
        {"union", psSimple, false, "7", "7"},
        {"union", psSimple, true, Rgb, "R=100,G=200,B=150"},
        {"shape", psSimple, true, R"({"kind":"circle","name":"o","r":2})", "kind=circle,name=o,r=2"},
    };
    ExpectAll(cases, ppPath, "/p/{v}/x", [&] { return Target().mid(3).chopped(2); });
}

TEST_F(TParamStyleTest, InTheQuery) {
    const TStyleCase cases[] = {
        {"text", psForm, true, R"("a b&c=d+e")", "?v=a%20b%26c%3Dd%2Be"},
        {"text", psDefault, true, R"("")", "?v="},
        {"bool", psDefault, true, "false", "?v=false"},
        {"float", psDefault, true, "1e100", "?v=1e%2B100"},
        {"instant", psDefault, true, R"("2024-02-29T12:30:00.5Z")", "?v=2024-02-29T12%3A30%3A00.5Z"},
        {"list", psForm, false, Words, "?v=red,green,blue"},
        {"list", psForm, true, Words, "?v=red&v=green&v=blue"},
        {"list", psForm, true, R"(["a",null,""])", "?v=a&v=&v="},
        {"list", psForm, true, "[]", ""},
        {"map", psForm, false, Marks, "?v=semi,%3B,dot,.,comma,%2C"},
        {"map", psForm, true, Marks, "?semi=%3B&dot=.&comma=%2C"},
        {"color", psForm, false, Rgb, "?v=R,100,G,200,B,150"},
        {"color", psForm, true, Rgb, "?R=100&G=200&B=150"},
        {"color", psForm, true, R"({"G":1})", "?G=1"},
        {"color", psForm, true, "{}", ""},
        {"list", psSpaceDelimited, false, Words, "?v=red%20green%20blue"},
        {"list", psSpaceDelimited, true, Words, "?v=red&v=green&v=blue"},
        {"color", psSpaceDelimited, false, Rgb, "?v=R%20100%20G%20200%20B%20150"},
        {"list", psPipeDelimited, false, Words, "?v=red%7Cgreen%7Cblue"},
        {"list", psPipeDelimited, true, Words, "?v=red&v=green&v=blue"},
        {"color", psPipeDelimited, false, Rgb, "?v=R%7C100%7CG%7C200%7CB%7C150"},
        {"color", psDeepObject, true, Rgb, "?v[R]=100&v[G]=200&v[B]=150"},
        {"deep", psDeepObject, true, R"({"a":"x","list":["1","2"],"color":{"R":1}})",
         "?v[a]=x&v[list]=1&v[list]=2&v[color][R]=1"},
        {"map", psDeepObject, true, R"({"a&b":"1"})", "?v[a%26b]=1"},
        {"lists", psForm, true, "[[1,2],[3]]", "?v=%5B1%2C2%5D&v=%5B3%5D"},
        {"deep", psForm, true, R"({"color":{"R":1}})", "?color=%7B%22R%22%3A1%7D"},
        {"color", psJson, false, R"({"R":1})", "?v=%7B%22R%22%3A1%7D"},
        {"text", psJson, true, R"("x")", "?v=%22x%22"},
        {"any", psForm, true, R"({"b":1.0})", "?v=%7B%22b%22%3A1.0%7D"},
        {"union", psForm, true, "7", "?v=7"},
        {"union", psDeepObject, true, Rgb, "?v[R]=100&v[G]=200&v[B]=150"},
        {"shape", psDeepObject, true, R"({"kind":"circle","r":2})", "?v[kind]=circle&v[r]=2"},
    };
    ExpectAll(cases, ppQuery, "/q", [&] { return Target().mid(2); });
}

TEST_F(TParamStyleTest, InAHeader) {
    const TStyleCase cases[] = {
        {"text", psDefault, false, R"("as it is; \"so\", ü")", "as it is; \"so\", \xC3\xBC"},
        {"int", psSimple, false, "12", "12"},
        {"list", psSimple, false, Words, "red,green,blue"},
        {"list", psSimple, true, Words, "red,green,blue"},
        {"color", psSimple, false, Rgb, "R,100,G,200,B,150"},
        {"color", psSimple, true, Rgb, "R=100,G=200,B=150"},
        {"color", psJson, true, R"({"R":1})", R"({"R":1})"},
        {"text", psDefault, false, R"("")", ""},
    };
    ExpectAll(cases, ppHeader, "/h", [&] { return Header("v"); });
}

TEST_F(TParamStyleTest, InACookie) {
    const TStyleCase cases[] = {
        {"text", psDefault, true, R"("plain=text&more")", "v=plain=text&more"},
        {"text", psDefault, true, R"("a;b c,\"ü")", "v=a%3Bb%20c%2C%22%C3%BC"},
        {"list", psForm, false, Words, "v=red,green,blue"},
        {"list", psForm, true, R"(["a","b"])", "v=a; v=b"},
        {"color", psForm, false, Rgb, "v=R,100,G,200,B,150"},
        {"color", psForm, true, Rgb, "R=100; G=200; B=150"},
    };
    ExpectAll(cases, ppCookie, "/c", [&] { return Header("Cookie"); });
}

TEST_F(TParamStyleTest, InAForm) {
    const TStyleCase cases[] = {
        {"text", psDefault, true, R"("a b&c\r\n")", "v=a%20b%26c%0D%0A"},
        {"list", psForm, true, Words, "v=red&v=green&v=blue"},
        {"list", psForm, false, Words, "v=red,green,blue"},
        {"color", psDeepObject, true, Rgb, "v[R]=100&v[G]=200&v[B]=150"},
        {"color", psJson, true, R"({"R":1})", "v=%7B%22R%22%3A1%7D"},
    };
    ExpectAll(cases, ppFormField, "/f", [&] { return Body(); });
}

} // namespace
