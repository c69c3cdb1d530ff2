// Every way in which a request can fail, one class for each cause: the class name is the first line that
// the user sees in the place of a response.
#pragma once

#include "platform/Exceptions.h"

/// Base of all failures of a request.
ZO_EXCEPTION(EZORequestError, EException);

// Before anything was sent.

/// The request's value cannot be sent as it is; the message names the property.
ZO_EXCEPTION(EZORequestValueError, EZORequestError);
/// The service lacks the credentials that the operation needs.
ZO_EXCEPTION(EZOAuthorizationError, EZORequestError);
/// An upload's stream could not be read, or not read again for a second attempt.
ZO_EXCEPTION(EZOUploadError, EZORequestError);

// On the way.

/// The server's name is unknown.
ZO_EXCEPTION(EZOHostNotFoundError, EZORequestError);
/// Nothing listens at the server's address, or it cannot be reached.
ZO_EXCEPTION(EZOConnectError, EZORequestError);
/// The server did not accept the connection, or did not send anything, in time.
ZO_EXCEPTION(EZOTimeoutError, EZORequestError);
/// The server's certificate is not to be trusted, or not this server's.
ZO_EXCEPTION(EZOCertificateError, EZORequestError);
/// The connection broke, or what came over it was no HTTP.
ZO_EXCEPTION(EZOTransportError, EZORequestError);
/// Too many redirects, or one that must not be followed.
ZO_EXCEPTION(EZORedirectError, EZORequestError);
/// The user cancelled the request.
ZO_EXCEPTION(EZOCancelledError, EZORequestError);

// After the answer came.

/// The server answered with a status that is not 2xx; the message holds the status and what it said.
ZO_EXCEPTION(EZOHttpStatusError, EZORequestError);
/// The response is larger than can be shown.
ZO_EXCEPTION(EZOResponseTooLargeError, EZORequestError);
/// The response's content type is not what the operation answers with.
ZO_EXCEPTION(EZOContentTypeError, EZORequestError);
/// The response is no JSON, or does not fit its type; the message names the place.
ZO_EXCEPTION(EZOJsonError, EZORequestError);
/// The response could not be written to its destination.
ZO_EXCEPTION(EZODownloadError, EZORequestError);
