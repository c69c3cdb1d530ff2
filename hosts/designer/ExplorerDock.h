// The explorer beside the forms.
#pragma once

#include <QDockWidget>
#include <QPointer>

class TZONoticeBar;
class TZOShellFrame;

/// Holds one shell frame, which is made when the dock is first shown. While it lives it is the report handler
/// of TRegistry.
class TZOExplorerDock final : public QDockWidget {
    Q_OBJECT

public:
    explicit TZOExplorerDock(QWidget* AParent = nullptr);
    ~TZOExplorerDock() override;

    /// Shows the dock and gives its frame, made when there is none yet.
    TZOShellFrame* Open();
    /// Ends the explorer: the frame saves its tokens and goes. Nothing opens it again.
    void End();

protected:
    void showEvent(QShowEvent* AEvent) override;

private:
    void MakeContent();
    void MakeRoom();

    TZONoticeBar* FNotices = nullptr;
    QPointer<TZOShellFrame> FShell;
    bool FHasRoom = false;
    bool FIsEnded = false;
};
