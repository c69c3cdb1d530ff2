// Addresses of requests, read by the same parser that the transport uses: two parsers that disagree about
// where the host ends would send credentials to the wrong place.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <memory>

using CURLU = struct Curl_URL;

class TZOHttpUrl {
public:
    /// AUrl is absolute, http or https. Raises EZORequestValueError for anything else.
    explicit TZOHttpUrl(const QByteArray& AUrl);

    /// Where a Location header leads (RFC 9110, section 10.2.2), without user information. Raises
    /// EZORedirectRefusedError for what is no address, and for other schemes than http and https.
    TZOHttpUrl Resolved(const QByteArray& ALocation) const;

    bool IsSameOrigin(const TZOHttpUrl& AOther) const { return Origin() == AOther.Origin(); }
    /// Whether the host is this machine itself.
    bool IsLoopback() const;
    /// "host:port", for messages.
    QString Place() const;
    /// The whole address, without user information and fragment.
    QByteArray Text() const;

    /// Appends "name=value" pieces to the query.
    void AddQuery(const QByteArray& APieces);
    /// Takes out every piece of the query that has the name of one of APieces.
    void RemoveQuery(const QByteArray& APieces);

    CURLU* Handle() const noexcept { return FHandle.get(); }

private:
    struct TRelease {
        void operator()(CURLU* AHandle) const;
    };

    explicit TZOHttpUrl(std::unique_ptr<CURLU, TRelease> AHandle);
    QByteArray Part(int AWhat, unsigned AFlags = 0) const;
    /// "scheme://host:port".
    QByteArray Origin() const;

    std::unique_ptr<CURLU, TRelease> FHandle;
    QByteArray FHost;
};
