#include "samples/JsonCheck_p.h"
#include "samples/LibraryRoutes_p.h"

#include <algorithm>

namespace {

constexpr int64_t MaxId = INT64_MAX;

void CheckIsbn(const TJson& AMedium, const std::string& APath) {
    const std::string isbn = AMedium.value("isbn", "");
    if (isbn.empty())
        return;
    const bool digits = isbn.size() == 13 && isbn.find_first_not_of("0123456789") == std::string::npos;
    if (!digits || CompleteIsbn(isbn.substr(0, 12)) != isbn)
        throw ERefusal::BadField(APath + ".isbn", "must be 13 digits, the last of which is the check digit");
}

void CheckTrack(const TJson& ATrack, const std::string& APath) {
    TJsonCheck(ATrack, APath).Text("title", TJsonCheck::cnNeeded).Integer("seconds", 0, 86'400).Done();
}

/// The body of a request for a record. A field that is null counts as left out.
TJson MediumBody(const TSampleCall& ACall) {
    TJson body = ACall.Body();
    for (auto it = body.begin(); body.is_object() && it != body.end();)
        it = it->is_null() ? body.erase(it) : std::next(it);
    return body;
}

void CheckMedium(const TJson& AMedium, const std::string& APath) {
    const auto id = [](const TJson& AValue, const std::string& AField) {
        TJsonCheck::CheckInteger(AValue, AField, 1, MaxId);
    };
    const auto copies = [](const TJson& AValue, const std::string& AField) {
        TJsonCheck::CheckInteger(AValue, AField, 0, 1000);
    };
    TJsonCheck check(AMedium, APath);
    check.OneOf("kind", TLibraryCatalogue::Kinds(), TJsonCheck::cnNeeded)
        .Integer("id", 1, MaxId)
        .Text("title", TJsonCheck::cnNeeded)
        .Integer("year", 1450, 2100)
        .OneOf("genre", TLibraryCatalogue::Genres())
        .Number("rating", 0, 5)
        .Boolean("lendable")
        .Map("copies", copies)
        .Anything("notes")
        .Instant("addedAt");
    if (AMedium["kind"] == "book")
        check.Text("isbn").Integer("pages", 1, 100'000).List("authorIds", id);
    else if (AMedium["kind"] == "film")
        check.Text("director").Integer("minutes", 1, 10'000).List("subtitles", TJsonCheck::CheckText);
    else
        check.Text("artist").List("tracks", CheckTrack);
    check.Done();
    if (AMedium["kind"] == "book")
        CheckIsbn(AMedium, APath);
}

/// Refuses ANew when another medium than AId has its ISBN, or its kind, title and year.
void CheckUnique(const TLibraryCatalogue& ACatalogue, const TJson& ANew, int64_t AId) {
    for (const auto& [id, medium] : ACatalogue.Media) {
        if (id == AId)
            continue;
        const bool sameIsbn =
            ANew.contains("isbn") && medium.contains("isbn") && ANew["isbn"] == medium["isbn"];
        const bool sameTitle = medium["kind"] == ANew["kind"] && medium["title"] == ANew["title"] &&
                               medium.value("year", 0) == ANew.value("year", 0);
        if (sameIsbn || sameTitle)
            throw ERefusal(409, "The catalogue has this already as medium " + std::to_string(id) + ".");
    }
}

void CheckAuthors(const TLibraryCatalogue& ACatalogue, const TJson& AMedium) {
    const auto authors = AMedium.find("authorIds");
    if (authors == AMedium.end())
        return;
    for (const TJson& id : *authors) {
        if (!ACatalogue.Authors.contains(id.get<int64_t>()))
            throw ERefusal::BadField("body.authorIds", "names author " + id.dump() + ", who is unknown");
    }
}

/// The record to keep: the kind and what the library itself gives first, then what the client sent.
TJson StoredMedium(const TJson& AMedium, int64_t AId, const TJson& AAddedAt) {
    TJson stored{{"kind", AMedium["kind"]}, {"id", AId}};
    for (const auto& [name, value] : AMedium.items()) {
        if (name != "kind" && name != "id" && name != "addedAt")
            stored[name] = value;
    }
    stored["addedAt"] = AAddedAt;
    return stored;
}

/// What a search asks for, checked.
class TSearch {
public:
    explicit TSearch(const TSampleCall& ACall) : FText(ACall.Param("text").value_or("")) {
        FKind = ACall.Param("kind");
        if (FKind)
            SampleText::OneOf(*FKind, "kind", TLibraryCatalogue::Kinds());
        FGenres = ACall.Params("genres");
        for (const std::string& genre : FGenres)
            SampleText::OneOf(genre, "genres", TLibraryCatalogue::Genres());
        if (const auto lendable = ACall.Param("lendable"))
            FLendable = SampleText::Boolean(*lendable, "lendable");
        FMinRating = SampleText::Number(ACall.Param("minRating").value_or("0"), "minRating", 0, 5);
        if (const auto since = ACall.Param("addedSince"))
            FAddedSince = SampleText::Instant(*since, "addedSince");
    }

    bool Fits(const TJson& AMedium) const {
        if (FKind && AMedium["kind"] != *FKind)
            return false;
        if (!FGenres.empty() &&
            std::find(FGenres.begin(), FGenres.end(), AMedium.value("genre", "")) == FGenres.end())
            return false;
        if (FLendable && AMedium.value("lendable", false) != *FLendable)
            return false;
        if (FAddedSince && SampleTime::ParseInstant(AMedium["addedAt"].get<std::string>()) <= FAddedSince)
            return false;
        return AMedium.value("rating", 0.0) >= FMinRating &&
               SampleText::Contains(AMedium["title"].get<std::string>(), FText);
    }

private:
    std::string FText;
    std::optional<std::string> FKind;
    std::vector<std::string> FGenres;
    std::optional<bool> FLendable;
    double FMinRating = 0;
    std::optional<SampleTime::TInstant> FAddedSince;
};

void Search(TSampleCall& ACall, TLibraryCatalogue& ACatalogue) {
    const TSearch search(ACall);
    std::vector<const TJson*> found;
    for (const auto& [id, medium] : ACatalogue.Media) {
        if (search.Fits(medium))
            found.push_back(&medium);
    }
    ACall.Answer(SamplePage(ACall, found));
}

void Add(TSampleCall& ACall, TLibraryCatalogue& ACatalogue) {
    const TJson body = MediumBody(ACall);
    CheckMedium(body, "body");
    CheckAuthors(ACatalogue, body);
    CheckUnique(ACatalogue, body, 0);
    const int64_t id = ACatalogue.Media.empty() ? 1 : ACatalogue.Media.rbegin()->first + 1;
    ACatalogue.Media[id] = StoredMedium(body, id, SampleTime::FormatInstant(SampleTime::Now()));
    ACall.Answer(ACatalogue.Media[id], 201);
}

void Replace(TSampleCall& ACall, TLibraryCatalogue& ACatalogue) {
    const int64_t id = ACall.PathId();
    TJson& medium = NeedMedium(ACatalogue, id);
    const TJson body = MediumBody(ACall);
    CheckMedium(body, "body");
    CheckAuthors(ACatalogue, body);
    CheckUnique(ACatalogue, body, id);
    if (body["kind"] != medium["kind"])
        throw ERefusal(409, "Medium " + std::to_string(id) + " is a " + medium["kind"].get<std::string>() +
                                " and stays one.");
    medium = StoredMedium(body, id, medium["addedAt"]);
    ACall.Answer(medium);
}

void Annotate(TSampleCall& ACall, TLibraryCatalogue& ACatalogue) {
    TJson& medium = NeedMedium(ACatalogue, ACall.PathId());
    medium["notes"] = ACall.Body();
    ACall.Answer(medium["notes"]);
}

void Remove(TSampleCall& ACall, TLibraryCatalogue& ACatalogue) {
    const int64_t id = ACall.PathId();
    NeedMedium(ACatalogue, id);
    for (const auto& [loanId, loan] : ACatalogue.Loans) {
        if (loan["mediumId"] == id && !loan.contains("returnedAt"))
            throw ERefusal(409,
                           "Medium " + std::to_string(id) + " is out: loan " + std::to_string(loanId) + ".");
    }
    ACatalogue.Media.erase(id);
    ACatalogue.Covers.erase(id);
    ACall.Response.status = 204;
}

void Count(TSampleCall& ACall, TLibraryCatalogue& ACatalogue) {
    const std::string by =
        SampleText::OneOf(ACall.Param("by").value_or("genre"), "by", {"genre", "kind", "year"});
    const auto kind = ACall.Param("filter[kind]");
    const auto genre = ACall.Param("filter[genre]");
    if (kind)
        SampleText::OneOf(*kind, "filter.kind", TLibraryCatalogue::Kinds());
    if (genre)
        SampleText::OneOf(*genre, "filter.genre", TLibraryCatalogue::Genres());
    std::map<std::string, int64_t> counts;
    for (const auto& [id, medium] : ACatalogue.Media) {
        if ((kind && medium["kind"] != *kind) || (genre && medium.value("genre", "") != *genre))
            continue;
        const auto value = medium.find(by);
        if (value != medium.end())
            ++counts[value->is_string() ? value->get<std::string>() : value->dump()];
    }
    ACall.Answer(TJson(counts));
}

} // namespace

TJson& NeedMedium(TLibraryCatalogue& ACatalogue, int64_t AId) {
    const auto found = ACatalogue.Media.find(AId);
    if (found == ACatalogue.Media.end())
        throw ERefusal(404, "There is no medium " + std::to_string(AId) + ".", "id");
    return found->second;
}

void AddMediaRoutes(TSampleRoutes& ARoutes, const PCatalogue& ACatalogue) {
    const auto with = [&](void (*AHandler)(TSampleCall&, TLibraryCatalogue&)) {
        return [ACatalogue, AHandler](TSampleCall& ACall) { AHandler(ACall, *ACatalogue); };
    };
    ARoutes.Add("GET", "/media", with(Search));
    ARoutes.Add("POST", "/media", with(Add));
    ARoutes.Add("GET", "/media/([^/]+)",
                [ACatalogue](TSampleCall& ACall) { ACall.Answer(NeedMedium(*ACatalogue, ACall.PathId())); });
    ARoutes.Add("PUT", "/media/([^/]+)", with(Replace));
    ARoutes.Add("DELETE", "/media/([^/]+)", with(Remove));
    ARoutes.Add("PUT", "/media/([^/]+)/notes", with(Annotate));
    ARoutes.Add("GET", "/media-count", with(Count));
}
