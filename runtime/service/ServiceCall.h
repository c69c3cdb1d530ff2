// Calls of operations from C++ code.
#pragma once

#include "runtime/service/Request.h"

#include "runtime/types/ValueRef.h"

/// One operation of a service, called by its name with C++ values:
///
///     TZOServiceCall call(service, "SearchMedia");
///     call.Set("kind", "book").Set("pageSize", 10);
///     for (const TZOValueRef book : call.Exec()["items"])
///         list->addItem(book["title"].As<QString>());
class TZOServiceCall {
public:
    /// AService must outlive the call. Raises EInvalidCast when it has no operation of that name.
    TZOServiceCall(TZORestService* AService, const QString& AOperation);

    /// The request's object.
    TZOValueRef Request();
    /// Sets a property of the request. Raises what TZOValueRef does.
    template <class T>
    TZOServiceCall& Set(const QString& AName, const T& AValue) {
        Request().Make(AName).Set(AValue);
        return *this;
    }

    /// Sends the request and waits for the answer, which lives until the next execution or the end of this;
    /// absent when there is no content. Raises one of runtime/types/Failures.h.
    TZOValueRef Exec();
    /// The same for an operation that answers with a file, which is written to ADestination (not owned).
    void Exec(QIODevice* ADestination);

private:
    POper FOper;
    ZORequest FRequest;
    std::optional<TZOValueHolder> FResponse;
};
