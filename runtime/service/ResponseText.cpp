#include "runtime/service/ResponseText_p.h"

#include "runtime/service/ServerMessage_p.h"

#include <QRegularExpression>
#include <QStringConverter>
#include <QStringList>

#include <algorithm>
#include <cstring>

namespace {

/// For HTTP/2, which sends no reasons (RFC 9110, section 15).
struct TReason {
    int Status;
    const char* Text;
};
constexpr TReason Reasons[] = {
    {300, "Multiple Choices"},
    {301, "Moved Permanently"},
    {302, "Found"},
    {303, "See Other"},
    {304, "Not Modified"},
    {307, "Temporary Redirect"},
    {308, "Permanent Redirect"},
    {400, "Bad Request"},
    {401, "Unauthorized"},
    {402, "Payment Required"},
    {403, "Forbidden"},
    {404, "Not Found"},
    {405, "Method Not Allowed"},
    {406, "Not Acceptable"},
    {407, "Proxy Authentication Required"},
    {408, "Request Timeout"},
    {409, "Conflict"},
    {410, "Gone"},
    {411, "Length Required"},
    {412, "Precondition Failed"},
    {413, "Content Too Large"},
    {414, "URI Too Long"},
    {415, "Unsupported Media Type"},
    {416, "Range Not Satisfiable"},
    {417, "Expectation Failed"},
    {421, "Misdirected Request"},
    {422, "Unprocessable Content"},
    {426, "Upgrade Required"},
    {428, "Precondition Required"},
    {429, "Too Many Requests"},
    {431, "Request Header Fields Too Large"},
    {500, "Internal Server Error"},
    {501, "Not Implemented"},
    {502, "Bad Gateway"},
    {503, "Service Unavailable"},
    {504, "Gateway Timeout"},
    {505, "HTTP Version Not Supported"},
};

QString ReasonOf(const TZOHttpResponse& AResponse) {
    if (!AResponse.Reason.isEmpty())
        return QString::fromUtf8(AResponse.Reason);
    const auto* found = std::find_if(std::begin(Reasons), std::end(Reasons),
                                     [&](const TReason& r) { return r.Status == AResponse.Status; });
    return found == std::end(Reasons) ? QString() : QString::fromLatin1(found->Text);
}

QByteArray Charset(const TZOHttpResponse& AResponse) {
    const QByteArray type = AResponse.Header("Content-Type");
    const qsizetype start = type.toLower().indexOf("charset=");
    if (start < 0)
        return "UTF-8";
    const QByteArray rest = type.mid(start + qsizetype(std::strlen("charset=")));
    return rest.split(';').first().replace('"', "").trimmed();
}

/// Control characters, and those that would turn the writing direction around.
bool IsHarmful(QChar AChar) {
    const ushort code = AChar.unicode();
    const bool turnsDirection = (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
    return turnsDirection || (AChar.category() == QChar::Other_Control && code != '\n' && code != '\t');
}

/// How long the server asks to wait before the next attempt; empty when it does not say.
QString RetryText(const TZOHttpResponse& AResponse) {
    if (AResponse.Status != 429 && AResponse.Status != 503)
        return {};
    static const QRegularExpression seconds(QStringLiteral("^\\d{1,9}$"));
    static const QRegularExpression date(
        QStringLiteral("^[A-Z][a-z]{2}, \\d\\d [A-Z][a-z]{2} \\d{4} \\d\\d:\\d\\d:\\d\\d GMT$"));
    const QString text = QString::fromLatin1(AResponse.Header("Retry-After"));
    if (seconds.match(text).hasMatch())
        return text.toInt() == 1
                   ? QStringLiteral("The server asks to wait 1 second before the next attempt.")
                   : QStringLiteral("The server asks to wait %1 seconds before the next attempt.")
                         .arg(text.toInt());
    if (date.match(text).hasMatch())
        return QStringLiteral("The server asks to wait until %1 before the next attempt.").arg(text);
    return {};
}

} // namespace

QByteArray ResponseText::MediaType(const TZOHttpResponse& AResponse) {
    const QByteArray type = AResponse.Header("Content-Type");
    return type.split(';').first().trimmed().toLower();
}

std::optional<QString> ResponseText::BodyText(const TZOHttpResponse& AResponse) {
    QStringDecoder decoder(Charset(AResponse).constData());
    if (!decoder.isValid())
        decoder = QStringDecoder(QStringDecoder::Utf8);
    QString text = decoder(AResponse.Body);
    if (decoder.hasError() || text.contains(QChar::Null))
        return std::nullopt;
    return text;
}

QString ResponseText::ForDisplay(QString AText, qsizetype AMaxChars) {
    AText.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    AText = AText.trimmed();
    const bool isCut = AText.size() > AMaxChars;
    if (isCut)
        AText.truncate(AText.at(AMaxChars - 1).isHighSurrogate() ? AMaxChars - 1 : AMaxChars);
    for (QChar& c : AText) {
        if (IsHarmful(c))
            c = QChar::ReplacementCharacter;
    }
    return isCut ? AText + QStringLiteral("...") : AText;
}

QString ResponseText::Failure(const TZOHttpResponse& AResponse) {
    const QString status =
        QStringLiteral("%1 %2").arg(AResponse.Status).arg(ForDisplay(ReasonOf(AResponse))).trimmed();
    QStringList lines = {status, RetryText(AResponse)};
    for (const QString& line : ServerMessage::Of(AResponse).split(QLatin1Char('\n'))) {
        if (line != status)
            lines.append(line);
    }
    lines.removeAll(QString());
    return lines.join(QLatin1Char('\n'));
}
