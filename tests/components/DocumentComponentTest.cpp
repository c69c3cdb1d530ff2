#include "components/DocumentComponent.h"
#include "components/SharedDocuments.h"

#include "ui_DocumentForm.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

const QByteArray Pets = R"(openapi: 3.0.3
info: {title: Pet store, version: '1'}
servers: [{url: 'http://127.0.0.1:1/'}]
security: [{key: []}]
paths:
  /pets: {get: {operationId: listPets, responses: {'200': {description: all}}}}
components: {securitySchemes: {key: {type: apiKey, in: header, name: X-Key}}}
)";

class DocumentComponent : public testing::Test {
protected:
    DocumentComponent() {
        qputenv("XDG_DATA_HOME", FFolder.path().toUtf8());
        QDir().mkpath(SharedDocuments::UserFolder());
        Write(SharedDocuments::UserFolder() + "/pets.yaml", Pets);
    }
    ~DocumentComponent() override { qunsetenv("XDG_DATA_HOME"); }

    static void Write(const QString& AFileName, const QByteArray& AText) {
        QFile file(AFileName);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(AText);
    }
    QString File(const QString& AName) const { return FFolder.filePath(AName); }

private:
    QTemporaryDir FFolder;
};

} // namespace

TEST_F(DocumentComponent, HasTheServiceOfItsDocumentWithTheOptionsOfItsForm) {
    QWidget form;
    Ui::DocumentForm ui;
    ui.setupUi(&form);
    form.show();
    EXPECT_EQ(ui.petStore->Problem(), "");
    const TZORestService* service = ui.petStore->Service();
    ASSERT_TRUE(service);
    EXPECT_EQ(service->objectName(), "petStore");
    EXPECT_EQ(service->GetApiKey(), "key of the form");
    ASSERT_EQ(service->TypeInfo()->Opers().size(), 1U);
    EXPECT_EQ(service->TypeInfo()->Opers().front().Name, "listPets");
    EXPECT_FALSE(ui.petStore->isVisible());
}

TEST_F(DocumentComponent, SharesItsDocumentWithOthers) {
    TZODocumentComponent first;
    TZODocumentComponent second;
    first.SetDocument("pets.yaml");
    second.SetDocument(SharedDocuments::UserFolder() + "/pets.yaml");
    ASSERT_TRUE(first.Service());
    ASSERT_TRUE(second.Service());
    EXPECT_EQ(first.Service()->Class(), second.Service()->Class());
}

TEST_F(DocumentComponent, SaysWhyThereIsNoService) {
    TZODocumentComponent component;
    EXPECT_FALSE(component.Service());
    EXPECT_EQ(component.Problem(), "The property Document names no API document yet.");
    component.SetDocument("nothing.yaml");
    EXPECT_FALSE(component.Service());
    EXPECT_EQ(component.Problem(), "There is no API document \"nothing.yaml\".");

    Write(File("bad.yaml"), "5");
    component.SetDocument(File("bad.yaml"));
    EXPECT_FALSE(component.Service());
    EXPECT_THAT(component.Problem().toStdString(), testing::HasSubstr("bad.yaml"));
    component.SetDocument("pets.yaml");
    EXPECT_TRUE(component.Service());
    EXPECT_EQ(component.Problem(), "");
}

TEST_F(DocumentComponent, KeepsItsServiceWhileANameIsTyped) {
    TZODocumentComponent component;
    component.SetDocument("pets.yaml");
    const TZORestService* service = component.Service();
    for (const char* name : {"", "p", "pets", "pets.yaml"})
        component.SetDocument(name);
    EXPECT_EQ(component.Service(), service);
    component.SetDocument({});
    EXPECT_EQ(component.GetDocument(), "");
    EXPECT_EQ(component.Problem(), "The property Document names no API document yet.");
}

TEST_F(DocumentComponent, AnnouncesTheEndOfAServiceWhoseDocumentIsReplaced) {
    struct TListener final : IZOFreeNotification {
        void Notification(QObject* AComponent, TZOOperation AOperation) override {
            EXPECT_EQ(AOperation, opRemove);
            Gone = AComponent;
        }
        QObject* Gone = nullptr;
    } listener;
    TZODocumentComponent component;
    component.SetDocument("pets.yaml");
    TZORestService* service = component.Service();
    service->FreeNotifier().Register(&listener);
    Write(File("others.yaml"), Pets);
    component.SetDocument(File("others.yaml"));
    EXPECT_EQ(listener.Gone, service);
}

TEST_F(DocumentComponent, FindsADocumentByItsPathFirst) {
    Write(File("pets.yaml"), Pets);
    EXPECT_EQ(SharedDocuments::Find(File("pets.yaml")), File("pets.yaml"));
    EXPECT_EQ(SharedDocuments::Find("pets.yaml"), SharedDocuments::UserFolder() + "/pets.yaml");
    EXPECT_EQ(SharedDocuments::Find("nothing.yaml"), "");
    EXPECT_EQ(SharedDocuments::Find({}), "");
}
