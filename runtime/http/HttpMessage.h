// An HTTP request and its answer (RFC 9110), apart from any type.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

class QIODevice;
struct TZOHttpRecord;

struct TZOHttpHeader {
    QByteArray Name;
    QByteArray Value;
    bool IsCredential = false; ///< never sent to another origin, never shown
};

/// One part of a multipart/form-data body (RFC 7578).
struct TZOHttpPart {
    QByteArray Name;
    QByteArray Content;          ///< when there is no stream
    QIODevice* Stream = nullptr; ///< read from its start; not owned
    QString FileName;            ///< empty: none is sent
    QByteArray ContentType;      ///< empty: none is sent
};

enum TZOHttpBodyKind { bkNone, bkBytes, bkStream, bkMultipart };

struct TZOHttpBody {
    TZOHttpBodyKind Kind = bkNone;
    QByteArray Content;          ///< bkBytes
    QIODevice* Stream = nullptr; ///< bkStream; read from its start; not owned
    QByteArray ContentType;      ///< bkBytes and bkStream
    QList<TZOHttpPart> Parts;    ///< bkMultipart
};

struct TZOHttpRequest {
    QByteArray Method = "GET";
    QByteArray Url;             ///< absolute, percent-encoded
    QByteArray CredentialQuery; ///< "name=value", appended to the query and never shown or passed on
    QList<TZOHttpHeader> Headers;
    TZOHttpBody Body;
    /// Where the body of a 2xx answer goes instead of into memory; not owned.
    QIODevice* Destination = nullptr;
    /// Where it is written down what goes over the wire, also when the request fails; null: nowhere. Not
    /// owned.
    TZOHttpRecord* Record = nullptr;
};

struct TZOHttpResponse {
    int Status = 0;
    QByteArray Reason;
    QList<TZOHttpHeader> Headers;
    QByteArray Body; ///< decompressed; what went to a destination is not in here
    qint64 DestinationBytes = 0;
    QByteArray FinalUrl; ///< after redirects, without credentials
    qint64 TotalMicros = 0;

    /// The value of the last header of that name, whatever its case; empty when there is none.
    QByteArray Header(const QByteArray& AName) const;
};
