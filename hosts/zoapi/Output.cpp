#include "hosts/zoapi/Output.h"

#include "hosts/zoapi/Arguments.h"
#include "hosts/zoapi/Console.h"

#include "runtime/types/Failures.h"

#include "platform/SavedFile.h"

#include <QFileDevice>

TZOOutput::TZOOutput(const QString& AName) : FName(AName) {
    if (AName.isEmpty() || AName == QStringLiteral("-")) {
        FName = QStringLiteral("standard output");
        FStream = Console::OpenOutput();
    } else {
        FStream = OpenForSaving(AName);
    }
    if (!FStream->isOpen())
        throw EZOUsageError(QStringLiteral("%1 cannot be written: %2.").arg(FName, FStream->errorString()));
}

TZOOutput::~TZOOutput() = default;

void TZOOutput::Write(const QByteArray& ABytes) {
    if (FStream->write(ABytes) != ABytes.size())
        Fail(FStream->errorString());
}

void TZOOutput::Finish() {
    if (const QString reason = PutInPlace(*FStream); !reason.isEmpty())
        Fail(reason);
}

void TZOOutput::Fail(const QString& AReason) const {
    throw EZODownloadError(QStringLiteral("The response could not be written to %1: %2").arg(FName, AReason));
}
