// Every operation of the samples, its request built from nothing and executed by keyboard alone in the real
// window on a display of its own; what the server got is what was shown.
#include "tests/hosts/KeyboardExplorer.h"

#include "samples/ClockService.h"
#include "samples/LibraryService.h"

#include <QFile>

#include <gtest/gtest.h>

#include <algorithm>
#include <mutex>
#include <optional>

namespace {

using U = TKeyboardUser;

struct TCase {
    const char* Operation;
    TPlaces Places;
    std::function<void(U&)> Fill;
    /// What must have been shown, and so sent; a file stands for itself.
    TValueTexts Values;
    bool IsDownload = false;
    bool Fails = false;
    const char* Variant = "";
};

void PrintTo(const TCase& ACase, std::ostream* AStream) { *AStream << ACase.Operation; }

QString Service(const TCase& ACase) {
    const QStringList clock = {"GetTime", "ListZones", "ListLeapYears", "CountDays", "ExplainInstant"};
    return clock.contains(QLatin1String(ACase.Operation)) ? QStringLiteral("TClockService")
                                                          : QStringLiteral("TLibraryService");
}

void SearchMedia(U& u) {
    u.Set("text", "the river");
    u.Pick("kind", 2, "film");
    u.Open("genres: list");
    u.FillList({"crime", "drama"});
    u.Pick("lendable", 1, "True");
    u.Set("minRating", "2.5");
    u.Set("addedSince", "2001-02-03T04:05:06+02:00");
    u.Set("page", "2");
    u.Set("pageSize", "5");
}

void FillFilm(U& u) {
    u.Open("medium: ");
    u.Go("> film");
    u.Press("Return");
    u.Set("title", "The Quiet Harbour");
    u.Set("year", "1999");
    u.Pick("genre", 4, "fantasy");
    u.Set("rating", "4.5");
    u.Pick("lendable", 2, "False");
    u.Open("copies: map");
    u.Go("key: ");
    u.Enter("Harbour");
    u.Press("Up");
    u.Set("Harbour", "3");
    u.Set("notes", R"({"shelf":[1,2.50,null],"by":"Ann"})");
    u.Set("director", "A. Night");
    u.Set("minutes", "101");
    u.Open("subtitles: list");
    u.FillList({"en", "pt"});
}

void FillRecording(U& u) {
    u.Set("id", "4");
    u.Open("medium: ");
    u.Go("> recording");
    u.Press("Return");
    u.Set("title", "Dawn");
    u.Set("artist", "The Letters");
    u.Open("tracks: list");
    u.Press("Down");
    u.ChooseFromMenu("Insert After");
    u.Set("title", "One");
    u.Set("seconds", "61");
    // Behind the closing row of the first track comes the second.
    u.Go("}");
    u.Press("Insert");
    u.Go("object");
    u.ChooseFromMenu("Insert After");
    u.Set("title", "Two");
}

void UploadCover(U& u) {
    const QString path = u.FilePath("cover.svg");
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"8\" height=\"8\"/>\n");
    file.close();
    u.Set("id", "1");
    u.Go("cover: ");
    u.ChooseFromMenu("Choose file...");
    u.NameFile(path);
    u.See("cover.svg");
    u.Set("caption", "Front & back");
    u.Set("front", "True");
}

void RegisterReader(U& u) {
    u.Set("name", "Ann Night");
    u.Set("email", "ann@example.org");
    u.Set("born", "1984-06-30");
    u.Pick("newsletter", 2, "False");
    u.Open("interests: list");
    u.FillList({"poetry", "travel"});
}

void LendUntil(U& u) {
    u.Set("card", "R-1001");
    u.Pick("branch", 3, "Old Town");
    u.Open("loan: object");
    u.Set("mediumId", "1");
    u.Open("terms: union");
    u.Go("type: ");
    u.Press("Insert");
    u.Go("> until");
    u.Press("Return");
    u.Set("value", "2031-01-31");
}

void LendOpenEnded(U& u) {
    u.Set("card", "R-1002");
    u.Open("loan: object");
    u.Set("mediumId", "5");
    u.Open("terms: union");
    u.Go("type: ");
    u.Press("Insert");
    u.Go("> openEnded");
    u.Press("Return");
}

const auto Texts = TKeyboardUser::Texts;

const TCase Cases[] = {
    {"SearchMedia",
     {"/media"},
     SearchMedia,
     {{"text", "the river"},
      {"kind", "film"},
      {"genres/0", "crime"},
      {"genres/1", "drama"},
      {"lendable", "true"},
      {"minRating", "2.5"},
      {"addedSince", "2001-02-03T02:05:06Z"},
      {"page", "2"},
      {"pageSize", "5"}}},
    {"GetMedium", {"/media/{id}"}, Texts({{"id", "3"}}), {{"id", "3"}}},
    {"AddMedium",
     {"/media", {{"medium", TPlaces::Body}}},
     FillFilm,
     {{"medium/kind", "film"},
      {"medium/title", "The Quiet Harbour"},
      {"medium/year", "1999"},
      {"medium/genre", "fantasy"},
      {"medium/rating", "4.5"},
      {"medium/lendable", "false"},
      {"medium/copies/Harbour", "3"},
      {"medium/notes", R"({"shelf":[1,2.5,null],"by":"Ann"})"},
      {"medium/director", "A. Night"},
      {"medium/minutes", "101"},
      {"medium/subtitles/0", "en"},
      {"medium/subtitles/1", "pt"}}},
    {"ReplaceMedium",
     {"/media/{id}", {{"medium", TPlaces::Body}}},
     FillRecording,
     {{"id", "4"},
      {"medium/kind", "recording"},
      {"medium/title", "Dawn"},
      {"medium/artist", "The Letters"},
      {"medium/tracks/0/title", "One"},
      {"medium/tracks/0/seconds", "61"},
      {"medium/tracks/1/title", "Two"}}},
    {"AnnotateMedium",
     {"/media/{id}/notes", {{"notes", TPlaces::Body}}},
     Texts({{"id", "5"}, {"notes", R"([{"a":"b"},2])"}}),
     {{"id", "5"}, {"notes", R"([{"a":"b"},2])"}}},
    {"RemoveMedium", {"/media/{id}"}, Texts({{"id", "6"}}), {{"id", "6"}}},
    {"CountMedia",
     {"/media-count"},
     [](U& u) {
         u.Pick("by", 3, "year");
         u.Open("filter: object");
         u.Set("kind", "book");
         u.Set("genre", "crime");
     },
     {{"by", "year"}, {"filter/kind", "book"}, {"filter/genre", "crime"}}},
    {"UploadCover",
     {"/media/{id}/cover", {{"cover", TPlaces::Part}, {"caption", TPlaces::Part}, {"front", TPlaces::Part}}},
     UploadCover,
     {{"id", "1"}, {"caption", "Front & back"}, {"front", "true"}}},
    {"DownloadCover", {"/media/{id}/cover"}, Texts({{"id", "1"}}), {{"id", "1"}}, true},
    {"ExportCatalogue",
     {"/export.csv", {}, {}, "columns"},
     [](U& u) {
         u.Set("kind", "film");
         u.Open("columns: list");
         u.FillList({"title", "year"});
     },
     {{"kind", "film"}, {"columns/0", "title"}, {"columns/1", "year"}},
     true},
    {"ListAuthors",
     {"/authors"},
     Texts({{"country", "Portugal"}, {"bornAfter", "1950-01-01"}, {"page", "1"}, {"pageSize", "7"}}),
     {{"country", "Portugal"}, {"bornAfter", "1950-01-01"}, {"page", "1"}, {"pageSize", "7"}}},
    {"GetAuthor", {"/authors/{id}"}, Texts({{"id", "7"}}), {{"id", "7"}}},
    {"RegisterReader",
     {"/readers"},
     RegisterReader,
     {{"name", "Ann Night"},
      {"email", "ann@example.org"},
      {"born", "1984-06-30"},
      {"newsletter", "false"},
      {"interests/0", "poetry"},
      {"interests/1", "travel"}}},
    {"LendMedium",
     {"/loans",
      {{"card", TPlaces::Header}, {"branch", TPlaces::Cookie}, {"loan", TPlaces::Body}},
      {{"card", "Library-Card"}}},
     LendUntil,
     {{"card", "R-1001"},
      {"branch", "Old Town"},
      {"loan/mediumId", "1"},
      {"loan/terms/type", "until"},
      {"loan/terms/value", "2031-01-31"}}},
    {"LendMedium",
     {"/loans", {{"card", TPlaces::Header}, {"loan", TPlaces::Body}}, {{"card", "Library-Card"}}},
     LendOpenEnded,
     {{"card", "R-1002"}, {"loan/mediumId", "5"}, {"loan/terms/type", "openEnded"}},
     false,
     false,
     "OpenEnded"},
    {"ListLoans",
     {"/loans", {{"card", TPlaces::Header}}, {{"card", "Library-Card"}}},
     Texts({{"card", "R-1001"}, {"open", "True"}}),
     {{"card", "R-1001"}, {"open", "true"}}},
    {"ReturnMedium", {"/loans/{id}/return"}, Texts({{"id", "1"}}), {{"id", "1"}}},
    {"GetOpeningHours",
     {"/branches/{branch}/hours"},
     [](U& u) { u.Pick("branch", 3, "Old Town"); },
     {{"branch", "Old Town"}}},
    {"ListCheckouts", {"/checkouts"}, [](U&) {}, {}},
    {"PrintAnnualReport", {"/reports/{year}"}, Texts({{"year", "2024"}}), {{"year", "2024"}}, false, true},
    {"GetTime", {"/now"}, Texts({{"zone", "Europe/Lisbon"}}), {{"zone", "Europe/Lisbon"}}},
    {"ListZones", {"/zones"}, Texts({{"contains", "Lis"}}), {{"contains", "Lis"}}},
    {"ListLeapYears",
     {"/leap-years"},
     Texts({{"from", "1990"}, {"to", "2010"}}),
     {{"from", "1990"}, {"to", "2010"}}},
    {"CountDays",
     {"/days"},
     Texts({{"from", "2024-02-28"}, {"to", "2024-03-01"}}),
     {{"from", "2024-02-28"}, {"to", "2024-03-01"}}},
    {"ExplainInstant",
     {"/instant"},
     Texts({{"at", "2024-02-29T12:30:00+01:00"}}),
     {{"at", "2024-02-29T11:30:00Z"}}},
};

/// The explorer over a server of the test's own.
class KeyboardRequest : public testing::TestWithParam<TCase> {
protected:
    KeyboardRequest() {
        TZORestServiceClass::Register(FLibrary.get());
        TZORestServiceClass::Register(FClock.get());
    }
    ~KeyboardRequest() override {
        TZORestServiceClass::Unregister(FClock.get());
        TZORestServiceClass::Unregister(FLibrary.get());
    }

    std::optional<TSampleRequest> Got() {
        const std::lock_guard guard(FLock);
        return FGot;
    }

private:
    std::mutex FLock;
    std::optional<TSampleRequest> FGot;
    TSampleServer FServer{[this](const TSampleRequest& ARequest) {
        const std::lock_guard guard(FLock);
        FGot = ARequest;
    }};
    std::unique_ptr<TZORestServiceClass> FLibrary =
        TLibraryService::DeclareClass(FServer.LibraryUrl(), TSampleServer::ApiKey());
    std::unique_ptr<TZORestServiceClass> FClock = TClockService::DeclareClass(FServer.ClockUrl());
};

} // namespace

TEST_P(KeyboardRequest, ReachesTheServerAsItWasShown) {
    const TCase& operation = GetParam();
    TKeyboardExplorer explorer;
    const std::string problem = explorer.Run(
        {Service(operation), operation.Operation, operation.Fill, operation.IsDownload, [&](U& u) {
             u.Driver().WaitFor(QStringLiteral("nothing reaches the server"), [&] { return bool(Got()); });
         }});
    ASSERT_EQ(problem, "");
    const TValueTexts& shown = explorer.Shown();
    TValueTexts expected = operation.Values;
    if (operation.Places.Properties.count("cover"))
        expected["cover"] = explorer.FilePath(QStringLiteral("cover.svg")).toStdString();
    EXPECT_EQ(shown, expected);
    EXPECT_EQ(SentValues(*Got(), operation.Places, shown), shown);
    EXPECT_EQ(Got()->Status >= 400, operation.Fails) << Got()->Status;
}

TEST(KeyboardRequests, LeaveNoOperationOut) {
    for (const auto& serviceClass :
         {TLibraryService::DeclareClass(QString(), QString()), TClockService::DeclareClass(QString())}) {
        for (const TZORestService::TOper& operation : serviceClass->TypeInfo()->Opers())
            EXPECT_TRUE(std::any_of(std::begin(Cases), std::end(Cases), [&](const TCase& ACase) {
                return QLatin1String(ACase.Operation) == operation.Name;
            })) << operation.Name.toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(All, KeyboardRequest, testing::ValuesIn(Cases), [](const auto& AInfo) {
    return std::string(AInfo.param.Operation) + AInfo.param.Variant;
});
