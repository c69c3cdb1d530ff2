#include "platform/FreeNotification.h"

#include <algorithm>

void TZOFreeNotifier::Register(IZOFreeNotification* AListener) {
    if (std::find(FListeners.begin(), FListeners.end(), AListener) == FListeners.end())
        FListeners.push_back(AListener);
}

void TZOFreeNotifier::Withdraw(IZOFreeNotification* AListener) { std::erase(FListeners, AListener); }

void TZOFreeNotifier::AnnounceRemoval(QObject* AComponent) {
    while (!FListeners.empty()) {
        IZOFreeNotification* listener = FListeners.front();
        FListeners.erase(FListeners.begin());
        listener->Notification(AComponent, opRemove);
    }
}
