// What a form editor is told of a document whose every text is written to be obeyed.
#include "hosts/designer/DesignerServices.h"
#include "hosts/designer/DocumentWidget.h"

#include "openapi/ApiDocument.h"

#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTextDocument>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

namespace {

const QString Shown = QString::fromUtf8("<img src='file:///x'>\\u202E␛[31m\"&");

QByteArray Document() {
    return QByteArray(
               R"({"openapi": "3.0.0", "info": {"title": "EVIL", "version": "1", "description": "EVIL"}, "paths": {}})")
        .replace("EVIL", R"(<img src='file:///x'>\u202e\u001b[31m\"&)");
}

QString FileIn(const QString& AFolder, const QString& AName) {
    QFile file(QDir(AFolder).filePath(AName));
    EXPECT_TRUE(QDir().mkpath(AFolder) && file.open(QIODevice::WriteOnly));
    file.write(Document());
    return file.fileName();
}

QString Plain(const QString& AHtml) {
    EXPECT_TRUE(Qt::mightBeRichText(AHtml)) << AHtml.toStdString();
    QTextDocument document;
    document.setHtml(AHtml);
    return document.toPlainText();
}

} // namespace

TEST(HostileWidget, OfADocumentIsDescribedInVisibleText) {
    const QTemporaryDir folder;
    const auto document =
        TZOApiDocument::Load(FileIn(folder.path(), QString::fromUtf8("<b>\u202E&'\".json")));
    ASSERT_TRUE(document->ServiceClass());
    const TZODocumentWidget widget(document.get());
    EXPECT_EQ(Plain(widget.toolTip()), Shown);
    EXPECT_TRUE(Plain(widget.whatsThis()).startsWith(QStringLiteral("A REST service on the form: ") + Shown));
    QXmlStreamReader xml(widget.domXml());
    QString box, file;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QStringLiteral("ui"))
            box = xml.attributes().value(QStringLiteral("displayname")).toString();
        else if (xml.name() == QStringLiteral("string"))
            file = xml.readElementText();
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    EXPECT_EQ(box, Shown);
    // The form gets the file's own name.
    EXPECT_EQ(file, QString::fromUtf8("<b>\u202E&'\".json"));
}

TEST(HostileWidget, IsNotOfferedOfADocumentWhoseNameNoFormCanHold) {
    const QTemporaryDir home;
    const auto back = qScopeGuard([before = qgetenv("HOME")] { qputenv("HOME", before); });
    qputenv("HOME", home.path().toUtf8());
    const QString folder = home.filePath(QStringLiteral(".qttest/share/zobridgework/documents"));
    const QString name = FileIn(folder, QStringLiteral("a\x1b"
                                                       "b.json"));
    FileIn(folder, QStringLiteral("b.json"));
    DesignerServices::Start();
    EXPECT_EQ(DesignerServices::Documents().size(), 1U);
    EXPECT_TRUE(DesignerServices::Failures().contains(
        QStringLiteral("The API document %1 was skipped: no form can hold its name.").arg(name)))
        << DesignerServices::Failures().join(u'\n').toStdString();
}
