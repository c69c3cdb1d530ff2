#include "tests/hosts/designer/Roads.h"

#include "tests/hosts/designer/EditorUser.h"

#include <QStringList>

namespace {

const QString Explore = QStringLiteral("Explore service...");
const QString ChangeKey = QStringLiteral("API Key:");
const QString OfOperations = QStringLiteral("SearchMedia");

void OpenOptions(TEditorUser& AUser) {
    AUser.ChooseFromMenu(Explore);
    AUser.Driver().See(OfOperations);
    AUser.Driver().Click(QStringLiteral("Authentication options"));
    AUser.Driver().See(QStringLiteral("Service options"));
}

// ALink is what is clicked for it.
void EnterApiKey(TEditorUser& AUser, const QString& ALink, const QStringList& AKeys, const QString& AText) {
    AUser.Driver().Click(ALink);
    AUser.Driver().See(QStringLiteral("Please specify API Key"));
    AUser.Driver().Press(AKeys);
    AUser.Driver().Type(AText);
    AUser.Driver().Press({QStringLiteral("Return")});
    AUser.Driver().SeeNoMore(QStringLiteral("Please specify API Key"));
}

// The editor's commands are those of its form.
void PressInForm(TEditorUser& AUser, const QString& AKey) {
    AUser.Select();
    AUser.Driver().Press({AKey});
}

void Fill(TEditorUser& AUser) {
    TZOTourDriver& driver = AUser.Driver();
    driver.Step(QStringLiteral("A component from the widget box"));
    AUser.DropComponent(QStringLiteral("TLibraryService"), {60, 60});
    AUser.SeeComponent(true);
    AUser.SeeDirty(true);
    PressInForm(AUser, QStringLiteral("ctrl+s"));
    AUser.SeeDirty(false);

    driver.Step(QStringLiteral("Options typed in the explorer are the form's"));
    OpenOptions(AUser);
    EnterApiKey(AUser, ChangeKey, {QStringLiteral("ctrl+a")}, QStringLiteral("key-7"));
    AUser.SeeProperty(QStringLiteral("ApiKey"), QStringLiteral("key-7"));
    AUser.SeeDirty(true);
    EnterApiKey(AUser, ChangeKey, {QStringLiteral("ctrl+a"), QStringLiteral("Delete")}, {});
    AUser.SeeProperty(QStringLiteral("ApiKey"), {});
    AUser.ClickField(QStringLiteral("ClientIdEdit"));
    driver.Type(QStringLiteral("clent"));
    // The caret stays where it is while every letter goes through the form.
    driver.Press({QStringLiteral("Left"), QStringLiteral("Left"), QStringLiteral("Left")});
    driver.Type(QStringLiteral("i"));
    AUser.SeeProperty(QStringLiteral("ClientId"), QStringLiteral("client"));
    driver.See(QStringLiteral("Not configured"));
    AUser.CheckBox(QStringLiteral("loans.write"));

    driver.Step(QStringLiteral("What is typed in the property editor is seen in the explorer"));
    AUser.EditProperty(QStringLiteral("Secret"), QStringLiteral("s3cret"));
    AUser.SeeField(QStringLiteral("SecretEdit"), QStringLiteral("s3cret"));
    AUser.EditProperty(QStringLiteral("RedirectUrl"), QStringLiteral("http://127.0.0.1/here"));
    AUser.SeeField(QStringLiteral("RedirectUrlEdit"), QStringLiteral("http://127.0.0.1/here"));
    driver.SeeNoMore(QStringLiteral("Not configured"));
    driver.Picture(QStringLiteral("options"));

    driver.Step(QStringLiteral("The editor turns dark"));
    AUser.SetTheme(thDark);
    driver.Picture(QStringLiteral("options-dark"));
    AUser.SetTheme(thLight);

    driver.Step(QStringLiteral("Undo and redo"));
    PressInForm(AUser, QStringLiteral("ctrl+z"));
    AUser.SeeField(QStringLiteral("RedirectUrlEdit"), {});
    driver.See(QStringLiteral("Not configured"));
    driver.Press({QStringLiteral("ctrl+shift+z")});
    AUser.SeeField(QStringLiteral("RedirectUrlEdit"), QStringLiteral("http://127.0.0.1/here"));
    driver.Press({QStringLiteral("ctrl+s")});
    AUser.SeeDirty(false);
}

void Remove(TEditorUser& AUser) {
    TZOTourDriver& driver = AUser.Driver();
    driver.Step(QStringLiteral("A form that was saved"));
    OpenOptions(AUser);
    AUser.SeeField(QStringLiteral("ClientIdEdit"), QStringLiteral("client"));
    AUser.SeeField(QStringLiteral("SecretEdit"), QStringLiteral("s3cret"));

    driver.Step(QStringLiteral("Deleted while its pages are open"));
    PressInForm(AUser, QStringLiteral("Delete"));
    AUser.SeeComponent(false);
    driver.SeeNoMore(QStringLiteral("Service options"));
    driver.See(QStringLiteral("TClockService"));
    driver.SeeNoMore(QStringLiteral("libraryService"));

    driver.Step(QStringLiteral("The deletion undone"));
    driver.Press({QStringLiteral("ctrl+z")});
    AUser.SeeComponent(true);
    OpenOptions(AUser);
    AUser.SeeField(QStringLiteral("ClientIdEdit"), QStringLiteral("client"));

    driver.Step(QStringLiteral("An insertion undone while its pages are open"));
    AUser.DropComponent(QStringLiteral("TClockService"), {60, 160});
    driver.Press({QStringLiteral("ctrl+z")});
    driver.See(QStringLiteral("Service options"));

    driver.Step(QStringLiteral("The form closed"));
    PressInForm(AUser, QStringLiteral("ctrl+w"));
    driver.WaitFor(QStringLiteral("the form does not close"), [&] { return !ComponentOfForm(AUser.Core()); });
    driver.SeeNoMore(QStringLiteral("Service options"));
    driver.SeeNoMore(QStringLiteral("libraryService"));
    // An editor without a form offers a new one, a moment later.
    AUser.DismissDialog();
}

void DropDocument(TEditorUser& AUser) {
    TZOTourDriver& driver = AUser.Driver();
    driver.Step(QStringLiteral("A document of the user's is a component"));
    AUser.DropComponent(QStringLiteral("Pet store"), {60, 60});
    AUser.SeeComponent(true);
    AUser.SeeProperty(QStringLiteral("Document"), QStringLiteral("pets.yaml"));
    AUser.ChooseFromMenu(Explore);
    driver.See(QStringLiteral("listPets"));
    driver.Click(QStringLiteral("Authentication options"));
    driver.See(QStringLiteral("Service options"));
    EnterApiKey(AUser, QStringLiteral("Use API Key..."), {}, QStringLiteral("pet-key"));
    AUser.SeeProperty(QStringLiteral("ApiKey"), QStringLiteral("pet-key"));
    driver.Picture(QStringLiteral("document"));

    driver.Step(QStringLiteral("Another name"));
    AUser.EditProperty(QStringLiteral("objectName"), QStringLiteral("myPets"));
    driver.See(QStringLiteral("myPets"));
    PressInForm(AUser, QStringLiteral("ctrl+s"));
    AUser.SeeDirty(false);
}

void ReadDocument(TEditorUser& AUser) {
    TZOTourDriver& driver = AUser.Driver();
    driver.Step(QStringLiteral("The form read back"));
    AUser.SeeComponent(true);
    AUser.ChooseFromMenu(Explore);
    driver.See(QStringLiteral("listPets"));
    driver.See(QStringLiteral("myPets"));

    driver.Step(QStringLiteral("A document that is not there"));
    AUser.EditProperty(QStringLiteral("Document"), QStringLiteral("lost.yaml"));
    driver.See(QStringLiteral("listPets"));
    AUser.ChooseFromMenu(Explore);
    driver.See(QStringLiteral("There is no API document \"lost.yaml\"."));
    driver.Press({QStringLiteral("Return")});
    PressInForm(AUser, QStringLiteral("ctrl+z"));
    AUser.SeeProperty(QStringLiteral("Document"), QStringLiteral("pets.yaml"));
    AUser.ChooseFromMenu(Explore);
    driver.See(QStringLiteral("listPets"));
}

// Ends with the operations of the component open.
void Close(TEditorUser& AUser) {
    AUser.Driver().Step(QStringLiteral("The editor is closed with pages open"));
    AUser.ChooseFromMenu(Explore);
    AUser.Driver().See(OfOperations);
    AUser.Driver().Click(OfOperations, 2);
    AUser.Driver().See(QStringLiteral("Execute"));
}

} // namespace

void Roads::Walk(const QString& AName, TEditorUser& AUser) {
    const std::pair<QString, void (*)(TEditorUser&)> roads[] = {{QStringLiteral("fill"), Fill},
                                                                {QStringLiteral("remove"), Remove},
                                                                {QStringLiteral("close"), Close},
                                                                {QStringLiteral("document"), DropDocument},
                                                                {QStringLiteral("read"), ReadDocument}};
    for (const auto& [name, walk] : roads) {
        if (name == AName)
            return walk(AUser);
    }
    throw EZOTourError(QStringLiteral("There is no road %1").arg(AName));
}
