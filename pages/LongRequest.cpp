#include "pages/LongRequest.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWindow>

#include <utility>

namespace {

constexpr int ShowEveryMs = 100;

/// What a user does to a window, beside keys and the mouse.
bool IsOtherInput(QEvent::Type AType) {
    switch (AType) {
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::InputMethod:
    case QEvent::Shortcut:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::NativeGesture:
    case QEvent::Gesture:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::ToolTip:
    case QEvent::WhatsThis:
        return true;
    default:
        return false;
    }
}

} // namespace

TZOLongRequest::TZOLongRequest(QAbstractButton* ACancel, TShow AShow)
    : FCancel(ACancel), FShow(std::move(AShow)) {
    FClock.start();
    connect(ACancel, &QAbstractButton::clicked, this, [this] { FIsCancelled = true; });
}

TZOLongRequest::~TZOLongRequest() {
    QCoreApplication::instance()->removeEventFilter(this);
    // All of it after the page has shown the outcome, which it is about to do.
    for (const QPointer<QWidget>& window : FClosing)
        if (window)
            QMetaObject::invokeMethod(window, &QWidget::close, Qt::QueuedConnection);
    if (FIsPaletteHeld)
        QCoreApplication::postEvent(QCoreApplication::instance(),
                                    new QEvent(QEvent::ApplicationPaletteChange));
    if (FIsQuitHeld)
        QCoreApplication::postEvent(QCoreApplication::instance(), new QEvent(QEvent::Quit));
}

bool TZOLongRequest::Idle(qint64 ABytesSent, qint64 ABytesReceived) {
    const qint64 elapsed = FClock.elapsed();
    if (elapsed < PatienceMs && !FWindow)
        return true;
    if (!std::exchange(FIsFiltering, true))
        QCoreApplication::instance()->installEventFilter(this);
    if (FShownMs == 0 || elapsed - FShownMs >= ShowEveryMs) {
        FShownMs = elapsed;
        FShow({elapsed, ABytesSent, ABytesReceived});
    }
    // Timers and sockets would run what belongs to the time after the request.
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers | QEventLoop::X11ExcludeTimers);
    return !FIsCancelled;
}

bool TZOLongRequest::IsOfWindow(const QObject* AObject) const {
    if (!FWindow)
        return false;
    const auto* widget = qobject_cast<const QWidget*>(AObject);
    return widget ? widget->window() == FWindow : AObject == FWindow->windowHandle();
}

bool TZOLongRequest::eventFilter(QObject* AObject, QEvent* AEvent) {
    if (IsOfWindow(AObject))
        return false;
    switch (AEvent->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
        return FilterKey(AObject, AEvent);
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
        return FilterMouse(AObject, AEvent);
    case QEvent::Close:
        // Who is asked something and closes the explorer has answered.
        FIsCancelled |= FWindow != nullptr;
        AEvent->ignore();
        HoldClosing(AObject);
        return true;
    case QEvent::Quit:
        FIsQuitHeld |= AObject == QCoreApplication::instance();
        return AObject == QCoreApplication::instance();
    case QEvent::ApplicationPaletteChange:
        FIsPaletteHeld |= AObject == QCoreApplication::instance();
        return AObject == QCoreApplication::instance();
    default:
        return IsOtherInput(AEvent->type());
    }
}

bool TZOLongRequest::FilterKey(QObject* AObject, QEvent* AEvent) {
    const auto* key = static_cast<QKeyEvent*>(AEvent);
    if (AEvent->type() == QEvent::ShortcutOverride) {
        // Accepted: no shortcut gets the key, it comes again as a press.
        AEvent->accept();
        return true;
    }
    if (AEvent->type() == QEvent::KeyPress && key->key() == Qt::Key_Escape)
        FIsCancelled = true;
    // A window only hands the key on to the control that has the focus.
    const bool isForCancel =
        AObject == FCancel || (AObject->isWindowType() && FCancel && FCancel->hasFocus());
    return !isForCancel;
}

bool TZOLongRequest::FilterMouse(QObject* AObject, QEvent* AEvent) {
    if (!FCancel || !FCancel->isVisible())
        return true;
    const auto* mouse = static_cast<QMouseEvent*>(AEvent);
    if (!AObject->isWindowType())
        return AObject != FCancel;
    const bool isInside = FCancel->rect().contains(FCancel->mapFromGlobal(mouse->globalPosition().toPoint()));
    if (AEvent->type() == QEvent::MouseMove)
        return false; // what is below the pointer lights up, and gets no more of it
    if (AEvent->type() == QEvent::MouseButtonRelease)
        return !std::exchange(FIsPressed, false);
    FIsPressed = isInside;
    return !isInside;
}

void TZOLongRequest::HoldClosing(const QObject* AObject) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        const bool isMeant = window == AObject || window->windowHandle() == AObject;
        if (isMeant && !FClosing.contains(window))
            FClosing.append(window);
    }
}
