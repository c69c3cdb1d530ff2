#include "hosts/zoapi/Output.h"

#include "hosts/zoapi/Arguments.h"

#include "runtime/types/Failures.h"

#include "platform/SavedFile.h"

#include <QFileInfo>
#include <QSaveFile>

TZOOutput::TZOOutput(const QString& AName) : FName(AName) {
    bool isOpen = false;
    const QFileInfo info(AName);
    if (AName.isEmpty() || AName == QStringLiteral("-")) {
        FName = QStringLiteral("standard output");
        auto file = std::make_unique<QFile>();
        isOpen = file->open(stdout, QIODevice::WriteOnly);
        FStream = std::move(file);
    } else if (info.exists() && !info.isFile()) {
        // A pipe or a device is there to be written to, not to be replaced.
        FStream = std::make_unique<QFile>(AName);
        isOpen = FStream->open(QIODevice::WriteOnly);
    } else {
        auto file = std::make_unique<QSaveFile>(AName);
        // Where no file can be made beside it.
        file->setDirectWriteFallback(true);
        FSaveFile = file.get();
        isOpen = file->open(QIODevice::WriteOnly);
        FStream = std::move(file);
    }
    if (!isOpen)
        throw EZOUsageError(QStringLiteral("%1 cannot be written: %2.").arg(FName, FStream->errorString()));
}

TZOOutput::~TZOOutput() = default;

void TZOOutput::Write(const QByteArray& ABytes) {
    if (FStream->write(ABytes) != ABytes.size())
        Fail(FStream->errorString());
}

void TZOOutput::Finish() {
    if (FSaveFile) {
        if (const QString reason = PutInPlace(*FSaveFile); !reason.isEmpty())
            Fail(reason);
    } else if (!FStream->flush()) {
        Fail(FStream->errorString());
    }
}

void TZOOutput::Fail(const QString& AReason) const {
    throw EZODownloadError(QStringLiteral("The response could not be written to %1: %2").arg(FName, AReason));
}
