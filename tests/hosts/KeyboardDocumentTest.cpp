// The large document of @octokit/openapi in the real window: searched, opened, a nested body built by
// keyboard alone, and executed at a mock server that checks what it gets against the same document. With
// ZO_PICTURES set, pictures of it go into that folder.
#include "tests/hosts/KeyboardExplorer.h"
#include "tests/servers/RawServer.h"
#include "tests/servers/ServerProcess.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using U = TKeyboardUser;

const QString Sha = QStringLiteral("7638417db6d59f3c431d3e1f261cc637155684cd");

void Look(U& u, const QString& AName) {
    static int count = 0;
    const QByteArray folder = qgetenv("ZO_PICTURES");
    if (folder.isEmpty())
        return;
    u.Driver().Picture(AName);
    const QString name = QStringLiteral("%1-%2.png").arg(++count, 2, 10, QLatin1Char('0')).arg(AName);
    QFile::copy(u.FilePath(name), QFile::decodeName(folder) + u'/' + name);
}

void FillCommit(U& u) {
    Look(u, QStringLiteral("empty"));
    u.Set("owner", "octocat");
    u.Set("repo", "hello-world");
    u.Open("body: ");
    u.Set("message", "Say hello");
    u.Set("tree", Sha);
    u.Open("parents: list");
    u.FillList({Sha, Sha});
    u.Open("author: object");
    u.Set("name", "Ann Night");
    u.Set("email", "ann@example.com");
    u.Set("date", "2024-02-29T13:30:00+01:00");
    Look(u, QStringLiteral("filled"));
}

class KeyboardDocument : public testing::Test {
protected:
    /// The document as it is, but for its server.
    QString WriteDocument(const QByteArray& AServer) const {
        QFile original(QStringLiteral(ZO_LARGE_DOCUMENT));
        EXPECT_TRUE(original.open(QIODevice::ReadOnly)) << "scripts/npm-packages test installs it";
        QByteArray text = original.readAll();
        const QByteArray server = "\"https://api.github.com\"";
        // Behind the first one stand those of examples.
        const qsizetype place = text.indexOf(server, text.indexOf("\"servers\""));
        EXPECT_GE(place, 0);
        text.replace(place, server.size(), '"' + AServer + '"');
        QFile file(FFolder.filePath(QStringLiteral("large.json")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
        return file.fileName();
    }

private:
    QTemporaryDir FFolder;
};

} // namespace

TEST_F(KeyboardDocument, OfTheLargestKindIsSearchedOpenedFilledInAndExecuted) {
    const int port = ClosedPort();
    const QString path = WriteDocument("http://127.0.0.1:" + QByteArray::number(port));
    TServerProcess mock(QStringLiteral("node"),
                        {QStringLiteral(ZO_MOCK_SERVER), QStringLiteral("mock"), QStringLiteral("--errors"),
                         QStringLiteral("-p"), QString::number(port), path});
    mock.WaitFor(QRegularExpression(QStringLiteral("(is listening)")));
    TKeyboardExplorer explorer;
    explorer.OpenDocument(path);
    const std::string problem = explorer.Run({"GitHub", "git/create-commit", FillCommit, false, [](U& u) {
                                                  u.See(QStringLiteral("201 Created"));
                                                  u.See(QStringLiteral("html_url: "));
                                                  Look(u, QStringLiteral("answer"));
                                              }});
    ASSERT_EQ(problem, "");
    const TValueTexts expected = {{"owner", "octocat"},
                                  {"repo", "hello-world"},
                                  {"body/message", "Say hello"},
                                  {"body/tree", Sha.toStdString()},
                                  {"body/parents/0", Sha.toStdString()},
                                  {"body/parents/1", Sha.toStdString()},
                                  {"body/author/name", "Ann Night"},
                                  {"body/author/email", "ann@example.com"},
                                  {"body/author/date", "2024-02-29T12:30:00Z"}};
    EXPECT_EQ(explorer.Shown(), expected);
}
