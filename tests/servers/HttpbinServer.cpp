#include "tests/servers/HttpbinServer.h"

THttpbinServer::THttpbinServer()
    : FProcess(QStringLiteral("gunicorn"),
               {QStringLiteral("--bind"), QStringLiteral("127.0.0.1:0"), QStringLiteral("--workers"),
                QStringLiteral("1"), QStringLiteral("httpbin:app")}),
      FUrl(FProcess.WaitFor(
          QRegularExpression(QStringLiteral("Listening at: (http://127\\.0\\.0\\.1:\\d+)")))) {}
