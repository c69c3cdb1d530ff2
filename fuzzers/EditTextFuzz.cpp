// Text typed into a value of every kind: it is taken or refused, and what is shown of it is taken again.
#include "fuzzers/Fuzz.h"

#include "jsoneditor/values/ValueText.h"

#include "platform/Exceptions.h"
#include "runtime/types/TypeLibrary.h"
#include "runtime/types/ValueHolder.h"

namespace {

void Check(const TZOTypeInfo* AType, const QString& AText) {
    TZOValueHolder holder(AType, true);
    void* value = nullptr;
    holder.GetByRef(value);
    try {
        ValueText::FromText(AType, AText, value);
    } catch (const EConvertError&) {
        return;
    }
    const QString shown = ValueText::ToText(AType, value);
    if (AType->Kind() == vkInt64)
        return; // what a server sent may be longer than what can be typed
    ValueText::FromText(AType, shown, value);
    Fuzz::Require(ValueText::ToText(AType, value) == shown, "what is shown is taken as the same");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* AData, std::size_t ASize) {
    const QString text = QString::fromUtf8(Fuzz::Bytes(AData, ASize));
    for (int kind = vkString; kind <= vkAny; ++kind)
        Check(TZOTypeLibrary::Scalar(TZOValueKind(kind)), text);
    if (!text.isEmpty()) {
        const ValueText::TMatcher matcher(text);
        Fuzz::Require(matcher.Matches(text), "a text is found in itself");
    }
    return 0;
}
