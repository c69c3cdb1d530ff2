// One request of one operation: its value, and its execution.
#pragma once

#include "runtime/service/RestService.h"

#include "runtime/types/ValueHolder.h"

struct TZOHttpRecord;
struct TZOHttpRequest;
struct TZOHttpResponse;

/// Binds a service instance to an operation's request type and holds the request value.
class ZORequest {
public:
    /// AService must outlive the request. AOperation is the Request type of one of its operations; any
    /// other raises EInvalidCast. The value starts as an object without properties.
    ZORequest(TZORestService* AService, const TZOTypeInfo* AOperation);
    ZORequest(ZORequest&&) noexcept;
    ZORequest& operator=(ZORequest&&) noexcept;
    ~ZORequest();

    const TZOTypeInfo* Type() const;
    /// Storage of the request value: the reference to its object, in a place that stays the same while the
    /// request is moved. The reference is null while the value is absent; then the request is sent without
    /// any property.
    void* Data();

    /// Sends the request on the calling thread and stores the decoded response in AResponse, a holder of
    /// the operation's response type. An answer without content makes it absent. A download is written to
    /// the stream that AResponse already carries. Raises one of runtime/types/Failures.h; AResponse is
    /// absent then (a download keeps its stream). An operation that needs a token gets one first, by the
    /// refresh token or else by asking the user; a token that the server does not take is renewed once, and
    /// the request sent once more, unless an upload can be read only once.
    void ExecRequest(TZOValueHolder* AResponse);
    /// The same for an operation without response data; what the server sends all the same is dropped.
    void ExecRequest();

    /// Executions write down in ARecord what went over the wire, also when they fail; null, the default:
    /// nowhere. Not owned.
    void SetRecord(TZOHttpRecord* ARecord) { FRecord = ARecord; }
    /// The HTTP request that an execution would send now, credentials included and marked as such. Its
    /// streams are those of the request value. Raises what an execution raises before it sends anything.
    TZOHttpRequest Prepare() const;

private:
    struct TValue;

    QString ServerUrl() const;
    TZOHttpResponse Send(QIODevice* ADestination);
    TZOHttpResponse SendWithToken(QIODevice* ADestination, bool AIsTokenNew);
    TZOHttpRequest PrepareWith(const TZOSecurityScheme*& ATokenScheme) const;

    TZORestService* FService;
    POper FOper;
    TZOHttpRecord* FRecord = nullptr;
    std::unique_ptr<TValue> FValue;
};
