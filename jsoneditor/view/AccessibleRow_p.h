// One row of a view as assistive technology sees it.
#pragma once

#include <QAccessible>

class TZORestView;
class TZOViewRow;

/// A list item with the row's texts; its place among all rows is that of a table's only column. It can be
/// selected, and opened for editing.
class TZOAccessibleRow : public QAccessibleInterface,
                         public QAccessibleActionInterface,
                         public QAccessibleTableCellInterface {
public:
    TZOAccessibleRow(TZORestView* AView, TZOViewRow* ARow) : FView(AView), FRow(ARow) {}

    TZOViewRow* Row() const { return FRow; }

    bool isValid() const override { return true; }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override;
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QRect rect() const override;
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override;
    QString text(QAccessible::Text AText) const override;
    void setText(QAccessible::Text, const QString&) override {}
    void* interface_cast(QAccessible::InterfaceType AType) override;

    QStringList actionNames() const override;
    void doAction(const QString& AName) override;
    QStringList keyBindingsForAction(const QString& AName) const override;

    bool isSelected() const override;
    QList<QAccessibleInterface*> columnHeaderCells() const override { return {}; }
    QList<QAccessibleInterface*> rowHeaderCells() const override { return {}; }
    int columnIndex() const override { return 0; }
    int rowIndex() const override;
    int columnExtent() const override { return 1; }
    int rowExtent() const override { return 1; }
    QAccessibleInterface* table() const override { return parent(); }

private:
    TZORestView* FView;
    TZOViewRow* FRow;
};
