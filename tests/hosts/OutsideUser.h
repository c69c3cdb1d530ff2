// Somebody at the explorer's window who is no part of its process: keys and clicks go through the display
// server, and what came of them is seen on the screen, in files and at servers.
#pragma once

#include <QImage>
#include <QPoint>
#include <QProcess>
#include <QStringList>

#include <functional>

/// Runs one zoexplorer in a window of a fixed size, from AFolder, where file dialogs begin. Raises
/// std::runtime_error when the window does not come.
class TOutsideUser {
public:
    TOutsideUser(const QString& AProgram, const QStringList& AArguments, const QString& AFolder);
    TOutsideUser(const TOutsideUser&) = delete;
    TOutsideUser& operator=(const TOutsideUser&) = delete;
    ~TOutsideUser();

    /// Presses keys by their X names, or types; returns when the screen has changed and come to rest.
    void Press(const QString& AKey);
    void Type(const QString& AText);
    /// Clicks ATimes at a place of the window.
    void Click(const QPoint& APlace, int ATimes = 1);
    /// The same without waiting for the screen.
    void PressOnly(const QString& AKey);

    /// Waits until the window of this title has the keys; false when it does not come.
    static bool WaitForWindow(const QString& ATitle);
    /// Waits until nothing on the screen has changed for a second; false when that does not come. A request
    /// that runs, which no key reaches, shows its time and is no rest; nor is a caret that blinks.
    bool WaitForRest();

    /// From the service list to the operations of a service, and from there to an operation.
    void Open(const QString& AName);
    /// Ends the program as a user does; false when it does not end well.
    bool Quit();

    /// The most memory that the program has had, in bytes.
    qint64 PeakMemory() const;
    /// Writes what the screen shows into the folder of ZO_PICTURES, if there is one.
    void Picture(const QString& AName) const;

    /// Waits for AIsThere, for two minutes at most; false when it did not come.
    static bool WaitFor(const std::function<bool()>& AIsThere);

private:
    static QByteArray Xdotool(const QStringList& AArguments);
    static QImage Screen();
    void Do(const QStringList& AArguments);

    QProcess FProcess;
    QString FWindow;
};
