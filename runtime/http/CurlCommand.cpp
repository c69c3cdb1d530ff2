#include "runtime/http/CurlCommand.h"

#include "platform/Utf8.h"
#include "runtime/types/Failures.h"

#include <QFileDevice>
#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <cstring>

namespace {

/// Longer arguments are refused by some systems; a pipe has no such bound.
constexpr qsizetype MaxArgument = 100'000;

QString Quoted(const QString& AText) {
    QString quoted = AText;
    quoted.replace(u'\'', QLatin1String("'\\''"));
    return u'\'' + quoted + u'\'';
}

QString Quoted(const QByteArray& AText) { return Quoted(TextFromUtf8(AText)); }

QString FileOf(const QIODevice* AStream) {
    const auto* file = qobject_cast<const QFileDevice*>(AStream);
    if (!file)
        throw EZORequestValueError(QStringLiteral("What is sent is no file: no command can name it."));
    return QFileInfo(file->fileName()).absoluteFilePath();
}

/// The operand of printf that gives AContent.
QString Printed(const QByteArray& AContent) {
    if (!AContent.contains('\0'))
        return QStringLiteral("'%s' ") + Quoted(AContent);
    QByteArray format = AContent;
    format.replace('\\', "\\\\").replace('%', "%%").replace(QByteArray(1, '\0'), "\\000");
    return Quoted(format);
}

/// A text in a form's description, where semicolons and commas mean something.
QByteArray FormWord(const QByteArray& AText) {
    QByteArray word = AText;
    word.replace('\\', "\\\\").replace('"', "\\\"");
    return '"' + word + '"';
}

class TWriter {
public:
    TWriter(const TZOHttpRequest& ARequest, const TZOCurlOptions& AOptions)
        : FRequest(ARequest), FOptions(AOptions) {}

    QString Text() {
        AddMethod();
        FLines.append(QStringLiteral("--compressed --user-agent 'ZO-Bridgework'"));
        AddHeaders();
        AddBody();
        if (!FOptions.OutputFile.isEmpty())
            FLines.append(QStringLiteral("--output ") +
                          Quoted(QFileInfo(FOptions.OutputFile).absoluteFilePath()));
        return FPipe + FLines.join(QStringLiteral(" \\\n  "));
    }

private:
    bool HasEmptyBody() const {
        const QByteArray& method = FRequest.Method;
        return FRequest.Body.Kind == bkNone && (method == "POST" || method == "PUT" || method == "PATCH");
    }

    void AddMethod() {
        static const QByteArray defaults[] = {"GET", "POST", "PUT", "POST"};
        const QByteArray& usual = HasEmptyBody() ? defaults[bkBytes] : defaults[FRequest.Body.Kind];
        QString start = QStringLiteral("curl");
        if (FRequest.Method == "HEAD" && FRequest.Body.Kind == bkNone)
            start += QLatin1String(" --head");
        else if (FRequest.Method != usual)
            start += QLatin1String(" --request ") + QString::fromUtf8(FRequest.Method);
        const QByteArray url = Url();
        if (FRequest.Body.Kind == bkStream ||
            std::any_of(url.begin(), url.end(), [](char c) { return std::strchr("[]{}", c); }))
            start += QLatin1String(" --globoff");
        if (url.contains("/."))
            start += QLatin1String(" --path-as-is");
        FLines.append(start + u' ' + Quoted(url));
    }

    QByteArray Url() const {
        QByteArray url = FRequest.Url;
        QByteArray added;
        for (const QByteArray& pair : FRequest.CredentialQuery.split('&')) {
            if (pair.isEmpty())
                continue;
            const QByteArray shown = pair.left(pair.indexOf('=') + 1) + TZOCurlCommand::CredentialMark;
            added += (added.isEmpty() ? "" : "&") + (FOptions.WithCredentials ? pair : shown);
        }
        if (added.isEmpty())
            return url;
        const qsizetype fragment = url.indexOf('#');
        const qsizetype end = fragment < 0 ? url.size() : fragment;
        const qsizetype query = url.left(end).indexOf('?');
        if (query != end - 1)
            added.prepend(query < 0 ? '?' : '&');
        return url.insert(end, added);
    }

    void AddHeader(const QByteArray& AName, const QByteArray& AValue) {
        FLines.append(QStringLiteral("--header ") +
                      Quoted(AValue.isEmpty() ? AName + ';' : AName + ": " + AValue));
    }

    void AddHeaders() {
        for (const TZOHttpHeader& header : FRequest.Headers) {
            const bool isHidden = header.IsCredential && !FOptions.WithCredentials;
            AddHeader(header.Name, isHidden ? QByteArray(TZOCurlCommand::CredentialMark) : header.Value);
        }
        const TZOHttpBody& body = FRequest.Body;
        if ((body.Kind == bkBytes || body.Kind == bkStream) && !body.ContentType.isEmpty())
            AddHeader("Content-Type", body.ContentType);
        else if (body.Kind == bkBytes || HasEmptyBody())
            FLines.append(QStringLiteral("--header 'Content-Type:'"));
    }

    void AddBody() {
        const TZOHttpBody& body = FRequest.Body;
        if (body.Kind == bkStream) {
            FLines.append(QStringLiteral("--upload-file ") + Quoted(FileOf(body.Stream)));
        } else if (body.Kind == bkMultipart) {
            for (const TZOHttpPart& part : body.Parts)
                AddPart(part);
        } else if (body.Kind == bkBytes || HasEmptyBody()) {
            // A leading "@" would name a file.
            const bool isPiped = body.Content.contains('\0') || body.Content.size() > MaxArgument ||
                                 body.Content.startsWith('@');
            if (isPiped)
                FPipe = QStringLiteral("printf ") + Printed(body.Content) + QStringLiteral(" | ");
            FLines.append(QStringLiteral("--data-binary ") +
                          (isPiped ? QStringLiteral("@-") : Quoted(body.Content)));
        }
    }

    void AddPart(const TZOHttpPart& APart) {
        if (APart.Name.contains('=') || APart.Name.contains('\0') || APart.Content.contains('\0'))
            throw EZORequestValueError(
                QStringLiteral("The part \"%1\" of the form cannot be written as a command.")
                    .arg(QString::fromUtf8(APart.Name)));
        QByteArray text = APart.Name + '=';
        text += APart.Stream ? '@' + FormWord(FileOf(APart.Stream).toUtf8()) : FormWord(APart.Content);
        if (!APart.FileName.isEmpty())
            text += ";filename=" + FormWord(APart.FileName.toUtf8());
        if (!APart.ContentType.isEmpty())
            text += ";type=" + APart.ContentType;
        FLines.append(QStringLiteral("--form ") + Quoted(text));
    }

    const TZOHttpRequest& FRequest;
    const TZOCurlOptions& FOptions;
    QString FPipe;
    QStringList FLines;
};

} // namespace

QString TZOCurlCommand::Of(const TZOHttpRequest& ARequest, const TZOCurlOptions& AOptions) {
    return TWriter(ARequest, AOptions).Text();
}

bool TZOCurlCommand::HasCredentials(const TZOHttpRequest& ARequest) {
    return !ARequest.CredentialQuery.isEmpty() ||
           std::any_of(ARequest.Headers.begin(), ARequest.Headers.end(),
                       [](const TZOHttpHeader& h) { return h.IsCredential; });
}
