#include "samples/SampleHttp_p.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace {

char Lower(char AChar) { return static_cast<char>(std::tolower(static_cast<unsigned char>(AChar))); }

template <class T>
T FromText(const std::string& AText, const std::string& AField, T AMin, T AMax, const std::string& AWhat) {
    T value{};
    const char* end = AText.data() + AText.size();
    const auto [stop, error] = std::from_chars(AText.data(), end, value);
    if (error != std::errc() || stop != end || !(value >= AMin && value <= AMax))
        throw ERefusal::BadField(AField, "must be " + AWhat + ", but was \"" + AText + "\"");
    return value;
}

void Refuse(httplib::Response& AResponse, int AStatus, const std::string& AMessage,
            const std::string& AField = {}) {
    AResponse.status = AStatus;
    AResponse.set_content(SampleErrorText(AStatus, AMessage, AField), "application/json");
}

/// Runs AHandler; whatever it throws becomes the answer.
void Run(const TSampleRoutes::THandler& AHandler, const httplib::Request& ARequest,
         httplib::Response& AResponse) {
    TSampleCall call(ARequest, AResponse);
    try {
        AHandler(call);
    } catch (const ERefusal& refusal) {
        Refuse(AResponse, refusal.Status, refusal.what(), refusal.Field);
    } catch (const std::exception& failure) {
        Refuse(AResponse, 500, failure.what());
    }
}

} // namespace

ERefusal ERefusal::BadField(const std::string& AField, const std::string& AReason) {
    return ERefusal(400, "Field \"" + AField + "\" " + AReason + ".", AField);
}

std::string SampleErrorText(int AStatus, const std::string& AMessage, const std::string& AField) {
    TJson error{{"status", AStatus}, {"message", AMessage}};
    if (!AField.empty())
        error["field"] = AField;
    // Indented, because people read it. Text of the caller's may be no UTF-8; this must not fail on it.
    return error.dump(2, ' ', false, TJson::error_handler_t::replace);
}

namespace SampleText {

int64_t Integer(const std::string& AText, const std::string& AField, int64_t AMin, int64_t AMax) {
    return FromText<int64_t>(AText, AField, AMin, AMax,
                             "a whole number from " + std::to_string(AMin) + " to " + std::to_string(AMax));
}

double Number(const std::string& AText, const std::string& AField, double AMin, double AMax) {
    return FromText<double>(AText, AField, AMin, AMax,
                            "a number from " + TJson(AMin).dump() + " to " + TJson(AMax).dump());
}

bool Boolean(const std::string& AText, const std::string& AField) {
    return OneOf(AText, AField, {"true", "false"}) == "true";
}

SampleTime::TDay Date(const std::string& AText, const std::string& AField) {
    const auto day = SampleTime::ParseDate(AText);
    if (!day)
        throw ERefusal::BadField(AField, "must be a date such as 2024-02-29, but was \"" + AText + "\"");
    return *day;
}

SampleTime::TInstant Instant(const std::string& AText, const std::string& AField) {
    const auto instant = SampleTime::ParseInstant(AText);
    if (!instant)
        throw ERefusal::BadField(AField, "must be a date-time such as 2024-02-29T12:30:00Z, but was \"" +
                                             AText + "\"");
    return *instant;
}

const std::string& OneOf(const std::string& AText, const std::string& AField,
                         const std::vector<std::string>& AAllowed) {
    if (std::find(AAllowed.begin(), AAllowed.end(), AText) != AAllowed.end())
        return AText;
    std::string list;
    for (const std::string& allowed : AAllowed)
        list += (list.empty() ? "" : ", ") + allowed;
    throw ERefusal::BadField(AField, "must be one of " + list + ", but was \"" + AText + "\"");
}

bool Contains(const std::string& AText, const std::string& APart) {
    return std::search(AText.begin(), AText.end(), APart.begin(), APart.end(),
                       [](char a, char b) { return Lower(a) == Lower(b); }) != AText.end() ||
           APart.empty();
}

std::vector<std::string> Split(const std::string& AText, char ASeparator) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (std::size_t end; (end = AText.find(ASeparator, start)) != std::string::npos; start = end + 1)
        parts.push_back(AText.substr(start, end - start));
    parts.push_back(AText.substr(start));
    return parts;
}

} // namespace SampleText

int64_t TSampleCall::PathId() const { return SampleText::Integer(Path(), "id", 1, INT64_MAX); }

std::optional<std::string> TSampleCall::Param(const std::string& AName) const {
    if (!Request.has_param(AName))
        return {};
    return Request.get_param_value(AName);
}

std::string TSampleCall::NeededParam(const std::string& AName) const {
    const auto value = Param(AName);
    if (!value || value->empty())
        throw ERefusal::BadField(AName, "is missing");
    return *value;
}

std::vector<std::string> TSampleCall::Params(const std::string& AName) const {
    std::vector<std::string> values;
    const auto [first, last] = Request.params.equal_range(AName);
    for (auto it = first; it != last; ++it)
        values.push_back(it->second);
    return values;
}

std::optional<std::string> TSampleCall::Cookie(const std::string& AName) const {
    for (std::string pair : SampleText::Split(Request.get_header_value("Cookie"), ';')) {
        pair.erase(0, pair.find_first_not_of(' '));
        const std::size_t equals = pair.find('=');
        if (equals != std::string::npos && pair.substr(0, equals) == AName)
            return httplib::detail::decode_url(pair.substr(equals + 1), false);
    }
    return {};
}

TJson TSampleCall::Body() const {
    TJson body = TJson::parse(Request.body, nullptr, false);
    if (body.is_discarded())
        throw ERefusal::BadField("body", Request.body.empty() ? "is missing" : "is no valid JSON");
    return body;
}

void TSampleCall::Answer(const TJson& AValue, int AStatus) {
    Response.status = AStatus;
    Response.set_content(AValue.dump(), "application/json");
}

void TSampleCall::AnswerShared(std::shared_ptr<const std::string> AText, const std::string& AContentType) {
    const std::size_t size = AText->size();
    Response.status = 200;
    if (size == 0) // which a content provider may not be asked for
        return Response.set_content("", AContentType);
    Response.set_content_provider(
        size, AContentType,
        [text = std::move(AText)](std::size_t AOffset, std::size_t ALength, httplib::DataSink& ASink) {
            return ASink.write(text->data() + AOffset, ALength);
        });
}

TSampleRoutes::TSampleRoutes(httplib::Server& AServer, std::string APrefix, std::string AApiKey)
    : FServer(AServer), FPrefix(std::move(APrefix)), FApiKey(std::move(AApiKey)) {}

void TSampleRoutes::Add(const std::string& AMethod, const std::string& APattern, THandler AHandler) {
    const auto handler = [key = FApiKey, lock = FLock, AHandler](const httplib::Request& ARequest,
                                                                 httplib::Response& AResponse) {
        if (!key.empty() && ARequest.get_header_value("X-Api-Key") != key)
            return Refuse(AResponse, 401, "The header X-Api-Key is missing or holds no valid key.");
        const std::lock_guard guard(*lock);
        Run(AHandler, ARequest, AResponse);
    };
    const std::string pattern = FPrefix + APattern;
    if (AMethod == "GET")
        FServer.Get(pattern, handler);
    else if (AMethod == "POST")
        FServer.Post(pattern, handler);
    else if (AMethod == "PUT")
        FServer.Put(pattern, handler);
    else
        FServer.Delete(pattern, handler);
}

TJson SamplePage(const TSampleCall& ACall, const std::vector<const TJson*>& AItems) {
    const auto total = static_cast<int64_t>(AItems.size());
    const int64_t page = SampleText::Integer(ACall.Param("page").value_or("1"), "page", 1, 1'000'000);
    const int64_t size = SampleText::Integer(ACall.Param("pageSize").value_or("20"), "pageSize", 1, 100);
    const int64_t first = std::min(total, (page - 1) * size);
    const int64_t last = std::min(total, first + size);
    TJson items = TJson::array();
    for (int64_t i = first; i < last; ++i)
        items.push_back(*AItems[static_cast<std::size_t>(i)]);
    return {{"items", std::move(items)},
            {"page", page},
            {"pageSize", size},
            {"total", total},
            {"hasMore", last < total}};
}
