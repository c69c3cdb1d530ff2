// Turning the wheel over a widget, as the window system would report it.
#pragma once

#include <QCoreApplication>
#include <QTest>
#include <QWheelEvent>
#include <QWidget>

/// ADelta is in eighths of a degree: 120 a notch, negative towards the user.
inline void TurnWheel(QWidget* AWidget, int ADelta) {
    const QPoint place = AWidget->rect().center();
    QWheelEvent event(place, AWidget->mapToGlobal(place), QPoint(), QPoint(0, ADelta), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    // Only what comes from outside travels on to the parents; sendEvent would take that mark away again.
    QSpontaneKeyEvent::setSpontaneous(&event);
    QCoreApplication::instance()->notify(AWidget, &event);
}
