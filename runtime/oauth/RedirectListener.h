// Where the browser comes back to.
#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

/// Listens on this machine only, for one answer (RFC 8252, section 7.3). Requests for other paths are turned
/// away and waited past; what a connection sends is bounded in size.
class TZORedirectListener {
public:
    /// ARedirectUrl is an http address of 127.0.0.1, [::1] or localhost; without a port, or with port 0, any
    /// free one is taken. Raises EZORedirectUrlError for any other address, and when the port is in use.
    explicit TZORedirectListener(const QString& ARedirectUrl);
    TZORedirectListener(const TZORedirectListener&) = delete;
    TZORedirectListener& operator=(const TZORedirectListener&) = delete;
    ~TZORedirectListener();

    /// The redirect URL with its port, as the authorization server has to know it.
    const QString& RedirectUri() const noexcept { return FRedirectUri; }
    /// Waits up to AMs milliseconds for the browser. Gives the query of its request, whose page Finish has to
    /// answer; nothing when none has come.
    std::optional<QByteArray> Wait(int AMs);
    /// Shows the user a page that says whether they are signed on, tells whoever else is connected that it is
    /// over, and stops listening.
    void Finish(bool AIsSignedOn);

private:
    class TImpl;
    std::unique_ptr<TImpl> FImpl;
    QString FRedirectUri;
};
