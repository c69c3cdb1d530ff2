// How the user is asked for consent.
#pragma once

#include <QByteArray>
#include <QString>

/// What a host puts between the runtime and the user while an authorization code is awaited. All calls come
/// on the thread that executes the request; none of them may raise.
class TZOAuthUI {
public:
    virtual ~TZOAuthUI();

    /// Opens AUrl in the user's browser. AService is the name of the service that wants to be signed on to.
    virtual void Begin(const QString& AService, const QByteArray& AUrl) = 0;
    /// Called at least every 50 ms until the browser has come back; false gives up (EZOCancelledError).
    virtual bool Wait() = 0;
    /// It is over, whatever came of it. Follows every Begin.
    virtual void End() = 0;
    /// How long the user may take, in milliseconds; five minutes unless overridden.
    virtual int TimeLimitMs() const;
};
