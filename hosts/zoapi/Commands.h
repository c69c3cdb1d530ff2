// The commands of zoapi.
#pragma once

#include <QStringList>

/// Each takes its arguments without the command's name, writes to standard output and standard error, and
/// returns the program's exit code: 0 on success, 1 when a request failed, 2 when the document cannot be
/// imported. A bad command line or request value raises EZOUsageError.
namespace Commands {

int Services(const QStringList& AArguments);
int Import(const QStringList& AArguments);
int Operations(const QStringList& AArguments);
int Describe(const QStringList& AArguments);
int Call(const QStringList& AArguments);

/// Stops what the commands have started.
void Done();

} // namespace Commands
