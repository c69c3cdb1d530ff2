// The box that pages of forms scroll in.
#pragma once

#include <QScrollArea>

/// A scroll area that moves by whole steps. Promote a QScrollArea to it in a form.
class TZOScrollBox : public QScrollArea {
    Q_OBJECT

public:
    /// Pixels for one notch of the wheel and one click on an arrow of the scroll bar.
    static constexpr int Increment = 96;

    explicit TZOScrollBox(QWidget* AParent = nullptr);

protected:
    bool eventFilter(QObject* AObject, QEvent* AEvent) override;
    void wheelEvent(QWheelEvent* AEvent) override;

private:
    int FWheelRest = 0;
};
