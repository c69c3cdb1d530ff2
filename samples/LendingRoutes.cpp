#include "samples/JsonCheck_p.h"
#include "samples/LibraryRoutes_p.h"

#include <algorithm>
#include <cmath>

namespace {

using namespace std::chrono;

constexpr int64_t UsualDays = 28;
constexpr double FeePerDay = 0.25;
constexpr double MaxFee = 15;

void ListAuthors(TSampleCall& ACall, TLibraryCatalogue& ACatalogue) {
    const auto country = ACall.Param("country");
    const auto bornAfter = ACall.Param("bornAfter");
    // Dates of one form have the order of their texts.
    const std::string after =
        bornAfter ? SampleTime::FormatDate(SampleText::Date(*bornAfter, "bornAfter")) : "";
    std::vector<const TJson*> found;
    for (const auto& [id, author] : ACatalogue.Authors) {
        if ((!country || author["country"] == *country) && author["born"].get<std::string>() > after)
            found.push_back(&author);
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const TJson* a, const TJson* b) { return (*a)["name"] < (*b)["name"]; });
    ACall.Answer(SamplePage(ACall, found));
}

void GetAuthor(TSampleCall& ACall, TLibraryCatalogue& ACatalogue) {
    const auto found = ACatalogue.Authors.find(ACall.PathId());
    if (found == ACatalogue.Authors.end())
        throw ERefusal(404, "There is no author " + ACall.Path() + ".", "id");
    ACall.Answer(found->second);
}

void RegisterReader(TSampleCall& ACall, TLibraryCatalogue& ACatalogue) {
    const std::string email = ACall.NeededParam("email");
    TJson reader{{"card", "R-" + std::to_string(1001 + ACatalogue.Readers.size())},
                 {"name", ACall.NeededParam("name")},
                 {"email", email}};
    if (email.find('@') == std::string::npos)
        throw ERefusal::BadField("email", "must be an address with an @");
    if (const auto born = ACall.Param("born"))
        reader["born"] = SampleTime::FormatDate(SampleText::Date(*born, "born"));
    if (const auto newsletter = ACall.Param("newsletter"))
        reader["newsletter"] = SampleText::Boolean(*newsletter, "newsletter");
    TJson interests = TJson::array();
    for (const std::string& genre : ACall.Params("interests"))
        interests.push_back(SampleText::OneOf(genre, "interests", TLibraryCatalogue::Genres()));
    reader["interests"] = interests;
    for (const auto& [card, known] : ACatalogue.Readers) {
        if (known["email"] == email)
            throw ERefusal(409, "The reader with card " + card + " has this address.", "email");
    }
    ACatalogue.Readers[reader["card"].get<std::string>()] = reader;
    ACall.Answer(reader, 201);
}

std::string NeedCard(const TSampleCall& ACall, const TLibraryCatalogue& ACatalogue) {
    const std::string card = ACall.Request.get_header_value("Library-Card");
    if (card.empty())
        throw ERefusal::BadField("card", "is missing: it is the header Library-Card");
    if (!ACatalogue.Readers.contains(card))
        throw ERefusal(404, "There is no reader with card \"" + card + "\".", "card");
    return card;
}

/// The terms that were agreed, checked; ADue takes the day on which the medium has to come back.
TJson AgreeTerms(const TJson& ABody, SampleTime::TDay AToday, std::optional<SampleTime::TDay>& ADue) {
    const std::string path = "body.terms";
    const TJson usual{{"type", "days"}, {"value", UsualDays}};
    const TJson terms = ABody.contains("terms") && !ABody["terms"].is_null() ? ABody["terms"] : usual;
    TJsonCheck check(terms, path);
    check.OneOf("type", {"days", "until", "openEnded"}, TJsonCheck::cnNeeded);
    if (terms["type"] == "days") {
        check.Integer("value", 1, 90, TJsonCheck::cnNeeded);
        ADue = AToday + days(terms["value"].get<int>());
    } else if (terms["type"] == "until") {
        check.Text("value", TJsonCheck::cnNeeded);
        ADue = SampleText::Date(terms["value"].get<std::string>(), path + ".value");
        if (*ADue < AToday)
            throw ERefusal::BadField(path + ".value", "lies in the past");
    }
    check.Done();
    return terms;
}

void LendMedium(TSampleCall& ACall, TLibraryCatalogue& ACatalogue) {
    const std::string card = NeedCard(ACall, ACatalogue);
    const std::string branch = SampleText::OneOf(ACall.Cookie("branch").value_or("Harbour"), "branch",
                                                 TLibraryCatalogue::Branches());
    const TJson body = ACall.Body();
    TJsonCheck(body, "body").Integer("mediumId", 1, INT64_MAX, TJsonCheck::cnNeeded).Anything("terms").Done();
    const SampleTime::TInstant now = SampleTime::Now();
    std::optional<SampleTime::TDay> due;
    const TJson terms = AgreeTerms(body, floor<days>(now), due);
    const auto mediumId = body["mediumId"].get<int64_t>();
    const TJson& medium = NeedMedium(ACatalogue, mediumId);
    if (!medium.value("lendable", false))
        throw ERefusal(409, "Medium " + std::to_string(mediumId) + " may not leave the house.");
    if (ACatalogue.CopiesLeft(mediumId) <= 0)
        throw ERefusal(409, "All copies of medium " + std::to_string(mediumId) + " are out.");
    const int64_t id = ACatalogue.Loans.rbegin()->first + 1;
    TJson loan{{"id", id},
               {"mediumId", mediumId},
               {"title", medium["title"]},
               {"card", card},
               {"branch", branch},
               {"terms", terms},
               {"lentAt", SampleTime::FormatInstant(now)}};
    if (due)
        loan["dueOn"] = SampleTime::FormatDate(*due);
    ACatalogue.Loans[id] = loan;
    ACall.Answer(loan, 201);
}

void ListLoans(TSampleCall& ACall, TLibraryCatalogue& ACatalogue) {
    const std::string card = NeedCard(ACall, ACatalogue);
    const auto open = ACall.Param("open");
    TJson found = TJson::array();
    for (const auto& [id, loan] : ACatalogue.Loans) {
        if (loan["card"] == card &&
            (!open || SampleText::Boolean(*open, "open") != loan.contains("returnedAt")))
            found.push_back(loan);
    }
    ACall.Answer(found);
}

void ReturnMedium(TSampleCall& ACall, TLibraryCatalogue& ACatalogue) {
    const auto found = ACatalogue.Loans.find(ACall.PathId());
    if (found == ACatalogue.Loans.end())
        throw ERefusal(404, "There is no loan " + ACall.Path() + ".", "id");
    TJson& loan = found->second;
    if (loan.contains("returnedAt"))
        throw ERefusal(409, "Loan " + ACall.Path() + " has come back already.");
    const SampleTime::TInstant now = SampleTime::Now();
    loan["returnedAt"] = SampleTime::FormatInstant(now);
    double fee = 0;
    if (loan.contains("dueOn")) {
        const auto due = SampleTime::ParseDate(loan["dueOn"].get<std::string>());
        const auto late = floor<days>(now) - due.value_or(SampleTime::TDay());
        fee = std::clamp(static_cast<double>(late.count()) * FeePerDay, 0.0, MaxFee);
    }
    loan["fee"] = fee;
    ACall.Answer(loan);
}

void GetHours(TSampleCall& ACall, TLibraryCatalogue&) {
    SampleText::OneOf(ACall.Path(), "branch", TLibraryCatalogue::Branches());
    const TJson morning{{"opens", "09:00"}, {"closes", "12:30"}};
    const TJson afternoon{{"opens", "14:00"}, {"closes", "18:30"}};
    TJson hours = TJson::object();
    for (const char* day : {"Monday", "Tuesday", "Wednesday", "Thursday", "Friday"})
        hours[day] = TJson::array({morning, afternoon});
    hours["Saturday"] = TJson::array({morning});
    hours["Sunday"] = TJson::array();
    if (ACall.Path() == "University")
        hours["Sunday"].push_back(afternoon);
    ACall.Answer(hours);
}

void PrintReport(TSampleCall& ACall, TLibraryCatalogue&) {
    const int64_t year = SampleText::Integer(ACall.Path(), "year", 1900, 2100);
    ACall.Response.status = 503;
    ACall.Response.set_content("The annual report of " + std::to_string(year) + " cannot be printed.\n" +
                                   "Printer: \"Gutenberg\" in the basement of the Old Town branch.\n" +
                                   "State: out of paper since the last annual report.\n" +
                                   "Please ask the caretaker, and bring chocolate.",
                               "text/plain; charset=utf-8");
}

} // namespace

void AddLendingRoutes(TSampleRoutes& ARoutes, const PCatalogue& ACatalogue) {
    const auto with = [&](void (*AHandler)(TSampleCall&, TLibraryCatalogue&)) {
        return [ACatalogue, AHandler](TSampleCall& ACall) { AHandler(ACall, *ACatalogue); };
    };
    ARoutes.Add("GET", "/authors", with(ListAuthors));
    ARoutes.Add("GET", "/authors/([^/]+)", with(GetAuthor));
    ARoutes.Add("POST", "/readers", with(RegisterReader));
    ARoutes.Add("POST", "/loans", with(LendMedium));
    ARoutes.Add("GET", "/loans", with(ListLoans));
    ARoutes.Add("POST", "/loans/([^/]+)/return", with(ReturnMedium));
    ARoutes.Add("GET", "/branches/([^/]+)/hours", with(GetHours));
    ARoutes.Add("POST", "/reports/([^/]+)", with(PrintReport));
    ARoutes.Add("GET", "/checkouts", [ACatalogue](TSampleCall& ACall) {
        ACall.AnswerShared(ACatalogue->Checkouts(), "application/json");
    });
}

void AddLibraryRoutes(httplib::Server& AServer, const std::string& APrefix, const std::string& AApiKey) {
    TSampleRoutes routes(AServer, APrefix, AApiKey);
    const auto catalogue = std::make_shared<TLibraryCatalogue>();
    AddMediaRoutes(routes, catalogue);
    AddFileRoutes(routes, catalogue);
    AddLendingRoutes(routes, catalogue);
}
