// One page of the explorer, as the shell sees it.
#pragma once

#include "platform/FreeNotification.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>

class TZOPageFrame;
class TZOServiceItem;
class TZOShellFrame;

/// What the current page says about its service: that it has none, or whether the service has credentials.
enum TZOAuthState { asHidden, asNotConfigured, asConfigured };

/// Stands for one page in the navigation stack of the shell: a caption, the page's frame, and what the shell
/// may ask and tell the page. It owns the frame and is owned by the stack once it has been pushed.
class TZOShellPage final : public QObject, public IZOFreeNotification {
    Q_OBJECT

public:
    using TServiceProc = std::function<void(TZOServiceItem* AItem)>;
    /// With AShowOptions, first asks the shell to show the service's authentication options. It is called
    /// also after the frame is gone, so it must not hold the frame.
    using TAuthProc = std::function<TZOAuthState(bool AShowOptions)>;

    /// ASvcAdded and ASvcRemoved may be empty, AAuthProc may not.
    TZOShellPage(const QString& ACaption, TZOPageFrame* AFrame, TServiceProc ASvcAdded,
                 TServiceProc ASvcRemoved, TAuthProc AAuthProc);
    /// Leaves the shell's stack, if it is there, and destroys the frame.
    ~TZOShellPage() override;

    /// What the navigation bar shows; empty after the frame was destroyed by somebody else.
    const QString& Caption() const { return FCaption; }
    /// Shows at once in the navigation bar.
    void SetCaption(const QString& ACaption);
    /// Null after the frame was destroyed by somebody else.
    TZOPageFrame* Frame() const { return FFrame; }
    /// The shell while the page is in its stack, null before and after.
    TZOShellFrame* Shell() const { return FShell; }

    /// The service that the page is about; null when there is none or it was removed. Pages of a service set
    /// it when they are made: the shell leaves them when the service's class goes.
    TZOServiceItem* Service() const;
    void SetService(TZOServiceItem* AItem);

    void ServiceAdded(TZOServiceItem* AItem);
    void ServiceRemoved(TZOServiceItem* AItem);
    TZOAuthState AuthState(bool AShowOptions) { return FAuthProc(AShowOptions); }

    void Notification(QObject* AComponent, TZOOperation AOperation) override;

private:
    friend class TZOShellFrame;

    TZOShellFrame* FShell = nullptr;
    QString FCaption;
    TZOPageFrame* FFrame;
    TServiceProc FSvcAdded;
    TServiceProc FSvcRemoved;
    TAuthProc FAuthProc;
    QPointer<QObject> FService;
};
