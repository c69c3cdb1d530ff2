// Values of a request set by paths, one a line: each is taken or refused with a message, and what stands
// then can be written and freed.
#include "fuzzers/AllTypes.h"
#include "fuzzers/Fuzz.h"

#include "hosts/zoapi/Arguments.h"
#include "hosts/zoapi/RequestPath.h"
#include "platform/Utf8.h"
#include "runtime/json/JsonCodec.h"
#include "runtime/types/JsonText.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* AData, std::size_t ASize) {
    static const Fuzz::TAllTypes types;
    TZOValueHolder request(types.All.back(), true);
    for (const QByteArray& line : Fuzz::Bytes(AData, ASize).split('\n')) {
        const qsizetype equals = line.indexOf('=');
        if (equals < 0)
            continue;
        const QString path = TextFromUtf8(line.first(equals));
        try {
            RequestPath::Set(request, path, TextFromUtf8(line.sliced(equals + 1)));
            Fuzz::Require(RequestPath::Reach(request, path).Type, "what was set is there");
        } catch (const EZOUsageError& error) {
            Fuzz::Require(!error.Message().isEmpty(), "a refusal says why");
        }
    }
    const QByteArray json = TZOJson::Encode(request);
    TZOValueHolder any(TZOTypeLibrary::Scalar(vkAny), true);
    try {
        TZOJson::Decode(json, any);
    } catch (const EZOJsonDepthError&) {
        // A value with parts of its own may stand where the longest path leads.
        Fuzz::Require(json.count('{') + json.count('[') > JsonText::MaxDepth, "it nests deeper than is read");
    }
    return 0;
}
