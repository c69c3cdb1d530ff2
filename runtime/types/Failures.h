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

// On the way to the server.

/// The server's name is unknown.
ZO_EXCEPTION(EZOHostNotFoundError, EZORequestError);
/// Nothing listens at the server's address.
ZO_EXCEPTION(EZOConnectionRefusedError, EZORequestError);
/// No way leads to the server's address.
ZO_EXCEPTION(EZOUnreachableError, EZORequestError);
/// The server did not accept the connection in time.
ZO_EXCEPTION(EZOConnectTimeoutError, EZORequestError);
/// The proxy is unknown, does not answer, or does not let the request through.
ZO_EXCEPTION(EZOProxyError, EZORequestError);
/// The server's certificate is not to be trusted, or not this server's.
ZO_EXCEPTION(EZOCertificateError, EZORequestError);
/// The two sides did not agree on a secure connection: on a version of TLS, for example.
ZO_EXCEPTION(EZOSecureConnectionError, EZORequestError);

// On the way back.

/// Nothing was sent or received for too long.
ZO_EXCEPTION(EZOStalledError, EZORequestError);
/// The connection was broken off by force.
ZO_EXCEPTION(EZOConnectionResetError, EZORequestError);
/// The server closed the connection without an answer.
ZO_EXCEPTION(EZONoAnswerError, EZORequestError);
/// The answer ended before it was complete.
ZO_EXCEPTION(EZOTruncatedError, EZORequestError);
/// What came was no HTTP, or contradicted itself.
ZO_EXCEPTION(EZOProtocolError, EZORequestError);
/// The answer could not be decompressed.
ZO_EXCEPTION(EZOCompressionError, EZORequestError);
/// The server redirected more often than is followed.
ZO_EXCEPTION(EZORedirectLimitError, EZORequestError);
/// The server redirected to a place to which the request must not go.
ZO_EXCEPTION(EZORedirectRefusedError, EZORequestError);
/// The headers or the body of the answer are larger than what is kept.
ZO_EXCEPTION(EZOResponseTooLargeError, EZORequestError);
/// The user cancelled the request.
ZO_EXCEPTION(EZOCancelledError, EZORequestError);
/// Whatever else went wrong between the two sides; the message has the transport's own words.
ZO_EXCEPTION(EZOTransportError, EZORequestError);

// After the answer came.

/// The server answered with a status that is not 2xx; the message holds the status and what it said.
ZO_EXCEPTION(EZOHttpStatusError, EZORequestError);
/// The response's content type is not what the operation answers with.
ZO_EXCEPTION(EZOContentTypeError, EZORequestError);
/// The response is no JSON, or does not fit its type; the message names the place.
ZO_EXCEPTION(EZOJsonError, EZORequestError);
/// The response's values nest deeper than is read; the message names the place.
ZO_EXCEPTION(EZOJsonDepthError, EZOJsonError);
/// The response could not be written to its destination.
ZO_EXCEPTION(EZODownloadError, EZORequestError);

// While the user signs on (OAuth 2.0).

/// The redirect URL is none that can be listened on.
ZO_EXCEPTION(EZORedirectUrlError, EZORequestError);
/// The metadata of the authorization server could not be used.
ZO_EXCEPTION(EZODiscoveryError, EZORequestError);
/// The authorization server sent the user back with an error, such as that consent was denied.
ZO_EXCEPTION(EZOSignOnRefusedError, EZORequestError);
/// What came back from the browser is no answer to what was asked.
ZO_EXCEPTION(EZOSignOnAnswerError, EZORequestError);
/// The user did not come back from the browser in time.
ZO_EXCEPTION(EZOSignOnTimeoutError, EZORequestError);
/// The token endpoint answered with an error.
ZO_EXCEPTION(EZOTokenRefusedError, EZORequestError);
/// The token endpoint no longer takes the code or refresh token ("invalid_grant").
ZO_EXCEPTION(EZOGrantError, EZOTokenRefusedError);
/// The token endpoint's answer holds no token, and does not say why.
ZO_EXCEPTION(EZOTokenAnswerError, EZORequestError);
