// The tour through the explorer.
#pragma once

#include <QString>
#include <QThread>

/// Walks once through the whole road on the sample services, on a thread of its own, then ends the program:
/// exit code 0, or 1 after the message of the step that failed on standard error.
class TZOTour : public QThread {
    Q_OBJECT

public:
    explicit TZOTour(const QString& AFolder, QObject* AOwner = nullptr);
    /// Waits for the tour's end.
    ~TZOTour() override;

protected:
    void run() override;

private:
    QString FFolder;
};
