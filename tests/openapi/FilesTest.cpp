// Documents of several files, and what references may not do.
#include "tests/openapi/OpenApiFixture.h"

#include "openapi/TypeOutline.h"

namespace {

using TFilesTest = TOpenApiTest;

} // namespace

TEST_F(TFilesTest, AreJoinedByRelativeReferences) {
    Write(QStringLiteral("paths/pets.json"),
          R"({"get": {"operationId": "pets", "parameters": [{"$ref": "../common.yaml#/limit"}],
      "responses": {"200": {"description": "d", "content": {"application/json": {"schema": {"$ref": "../schemas/Pet.yaml"}}}}}}})");
    Write(QStringLiteral("common.yaml"), "limit: {name: limit, in: query, schema: {type: integer}}\nTag: "
                                         "{type: object, properties: {name: {type: string}}}\n");
    Write(QStringLiteral("schemas/Pet.yaml"),
          "type: object\nproperties:\n  tag: {$ref: '../common.yaml#/Tag'}\n  friend: {$ref: '#'}\n  home: "
          "{$ref: '../my%20home.yml#/a~1b/c~0d'}\n");
    Write(QStringLiteral("my home.yml"),
          "a/b: {c~d: {type: object, properties: {street: {type: string}}}}\n");
    const auto document = LoadPaths("  /pets: {$ref: paths/pets.json}\n");
    const POper oper = OperOf(*document, QStringLiteral("pets"));
    ASSERT_TRUE(oper);
    EXPECT_EQ(TypeOutline::Of(*oper).toStdString(), R"(request
  limit: int64
response: object Pet
  tag: object Tag
    name: string
  friend: object Pet (see above)
  home: object c~d
    street: string
)");
    EXPECT_EQ(Problems(*document), QStringList());
}

TEST_F(TFilesTest, AreTakenFromTheDocumentsFolderOnly) {
    Write(QStringLiteral("outside.yaml"), "type: string\n");
    Write(QStringLiteral("inner/self.yaml"), "{}\n");
    const auto outside = Folder.filePath(QStringLiteral("outside.yaml")).toUtf8();
    const QByteArray paths = R"(
  /a:
    get:
      operationId: get
      parameters:
        - {name: up, in: query, schema: {$ref: ../outside.yaml}}
        - {name: absolute, in: query, schema: {$ref: ')" +
                             outside + R"('}}
        - {name: web, in: query, schema: {$ref: 'https://example.com/s.yaml'}}
        - {name: web2, in: query, schema: {$ref: '//example.com/s.yaml'}}
        - {name: url, in: query, schema: {$ref: 'file://)" +
                             outside + R"('}}
        - {name: none, in: query, schema: {$ref: missing.yaml}}
        - {name: sly, in: query, schema: {$ref: 'x/../../outside.yaml'}}
      responses: {}
)";
    const auto document = Load("openapi: 3.0.3\ninfo: {title: T, version: '1'}\npaths:" + paths,
                               QStringLiteral("inner/api.yaml"));
    const POper oper = OperOf(*document, QStringLiteral("get"));
    ASSERT_EQ(oper->Request->PropertyCount(), 7);
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(oper->Request->Property(i)->Type->Kind(), vkAny) << i;
    EXPECT_THAT(
        Problems(*document).join(u'\n').toStdString(),
        testing::AllOf(
            testing::HasSubstr(
                "parameters/0/schema/$ref: \"../outside.yaml\" is outside the document's folder."),
            testing::HasSubstr("parameters/1/schema/$ref"),
            testing::HasSubstr(
                "\"https://example.com/s.yaml\" is not a file beside the document; nothing is fetched."),
            testing::HasSubstr("\"//example.com/s.yaml\" is not a file"),
            testing::HasSubstr("parameters/4/schema/$ref"),
            testing::HasSubstr("There is no file \"missing.yaml\" beside the document."),
            testing::HasSubstr("\"x/../../outside.yaml\" is outside")));
    EXPECT_EQ(document->Problems().size(), 7U);
}

TEST_F(TFilesTest, OfADocumentThatIsLinkedAreThoseBesideTheDocument) {
    Write(QStringLiteral("real/S.yaml"), "type: string\n");
    const QString real = Write(
        QStringLiteral("real/api.yaml"),
        "openapi: 3.0.3\ninfo: {title: T, version: '1'}\npaths:\n  /a: {get: {operationId: get, parameters: "
        "[{name: q, in: query, schema: {$ref: S.yaml}}], responses: {}}}\n");
    const QString link = Folder.filePath(QStringLiteral("link.yaml"));
    ASSERT_TRUE(QFile::link(real, link));
    const auto document = TZOApiDocument::Load(link);
    EXPECT_EQ(OperOf(*document, QStringLiteral("get"))->Request->Property(0)->Type->Kind(), vkString);
}

TEST_F(TFilesTest, MayReferInCirclesWhichIsToldAndEnds) {
    Write(QStringLiteral("other.yaml"), "a: {$ref: 'api.yaml#/components/schemas/A'}\n");
    const auto document = LoadPaths(R"(
  /a:
    get:
      operationId: get
      parameters:
        - {name: a, in: query, schema: {$ref: '#/components/schemas/A'}}
        - {name: b, in: query, schema: {$ref: '#/components/schemas/B/inside'}}
        - {name: c, in: query, schema: {$ref: '#/components/schemas/C'}}
        - {name: d, in: query, schema: {$ref: '#/components/schemas/D'}}
        - {name: e, in: query, schema: {$ref: '#/components/schemas/nothing'}}
      responses: {}
components:
  schemas:
    A: {$ref: 'other.yaml#/a'}
    B: {$ref: '#/components/schemas/B/inside'}
    C: {allOf: [{$ref: '#/components/schemas/C'}]}
    D: {allOf: [{$ref: '#/components/schemas/D'}, {properties: {x: {type: string}}}]}
)");
    const POper oper = OperOf(*document, QStringLiteral("get"));
    EXPECT_EQ(oper->Request->PropertyCount(), 5);
    EXPECT_EQ(TypeOutline::Of(*oper).toStdString(), R"(request
  a: any
  b: any
  c: any
  d: object D
    x: string
  e: any
response: none
)");
    const std::string problems = Problems(*document).join(u'\n').toStdString();
    EXPECT_THAT(problems, testing::HasSubstr("leads back to itself"));
    EXPECT_THAT(problems, testing::HasSubstr("This schema is nothing but itself."));
    EXPECT_THAT(problems, testing::HasSubstr("This schema is built from itself."));
    EXPECT_THAT(problems, testing::HasSubstr("\"#/components/schemas/nothing\" refers to nothing."));
}
