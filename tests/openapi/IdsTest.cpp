// Schemas that name themselves, and references to those names.
#include "tests/openapi/OpenApiFixture.h"

#include "openapi/TypeOutline.h"

namespace {

class TIdsTest : public TOpenApiTest {
protected:
    /// What the one operation answers, described; AMore follows it. The schema of the answer is ASchema.
    std::string Outline(const QByteArray& ASchema, const QByteArray& AMore) {
        Document =
            Load("openapi: 3.1.0\ninfo: {title: T, version: '1'}\npaths: {/a: {get: {operationId: get, "
                 "responses: {'200': {description: d, content: {application/json: {schema: " +
                 ASchema + "}}}}}}}\n" + AMore);
        const std::string text = TypeOutline::Of(*OperOf(*Document, QStringLiteral("get"))).toStdString();
        return text.substr(text.find("response"));
    }

    std::unique_ptr<TZOApiDocument> Document;
};

} // namespace

TEST_F(TIdsTest, AnAnchorNamesASchemaOfItsFile) {
    Write(QStringLiteral("types.json"),
          R"({"$defs": {"Name": {"properties": {"first": {"type": "string"}}, "$anchor": "name"}}})");
    EXPECT_EQ(Outline("{properties: {own: {$ref: '#pet'}, other: {$ref: 'types.json#name'}}}",
                      "components: {schemas: {Pet: {$anchor: pet, properties: {age: {type: integer}, friend: "
                      "{$ref: '#pet'}}}}}\n"),
              R"(response: object
  own: object Pet
    age: int64
    friend: object Pet (see above)
  other: object Name
    first: string
)");
    EXPECT_EQ(Problems(*Document), QStringList());
}

TEST_F(TIdsTest, AnAddressNamesASchemaThatNothingIsFetchedFor) {
    EXPECT_EQ(Outline("{properties: {a: {$ref: 'https://example.com/schemas/pet'}, b: {$ref: "
                      "'https://example.com/schemas/pet#/properties/age'}, c: {$ref: "
                      "'https://example.com/schemas/pet#toy'}}}",
                      R"(components:
  schemas:
    Pet:
      $id: https://example.com/schemas/pet
      properties:
        age: {type: integer, format: int32}
        # Names are beside the address of the schema around them.
        owner: {$ref: person}
        toy: {$ref: '#toy'}
        tail: {$ref: '#/$defs/Tail'}
      $defs:
        Toy: {$anchor: toy, type: string}
        Tail: {type: boolean}
    Person: {$id: 'https://example.com/schemas/person', properties: {pets: {type: array, items: {$ref: pet}}}}
)"),
              R"(response: object
  a: object Pet
    age: integer
    owner: object Person
      pets: list of object Pet (see above)
    toy: string
    tail: boolean
  b: integer
  c: string
)");
    EXPECT_EQ(Problems(*Document), QStringList());
}

TEST_F(TIdsTest, TheSameTextMeansAnotherSchemaInAnotherResource) {
    EXPECT_EQ(
        Outline("{properties: {a: {$ref: '#/components/schemas/A'}, b: {$ref: '#/components/schemas/B'}}}",
                R"(components:
  schemas:
    A: {$id: a, properties: {x: {$ref: '#/$defs/X'}, y: {$ref: '#y'}}, $defs: {X: {type: string}, Y: {$anchor: y, type: string}}}
    B: {$id: b, properties: {x: {$ref: '#/$defs/X'}, y: {$ref: '#y'}}, $defs: {X: {type: number}, Y: {$anchor: y, type: number}}}
)"),
        R"(response: object
  a: object A
    x: string
    y: string
  b: object B
    x: float
    y: float
)");
    EXPECT_EQ(Problems(*Document), QStringList());
}

TEST_F(TIdsTest, PointersFromTheFilesStartAndFilesBesideItAreFoundFromASchemaWithAnAddress) {
    Write(QStringLiteral("Far.yaml"), "{type: number}\n");
    EXPECT_EQ(Outline("{$ref: '#/components/schemas/A'}",
                      R"(components:
  schemas:
    A: {$id: 'https://example.com/a', properties: {near: {$ref: '#/components/schemas/B'}, far: {$ref: Far.yaml}}}
    B: {type: string}
)"),
              R"(response: object A
  near: string
  far: float
)");
    EXPECT_EQ(Problems(*Document), QStringList());
}

TEST_F(TIdsTest, ThatAreMissingOrGivenTwiceAreTold) {
    EXPECT_EQ(Outline("{properties: {a: {$ref: '#nowhere'}, b: {$ref: 'https://example.com/none'}, c: {$ref: "
                      "'#twice'}, d: {$ref: 'https://example.com/x#nowhere'}}}",
                      R"(components:
  schemas:
    A: {$anchor: twice, type: string}
    B: {$anchor: twice, type: number}
    C: {$id: 'https://example.com/x', type: string}
    D: {$id: 'https://example.com/x', type: number}
    E: {$id: 5, $anchor: [x]}
)"),
              R"(response: object
  a: any
  b: any
  c: string
  d: any
)");
    EXPECT_EQ(Problems(*Document).join(u'\n').toStdString(),
              R"(/components/schemas/D/$id: Another schema has the $id "https://example.com/x".
/components/schemas/B/$anchor: Another schema has the $anchor "twice".
/paths/~1a/get/responses/200/content/application~1json/schema/properties/a/$ref: "#nowhere" refers to nothing.
/paths/~1a/get/responses/200/content/application~1json/schema/properties/b/$ref: "https://example.com/none" is not a file beside the document; nothing is fetched.
/paths/~1a/get/responses/200/content/application~1json/schema/properties/d/$ref: "https://example.com/x#nowhere" refers to nothing.)");
}

TEST_F(TIdsTest, InExamplesAndPropertiesOfThatNameAreNoHarm) {
    EXPECT_EQ(
        Outline("{properties: {$id: {type: string}, $anchor: {$ref: '#/components/schemas/S'}}, example: "
                "{$id: '#', $anchor: x}}",
                "components: {schemas: {S: {type: integer}}}\n"),
        R"(response: object
  $id: string
  $anchor: int64
)");
    EXPECT_EQ(Problems(*Document), QStringList());
}
