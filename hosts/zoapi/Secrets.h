// Credentials from the command line, without leaving them where other users can read them.
#pragma once

#include <QString>

namespace Secrets {

/// Overwrites the literal values of options that take a secret, in the process's own arguments, which every
/// user of the machine can read.
void Wipe(int AArgc, char** AArgv);

/// The secret that AText stands for: the first line of a file for "@FILE", a variable of the environment for
/// "env:NAME", else AText itself. Raises EZOUsageError when there is none.
QString Read(const QString& AText);

} // namespace Secrets
