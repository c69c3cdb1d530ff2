#include "tests/samples/SampleClient.h"

#include <QCryptographicHash>
#include <QImage>

#include <set>

namespace {

using LibraryServer = TSampleServerTest;

const TJson NewBook = {{"kind", "book"},
                       {"title", "The Tests of Trieste"},
                       {"year", 2021},
                       {"genre", "science"},
                       {"rating", 4.5},
                       {"lendable", true},
                       {"copies", {{"Harbour", 1}}},
                       {"notes", {{"big", 12345678901234567}, {"empty", nullptr}}},
                       {"isbn", "9780306406157"},
                       {"pages", 321},
                       {"authorIds", {1, 2}}};

TJson Changed(TJson AValue, const std::string& AName, const TJson& ANew) {
    AValue[AName] = ANew;
    return AValue;
}

TEST_F(LibraryServer, RefusesAMissingOrWrongKey) {
    httplib::Client client("127.0.0.1", Server.Port());
    for (const httplib::Headers& headers : {httplib::Headers{}, httplib::Headers{{"X-Api-Key", "guess"}}}) {
        const auto [status, body] = Read(client.Get("/library/v1/media", headers));
        EXPECT_EQ(status, 401);
        EXPECT_EQ(body["message"], "The header X-Api-Key is missing or holds no valid key.");
    }
}

TEST_F(LibraryServer, AnswersUnknownPathsWithAMessage) {
    const auto [status, body] = Get("/shelves");
    EXPECT_EQ(status, 404);
    EXPECT_EQ(body["message"], "Nothing answers GET /library/v1/shelves.");
}

TEST_F(LibraryServer, SearchesPageByPage) {
    const auto [status, first] = Get("/media?page=1&pageSize=30");
    EXPECT_EQ(status, 200);
    EXPECT_EQ(first["items"].size(), 30u);
    EXPECT_EQ(first["items"][0]["id"], 1);
    EXPECT_EQ(first["total"], 480);
    EXPECT_EQ(first["hasMore"], true);
    ExpectDeclared("SearchMedia", first);
    const TJson last = Get("/media?page=16&pageSize=30").second;
    EXPECT_EQ(last["items"][29]["id"], 480);
    EXPECT_EQ(last["hasMore"], false);
    EXPECT_EQ(Get("/media?page=17&pageSize=30").second["items"].size(), 0u);
}

TEST_F(LibraryServer, SearchesByEachCriterion) {
    const TJson found =
        Get("/media?kind=film&genres=crime&genres=poetry&lendable=true&minRating=3&pageSize=100"
            "&addedSince=2010-01-01T00:00:00Z&text=THE")
            .second;
    ASSERT_GT(found["items"].size(), 0u);
    for (const TJson& medium : found["items"]) {
        EXPECT_EQ(medium["kind"], "film");
        EXPECT_TRUE(medium["genre"] == "crime" || medium["genre"] == "poetry");
        EXPECT_EQ(medium["lendable"], true);
        EXPECT_GE(medium["rating"], 3.0);
        EXPECT_GT(medium["addedAt"], "2010");
        EXPECT_NE((" " + medium["title"].get<std::string>()).find("he "), std::string::npos);
    }
    EXPECT_EQ(Get("/media?text=no+such+title").second["total"], 0);
}

struct TBadRequest {
    std::string Path;
    std::string Field;
};

TEST_F(LibraryServer, NamesTheBadParameter) {
    const TBadRequest cases[] = {{"/media?page=0", "page"},
                                 {"/media?page=first", "page"},
                                 {"/media?pageSize=101", "pageSize"},
                                 {"/media?kind=statue", "kind"},
                                 {"/media?genres=crime&genres=tax", "genres"},
                                 {"/media?lendable=maybe", "lendable"},
                                 {"/media?minRating=5.1", "minRating"},
                                 {"/media?addedSince=2023-02-29T00:00:00Z", "addedSince"},
                                 {"/media/first", "id"},
                                 {"/media/0", "id"},
                                 {"/media-count?by=weight", "by"},
                                 {"/media-count?filter%5Bkind%5D=statue", "filter.kind"},
                                 {"/authors?bornAfter=1950", "bornAfter"},
                                 {"/export.csv?columns=id%7Cweight", "columns"},
                                 {"/branches/Moon/hours", "branch"},
                                 {"/loans", "card"}};
    for (const TBadRequest& bad : cases) {
        const auto [status, body] = Get(bad.Path);
        EXPECT_EQ(status, 400) << bad.Path;
        EXPECT_EQ(body["field"], bad.Field) << bad.Path;
        EXPECT_EQ(body["message"].get<std::string>().rfind("Field \"" + bad.Field + "\" ", 0), 0u)
            << body["message"];
    }
}

TEST_F(LibraryServer, AnswersUnknownIdsWith404) {
    for (const char* path : {"/media/481", "/media/9223372036854775807", "/media/999/cover", "/authors/61"})
        EXPECT_EQ(Get(path).first, 404) << path;
    EXPECT_EQ(Post("/loans/999/return", {}).first, 404);
    EXPECT_EQ(Get("/loans", {{"Library-Card", "R-1"}}).first, 404);
}

TEST_F(LibraryServer, HoldsMediaAsDeclared) {
    for (int id = 1; id <= 480; ++id) {
        const auto [status, medium] = Get("/media/" + std::to_string(id));
        ASSERT_EQ(status, 200);
        ExpectDeclared("GetMedium", medium);
    }
}

TEST_F(LibraryServer, AddsReplacesAndRemovesAMedium) {
    const auto [status, added] = Post("/media", NewBook);
    EXPECT_EQ(status, 201) << added;
    EXPECT_EQ(added["id"], 481);
    TJson sent = added;
    sent.erase("id");
    sent.erase("addedAt");
    EXPECT_EQ(sent, NewBook);
    ExpectDeclared("AddMedium", added);

    EXPECT_EQ(Post("/media", NewBook).first, 409);
    TJson changed = Changed(added, "pages", 322);
    changed["title"] = "The Second Edition";
    EXPECT_EQ(Put("/media/481", changed), std::pair(200, changed));
    EXPECT_EQ(Get("/media/481").second, changed);
    EXPECT_EQ(Put("/media/481", {{"kind", "film"}, {"title", "No Book"}}).first, 409);

    const auto removed = Client().Delete("/library/v1/media/481");
    EXPECT_EQ(removed->status, 204);
    EXPECT_EQ(removed->body, "");
    EXPECT_EQ(Get("/media/481").first, 404);
}

TEST_F(LibraryServer, NamesTheBadFieldOfAMedium) {
    const std::pair<TJson, std::string> cases[] = {
        {TJson::array(), "body"},
        {Changed(NewBook, "kind", nullptr), "body.kind"},
        {Changed(NewBook, "kind", "statue"), "body.kind"},
        {Changed(NewBook, "title", ""), "body.title"},
        {Changed(NewBook, "title", 7), "body.title"},
        {Changed(NewBook, "year", 1449), "body.year"},
        {Changed(NewBook, "year", 2020.5), "body.year"},
        {Changed(NewBook, "genre", "tax"), "body.genre"},
        {Changed(NewBook, "rating", 5.5), "body.rating"},
        {Changed(NewBook, "lendable", 1), "body.lendable"},
        {Changed(NewBook, "copies", {{"Harbour", -1}}), "body.copies.Harbour"},
        {Changed(NewBook, "isbn", "9780306406158"), "body.isbn"},
        {Changed(NewBook, "pages", 0), "body.pages"},
        {Changed(NewBook, "authorIds", {1, "2"}), "body.authorIds[1]"},
        {Changed(NewBook, "authorIds", {61}), "body.authorIds"},
        {Changed(NewBook, "minutes", 90), "body.minutes"},
        {{{"kind", "recording"}, {"title", "X"}, {"tracks", {{{"seconds", 1}}}}}, "body.tracks[0].title"},
    };
    for (const auto& [body, field] : cases) {
        const auto [status, answer] = Post("/media", body);
        EXPECT_EQ(status, 400) << body;
        EXPECT_EQ(answer["field"], field) << body;
    }
    const auto broken = Client().Post("/library/v1/media", "{\"kind\":", "application/json");
    EXPECT_EQ(Read(broken).second["message"], "Field \"body\" is no valid JSON.");
    EXPECT_EQ(Get("/media").second["total"], 480);
}

TEST_F(LibraryServer, KeepsNotesOfAnyKind) {
    for (const TJson& notes :
         {TJson("text"), TJson(12.5), TJson(nullptr), TJson(true), TJson{1, "two", {{"three", 3}}}}) {
        EXPECT_EQ(Put("/media/3/notes", notes), std::pair(200, notes));
        EXPECT_EQ(Get("/media/3").second["notes"], notes);
    }
}

TEST_F(LibraryServer, CountsByGroupAndFilter) {
    EXPECT_EQ(Get("/media-count?by=kind").second, TJson({{"book", 240}, {"film", 120}, {"recording", 120}}));
    const TJson crime = Get("/media-count?by=kind&filter%5Bgenre%5D=crime&filter%5Bkind%5D=film").second;
    EXPECT_EQ(crime.size(), 1u);
    EXPECT_LT(crime["film"], 120);
    ExpectDeclared("CountMedia", crime);
}

TEST_F(LibraryServer, TakesACoverByteForByte) {
    std::string content;
    for (unsigned i = 0; i < 300'000; ++i)
        content += static_cast<char>(i * 7919 >> 3);
    content += std::string("\r\n--\r\n\0--boundary--\r\n", 22);
    const httplib::MultipartFormDataItems parts = {{"cover", content, "front \"page\".png", "image/x-test"},
                                                   {"caption", "Grüße", "", ""},
                                                   {"front", "true", "", ""}};
    const auto [status, cover] = Read(Client().Post("/library/v1/media/5/cover", parts));
    EXPECT_EQ(status, 201) << cover;
    EXPECT_EQ(cover["size"], content.size());
    EXPECT_EQ(cover["caption"], "Grüße");
    EXPECT_EQ(cover["front"], true);
    const auto hash =
        QCryptographicHash::hash(QByteArray::fromStdString(content), QCryptographicHash::Sha256);
    EXPECT_EQ(cover["sha256"], hash.toHex().toStdString());
    ExpectDeclared("UploadCover", cover);

    const auto back = Client().Get("/library/v1/media/5/cover");
    EXPECT_EQ(back->body, content);
    EXPECT_EQ(back->get_header_value("Content-Type"), "image/x-test");
}

TEST_F(LibraryServer, RefusesAnUploadWithoutAFile) {
    const auto [status, body] = Read(Client().Post(
        "/library/v1/media/5/cover", httplib::MultipartFormDataItems{{"caption", "x", "", ""}}));
    EXPECT_EQ(status, 400);
    EXPECT_EQ(body["message"], "Field \"cover\" is missing.");
}

TEST_F(LibraryServer, TakesAnEmptyCover) {
    const auto [status, cover] =
        Read(Client().Post("/library/v1/media/5/cover",
                           httplib::MultipartFormDataItems{{"cover", "", "empty.bin", "image/png"}}));
    EXPECT_EQ(status, 201);
    EXPECT_EQ(cover["size"], 0);
    const auto back = Client().Get("/library/v1/media/5/cover");
    EXPECT_EQ(back->status, 200);
    EXPECT_EQ(back->body, "");
}

TEST_F(LibraryServer, PaintsACoverWhereNoneWasSent) {
    const auto cover = Client().Get("/library/v1/media/1/cover");
    EXPECT_EQ(cover->get_header_value("Content-Type"), "image/png");
    EXPECT_NE(cover->body, Client().Get("/library/v1/media/2/cover")->body);
    QImage image;
    ASSERT_TRUE(image.loadFromData(QByteArray::fromStdString(cover->body), "PNG"));
    EXPECT_EQ(image.size(), QSize(120, 180));
}

TEST_F(LibraryServer, ExportsTheChosenColumns) {
    const auto all = Client().Get("/library/v1/export.csv");
    EXPECT_EQ(all->get_header_value("Content-Type"), "text/csv; charset=utf-8");
    EXPECT_EQ(all->body.rfind("id,kind,title,year,genre,rating\r\n", 0), 0u);
    EXPECT_EQ(std::count(all->body.begin(), all->body.end(), '\n'), 481);
    const auto two = Client().Get("/library/v1/export.csv?columns=kind%7Cid&kind=film");
    EXPECT_EQ(two->body.rfind("kind,id\r\nfilm,3\r\nfilm,7\r\n", 0), 0u);
}

TEST_F(LibraryServer, QuotesCellsOfTheExport) {
    EXPECT_EQ(Post("/media", {{"kind", "film"}, {"title", "Say \"Yes\", \"No\""}}).first, 201);
    const auto table = Client().Get("/library/v1/export.csv?columns=id%7Ctitle%7Cyear");
    EXPECT_NE(table->body.find("\r\n481,\"Say \"\"Yes\"\", \"\"No\"\"\",\r\n"), std::string::npos);
}

TEST_F(LibraryServer, ListsAuthorsByName) {
    const auto [status, page] = Get("/authors?pageSize=100&bornAfter=1930-01-01");
    EXPECT_EQ(status, 200);
    ASSERT_GT(page["items"].size(), 1u);
    for (std::size_t i = 1; i < page["items"].size(); ++i)
        EXPECT_LE(page["items"][i - 1]["name"], page["items"][i]["name"]);
    for (const TJson& author : page["items"])
        EXPECT_GT(author["born"], "1930-01-01");
    ExpectDeclared("ListAuthors", page);
    ExpectDeclared("GetAuthor", Get("/authors/7").second);
    EXPECT_EQ(Get("/authors?country=Japan").second["items"][0]["country"], "Japan");
}

TEST_F(LibraryServer, RegistersAReader) {
    const httplib::Params form = {{"name", "Änne Beispiel"}, {"email", "aenne@library.example"},
                                  {"born", "1984-06-30"},    {"newsletter", "true"},
                                  {"interests", "crime"},    {"interests", "poetry"}};
    const auto [status, reader] = PostForm("/readers", form);
    EXPECT_EQ(status, 201);
    EXPECT_EQ(reader, TJson({{"card", "R-1025"},
                             {"name", "Änne Beispiel"},
                             {"email", "aenne@library.example"},
                             {"born", "1984-06-30"},
                             {"newsletter", true},
                             {"interests", {"crime", "poetry"}}}));
    ExpectDeclared("RegisterReader", reader);
    EXPECT_EQ(PostForm("/readers", form).first, 409);
    EXPECT_EQ(PostForm("/readers", {{"name", "X"}}).second["message"], "Field \"email\" is missing.");
    EXPECT_EQ(PostForm("/readers", {{"name", "X"}, {"email", "x"}}).first, 400);
}

TEST_F(LibraryServer, LendsInEachKindOfTerms) {
    const httplib::Headers reader = {{"Library-Card", "R-1002"}, {"Cookie", "a=b; branch=Old%20Town"}};
    EXPECT_EQ(Put("/media/3", {{"kind", "film"},
                               {"title", "Three Copies"},
                               {"lendable", true},
                               {"copies", {{"Harbour", 2}, {"Hillside", 1}}}})
                  .first,
              200);
    const auto [status, days] =
        Post("/loans", {{"mediumId", 3}, {"terms", {{"type", "days"}, {"value", 14}}}}, reader);
    EXPECT_EQ(status, 201) << days;
    EXPECT_EQ(days["branch"], "Old Town");
    EXPECT_EQ(days["card"], "R-1002");
    EXPECT_TRUE(days.contains("dueOn"));
    ExpectDeclared("LendMedium", days);
    const TJson until =
        Post("/loans", {{"mediumId", 3}, {"terms", {{"type", "until"}, {"value", "2099-12-31"}}}}, reader)
            .second;
    EXPECT_EQ(until["dueOn"], "2099-12-31");
    ExpectDeclared("LendMedium", until);
    const TJson open = Post("/loans", {{"mediumId", 3}, {"terms", {{"type", "openEnded"}}}}, reader).second;
    EXPECT_FALSE(open.contains("dueOn"));
    ExpectDeclared("LendMedium", open);

    EXPECT_EQ(Post("/loans", {{"mediumId", 3}}, reader).second["message"], "All copies of medium 3 are out.");
    EXPECT_EQ(Client().Delete("/library/v1/media/3")->status, 409);
    EXPECT_EQ(Post("/loans/" + open["id"].dump() + "/return", {}).first, 200);
    EXPECT_EQ(Post("/loans", {{"mediumId", 3}}, reader).second["terms"],
              TJson({{"type", "days"}, {"value", 28}}));
}

TEST_F(LibraryServer, NamesTheBadFieldOfALoan) {
    const httplib::Headers reader = {{"Library-Card", "R-1002"}};
    const auto terms = [](const TJson& ATerms) { return TJson{{"mediumId", 3}, {"terms", ATerms}}; };
    const std::pair<TJson, std::string> cases[] = {
        {TJson::object(), "body.mediumId"},
        {terms("long"), "body.terms"},
        {terms({{"type", "forever"}}), "body.terms.type"},
        {terms({{"type", "days"}}), "body.terms.value"},
        {terms({{"type", "days"}, {"value", 91}}), "body.terms.value"},
        {terms({{"type", "until"}, {"value", "tomorrow"}}), "body.terms.value"},
        {terms({{"type", "until"}, {"value", "1999-01-01"}}), "body.terms.value"},
        {terms({{"type", "openEnded"}, {"value", 1}}), "body.terms.value"},
    };
    for (const auto& [body, field] : cases)
        EXPECT_EQ(Post("/loans", body, reader).second["field"], field) << body;
    EXPECT_EQ(Post("/loans", {{"mediumId", 3}}, {{"Library-Card", "R-1002"}, {"Cookie", "branch=Moon"}})
                  .second["field"],
              "branch");
    EXPECT_EQ(Post("/loans", {{"mediumId", 999}}, reader).first, 404);
}

TEST_F(LibraryServer, ListsAndReturnsLoans) {
    const httplib::Headers reader = {{"Library-Card", "R-1001"}};
    const TJson loans = Get("/loans", reader).second;
    ASSERT_EQ(loans.size(), 2u);
    EXPECT_EQ(loans[0]["id"], 1);
    ExpectDeclared("ListLoans", loans);
    EXPECT_EQ(Get("/loans?open=false", reader).second.size(), 0u);
    const auto [status, loan] = Post("/loans/1/return", {});
    EXPECT_EQ(status, 200);
    EXPECT_EQ(loan["fee"], 15.0);
    ExpectDeclared("ReturnMedium", loan);
    EXPECT_EQ(Post("/loans/1/return", {}).first, 409);
    EXPECT_EQ(Get("/loans?open=false", reader).second.size(), 1u);
}

TEST_F(LibraryServer, TellsOpeningHours) {
    const auto [status, hours] = Get("/branches/Old%20Town/hours");
    EXPECT_EQ(status, 200);
    EXPECT_EQ(hours.size(), 7u);
    EXPECT_EQ(hours["Monday"][1]["closes"], "18:30");
    EXPECT_EQ(hours["Sunday"], TJson::array());
    ExpectDeclared("GetOpeningHours", hours);
}

TEST_F(LibraryServer, AnswersAHundredThousandCheckouts) {
    const auto answer = Client().Get("/library/v1/checkouts");
    ASSERT_TRUE(answer);
    ASSERT_EQ(answer->status, 200);
    const TJson checkouts = TJson::parse(answer->body);
    ASSERT_EQ(checkouts.size(), 100'000u);
    EXPECT_EQ(checkouts[0]["id"], 1);
    EXPECT_EQ(checkouts[99'999]["id"], 100'000);
    for (const TJson& checkout : checkouts) {
        const int late = checkout["days"].get<int>() - 28;
        ASSERT_EQ(checkout["late"], late > 0) << checkout;
        ASSERT_EQ(checkout["fee"], late * 0.25) << checkout;
    }
    ExpectDeclared("ListCheckouts", TJson(checkouts.begin(), checkouts.begin() + 500));
    EXPECT_EQ(Client().Get("/library/v1/checkouts")->body, answer->body);
}

TEST_F(LibraryServer, FailsInSeveralLines) {
    const auto answer = Client().Post("/library/v1/reports/2024");
    EXPECT_EQ(answer->status, 503);
    EXPECT_EQ(answer->body, "The annual report of 2024 cannot be printed.\n"
                            "Printer: \"Gutenberg\" in the basement of the Old Town branch.\n"
                            "State: out of paper since the last annual report.\n"
                            "Please ask the caretaker, and bring chocolate.");
}

TEST_F(LibraryServer, StartsAnewWithTheSameCatalogue) {
    const auto before = Get("/media/1");
    EXPECT_EQ(Put("/media/1/notes", "changed").first, 200);
    const TSampleServer other;
    EXPECT_NE(other.Port(), Server.Port());
    httplib::Client client("127.0.0.1", other.Port());
    EXPECT_EQ(Read(client.Get("/library/v1/media/1", {{"X-Api-Key", "library-demo-key"}})), before);
}

} // namespace
