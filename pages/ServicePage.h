// What the pages about one service have in common.
#pragma once

#include "shell/PageFrame.h"
#include "shell/ServiceItem.h"
#include "shell/ShellPage.h"

#include <QPointer>

#include <memory>

class TZOShellFrame;

/// Keeps APage until the shell takes it over by pushing it, and answers it.
TZOShellPage* KeepPage(std::unique_ptr<TZOShellPage> APage);
/// Frees the pages that are kept.
void FreeKeptPages();

/// Base of the pages about one service. When the service goes, the page forgets it at once and asks for the
/// page at the bottom of the stack.
class TZOServicePage : public TZOPageFrame {
    Q_OBJECT

public:
    TZOShellFrame* Shell() const { return FBond->Shell; }
    /// Null once the service was removed.
    TZOServiceItem* Service() const { return FBond->Service; }

    /// The shell asks for the options of the service: opens the page of the authentication options.
    virtual void ServiceOptions();

protected:
    TZOServicePage(TZOShellFrame* AShell, TZOServiceItem* AService);

    /// Makes the shell's page, which owns this frame, and keeps it.
    TZOShellPage* Wrap(const QString& ACaption);
    /// Forgets everything that came from the service: its operations' types may go with it.
    virtual void DoServiceRemoved() = 0;

private:
    /// Outlives the frame: the shell asks the page about its service even then.
    struct TBond {
        TZOShellFrame* Shell;
        QPointer<TZOServiceItem> Service;
    };

    void ServiceRemoved(TZOServiceItem* AItem);

    std::shared_ptr<TBond> FBond;
};
