#include "hosts/tour/TourRoad_p.h"

#include "hosts/tour/Screen.h"
#include "hosts/tour/TourDriver.h"

#include <QFile>

namespace {

const QString View = QStringLiteral("TZORestView");

void WriteFile(const QString& APath, const QByteArray& AContent) {
    QFile file(APath);
    if (!file.open(QIODevice::WriteOnly) || file.write(AContent) != AContent.size())
        throw EZOTourError(QStringLiteral("%1 cannot be written").arg(APath));
}

/// From a list page, by keyboard: search, go to the row, open it.
void Open(TZOTourDriver& D, const QString& AName) {
    D.Type(AName);
    D.See(AName);
    D.TabTo(QStringLiteral("TZOSearchList"));
    D.PressUntilAt(QStringLiteral("Down"), AName);
    D.Press({QStringLiteral("Return")});
}

/// Opens an operation from the operation list and offers its request's properties.
void OpenRequest(TZOTourDriver& D, const QString& AOperation) {
    Open(D, AOperation);
    D.See(QStringLiteral("Request"));
    D.TabTo(View);
    D.Press({QStringLiteral("ctrl+Home"), QStringLiteral("Insert")});
}

/// Types a value into the row whose text contains AKey.
void Fill(TZOTourDriver& D, const QString& AKey, const QString& AValue) {
    D.PressUntilAt(QStringLiteral("Down"), AKey);
    D.Type(AValue);
    D.Press({QStringLiteral("Return")});
    D.See(AKey + AValue);
}

void BackToOperations(TZOTourDriver& D) {
    D.Click(QStringLiteral("TLibraryService"));
    D.See(QStringLiteral("Operations"));
}

void SearchAndOpen(TZOTourDriver& D) {
    D.Step(QStringLiteral("The services"));
    D.See(QStringLiteral("ZO Bridgework Service Classes"));
    D.WaitFor(QStringLiteral("the window does not get the focus"),
              [] { return Screen::Focus() != QStringLiteral("nothing"); });
    D.Picture(QStringLiteral("services"));
    D.Step(QStringLiteral("Search a service and open it by keyboard"));
    D.Type(QStringLiteral("libr"));
    D.SeeNoMore(QStringLiteral("TClockService"));
    D.Picture(QStringLiteral("search"));
    D.TabTo(QStringLiteral("TZOSearchList"));
    D.PressUntilAt(QStringLiteral("Down"), QStringLiteral("TLibraryService"));
    D.Press({QStringLiteral("Return")});
    D.See(QStringLiteral("Operations"));
    D.See(QStringLiteral("SearchMedia"));
    D.Picture(QStringLiteral("operations"));
}

void FirstRequest(TZOTourDriver& D) {
    D.Step(QStringLiteral("Fill in a request by keyboard, execute it, read the answer"));
    OpenRequest(D, QStringLiteral("GetMedium"));
    D.Picture(QStringLiteral("request"));
    Fill(D, QStringLiteral("id: "), QStringLiteral("1"));
    D.Click(QStringLiteral("Execute"));
    D.See(QStringLiteral("Responce"));
    D.See(QStringLiteral("title: "));
    D.Picture(QStringLiteral("response"));
    D.Step(QStringLiteral("What went over the wire, and a text in the answer"));
    D.Click(QStringLiteral("details"));
    D.See(QStringLiteral("hide details"));
    D.Picture(QStringLiteral("details"));
    D.Click(QStringLiteral("hide details"));
    D.Press({QStringLiteral("ctrl+f")});
    D.Type(QStringLiteral("harb"));
    D.See(QStringLiteral(" of "));
    D.Picture(QStringLiteral("find"));
    D.Press({QStringLiteral("Escape")});
    BackToOperations(D);
}

void Choices(TZOTourDriver& D) {
    D.Step(QStringLiteral("Choose a subtype"));
    OpenRequest(D, QStringLiteral("AddMedium"));
    D.PressUntilAt(QStringLiteral("Down"), QStringLiteral("medium: "));
    D.Press({QStringLiteral("Insert")});
    D.PressUntilAt(QStringLiteral("Down"), QStringLiteral("kind: "));
    D.Press({QStringLiteral("Insert")});
    D.See(QStringLiteral("> recording"));
    D.Picture(QStringLiteral("subtypes"));
    D.PressUntilAt(QStringLiteral("Down"), QStringLiteral("> film"));
    D.Press({QStringLiteral("Return")});
    D.See(QStringLiteral("director: "));
    Fill(D, QStringLiteral("title: "), QStringLiteral("The Quiet Harbour"));
    D.Picture(QStringLiteral("film"));
    D.Click(QStringLiteral("Execute"));
    D.See(QStringLiteral("addedAt: "));
    BackToOperations(D);
}

void Files(TZOTourDriver& D) {
    D.Step(QStringLiteral("Upload a file"));
    const QString cover = D.FilePath(QStringLiteral("cover.svg"));
    WriteFile(cover, "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"8\" height=\"8\"/>\n");
    OpenRequest(D, QStringLiteral("UploadCover"));
    Fill(D, QStringLiteral("id: "), QStringLiteral("1"));
    D.TabTo(View);
    D.Press({QStringLiteral("ctrl+Home"), QStringLiteral("Insert")});
    D.Click(QStringLiteral("cover: "), 2);
    D.WaitFor(QStringLiteral("no file dialog opens"), [] {
        return Screen::Focus().startsWith(QStringLiteral("QLineEdit")) &&
               Screen::Shows(QStringLiteral("Cancel"));
    });
    D.Type(cover);
    D.Press({QStringLiteral("Return")});
    D.See(QStringLiteral("cover.svg"));
    D.Click(QStringLiteral("Execute"));
    D.See(QStringLiteral("sha256: "));
    D.Picture(QStringLiteral("upload"));
    BackToOperations(D);

    D.Step(QStringLiteral("Download to a file"));
    const QString table = D.FilePath(QStringLiteral("catalogue.csv"));
    QFile::remove(table);
    Open(D, QStringLiteral("ExportCatalogue"));
    D.See(QStringLiteral("Download to file"));
    D.Click(QStringLiteral("Execute"));
    D.WaitFor(QStringLiteral("no file dialog opens"), [] {
        return Screen::Focus().startsWith(QStringLiteral("QLineEdit")) &&
               Screen::Shows(QStringLiteral("Cancel"));
    });
    D.Type(table);
    D.Press({QStringLiteral("Return")});
    D.See(QStringLiteral("File downloaded to:"));
    D.Picture(QStringLiteral("download"));
    BackToOperations(D);
}

void Outcomes(TZOTourDriver& D) {
    D.Step(QStringLiteral("An operation without response data"));
    OpenRequest(D, QStringLiteral("RemoveMedium"));
    Fill(D, QStringLiteral("id: "), QStringLiteral("2"));
    D.Click(QStringLiteral("Execute"));
    D.See(QStringLiteral("No response data"));
    D.Picture(QStringLiteral("no-data"));
    BackToOperations(D);

    D.Step(QStringLiteral("A failure"));
    OpenRequest(D, QStringLiteral("PrintAnnualReport"));
    Fill(D, QStringLiteral("year: "), QStringLiteral("2024"));
    D.Click(QStringLiteral("Execute"));
    D.See(QStringLiteral("EZOHttpStatusError"));
    D.Picture(QStringLiteral("failure"));
    BackToOperations(D);

    D.Step(QStringLiteral("An answer of 100,000 records"));
    Open(D, QStringLiteral("ListCheckouts"));
    D.See(QStringLiteral("Request"));
    D.Click(QStringLiteral("Execute"));
    D.See(QStringLiteral("mediumId: "));
    D.Picture(QStringLiteral("many-records"));
    D.Click(QStringLiteral("mediumId: "));
    D.Press({QStringLiteral("ctrl+End")});
    D.See(QStringLiteral("]"));
    D.Picture(QStringLiteral("last-record"));
    BackToOperations(D);
}

void Options(TZOTourDriver& D) {
    D.Step(QStringLiteral("Authentication options"));
    D.Click(QStringLiteral("Authentication options"));
    D.See(QStringLiteral("Service options"));
    D.See(QStringLiteral("API Key:"));
    D.Picture(QStringLiteral("options"));
    BackToOperations(D);
}

void Echo(TZOTourDriver& D) {
    if (qEnvironmentVariableIsEmpty("ZO_SAMPLE_HTTPBIN"))
        return;
    D.Step(QStringLiteral("A server that is not ours"));
    D.Click(QStringLiteral("Services"));
    D.See(QStringLiteral("ZO Bridgework Service Classes"));
    Open(D, QStringLiteral("THttpbinService"));
    D.See(QStringLiteral("Operations"));
    D.Picture(QStringLiteral("httpbin"));
    OpenRequest(D, QStringLiteral("Get"));
    Fill(D, QStringLiteral("text: "), QStringLiteral("tea & biscuits"));
    D.Picture(QStringLiteral("httpbin-request"));
    D.Click(QStringLiteral("Execute"));
    // The server says back what reached it.
    D.See(QStringLiteral("args: {"));
    D.See(QStringLiteral("User-Agent: "));
    D.Picture(QStringLiteral("httpbin-response"));
    D.Step(QStringLiteral("A request that lasts is cancelled"));
    D.Click(QStringLiteral("THttpbinService"));
    D.See(QStringLiteral("Operations"));
    OpenRequest(D, QStringLiteral("Delay"));
    Fill(D, QStringLiteral("seconds: "), QStringLiteral("10"));
    D.Press({QStringLiteral("ctrl+Return")});
    D.See(QStringLiteral("Cancel"));
    D.See(QStringLiteral(" received"));
    D.Picture(QStringLiteral("lasting"));
    D.Press({QStringLiteral("Escape")});
    D.See(QStringLiteral("EZOCancelledError"));
    D.Picture(QStringLiteral("cancelled"));
    D.Click(QStringLiteral("Services"));
    Open(D, QStringLiteral("TLibraryService"));
    D.See(QStringLiteral("Operations"));
}

void Dark(TZOTourDriver& D) {
    D.Step(QStringLiteral("The dark theme, switched while open"));
    OpenRequest(D, QStringLiteral("GetMedium"));
    Fill(D, QStringLiteral("id: "), QStringLiteral("3"));
    D.Click(QStringLiteral("Execute"));
    D.See(QStringLiteral("title: "));
    D.Press({QStringLiteral("alt+v"), QStringLiteral("t"), QStringLiteral("d")});
    D.Picture(QStringLiteral("response-dark"));
    BackToOperations(D);
    D.Picture(QStringLiteral("operations-dark"));
    D.Click(QStringLiteral("Authentication options"));
    D.See(QStringLiteral("Service options"));
    D.Picture(QStringLiteral("options-dark"));
    D.Click(QStringLiteral("Services"));
    D.See(QStringLiteral("ZO Bridgework Service Classes"));
    D.Picture(QStringLiteral("services-dark"));
}

} // namespace

void TourRoad::Walk(TZOTourDriver& ADriver) {
    SearchAndOpen(ADriver);
    FirstRequest(ADriver);
    Choices(ADriver);
    Files(ADriver);
    Outcomes(ADriver);
    Options(ADriver);
    Echo(ADriver);
    Dark(ADriver);
}
