// Somebody who builds requests in the explorer's window with nothing but a keyboard.
#pragma once

#include "hosts/tour/TourDriver.h"

#include <QList>
#include <QPair>

/// Works on a thread of its own; every step raises EZOTourError when the screen does not follow.
class TKeyboardUser {
public:
    explicit TKeyboardUser(const QString& AFolder) : FDriver(AFolder) {}

    /// From the service list to the request of an operation, its first row selected.
    void OpenOperation(const QString& AService, const QString& AOperation);
    void Execute() { FDriver.Press({QStringLiteral("ctrl+Return")}); }

    /// Down to the next row that contains ARow.
    void Go(const QString& ARow) { FDriver.PressUntilAt(QStringLiteral("Down"), ARow); }
    /// Down to the row, then types its value.
    void Set(const QString& AKey, const QString& AText);
    /// Down to the row, then takes the ANumber-th of its allowed values from their list.
    void Pick(const QString& AKey, int ANumber, const QString& AShown);
    /// Down to the container's row, then opens it.
    void Open(const QString& ARow);
    /// The first element of the list below the selected row, then more through the context menu.
    void FillList(const QStringList& ATexts);
    /// Types into the selected row, or the one below.
    void Enter(const QString& AText);
    void EnterBelow(const QString& AText);
    /// Chooses from the selected row's context menu.
    void ChooseFromMenu(const QString& ACommand);
    /// Answers a file dialog.
    void NameFile(const QString& APath);
    void Press(const QString& AKey) { FDriver.Press({AKey}); }
    void See(const QString& AText) { FDriver.See(AText); }
    QString FilePath(const QString& AName) const { return FDriver.FilePath(AName); }

    /// Sets values that are typed, one key after another.
    static std::function<void(TKeyboardUser&)> Texts(const QList<QPair<QString, QString>>& ATexts);

    TZOTourDriver& Driver() { return FDriver; }

private:
    TZOTourDriver FDriver;
};
