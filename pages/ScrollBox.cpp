#include "pages/ScrollBox.h"

#include <QScrollBar>
#include <QWheelEvent>

TZOScrollBox::TZOScrollBox(QWidget* AParent) : QScrollArea(AParent) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    verticalScrollBar()->setSingleStep(Increment);
    // Over the bar the wheel would go three steps at once.
    verticalScrollBar()->installEventFilter(this);
}

bool TZOScrollBox::eventFilter(QObject* AObject, QEvent* AEvent) {
    if (AObject == verticalScrollBar() && AEvent->type() == QEvent::Wheel) {
        wheelEvent(static_cast<QWheelEvent*>(AEvent));
        return true;
    }
    return QScrollArea::eventFilter(AObject, AEvent);
}

void TZOScrollBox::wheelEvent(QWheelEvent* AEvent) {
    const int delta = AEvent->angleDelta().y();
    if (AEvent->angleDelta().isNull()) {
        // As touch pads begin and end with. The base class would give it to the bar, which gives it back.
        AEvent->ignore();
        return;
    }
    if (delta == 0) {
        QScrollArea::wheelEvent(AEvent);
        return;
    }
    if ((delta > 0) != (FWheelRest > 0))
        FWheelRest = 0;
    FWheelRest += delta;
    const int notches = FWheelRest / QWheelEvent::DefaultDeltasPerStep;
    FWheelRest %= QWheelEvent::DefaultDeltasPerStep;
    QScrollBar* bar = verticalScrollBar();
    const int before = bar->value();
    bar->setValue(before - notches * Increment);
    // At either end the wheel is for whoever is around; on the way to a notch it is ours where there is room.
    const int end = delta > 0 ? bar->minimum() : bar->maximum();
    AEvent->setAccepted(bar->value() != before || (notches == 0 && before != end));
}
