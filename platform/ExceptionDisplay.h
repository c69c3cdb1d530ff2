// The standard exception display: the one way an error that nobody handled reaches the user.
#pragma once

#include <QString>

#include <exception>
#include <functional>
#include <utility>

class QWidget;

/// Shows an exception's class-independent message; AParent may be null.
using TZOExceptionDisplay = std::function<void(QWidget* AParent, const std::exception& AException)>;

/// Replaces the display (tests, hosts without a screen) and returns the one that was in use. An empty
/// function restores the message box.
TZOExceptionDisplay SetExceptionDisplay(TZOExceptionDisplay ADisplay);

/// Shows AException's message to the user and returns when it has been acknowledged. Never raises.
void ShowException(QWidget* AParent, const std::exception& AException) noexcept;

/// Runs AAction; an exception from it ends in ShowException. Every slot, event handler and paint that can
/// raise is wrapped in this, since no exception may cross Qt's event loop. Returns whether AAction ended
/// without one.
template <class F>
bool GuardedCall(QWidget* AParent, F&& AAction) {
    try {
        std::forward<F>(AAction)();
        return true;
    } catch (const std::exception& e) {
        ShowException(AParent, e);
        return false;
    }
}
