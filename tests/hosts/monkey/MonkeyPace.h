// Lets something happen again and again in an event loop, nested ones included, and takes the time.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QSemaphore>

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

/// Posts one act after another to the thread that it was made on. An act that starts an event loop of its
/// own, as menus and dialogs do, is not waited for: the next ones happen inside.
class TMonkeyPace : public QObject {
public:
    /// A time in which nothing happened.
    struct TPause {
        qint64 Ms;
        std::string During;
    };

    TMonkeyPace();
    ~TMonkeyPace() override;

    /// Runs AAct that often, then AEnd until no act is under way any more.
    void Run(int ACount, const std::function<void()>& AAct, const std::function<void()>& AEnd);
    /// What is being done, for the report of a pause.
    void Say(std::string AWhat);
    /// How many acts are under way, one inside the other.
    int Depth() const noexcept { return FDepth; }

    /// The longest of all pauses, and those that are longer than users bear.
    qint64 LongestMs() const noexcept { return FLongestMs; }
    const std::vector<TPause>& Pauses() const noexcept { return FPauses; }
    /// The times between two paintings of the progress of a running request, in milliseconds.
    const std::vector<qint64>& Repaints() const noexcept { return FRepaints; }

protected:
    bool eventFilter(QObject* AObject, QEvent* AEvent) override;

private:
    void Do(const std::function<void()>& AAct);
    std::string Said();

    QElapsedTimer FClock;
    QSemaphore FStarted;
    QSemaphore FEnded;
    std::mutex FMutex;
    std::string FSaid;
    std::vector<TPause> FPauses;
    qint64 FLongestMs = 0;
    std::vector<qint64> FRepaints;
    QPointer<QObject> FProgress;
    qint64 FPaintedMs = -1;
    std::atomic<int> FDepth = 0;
};
