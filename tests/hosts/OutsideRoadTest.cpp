// The real program on a display, driven and watched from outside.
#include "tests/hosts/OutsideUser.h"
#include "tests/servers/NginxServer.h"
#include "tests/servers/RawServer.h"

#include "platform/Registry.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

constexpr qint64 Gibibyte = qint64(1) << 30;
/// What the program may have in all, whatever it transfers. The sanitizer keeps 256 MiB of freed blocks.
#ifdef __SANITIZE_ADDRESS__
constexpr qint64 MemoryBound = qint64(160 + 256) << 20;
#else
constexpr qint64 MemoryBound = qint64(160) << 20;
#endif

/// Places in the window.
constexpr QPoint AuthOptions(900, 44), ApiKey(60, 204), ClientId(348, 266), Secret(348, 336),
    WriteScope(40, 517), DefaultScopes(108, 555), FirstValue(80, 261);

class OutsideRoad : public testing::Test {
protected:
    QString Write(const QString& AName, const QByteArray& AText) const {
        QFile file(Folder.filePath(AName));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(AText);
        return file.fileName();
    }
    static QByteArray Checksum(const QString& AFile) {
        QProcess process;
        process.start(QStringLiteral("sha256sum"), {AFile});
        EXPECT_TRUE(process.waitForFinished(60000));
        return process.readAllStandardOutput().left(64);
    }
    static std::unique_ptr<TOutsideUser> Start(const QString& ADocument, const QString& AFolder = {}) {
        return std::make_unique<TOutsideUser>(QStringLiteral(ZO_EXPLORER), QStringList{ADocument}, AFolder);
    }

    QTemporaryDir Folder;
};

QByteArray Head(const QByteArray& ATitle, const QByteArray& AServer) {
    return "openapi: 3.0.0\ninfo: {title: " + ATitle + ", version: '1'}\nservers: [{url: '" + AServer +
           "'}]\n";
}

/// With holes, so that it takes no time to make, and marks that a part in a wrong place would move.
void MakeSparseFile(const QString& AName) {
    QFile file(AName);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.resize(Gibibyte));
    for (qint64 place = 1; place < Gibibyte; place = place * 3 + 7) {
        ASSERT_TRUE(file.seek(place));
        file.write(QByteArray::number(place));
    }
}

} // namespace

TEST_F(OutsideRoad, AGibibyteArrivesWholeEachWayAndTheProgramStaysSmall) {
    TNginxServer server;
    const QString folder = server.FilePath(QStringLiteral("files"));
    const QString source = folder + QStringLiteral("/large");
    MakeSparseFile(source);
    const QByteArray checksum = Checksum(source);
    const QByteArray bytes = "{content: {application/octet-stream: {schema: {type: string, format: binary}}}";
    const QString document =
        Write(QStringLiteral("files.yaml"),
              Head("Files", server.Url({})) +
                  "paths:\n  /files/large: {get: {operationId: fetch, responses: {'200': " + bytes +
                  ", description: d}}}}\n  /upload/stored: {put: {operationId: store, "
                  "requestBody: " +
                  bytes + "}, responses: {'201': {description: d}}}}\n");
    // From here names are enough for the file dialog, which would look up the folders of a path between keys.
    const auto user = Start(document, folder);
    user->Open(QStringLiteral("Files_"));
    user->Open(QStringLiteral("fetch"));
    user->Press(QStringLiteral("ctrl+Return"));
    EXPECT_TRUE(TOutsideUser::WaitForWindow(QStringLiteral("Download to file")));
    const QString target = folder + QStringLiteral("/fetched");
    user->Type(QStringLiteral("fetched"));
    user->Press(QStringLiteral("Return"));
    EXPECT_TRUE(TOutsideUser::WaitFor([&] { return QFile(target).size() == Gibibyte; }));
    EXPECT_TRUE(user->WaitForRest());
    user->Picture(QStringLiteral("outside-download"));
    EXPECT_EQ(Checksum(target), checksum);

    user->Press(QStringLiteral("alt+v"));
    user->Press(QStringLiteral("s"));
    user->Open(QStringLiteral("Files_"));
    user->Open(QStringLiteral("store"));
    user->Click(FirstValue, 2);
    EXPECT_TRUE(TOutsideUser::WaitForWindow(QStringLiteral("Select file to upload")));
    user->Type(QStringLiteral("large"));
    user->Press(QStringLiteral("Return"));
    user->Press(QStringLiteral("ctrl+Return"));
    const QString stored = server.FilePath(QStringLiteral("upload/stored"));
    EXPECT_TRUE(TOutsideUser::WaitFor([&] { return QFile(stored).size() == Gibibyte; }));
    EXPECT_TRUE(user->WaitForRest());
    user->Picture(QStringLiteral("outside-upload"));
    EXPECT_EQ(Checksum(stored), checksum);
    const qint64 peak = user->PeakMemory();
    EXPECT_GT(peak, 0);
    EXPECT_LT(peak, MemoryBound);
    RecordProperty("PeakMemory", QString::number(peak).toStdString());
    EXPECT_TRUE(user->Quit());
}

TEST_F(OutsideRoad, WhatIsTypedIntoTheOptionsInOneRunIsThereInTheNext) {
    TRawServer server(TRawServer::Answering([](const QByteArray&) { return TRawServer::Answer("{}"); }));
    const QString document = Write(
        QStringLiteral("keyed.yaml"),
        Head("Keyed", server.Url({})) +
            "security: [{key: []}]\npaths: {/a: {get: {operationId: getIt, responses: {'200': {description: "
            "d}}}}}\n"
            "components: {securitySchemes: {key: {type: apiKey, in: header, name: X-Key}, auth: {type: "
            "oauth2, "
            "flows: {clientCredentials: {tokenUrl: 'http://127.0.0.1/t', scopes: {read: r, write: w}}}}}}\n");
    QString className;
    const auto stored = [&](const QString& AName) {
        TRegistry registry;
        const QString key = QStringLiteral("SOFTWARE\\Orvane Labs\\ZO-Tools 2020\\Bridgework\\APIExplorer");
        if (className.isEmpty() && registry.OpenKeyReadOnly(key))
            className = registry.GetKeyNames().filter(QStringLiteral("Keyed_")).value(0);
        TRegistry own;
        const bool isScope = AName.startsWith(QStringLiteral("Scopes"));
        const QString path = key + u'\\' + className + (isScope ? QStringLiteral("\\Scopes") : QString());
        return !className.isEmpty() && own.OpenKeyReadOnly(path) ? own.ReadString(AName.mid(isScope ? 6 : 0))
                                                                 : QString();
    };
    const auto expectStored = [&](const char* AName, const char* AText) {
        EXPECT_TRUE(TOutsideUser::WaitFor([&] {
            return stored(QLatin1String(AName)) == QLatin1String(AText);
        })) << AName
            << ": " << stored(QLatin1String(AName)).toStdString();
    };
    {
        const auto user = Start(document);
        user->Open(QStringLiteral("Keyed_"));
        user->Click(AuthOptions);
        user->Picture(QStringLiteral("outside-options"));
        user->Click(ClientId);
        user->Type(QStringLiteral("client one"));
        expectStored("ClientId", "client one");
        user->Click(Secret);
        user->Type(QStringLiteral("s3cret"));
        expectStored("Secret", "s3cret");
        const QString scopes = stored(QStringLiteral("Scopes0")) + stored(QStringLiteral("Scopes1"));
        user->Click(WriteScope);
        EXPECT_TRUE(TOutsideUser::WaitFor(
            [&] { return stored(QStringLiteral("Scopes0")) + stored(QStringLiteral("Scopes1")) != scopes; }));
        user->Click(DefaultScopes);
        EXPECT_TRUE(TOutsideUser::WaitFor(
            [&] { return stored(QStringLiteral("Scopes0")) + stored(QStringLiteral("Scopes1")) == scopes; }));
        user->Click(ApiKey);
        user->Type(QStringLiteral("key-1"));
        user->Press(QStringLiteral("Return"));
        expectStored("ApiKey", "key-1");
        user->Picture(QStringLiteral("outside-options-key"));
        EXPECT_TRUE(user->Quit());
    }
    const auto user = Start(document);
    user->Open(QStringLiteral("Keyed_"));
    user->Open(QStringLiteral("getIt"));
    user->Press(QStringLiteral("ctrl+Return"));
    EXPECT_TRUE(TOutsideUser::WaitFor([&] { return !server.Requests().isEmpty(); }));
    EXPECT_TRUE(server.Requests().value(0).contains("X-Key: key-1\r\n"));
    // Without the key the rest counts again, as it was.
    user->Click(AuthOptions);
    user->Click(ApiKey);
    user->Press(QStringLiteral("ctrl+a"));
    user->Press(QStringLiteral("BackSpace"));
    user->Press(QStringLiteral("Return"));
    expectStored("ApiKey", "");
    expectStored("ClientId", "client one");
    expectStored("Secret", "s3cret");
    user->Picture(QStringLiteral("outside-options-back"));
    EXPECT_TRUE(user->Quit());
}
