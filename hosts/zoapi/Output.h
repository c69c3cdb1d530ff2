// Where the response of a call goes.
#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

class QFileDevice;

/// A file, which stays as it was until all of the response is there, or a stream.
class TZOOutput {
public:
    /// AName is a file, or empty or "-" for standard output. Raises EZOUsageError when it cannot be written.
    explicit TZOOutput(const QString& AName);
    ~TZOOutput();

    /// What to write to; lives as long as this object.
    QFileDevice* Stream() const { return FStream.get(); }
    /// Raises EZODownloadError, which names the file.
    void Write(const QByteArray& ABytes);
    /// To be called when all is written: only then a file takes its place. Raises as Write does.
    void Finish();

private:
    [[noreturn]] void Fail(const QString& AReason) const;

    QString FName;
    std::unique_ptr<QFileDevice> FStream;
};
