#include "tests/hosts/monkey/MonkeyDocuments.h"

#include "tests/servers/FaultServer.h"

#include <QDir>
#include <QFile>

#include <utility>

namespace {

constexpr const char* Head = R"(openapi: 3.0.3
info: {title: Monkey TITLE, version: '1', description: "Faults of <b>every</b> kind.\nAnd more."}
servers: [{url: SERVER}]
security: [SECURITY]
components:
  securitySchemes:
    key: {type: apiKey, in: header, name: X-Key}
    code:
      type: oauth2
      flows: {authorizationCode: {authorizationUrl: SERVER/a, tokenUrl: SERVER/t, scopes: {read: R, write: W}}}
    own:
      type: oauth2
      flows: {clientCredentials: {tokenUrl: SERVER/token/FAULT, scopes: {read: R}}}
  schemas:
    Text: {type: object, properties: {text: {type: string}, more: {$ref: '#/components/schemas/Tree'}}}
    Tree: {type: object, properties: {name: {type: string}, children: {type: array, items: {$ref: '#/components/schemas/Tree'}}}}
    Pet: {type: object, required: [kind], properties: {kind: {type: string}}, discriminator: {propertyName: kind}}
    Cat: {allOf: [{$ref: '#/components/schemas/Pet'}, {type: object, properties: {lives: {type: integer, format: int32}}}]}
    Dog: {allOf: [{$ref: '#/components/schemas/Pet'}, {type: object, properties: {barks: {type: boolean}}}]}
    Everything:
      type: object
      properties:
        text: {type: string, description: "A <i>text</i>."}
        choice: {type: string, enum: [one, two, "three & more", "<b>four</b>"]}
        small: {type: integer, format: int32}
        large: {type: integer, format: int64}
        number: {type: number}
        flag: {type: boolean}
        at: {type: string, format: date-time}
        day: {type: string, format: date}
        any: {}
        texts: {type: array, items: {type: string}}
        numbers: {type: object, additionalProperties: {type: number}}
        tree: {$ref: '#/components/schemas/Tree'}
        pets: {type: array, items: {$ref: '#/components/schemas/Pet'}}
        either: {oneOf: [{type: string}, {type: integer}, {$ref: '#/components/schemas/Tree'}]}
paths:
)";

constexpr const char* Get = R"(  /get/FAULT:
    get:
      operationId: get-FAULT
      summary: What comes of FAULT
      parameters:
        - {name: q, in: query, schema: {type: string}}
        - {name: list, in: query, schema: {type: array, items: {type: integer}}}
        - {name: X-Head, in: header, schema: {type: string}}
      responses: {'200': {description: ok, content: {application/json: {schema: {$ref: '#/components/schemas/Text'}}}}}
)";

constexpr const char* Post = R"(  /post/FAULT:
    post:
      operationId: post-FAULT
      requestBody: {content: {application/json: {schema: {$ref: '#/components/schemas/Everything'}}}}
      responses: {'200': {description: ok, content: {application/json: {schema: {$ref: '#/components/schemas/Everything'}}}}}
)";

constexpr const char* Load = R"(  /load/FAULT:
    get:
      operationId: download-FAULT
      responses: {'200': {description: ok, content: {application/octet-stream: {schema: {type: string, format: binary}}}}}
    post:
      operationId: upload-FAULT
      requestBody: {content: {multipart/form-data: {schema: {type: object, properties: {file: {type: string, format: binary}, note: {type: string}}}}}}
      responses: {'200': {description: ok, content: {application/json: {}}}}
)";

} // namespace

TMonkeyDocuments::TMonkeyDocuments(QString AFolder, QByteArray AServer, QRandomGenerator& ARandom)
    : FFolder(std::move(AFolder)), FServer(std::move(AServer)), FRandom(ARandom) {
    for (int i = 0; i < Count; ++i)
        Write(i, Text(i));
}

QByteArray TMonkeyDocuments::Operations() {
    QByteArray text;
    for (const TFault& fault : TFaultServer::Faults()) {
        const int what = Random(8);
        // Of each document another part; what waits for its own sake is rare enough.
        const QByteArray name = fault.Name;
        // Of each document another part; what waits for its own sake is rare enough.
        if (what == 0 || (name.startsWith("slow-") && what > 3))
            continue;
        // What is written to a file has no bound.
        const bool hasEnd = !name.startsWith("endless-") && name != "gzip-bomb";
        text += QByteArray(what == 7 && hasEnd ? Load : what == 6 ? Post : Get).replace("FAULT", name);
    }
    text += QByteArray(Post).replace("FAULT", "fine") + QByteArray(Load).replace("FAULT", "nothing-wrong");
    return text;
}

QByteArray TMonkeyDocuments::Text(int AIndex) {
    // Most of the time nothing is asked for.
    static const QByteArray securities[] = {"", "", "", "key: []", "code: [read]", "own: [read]"};
    const auto& faults = TFaultServer::Faults();
    const QByteArray fault = faults[static_cast<std::size_t>(Random(int(faults.size())))].Name;
    const QByteArray security = securities[Random(int(std::size(securities)))];
    return QByteArray(Head)
               .replace("TITLE", QByteArray::number(AIndex))
               .replace("SERVER", FServer)
               .replace("[SECURITY]", security.isEmpty() ? QByteArray("[]") : "[{" + security + "}]")
               .replace("FAULT", fault) +
           Operations();
}

QByteArray TMonkeyDocuments::Broken(int AIndex) {
    QByteArray text = Text(AIndex);
    switch (Random(6)) {
    case 0:
        return {};
    case 1:
        text.truncate(Random(int(text.size())));
        return text;
    case 2:
        return "nonsense: <b>true</b>\n";
    case 3:
        return QByteArray(5000, '\0') + "\xff\xfe";
    case 4:
        return "{\"openapi\": \"3.0.0\", \"info\": {\"title\": \"" + QByteArray(2000, 'x') +
               "\"}, \"paths\": 5}";
    default:
        for (int i = 0; i < 30; ++i)
            text[Random(int(text.size()))] = static_cast<char>(Random(256));
        return text;
    }
}

QString TMonkeyDocuments::Write(int AIndex, const QByteArray& AText) const {
    const QString path = FFolder + QStringLiteral("/monkey %1.yaml").arg(AIndex);
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(AText);
    return path;
}

QString TMonkeyDocuments::Good() {
    const int index = Random(Count);
    return Write(index, Text(index));
}

QString TMonkeyDocuments::Any() {
    switch (Random(10)) {
    case 0:
        return FFolder;
    case 1:
        return FFolder + QStringLiteral("/is not there.yaml");
    case 2:
    case 3:
        return Write(Count + Random(2), Broken(Random(Count)));
    default:
        return FFolder + QStringLiteral("/monkey %1.yaml").arg(Random(Count));
    }
}

void TMonkeyDocuments::Rewrite() {
    const int index = Random(Count);
    if (Random(8) == 0)
        QFile::remove(FFolder + QStringLiteral("/monkey %1.yaml").arg(index));
    else
        Write(index, Random(4) == 0 ? Broken(index) : Text(index));
}
