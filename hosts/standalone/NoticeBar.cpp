#include "hosts/standalone/NoticeBar.h"

#include "platform/VisibleText.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

TZONoticeBar::TZONoticeBar(QWidget* AParent) : QFrame(AParent), FText(new QLabel) {
    setFrameShape(QFrame::StyledPanel);
    setBackgroundRole(QPalette::ToolTipBase);
    setAutoFillBackground(true);
    FText->setTextFormat(Qt::PlainText);
    FText->setWordWrap(true);
    FText->setForegroundRole(QPalette::ToolTipText);
    FText->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* dismiss = new QPushButton(QStringLiteral("Dismiss"));
    connect(dismiss, &QPushButton::clicked, this, [this] {
        hide();
        FText->clear();
    });
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(20, 8, 20, 8);
    layout->setSpacing(16);
    layout->addWidget(FText, 1);
    layout->addWidget(dismiss, 0, Qt::AlignTop);
    hide();
}

void TZONoticeBar::Add(const QString& AMessage) {
    const QString message = VisibleLines(AMessage);
    FText->setText(FText->text().isEmpty() ? message : FText->text() + u'\n' + message);
    show();
}
