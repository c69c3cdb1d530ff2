// Each document of the folder "mapping" has a text file beside it that says what its operations look like
// and what calls of them send. A file is a row of sections:
//
//   === tree OPERATION       what TypeOutline says of it
//   === call OPERATION       a script for CallWith
//   === sends                the request's line, the headers that matter, an empty line, the body
#include "tests/openapi/OpenApiFixture.h"

#include "openapi/TypeOutline.h"

#include <QDirIterator>

namespace {

struct TSection {
    QString Kind;
    QString Name;
    QByteArray Text;
};

std::vector<TSection> Sections(const QString& AFileName) {
    QFile file(AFileName);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << AFileName.toStdString();
    std::vector<TSection> sections;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine();
        if (line.startsWith("=== ")) {
            const QString head = QString::fromUtf8(line.mid(4).trimmed());
            sections.push_back({head.section(u' ', 0, 0), head.section(u' ', 1), {}});
        } else if (!sections.empty()) {
            sections.back().Text += line;
        }
    }
    return sections;
}

QStringList Documents() {
    QStringList names =
        QDir(QStringLiteral(ZO_MAPPING_FOLDER))
            .entryList({QStringLiteral("*.yaml"), QStringLiteral("*.json")}, QDir::Files, QDir::Name);
    return names;
}

class MappingTest : public TOpenApiTest, public testing::WithParamInterface<QString> {
protected:
    static void ExpectSent(const TWireRequest& ASent, const QByteArray& AExpected) {
        const qsizetype end = AExpected.indexOf("\n\n");
        const QByteArrayList head = (end < 0 ? AExpected : AExpected.left(end)).trimmed().split('\n');
        EXPECT_EQ(ASent.Line, head.front());
        for (const QByteArray& header : head.mid(1)) {
            const qsizetype colon = header.indexOf(':');
            EXPECT_EQ(ASent.Header(header.left(colon)), header.mid(colon + 1).trimmed())
                << header.toStdString();
        }
        const QByteArray body = end < 0 ? QByteArray() : AExpected.mid(end + 2);
        EXPECT_EQ(ASent.Body.trimmed(), body.trimmed());
    }
};

} // namespace

TEST_P(MappingTest, HoldsForTrees) {
    const QString path = QStringLiteral(ZO_MAPPING_FOLDER "/") + GetParam();
    const auto document = TZOApiDocument::Load(path);
    ASSERT_TRUE(document->ServiceClass());
    for (const TSection& section : Sections(path.section(u'.', 0, -2) + QStringLiteral(".txt"))) {
        const POper oper = section.Kind == QStringLiteral("tree") ? OperOf(*document, section.Name) : nullptr;
        if (oper) {
            EXPECT_EQ(TypeOutline::Of(*oper).toStdString(), section.Text.toStdString());
        }
    }
    document->CompleteAll();
    EXPECT_EQ(Problems(*document), QStringList());
}

TEST_P(MappingTest, HoldsForWhatIsSent) {
    const QString path = QStringLiteral(ZO_MAPPING_FOLDER "/") + GetParam();
    const auto document = TZOApiDocument::Load(path);
    ASSERT_TRUE(document->ServiceClass());
    const auto sections = Sections(path.section(u'.', 0, -2) + QStringLiteral(".txt"));
    int count = 0;
    for (std::size_t i = 0; i + 1 < sections.size(); ++i) {
        if (sections[i].Kind != QStringLiteral("call"))
            continue;
        SCOPED_TRACE(sections[i].Name.toStdString() + ": " + sections[i].Text.toStdString());
        ASSERT_EQ(sections[i + 1].Kind, QStringLiteral("sends"));
        const POper oper = OperOf(*document, sections[i].Name);
        ASSERT_TRUE(oper);
        ExpectSent(CallWith(*document, oper, sections[i].Text), sections[i + 1].Text);
        ++count;
    }
    EXPECT_GT(count, 0);
}

INSTANTIATE_TEST_SUITE_P(Documents, MappingTest, testing::ValuesIn(Documents()), [](const auto& AInfo) {
    QString name = AInfo.param.section(u'.', 0, 0);
    return name.replace(u'-', u'_').toStdString();
});
