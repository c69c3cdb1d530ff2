// How the shell makes the pages it opens by itself, which stand one floor above it.
#pragma once

class QWidget;
class TZOServiceItem;
class TZOShellFrame;
class TZOShellPage;

/// Implemented by the pages' library. The pages it makes are not on the stack yet.
class IZOPageFactory {
public:
    virtual TZOShellPage* MakeServiceList(TZOShellFrame* AShell) = 0;
    virtual TZOShellPage* MakeOperationList(TZOShellFrame* AShell, TZOServiceItem* AItem) = 0;
    /// Whether AFrame (may be null) is the frame of a service list page.
    virtual bool IsServiceList(const QWidget* AFrame) const = 0;
    /// A page that was to come on the stack does not come there any more: another one was asked for, or its
    /// service has gone. It is still its maker's.
    virtual void PageForgotten(TZOShellPage*) {}

protected:
    ~IZOPageFactory() = default;
};

/// Puts AFactory (not owned, may be null) in the place of the one in use and returns that. The start function
/// of the pages' library calls it before the first shell frame is made, its counterpart after the last one
/// is gone.
IZOPageFactory* SetPageFactory(IZOPageFactory* AFactory);
/// The factory in use. Raises EException when there is none.
IZOPageFactory& PageFactory();
