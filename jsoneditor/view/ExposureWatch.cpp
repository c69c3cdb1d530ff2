#include "jsoneditor/view/ExposureWatch_p.h"

#include <QEvent>

TZOExposureWatch::TZOExposureWatch(QWidget* AWidget, std::function<void()> AOnChange)
    : FWidget(AWidget), FOnChange(std::move(AOnChange)) {
    Hook();
}

TZOExposureWatch::~TZOExposureWatch() { Unhook(); }

void TZOExposureWatch::Hook() {
    Unhook();
    for (QWidget* widget = FWidget; !widget->isWindow() && widget->parentWidget();) {
        widget = widget->parentWidget();
        widget->installEventFilter(this);
        FAncestors.append(widget);
    }
}

void TZOExposureWatch::Unhook() {
    for (const QPointer<QWidget>& ancestor : std::as_const(FAncestors)) {
        if (ancestor)
            ancestor->removeEventFilter(this);
    }
    FAncestors.clear();
}

bool TZOExposureWatch::eventFilter(QObject* AObject, QEvent* AEvent) {
    if (AEvent->type() == QEvent::ParentChange)
        Hook();
    if (AEvent->type() == QEvent::ParentChange || AEvent->type() == QEvent::Move ||
        AEvent->type() == QEvent::Resize)
        FOnChange();
    return QObject::eventFilter(AObject, AEvent);
}
