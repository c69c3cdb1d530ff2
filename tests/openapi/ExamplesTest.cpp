// Documents from the world, imported whole and compared with another program's reading of them (kinds.mjs).
#include "openapi/ApiDocument.h"

#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

const QString Packages = QStringLiteral(ZO_NPM_FOLDER "/node_modules/");

QStringList FilesIn(const QString& AFolder) {
    QStringList files;
    QDirIterator walk(Packages + AFolder, {QStringLiteral("*.json"), QStringLiteral("*.yaml")}, QDir::Files,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QString file = walk.next();
        if (!file.contains(QStringLiteral("/node_modules/@readme/oas-examples/package")) &&
            file.contains(u'.'))
            files.append(file);
    }
    files.sort();
    return files;
}

QStringList Examples() {
    QStringList files;
    for (const char* version : {"2.0", "3.0", "3.1"})
        files += FilesIn(QStringLiteral("@readme/oas-examples/") + QLatin1String(version));
    return files;
}

QJsonArray Ask(const QStringList& AFiles) {
    QProcess node;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ZO_NPM_FOLDER"), QStringLiteral(ZO_NPM_FOLDER));
    node.setProcessEnvironment(environment);
    node.start(QStringLiteral("node"), QStringList{QStringLiteral(ZO_KINDS_SCRIPT)} + AFiles);
    EXPECT_TRUE(node.waitForFinished(120000)) << node.errorString().toStdString();
    EXPECT_EQ(node.exitCode(), 0) << node.readAllStandardError().toStdString();
    QJsonArray answers;
    for (const QByteArray& line : node.readAllStandardOutput().trimmed().split('\n'))
        answers.append(QJsonDocument::fromJson(line).object());
    return answers;
}

QString LineOf(const TZORestService::TOper& AOper) {
    QStringList parts = {AOper.Name, QString::fromLatin1(AOper.Http.Method), AOper.Http.Path,
                         QStringLiteral("|")};
    for (int i = 0; i < AOper.Request->PropertyCount(); ++i)
        parts.append(AOper.Request->Property(i)->Name + u':' +
                     KindName(AOper.Request->Property(i)->Type->Kind()));
    parts.append(QStringLiteral("|"));
    parts.append(AOper.Response ? KindName(AOper.Response->Kind()) : QStringLiteral("none"));
    return parts.join(u' ');
}

void ExpectSame(const QString& AFile, const QJsonObject& AExpected) {
    SCOPED_TRACE(AFile.toStdString());
    const auto document = TZOApiDocument::Load(AFile);
    ASSERT_TRUE(document->ServiceClass());
    document->CompleteAll();
    EXPECT_EQ(document->Title(), AExpected[QStringLiteral("title")].toString());
    EXPECT_EQ(document->Version(), AExpected[QStringLiteral("version")].toString());
    EXPECT_EQ(document->TypeCount(), AExpected[QStringLiteral("types")].toInt());
    const auto& opers = document->ServiceClass()->TypeInfo()->Opers();
    const QJsonArray expected = AExpected[QStringLiteral("operations")].toArray();
    ASSERT_EQ(qsizetype(opers.size()), expected.size());
    for (std::size_t i = 0; i < opers.size(); ++i)
        EXPECT_EQ(LineOf(opers[i]).toStdString(), expected[qsizetype(i)].toString().toStdString());
}

} // namespace

TEST(Examples, AreReadAsAnotherProgramReadsThem) {
    const QStringList files = Examples();
    ASSERT_GT(files.size(), 60);
    const QJsonArray expected = Ask(files);
    ASSERT_EQ(expected.size(), files.size());
    for (qsizetype i = 0; i < files.size(); ++i)
        ExpectSame(files[i], expected[i].toObject());
}

TEST(Examples, OfTheLargestKindAreReadAsAnotherProgramReadsThem) {
    const QStringList files =
        FilesIn(QStringLiteral("@octokit/openapi/generated")).filter(QStringLiteral("api.github.com.json"));
    ASSERT_EQ(files.size(), 1);
    const QJsonArray expected = Ask(files);
    ASSERT_EQ(expected[0].toObject()[QStringLiteral("operations")].toArray().size(), 1223);
    ExpectSame(files[0], expected[0].toObject());
    EXPECT_TRUE(TZOApiDocument::Load(files[0])->Problems().empty());
}
