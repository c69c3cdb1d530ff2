#include "hosts/zoapi/Console.h"

#include "platform/VisibleText.h"

#include <QFile>
#include <QStringDecoder>

#include <unistd.h>

namespace {

bool IsTerminal(std::FILE* AFile) { return ::isatty(::fileno(AFile)) == 1; }

void Write(const QByteArray& ABytes, std::FILE* AFile) {
    std::fwrite(ABytes.constData(), 1, std::size_t(ABytes.size()), AFile);
}

/// Takes a response in pieces, which may end within a character or between the two of a line's end.
class TTerminal final : public QFile {
protected:
    qint64 writeData(const char* AData, qint64 ASize) override {
        QString text = FDecoder.decode(QByteArrayView(AData, ASize));
        if (text.isEmpty())
            return ASize;
        const bool isEndedAlready = FHasReturn && text.startsWith(u'\n');
        FHasReturn = text.endsWith(u'\r');
        if (isEndedAlready)
            text.remove(0, 1);
        const QByteArray visible = VisibleLines(text).toUtf8();
        return QFile::writeData(visible.constData(), visible.size()) == visible.size() ? ASize : -1;
    }

private:
    QStringDecoder FDecoder{QStringDecoder::Utf8, QStringConverter::Flag::ConvertInitialBom};
    bool FHasReturn = false;
};

} // namespace

void Console::PrintRow(const QString& AText, std::FILE* AFile) {
    Write(VisibleText(AText).toUtf8() + '\n', AFile);
}

void Console::PrintLines(const QString& AText, std::FILE* AFile) {
    Write(VisibleLines(AText).toUtf8() + '\n', AFile);
}

void Console::PrintExact(const QByteArray& ALine, std::FILE* AFile) {
    if (IsTerminal(AFile))
        PrintRow(QString::fromUtf8(ALine), AFile);
    else
        Write(ALine + '\n', AFile);
}

std::unique_ptr<QFileDevice> Console::OpenOutput() {
    std::unique_ptr<QFile> file;
    if (IsTerminal(stdout))
        file = std::make_unique<TTerminal>();
    else
        file = std::make_unique<QFile>();
    file->open(stdout, QIODevice::WriteOnly);
    return file;
}
