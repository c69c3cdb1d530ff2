// Qt Designer itself, with the plug-in, on a display of its own.
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const char* const EmptyForm = R"(<?xml version="1.0" encoding="UTF-8"?>
<ui version="4.0">
 <class>Form</class>
 <widget class="QWidget" name="Form">
  <property name="geometry"><rect><x>0</x><y>0</y><width>360</width><height>300</height></rect></property>
  <property name="windowTitle"><string>Form</string></property>
 </widget>
</ui>
)";

const char* const FormWithService = R"(<?xml version="1.0" encoding="UTF-8"?>
<ui version="4.0">
 <class>Form</class>
 <widget class="QWidget" name="Form">
  <property name="geometry"><rect><x>0</x><y>0</y><width>360</width><height>300</height></rect></property>
  <widget class="TLibraryServiceComponent" name="libraryService">
   <property name="geometry"><rect><x>60</x><y>60</y><width>40</width><height>40</height></rect></property>
   <property name="ApiKey" stdset="0"><string/></property>
   <property name="ClientId" stdset="0"><string>client</string></property>
   <property name="Secret" stdset="0"><string>s3cret</string></property>
  </widget>
 </widget>
 <customwidgets>
  <customwidget>
   <class>TLibraryServiceComponent</class>
   <extends>QWidget</extends>
   <header>samples/LibraryServiceComponent.h</header>
  </customwidget>
 </customwidgets>
</ui>
)";

class Designer : public testing::Test {
protected:
    QString FormFile() const { return FFolder.filePath(QStringLiteral("form.ui")); }

    void WriteForm(const char* AText) { Write(QStringLiteral("form.ui"), AText); }

    void Write(const QString& AName, const char* AText) {
        ASSERT_TRUE(QDir(FFolder.path()).mkpath(QFileInfo(AName).path()));
        QFile file(FFolder.filePath(AName));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(AText);
    }

    /// The editor's command line for the form.
    QStringList Command() const {
        QStringList command = {QStringLiteral("timeout"), QStringLiteral("100")};
#ifdef ZO_SANITIZER
        // Leaks would be the editor's own, too; and the preloaded runtime makes the software renderer of
        // OpenGL leave a lock behind that a library of a plug-in waits for.
        command << QStringLiteral("env") << QStringLiteral("LD_PRELOAD=" ZO_SANITIZER)
                << QStringLiteral("ASAN_OPTIONS=detect_leaks=0")
                << QStringLiteral("QT_XCB_GL_INTEGRATION=none");
#endif
        return command << QStringLiteral(ZO_DESIGNER) << FormFile();
    }

    /// Starts the editor on the form and waits until the road has ended and the editor with it.
    void Walk(const QString& ARoad) {
        QProcess designer;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
        environment.insert(QStringLiteral("QT_PLUGIN_PATH"), QStringLiteral(ZO_PLUGIN_PATHS));
        environment.insert(QStringLiteral("XDG_DATA_HOME"), FFolder.filePath(QStringLiteral("data")));
        environment.insert(QStringLiteral("ZO_ROAD"), ARoad);
        environment.insert(QStringLiteral("ZO_ROAD_FOLDER"), QStringLiteral(ZO_PICTURES "/") + ARoad);
        designer.setProcessEnvironment(environment);
        designer.setProcessChannelMode(QProcess::MergedChannels);
        designer.start(QStringLiteral(ZO_WITH_DISPLAY),
                       QStringList{QStringLiteral("--size"), QStringLiteral("1600x1000")} + Command());
        ASSERT_TRUE(designer.waitForFinished(150'000)) << designer.errorString().toStdString();
        EXPECT_EQ(designer.exitCode(), 0) << designer.readAll().toStdString();
    }

    QString Form() const {
        QFile file(FormFile());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return QString::fromUtf8(file.readAll())
            .simplified()
            .replace(QStringLiteral("> <"), QStringLiteral("><"));
    }

private:
    QTemporaryDir FFolder;
};

} // namespace

TEST_F(Designer, KeepsWhatIsTypedInTheExplorerWithTheForm) {
    WriteForm(EmptyForm);
    Walk(QStringLiteral("fill"));
    const QString form = Form();
    for (const char* part :
         {"class=\"TLibraryServiceComponent\" name=\"libraryService\"",
          "<header>samples/LibraryServiceComponent.h</header>", "name=\"ClientId\" stdset=\"0\"",
          "<string>client</string>", "<string>s3cret</string>", "<string>http://127.0.0.1/here</string>",
          "<string>loans.write</string>"})
        EXPECT_TRUE(form.contains(QLatin1String(part))) << part << "\n" << form.toStdString();
    EXPECT_FALSE(form.contains(QStringLiteral("key-7")));
}

TEST_F(Designer, LeavesThePagesOfAComponentThatIsDeletedOrWhoseFormIsClosed) {
    WriteForm(FormWithService);
    Walk(QStringLiteral("remove"));
}

TEST_F(Designer, OffersTheDocumentsOfTheUser) {
    const char* const pets = R"(openapi: 3.0.3
info: {title: Pet store, version: '1'}
servers: [{url: 'http://127.0.0.1:1/'}]
security: [{key: []}]
paths: {/pets: {get: {operationId: listPets, responses: {'200': {description: all}}}}}
components: {securitySchemes: {key: {type: apiKey, in: header, name: X-Key}}}
)";
    Write(QStringLiteral("data/zobridgework/documents/pets.yaml"), pets);
    Write(QStringLiteral("data/zobridgework/documents/broken.yaml"), "5");
    WriteForm(EmptyForm);
    Walk(QStringLiteral("document"));
    const QString form = Form();
    for (const char* part : {"class=\"TZODocumentComponent\" name=\"myPets\"",
                             "name=\"Document\" stdset=\"0\"", ">pets.yaml</string>",
                             "<string>pet-key</string>", "<header>components/DocumentComponent.h</header>"})
        EXPECT_TRUE(form.contains(QLatin1String(part))) << part << "\n" << form.toStdString();
    EXPECT_FALSE(form.contains(QStringLiteral("PetStore_"))) << form.toStdString();
    Walk(QStringLiteral("read"));
}

TEST_F(Designer, ClosesWithPagesOpen) {
    WriteForm(FormWithService);
    Walk(QStringLiteral("close"));
}
