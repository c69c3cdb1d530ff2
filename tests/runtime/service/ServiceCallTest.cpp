#include "runtime/service/ServiceCall.h"

#include "samples/LibraryService.h"
#include "samples/SampleServer.h"

#include "runtime/types/Failures.h"

#include <QBuffer>

#include <gtest/gtest.h>

namespace {

class ServiceCall : public testing::Test {
protected:
    TSampleServer Server;
    std::unique_ptr<TZORestServiceClass> Class =
        TLibraryService::DeclareClass(Server.LibraryUrl(), TSampleServer::ApiKey());
    std::unique_ptr<TZORestService> Service = Class->Create();
};

} // namespace

TEST_F(ServiceCall, SendsCppValuesAndGivesThemBack) {
    TZOServiceCall call(Service.get(), "AddMedium");
    const TZOValueRef medium = call.Request().Make("medium");
    EXPECT_THROW(medium.Make("isbn"), EInvalidCast);
    EXPECT_THROW(medium.MakeSubtype("painting"), EInvalidCast);
    const TZOValueRef book = medium.MakeSubtype("book");
    book.Make("title").Set("The Long Way");
    book.Make("isbn").Set("9780306406157");
    book.Make("genre").Set("travel");
    const TZOValueRef added = call.Exec();
    EXPECT_EQ(added.Type()->Name(), "Book");
    EXPECT_EQ(added["isbn"].As<QString>(), "9780306406157");
    EXPECT_GT(added["id"].As<qint64>(), 0);
    EXPECT_EQ(added["addedAt"].As<QDateTime>().date().year(), QDate::currentDate().year());
    EXPECT_FALSE(added["pages"].IsPresent());

    TZOServiceCall search(Service.get(), "SearchMedia");
    search.Set("kind", "film").Set("pageSize", 3);
    search.Request().Make("genres").Append().Set("crime");
    const TZOValueRef page = search.Exec();
    EXPECT_EQ(page["pageSize"].As<qint32>(), 3);
    EXPECT_EQ(page["items"].Count(), 3);
    for (const TZOValueRef film : page["items"]) {
        EXPECT_EQ(film.Type()->Name(), "Film");
        EXPECT_EQ(film["genre"].As<QString>(), "crime");
        EXPECT_GT(film["minutes"].As<qint32>(), 0);
    }
}

TEST_F(ServiceCall, KnowsItsOperations) {
    EXPECT_THROW(TZOServiceCall(Service.get(), "Nothing"), EInvalidCast);
    TZOServiceCall removal(Service.get(), "RemoveMedium");
    removal.Set("id", 2);
    EXPECT_FALSE(removal.Exec().IsPresent());
    EXPECT_THROW(removal.Exec(), EZOHttpStatusError);
}

TEST_F(ServiceCall, WritesAFileThatIsTheAnswer) {
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    TZOServiceCall cover(Service.get(), "DownloadCover");
    cover.Set("id", 1).Exec(&file);
    EXPECT_TRUE(file.data().startsWith("\x89PNG"));
    TZOServiceCall search(Service.get(), "SearchMedia");
    EXPECT_THROW(search.Exec(&file), EInvalidCast);
}
