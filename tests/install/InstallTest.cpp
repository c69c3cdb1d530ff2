// What is installed, used from where it was put.
#include "tests/samples/SampleClient.h"

#include <QDirIterator>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace {

class Install : public TSampleServerTest {
protected:
    Install() { EXPECT_EQ(Run(ZO_CMAKE, {"--install", ZO_BUILD, "--prefix", Prefix()}).first, 0); }

    QString Prefix() const { return FFolder.filePath("installed"); }
    QString Folder(const QString& AName) const { return FFolder.filePath(AName); }

    /// The exit code, and all that was written to standard output; both outputs when it fails.
    static std::pair<int, QString> Run(const QString& AProgram, const QStringList& AArguments) {
        QProcess process;
        process.start(AProgram, AArguments);
        if (!process.waitForFinished(240'000))
            return {-1, process.errorString()};
        QString output = QString::fromUtf8(process.readAllStandardOutput());
        if (process.exitCode() != 0)
            output += QString::fromUtf8(process.readAllStandardError());
        return {process.exitCode(), output};
    }

    /// Paths below the prefix.
    QStringList Files(const QString& APattern) const {
        QStringList files;
        QDirIterator found(Prefix(), {APattern}, QDir::Files, QDirIterator::Subdirectories);
        while (found.hasNext())
            files.append(QDir(Prefix()).relativeFilePath(found.next()));
        files.sort();
        return files;
    }

    /// Builds a project that knows nothing but the installed package.
    void Build(const QString& AProject, const QString& ATo) const {
        const auto [configured, log] =
            Run(ZO_CMAKE, {"-G", "Ninja", "-S", QStringLiteral(ZO_SOURCE "/") + AProject, "-B", ATo,
                           "-DCMAKE_PREFIX_PATH=" + Prefix(), "-DCMAKE_CXX_FLAGS=" ZO_FLAGS});
        ASSERT_EQ(configured, 0) << log.toStdString();
        const auto [built, output] = Run(ZO_CMAKE, {"--build", ATo});
        ASSERT_EQ(built, 0) << output.toStdString();
    }

private:
    QTemporaryDir FFolder;
};

} // namespace

TEST_F(Install, PutsEverythingWhereItIsLookedFor) {
    const QString library = QStringLiteral(ZO_LIBDIR);
    for (const QString& file :
         {QString("bin/zoexplorer"), QString("bin/zoapi"), library + "/libzocruntime.so.0.1",
          library + "/libzoccomponents.so.0.1", library + "/qt6/plugins/designer/zobridgework.so",
          library + "/zobridgework/services/zosamples.so",
          library + "/cmake/ZOBridgework/ZOBridgeworkConfig.cmake",
          QString("include/zobridgework/components/ServiceComponent.h"), QString("share/man/man1/zoapi.1.gz"),
          QString("share/man/man1/zoexplorer.1.gz"), QString("share/applications/zoexplorer.desktop"),
          QString("share/icons/hicolor/scalable/apps/zoexplorer.svg"),
          QString("share/metainfo/com.orvanelabs.zoexplorer.metainfo.xml")})
        EXPECT_TRUE(QFile::exists(Prefix() + '/' + file)) << file.toStdString();
    EXPECT_EQ(Files("*_p.h"), QStringList());
    EXPECT_EQ(Files("*.a"), QStringList());
}

TEST_F(Install, NeedsNothingOfTheBuild) {
    QStringList binaries = Files("*.so*");
    binaries += {"bin/zoexplorer", "bin/zoapi"};
    for (const QString& binary : qAsConst(binaries)) {
        const auto [code, headers] = Run("readelf", {"--dynamic", Prefix() + '/' + binary});
        ASSERT_EQ(code, 0) << headers.toStdString();
        const auto path = QRegularExpression("R(?:UN)?PATH\\).*\\[(.*)\\]").match(headers);
        EXPECT_TRUE(!path.hasMatch() || path.captured(1).startsWith("$ORIGIN/")) << headers.toStdString();
        EXPECT_FALSE(path.captured(1).contains(':')) << headers.toStdString();
    }
    EXPECT_EQ(Run(Prefix() + "/bin/zoapi", {"--version"}), std::make_pair(0, QString("zoapi 0.1.0\n")));
    EXPECT_EQ(Run(Prefix() + "/bin/zoexplorer", {"--version"}),
              std::make_pair(0, QString("zoexplorer 0.1.0\n")));
}

TEST_F(Install, HeadersAreUsableByOtherProjects) { Build("tests/install/headers", Folder("headers")); }

TEST_F(Install, TheExampleListsTheBooksOfItsLibrary) {
    Build("examples/books", Folder("books"));
    const auto [code, output] = Run(Folder("books") + "/books", {"--print"});
    ASSERT_EQ(code, 0) << output.toStdString();

    const TJson page = Get("/media?kind=book&pageSize=5").second;
    QStringList expected;
    for (const TJson& book : page["items"])
        expected.append(QString("%1 (%2)").arg(QString::fromStdString(book["title"])).arg(int(book["year"])));
    ASSERT_EQ(expected.size(), 5);
    // Every other medium of the 480 is a book.
    expected.append("5 of 240 books\n");
    EXPECT_EQ(output, expected.join('\n'));
}
