// The explorer's own requests against the sample server.
#include "tests/samples/SampleClient.h"

#include "runtime/service/Request.h"
#include "runtime/types/Streams.h"

#include <QBuffer>
#include <QCryptographicHash>

#include <algorithm>

namespace {

class SampleRequest : public TSampleServerTest {
protected:
    const TZORestServiceClass& ClassOf(const QString& AName) const {
        const auto& opers = ClockClass->TypeInfo()->Opers();
        const bool isClock =
            std::any_of(opers.begin(), opers.end(), [&](const auto& oper) { return oper.Name == AName; });
        return isClock ? *ClockClass : *LibraryClass;
    }

    /// Executes an operation whose request value is AValue, and gives its response as JSON; null for none.
    TJson Run(const QString& AName, const TJson& AValue) const {
        return Run(*ClassOf(AName).Create(), AName, AValue);
    }
    static TJson Run(TZORestService& AService, const QString& AName, const TJson& AValue) {
        const POper oper = Oper(*AService.Class(), AName);
        ZORequest request(&AService, oper->Request);
        Fill(request, AValue);
        if (!oper->Response) {
            request.ExecRequest();
            return nullptr;
        }
        TZOValueHolder response(oper->Response, true);
        request.ExecRequest(&response);
        return TJson::parse(TZOJson::Encode(response).toStdString());
    }

    /// Executes a download, and gives its bytes.
    std::string Download(const QString& AName, const TJson& AValue) const {
        const auto service = LibraryClass->Create();
        const POper oper = Oper(*LibraryClass, AName);
        ZORequest request(service.get(), oper->Request);
        Fill(request, AValue);
        QBuffer file;
        file.open(QIODevice::WriteOnly);
        TZOValueHolder response(oper->Response, true);
        void* ref = nullptr;
        response.GetByRef(ref);
        static_cast<ZODownload*>(ref)->SetStream(&file);
        request.ExecRequest(&response);
        return file.data().toStdString();
    }

    static void Fill(ZORequest& ARequest, const TJson& AValue) {
        TZOValueHolder value(ARequest.Type(), ARequest.Data(), false);
        TZOJson::Decode(QByteArray::fromStdString(AValue.dump()), value);
    }

    /// The class name and message of what the operation fails with.
    std::pair<QString, QString> Failure(TZORestService& AService, const QString& AName,
                                        const TJson& AValue) const {
        try {
            Run(AService, AName, AValue);
        } catch (const EException& failure) {
            return {failure.ClassName(), failure.Message()};
        }
        return {"nothing", {}};
    }
    std::pair<QString, QString> Failure(const QString& AName, const TJson& AValue) const {
        return Failure(*ClassOf(AName).Create(), AName, AValue);
    }
};

const TJson NewFilm = {{"kind", "film"},
                       {"title", "Der Weg nach Gdańsk"},
                       {"year", 1999},
                       {"genre", "travel"},
                       {"rating", 4.25},
                       {"lendable", true},
                       {"copies", {{"Old Town", 2}}},
                       {"notes", {{"reels", {1, 2.50, "three"}}}},
                       {"director", "Ines Haas"},
                       {"minutes", 97},
                       {"subtitles", {"de", "pl"}}};

/// An operation that only reads, its request, and the same by hand.
struct TReading {
    const char* Oper;
    TJson Request;
    const char* Path;
};

TEST_F(SampleRequest, ReadsWhatTheServerHolds) {
    const TReading readings[] = {
        {"SearchMedia", TJson::object(), "/media"},
        {"SearchMedia",
         {{"text", "the"},
          {"kind", "book"},
          {"genres", {"crime", "science", "poetry"}},
          {"lendable", true},
          {"minRating", 2.5},
          {"addedSince", "2009-12-31T23:30:00-00:30"},
          {"page", 2},
          {"pageSize", 5}},
         "/media?text=the&kind=book&genres=crime&genres=science&genres=poetry&lendable=true&minRating=2.5"
         "&addedSince=2010-01-01T00:00:00Z&page=2&pageSize=5"},
        {"GetMedium", {{"id", 1}}, "/media/1"},
        {"GetMedium", {{"id", 3}}, "/media/3"},
        {"GetMedium", {{"id", 4}}, "/media/4"},
        {"CountMedia",
         {{"by", "kind"}, {"filter", {{"kind", "film"}, {"genre", "crime"}}}},
         "/media-count?by=kind&filter%5Bkind%5D=film&filter%5Bgenre%5D=crime"},
        {"ListAuthors",
         {{"bornAfter", "1930-01-01"}, {"pageSize", 3}},
         "/authors?bornAfter=1930-01-01&pageSize=3"},
        {"GetAuthor", {{"id", 7}}, "/authors/7"},
        {"GetOpeningHours", {{"branch", "Old Town"}}, "/branches/Old%20Town/hours"},
    };
    for (const TReading& reading : readings) {
        const auto [status, expected] = Get(reading.Path);
        ASSERT_EQ(status, 200) << reading.Path;
        EXPECT_EQ(Run(reading.Oper, reading.Request), expected) << reading.Oper;
    }
}

TEST_F(SampleRequest, AddsReplacesAnnotatesAndRemoves) {
    TJson added = Run("AddMedium", {{"medium", NewFilm}});
    EXPECT_EQ(added["id"], 481);
    EXPECT_EQ(Get("/media/481").second, added);
    added.erase("id");
    added.erase("addedAt");
    EXPECT_EQ(added, NewFilm);

    added["minutes"] = 98;
    EXPECT_EQ(Run("ReplaceMedium", {{"id", 481}, {"medium", added}})["minutes"], 98);
    for (const TJson& notes : {TJson{1, nullptr, {{"a", "b"}}}, TJson("text"), TJson(12345678901234567)}) {
        EXPECT_EQ(Run("AnnotateMedium", {{"id", 481}, {"notes", notes}}), notes);
        EXPECT_EQ(Get("/media/481").second["notes"], notes);
    }
    Run("RemoveMedium", {{"id", 481}});
    EXPECT_EQ(Get("/media/481").first, 404);
}

TEST_F(SampleRequest, RegistersAReaderThroughAForm) {
    const TJson form = {{"name", "Änne & Co = \"50 %\""},
                        {"email", "a+b@library.example"},
                        {"born", "1984-06-30"},
                        {"newsletter", false},
                        {"interests", {"crime", "poetry"}}};
    TJson reader = Run("RegisterReader", form);
    EXPECT_EQ(reader["card"], "R-1025");
    reader.erase("card");
    EXPECT_EQ(reader, form);
}

TEST_F(SampleRequest, LendsListsAndReturns) {
    const TJson terms[] = {{{"type", "days"}, {"value", 3}},
                           {{"type", "until"}, {"value", "2099-12-31"}},
                           {{"type", "openEnded"}}};
    int64_t medium = 0;
    for (const TJson& term : terms) {
        const TJson loan = Run("LendMedium", {{"card", "R-1020"},
                                              {"branch", "Old Town"},
                                              {"loan", {{"mediumId", ++medium}, {"terms", term}}}});
        EXPECT_EQ(loan["terms"], term);
        EXPECT_EQ(loan["branch"], "Old Town");
        EXPECT_EQ(loan["card"], "R-1020");
        EXPECT_EQ(Run("ReturnMedium", {{"id", loan["id"]}})["fee"], 0);
    }
    EXPECT_EQ(Run("ListLoans", {{"card", "R-1020"}}), Get("/loans", {{"Library-Card", "R-1020"}}).second);
    EXPECT_GE(Run("ListLoans", {{"card", "R-1020"}, {"open", false}}).size(), 3u);
}

TEST_F(SampleRequest, UploadsByteForByte) {
    std::string content;
    for (unsigned i = 0; i < 1'000'000; ++i)
        content += static_cast<char>(i * 7919 >> 3);
    QByteArray bytes = QByteArray::fromStdString(content);
    QBuffer file(&bytes);
    file.open(QIODevice::ReadOnly);

    const auto service = LibraryClass->Create();
    const POper oper = Oper(*LibraryClass, "UploadCover");
    ZORequest request(service.get(), oper->Request);
    Fill(request, {{"id", 9}, {"caption", "Zwölf\nZeilen"}, {"front", true}});
    void* ref = nullptr;
    ZOObject::TData::GetByRef(*static_cast<ZOObject**>(request.Data()),
                              oper->Request->FindProperty(u"cover")->Index, ref);
    static_cast<ZOUpload*>(ref)->SetStream(&file);
    TZOValueHolder response(oper->Response, true);
    request.ExecRequest(&response);

    const TJson cover = TJson::parse(TZOJson::Encode(response).toStdString());
    EXPECT_EQ(cover["size"], 1'000'000);
    EXPECT_EQ(cover["front"], true);
    EXPECT_EQ(cover["caption"], "Zwölf\nZeilen");
    EXPECT_EQ(cover["sha256"],
              QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex().toStdString());
    EXPECT_EQ(Client().Get("/library/v1/media/9/cover")->body, content);
    EXPECT_EQ(Download("DownloadCover", {{"id", 9}}), content);
}

TEST_F(SampleRequest, DownloadsByteForByte) {
    EXPECT_EQ(Download("DownloadCover", {{"id", 2}}), Client().Get("/library/v1/media/2/cover")->body);
    EXPECT_EQ(Download("ExportCatalogue", TJson::object()), Client().Get("/library/v1/export.csv")->body);
    EXPECT_EQ(Download("ExportCatalogue", {{"kind", "film"}, {"columns", {"id", "title"}}}),
              Client().Get("/library/v1/export.csv?kind=film&columns=id%7Ctitle")->body);
}

TEST_F(SampleRequest, ReadsAHundredThousandRecords) {
    const auto service = LibraryClass->Create();
    const POper oper = Oper(*LibraryClass, "ListCheckouts");
    ZORequest request(service.get(), oper->Request);
    TZOValueHolder response(oper->Response, true);
    request.ExecRequest(&response);
    void* ref = nullptr;
    ASSERT_TRUE(response.GetValue(ref));
    const auto* list = static_cast<ZOList*>(ref);
    ASSERT_EQ(list->Count(), 100'000);
    for (int i = 0; i < list->Count(); ++i) {
        void* item = nullptr;
        void* id = nullptr;
        ASSERT_TRUE(list->GetItem(i, item));
        ASSERT_TRUE(ZOObject::TData::GetProp(*static_cast<ZOObject**>(item), u"id", id));
        ASSERT_EQ(*static_cast<qint64*>(id), i + 1);
    }
}

TEST_F(SampleRequest, ShowsAFailureOfSeveralLines) {
    EXPECT_EQ(Failure("PrintAnnualReport", {{"year", 2024}}),
              std::pair(QString("EZOHttpStatusError"),
                        QString("503 Service Unavailable\n"
                                "The annual report of 2024 cannot be printed.\n"
                                "Printer: \"Gutenberg\" in the basement of the Old Town branch.\n"
                                "State: out of paper since the last annual report.\n"
                                "Please ask the caretaker, and bring chocolate.")));
}

TEST_F(SampleRequest, FailsOnAWrongKeyAndGoesOnWithTheRightOne) {
    const auto service = LibraryClass->Create();
    service->SetApiKey("guess");
    const auto [name, message] = Failure(*service, "GetMedium", {{"id", 1}});
    EXPECT_EQ(name, "EZOHttpStatusError");
    EXPECT_TRUE(message.startsWith("401 Unauthorized\n")) << message.toStdString();
    EXPECT_FALSE(message.contains("guess"));
    service->SetApiKey(TSampleServer::ApiKey());
    EXPECT_EQ(Run(*service, "GetMedium", {{"id", 1}})["id"], 1);
}

struct TRefused {
    const char* Oper;
    TJson Request;
    const char* Status;
    const char* Said;
};

TEST_F(SampleRequest, ShowsWhatTheServerRefuses) {
    const TRefused cases[] = {
        {"SearchMedia", {{"pageSize", 101}}, "400 Bad Request\n", "pageSize"},
        {"GetMedium", {{"id", 481}}, "404 Not Found\n", "There is no medium 481."},
        {"AddMedium", {{"medium", {{"kind", "book"}}}}, "400 Bad Request\n", "body.title"},
        {"AddMedium",
         {{"medium", {{"kind", "book"}, {"title", "X"}, {"isbn", "1"}}}},
         "400 Bad Request\n",
         "body.isbn"},
        {"LendMedium", {{"card", "R-9"}, {"loan", {{"mediumId", 1}}}}, "404 Not Found\n", "R-9"},
        {"LendMedium",
         {{"card", "R-1001"}, {"loan", {{"mediumId", 1}, {"terms", {{"type", "days"}, {"value", 91}}}}}},
         "400 Bad Request\n",
         "body.terms.value"},
        {"RegisterReader", {{"name", "X"}, {"email", "reader1001@library.example"}}, "409 Conflict\n", "R-1"},
        {"CountDays", {{"from", "2024-01-01"}}, "400 Bad Request\n", "to"},
    };
    for (const TRefused& refused : cases) {
        const auto [name, message] = Failure(refused.Oper, refused.Request);
        EXPECT_EQ(name, "EZOHttpStatusError") << refused.Oper;
        EXPECT_TRUE(message.startsWith(refused.Status)) << message.toStdString();
        EXPECT_TRUE(message.contains(refused.Said)) << message.toStdString();
    }
}

TEST_F(SampleRequest, AsksTheClockWithoutAKey) {
    EXPECT_EQ(Run("GetTime", {{"zone", "UTC+02:00"}})["offsetMinutes"], 120);
    EXPECT_EQ(Run("GetTime", TJson::object())["zone"], "UTC");
    const TJson zones = Run("ListZones", {{"contains", "UTC"}});
    EXPECT_TRUE(std::find(zones.begin(), zones.end(), "UTC") != zones.end());
    EXPECT_EQ(Run("ListLeapYears", {{"from", 1896}, {"to", 1912}}), TJson({1896, 1904, 1908, 1912}));
    EXPECT_EQ(Run("CountDays", {{"from", "2024-03-01"}, {"to", "2023-03-01"}}), -366);
    const TJson instant = Run("ExplainInstant", {{"at", "2024-02-29T12:30:00.25+01:00"}});
    EXPECT_EQ(instant["received"], "2024-02-29T11:30:00.25Z");
    EXPECT_EQ(instant["instant"], "2024-02-29T11:30:00.25Z");
    EXPECT_EQ(instant["unixMicroseconds"], 1'709'206'200'250'000);
}

} // namespace
