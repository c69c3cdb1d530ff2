// Checks the fields of a JSON object that a client sent.
#pragma once

#include "samples/SampleHttp_p.h"

#include <set>

/// Each check is a 400 that names the field when it is not kept. A field that is missing or null is only an
/// error when it is needed.
class TJsonCheck {
public:
    enum TNeed { cnOptional, cnNeeded };

    /// AObject must outlive the check. APath is what the field names of messages begin with.
    TJsonCheck(const TJson& AObject, std::string APath);

    TJsonCheck& Text(const std::string& AName, TNeed ANeed = cnOptional);
    TJsonCheck& OneOf(const std::string& AName, const std::vector<std::string>& AAllowed,
                      TNeed ANeed = cnOptional);
    TJsonCheck& Integer(const std::string& AName, int64_t AMin, int64_t AMax, TNeed ANeed = cnOptional);
    TJsonCheck& Number(const std::string& AName, double AMin, double AMax);
    TJsonCheck& Boolean(const std::string& AName);
    TJsonCheck& Instant(const std::string& AName);
    TJsonCheck& Anything(const std::string& AName);
    /// Calls ACheck(element, its path) for each element.
    template <class TCheck>
    TJsonCheck& List(const std::string& AName, TCheck ACheck) {
        if (const TJson* list = Take(AName, "a list", &TJson::is_array)) {
            for (std::size_t i = 0; i < list->size(); ++i)
                ACheck((*list)[i], FieldPath(AName) + "[" + std::to_string(i) + "]");
        }
        return *this;
    }
    /// Calls ACheck(value, its path) for each entry of an object.
    template <class TCheck>
    TJsonCheck& Map(const std::string& AName, TCheck ACheck) {
        if (const TJson* map = Take(AName, "an object", &TJson::is_object)) {
            for (const auto& [key, value] : map->items())
                ACheck(value, FieldPath(AName) + "." + key);
        }
        return *this;
    }
    /// Refuses fields that no check asked for.
    void Done();

    static void CheckInteger(const TJson& AValue, const std::string& APath, int64_t AMin, int64_t AMax);
    static void CheckText(const TJson& AValue, const std::string& APath);

private:
    std::string FieldPath(const std::string& AName) const { return FPath + "." + AName; }
    const TJson* Take(const std::string& AName, const std::string& AWhat,
                      bool (TJson::*AIsKind)() const noexcept, TNeed ANeed = cnOptional);

    const TJson& FObject;
    std::string FPath;
    std::set<std::string> FKnown;
};
