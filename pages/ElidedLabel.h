// A label of one line that gives way.
#pragma once

#include <QLabel>

/// Shows its plain text in one line, shortened with an ellipsis to whatever width there is; the tool tip
/// holds the whole of it then. Promote a QLabel to it in a form.
class TZOElidedLabel : public QLabel {
    Q_OBJECT

public:
    explicit TZOElidedLabel(QWidget* AParent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* AEvent) override;
    void paintEvent(QPaintEvent* AEvent) override;

private:
    QString Line() const;
};
