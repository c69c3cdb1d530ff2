// How a service class is declared. Read it from the end: DeclareClass names the service, its permissions
// and its credentials, then adds the operations in the order in which the explorer lists them. Every
// operation is one call: name, description, method, path, the properties of its request with their places,
// and the type of its response. The explorer needs nothing more; there is no code per operation.
//
// The types come first, because operations refer to them. They are made in the builder's type library,
// which the finished class takes over, so plain pointers to them may be kept anywhere in the declaration.
#include "samples/LibraryService.h"

#include "runtime/service/ServiceBuilder.h"

namespace {

using P = TZOServiceParam;

/// The types that more than one operation uses.
class TLibraryTypes {
public:
    explicit TLibraryTypes(TZOTypeLibrary& ATypes) : FTypes(ATypes) {
        MakeTexts();
        MakeMedium();
        MakeLoan();
        MakeRecords();
    }

    // Kinds that need no more description than their name are shared by all services.
    const TZOTypeInfo* Text = TZOTypeLibrary::Scalar(vkString);
    const TZOTypeInfo* Integer = TZOTypeLibrary::Scalar(vkInteger);
    const TZOTypeInfo* Int64 = TZOTypeLibrary::Scalar(vkInt64);
    const TZOTypeInfo* Boolean = TZOTypeLibrary::Scalar(vkBoolean);
    const TZOTypeInfo* Float = TZOTypeLibrary::Scalar(vkFloat);
    const TZOTypeInfo* DateTime = TZOTypeLibrary::Scalar(vkDateTime);
    const TZOTypeInfo* Date = TZOTypeLibrary::Scalar(vkDate);
    const TZOTypeInfo* Any = TZOTypeLibrary::Scalar(vkAny);
    const TZOTypeInfo* Upload = TZOTypeLibrary::Scalar(vkUpload);
    const TZOTypeInfo* Download = TZOTypeLibrary::Scalar(vkDownload);

    const TZOTypeInfo* Kind = nullptr;
    const TZOTypeInfo* Genre = nullptr;
    const TZOTypeInfo* Branch = nullptr;
    const TZOTypeInfo* Medium = nullptr;
    const TZOTypeInfo* Author = nullptr;
    const TZOTypeInfo* Reader = nullptr;
    const TZOTypeInfo* Terms = nullptr;
    const TZOTypeInfo* Loan = nullptr;
    const TZOTypeInfo* Cover = nullptr;
    const TZOTypeInfo* Checkout = nullptr;
    const TZOTypeInfo* Hours = nullptr;

    const TZOTypeInfo* ListOf(const TZOTypeInfo* AType) { return FTypes.NewList(AType); }
    const TZOTypeInfo* MapOf(const TZOTypeInfo* AType) { return FTypes.NewMap(AType); }
    TZOObjectBuilder Object(const QString& AName, const QString& AText) {
        return FTypes.NewObject(AName, AText);
    }

    /// One page of a longer list.
    const TZOTypeInfo* PageOf(const QString& AName, const TZOTypeInfo* AType) {
        return Object(AName, "One page of a longer list.")
            .Property("items", ListOf(AType))
            .Property("page", Integer)
            .Property("pageSize", Integer)
            .Property("total", Int64)
            .Property("hasMore", Boolean)
            .Type();
    }

private:
    // A text with allowed values: the explorer offers them, the server enforces them.
    void MakeTexts() {
        Kind = FTypes.NewScalar(vkString, "MediumKind", "What a medium is.", {"book", "film", "recording"});
        Genre = FTypes.NewScalar(
            vkString, "Genre", "The shelf on which a medium stands.",
            {"biography", "crime", "drama", "fantasy", "history", "poetry", "science", "travel"});
        Branch = FTypes.NewScalar(vkString, "Branch", "A house of the library.",
                                  {"Harbour", "Hillside", "Old Town", "University"});
    }

    // A polymorphic type. The base names the key that tells its subtypes apart; each subtype takes over the
    // properties of the base as a group and adds its own. The base itself is never instantiated.
    void MakeMedium() {
        TZOObjectBuilder medium =
            Object("Medium", "Something that can be lent: a book, a film or a recording.");
        medium.Property("id", Int64, {.ReadOnly = true, .Description = "Given by the library."})
            .Property("title", Text, {.Required = true})
            .Property("year", Integer, {.Description = "The year of publication, 1450 to 2100."})
            .Property("genre", Genre)
            .Property("rating", Float, {.Description = "What readers think of it, 0 to 5."})
            .Property("lendable", Boolean, {.Description = "Whether it may leave the house."})
            .Property("copies", MapOf(Integer), {.Description = "How many copies each branch has."})
            .Property("notes", Any, {.Description = "Whatever the librarians wrote down: any JSON."})
            .Property("addedAt", DateTime, {.ReadOnly = true});
        Medium = medium.Type();

        const auto book = Object("Book", "A printed book.")
                              .Base(medium.Type())
                              .Property("isbn", Text, {.Description = "13 digits."})
                              .Property("pages", Integer)
                              .Property("authorIds", ListOf(Int64))
                              .Type();
        const auto film = Object("Film", "A film on disc.")
                              .Base(medium.Type())
                              .Property("director", Text)
                              .Property("minutes", Integer)
                              .Property("subtitles", ListOf(Text), {.Description = "Language codes."})
                              .Type();
        const auto track = Object("Track", "One piece on a recording.")
                               .Property("title", Text, {.Required = true})
                               .Property("seconds", Integer)
                               .Type();
        const auto recording = Object("Recording", "Music or speech.")
                                   .Base(medium.Type())
                                   .Property("artist", Text)
                                   .Property("tracks", ListOf(track))
                                   .Type();
        medium.Discriminator("kind")
            .Subtype("book", book)
            .Subtype("film", film)
            .Subtype("recording", recording);
    }

    // A union in tagged form: {"type": "days", "value": 14}. A tag without a type carries no value.
    void MakeLoan() {
        Terms = FTypes.NewUnion("LoanTerms", "type", ufTagged, "How long a medium stays out.")
                    .Tag("days", Integer)
                    .Tag("until", Date)
                    .Tag("openEnded", nullptr)
                    .Type();
        Loan = Object("Loan", "One medium lent to one reader.")
                   .Property("id", Int64)
                   .Property("mediumId", Int64)
                   .Property("title", Text)
                   .Property("card", Text)
                   .Property("branch", Branch)
                   .Property("terms", Terms)
                   .Property("lentAt", DateTime)
                   .Property("dueOn", Date, {.Description = "Absent when the loan is open-ended."})
                   .Property("returnedAt", DateTime)
                   .Property("fee", Float)
                   .Type();
    }

    void MakeRecords() {
        Author = Object("Author", "Somebody who wrote books.")
                     .Property("id", Int64)
                     .Property("name", Text)
                     .Property("country", Text)
                     .Property("born", Date)
                     .Property("died", Date)
                     .Property("books", ListOf(Int64), {.Description = "Ids of media."})
                     .Type();
        const auto address =
            Object("Address", "Where a reader lives.").Property("street", Text).Property("city", Text).Type();
        Reader = Object("Reader", "Somebody who may borrow.")
                     .Property("card", Text, {.Description = "The number on the library card."})
                     .Property("name", Text)
                     .Property("email", Text)
                     .Property("born", Date)
                     .Property("newsletter", Boolean)
                     .Property("interests", ListOf(Genre))
                     .Property("address", address)
                     .Type();
        Cover = Object("Cover", "What the server received.")
                    .Property("mediumId", Int64)
                    .Property("fileName", Text)
                    .Property("contentType", Text)
                    .Property("caption", Text)
                    .Property("front", Boolean)
                    .Property("size", Int64, {.Description = "Bytes."})
                    .Property("sha256", Text)
                    .Type();
        Checkout = Object("Checkout", "One line of the lending journal.")
                       .Property("id", Int64)
                       .Property("mediumId", Int64)
                       .Property("title", Text)
                       .Property("branch", Branch)
                       .Property("at", DateTime)
                       .Property("days", Integer)
                       .Property("late", Boolean)
                       .Property("fee", Float)
                       .Type();
        Hours = Object("Hours", "From when to when a branch is open.")
                    .Property("opens", Text)
                    .Property("closes", Text)
                    .Type();
    }

    TZOTypeLibrary& FTypes;
};

// Properties go into the path, the query, headers, cookies, or the body; a property that the user leaves
// absent is not sent. A list in the query is repeated for each entry unless it is styled otherwise.
void AddCatalogue(TZOServiceBuilder& AService, TLibraryTypes& T) {
    const auto id = P::InPath("id", T.Int64, "The medium, for example 1.");

    AService.Operation("SearchMedia", "Finds books, films and recordings, page by page.", "GET", "/media",
                       {P::InQuery("text", T.Text, "Part of the title."),
                        P::InQuery("kind", T.Kind, "Only media of this kind."),
                        P::InQuery("genres", T.ListOf(T.Genre), "Only these genres."),
                        P::InQuery("lendable", T.Boolean, "Only what may leave the house, or may not."),
                        P::InQuery("minRating", T.Float, "0 to 5."),
                        P::InQuery("addedSince", T.DateTime, "Only what came after this moment."),
                        P::InQuery("page", T.Integer, "From 1."),
                        P::InQuery("pageSize", T.Integer, "1 to 100; 20 if absent.")},
                       T.PageOf("MediumPage", T.Medium));
    AService.Operation("GetMedium", "Shows one medium with all that is known about it.", "GET", "/media/{id}",
                       {id}, T.Medium);
    AService.Operation("AddMedium", "Adds a book, a film or a recording to the catalogue.", "POST", "/media",
                       {P::InBody("medium", T.Medium, "What to add.")}, T.Medium);
    AService.Operation("ReplaceMedium", "Replaces a medium's record; what is left out is forgotten.", "PUT",
                       "/media/{id}", {id, P::InBody("medium", T.Medium, "The new record.")}, T.Medium);
    // Free JSON, both ways.
    AService.Operation("AnnotateMedium", "Replaces the notes of a medium: any JSON will do.", "PUT",
                       "/media/{id}/notes", {id, P::InBody("notes", T.Any, "Any JSON value.")}, T.Any);
    // A null response type: the operation answers without data.
    AService.Operation("RemoveMedium", "Takes a medium out of the catalogue.", "DELETE", "/media/{id}", {id},
                       nullptr);
    AService.Operation(
        "CountMedia", "Counts the catalogue by kind, genre or year.", "GET", "/media-count",
        {P::InQuery("by", AService.Types().NewScalar(vkString, "Grouping", {}, {"genre", "kind", "year"}),
                    "What to count by; the genre if absent."),
         // An object in the query: filter[kind]=book&filter[genre]=crime
         P::InQuery("filter",
                    T.Object("CountFilter", "What to count.")
                        .Property("kind", T.Kind)
                        .Property("genre", T.Genre)
                        .Type(),
                    "Counts only what matches.")
             .Styled(psDeepObject, true)},
        T.MapOf(T.Int64));
}

// Uploads are parts of a multipart body. A response of kind download is written to a file that the user
// names and is not decoded.
void AddFiles(TZOServiceBuilder& AService, TLibraryTypes& T) {
    const auto id = P::InPath("id", T.Int64, "The medium, for example 1.");

    AService.Operation("UploadCover", "Sends a cover picture and tells what arrived.", "POST",
                       "/media/{id}/cover",
                       {id, P::InPart("cover", T.Upload, "The file to send.").Needed(),
                        P::InPart("caption", T.Text, "A line below the picture."),
                        P::InPart("front", T.Boolean, "Whether it shows the front.")},
                       T.Cover);
    AService.Operation("DownloadCover", "Saves a medium's cover picture to a file.", "GET",
                       "/media/{id}/cover", {id}, T.Download);
    AService.Operation("ExportCatalogue", "Saves the catalogue as a table of comma-separated values.", "GET",
                       "/export.csv",
                       {P::InQuery("kind", T.Kind, "Only media of this kind."),
                        // columns=id|title
                        P::InQuery("columns", T.ListOf(T.Text), "id, kind, title, year, genre, rating.")
                            .Styled(psPipeDelimited, false)},
                       T.Download);
}

void AddPeople(TZOServiceBuilder& AService, TLibraryTypes& T) {
    AService.Operation("ListAuthors", "Lists authors by name, page by page.", "GET", "/authors",
                       {P::InQuery("country", T.Text, "Only authors from this country."),
                        P::InQuery("bornAfter", T.Date, "For example 1950-01-01."),
                        P::InQuery("page", T.Integer, "From 1."),
                        P::InQuery("pageSize", T.Integer, "1 to 100; 20 if absent.")},
                       T.PageOf("AuthorPage", T.Author));
    AService.Operation("GetAuthor", "Shows one author and the books that the library has.", "GET",
                       "/authors/{id}", {P::InPath("id", T.Int64, "The author, for example 7.")}, T.Author);
    // A form: each property is one field of an urlencoded body.
    AService.Operation("RegisterReader", "Registers a reader and issues a library card.", "POST", "/readers",
                       {P::InForm("name", T.Text, "First and last name.").Needed(),
                        P::InForm("email", T.Text, "Used once only.").Needed(),
                        P::InForm("born", T.Date, "For example 1984-06-30."),
                        P::InForm("newsletter", T.Boolean, "Whether to send news."),
                        P::InForm("interests", T.ListOf(T.Genre), "Genres to be told about.")},
                       T.Reader);
}

void AddLoans(TZOServiceBuilder& AService, TLibraryTypes& T) {
    const auto card =
        P::InHeader("card", "Library-Card", T.Text, "A reader's card, for example R-1001.").Needed();
    const auto loanRequest = T.Object("LoanRequest", "What a reader wants to borrow.")
                                 .Property("mediumId", T.Int64, {.Required = true})
                                 .Property("terms", T.Terms, {.Description = "28 days if absent."})
                                 .Type();

    AService.Operation("LendMedium", "Lends a medium to a reader.", "POST", "/loans",
                       {card, P::InCookie("branch", T.Branch, "The house where it happens."),
                        P::InBody("loan", loanRequest, "What is lent, and for how long.")},
                       T.Loan);
    AService.Operation("ListLoans", "Lists what a reader has borrowed.", "GET", "/loans",
                       {card, P::InQuery("open", T.Boolean, "Only what is still out, or what came back.")},
                       T.ListOf(T.Loan));
    AService.Operation("ReturnMedium", "Takes a medium back and reckons the fee.", "POST",
                       "/loans/{id}/return", {P::InPath("id", T.Int64, "The loan, for example 1.")}, T.Loan);
}

void AddHouse(TZOServiceBuilder& AService, TLibraryTypes& T) {
    AService.Operation("GetOpeningHours", "Tells when a branch is open, by day of the week.", "GET",
                       "/branches/{branch}/hours", {P::InPath("branch", T.Branch, "A house of the library.")},
                       T.MapOf(T.ListOf(T.Hours)));
    AService.Operation("ListCheckouts", "Answers the whole lending journal: 100,000 records.", "GET",
                       "/checkouts", {}, T.ListOf(T.Checkout));
    AService.Operation("PrintAnnualReport", "Always fails, to show how a failure of several lines looks.",
                       "POST", "/reports/{year}", {P::InPath("year", T.Integer, "For example 2024.")},
                       T.Text);
}

} // namespace

std::unique_ptr<TZORestServiceClass> TLibraryService::DeclareClass(const QString& ABaseUrl,
                                                                   const QString& AApiKey) {
    TZOServiceBuilder service("TLibraryService",
                              "The catalogue, readers and loans of a city library: books, films, recordings.",
                              ABaseUrl);
    service.Scope("catalogue.read", true)
        .Scope("catalogue.write", false)
        .Scope("loans.read", true)
        .Scope("loans.write", false)
        .Scope("reports.print", false)
        .ApiKeyHeader("X-Api-Key");

    TLibraryTypes types(service.Types());
    AddCatalogue(service, types);
    AddFiles(service, types);
    AddPeople(service, types);
    AddLoans(service, types);
    AddHouse(service, types);

    // The factory makes the instances; credentials that the user has stored are set afterwards, over these.
    auto made = std::make_unique<TZORestServiceClass>(
        "TLibraryService", service.Build(), [AApiKey](const TZORestServiceClass* AClass, QObject* AOwner) {
            auto instance = std::make_unique<TLibraryService>(AClass, AOwner);
            instance->SetApiKey(AApiKey);
            return instance;
        });
    made->SetComponentHeader("samples/LibraryServiceComponent.h");
    return made;
}
