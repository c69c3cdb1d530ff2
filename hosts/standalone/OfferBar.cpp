#include "hosts/standalone/OfferBar.h"

#include "platform/VisibleText.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

TZOOfferBar::TZOOfferBar(const QString& AMessage, const QString& AAction, QWidget* AParent)
    : QFrame(AParent) {
    setFrameShape(QFrame::StyledPanel);
    setBackgroundRole(QPalette::ToolTipBase);
    setAutoFillBackground(true);
    auto* text = new QLabel;
    text->setTextFormat(Qt::PlainText);
    text->setText(VisibleLines(AMessage));
    text->setWordWrap(true);
    text->setForegroundRole(QPalette::ToolTipText);
    auto* accept = new QPushButton(AAction);
    auto* dismiss = new QPushButton(QStringLiteral("Dismiss"));
    connect(accept, &QPushButton::clicked, this, &TZOOfferBar::Accepted);
    for (QPushButton* button : {accept, dismiss}) {
        connect(button, &QPushButton::clicked, this, &QWidget::hide);
        connect(button, &QPushButton::clicked, this, &QObject::deleteLater);
    }
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(20, 8, 20, 8);
    layout->setSpacing(16);
    layout->addWidget(text, 1);
    layout->addWidget(accept, 0, Qt::AlignTop);
    layout->addWidget(dismiss, 0, Qt::AlignTop);
}
