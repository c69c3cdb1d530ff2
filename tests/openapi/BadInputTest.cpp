// Documents that are broken in one way or another: what is sound is imported, the rest is told, and
// neither time nor memory grows out of bounds.
#include "tests/openapi/OpenApiFixture.h"

#include <QElapsedTimer>

namespace {

class TBadInputTest : public TOpenApiTest {
protected:
    /// Loads AGood as often as it has values, times the kinds of wrong ones; returns how often that was.
    int LoadWithWrongValues(const QByteArray& AGood) const;
};

const QByteArray JsonHead = R"({"openapi": "3.0.0", "info": {"title": "T", "version": "1"}, "paths": )";

QByteArray Nested(int ADepth, const QByteArray& AOpen, const QByteArray& AClose) {
    return AOpen.repeated(ADepth) + AClose.repeated(ADepth);
}

} // namespace

int TBadInputTest::LoadWithWrongValues(const QByteArray& AGood) const {
    int count = 0;
    for (qsizetype colon = AGood.indexOf(": "); colon >= 0; colon = AGood.indexOf(": ", colon + 1)) {
        const qsizetype begin = colon + 2;
        qsizetype end = begin;
        int depth = 0;
        bool isQuoted = false;
        for (; end < AGood.size(); ++end) {
            const char c = AGood[end];
            isQuoted ^= c == '"';
            depth += !isQuoted && (c == '{' || c == '[') ? 1 : 0;
            if (!isQuoted && depth == 0 && (c == ',' || c == '}' || c == ']'))
                break;
            depth -= !isQuoted && (c == '}' || c == ']') ? 1 : 0;
        }
        for (const char* other : {"null", "true", "7", "\"text\"", "[]", "[[1]]", "{}", "{\"$ref\": 5}",
                                  "{\"$ref\": \"#/paths\"}"}) {
            const auto document =
                Load(AGood.left(begin) + other + AGood.mid(end), QStringLiteral("wrong.json"));
            document->CompleteAll();
            document->Counts();
            ++count;
        }
    }
    return count;
}

TEST_F(TBadInputTest, ThatIsNoDocumentGivesNoService) {
    const std::tuple<QString, QByteArray, const char*> cases[] = {
        {QStringLiteral("empty.json"), "", "neither JSON nor YAML"},
        {QStringLiteral("blank.yaml"), "  \n", "neither"},
        {QStringLiteral("text.txt"), "Some words.\nAnd more.", "neither an OpenAPI 3 nor a Swagger 2.0"},
        {QStringLiteral("list.json"), "[1, 2]", "neither an OpenAPI 3 nor a Swagger 2.0"},
        {QStringLiteral("other.json"), R"({"asyncapi": "2.0.0"})", "neither an OpenAPI 3 nor a Swagger 2.0"},
        {QStringLiteral("old.json"), R"({"swagger": "1.2"})", "neither an OpenAPI 3 nor a Swagger 2.0"},
        {QStringLiteral("bytes.bin"), QByteArray("\xff\xfe\x00\x80", 4), ""},
        {QStringLiteral("tabs.yaml"), "\t- a\n\tb", ""},
    };
    for (const auto& [name, text, message] : cases) {
        const auto document = Load(text, name);
        EXPECT_FALSE(document->ServiceClass()) << name.toStdString();
        EXPECT_THAT(Problems(*document).join(u'\n').toStdString(), testing::HasSubstr(message))
            << name.toStdString();
        EXPECT_FALSE(document->Problems().empty()) << name.toStdString();
    }
    const auto missing = TZOApiDocument::Load(Folder.filePath(QStringLiteral("nowhere.json")));
    EXPECT_FALSE(missing->ServiceClass());
    ASSERT_EQ(missing->Problems().size(), 1U);
    EXPECT_TRUE(missing->Problems()[0].File.endsWith(QStringLiteral("nowhere.json")));
}

TEST_F(TBadInputTest, ThatIsCutOffKeepsWhatStandsBeforeTheCut) {
    const QByteArray json = JsonHead + R"({"/a": {"get": {"operationId": "a", "responses": {}}},
      "/b": {"get": {"operationId": "b", "responses": {}}}}})";
    const QByteArray yaml =
        "openapi: 3.0.0\ninfo: {title: T, version: '1'}\npaths:\n  /a:\n    get: {operationId: a, "
        "responses: {}}\n  /b:\n    get: {operationId: b, responses: {}}\n";
    for (const QByteArray& whole : {json, yaml}) {
        for (qsizetype size = 0; size < whole.size(); ++size) {
            const auto document = Load(whole.left(size));
            document->CompleteAll();
            const bool hasFirst = OperNames(*document).contains(QStringLiteral("a"));
            const bool hasReadFirst = whole.left(size).contains("responses: {}}\n") ||
                                      whole.left(size).contains("\"responses\": {}}}");
            EXPECT_TRUE(hasFirst || !hasReadFirst) << size;
        }
    }
    const auto document = Load(json.left(json.indexOf("\"b\"")), QStringLiteral("cut.json"));
    EXPECT_EQ(OperNames(*document).first(), QStringLiteral("a"));
    ASSERT_FALSE(document->Problems().empty());
    EXPECT_EQ(document->Problems()[0].Line, 2);
    EXPECT_TRUE(document->Problems()[0].Message.contains(QStringLiteral("ends in the middle")));
}

TEST_F(TBadInputTest, WithWrongTypesInEveryPlaceIsSurvivedPlaceByPlace) {
    const QByteArray documents[] = {
        R"({"openapi": "3.0.0", "info": {"title": "T", "version": "1"}, "servers": [{"url": "http://{a}/v", "variables": {"a": {"default": "b"}}}],
      "security": [{"k": []}], "paths": {"/a": {"parameters": [{"name": "p", "in": "query", "style": "form", "explode": true, "schema": {"type": "string"}}],
      "get": {"operationId": "a", "summary": "s", "tags": ["t"], "requestBody": {"content": {"multipart/form-data": {"schema": {"$ref": "#/components/schemas/S"}, "encoding": {"a": {"contentType": "x"}}}}},
      "responses": {"200": {"description": "d", "content": {"application/json": {"schema": {"$ref": "#/components/schemas/U"}}}}}}},
      "/ok": {"get": {"operationId": "ok", "responses": {}}}},
      "components": {"securitySchemes": {"k": {"type": "apiKey", "in": "header", "name": "n"}}, "schemas": {"S": {"type": "object", "required": ["a"],
      "properties": {"a": {"type": "array", "items": {"type": "string", "enum": ["e"]}}}, "additionalProperties": {"type": "string"}},
      "U": {"oneOf": [{"$ref": "#/components/schemas/S"}, {"allOf": [{"$ref": "#/components/schemas/S"}, {"properties": {"a": {"enum": ["t"]}}}]}], "discriminator": {"propertyName": "a", "mapping": {"s": "S"}}}}}})",
        R"({"swagger": "2.0", "info": {"title": "T", "version": "1"}, "host": "h", "basePath": "/v", "schemes": ["https"], "consumes": ["application/json"], "produces": ["application/json"],
      "securityDefinitions": {"o": {"type": "oauth2", "flow": "implicit", "authorizationUrl": "http://h/a", "scopes": {"s": "d"}}}, "security": [{"o": ["s"]}],
      "parameters": {"P": {"name": "p", "in": "query", "type": "array", "items": {"type": "string"}, "collectionFormat": "multi"}}, "responses": {"R": {"description": "d", "schema": {"$ref": "#/definitions/D"}}},
      "paths": {"/a": {"post": {"operationId": "a", "consumes": ["multipart/form-data"], "parameters": [{"$ref": "#/parameters/P"}, {"name": "f", "in": "formData", "type": "file"}], "responses": {"200": {"$ref": "#/responses/R"}}},
      "put": {"parameters": [{"name": "b", "in": "body", "schema": {"$ref": "#/definitions/D"}}], "responses": {"default": {"description": "d", "schema": {"type": "file"}}}}}},
      "definitions": {"D": {"type": "object", "discriminator": "k", "required": ["k"], "properties": {"k": {"type": "string"}}}, "E": {"allOf": [{"$ref": "#/definitions/D"}, {"properties": {"n": {"type": "integer", "format": "int32", "x-nullable": true}}}]}}})",
        R"({"openapi": "3.1.0", "info": {"title": "T", "version": "1"}, "servers": [{"url": "https://h/v"}], "webhooks": {"w": {"post": {"operationId": "w"}}}, "paths": {"/a": {"$ref": "#/components/pathItems/I"}},
      "components": {"pathItems": {"I": {"post": {"operationId": "a", "callbacks": {"c": {"x": {"post": {"operationId": "c"}}}}, "requestBody": {"$ref": "#/components/requestBodies/B"}, "responses": {"2XX": {"description": "d", "content": {"application/json": {"schema": {"$ref": "https://h/s#n"}}}}}}}},
      "requestBodies": {"B": {"required": true, "content": {"application/json": {"schema": {"$ref": "#/components/schemas/S"}, "example": {"$id": "e"}}}}},
      "schemas": {"S": {"$id": "https://h/s", "$defs": {"N": {"$anchor": "n", "type": ["string", "null"], "const": "c", "examples": ["x"]}}, "type": "object", "properties": {"n": {"$ref": "#n"}, "p": {"prefixItems": [{"type": "string"}], "items": false, "contentMediaType": "image/png"}}, "patternProperties": {"^x": {"type": "integer"}}, "additionalProperties": false}}}})"};
    int count = 0;
    for (const QByteArray& good : documents) {
        const auto document = Load(good, QStringLiteral("good.json"));
        document->CompleteAll();
        EXPECT_EQ(Problems(*document), QStringList());
        count += LoadWithWrongValues(good);
    }
    EXPECT_GT(count, 1200);
}

TEST_F(TBadInputTest, ThatNestsWithoutEndIsBounded) {
    const std::pair<QString, QByteArray> cases[] = {
        {QStringLiteral("lists.json"),
         JsonHead + R"({"/a": {"get": {"operationId": "a", "x": )" + Nested(100000, "[", "]") + "}}}}"},
        {QStringLiteral("objects.json"), JsonHead + R"({"/a": {"get": {"operationId": "a", "x": )" +
                                             Nested(100000, "{\"a\":", "}").replace(":}", ":1}") + "}}}}"},
        {QStringLiteral("flow.yaml"),
         "openapi: 3.0.0\npaths: {/a: {get: {operationId: a}}}\nx: " + Nested(100000, "[", "]") + "\n"},
        {QStringLiteral("block.yaml"), "openapi: 3.0.0\npaths: {/a: {get: {operationId: a}}}\nx:\n  " +
                                           QByteArray("- ").repeated(100000) + "1\n"},
        {QStringLiteral("open.json"),
         JsonHead + R"({"/a": {"get": {"operationId": "a"}}}, "x": )" + QByteArray("[").repeated(100000)},
    };
    for (const auto& [name, text] : cases) {
        QElapsedTimer timer;
        timer.start();
        const auto document = Load(text, name);
        document->CompleteAll();
        EXPECT_EQ(OperNames(*document).value(0), QStringLiteral("a")) << name.toStdString();
        EXPECT_THAT(Problems(*document).join(u'\n').toStdString(),
                    testing::HasSubstr("more than 1000 levels deep"))
            << name.toStdString();
        EXPECT_LT(timer.elapsed(), 5000) << name.toStdString();
    }
}

TEST_F(TBadInputTest, WhoseSchemasStandInsideEachOtherWithoutEndIsBounded) {
    QByteArray schemas;
    constexpr int count = 20000;
    for (int i = 0; i < count; ++i) {
        const QByteArray next =
            "{\"$ref\": \"#/components/schemas/S" + QByteArray::number((i + 1) % count) + "\"}";
        schemas += (i ? ",\"S" : "\"S") + QByteArray::number(i) + "\": {\"allOf\": [" + next + "]}";
        schemas += ",\"T" + QByteArray::number(i) + "\": {\"allOf\": [" +
                   QByteArray(next).replace("/S", "/T") + ", {\"properties\": {\"p" + QByteArray::number(i) +
                   "\": {}}}]}";
        schemas += ",\"O" + QByteArray::number(i) +
                   "\": {\"properties\": {\"o\": " + QByteArray(next).replace("/S", "/O") + "}}";
    }
    const auto param = [](const QByteArray& AName) {
        return "{\"name\": \"" + AName +
               "\", \"in\": \"query\", \"schema\": {\"$ref\": \"#/components/schemas/" + AName + "\"}}";
    };
    QElapsedTimer timer;
    timer.start();
    const auto document = Load(JsonHead + "{\"/a\": {\"get\": {\"operationId\": \"a\", \"parameters\": [" +
                               param("S0") + "," + param("T0") + "," + param("O0") +
                               "], \"responses\": {}}}}, \"components\": {\"schemas\": {" + schemas + "}}}");
    const POper oper = OperOf(*document, QStringLiteral("a"));
    EXPECT_EQ(oper->Request->PropertyCount(), 3);
    EXPECT_FALSE(document->Problems().empty());
    EXPECT_LT(timer.elapsed(), 10000);
}

TEST_F(TBadInputTest, OfAliasesThatMultiplyIsBounded) {
    QByteArray yaml = "openapi: 3.0.0\ninfo: {title: T, version: '1'}\nx0: &x0 {type: object, properties: "
                      "{v: {type: string}}}\n";
    for (int i = 1; i <= 30; ++i) {
        const QByteArray last = "*x" + QByteArray::number(i - 1);
        yaml += "x" + QByteArray::number(i) + ": &x" + QByteArray::number(i) +
                " {type: object, properties: {a: " + last + ", b: " + last + ", c: " + last + "}}\n";
    }
    yaml += "paths: {/a: {post: {operationId: a, requestBody: {content: {application/json: {schema: *x30}}}, "
            "responses: {}}}}\n";
    QElapsedTimer timer;
    timer.start();
    const auto document = Load(yaml);
    document->CompleteAll();
    EXPECT_EQ(OperNames(*document), QStringList{QStringLiteral("a")});
    EXPECT_EQ(Problems(*document), QStringList());
    EXPECT_LT(timer.elapsed(), 2000);

    QByteArray merges = "openapi: 3.0.0\nm0: &m0 {";
    for (int i = 0; i < 2000; ++i)
        merges += "k" + QByteArray::number(i) + ": 1, ";
    merges += "}\n";
    for (int i = 1; i <= 2000; ++i)
        merges += "m" + QByteArray::number(i) + ": {<<: *m0}\n";
    const auto merged = Load(merges);
    EXPECT_THAT(Problems(*merged).join(u'\n').toStdString(),
                testing::HasSubstr("Merge keys add too many entries."));
    EXPECT_LT(timer.elapsed(), 10000);
}

TEST_F(TBadInputTest, WithLongTextsIsRead) {
    const QByteArray text(4 << 20, 'x');
    const auto document = Load(JsonHead + R"({"/a": {"get": {"operationId": ")" + text +
                               R"(", "summary": ")" + text + R"(", "responses": {}}}}})");
    EXPECT_EQ(OperNames(*document).value(0).size(), text.size());
    EXPECT_EQ(Problems(*document), QStringList());
}

TEST_F(TBadInputTest, IsToldInPlainSentencesWithItsPlace) {
    const auto document = LoadPaths(R"(
  /a/{id}/{other}:
    get:
      operationId: 5
      parameters:
        - {name: id, in: path, schema: {type: strin}}
        - {in: query}
        - {name: x, in: nowhere}
        - {name: gone, in: path, schema: {type: string}}
        - {name: q, in: query, style: fancy, schema: {type: string}}
        - $ref: '#/components/parameters/none'
      requestBody: {}
      responses: []
  /b: 7
  c: {get: []}
)");
    document->CompleteAll();
    EXPECT_EQ(Problems(*document).join(u'\n').toStdString(),
              R"(/paths/~1a~1{id}~1{other}/get/operationId: An operationId has to be text.
/paths/~1b: A path has to be an object of operations.
/paths/c: A path has to start with a slash.
/paths/c/get: An operation has to be an object.
/paths/~1a~1{id}~1{other}/get/parameters/1: A parameter has to have a name and a place.
/paths/~1a~1{id}~1{other}/get/parameters/5/$ref: "#/components/parameters/none" refers to nothing.
/paths/~1a~1{id}~1{other}/get/parameters/0/schema/type: There is no type of this name.
/paths/~1a~1{id}~1{other}/get/parameters/2: There is no place "nowhere" for a parameter.
/paths/~1a~1{id}~1{other}/get/parameters/3: The path has no "{gone}".
/paths/~1a~1{id}~1{other}/get/parameters/4/style: There is no style of this name.
/paths/~1a~1{id}~1{other}/get: The path's "{other}" is no parameter; it is taken for text.
/paths/~1a~1{id}~1{other}/get/requestBody: The body has no content.
/paths/~1a~1{id}~1{other}/get/responses: Responses have to be an object.)");
    EXPECT_EQ(document->Problems()[1].Line, 17);
    EXPECT_EQ(document->Problems()[1].ToText(),
              document->Problems()[1].File +
                  QStringLiteral(":17: /paths/~1b: A path has to be an object of operations."));
}

TEST_F(TBadInputTest, StopsTellingAfterAThousandProblems) {
    QByteArray paths;
    for (int i = 0; i < 3000; ++i)
        paths += "  p" + QByteArray::number(i) + ": {}\n";
    EXPECT_EQ(LoadPaths(paths)->Problems().size(), 1001U);
}

TEST_F(TBadInputTest, OfAnyLengthCanBeGivenUp) {
    QByteArray text = "openapi: 3.0.0\nx:\n";
    for (int i = 0; i < 100000; ++i)
        text += "  - {a: b}\n";
    const QString path = Write(QStringLiteral("long.yaml"), text);
    double last = 0;
    int calls = 0;
    EXPECT_FALSE(TZOApiDocument::Load(path, [&](double ADone) {
        EXPECT_GE(ADone, last);
        EXPECT_LE(ADone, 1);
        last = ADone;
        return ++calls < 3;
    }));
    EXPECT_EQ(calls, 3);
}
