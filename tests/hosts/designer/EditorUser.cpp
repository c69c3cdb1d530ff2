#include "tests/hosts/designer/EditorUser.h"

#include "components/ServiceComponent.h"

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QTreeView>
#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>
#include <QtDesigner/QDesignerFormWindowManagerInterface>
#include <QtDesigner/QDesignerPropertyEditorInterface>
#include <QtDesigner/QDesignerWidgetBoxInterface>

#include <optional>

namespace {

QDesignerFormWindowInterface* ActiveForm(QDesignerFormEditorInterface* ACore) {
    return ACore->formWindowManager()->activeFormWindow();
}

/// The row with that text, on any level.
QModelIndex FindRow(const QAbstractItemModel* AModel, const QModelIndex& AParent, const QString& AText) {
    for (int i = 0; i < AModel->rowCount(AParent); ++i) {
        const QModelIndex index = AModel->index(i, 0, AParent);
        if (index.data(Qt::DisplayRole).toString() == AText)
            return index;
        // The widget box's lists answer for the rows of any parent.
        if (!AModel->hasChildren(index))
            continue;
        if (const QModelIndex found = FindRow(AModel, index, AText); found.isValid())
            return found;
    }
    return {};
}

/// The middle of a cell that is made visible first.
std::optional<QPoint> PlaceIn(const QWidget* APanel, const QString& AText, int AColumn) {
    for (auto* view : APanel->findChildren<QAbstractItemView*>()) {
        QModelIndex row = view->model() ? FindRow(view->model(), {}, AText) : QModelIndex();
        if (!row.isValid())
            continue;
        row = row.sibling(row.row(), AColumn);
        view->scrollTo(row, QAbstractItemView::PositionAtCenter);
        // The lists of the widget box are as high as their content and lie in a tree that scrolls.
        for (QWidget* outer = view->parentWidget(); outer; outer = outer->parentWidget()) {
            auto* tree = qobject_cast<QTreeView*>(outer);
            if (!tree)
                continue;
            const QPoint inTree = view->viewport()->mapTo(tree->viewport(), view->visualRect(row).center());
            const QModelIndex holder = tree->indexAt(view->mapTo(tree->viewport(), QPoint(1, 1)));
            if (inTree.y() < 0 || inTree.y() >= tree->viewport()->height())
                tree->scrollTo(holder.isValid() ? holder
                                                : tree->model()->index(tree->model()->rowCount() - 1, 0));
        }
        const QRect place = view->visualRect(row);
        if (!place.isEmpty() && view->isVisible() && !view->viewport()->visibleRegion().isEmpty() &&
            view->viewport()->visibleRegion().boundingRect().contains(place.center()))
            return view->viewport()->mapToGlobal(place.center());
    }
    return {};
}

} // namespace

TZOServiceComponent* ComponentOfForm(QDesignerFormEditorInterface* ACore) {
    QDesignerFormWindowInterface* form = ActiveForm(ACore);
    return form && form->mainContainer() ? form->mainContainer()->findChild<TZOServiceComponent*>() : nullptr;
}

QPoint TEditorUser::PlaceOf(const QString& AWhat, const std::function<QWidget*()>& AFind) {
    std::optional<QPoint> place;
    FDriver.WaitFor(QStringLiteral("%1 cannot be seen").arg(AWhat), [&] {
        const QWidget* widget = AFind();
        if (widget && widget->isVisible() && !widget->visibleRegion().isEmpty())
            place = widget->mapToGlobal(widget->visibleRegion().boundingRect().center());
        return place.has_value();
    });
    return *place;
}

void TEditorUser::DropComponent(const QString& AName, const QPoint& APlace) {
    std::optional<QPoint> from;
    QPoint to;
    FDriver.WaitFor(QStringLiteral("the widget box has no %1").arg(AName), [&] {
        QWidget* form = ActiveForm(FCore) ? ActiveForm(FCore)->mainContainer() : nullptr;
        if (form && form->isVisible()) {
            from = PlaceIn(FCore->widgetBox(), AName, 0);
            to = form->mapToGlobal(APlace);
        }
        return from.has_value();
    });
    FDriver.Drag(*from, to);
}

void TEditorUser::Select() {
    FDriver.ClickAt(PlaceOf(QStringLiteral("the component"), [this] { return ComponentOfForm(FCore); }));
}

void TEditorUser::ChooseFromMenu(const QString& ACommand) {
    FDriver.ClickAt(PlaceOf(QStringLiteral("the component"), [this] { return ComponentOfForm(FCore); }), 3);
    FDriver.WaitFor(QStringLiteral("no menu opens"), [] { return QApplication::activePopupWidget(); });
    FDriver.PressUntilAt(QStringLiteral("Down"), ACommand);
    FDriver.Press({QStringLiteral("Return")});
    // Whatever is pressed sooner would go to the menu.
    FDriver.WaitFor(QStringLiteral("the menu stays open"), [] { return !QApplication::activePopupWidget(); });
}

void TEditorUser::EditProperty(const QString& AName, const QString& AValue) {
    std::optional<QPoint> place;
    FDriver.WaitFor(QStringLiteral("the property editor has no %1").arg(AName), [&] {
        place = PlaceIn(FCore->propertyEditor(), AName, 1);
        return place.has_value();
    });
    FDriver.ClickAt(*place);
    FDriver.WaitFor(QStringLiteral("the value of %1 cannot be edited").arg(AName), [this] {
        const auto* edit = qobject_cast<QLineEdit*>(QApplication::focusWidget());
        return edit && FCore->propertyEditor()->isAncestorOf(edit);
    });
    FDriver.Press({QStringLiteral("ctrl+a")});
    FDriver.Type(AValue);
    FDriver.Press({QStringLiteral("Return")});
}

void TEditorUser::SeeProperty(const QString& AName, const QString& AValue) {
    FDriver.WaitFor(QStringLiteral("%1 is not \"%2\"").arg(AName, AValue), [&] {
        const TZOServiceComponent* component = ComponentOfForm(FCore);
        if (!component || component->property(AName.toLatin1().constData()).toString() != AValue)
            return false;
        for (const auto* view : FCore->propertyEditor()->findChildren<QAbstractItemView*>()) {
            const QModelIndex row = view->model() ? FindRow(view->model(), {}, AName) : QModelIndex();
            if (row.isValid())
                return row.sibling(row.row(), 1).data(Qt::DisplayRole).toString() == AValue;
        }
        return false;
    });
}

void TEditorUser::SeeComponent(bool AIsThere) {
    FDriver.WaitFor(AIsThere ? QStringLiteral("there is no component on the form")
                             : QStringLiteral("the component is still on the form"),
                    [&] {
                        const TZOServiceComponent* component = ComponentOfForm(FCore);
                        return AIsThere ? component && component->isVisible() : !component;
                    });
}

void TEditorUser::SeeDirty(bool AIsDirty) {
    FDriver.WaitFor(
        QStringLiteral("the form is %1marked as modified").arg(AIsDirty ? QStringLiteral("not ") : QString()),
        [&] { return ActiveForm(FCore) && ActiveForm(FCore)->isDirty() == AIsDirty; });
}

namespace {

QLineEdit* Field(const QString& AName) {
    for (QWidget* widget : QApplication::allWidgets()) {
        if (widget->objectName() == AName && widget->isVisible())
            return qobject_cast<QLineEdit*>(widget);
    }
    return nullptr;
}

QCheckBox* Box(const QString& AText) {
    for (QWidget* widget : QApplication::allWidgets()) {
        auto* box = qobject_cast<QCheckBox*>(widget);
        if (box && box->isVisible() && box->text().contains(AText))
            return box;
    }
    return nullptr;
}

} // namespace

void TEditorUser::CheckBox(const QString& AText) {
    // It is wider than what a click is taken on.
    constexpr QPoint onBox(8, 8);
    QPoint place;
    FDriver.WaitFor(QStringLiteral("there is no box %1").arg(AText), [&] {
        if (Box(AText))
            place = Box(AText)->mapToGlobal(onBox);
        return Box(AText) != nullptr;
    });
    FDriver.ClickAt(place);
    FDriver.WaitFor(QStringLiteral("%1 is not checked").arg(AText), [&] { return Box(AText)->isChecked(); });
}

void TEditorUser::SetTheme(TZOTheme ATheme) {
    FDriver.WaitFor(QStringLiteral("the palette cannot be set"), [&] {
        TZOIdeTheming::SetTheme(ATheme);
        return true;
    });
    FDriver.WaitFor(QStringLiteral("the explorer keeps its colours"), [&] {
        for (const QWidget* widget : QApplication::allWidgets()) {
            if (widget->inherits("TZOShellFrame"))
                return (widget->palette().color(widget->backgroundRole()).lightness() < 128) ==
                       (ATheme == thDark);
        }
        return false;
    });
}

void TEditorUser::SeeField(const QString& AName, const QString& AText) {
    FDriver.WaitFor(QStringLiteral("%1 does not show \"%2\"").arg(AName, AText),
                    [&] { return Field(AName) && Field(AName)->text() == AText; });
}

void TEditorUser::ClickField(const QString& AName) {
    FDriver.ClickAt(PlaceOf(AName, [&] { return Field(AName); }));
    FDriver.WaitFor(QStringLiteral("%1 does not take the focus").arg(AName),
                    [&] { return Field(AName) && Field(AName)->hasFocus(); });
}

void TEditorUser::DismissDialog() {
    FDriver.WaitFor(QStringLiteral("no dialog opens"), [] {
        return QApplication::activeModalWidget() && QApplication::activeModalWidget()->isActiveWindow();
    });
    FDriver.Press({QStringLiteral("Escape")});
    FDriver.WaitFor(QStringLiteral("the dialog stays open"),
                    [] { return !QApplication::activeModalWidget(); });
}
