#include "hosts/zoapi/Arguments.h"
#include "hosts/zoapi/Commands.h"
#include "hosts/zoapi/Console.h"
#include "hosts/zoapi/Secrets.h"

#include "platform/CoreFiles.h"
#include "platform/Exceptions.h"

#include <QCoreApplication>
#include <QScopeGuard>

#include <cstdio>

namespace {

constexpr int BadCommandLine = 2;

constexpr const char* Usage = R"(Usage: zoapi COMMAND ...

  services [--json]              lists the service classes of service plug-ins
  import [--json] DOC...         reads API documents and tells what is in them
  operations [--json] DOC        lists the operations
  describe DOC OPERATION         shows what an operation takes and answers
  call DOC OPERATION [OPTION]... executes an operation

Where a document is asked for, the name of a service class will do, too, except for import.

Options of call:
  --server URL         where requests go, instead of the document's first server
  --set PATH=TEXT      sets a value of the request; PATH is a JSON pointer without its first slash
  --request FILE       reads the request's value as JSON; - is standard input
  --upload NAME=FILE   sends a file
  --output FILE        where the response goes; - is standard output
  --api-key KEY  --bearer TOKEN  --basic USER:PASSWORD
                       credentials; also @FILE or env:NAME
  --oauth client-credentials|authorization-code
                       gets a token first; the latter prints an address to open in a browser
  --client-id ID  --secret S  --scope S
                       the client and what it asks for; no secret: a public client
  --ca FILE            certificates to trust, in PEM
  --verbose            shows the heads of requests and answers on standard error

Exits with 0 on success, 1 when the request failed, 2 when something given is wrong.
)";

int RunCommand(const QStringList& AArguments) {
    const QString command = AArguments.value(0);
    const QStringList rest = AArguments.mid(1);
    if (command == QStringLiteral("--help")) {
        std::fputs(Usage, stdout);
        return 0;
    }
    if (command == QStringLiteral("--version")) {
        std::puts("zoapi " ZO_VERSION);
        return 0;
    }
    const std::pair<const char*, int (*)(const QStringList&)> commands[] = {
        {"services", &Commands::Services},
        {"import", &Commands::Import},
        {"operations", &Commands::Operations},
        {"describe", &Commands::Describe},
        {"call", &Commands::Call},
    };
    for (const auto& [name, run] : commands) {
        if (command == QLatin1String(name))
            return run(rest);
    }
    throw EZOUsageError(command.isEmpty() ? QStringLiteral("A command is missing.")
                                          : QStringLiteral("There is no command \"%1\".").arg(command));
}

// What was printed is on its way only: a full disk shows when it is written.
void FinishOutput() {
    const bool wasWritten = std::ferror(stdout) == 0;
    if (std::fflush(stdout) != 0 || !wasWritten)
        throw EStreamError(QStringLiteral("Standard output could not be written."));
}

} // namespace

int main(int AArgc, char** AArgv) {
    ForbidCoreFiles();
    QStringList arguments;
    for (int i = 1; i < AArgc; ++i)
        arguments.append(QString::fromLocal8Bit(AArgv[i]));
    Secrets::Wipe(AArgc, AArgv);
    const QCoreApplication application(AArgc, AArgv);
    const auto done = qScopeGuard(Commands::Done);
    try {
        const int exitCode = RunCommand(arguments);
        FinishOutput();
        return exitCode;
    } catch (const EZOUsageError& error) {
        Console::PrintLines(error.Message(), stderr);
        Console::PrintRow(QStringLiteral("Try 'zoapi --help'."), stderr);
        return BadCommandLine;
    } catch (const std::exception& error) {
        Console::PrintRow(ExceptionClassName(error), stderr);
        Console::PrintLines(ExceptionMessage(error), stderr);
        return 1;
    }
}
