// Somebody who works in a form editor, with the mouse and the keyboard of a display server.
#pragma once

#include "hosts/tour/TourDriver.h"

#include "platform/IdeTheming.h"

#include <functional>

class QDesignerFormEditorInterface;
class TZOServiceComponent;

/// Works on a thread of its own; every step raises EZOTourError when the editor does not follow.
class TEditorUser {
public:
    TEditorUser(QDesignerFormEditorInterface* ACore, const QString& AFolder)
        : FCore(ACore), FDriver(AFolder) {}

    TZOTourDriver& Driver() { return FDriver; }
    QDesignerFormEditorInterface* Core() const { return FCore; }

    /// Drags what the widget box calls AName onto the form, APlace in it.
    void DropComponent(const QString& AName, const QPoint& APlace);
    /// Chooses from the context menu of the form's component.
    void ChooseFromMenu(const QString& ACommand);
    /// Clicks on the component.
    void Select();
    /// Types a value into the property editor, which shows the selected component.
    void EditProperty(const QString& AName, const QString& AValue);

    /// Waits until the property of the component has the value, in its form and in the property editor.
    void SeeProperty(const QString& AName, const QString& AValue);
    void SeeComponent(bool AIsThere);
    void SeeDirty(bool AIsDirty);
    /// Waits until the field of that name in the explorer holds AText.
    void SeeField(const QString& AName, const QString& AText);
    void ClickField(const QString& AName);
    /// Waits until a dialog is open, and closes it with Escape.
    void DismissDialog();
    /// Clicks on the box whose caption contains AText, and waits until it is checked.
    void CheckBox(const QString& AText);
    /// Gives the editor another palette, and waits until the explorer's frame follows.
    void SetTheme(TZOTheme ATheme);

private:
    QPoint PlaceOf(const QString& AWhat, const std::function<QWidget*()>& AFind);

    QDesignerFormEditorInterface* FCore;
    TZOTourDriver FDriver;
};

/// The component of the form that is open; null when there is none. For the user interface's thread.
TZOServiceComponent* ComponentOfForm(QDesignerFormEditorInterface* ACore);
