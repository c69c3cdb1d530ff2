#include "openapi/ApiModel_p.h"

#include "openapi/OperationMaker_p.h"

#include <QCryptographicHash>
#include <QRegularExpression>
#include <QUrl>

#include <set>

namespace {

/// Scheme, host and port: where credentials may go.
QString Origin(const QString& AUrl) {
    const QUrl url(AUrl);
    const QString port = url.port() < 0 ? QString() : u':' + QString::number(url.port());
    return url.scheme().toLower() + QStringLiteral("://") + url.host().toLower() + port;
}

} // namespace

std::unique_ptr<TZORestService::TTypeInfo> TApiModel::MakeTypeInfo(const std::shared_ptr<TApiModel>& AModel) {
    TDeclaration declaration;
    if (!AModel->Source.Root() || !AModel->ReadHead(declaration))
        return nullptr;
    auto types = std::make_unique<TZOTypeLibrary>();
    AModel->Schemas = std::make_unique<TSchemaTypes>(AModel->Source, *types);
    AModel->ReadSecurity(declaration);
    AModel->ReadOperations(declaration, *types);
    declaration.Name = AModel->ClassName(declaration);
    declaration.Complete = [AModel](int AIndex, TZORestService::TOper& AOper) {
        TOperationMaker(*AModel, AModel->Opers[static_cast<std::size_t>(AIndex)], AOper).Run();
    };
    return std::make_unique<TZORestService::TTypeInfo>(std::move(declaration), std::move(types));
}

TDocView TApiModel::NamedSchemas() const {
    const TDocView root = Source.Root();
    return IsSwagger2() ? root["definitions"] : root["components"]["schemas"];
}

bool TApiModel::ReadHead(TDeclaration& ADeclaration) {
    ReadFormat();
    if (Format == afUnknown)
        return false;
    const TDocView info = Source.Root()["info"];
    if (!info.IsObject())
        Source.Report(Source.Root(), QStringLiteral("The document has no \"info\"."));
    Title = info["title"].Text().simplified();
    Version = info["version"].Text().simplified();
    FBaseUrl = ADeclaration.BaseUrl = BaseUrl();
    const QString description = info["description"].Text();
    ADeclaration.Description = description.isEmpty() ? info["summary"].Text() : description;
    return true;
}

void TApiModel::ReadFormat() {
    const TDocView root = Source.Root();
    const QString openapi = root["openapi"].Text();
    if (root["swagger"].Text().startsWith(QStringLiteral("2.")))
        Format = afSwagger2;
    else if (openapi.startsWith(QStringLiteral("3.0")))
        Format = afOpenApi30;
    else if (openapi.startsWith(u'3'))
        Format = afOpenApi31;
    else
        Source.Report(root, QStringLiteral("This is neither an OpenAPI 3 nor a Swagger 2.0 document."));
}

QString TApiModel::ClassName(const TDeclaration& ADeclaration) const {
    QString name;
    bool isStart = true;
    for (const QChar c : Title) {
        // "Jane's API" has two words.
        if (c == u'\'' || c == u'\u2019')
            continue;
        if (c.isLetterOrNumber())
            name += isStart ? c.toUpper() : c;
        isStart = !c.isLetterOrNumber();
    }
    if (name.isEmpty() || name.front().isDigit())
        name.prepend(QStringLiteral("Api"));
    // Operations may have servers of their own, and credentials go there, too.
    QString origins = Origin(ADeclaration.BaseUrl);
    std::set<QString> others;
    for (const TZORestService::TOper& oper : ADeclaration.Opers) {
        if (!oper.Http.Server.isEmpty() && Origin(oper.Http.Server) != origins)
            others.insert(Origin(oper.Http.Server));
    }
    for (const QString& other : others)
        origins += u' ' + other;
    const QByteArray hash = QCryptographicHash::hash(origins.toUtf8(), QCryptographicHash::Sha256);
    return name + u'_' + QString::fromLatin1(hash.toHex().left(8));
}

QString TApiModel::BaseUrl() {
    const TDocView root = Source.Root();
    if (!IsSwagger2())
        return root["servers"].Count() > 0 ? ServerUrl(root["servers"]) : FBaseUrl;
    const QString url = SwaggerUrl();
    return url.contains(QStringLiteral("://")) ? url : BesideBase(root["basePath"], url);
}

QString TApiModel::BesideBase(TDocView APlace, const QString& AUrl) {
    if (AUrl.isEmpty() || AUrl == QStringLiteral("/"))
        return FBaseUrl;
    const QString url = QUrl(FBaseUrl).resolved(QUrl(AUrl)).toString();
    Source.Report(
        APlace,
        QStringLiteral("The address \"%1\" is relative; requests go to %2 unless another server is named.")
            .arg(AUrl, url));
    return url;
}

QString TApiModel::ServerUrl(TDocView AServers) {
    const TDocView server = AServers.At(0);
    QString url = server["url"].Text();
    for (const auto& [key, variable] : server["variables"].Entries()) {
        const QString value = variable["default"].Text();
        url.replace(u'{' + key.Text() + u'}', value.isEmpty() ? variable["enum"].At(0).Text() : value);
    }
    if (url.contains(u'{'))
        Source.Report(server, QStringLiteral("The address has a variable without a default."));
    if (url.startsWith(QStringLiteral("//")))
        return QStringLiteral("https:") + url;
    return url.contains(QStringLiteral("://")) ? url : BesideBase(server["url"], url);
}

QString TApiModel::SwaggerUrl() const {
    const TDocView root = Source.Root();
    const TDocView schemes = root["schemes"];
    QString scheme = schemes.At(0).Text();
    for (const auto& [none, other] : schemes.Entries()) {
        if (other.Is("https"))
            scheme = QStringLiteral("https");
    }
    const QString host = root["host"].Text();
    const QString path = root["basePath"].Text();
    if (host.isEmpty())
        return path == QStringLiteral("/") ? QString() : path;
    return (scheme.isEmpty() ? QStringLiteral("https") : scheme) + QStringLiteral("://") + host +
           (path == QStringLiteral("/") ? QString() : path);
}
