// Values as the body of a request, or as parts of a multipart/form-data body.
#pragma once

#include "runtime/http/HttpMessage.h"
#include "runtime/service/HttpBinding.h"
#include "runtime/types/TypeInfo.h"

namespace BodyParts {

/// Whether AContentType is JSON: empty, "application/json", or one with the suffix "+json".
bool IsJson(const QByteArray& AContentType);

/// The whole body: an upload streams, a scalar of another content type than JSON is its text, all else is
/// JSON. Raises EZOUploadError, which names AProperty, for an upload without a stream.
TZOHttpBody Whole(const TZOTypeInfo* AType, const void* AValue, const TZOParamBinding& ABinding);

/// Appends the part, or for a list the parts, that a value makes; AValue is null for an absent one.
void Append(QList<TZOHttpPart>& AParts, const QByteArray& AName, const TZOTypeInfo* AType, const void* AValue,
            const TZOParamBinding& ABinding);

} // namespace BodyParts
