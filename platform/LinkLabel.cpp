#include "platform/LinkLabel.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace {

class TLinkAccessible : public QAccessibleWidget {
public:
    explicit TLinkAccessible(TZOLinkLabel* ALabel) : QAccessibleWidget(ALabel, QAccessible::Link) {}

    QAccessible::Role role() const override {
        return Label()->IsLink() ? QAccessible::Link : QAccessible::StaticText;
    }
    QString text(QAccessible::Text AText) const override {
        const QString text = QAccessibleWidget::text(AText);
        return AText == QAccessible::Name && text.isEmpty() ? Label()->text() : text;
    }
    QStringList actionNames() const override {
        QStringList names = QAccessibleWidget::actionNames();
        if (Label()->IsLink())
            names.prepend(pressAction());
        return names;
    }
    void doAction(const QString& AName) override {
        if (AName != pressAction())
            QAccessibleWidget::doAction(AName);
        else if (Label()->IsLink())
            emit Label()->Clicked();
    }

private:
    TZOLinkLabel* Label() const { return static_cast<TZOLinkLabel*>(object()); }
};

QAccessibleInterface* MakeAccessible(const QString& AClassName, QObject* AObject) {
    auto* label =
        AClassName == QLatin1String("TZOLinkLabel") ? qobject_cast<TZOLinkLabel*>(AObject) : nullptr;
    return label ? new TLinkAccessible(label) : nullptr;
}

} // namespace

TZOLinkLabel::TZOLinkLabel(QWidget* AParent) : QLabel(AParent) {
    // Installing a factory again does nothing.
    QAccessible::installFactory(MakeAccessible);
    setTextFormat(Qt::PlainText);
    SetLink(true);
}

void TZOLinkLabel::SetLink(bool AIsLink) {
    if (FIsLink == AIsLink)
        return;
    FIsLink = AIsLink;
    FPressed = false;
    if (!AIsLink && hasFocus())
        clearFocus();
    setFocusPolicy(AIsLink ? Qt::StrongFocus : Qt::NoFocus);
    if (AIsLink)
        setCursor(Qt::PointingHandCursor);
    else
        unsetCursor();
}

void TZOLinkLabel::mousePressEvent(QMouseEvent* AEvent) {
    if (FIsLink && AEvent->button() == Qt::LeftButton)
        FPressed = true;
    else
        QLabel::mousePressEvent(AEvent);
}

void TZOLinkLabel::mouseReleaseEvent(QMouseEvent* AEvent) {
    if (AEvent->button() != Qt::LeftButton || !FPressed) {
        QLabel::mouseReleaseEvent(AEvent);
        return;
    }
    FPressed = false;
    if (rect().contains(AEvent->position().toPoint()))
        emit Clicked();
}

void TZOLinkLabel::keyPressEvent(QKeyEvent* AEvent) {
    const int key = AEvent->key();
    const bool isClick = key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter;
    const bool isPlain = (AEvent->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (!FIsLink || !isClick || !isPlain) {
        QLabel::keyPressEvent(AEvent);
        return;
    }
    if (!AEvent->isAutoRepeat())
        emit Clicked();
}

void TZOLinkLabel::focusInEvent(QFocusEvent* AEvent) {
    FShowsFocus = AEvent->reason() != Qt::MouseFocusReason;
    QLabel::focusInEvent(AEvent);
    update();
}

void TZOLinkLabel::focusOutEvent(QFocusEvent* AEvent) {
    FShowsFocus = false;
    QLabel::focusOutEvent(AEvent);
    update();
}

void TZOLinkLabel::paintEvent(QPaintEvent* AEvent) {
    QLabel::paintEvent(AEvent);
    if (!FShowsFocus)
        return;
    // The style's own focus frame is left out by some styles; this one is always there.
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(palette().color(foregroundRole()));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
}
