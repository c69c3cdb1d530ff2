// The widget of a page.
#pragma once

#include "platform/FreeNotification.h"

#include <QWidget>

#include <functional>

class TZOServiceItem;
class TZOShellPage;

/// Base of the widgets that pages show. It announces its own destruction, whoever destroys it, so that its
/// page can forget it. The shell gives it the keyboard focus when the page comes on top: a focus proxy passes
/// the focus on.
class TZOPageFrame : public QWidget {
    Q_OBJECT

public:
    explicit TZOPageFrame(QWidget* AParent = nullptr);
    ~TZOPageFrame() override;

    /// Makes a page for AItem; null when AItem has nothing to show on it.
    using TPageMaker = std::function<TZOShellPage*(TZOServiceItem* AItem)>;

    /// What makes this page again, with what the user has typed into it, when another class takes the place
    /// of its service's. It is called when frame and service are gone. Empty, as here, for a page that is
    /// not made again.
    virtual TPageMaker MakerAgain() { return {}; }

    TZOFreeNotifier& FreeNotifier() noexcept { return FFreeNotifier; }

private:
    TZOFreeNotifier FFreeNotifier;
};
