// The window that lists what is wrong with documents.
#pragma once

#include "openapi/ApiProblem.h"

#include <QDialog>

class QTreeWidget;

/// One row a problem: file, place, sentence. Copy takes the selected rows, or all where none is.
class TZOProblemWindow final : public QDialog {
    Q_OBJECT

public:
    explicit TZOProblemWindow(QWidget* AParent);

    void SetProblems(const TZOApiProblems& AProblems);

protected:
    bool eventFilter(QObject* AWatched, QEvent* AEvent) override;

private:
    void Copy() const;

    QTreeWidget* FList;
    TZOApiProblems FProblems;
};
