// A program that serves, run by a test.
#pragma once

#include <QProcess>
#include <QRegularExpression>

/// Runs a program from its construction until it is destroyed, or until the test's own process ends.
class TServerProcess {
public:
    /// Raises std::runtime_error when the program cannot be started.
    TServerProcess(const QString& AProgram, const QStringList& AArguments);
    TServerProcess(const TServerProcess&) = delete;
    TServerProcess& operator=(const TServerProcess&) = delete;
    ~TServerProcess();

    /// Waits until the program has printed what APattern matches, and gives its first capture. Raises
    /// std::runtime_error with all that was printed when the program ends before, or takes too long.
    QString WaitFor(const QRegularExpression& APattern);

private:
    QProcess FProcess;
    QByteArray FOutput;
};
