// Free notification: a component tells those who registered with it that it is about to go, while it is
// still whole. QObject::destroyed comes too late for that: only a bare QObject is left by then.
#pragma once

#include <vector>

class QObject;

enum TZOOperation { opInsert, opRemove };

/// Hears of the removal of the components it registered with.
class IZOFreeNotification {
public:
    /// AComponent is still complete. It may be compared and used, but must not be kept.
    virtual void Notification(QObject* AComponent, TZOOperation AOperation) = 0;

protected:
    ~IZOFreeNotification() = default;
};

/// The listeners of one component; a member of that component, whose most derived destructor announces.
class TZOFreeNotifier {
public:
    /// AListener is not owned and must withdraw before it dies. Registering twice counts once.
    void Register(IZOFreeNotification* AListener);
    /// Harmless for a listener that is not registered.
    void Withdraw(IZOFreeNotification* AListener);
    /// Tells every listener, in order of registration, that AComponent goes, and forgets them all. A
    /// listener that another one withdraws meanwhile is not told.
    void AnnounceRemoval(QObject* AComponent);

private:
    std::vector<IZOFreeNotification*> FListeners;
};
