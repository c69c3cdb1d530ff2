// What went over the wire while a request was executed, for people to read.
#pragma once

#include "runtime/http/HttpSecrets.h"

/// One message and its answer. The values of credentials are replaced by Hidden.
struct TZOHttpHop {
    QByteArray RequestLine; ///< empty: nothing was sent
    QList<TZOHttpHeader> RequestHeaders;
    QByteArray StatusLine; ///< empty: no answer came
    QList<TZOHttpHeader> ResponseHeaders;

    /// Takes AHead, the lines of a request up to its body, apart.
    void SetRequestHead(QByteArrayView AHead);
    /// Replaces what of ASent is a credential, what ASecrets knows, and whatever else is known to hold one.
    void HideCredentials(const QList<TZOHttpHeader>& ASent, const TZOHttpSecrets& ASecrets);
    /// The value of the last answered header of that name, whatever its case; empty when there is none.
    QByteArray ResponseHeader(const QByteArray& AName) const;
};

/// An execution from its first byte to its last, or to its failure.
struct TZOHttpRecord {
    /// What stands in the place of a credential.
    static constexpr const char* Hidden = TZOHttpSecrets::Hidden;

    QList<TZOHttpHop> Hops;   ///< more than one where a server redirected
    qint64 BytesReceived = 0; ///< of the last answer's body, decompressed
    qint64 TotalMicros = 0;

    /// How long the last answer's body is once it is decompressed; -1 when the server did not say.
    qint64 ContentLength() const;
};
