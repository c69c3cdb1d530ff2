// What the fault server does, one function for each fault.
#pragma once

#include "tests/servers/RawServer.h"

#include <vector>

namespace Faults {

struct TAct {
    QByteArray Name;
    /// Answers a request that was read; AElsewhere is the address of another server.
    std::function<void(TRawServer::TConnection& AConnection, const QByteArray& AElsewhere)> Run;
    /// Whether the connection serves further requests afterwards; else it is closed.
    bool StaysOpen = false;
};

/// Null when there is no fault of that name.
const TAct* Find(const QByteArray& AName);

/// The usual answer.
QByteArray Fine();

} // namespace Faults
