// JSON text into types of every kind: nothing crashes, what is read is valid JSON, and what is written is
// read as the same.
#include "fuzzers/Fuzz.h"

#include "runtime/json/JsonCodec.h"
#include "runtime/types/JsonText.h"
#include "runtime/types/TypeLibrary.h"

#include <nlohmann/json.hpp>

#include <vector>

namespace {

/// Content that is streamed is not part of a JSON text: it is read as nothing.
bool IsStreamed(const TZOTypeInfo* AType) { return AType->Kind() == vkUpload || AType->Kind() == vkDownload; }

/// Types of all kinds, each alone, and all but streams in lists and maps and as properties of a record.
struct TTypes {
    TZOTypeLibrary Library;
    std::vector<const TZOTypeInfo*> All;

    TTypes() {
        for (int kind = vkString; kind <= vkDownload; ++kind)
            All.push_back(TZOTypeLibrary::Scalar(TZOValueKind(kind)));
        const TZOTypeInfo* string = All[vkString];
        const TZOTypeInfo* integer = All[vkInteger];
        const auto* circle = Library.NewObject(QStringLiteral("Circle"))
                                 .Property(QStringLiteral("r"), integer, {.Required = true})
                                 .Type();
        const auto* square =
            Library.NewObject(QStringLiteral("Square")).Property(QStringLiteral("kind"), string).Type();
        All.push_back(Library.NewObject(QStringLiteral("Shape"))
                          .Discriminator(QStringLiteral("kind"))
                          .Subtype(QStringLiteral("circle"), circle)
                          .Subtype(QStringLiteral("square"), square)
                          .Type());
        for (const TZOUnionForm form : {ufTagged, ufBare})
            All.push_back(Library.NewUnion(QStringLiteral("Choice"), QStringLiteral("tag"), form)
                              .Tag(QStringLiteral("i"), integer)
                              .Tag(QStringLiteral("circle"), circle)
                              .Tag(QStringLiteral("texts"), Library.NewList(string))
                              .Tag(QStringLiteral("none"), nullptr)
                              .Type());
        const std::size_t plain = All.size();
        for (std::size_t index = 0; index < plain; ++index) {
            if (IsStreamed(All[index]))
                continue;
            All.push_back(Library.NewList(All[index]));
            All.push_back(Library.NewMap(All[index]));
        }
        TZOObjectBuilder record = Library.NewObject(QStringLiteral("Record"));
        const std::size_t count = All.size();
        for (std::size_t index = 0; index < count; ++index) {
            if (!IsStreamed(All[index]))
                record.Property(QString(QChar(char16_t('a' + index))), All[index]);
        }
        record.Property(QStringLiteral("self"), record.Type());
        All.push_back(record.Type());
    }
};

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
    if (IsStreamed(AType))
        return;
    const QByteArray once = TZOJson::Encode(holder);
    TZOValueHolder again(AType, true);
    TZOJson::Decode(once, again);
    Fuzz::Require(TZOJson::Encode(again) == once, "what was written is read as the same");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* AData, std::size_t ASize) {
    static const TTypes types;
    const QByteArray json = Fuzz::Bytes(AData, ASize);
    const bool valid = JsonText::IsValid(json);
    Fuzz::Require(valid || !IsJsonToOthers(json) || NestsDeeply(json), "valid JSON is taken for such");
    for (const TZOTypeInfo* type : types.All)
        Check(type, json, valid);
    return 0;
}
