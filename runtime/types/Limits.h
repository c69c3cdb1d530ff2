// The bounds that every request keeps to, in one place.
#pragma once

#include <QtGlobal>

namespace Limits {

/// From the first look for a server's address to a connection that is ready, secure ones included.
inline constexpr int ConnectTimeoutMs = 30'000;
/// How long a connection may stay without a byte in either direction.
inline constexpr int StallTimeoutMs = 60'000;
inline constexpr int MaxRedirects = 10;
/// The head of one answer, interim answers included.
inline constexpr qint64 MaxHeaderBytes = 256 * 1024;
/// A body that is kept in memory, after decompression.
inline constexpr qint64 MaxBodyBytes = qint64(1) << 30;
/// What is read of the body of an answer that is a failure; the rest is left unread.
inline constexpr qint64 MaxErrorBodyBytes = 64 * 1024;
/// Arrays and objects of JSON inside each other.
inline constexpr int MaxJsonDepth = 1000;

} // namespace Limits
