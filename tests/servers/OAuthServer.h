// Authorization servers that none of us wrote, and a person who signs on to them.
#pragma once

#include "tests/servers/ServerProcess.h"

#include "runtime/oauth/AuthUI.h"

enum TOAuthServerKind {
    okOidc, ///< a certified one, with the clients "native" (public), "basic" and "post", and an API at /api
    okMock  ///< one that agrees to everything
};

/// Runs on a free port of 127.0.0.1 for as long as it lives. Raises std::runtime_error when it cannot be
/// started.
class TOAuthServer {
public:
    explicit TOAuthServer(TOAuthServerKind AKind);

    /// The server's address, which is its issuer, too.
    const QString& Url() const noexcept { return FUrl; }
    /// The secret of "basic" and "post".
    static QString Secret();
    /// Turns switches of okOidc, "name=value" pieces as of a query: "lifetime" (seconds that an access token
    /// lives), "refuseApi", "refuseRefresh", "failRefresh". Returns what has happened since the call before:
    /// "consent SCOPE", "token GRANT", "refused ERROR", "failed", "api STATUS".
    QStringList Switch(const QString& ASwitches = {}) const;

private:
    TServerProcess FProcess;
    QString FUrl;
};

/// Signs on and consents over HTTP; or does what is said: "deny", "leave", "twice", "forge".
class TTestPerson final : public TZOAuthUI {
public:
    explicit TTestPerson(const QString& AMode = {}) : FMode(AMode) {}

    void Begin(const QString& AService, const QByteArray& AUrl) override;
    bool Wait() override { return true; }
    void End() override;
    int TimeLimitMs() const override { return LimitMs; }

    /// Lets the desktop open the browser of a person who does what AMode says, until it is called again.
    static void Install(const QString& AMode);

    int Count = 0;     ///< how often the person was asked
    QByteArray Output; ///< the pages that were seen in the end
    int LimitMs = 60'000;

private:
    QString FMode;
    QProcess FProcess;
};
