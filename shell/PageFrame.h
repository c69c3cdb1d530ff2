// The widget of a page.
#pragma once

#include "platform/FreeNotification.h"

#include <QWidget>

/// Base of the widgets that pages show. It announces its own destruction, whoever destroys it, so that its
/// page can forget it. The shell gives it the keyboard focus when the page comes on top: a focus proxy passes
/// the focus on.
class TZOPageFrame : public QWidget {
    Q_OBJECT

public:
    explicit TZOPageFrame(QWidget* AParent = nullptr);
    ~TZOPageFrame() override;

    TZOFreeNotifier& FreeNotifier() noexcept { return FFreeNotifier; }

private:
    TZOFreeNotifier FFreeNotifier;
};
