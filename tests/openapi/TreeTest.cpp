// Documents as they are read: the same in JSON and in YAML, and JSON judged like by another parser.
#include "tests/openapi/OpenApiFixture.h"

#include "openapi/TypeOutline.h"

#include <simdjson.h>

#include <random>

namespace {

class TTreeTest : public TOpenApiTest {
protected:
    /// A document whose only operation answers an object of those properties, as JSON has them.
    std::unique_ptr<TZOApiDocument> LoadProperties(const QByteArray& AProperties) const {
        return Load(R"({"openapi": "3.0.0", "info": {"title": "T", "version": "1"}, "paths": {"/a": {"get": {
            "operationId": "a", "responses": {"200": {"description": "", "content": {"application/json": {
            "schema": {"type": "object", "properties": {)" +
                        AProperties + "}}}}}}}}}}",
                    QStringLiteral("api.json"));
    }
    static QStringList AnswerPropertiesOf(const TZOApiDocument& ADocument) {
        const auto* type =
            static_cast<const ZOObject::TTypeInfo*>(OperOf(ADocument, QStringLiteral("a"))->Response);
        QStringList names;
        for (int i = 0; i < type->PropertyCount(); ++i)
            names.append(type->Property(i)->Name);
        return names;
    }
};

bool IsJson(const QByteArray& AText) {
    simdjson::dom::parser parser;
    return !parser.parse(AText.constData(), std::size_t(AText.size())).error();
}

/// Whether a problem is about the text itself rather than what it says.
bool IsRefused(const TZOApiDocument& ADocument) {
    const auto isSyntax = [](const TZOApiProblem& AProblem) {
        return AProblem.Pointer.isEmpty() &&
               !AProblem.Message.startsWith(QStringLiteral("This is neither")) &&
               !AProblem.Message.startsWith(QStringLiteral("The document has no"));
    };
    return std::any_of(ADocument.Problems().begin(), ADocument.Problems().end(), isSyntax);
}

} // namespace

TEST_F(TTreeTest, TakesForJsonWhatAnotherParserTakes) {
    const QByteArray good =
        R"({"openapi": "3.0.0", "info": {"title": "a\u00e4\n\"\\\/", "version": "1.0"},
 "paths": {"/a": {"get": {"operationId": "x", "n": [0, -1.5e+1, 1E0, true, false, null, {}, [], ""]}}}})";
    std::mt19937 random(7);
    const QByteArray letters = "{}[]\",:01.eE+-truefalsn \\/\n\t\x01\x80u";
    int refused = 0;
    for (int i = 0; i < 2000; ++i) {
        QByteArray text = good;
        for (int edits = 1 + int(random() % 2); edits > 0; --edits) {
            const auto place = 1 + qsizetype(random() % unsigned(text.size() - 1));
            const char letter = letters[qsizetype(random() % unsigned(letters.size()))];
            switch (random() % 3) {
            case 0:
                text[place] = letter;
                break;
            case 1:
                text.insert(place, letter);
                break;
            default:
                text.remove(place, 1);
            }
        }
        const auto document = Load(text, QStringLiteral("text.json"));
        const bool isRefused = IsRefused(*document);
        EXPECT_EQ(isRefused, !IsJson(text)) << text.toStdString() << '\n'
                                            << Problems(*document).join(u'\n').toStdString();
        refused += isRefused;
    }
    EXPECT_GT(refused, 500);
    EXPECT_LT(refused, 1950);
}

TEST_F(TTreeTest, ReadsEscapesAndByteOrderMarks) {
    const auto document =
        Load("\xEF\xBB\xBF{\"openapi\": \"3.0.0\", \"info\": {\"ti\\u0074le\": "
             "\"\\u00e4\\ud83d\\ude00\\t\\\"\\\\\\/x\", \"version\": \"1\"}, "
             "\"paths\": {\"\\/a\": {\"get\": {\"operationId\": \"o\\n\", \"responses\": {}}}}}");
    EXPECT_EQ(document->Title(), QString::fromUtf8("\xC3\xA4\xF0\x9F\x98\x80 \"\\/x"));
    EXPECT_EQ(OperNames(*document), QStringList{QStringLiteral("o\n")});
    EXPECT_EQ(document->ServiceClass()->TypeInfo()->Opers()[0].Http.Path, QStringLiteral("/a"));
}

TEST_F(TTreeTest, TakesAByteOrderMarkInsideTheTextForALetter) {
    const auto document = LoadProperties("\"n\": {}, \"\xEF\xBB\xBFn\": {}, \"a\\n\\uFEFFn\": {}");
    EXPECT_EQ(AnswerPropertiesOf(*document),
              (QStringList{QStringLiteral("n"), QStringLiteral("\uFEFFn"), QStringLiteral("a\n\uFEFFn")}));
    EXPECT_EQ(Problems(*document), QStringList());
}

TEST_F(TTreeTest, FindsTheParameterOfThePathByANameThatBeginsWithAByteOrderMark) {
    const auto document = Load(R"({"openapi": "3.0.0", "info": {"title": "t", "version": "1"}, "paths": {
        "/a/{\uFEFFid}": {"get": {"operationId": "o", "responses": {}, "parameters": [
            {"name": "\uFEFFid", "in": "query", "schema": {"type": "string"}},
            {"name": "\uFEFFid", "in": "path", "required": true, "schema": {"type": "string"}}]}}}})");
    document->CompleteAll();
    EXPECT_EQ(Problems(*document), QStringList());
}

TEST_F(TTreeTest, KeepsOneOfTheNamesThatDamageMadeTheSame) {
    const auto document = LoadProperties("\"\xFE\": {}, \"\xFF\": {}, \"b\": {}");
    EXPECT_EQ(AnswerPropertiesOf(*document), (QStringList{QStringLiteral("\uFFFD"), QStringLiteral("b")}));
    EXPECT_THAT(Problems(*document).join(u'\n').toStdString(), testing::HasSubstr("not in UTF-8"));
}

TEST_F(TTreeTest, ReadsYamlAsItsCoreSchemaHasIt) {
    const auto document = Load(R"(%YAML 1.2
---
openapi: 3.0.0
info:
  title: >-
    Folded
    title
  version: 0x10
x-base: &base
  200: {description: d, content: {application/json: {schema: &text {type: string}}}}
paths:
  /a:
    get: &get
      operationId: get
      parameters:
        - {name: 'yes', in: query, required: True, schema: {type: boolean, default: no}}
        - {name: n, in: query, required: false, schema: {type: integer, enum: [~, 1, +2, 03, 0.5]}}
      responses: *base
  /b:
    put:
      <<: *get
      operationId: put
      responses:
        <<: [*base, {404: {description: e}}]
--- second document
)");
    EXPECT_EQ(document->Title(), QStringLiteral("Folded title"));
    EXPECT_EQ(document->Version(), QStringLiteral("0x10"));
    for (const char* name : {"get", "put"}) {
        EXPECT_EQ(TypeOutline::Of(*OperOf(*document, QLatin1String(name))).toStdString(), R"(request
  yes: boolean required - Default: no.
  n: int64 [1, +2, 03, 0.5]
response: string
)");
    }
    EXPECT_EQ(Problems(*document), QStringList());
}

TEST_F(TTreeTest, MergesOnlyWhatAMappingDoesNotHaveItself) {
    const auto document = Load(R"(openapi: 3.0.0
info: {title: T, version: 1}
paths:
  /a: &a
    get: {operationId: get, responses: {}}
    put: {operationId: put, responses: {}}
  /b:
    <<: [*a, {put: {operationId: later, responses: {}}, head: {operationId: head, responses: {}}}]
    get: {operationId: own, responses: {}}
    put: {operationId: mine, responses: {}}
)");
    EXPECT_EQ(OperNames(*document).join(u' ').toStdString(), "get put own mine head");
    EXPECT_EQ(Problems(*document), QStringList());
}

TEST_F(TTreeTest, FindsKeysOfLargeObjectsToo) {
    QByteArray schemas;
    for (int i = 0; i < 300; ++i)
        schemas += ",\"S\\u0020" + QByteArray::number(i) +
                   "\": {\"type\": \"object\", \"properties\": {\"a\": {\"type\": \"integer\"}}}";
    const auto document = Load(
        R"({"openapi": "3.0.0", "info": {"title": "T", "version": "1"}, "paths": {"/a": {"get": {"operationId": "a",
      "parameters": [{"name": "q", "in": "query", "schema": {"$ref": "#/components/schemas/S%20257"}}], "responses": {}}}},
      "components": {"schemas": {"first": {})" +
        schemas + "}}}");
    const POper oper = OperOf(*document, QStringLiteral("a"));
    EXPECT_EQ(oper->Request->Property(0)->Type->Name(), QStringLiteral("S 257"));
    EXPECT_EQ(document->TypeCount(), 301);
}
