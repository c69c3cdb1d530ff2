// The window of the explorer as a program of its own.
#pragma once

#include <QMainWindow>

class TZODocumentActions;
class TZONoticeBar;
class TZOShellFrame;

/// Holds one shell frame, lets the user choose the theme, and remembers both theme and geometry. Problems
/// with the settings are shown in a strip above the frame; while it lives it is the report handler of
/// TRegistry.
class TZOMainWindow final : public QMainWindow {
    Q_OBJECT

public:
    /// The pages must have been started.
    TZOMainWindow();
    /// Reports what comes after it on standard error.
    ~TZOMainWindow() override;

    TZOShellFrame* Shell() const { return FShell; }
    /// Adds the services of API documents after those that are there.
    void OpenDocuments(const QStringList& AFileNames);
    /// Shows AMessage until the user dismisses it.
    void Notify(const QString& AMessage);

protected:
    void closeEvent(QCloseEvent* AEvent) override;

private:
    void InitMenus();
    void InitThemeMenu(QMenu* AMenu);

    TZONoticeBar* FNotices;
    TZOShellFrame* FShell = nullptr;
    TZODocumentActions* FDocuments = nullptr;
};
