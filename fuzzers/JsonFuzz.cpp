// JSON text into types of every kind: nothing crashes, what is read is valid JSON, and what is written is
// read as the same.
#include "fuzzers/AllTypes.h"
#include "fuzzers/Fuzz.h"

#include "runtime/json/JsonCodec.h"
#include "runtime/types/JsonText.h"

#include <nlohmann/json.hpp>

namespace {

/// Whether another parser takes AJson. It skips a byte order mark and stops at a zero byte, which are no
/// JSON.
bool IsJsonToOthers(const QByteArray& AJson) {
    return !AJson.startsWith("\xEF\xBB\xBF") && !AJson.contains('\0') &&
           nlohmann::json::accept(AJson.begin(), AJson.end());
}

bool NestsDeeply(const QByteArray& AJson) {
    return AJson.count('[') + AJson.count('{') >= JsonText::MaxDepth;
}

void Check(const TZOTypeInfo* AType, const QByteArray& AJson, bool AIsValid) {
    TZOValueHolder holder(AType, true);
    try {
        TZOJson::Decode(AJson, holder);
    } catch (const EZOJsonError&) {
        Fuzz::Require(!holder.HasValue(), "a value that could not be read is absent");
        return;
    }
    Fuzz::Require(AIsValid, "what is read is JSON");
    if (Fuzz::IsStreamed(AType))
        return;
    const QByteArray once = TZOJson::Encode(holder);
    TZOValueHolder again(AType, true);
    TZOJson::Decode(once, again);
    Fuzz::Require(TZOJson::Encode(again) == once, "what was written is read as the same");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* AData, std::size_t ASize) {
    static const Fuzz::TAllTypes types;
    const QByteArray json = Fuzz::Bytes(AData, ASize);
    const bool valid = JsonText::IsValid(json);
    Fuzz::Require(valid || !IsJsonToOthers(json) || NestsDeeply(json), "valid JSON is taken for such");
    for (const TZOTypeInfo* type : types.All)
        Check(type, json, valid);
    return 0;
}
