#include "benchmarks/JsonFixture.h"
#include "benchmarks/Table.h"

#include "runtime/json/JsonCodec.h"

#include <nlohmann/json.hpp>
#include <simdjson.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <map>
#include <memory>
#include <stdexcept>

namespace {

/// What the peers have made of one fixture.
struct TParsed {
    explicit TParsed(int AMegabytes) : Fixture(AMegabytes), Ours(Fixture.Type(), true) {}

    TJsonFixture Fixture;
    TZOValueHolder Ours;
    nlohmann::json Nlohmann;
    QJsonDocument Qt;

    std::string_view Text() const { return {Fixture.Json().constData(), std::size_t(Fixture.Json().size())}; }
};

/// Both sizes are kept: benchmarks of different sizes take turns.
TParsed& Parsed(int AMegabytes) {
    static std::map<int, std::unique_ptr<TParsed>> parsed;
    auto& entry = parsed[AMegabytes];
    if (!entry)
        entry = std::make_unique<TParsed>(AMegabytes);
    return *entry;
}

void Expect(bool AHolds, const char* AWhat) {
    if (!AHolds)
        throw std::runtime_error(AWhat);
}

void DecodeOurs(int AMegabytes) {
    TParsed& parsed = Parsed(AMegabytes);
    TZOValueHolder holder(parsed.Fixture.Type(), true);
    TZOJson::Decode(parsed.Fixture.Json(), holder);
}

void ParseDom(int AMegabytes) {
    simdjson::dom::parser parser;
    const auto text = Parsed(AMegabytes).Text();
    Expect(!parser.parse(text.data(), text.size()).error(), "simdjson refuses the text");
}

/// With a parser that has its memory from the time before.
void ParseDomAgain(int AMegabytes) {
    static simdjson::dom::parser parser;
    const auto text = Parsed(AMegabytes).Text();
    Expect(!parser.parse(text.data(), text.size()).error(), "simdjson refuses the text");
}

void CheckDecoding(int AMegabytes) {
    TParsed& parsed = Parsed(AMegabytes);
    TZOJson::Decode(parsed.Fixture.Json(), parsed.Ours);
    void* ref = nullptr;
    Expect(parsed.Ours.GetValue(ref), "nothing was decoded");
    Expect(TJsonFixture::PagesOf(*static_cast<ZOList*>(ref)) == parsed.Fixture.Pages(), "our pages differ");
    parsed.Nlohmann = nlohmann::json::parse(parsed.Text());
    qint64 sum = 0;
    for (const auto& book : parsed.Nlohmann)
        sum += book["pages"].get<qint64>();
    Expect(sum == parsed.Fixture.Pages(), "nlohmann's pages differ");
    parsed.Qt = QJsonDocument::fromJson(parsed.Fixture.Json());
    Expect(parsed.Qt.array().size() == parsed.Fixture.Count(), "Qt's count differs");
}

void CheckEncoding(int AMegabytes) {
    CheckDecoding(AMegabytes);
    TParsed& parsed = Parsed(AMegabytes);
    auto again = nlohmann::json::parse(TZOJson::Encode(parsed.Ours).toStdString());
    auto expected = parsed.Nlohmann;
    for (auto& book : expected)
        book.erase("_links");
    Expect(again == expected, "what we encode reads back differently");
}

double HeapOf(const std::function<void(std::shared_ptr<void>&)>& AMake) {
    const auto before = Bench::HeapInUse();
    std::shared_ptr<void> kept;
    AMake(kept);
    return double(Bench::HeapInUse() - before);
}

void AddSize(int AMegabytes) {
    const std::string size = std::to_string(AMegabytes) + " MB";
    const auto check = [=] { CheckDecoding(AMegabytes); };
    const auto ours = [=] { DecodeOurs(AMegabytes); };
    // A peer with memory that another one has left is a faster peer.
    Bench::Group("json, simdjson, " + size);
    Bench::Compare({"decode JSON", size, "simdjson DOM", 2.5}, check, ours, [=] { ParseDom(AMegabytes); });
    Bench::Compare({"decode JSON", size, "simdjson DOM, warm", {}}, check, ours,
                   [=] { ParseDomAgain(AMegabytes); });
    Bench::Group("json, others, " + size);
    Bench::Compare({"decode JSON", size, "nlohmann/json", {}}, check, ours,
                   [=] { const auto json = nlohmann::json::parse(Parsed(AMegabytes).Text()); });
    Bench::Compare({"decode JSON", size, "QJsonDocument", {}}, check, ours,
                   [=] { const auto json = QJsonDocument::fromJson(Parsed(AMegabytes).Fixture.Json()); });
    const auto checkEncoding = [=] { CheckEncoding(AMegabytes); };
    const auto encode = [=] { const QByteArray json = TZOJson::Encode(Parsed(AMegabytes).Ours); };
    Bench::Compare({"encode JSON", size, "nlohmann/json", {}}, checkEncoding, encode,
                   [=] { const auto json = Parsed(AMegabytes).Nlohmann.dump(); });
    Bench::Compare({"encode JSON", size, "QJsonDocument", {}}, checkEncoding, encode,
                   [=] { const auto json = Parsed(AMegabytes).Qt.toJson(QJsonDocument::Compact); });
    const auto perByte = [=](double ABytes) {
        return ABytes / double(Parsed(AMegabytes).Fixture.Json().size());
    };
    const auto oursInMemory = [=] {
        TParsed& parsed = Parsed(AMegabytes);
        return perByte(HeapOf([&](auto& kept) {
            auto holder = std::make_shared<TZOValueHolder>(parsed.Fixture.Type(), true);
            TZOJson::Decode(parsed.Fixture.Json(), *holder);
            kept = holder;
        }));
    };
    Bench::Group("json, memory, " + size);
    Bench::Measure({"memory per JSON byte", size, "nlohmann/json", {}}, "bytes", oursInMemory, [=] {
        const auto text = Parsed(AMegabytes).Text();
        return perByte(HeapOf(
            [&](auto& kept) { kept = std::make_shared<nlohmann::json>(nlohmann::json::parse(text)); }));
    });
    Bench::Measure({"memory per JSON byte", size, "simdjson DOM", {}}, "bytes", oursInMemory, [=] {
        const auto text = Parsed(AMegabytes).Text();
        return perByte(HeapOf([&](auto& kept) {
            auto parser = std::make_shared<simdjson::dom::parser>();
            Expect(!parser->parse(text.data(), text.size()).error(), "simdjson refuses the text");
            kept = parser;
        }));
    });
}

} // namespace

void AddJsonBenchmarks() {
    AddSize(10);
    AddSize(100);
}
