// Any-values: what is taken for JSON is given back with every digit and key where it was.
#include "fuzzers/Fuzz.h"

#include "runtime/types/Any.h"
#include "runtime/types/JsonText.h"

namespace {

/// ABytes without the white space that JSON allows between tokens.
QByteArray Compact(const QByteArray& ABytes) {
    QByteArray result;
    bool quoted = false;
    for (qsizetype index = 0; index < ABytes.size(); ++index) {
        const char sign = ABytes[index];
        if (!quoted && (sign == ' ' || sign == '\t' || sign == '\n' || sign == '\r'))
            continue;
        result.append(sign);
        if (quoted && sign == '\\')
            result.append(ABytes[++index]);
        else if (sign == '"')
            quoted = !quoted;
    }
    return result;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* AData, std::size_t ASize) {
    const QByteArray bytes = Fuzz::Bytes(AData, ASize);
    const QString text = QString::fromUtf8(bytes);
    if (text.toUtf8() == bytes)
        Fuzz::Require(ZOAny::IsValidJson(text) == JsonText::IsValid(bytes),
                      "text and its UTF-8 are judged alike");
    if (!ZOAny::IsValidJson(text))
        return 0;
    const ZOAny value = ZOAny::FromJson(text);
    Fuzz::Require(value.GetJsonUtf8() == Compact(text.toUtf8()), "nothing but white space is lost");
    Fuzz::Require(ZOAny::IsValidJson(value.GetJson()), "what is given back is JSON");
    Fuzz::Require(ZOAny::FromJson(value.GetJson()).GetJsonUtf8() == value.GetJsonUtf8(),
                  "reading it again changes nothing");
    return 0;
}
