// The context menu, and the commands of it that are keys of the data source.
#include "jsoneditor/view/DataSource.h"
#include "jsoneditor/view/InplaceEditor.h"
#include "jsoneditor/view/RestView.h"
#include "platform/ExceptionDisplay.h"

#include <QContextMenuEvent>
#include <QMenu>

bool TZORestView::CanInsertRow() const {
    return FSelected && FDataSource && FDataSource->WantsKey(Qt::Key_Insert, Qt::NoModifier);
}

void TZORestView::DeleteRow() {
    int key = Qt::Key_Delete;
    KeyDown(key, Qt::ControlModifier);
}

void TZORestView::InsertRow() {
    int key = Qt::Key_Insert;
    KeyDown(key, Qt::NoModifier);
}

void TZORestView::contextMenuEvent(QContextMenuEvent* AEvent) {
    if (AEvent->reason() == QContextMenuEvent::Keyboard)
        ShowRowMenu();
    else
        ShowContextMenu(AEvent->globalPos());
    AEvent->accept();
}

void TZORestView::ShowRowMenu() {
    const QRect view = ClientRect();
    const QRect row = FSelected && FSelected->Layout() ? FSelected->Layout()->Bounds() & view : QRect();
    ShowContextMenu(mapToGlobal(row.isEmpty() ? view.topLeft() : QPoint(row.left(), row.bottom() + 1)));
}

void TZORestView::ShowContextMenu(const QPoint& AGlobal) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](const QString& ACaption, const QKeySequence& AKeys, bool AEnabled,
                         void (TZORestView::*ADo)()) {
        QAction* action =
            menu->addAction(ACaption, this, [this, ADo] { GuardedCall(this, [&] { (this->*ADo)(); }); });
        action->setShortcut(AKeys);
        // The keys are handled where they arrive; here they are only shown.
        action->setShortcutContext(Qt::WidgetShortcut);
        action->setShortcutVisibleInContextMenu(true);
        action->setEnabled(AEnabled);
    };
    add(tr("Undo"), QKeySequence::Undo, CanUndo(), &TZORestView::Undo);
    menu->addSeparator();
    add(tr("Cut"), QKeySequence::Cut, CanCut(), &TZORestView::Cut);
    add(tr("Copy"), QKeySequence::Copy, CanCopy(), &TZORestView::Copy);
    add(tr("Paste"), QKeySequence::Paste, CanPaste(), &TZORestView::Paste);
    add(tr("Select All"), QKeySequence::SelectAll, CanSelectAll(), &TZORestView::SelectAll);
    menu->addSeparator();
    add(tr("Insert Row"), QKeySequence(Qt::Key_Insert), CanInsertRow(), &TZORestView::InsertRow);
    add(tr("Delete Row"), QKeySequence(Qt::CTRL | Qt::Key_Delete), CanDeleteRow(), &TZORestView::DeleteRow);
    if (FDataSource)
        GuardedCall(this, [&] { FDataSource->FillMenu(menu); });
    menu->popup(AGlobal);
}
