#include "samples/JsonCheck_p.h"

TJsonCheck::TJsonCheck(const TJson& AObject, std::string APath) : FObject(AObject), FPath(std::move(APath)) {
    if (!AObject.is_object())
        throw ERefusal::BadField(FPath, "must be an object");
}

const TJson* TJsonCheck::Take(const std::string& AName, const std::string& AWhat,
                              bool (TJson::*AIsKind)() const noexcept, TNeed ANeed) {
    FKnown.insert(AName);
    const auto found = FObject.find(AName);
    if (found == FObject.end() || found->is_null()) {
        if (ANeed == cnNeeded)
            throw ERefusal::BadField(FieldPath(AName), "is missing");
        return nullptr;
    }
    if (!((*found).*AIsKind)())
        throw ERefusal::BadField(FieldPath(AName), "must be " + AWhat);
    return &*found;
}

TJsonCheck& TJsonCheck::Text(const std::string& AName, TNeed ANeed) {
    const TJson* text = Take(AName, "a text", &TJson::is_string, ANeed);
    if (text && ANeed == cnNeeded && text->get_ref<const std::string&>().empty())
        throw ERefusal::BadField(FieldPath(AName), "is empty");
    return *this;
}

TJsonCheck& TJsonCheck::OneOf(const std::string& AName, const std::vector<std::string>& AAllowed,
                              TNeed ANeed) {
    if (const TJson* text = Take(AName, "a text", &TJson::is_string, ANeed))
        SampleText::OneOf(text->get_ref<const std::string&>(), FieldPath(AName), AAllowed);
    return *this;
}

TJsonCheck& TJsonCheck::Integer(const std::string& AName, int64_t AMin, int64_t AMax, TNeed ANeed) {
    if (const TJson* number = Take(AName, "a whole number", &TJson::is_number_integer, ANeed))
        CheckInteger(*number, FieldPath(AName), AMin, AMax);
    return *this;
}

TJsonCheck& TJsonCheck::Number(const std::string& AName, double AMin, double AMax) {
    if (const TJson* number = Take(AName, "a number", &TJson::is_number)) {
        if (!(*number >= AMin && *number <= AMax))
            throw ERefusal::BadField(FieldPath(AName),
                                     "must be from " + TJson(AMin).dump() + " to " + TJson(AMax).dump());
    }
    return *this;
}

TJsonCheck& TJsonCheck::Boolean(const std::string& AName) {
    Take(AName, "true or false", &TJson::is_boolean);
    return *this;
}

TJsonCheck& TJsonCheck::Instant(const std::string& AName) {
    if (const TJson* text = Take(AName, "a date-time", &TJson::is_string))
        SampleText::Instant(text->get_ref<const std::string&>(), FieldPath(AName));
    return *this;
}

TJsonCheck& TJsonCheck::Anything(const std::string& AName) {
    FKnown.insert(AName);
    return *this;
}

void TJsonCheck::Done() {
    for (const auto& [name, value] : FObject.items()) {
        if (!FKnown.contains(name))
            throw ERefusal::BadField(FieldPath(name), "is unknown");
    }
}

void TJsonCheck::CheckInteger(const TJson& AValue, const std::string& APath, int64_t AMin, int64_t AMax) {
    if (!AValue.is_number_integer() || AValue < AMin || AValue > AMax)
        throw ERefusal::BadField(APath, "must be a whole number from " + std::to_string(AMin) + " to " +
                                            std::to_string(AMax));
}

void TJsonCheck::CheckText(const TJson& AValue, const std::string& APath) {
    if (!AValue.is_string())
        throw ERefusal::BadField(APath, "must be a text");
}
