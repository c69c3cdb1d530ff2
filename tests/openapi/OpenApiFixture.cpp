#include "tests/openapi/OpenApiFixture.h"

#include "hosts/zoapi/RequestPath.h"

#include "runtime/json/JsonCodec.h"
#include "runtime/types/Streams.h"

#include <QBuffer>
#include <QFile>

QString TOpenApiTest::Write(const QString& AName, const QByteArray& AText) const {
    const QString path = Folder.filePath(AName);
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(AText) == AText.size());
    return path;
}

std::unique_ptr<TZOApiDocument> TOpenApiTest::Load(const QByteArray& AText, const QString& AName) const {
    return TZOApiDocument::Load(Write(AName, AText));
}

std::unique_ptr<TZOApiDocument> TOpenApiTest::LoadPaths(const QByteArray& AFromPaths) const {
    return Load("openapi: 3.0.3\ninfo: {title: Test, version: '1'}\npaths:\n" + AFromPaths);
}

POper TOpenApiTest::OperOf(const TZOApiDocument& ADocument, const QString& AName) {
    const TZORestService::TTypeInfo* type = ADocument.ServiceClass()->TypeInfo();
    for (const TZORestService::TOper& oper : type->Opers()) {
        if (oper.Name != AName)
            continue;
        type->Complete(&oper);
        return &oper;
    }
    ADD_FAILURE() << "no operation " << AName.toStdString();
    return nullptr;
}

QStringList TOpenApiTest::OperNames(const TZOApiDocument& ADocument) {
    QStringList names;
    if (!ADocument.ServiceClass())
        return names;
    for (const TZORestService::TOper& oper : ADocument.ServiceClass()->TypeInfo()->Opers())
        names.append(oper.Name);
    return names;
}

QStringList TOpenApiTest::Problems(const TZOApiDocument& ADocument) {
    QStringList problems;
    for (const TZOApiProblem& problem : ADocument.Problems())
        problems.append(problem.Pointer + QStringLiteral(": ") + problem.Message);
    return problems;
}

TWireRequest::TWireRequest(const QByteArray& ABytes) {
    const qsizetype end = ABytes.indexOf("\r\n\r\n");
    for (const QByteArray& line : ABytes.left(end).split('\n'))
        Headers.append(line.trimmed());
    if (!Headers.isEmpty())
        Line = Headers.takeFirst();
    Line.replace(" HTTP/1.1", "");
    Body = ABytes.mid(end + 4);
    const QByteArray type = Header("Content-Type");
    const qsizetype boundary = type.indexOf("boundary=");
    if (boundary >= 0)
        Body.replace(type.mid(boundary + 9), "BOUNDARY");
    Body.replace("\r\n", "\n");
}

QByteArray TWireRequest::Header(const QByteArray& AName) const {
    for (const QByteArray& line : Headers) {
        if (line.toLower().startsWith(AName.toLower() + ':'))
            return line.mid(AName.size() + 1).trimmed();
    }
    return {};
}

TWireRequest CallWith(const TZOApiDocument& ADocument, POper AOper, const QByteArray& AScript) {
    TRawServer server(TRawServer::Answering(
        [](const QByteArray&) { return TRawServer::Answer({}, {}, "204 No Content"); }));
    const auto service = ADocument.ServiceClass()->Create();
    service->SetServerUrl(QString::fromLatin1(server.Url({})));
    ZORequest request(service.get(), AOper->Request);
    TZOValueHolder value(request.Type(), request.Data(), false);
    std::vector<std::unique_ptr<QBuffer>> uploads;
    for (const QByteArray& line : AScript.split('\n')) {
        const QString word = QString::fromUtf8(line).section(u' ', 0, 0);
        const QString rest = QString::fromUtf8(line).section(u' ', 1);
        const QString left = rest.section(u'=', 0, 0), right = rest.section(u'=', 1);
        if (line.startsWith('{')) {
            TZOJson::Decode(line, value);
        } else if (word == QStringLiteral("set")) {
            RequestPath::Set(value, left, right);
        } else if (word == QStringLiteral("key")) {
            service->SetApiKey(rest);
        } else if (word == QStringLiteral("token")) {
            service->SetToken(rest, {}, 0);
        } else if (word == QStringLiteral("upload")) {
            auto& content = uploads.emplace_back(std::make_unique<QBuffer>());
            content->setData(right.toUtf8());
            content->open(QIODevice::ReadOnly);
            static_cast<ZOUpload*>(RequestPath::Reach(value, left).Storage)->SetStream(content.get());
        }
    }
    QBuffer destination;
    destination.open(QIODevice::WriteOnly);
    if (AOper->Response) {
        TZOValueHolder response(AOper->Response, true);
        void* ref = nullptr;
        if (AOper->Response->Kind() == vkDownload && response.SetValue(true, ref))
            static_cast<ZODownload*>(ref)->SetStream(&destination);
        request.ExecRequest(&response);
    } else {
        request.ExecRequest();
    }
    return TWireRequest(server.Requests().value(0));
}
