// A label that can be clicked.
#pragma once

#include <QLabel>

/// A plain-text label that is a link: it takes the focus, shows a hand and answers a left click, Space and
/// Enter. Where its text does not fit it ends in an ellipsis, and a tool tip shows it whole. Promote a QLabel
/// to it in a form.
class TZOLinkLabel : public QLabel {
    Q_OBJECT
    Q_PROPERTY(bool isLink READ IsLink WRITE SetLink)

public:
    explicit TZOLinkLabel(QWidget* AParent = nullptr);

    bool IsLink() const { return FIsLink; }
    /// A label that is no link is an ordinary one: no focus, no hand, no answer to clicks.
    void SetLink(bool AIsLink);

    QSize minimumSizeHint() const override;

signals:
    /// A left button that was pressed here was released here, or a key asked for the same.
    void Clicked();

protected:
    bool event(QEvent* AEvent) override;
    void mousePressEvent(QMouseEvent* AEvent) override;
    void mouseReleaseEvent(QMouseEvent* AEvent) override;
    void keyPressEvent(QKeyEvent* AEvent) override;
    void focusInEvent(QFocusEvent* AEvent) override;
    void focusOutEvent(QFocusEvent* AEvent) override;
    void paintEvent(QPaintEvent* AEvent) override;

private:
    bool IsElided() const;

    bool FIsLink = false;
    bool FPressed = false;
    bool FShowsFocus = false;
};
