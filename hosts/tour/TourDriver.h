// The hands and eyes of the tour: sends key and mouse events through the display server, waits for what
// they cause, and writes down what is on the screen.
#pragma once

#include "platform/Exceptions.h"

#include <QDir>
#include <QFile>
#include <QPoint>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

/// A step of the tour did not show what it should.
ZO_EXCEPTION(EZOTourError, EException);

/// Lives on a thread of its own, so that the explorer's thread may run dialogs and requests meanwhile; looks
/// at the screen by calls into the explorer's thread.
class TZOTourDriver {
public:
    /// Pictures and "transcript.txt" go into AFolder, which is made when it is missing. Raises EFCreateError.
    explicit TZOTourDriver(const QString& AFolder);

    /// Starts a step; its title goes into the transcript and into messages.
    void Step(const QString& ATitle);
    /// Waits until a visible text contains AText; raises EZOTourError after ten seconds.
    void See(const QString& AText);
    /// Waits until none does.
    void SeeNoMore(const QString& AText);
    /// Waits until ACondition, asked on the explorer's thread, is true.
    void WaitFor(const QString& AWhat, const std::function<bool()>& ACondition);

    /// Types text into whatever has the focus.
    void Type(const QString& AText);
    /// Presses keys one after another, by their X names: "Return", "ctrl+Home", "shift+Tab".
    void Press(const QStringList& AKeys);
    /// Presses AKey until the focused list's or editor's current row contains AText.
    void PressUntilAt(const QString& AKey, const QString& AText);
    /// Presses Tab until the class of the focused widget is AClassName.
    void TabTo(const QString& AClassName);
    /// Clicks on what shows AText, once or twice.
    void Click(const QString& AText, int ATimes = 1);
    /// Clicks on a point of the screen with a button of the mouse: 1 left, 3 right.
    void ClickAt(const QPoint& APlace, int AButton = 1);
    /// Drags with the left button from one point of the screen to another.
    void Drag(const QPoint& AFrom, const QPoint& ATo);

    /// Writes what is on the screen into the transcript, and its picture into the next file.
    void Picture(const QString& AName);

    QString FilePath(const QString& AName) const { return FFolder.filePath(AName); }

private:
    void Xdotool(const QStringList& AArguments);
    void MoveTo(const QPoint& APlace);
    void Say(const QString& AText);
    [[noreturn]] void Fail(const QString& AWhat);

    QDir FFolder;
    QFile FTranscript;
    QString FStep;
    int FPictures = 0;
};
