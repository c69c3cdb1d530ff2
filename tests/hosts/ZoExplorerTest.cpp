#include "tests/hosts/HostFixture.h"

#include <QProcess>

namespace {

class ZoExplorer : public HostTest {
protected:
    int Run(const QStringList& AArguments) {
        QProcess process;
        process.start(QStringLiteral(ZO_EXPLORER), AArguments);
        EXPECT_TRUE(process.waitForFinished(30000)) << process.errorString().toStdString();
        Output = QString::fromUtf8(process.readAllStandardOutput());
        Errors = QString::fromUtf8(process.readAllStandardError());
        return process.exitCode();
    }

    QString Output;
    QString Errors;
};

} // namespace

TEST_F(ZoExplorer, RefusesABadCommandLine) {
    const std::pair<QStringList, QString> lines[] = {
        {{QStringLiteral("--nonsense")}, QStringLiteral("nonsense")},
        {{QStringLiteral("--tour")}, QStringLiteral("tour")},
        {{QStringLiteral("stray")}, QStringLiteral("stray")},
        {{QStringLiteral("\x1b[31m\u202E")}, QStringLiteral("'␛[31m\\u202E'")}};
    for (const auto& [arguments, named] : lines) {
        EXPECT_EQ(Run(arguments), 2) << named.toStdString();
        EXPECT_TRUE(Errors.contains(named)) << Errors.toStdString();
        EXPECT_EQ(Output, QString());
    }
}

TEST_F(ZoExplorer, SaysWhatItCanDo) {
    EXPECT_EQ(Run({QStringLiteral("--help")}), 0);
    EXPECT_TRUE(Output.contains(QStringLiteral("--demo-editor")));
    EXPECT_EQ(Run({QStringLiteral("--version")}), 0);
    EXPECT_TRUE(Output.contains(QStringLiteral("zoexplorer")));
}

TEST_F(ZoExplorer, StartsAndKeepsRunning) {
    QFile document(Folder.filePath(QStringLiteral("api.json")));
    ASSERT_TRUE(document.open(QIODevice::WriteOnly));
    document.write(R"({"openapi": "3.0.0", "info": {"title": "T", "version": "1"}, "paths": {}})");
    document.close();
    for (const QStringList& arguments :
         {QStringList(), QStringList{QStringLiteral("--demo-editor")}, QStringList{document.fileName()}}) {
        QProcess process;
        process.start(QStringLiteral(ZO_EXPLORER), arguments);
        ASSERT_TRUE(process.waitForStarted());
        EXPECT_FALSE(process.waitForFinished(700)) << process.readAllStandardError().toStdString();
        process.terminate();
        EXPECT_TRUE(process.waitForFinished(10000));
    }
}
