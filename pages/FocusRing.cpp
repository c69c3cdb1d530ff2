#include "pages/FocusRing.h"

#include "jsoneditor/view/RestView.h"

#include <QApplication>
#include <QShortcut>

namespace {

bool TakesFocus(const QWidget* AWidget) {
    return AWidget->isVisible() && AWidget->isEnabled() && (AWidget->focusPolicy() & Qt::TabFocus);
}

/// The first control of APart in the order of Tab.
QWidget* FirstControl(QWidget* APart) {
    if (TakesFocus(APart))
        return APart;
    QWidget* widget = APart;
    do {
        widget = widget->nextInFocusChain();
        if (APart->isAncestorOf(widget) && TakesFocus(widget))
            return widget;
    } while (widget != APart);
    return nullptr;
}

} // namespace

TZOFocusRing::TZOFocusRing(QWidget* APage, const QList<QWidget*>& AParts)
    : QObject(APage), FPage(APage), FParts(AParts) {
    for (const auto& [key, step] :
         {std::pair(QKeySequence(Qt::Key_F6), 1), std::pair(QKeySequence(Qt::SHIFT | Qt::Key_F6), -1)}) {
        auto* shortcut = new QShortcut(key, APage);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, this, [this, step = step] { Go(step); });
    }
}

void TZOFocusRing::Go(int AStep) {
    const QWidget* focus = QApplication::focusWidget();
    const qsizetype count = FParts.size();
    // From a place in between, the first or last part is next.
    qsizetype place = AStep > 0 ? -1 : count;
    for (qsizetype i = 0; i < count; ++i) {
        if (FParts[i] == focus || FParts[i]->isAncestorOf(focus))
            place = i;
    }
    for (qsizetype i = 0; i < count; ++i) {
        place = (place + AStep + count) % count;
        QWidget* control = FParts[place]->isVisible() ? FirstControl(FParts[place]) : nullptr;
        if (!control)
            continue;
        control->setFocus(AStep > 0 ? Qt::TabFocusReason : Qt::BacktabFocusReason);
        // A view shows the focus by its selected row.
        if (auto* view = qobject_cast<TZORestView*>(control); view && !view->Selected())
            view->SelectRow(view->GetFirst(), seHide);
        return;
    }
}
