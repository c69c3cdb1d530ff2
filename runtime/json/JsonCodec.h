// JSON text (RFC 8259) to and from typed values.
#pragma once

#include "runtime/types/Failures.h"
#include "runtime/types/ValueHolder.h"

#include <QByteArray>

class TZOJson {
public:
    /// Reads AJson (UTF-8) into ADest, which takes the value or, for null, becomes absent. All of the text
    /// is checked, also what the type does not know and what is therefore skipped. A null property, element
    /// or item is absent; of repeated keys the last one counts. Raises EZOJsonError, which names line,
    /// column and JSON pointer (RFC 6901), for text that is no JSON, does not fit the type, or holds a number
    /// that the type cannot, and EZOJsonDepthError for text that nests deeper than JsonText::MaxDepth; ADest
    /// is absent then.
    static void Decode(QByteArray AJson, TZOValueHolder& ADest);

    /// A present value as compact JSON. Properties without value are left out; elements and items without
    /// are null. An upload is its content in base64, a download null; a property that is an upload without a
    /// stream is left out, too. Raises EZORequestValueError for a
    /// float that JSON cannot hold, EZOUploadError for a stream that cannot be read.
    static QByteArray Encode(const TZOTypeInfo* AType, const void* AValue);
    /// The same; null for an absent value.
    static QByteArray Encode(const TZOValueHolder& AValue);
};
