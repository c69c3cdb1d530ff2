#include "platform/LinkLabel.h"

#include "platform/TipText.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QFocusEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include <algorithm>

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
    setContentsMargins(2, 0, 2, 0); // room for the focus frame
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

bool TZOLinkLabel::IsElided() const {
    return fontMetrics().horizontalAdvance(text()) > contentsRect().width();
}

QSize TZOLinkLabel::minimumSizeHint() const {
    const QSize size = sizeHint();
    return QSize(std::min(size.width(), fontMetrics().horizontalAdvance(QStringLiteral("mmm\u2026"))),
                 size.height());
}

bool TZOLinkLabel::event(QEvent* AEvent) {
    if (AEvent->type() == QEvent::ToolTip && toolTip().isEmpty() && IsElided()) {
        QToolTip::showText(static_cast<QHelpEvent*>(AEvent)->globalPos(), TipText(text()), this);
        return true;
    }
    return QLabel::event(AEvent);
}

void TZOLinkLabel::paintEvent(QPaintEvent* AEvent) {
    if (IsElided()) {
        QPainter painter(this);
        style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()), palette(), isEnabled(),
                              fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width()),
                              foregroundRole());
    } else {
        QLabel::paintEvent(AEvent);
    }
    if (!FShowsFocus)
        return;
    // The style's own focus frame is left out by some styles; this one is always there.
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(palette().color(foregroundRole()));
    const QRect frame =
        style()->itemTextRect(fontMetrics(), contentsRect(), static_cast<int>(alignment()), true, text());
    painter.drawRoundedRect(QRectF(frame.adjusted(-2, -2, 2, 2) & rect()).adjusted(0.5, 0.5, -0.5, -0.5), 2,
                            2);
}
