// The large document of @octokit/openapi, beside the parsers that read its bytes and what node makes of it.
#include "benchmarks/OpenApiCold.h"
#include "benchmarks/OpenApiFixture.h"
#include "benchmarks/Table.h"
#include "benchmarks/WindowTiming.h"

#include "openapi/ApiDocument.h"

#include <QFileInfo>

#include <simdjson.h>
#include <yaml.h>

#include <algorithm>

using WindowTiming::Expect;

namespace {

constexpr int OperationCount = 1223;
const std::string Size = "13 MB";

std::unique_ptr<TZOApiDocument> Load(const QString& AFile) {
    auto document = TZOApiDocument::Load(AFile);
    Expect(document && document->ServiceClass() &&
               document->ServiceClass()->TypeInfo()->Opers().size() == OperationCount,
           "the document has another number of operations");
    return document;
}

void ParseDom() {
    const QByteArray& text = OpenApiFixture::Json();
    simdjson::dom::parser parser;
    const auto error =
        parser
            .parse(text.constData(), std::size_t(text.size() - qsizetype(simdjson::SIMDJSON_PADDING)), false)
            .error();
    Expect(!error, "simdjson refuses the document");
}

void ReadYamlEvents() {
    const QByteArray& text = OpenApiFixture::Yaml();
    yaml_parser_t parser;
    yaml_parser_initialize(&parser);
    yaml_parser_set_input_string(&parser, reinterpret_cast<const unsigned char*>(text.constData()),
                                 std::size_t(text.size()));
    for (bool isOver = false; !isOver;) {
        yaml_event_t event;
        Expect(yaml_parser_parse(&parser, &event), "libyaml refuses the document");
        isOver = event.type == YAML_STREAM_END_EVENT;
        yaml_event_delete(&event);
    }
    yaml_parser_delete(&parser);
}

/// What the operation list may take.
double ListBudget() { return 3 * OpenApiFixture::Median(7, &ParseDom) + 50; }

void CheckYaml() {
    const auto json = Load(OpenApiFixture::JsonFile());
    const auto yaml = Load(OpenApiFixture::YamlFile());
    const auto& ours = yaml->ServiceClass()->TypeInfo()->Opers();
    for (std::size_t i = 0; i < ours.size(); ++i)
        Expect(ours[i].Name == json->ServiceClass()->TypeInfo()->Opers()[i].Name, "the YAML differs");
}

/// The longest of fifty operations all over the document.
double FirstUse() {
    const auto document = Load(OpenApiFixture::JsonFile());
    const TZORestService::TTypeInfo* type = document->ServiceClass()->TypeInfo();
    double worst = 0;
    for (std::size_t i = 0; i < OperationCount; i += 24) {
        const double start = OpenApiFixture::Now();
        type->Complete(&type->Opers()[i]);
        worst = std::max(worst, OpenApiFixture::Now() - start);
    }
    return worst;
}

/// Bytes of heap for each byte of the document.
double Memory(bool AIsComplete) {
    const auto before = Bench::HeapInUse();
    const auto document = Load(OpenApiFixture::JsonFile());
    if (AIsComplete)
        document->CompleteAll();
    return double(Bench::HeapInUse() - before) / double(QFileInfo(OpenApiFixture::JsonFile()).size());
}

void AddTimes() {
    const auto check = [] { ParseDom(); };
    const auto load = [] { Load(OpenApiFixture::JsonFile()); };
    const auto loadAll = [] { Load(OpenApiFixture::JsonFile())->CompleteAll(); };
    const auto yaml = [] { Load(OpenApiFixture::YamlFile()); };
    Bench::Compare({"document to operation list", Size, "simdjson DOM", {}}, check, load, &ParseDom);
    Bench::Measure(
        {"document to operation list", Size, "3 simdjson DOM + 50 ms", 1}, "ms",
        [load] { return OpenApiFixture::Median(7, load); }, &ListBudget);
    Bench::Compare({"document to all types", Size, "simdjson DOM", 10}, check, loadAll, &ParseDom);
    Bench::Compare({"YAML document to operation list", Size, "libyaml events", 2.5}, &CheckYaml, yaml,
                   &ReadYamlEvents);
    Bench::Measure({"first use of an operation", Size, "one frame (16 ms)", 1}, "ms", &FirstUse,
                   [] { return 16.0; });
    Bench::Measure(
        {"document to operation list", Size, "swagger-parser bundle", {}}, "ms",
        [load] { return OpenApiFixture::Median(7, load); }, [] { return OpenApiFixture::Node("bundle"); });
    Bench::Measure(
        {"document to all types", Size, "swagger-parser deref", {}}, "ms",
        [loadAll] { return OpenApiFixture::Median(7, loadAll); },
        [] { return OpenApiFixture::Node("dereference"); });
    Bench::Measure(
        {"zoapi operations, a process", Size, "node JSON.parse", {}}, "ms",
        [] { return OpenApiFixture::ZoApi(); }, [] { return OpenApiFixture::Node("parse"); });
}

/// In processes of their own, with the document read from the disk.
void AddColdTimes() {
    using OpenApiCold::Time;
    const auto budget = [] { return 3 * Time("dom") + 50; };
    Bench::Measure(
        {"cold: document to operation list", Size, "3 simdjson DOM + 50 ms", 1}, "ms",
        [] { return Time("list"); }, budget);
    Bench::Measure(
        {"cold: document to all types", Size, "simdjson DOM", 10}, "ms", [] { return Time("all"); },
        [] { return Time("dom"); });
    Bench::Measure(
        {"cold: first use of an operation", Size, "one frame (16 ms)", 1}, "ms", [] { return Time("first"); },
        [] { return 16.0; });
    Bench::Measure(
        {"cold: zoapi operations, a process", Size, "node JSON.parse", {}}, "ms",
        [] { return OpenApiCold::ZoApi(); }, [] { return OpenApiFixture::Node("parse"); });
    Bench::Measure(
        {"cold window: drop to painted list", Size, "3 simdjson DOM + 50 ms", 1}, "ms",
        [] { return Time("window"); }, budget);
}

} // namespace

void AddOpenApiBenchmarks() {
    AddTimes();
    AddColdTimes();
    Bench::Measure(
        {"memory with the list", Size, "bytes of the document", 3}, "bytes", [] { return Memory(false); },
        [] { return 1.0; });
    Bench::Measure(
        {"memory with all types", Size, "bytes of the document", 8}, "bytes", [] { return Memory(true); },
        [] { return 1.0; });
    Bench::Measure(
        {"window: drop to painted list", Size, "3 simdjson DOM + 50 ms", 1}, "ms",
        [] { return OpenApiFixture::Window().ListPainted; }, &ListBudget);
    Bench::Measure(
        {"window: operation to request", Size, "one frame (16 ms)", 1}, "ms",
        [] { return OpenApiFixture::Window().RequestPainted; }, [] { return 16.0; });
    Bench::Measure(
        {"window: key of a search", Size, "one frame (16 ms)", 1}, "ms",
        [] { return OpenApiFixture::Window().KeyPainted; }, [] { return 16.0; });
}
