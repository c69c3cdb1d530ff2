// The window that is shown while the user signs on in the browser.
#pragma once

#include "runtime/oauth/AuthUI.h"

#include <QByteArray>
#include <QString>

#include <memory>

class QDialog;
class QLabel;
class QWidget;
class TZOLongRequest;

/// Opens the browser, and says in a small window what is waited for. There the user can open the browser once
/// more, copy the address for another one, or cancel; nothing else of the application reacts.
class TZOSignOn final : public TZOAuthUI {
public:
    /// The window belongs to AOwner's; ARequest is the request that needs the token. Both outlive this.
    TZOSignOn(QWidget* AOwner, TZOLongRequest& ARequest);
    ~TZOSignOn() override;

    void Begin(const QString& AService, const QByteArray& AUrl) override;
    bool Wait() override;
    void End() override;

private:
    void MakeWindow(const QString& AService);
    void OpenBrowser();
    void CopyAddress();

    QWidget* FOwner;
    TZOLongRequest& FRequest;
    QByteArray FUrl;
    std::unique_ptr<QDialog> FWindow;
    QLabel* FStatusLabel = nullptr; // the window's
    bool FIsCancelled = false;
};
