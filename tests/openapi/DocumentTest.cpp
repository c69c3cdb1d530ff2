// The service class that a document becomes: its name, address, operations and their descriptions.
#include "tests/openapi/OpenApiFixture.h"

namespace {

using TDocumentTest = TOpenApiTest;

QByteArray Titled(const QByteArray& ATitle, const QByteArray& AServers, const QByteArray& APaths = "{}") {
    return "openapi: 3.0.0\ninfo: {title: \"" + ATitle + "\", version: 1.20, description: What it does}\n" +
           AServers + "\npaths: " + APaths + '\n';
}

} // namespace

TEST_F(TDocumentTest, IsNamedAfterItsTitleAndItsServersOrigin) {
    const std::tuple<QByteArray, QByteArray, QString, QString> cases[] = {
        {"Pet store (v2)",
         "servers: [{url: 'https://API.example.com/v1'}, {url: 'https://other.example.com'}]",
         QStringLiteral("PetStoreV2_137b9e5e"), QStringLiteral("https://API.example.com/v1")},
        {"Pet store (v2)", "", QStringLiteral("PetStoreV2_8605b8ba"), QStringLiteral("http://localhost")},
        {"Jane's API", "", QStringLiteral("JanesAPI_8605b8ba"), QStringLiteral("http://localhost")},
        {"!",
         "servers: [{url: 'https://{region}.example.com:{port}/{base}', variables: {region: {default: eu}, "
         "port: {enum: ['8443', '443'], default: '8443'}, base: {default: api}}}]",
         QStringLiteral("Api_967c1ceb"), QStringLiteral("https://eu.example.com:8443/api")},
    };
    for (const auto& [title, servers, className, url] : cases) {
        const auto document = Load(Titled(title, servers));
        ASSERT_TRUE(document->ServiceClass());
        EXPECT_EQ(document->ServiceClass()->ClassName(), className);
        EXPECT_EQ(document->ServiceClass()->TypeInfo()->Name(), className);
        EXPECT_EQ(document->ServiceClass()->TypeInfo()->BaseUrl(), url);
        EXPECT_EQ(document->ServiceClass()->TypeInfo()->Description(), QStringLiteral("What it does"));
        EXPECT_EQ(document->Title(), QString::fromUtf8(title));
        EXPECT_EQ(document->Version(), QStringLiteral("1.20"));
        EXPECT_EQ(Problems(*document), QStringList());
    }
}

TEST_F(TDocumentTest, SaysWhereRequestsGoWhenItsServerIsRelative) {
    const QByteArray head = "info: {title: 2 fast, version: '1'}\npaths: {/a: {get: {operationId: get, ";
    const std::tuple<QByteArray, const char*, const char*, const char*> cases[] = {
        {"responses: {}}}}\nopenapi: 3.0.0\nservers: [{url: /v3}]\n", "http://localhost/v3", "",
         "/servers/0/url: The address \"/v3\" is relative; requests go to http://localhost/v3 unless another "
         "server is named."},
        {"responses: {}}}}\nopenapi: 3.0.0\nservers: [{url: '{base}/x', variables: {base: {default: v}}}]\n",
         "http://localhost/v/x", "", "/servers/0/url: The address \"v/x\" is relative"},
        {"responses: {}}}}\nswagger: '2.0'\nbasePath: /v2\n", "http://localhost/v2", "",
         "/basePath: The address \"/v2\" is relative"},
        {"servers: [{url: /beta}], responses: {}}}}\nopenapi: 3.0.0\nservers: [{url: "
         "'https://h.example/v1'}]\n",
         "https://h.example/v1", "https://h.example/beta",
         "/paths/~1a/get/servers/0/url: The address \"/beta\" is relative; requests go to "
         "https://h.example/beta unless"},
        {"responses: {}}}}\nopenapi: 3.0.0\nservers: [{url: /}]\n", "http://localhost", "", ""},
        {"responses: {}}}}\nopenapi: 3.0.0\nservers: []\n", "http://localhost", "", ""},
    };
    for (const auto& [text, url, operUrl, problem] : cases) {
        const auto document = Load(head + text);
        ASSERT_TRUE(document->ServiceClass());
        EXPECT_EQ(document->ServiceClass()->TypeInfo()->BaseUrl().toStdString(), url);
        EXPECT_EQ(OperOf(*document, QStringLiteral("get"))->Http.Server.toStdString(), operUrl);
        EXPECT_EQ(document->Problems().size(), *problem ? 1U : 0U);
        EXPECT_THAT(Problems(*document).join(u'\n').toStdString(), testing::StartsWith(problem));
    }
}

TEST_F(TDocumentTest, ListsOnlyWhatItsServerAnswers) {
    const auto document = Load(R"(openapi: 3.1.0
info: {title: T, version: '1'}
paths:
  /a:
    post:
      operationId: subscribe
      callbacks: {onEvent: {'{$request.body#/url}': {post: {operationId: told, responses: {}}}}}
      responses: {}
webhooks: {newPet: {post: {operationId: newPet, responses: {}}}}
components: {pathItems: {unused: {get: {operationId: unused, responses: {}}}}}
)");
    document->CompleteAll();
    EXPECT_EQ(OperNames(*document), QStringList{QStringLiteral("subscribe")});
    EXPECT_EQ(Problems(*document), QStringList());
}

TEST_F(TDocumentTest, KnowsItsFormat) {
    const std::pair<QByteArray, QString> cases[] = {
        {"swagger: '2.0'", QStringLiteral("swagger-2.0")},
        {"openapi: 3.0.3", QStringLiteral("openapi-3.0")},
        {"openapi: 3.1.0", QStringLiteral("openapi-3.1")},
    };
    for (const auto& [line, format] : cases)
        EXPECT_EQ(Load(line + "\ninfo: {title: T, version: '1'}\npaths: {}\n")->Format(), format);
}

TEST_F(TDocumentTest, ListsOperationsInOrderByIdOrByMethodAndPath) {
    const auto document = LoadPaths(R"(
  /b:
    summary: not an operation
    post: {operationId: second, description: "Does it.\nAt length.", responses: {}}
    get: {summary: Gets it, description: Something else, responses: {}}
  /a/{x}:
    delete: {description: 'Removes e.g. one. And more.', responses: {}}
  x-extra: {get: {}}
)");
    EXPECT_EQ(OperNames(*document), (QStringList{QStringLiteral("second"), QStringLiteral("GET /b"),
                                                 QStringLiteral("DELETE /a/{x}")}));
    const auto& opers = document->ServiceClass()->TypeInfo()->Opers();
    EXPECT_EQ(opers[0].Request->Description(), QStringLiteral("Does it."));
    EXPECT_EQ(opers[1].Request->Description(), QStringLiteral("Gets it"));
    EXPECT_EQ(opers[0].Http.Method, "POST");
    EXPECT_EQ(opers[2].Http.Path, QStringLiteral("/a/{x}"));
    EXPECT_EQ(Problems(*document), QStringList());
}

TEST_F(TDocumentTest, NamesAnOperationOfATakenIdByMethodAndPath) {
    const auto document = LoadPaths(R"(
  /a: {get: {operationId: same, responses: {}}, put: {operationId: same, responses: {}}}
)");
    EXPECT_EQ(OperNames(*document), (QStringList{QStringLiteral("same"), QStringLiteral("PUT /a")}));
    ASSERT_EQ(document->Problems().size(), 1U);
    EXPECT_EQ(document->Problems()[0].Pointer, QStringLiteral("/paths/~1a/put/operationId"));
    EXPECT_EQ(document->Problems()[0].Line, 5);
}

TEST_F(TDocumentTest, CompletesAnOperationWhenARequestOfItIsMade) {
    const auto document = LoadPaths(R"(
  /a:
    get:
      operationId: get
      parameters: [{name: q, in: query, schema: {type: string}}]
      responses: {'200': {description: d, content: {application/json: {schema: {type: string}}}}}
)");
    const auto& oper = document->ServiceClass()->TypeInfo()->Opers().front();
    EXPECT_EQ(oper.Request->PropertyCount(), 0);
    EXPECT_FALSE(oper.IsComplete);
    const auto service = document->ServiceClass()->Create();
    const ZORequest request(service.get(), oper.Request);
    EXPECT_EQ(oper.Request->PropertyCount(), 1);
    ASSERT_TRUE(oper.Response);
    EXPECT_EQ(oper.Response->Kind(), vkString);
}

TEST_F(TDocumentTest, SharesTheTypeOfASchemaThatIsReferredTo) {
    const auto document = LoadPaths(R"(
  /a: {get: {operationId: a, responses: {'200': {$ref: '#/components/responses/R'}}}}
  /b: {get: {operationId: b, responses: {'200': {$ref: '#/components/responses/R'}}}}
components:
  responses: {R: {description: d, content: {application/json: {schema: {type: array, items: {$ref: '#/components/schemas/S'}}}}}}
  schemas: {S: {type: object, properties: {a: {type: string}}}}
)");
    EXPECT_EQ(OperOf(*document, QStringLiteral("a"))->Response,
              OperOf(*document, QStringLiteral("b"))->Response);
}

TEST_F(TDocumentTest, CountsWhatItsOperationsReach) {
    const auto document = LoadPaths(R"(
  /a:
    post:
      requestBody: {content: {multipart/form-data: {schema: {type: object, properties: {f: {type: string, format: binary}}}}}}
      responses: {'200': {description: d, content: {image/png: {}}}}
  /b:
    post:
      requestBody: {content: {image/png: {}}}
      responses: {'200': {description: d, content: {application/json: {schema: {type: array, items: {$ref: '#/components/schemas/P'}}}}}}
  /c:
    get:
      parameters: [{name: q, in: query, schema: {oneOf: [{type: string}, {type: integer}]}}]
      responses: {}
components:
  schemas:
    P: {oneOf: [{$ref: '#/components/schemas/Q'}], discriminator: {propertyName: t}}
    Q: {type: object, properties: {t: {type: string}}}
)");
    const TZOApiDocument::TCounts counts = document->Counts();
    EXPECT_EQ(counts.Multipart, 1);
    EXPECT_EQ(counts.BinaryRequest, 1);
    EXPECT_EQ(counts.BinaryResponse, 2 - 1);
    EXPECT_EQ(counts.Unions, 1);
    EXPECT_EQ(counts.Polymorphic, 1);
    EXPECT_EQ(document->TypeCount(), 2);
}

TEST_F(TDocumentTest, SendsAnOperationToItsOwnServerUnlessTheServiceWasMoved) {
    TRawServer own(TRawServer::Answering(
        [](const QByteArray&) { return TRawServer::Answer({}, {}, "204 No Content"); }));
    const auto document = LoadPaths("  /a: {get: {operationId: get, servers: [{url: '" + own.Url("/own") +
                                    "'}], responses: {'204': {description: d}}}}\n");
    const POper oper = OperOf(*document, QStringLiteral("get"));
    const auto service = document->ServiceClass()->Create();
    ZORequest(service.get(), oper->Request).ExecRequest();
    ASSERT_EQ(own.Requests().size(), 1);
    EXPECT_TRUE(own.Requests().first().startsWith("GET /own/a "));
    EXPECT_EQ(CallWith(*document, oper, {}).Line, "GET /a");
    EXPECT_EQ(own.Requests().size(), 1);
}

TEST_F(TDocumentTest, TakesDocumentsOfOneTitleAndOriginForOneClass) {
    const auto first =
        Load(Titled("T", "servers: [{url: 'https://a.example.com/v1'}]"), QStringLiteral("a.yaml"));
    const auto second =
        Load(Titled("T", "servers: [{url: 'https://a.example.com/v2'}]"), QStringLiteral("b.yaml"));
    const auto other =
        Load(Titled("T", "servers: [{url: 'https://b.example.com/v1'}]"), QStringLiteral("c.yaml"));
    EXPECT_EQ(first->ServiceClass()->ClassName(), second->ServiceClass()->ClassName());
    EXPECT_NE(first->ServiceClass()->ClassName(), other->ServiceClass()->ClassName());
}

TEST_F(TDocumentTest, KeepsSettingsApartOfADocumentThatSendsAnOperationElsewhere) {
    const QByteArray servers = "servers: [{url: 'https://a.example.com/v1'}]";
    const auto withOperationAt = [&](const QByteArray& AServer, const QString& AFile) {
        return Load(Titled("T", servers, "{/a: {get: {servers: [{url: '" + AServer + "'}], responses: {}}}}"),
                    AFile);
    };
    const auto same = withOperationAt("https://a.example.com/uploads", QStringLiteral("a.yaml"));
    const auto elsewhere = withOperationAt("https://evil.example.com/v1", QStringLiteral("b.yaml"));
    const auto plain = Load(Titled("T", servers), QStringLiteral("c.yaml"));
    EXPECT_EQ(same->ServiceClass()->ClassName(), plain->ServiceClass()->ClassName());
    EXPECT_NE(elsewhere->ServiceClass()->ClassName(), plain->ServiceClass()->ClassName());
}
