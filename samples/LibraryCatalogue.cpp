#include "samples/LibraryCatalogue_p.h"

#include <QByteArray>

#include <array>
#include <random>

namespace {

using namespace std::chrono;
using TTexts = std::vector<std::string>;

constexpr int MediumCount = 480;
constexpr int AuthorCount = 60;
constexpr int ReaderCount = 24;
constexpr int LoanCount = 40;
constexpr int CheckoutCount = 100'000;
constexpr SampleTime::TDay Opening = 2004y / May / 3;

const TTexts FirstNames = {"Ada",   "Bruno", "Clara",   "Dmitri", "Elena", "Farid", "Greta", "Hugo",
                           "Ines",  "Jonas", "Katja",   "Luis",   "Mira",  "Nadia", "Oskar", "Petra",
                           "Quinn", "Rosa",  "Stellan", "Teresa", "Ugo",   "Vera",  "Wanda", "Yusuf"};
const TTexts LastNames = {"Almeida", "Berg",   "Castell", "Dahl",  "Eriksen",   "Fontaine", "Grabowski",
                          "Haas",    "Ivanov", "Janssen", "Kerr",  "Lindqvist", "Moreau",   "Nakamura",
                          "Okafor",  "Petit",  "Rossi",   "Sørli", "Tanaka",    "Varga",    "Weiß"};
const TTexts Countries = {"Brazil", "Denmark", "France",  "Germany", "Hungary",
                          "Italy",  "Japan",   "Nigeria", "Poland",  "Portugal"};
const TTexts Adjectives = {"Borrowed", "Distant", "Forgotten", "Golden", "Hidden",     "Last",
                           "Patient",  "Quiet",   "Restless",  "Silver", "Unfinished", "Winter"};
const TTexts Nouns = {"Archive", "Bridge",   "Cartographer", "Ferry",   "Garden", "Harvest", "Island",
                      "Lantern", "Meridian", "Orchard",      "Railway", "Tide",   "Voyage",  "Watchmaker"};
const TTexts Places = {"Aveiro", "Bergen", "Gdańsk", "Kyoto", "Lagos", "Pécs", "the North", "Trieste"};

/// Random choices that are the same on every machine.
class TDice {
public:
    explicit TDice(unsigned ASeed) : FEngine(ASeed) {}

    /// 0 to ACount-1.
    int Below(int ACount) { return static_cast<int>(FEngine() % static_cast<unsigned>(ACount)); }
    int Between(int AFirst, int ALast) { return AFirst + Below(ALast - AFirst + 1); }
    const std::string& Of(const TTexts& ATexts) {
        return ATexts[static_cast<std::size_t>(Below(static_cast<int>(ATexts.size())))];
    }

private:
    std::mt19937 FEngine;
};

std::string MakeTitle(TDice& ADice) {
    switch (ADice.Below(4)) {
    case 0:
        return "The " + ADice.Of(Adjectives) + " " + ADice.Of(Nouns);
    case 1:
        return "The " + ADice.Of(Nouns) + " of " + ADice.Of(Places);
    case 2:
        return "A " + ADice.Of(Nouns) + " in " + ADice.Of(Places);
    default:
        return ADice.Of(FirstNames) + " and the " + ADice.Of(Nouns);
    }
}

std::string MakeName(TDice& ADice) { return ADice.Of(FirstNames) + " " + ADice.Of(LastNames); }

void AddBookFields(TJson& AMedium, int AId, TDice& ADice) {
    std::string digits = std::to_string(AId * 7);
    digits.insert(0, 7 - digits.size(), '0');
    AMedium["isbn"] = CompleteIsbn("97912" + digits);
    AMedium["pages"] = ADice.Between(90, 900);
    TJson authors = TJson::array({ADice.Between(1, AuthorCount / 2)});
    if (ADice.Below(5) == 0)
        authors.push_back(ADice.Between(AuthorCount / 2 + 1, AuthorCount));
    AMedium["authorIds"] = authors;
}

void AddFilmFields(TJson& AMedium, TDice& ADice) {
    AMedium["director"] = MakeName(ADice);
    AMedium["minutes"] = ADice.Between(62, 190);
    AMedium["subtitles"] = ADice.Below(2) ? TJson{"de", "en", "pt"} : TJson{"en"};
}

void AddRecordingFields(TJson& AMedium, TDice& ADice) {
    AMedium["artist"] = MakeName(ADice);
    TJson tracks = TJson::array();
    for (int i = ADice.Between(3, 9); i > 0; --i)
        tracks.push_back({{"title", MakeTitle(ADice)}, {"seconds", ADice.Between(95, 620)}});
    AMedium["tracks"] = tracks;
}

TJson MakeMedium(int AId, TDice& ADice) {
    static const TTexts kinds = {"book", "book", "film", "recording"};
    const std::string& kind = kinds[static_cast<std::size_t>((AId - 1) % 4)];
    TJson medium{{"kind", kind},
                 {"id", AId},
                 {"title", MakeTitle(ADice)},
                 {"year", ADice.Between(kind == "book" ? 1890 : 1955, 2023)},
                 {"genre", ADice.Of(TLibraryCatalogue::Genres())},
                 {"rating", ADice.Between(20, 50) / 10.0},
                 {"lendable", ADice.Below(10) != 0 || AId <= 8}};
    TJson copies = TJson::object();
    for (const std::string& branch : TLibraryCatalogue::Branches()) {
        if (ADice.Below(2))
            copies[branch] = ADice.Between(1, 4);
    }
    if (copies.empty())
        copies[TLibraryCatalogue::Branches().front()] = 2;
    medium["copies"] = copies;
    if (AId % 6 == 1)
        medium["notes"] = {{"shelf", std::string(1, char('A' + ADice.Below(20))) + std::to_string(AId)},
                           {"repaired", TJson::array({2011, 2019})},
                           {"donor", nullptr}};
    const auto added = Opening + days(ADice.Below(7000)) + minutes(ADice.Between(480, 1080));
    medium["addedAt"] = SampleTime::FormatInstant(added);
    if (kind == "book")
        AddBookFields(medium, AId, ADice);
    else if (kind == "film")
        AddFilmFields(medium, ADice);
    else
        AddRecordingFields(medium, ADice);
    return medium;
}

TJson MakeAuthor(int AId, TDice& ADice) {
    const SampleTime::TDay born = sys_days(1870y / January / 1) + days(ADice.Below(43'000));
    TJson author{{"id", AId},
                 {"name", MakeName(ADice)},
                 {"country", ADice.Of(Countries)},
                 {"born", SampleTime::FormatDate(born)}};
    if (born < sys_days(1940y / January / 1))
        author["died"] = SampleTime::FormatDate(born + days(ADice.Between(15'000, 31'000)));
    author["books"] = TJson::array();
    return author;
}

TJson MakeReader(const std::string& ACard, TDice& ADice) {
    const std::string first = ADice.Of(FirstNames);
    const std::string last = ADice.Of(LastNames);
    return {{"card", ACard},
            {"name", first + " " + last},
            {"email", "reader" + ACard.substr(2) + "@library.example"},
            {"born", SampleTime::FormatDate(sys_days(1940y / January / 1) + days(ADice.Below(25'000)))},
            {"newsletter", ADice.Below(2) == 1},
            {"interests", TJson::array({ADice.Of(TLibraryCatalogue::Genres())})},
            {"address",
             {{"street", std::to_string(ADice.Between(1, 180)) + " " + ADice.Of(Nouns) + " Street"},
              {"city", "Port Meridian"}}}};
}

TJson MakeLoan(int AId, const TLibraryCatalogue& ACatalogue, TDice& ADice) {
    const int mediumId = 8 + AId * 11;
    const SampleTime::TDay day = sys_days(2024y / January / 8) + days(AId * 3);
    TJson loan{{"id", AId},
               {"mediumId", mediumId},
               {"title", ACatalogue.Media.at(mediumId).at("title")},
               {"card", "R-" + std::to_string(1001 + (AId - 1) % ReaderCount)},
               {"branch", ADice.Of(TLibraryCatalogue::Branches())}};
    if (AId % 3 == 0)
        loan["terms"] = {{"type", "openEnded"}};
    else if (AId % 3 == 1)
        loan["terms"] = {{"type", "days"}, {"value", 28}};
    else
        loan["terms"] = {{"type", "until"}, {"value", SampleTime::FormatDate(day + days(40))}};
    loan["lentAt"] = SampleTime::FormatInstant(day + minutes(ADice.Between(540, 1080)));
    if (AId % 3 != 0)
        loan["dueOn"] = SampleTime::FormatDate(day + days(AId % 3 == 1 ? 28 : 40));
    if (AId % 4 == 0) {
        loan["returnedAt"] = SampleTime::FormatInstant(day + days(20) + minutes(700));
        loan["fee"] = 0.0;
    }
    return loan;
}

/// ACount quarters as a decimal number.
std::string Quarters(int ACount) {
    static const TTexts fractions = {".0", ".25", ".5", ".75"};
    return std::to_string(ACount / 4) + fractions[static_cast<std::size_t>(ACount % 4)];
}

uint32_t Crc32(const std::string& AText) {
    uint32_t crc = ~0u;
    for (const char byte : AText) {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

std::string BigEndian(uint32_t AValue) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(AValue >> shift);
    return bytes;
}

std::string PngChunk(const std::string& ATypeAndData) {
    return BigEndian(static_cast<uint32_t>(ATypeAndData.size() - 4)) + ATypeAndData +
           BigEndian(Crc32(ATypeAndData));
}

} // namespace

TLibraryCatalogue::TLibraryCatalogue() {
    TDice dice(1904);
    for (int id = 1; id <= AuthorCount; ++id)
        Authors[id] = MakeAuthor(id, dice);
    for (int id = 1; id <= MediumCount; ++id) {
        Media[id] = MakeMedium(id, dice);
        if (Media[id]["kind"] == "book") {
            for (const TJson& author : Media[id]["authorIds"])
                Authors[author.get<int64_t>()]["books"].push_back(id);
        }
    }
    for (int i = 0; i < ReaderCount; ++i) {
        const std::string card = "R-" + std::to_string(1001 + i);
        Readers[card] = MakeReader(card, dice);
    }
    for (int id = 1; id <= LoanCount; ++id)
        Loans[id] = MakeLoan(id, *this, dice);
}

int64_t TLibraryCatalogue::CopiesLeft(int64_t AMediumId) const {
    int64_t left = 0;
    const TJson& medium = Media.at(AMediumId);
    if (const auto copies = medium.find("copies"); copies != medium.end()) {
        for (const TJson& count : *copies)
            left += count.get<int64_t>();
    }
    for (const auto& [id, loan] : Loans) {
        if (loan.at("mediumId") == AMediumId && !loan.contains("returnedAt"))
            --left;
    }
    return left;
}

std::shared_ptr<const std::string> TLibraryCatalogue::Checkouts() {
    if (FCheckouts)
        return FCheckouts;
    // A JSON object per record would cost more than all the rest, so only the titles go through one.
    TDice dice(1907);
    TTexts titles;
    for (int i = 0; i < MediumCount; ++i)
        titles.push_back(TJson(MakeTitle(dice)).dump());
    std::string text = "[";
    text.reserve(std::size_t(CheckoutCount) * 190);
    for (int id = 1; id <= CheckoutCount; ++id) {
        const int medium = dice.Between(1, MediumCount);
        const int lateDays = dice.Below(12) == 0 ? dice.Between(1, 40) : 0;
        const auto at = Opening + days(id / 16) + minutes(480 + id % 16 * 40) + seconds(dice.Below(2400));
        text += id > 1 ? ",{\"id\":" : "{\"id\":";
        text += std::to_string(id);
        text += ",\"mediumId\":" + std::to_string(medium);
        text += ",\"title\":" + titles[static_cast<std::size_t>(medium - 1)];
        text += ",\"branch\":\"" + dice.Of(Branches());
        text += "\",\"at\":\"" + SampleTime::FormatInstant(at);
        text += "\",\"days\":" + std::to_string(28 + lateDays);
        text += lateDays > 0 ? ",\"late\":true" : ",\"late\":false";
        text += ",\"fee\":" + Quarters(lateDays) + "}";
    }
    text += "]";
    FCheckouts = std::make_shared<const std::string>(std::move(text));
    return FCheckouts;
}

const std::vector<std::string>& TLibraryCatalogue::Genres() {
    static const TTexts genres = {"biography", "crime",  "drama",   "fantasy",
                                  "history",   "poetry", "science", "travel"};
    return genres;
}

const std::vector<std::string>& TLibraryCatalogue::Branches() {
    static const TTexts branches = {"Harbour", "Hillside", "Old Town", "University"};
    return branches;
}

const std::vector<std::string>& TLibraryCatalogue::Kinds() {
    static const TTexts kinds = {"book", "film", "recording"};
    return kinds;
}

std::string PaintCover(int64_t AMediumId) {
    constexpr uint32_t width = 120;
    constexpr uint32_t height = 180;
    const auto seed = static_cast<uint32_t>(AMediumId * 2654435761);
    std::string rows;
    for (uint32_t y = 0; y < height; ++y) {
        rows += '\0'; // the row is not filtered
        const bool band = y / 20 % 9 == seed % 7 + 1;
        for (uint32_t x = 0; x < width; ++x) {
            const bool spine = x < 8;
            rows += static_cast<char>(spine ? 40 : band ? 240 : (seed >> 8) % 180 + y / 3);
            rows += static_cast<char>(spine ? 40 : band ? 235 : (seed >> 16) % 180 + y / 3);
            rows += static_cast<char>(spine ? 50 : band ? 220 : (seed >> 24) % 180 + x / 3);
        }
    }
    // qCompress puts a length of four bytes before the zlib stream.
    const std::string data = qCompress(QByteArray::fromStdString(rows)).mid(4).toStdString();
    const std::string header("\x08\x02\0\0\0", 5); // 8 bits, RGB, no interlace
    return std::string("\x89PNG\r\n\x1a\n") +
           PngChunk("IHDR" + BigEndian(width) + BigEndian(height) + header) + PngChunk("IDAT" + data) +
           PngChunk("IEND");
}

std::string CompleteIsbn(const std::string& AFirst12) {
    int sum = 0;
    for (std::size_t i = 0; i < AFirst12.size(); ++i)
        sum += (AFirst12[i] - '0') * (i % 2 ? 3 : 1);
    return AFirst12 + static_cast<char>('0' + (10 - sum % 10) % 10);
}
