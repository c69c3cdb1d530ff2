// One form under design.
#pragma once

#include "platform/DesignerNotify.h"

#include <QObject>
#include <QPointer>

class QDesignerFormWindowInterface;

/// Declares a form's root to the components on it, writes what the explorer changes on them into the form,
/// and announces their removal. Dies with the form's window, whose child it is.
class TZOFormWatch final : public QObject, public IDesignerNotify {
    Q_OBJECT

public:
    explicit TZOFormWatch(QDesignerFormWindowInterface* AForm);
    ~TZOFormWatch() override;

    /// Writes the changed options through the form's undo stack, which marks the form modified and lets the
    /// property editor follow.
    void Modified() override;
    /// The form is about to be closed: its components count as removed.
    void Close();

private:
    void SetRoot(QWidget* ARoot);
    void AnnounceRemoval(QWidget* AWidget);

    QDesignerFormWindowInterface* FForm;
    QPointer<QWidget> FRoot;
};
