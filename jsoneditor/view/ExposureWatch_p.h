// Notices when what surrounds a widget hides or shows another part of it.
#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QWidget>

#include <functional>

/// Calls back when an ancestor of a widget moves, is resized or gets another parent. A scroll area scrolls by
/// moving the widget inside it, of which a grandchild hears nothing by itself.
class TZOExposureWatch : public QObject {
    Q_OBJECT
public:
    TZOExposureWatch(QWidget* AWidget, std::function<void()> AOnChange);
    ~TZOExposureWatch() override;

    /// To be called after the widget itself got another parent.
    void Hook();

protected:
    bool eventFilter(QObject* AObject, QEvent* AEvent) override;

private:
    void Unhook();

    QWidget* FWidget;
    std::function<void()> FOnChange;
    QList<QPointer<QWidget>> FAncestors;
};
