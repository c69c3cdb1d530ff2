// Something that the user may do, or not.
#pragma once

#include <QFrame>

/// A strip with a sentence, a button that does what it offers, and one that takes it away. It deletes itself
/// after either.
class TZOOfferBar final : public QFrame {
    Q_OBJECT

public:
    /// AMessage is shown as plain text.
    TZOOfferBar(const QString& AMessage, const QString& AAction, QWidget* AParent = nullptr);

Q_SIGNALS:
    void Accepted();
};
