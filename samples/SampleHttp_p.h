// What the sample server's handlers share: refusals, checked parameters, and routes.
#pragma once

#include "samples/SampleTime_p.h"

#include <httplib.h>
#include <nlohmann/json.hpp>

#include <functional>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

using TJson = nlohmann::ordered_json;

/// Ends a handler with an error answer.
class ERefusal : public std::runtime_error {
public:
    ERefusal(int AStatus, const std::string& AMessage, std::string AField = {})
        : std::runtime_error(AMessage), Status(AStatus), Field(std::move(AField)) {}

    /// A 400 that names the field at fault.
    static ERefusal BadField(const std::string& AField, const std::string& AReason);

    int Status;
    std::string Field;
};

/// Values from texts; anything else is a 400 that names AField.
namespace SampleText {

int64_t Integer(const std::string& AText, const std::string& AField, int64_t AMin, int64_t AMax);
double Number(const std::string& AText, const std::string& AField, double AMin, double AMax);
bool Boolean(const std::string& AText, const std::string& AField);
SampleTime::TDay Date(const std::string& AText, const std::string& AField);
SampleTime::TInstant Instant(const std::string& AText, const std::string& AField);
const std::string& OneOf(const std::string& AText, const std::string& AField,
                         const std::vector<std::string>& AAllowed);
/// Whether AText contains APart, ASCII letters compared without case.
bool Contains(const std::string& AText, const std::string& APart);
std::vector<std::string> Split(const std::string& AText, char ASeparator);

} // namespace SampleText

/// One request, with its parameters by place.
class TSampleCall {
public:
    TSampleCall(const httplib::Request& ARequest, httplib::Response& AResponse)
        : Request(ARequest), Response(AResponse) {}

    /// The path's only variable part.
    std::string Path() const { return Request.matches[1].str(); }
    int64_t PathId() const;
    /// A query parameter or form field; nothing when it was not sent.
    std::optional<std::string> Param(const std::string& AName) const;
    std::string NeededParam(const std::string& AName) const;
    /// All values of a repeated parameter.
    std::vector<std::string> Params(const std::string& AName) const;
    std::optional<std::string> Cookie(const std::string& AName) const;
    /// The body as JSON; a 400 when it is none.
    TJson Body() const;

    void Answer(const TJson& AValue, int AStatus = 200);
    /// Sends AText without copying it.
    void AnswerShared(std::shared_ptr<const std::string> AText, const std::string& AContentType);

    const httplib::Request& Request;
    httplib::Response& Response;
};

/// Adds the handlers of one service to a server. Handlers run one at a time.
class TSampleRoutes {
public:
    using THandler = std::function<void(TSampleCall&)>;

    /// APrefix is where the service's paths begin. A call without AApiKey is refused; empty: none is needed.
    TSampleRoutes(httplib::Server& AServer, std::string APrefix, std::string AApiKey);

    /// APattern is a regular expression for the path behind the prefix.
    void Add(const std::string& AMethod, const std::string& APattern, THandler AHandler);

private:
    httplib::Server& FServer;
    std::string FPrefix;
    std::string FApiKey;
    std::shared_ptr<std::mutex> FLock = std::make_shared<std::mutex>();
};

/// The body of an error answer.
std::string SampleErrorText(int AStatus, const std::string& AMessage, const std::string& AField = {});

/// Slices a list into the page that the parameters "page" and "pageSize" ask for.
TJson SamplePage(const TSampleCall& ACall, const std::vector<const TJson*>& AItems);
