// Parts of a request value, addressed by text.
#pragma once

#include "runtime/types/TypeInfo.h"

class TZOValueHolder;

/// A present value somewhere inside another.
struct TZOValuePlace {
    const TZOTypeInfo* Type = nullptr;
    void* Storage = nullptr;
};

namespace RequestPath {

/// The value at APath, a JSON pointer (RFC 6901) without its first slash, made present with all containers on
/// the way; "-" appends to a list. Where a choice is open, the first alternative that can take the next
/// step is made. Raises EZOUsageError where there is no such place.
TZOValuePlace Reach(TZOValueHolder& ARoot, const QString& APath);

/// Writes AText into the value at APath: read by its type, containers from JSON; the value of a
/// discriminator picks the subtype, and a JSON null for a container takes it away. Raises EZOUsageError for a
/// text that does not fit.
void Set(TZOValueHolder& ARoot, const QString& APath, const QString& AText);

} // namespace RequestPath
