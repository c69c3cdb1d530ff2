// The way round a page by F6.
#pragma once

#include <QList>
#include <QObject>

class QWidget;

/// F6 and Shift+F6 lead the focus round the parts of a page: within one of them Tab may stay for good. A part
/// that is hidden, or in which nothing takes the focus, is passed over.
class TZOFocusRing : public QObject {
    Q_OBJECT

public:
    /// Belongs to APage. A part is a control, or a panel whose first control is meant.
    TZOFocusRing(QWidget* APage, const QList<QWidget*>& AParts);

private:
    void Go(int AStep);

    QWidget* FPage;
    QList<QWidget*> FParts;
};
