#include "jsoneditor/view/AccessibleRow_p.h"

#include "jsoneditor/view/AccessibleView_p.h"
#include "jsoneditor/view/DataSource.h"
#include "jsoneditor/view/RestView.h"
#include "platform/ExceptionDisplay.h"
#include "platform/VisibleText.h"

#include <QCoreApplication>
#include <QKeySequence>

namespace {

TZORowSpeech SpeechOfRow(TZORestView* AView, TZOViewRow* ARow) {
    if (const TZOViewRowLayout* layout = ARow->Layout())
        return SpeechOf(*layout);
    // Out of sight: what it would show, without showing it.
    TZOViewRowLayout layout(AView, ARow);
    GuardedCall(AView, [&] {
        if (ARow->Source())
            ARow->Source()->ConfigureRow(ARow, &layout);
    });
    return SpeechOf(layout);
}

QString PlaceOfRow(const TZORestView* AView, const TZOViewRow* ARow) {
    return QCoreApplication::translate("TZORestView", "level %1, row %2 of %3")
        .arg(ARow->Level() + 1)
        .arg(AView->IndexOfRow(ARow) + 1)
        .arg(AView->GetRowCount());
}

bool IsEditable(const TZOViewRow* ARow) {
    TZORowChunk* chunk = nullptr;
    return ARow->Layout() && ARow->Layout()->TryGetFirstEditable(chunk);
}

} // namespace

QWindow* TZOAccessibleRow::window() const { return FView->window()->windowHandle(); }

QAccessibleInterface* TZOAccessibleRow::parent() const {
    return QAccessible::queryAccessibleInterface(FView);
}

QRect TZOAccessibleRow::rect() const {
    const TZOViewRowLayout* layout = FRow->Layout();
    return layout ? layout->Bounds().translated(FView->mapToGlobal(QPoint())) : QRect();
}

QAccessible::State TZOAccessibleRow::state() const {
    QAccessible::State state;
    const TZOViewRowLayout* layout = FRow->Layout();
    state.selectable = true;
    state.focusable = true;
    state.selected = isSelected();
    state.focused = isSelected() && FView->hasFocus();
    state.editable = IsEditable(FRow);
    state.readOnly = layout && !state.editable;
    state.invisible = !FView->isVisible();
    state.offscreen = !layout || !layout->Bounds().intersects(FView->ExposedRect());
    state.disabled = !FView->isEnabled();
    return state;
}

QString TZOAccessibleRow::text(QAccessible::Text AText) const {
    switch (AText) {
    case QAccessible::Name:
        return VisibleText(SpeechOfRow(FView, FRow).Name);
    case QAccessible::Value:
        return VisibleText(SpeechOfRow(FView, FRow).Value);
    case QAccessible::Description:
        return PlaceOfRow(FView, FRow);
    case QAccessible::Help: {
        QString hint;
        GuardedCall(FView, [&] {
            if (FRow->Source())
                hint = FRow->Source()->RowHint(FRow);
        });
        return VisibleLines(hint);
    }
    default:
        return {};
    }
}

void* TZOAccessibleRow::interface_cast(QAccessible::InterfaceType AType) {
    if (AType == QAccessible::ActionInterface)
        return static_cast<QAccessibleActionInterface*>(this);
    if (AType == QAccessible::TableCellInterface)
        return static_cast<QAccessibleTableCellInterface*>(this);
    return nullptr;
}

QStringList TZOAccessibleRow::actionNames() const {
    QStringList names{setFocusAction()};
    if (IsEditable(FRow))
        names.append(pressAction());
    return names;
}

void TZOAccessibleRow::doAction(const QString& AName) {
    // As a click or a key would: an open edit is applied first, and may take this row away.
    TZORestView* view = FView;
    TZOViewRow* row = FRow;
    if (AName != setFocusAction() && AName != pressAction())
        return;
    GuardedCall(view, [&] {
        view->setFocus();
        view->MoveSelection(row, AName == pressAction() ? seDefaultChunk : seHide);
    });
}

QStringList TZOAccessibleRow::keyBindingsForAction(const QString& AName) const {
    return AName == pressAction() ? QStringList{QKeySequence(Qt::Key_Tab).toString()} : QStringList();
}

bool TZOAccessibleRow::isSelected() const { return FView->Selected() == FRow; }
int TZOAccessibleRow::rowIndex() const { return FView->IndexOfRow(FRow); }
