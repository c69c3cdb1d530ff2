// What a window does while a request runs on its thread.
#pragma once

#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QWidget>

#include <functional>

class QAbstractButton;

/// While it lives, a request is under way. Short ones pass unnoticed; once one lasts longer than PatienceMs,
/// the application keeps painting, and the user can cancel with Escape or the cancel button. No other key or
/// click does anything, timers stand still, and closing, quitting and changes of the theme wait until this
/// object goes.
class TZOLongRequest : public QObject {
    Q_OBJECT

public:
    static constexpr int PatienceMs = 500;

    struct TProgress {
        qint64 ElapsedMs;
        qint64 BytesSent;
        qint64 BytesReceived;
    };
    using TShow = std::function<void(const TProgress& AProgress)>;

    /// AShow is called several times a second for a request that lasts, and has to show ACancel.
    TZOLongRequest(QAbstractButton* ACancel, TShow AShow);
    ~TZOLongRequest() override;

    /// A window in which the user may do something about the request meanwhile; it is not waited with then,
    /// and closing another window cancels. Null: none. Not owned.
    void SetWindow(QWidget* AWindow) { FWindow = AWindow; }
    /// To be called again and again while the request runs; false once the user has cancelled it.
    bool Idle(qint64 ABytesSent, qint64 ABytesReceived);

protected:
    bool eventFilter(QObject* AObject, QEvent* AEvent) override;

private:
    bool IsOfWindow(const QObject* AObject) const;
    bool FilterKey(QObject* AObject, QEvent* AEvent);
    bool FilterMouse(QObject* AObject, QEvent* AEvent);
    void HoldClosing(const QObject* AObject);

    QPointer<QAbstractButton> FCancel;
    QPointer<QWidget> FWindow;
    TShow FShow;
    QElapsedTimer FClock;
    qint64 FShownMs = 0;
    bool FIsFiltering = false;
    bool FIsCancelled = false;
    bool FIsPressed = false;
    bool FIsQuitHeld = false;
    bool FIsPaletteHeld = false;
    QList<QPointer<QWidget>> FClosing;
};
