#include "components/ServiceComponent.h"

#include "ui_ServiceForm.h"

#include "samples/Samples.h"

#include "platform/DesignerNotify.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

class ServiceComponent : public testing::Test {
protected:
    ServiceComponent() { StartSamples(); }
    ~ServiceComponent() override { StopSamples(); }
};

/// As form editors have it: they know the class of a component only after they have made it.
class TLateComponent : public TZOServiceComponent {
public:
    TLateComponent() : TZOServiceComponent(nullptr) {}
    void Take(const TZORestServiceClass* AClass) { SetServiceClass(AClass); }
};

} // namespace

TEST_F(ServiceComponent, HasTheOptionsOfItsFormAtRunTimeAndIsNotSeen) {
    QWidget form;
    Ui::ServiceForm ui;
    ui.setupUi(&form);
    form.show();
    const TLibraryService* service = ui.libraryService->Service();
    EXPECT_EQ(service->objectName(), "libraryService");
    EXPECT_EQ(service->GetApiKey(), "key of the form");
    EXPECT_EQ(service->GetSecret(), "s3cret");
    EXPECT_EQ(service->GetClientId(), "");
    EXPECT_EQ(service->Scopes(), QStringList{"loans.write"});
    EXPECT_FALSE(ui.libraryService->isVisible());
    ui.libraryService->show();
    EXPECT_FALSE(ui.libraryService->isVisible());
}

TEST_F(ServiceComponent, IsSeenOnAFormUnderDesignOnly) {
    QWidget form;
    TLibraryServiceComponent component(&form);
    SetDesignRoot(&form, nullptr);
    form.show();
    component.show();
    EXPECT_TRUE(component.isVisible());
    EXPECT_TRUE(IsDesigning(component.Service()));
    ClearDesignRoot(&form);
    component.show();
    EXPECT_FALSE(component.isVisible());
}

TEST_F(ServiceComponent, ReportsAnOptionThatTheServiceDoesNotHaveYet) {
    TLibraryServiceComponent component;
    QSignalSpy reports(component.Service(), &TZORestService::OptionsReported);
    component.SetClientId("one");
    EXPECT_EQ(component.Service()->GetClientId(), "one");
    EXPECT_EQ(reports.size(), 1);
    component.Service()->SetClientId("two");
    component.SetClientId("two");
    EXPECT_EQ(reports.size(), 1);
    component.SetScopes({"loans.write"});
    EXPECT_EQ(component.Service()->Scopes(), QStringList{"loans.write"});
    EXPECT_EQ(reports.size(), 2);
}

TEST_F(ServiceComponent, GivesWhatItHasToAServiceThatComesLater) {
    TLateComponent component;
    component.setObjectName("library");
    component.SetSecret("s3cret");
    component.SetScopes({"loans.write"});
    EXPECT_FALSE(component.Service());
    component.Take(TLateComponent::RegisteredClass(typeid(TLibraryService), "TLibraryService"));
    ASSERT_TRUE(component.Service());
    EXPECT_EQ(component.Service()->objectName(), "library");
    EXPECT_EQ(component.Service()->GetSecret(), "s3cret");
    EXPECT_EQ(component.Service()->Scopes(), QStringList{"loans.write"});
}

TEST_F(ServiceComponent, TellsWhatTheServiceHasOtherwise) {
    TLibraryServiceComponent component;
    EXPECT_TRUE(component.ChangesOfService().isEmpty());
    component.Service()->SetSecret("s");
    component.Service()->Scopes().clear();
    const auto changes = component.ChangesOfService();
    ASSERT_EQ(changes.size(), 2);
    EXPECT_EQ(changes[0].first, "Secret");
    EXPECT_EQ(changes[0].second.toString(), "s");
    EXPECT_EQ(changes[1].first, "Scopes");
    EXPECT_EQ(component.GetSecret(), "");
    component.SetSecret("s");
    component.SetScopes({});
    EXPECT_TRUE(component.ChangesOfService().isEmpty());
}

TEST(ServiceComponentClass, HasToBeRegistered) {
    EXPECT_THROW(TLibraryServiceComponent component, EZOComponentError);
}
