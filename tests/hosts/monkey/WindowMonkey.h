// Somebody who does anything at all to the explorer's window.
#pragma once

#include "tests/hosts/monkey/MonkeyPace.h"
#include "tests/hosts/monkey/MonkeyWorld.h"

#include "hosts/standalone/MainWindow.h"

#include <QPointer>
#include <QRandomGenerator>
#include <QWindow>

#include <memory>
#include <vector>

/// Makes a window, does random things to it, and takes everything down again. The pages must have been
/// started.
class TWindowMonkey {
public:
    explicit TWindowMonkey(quint32 ASeed);
    ~TWindowMonkey();

    /// Does that many things, and then closes what is open.
    void Run(int ACount);

    const TMonkeyPace& Pace() const { return FPace; }
    const TMonkeyWorld& World() const { return FWorld; }
    /// How often what was done; "busy" and "inside" count what came during requests and in inner loops.
    const std::map<std::string, int>& Acts() const { return FActs; }

private:
    using TAct = void (TWindowMonkey::*)();

    void MakeWindow();
    void Act();
    void ActWhileBusy();
    void ActInPopup(QWidget* APopup);
    void Calm();

    // By keys and mouse
    void PressKey();
    void TypeText();
    void Execute();
    void UseMouse();
    void ClickControl();
    void OpenRow();
    void Drag();
    void TurnWheel();
    void AskForMenu();
    void AskForTip();
    void Compose();
    // In the surroundings
    void DropFiles();
    void RewriteFile();
    void Resize();
    void ChangeLook();
    void FillClipboard();
    void SwitchWindow();
    // As hosts do
    void ChangeServices();
    void Configure();
    void CloseWindow();

    bool IsBusy() const;
    QWindow* Target() const;
    QPoint AnyPoint(const QWindow* AWindow);
    void Press(Qt::Key AKey, Qt::KeyboardModifiers AModifiers = {}, const QString& AText = {});
    void Mouse(QWindow* AWindow, QEvent::Type AType, const QPoint& APlace, Qt::MouseButton AButton);
    void ClickAt(QWindow* AWindow, const QPoint& APlace, Qt::MouseButton AButton);
    void Click(QWidget* AWidget, Qt::MouseButton AButton = Qt::LeftButton);
    int Random(int ABound) { return FRandom.bounded(ABound); }

    const quint32 FSeed;
    QRandomGenerator FRandom;
    TMonkeyPace FPace;
    TMonkeyWorld FWorld;
    std::unique_ptr<TZOMainWindow> FWindow;
    std::vector<std::unique_ptr<TZORestServiceClass>> FClasses;
    std::unique_ptr<TZORestService> FComponent;
    std::map<std::string, int> FActs;
    QElapsedTimer FClock;
    Qt::MouseButtons FButtons;
    int FNumber = 0;
    int FInside = 0;
};
