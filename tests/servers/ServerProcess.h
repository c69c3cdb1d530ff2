// A program that serves, run by a test.
#pragma once

#include <QList>
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
    /// Waits until something listens on each of these ports of 127.0.0.1. Raises as WaitFor does.
    void WaitForPorts(const QList<int>& APorts);

private:
    [[noreturn]] void Fail();

    QProcess FProcess;
    QByteArray FOutput;
};
