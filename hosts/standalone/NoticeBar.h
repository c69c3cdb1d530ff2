// Messages that must be seen but must not stop anybody.
#pragma once

#include <QFrame>

class QLabel;

/// A strip with a message and a button that takes it away; hidden while there is nothing to say.
class TZONoticeBar final : public QFrame {
    Q_OBJECT

public:
    explicit TZONoticeBar(QWidget* AParent = nullptr);

    /// Adds AMessage, plain text, below those that are shown already.
    void Add(const QString& AMessage);

private:
    QLabel* FText;
};
