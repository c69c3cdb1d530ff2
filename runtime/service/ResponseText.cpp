#include "runtime/service/ResponseText_p.h"

#include <QStringConverter>

#include <algorithm>
#include <cstring>

namespace {

constexpr qsizetype MaxShownChars = 2000;

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

QString ForDisplay(QString AText) {
    AText.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    AText = AText.trimmed();
    const bool isCut = AText.size() > MaxShownChars;
    if (isCut)
        AText.truncate(AText.at(MaxShownChars - 1).isHighSurrogate() ? MaxShownChars - 1 : MaxShownChars);
    for (QChar& c : AText) {
        if (IsHarmful(c))
            c = QChar::ReplacementCharacter;
    }
    return isCut ? AText + QStringLiteral("...") : AText;
}

QString BinarySummary(const TZOHttpResponse& AResponse) {
    const QByteArray type = ResponseText::MediaType(AResponse);
    return QStringLiteral("(%1 bytes of %2)")
        .arg(qMax(AResponse.Body.size(), AResponse.Header("Content-Length").toLongLong()))
        .arg(type.isEmpty() ? QStringLiteral("unnamed type") : ForDisplay(QString::fromUtf8(type)));
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

QString ResponseText::Failure(const TZOHttpResponse& AResponse) {
    const QString status =
        QStringLiteral("%1 %2").arg(AResponse.Status).arg(ForDisplay(ReasonOf(AResponse))).trimmed();
    if (AResponse.Body.isEmpty())
        return status;
    const auto text = BodyText(AResponse);
    const QString said = text ? ForDisplay(*text) : BinarySummary(AResponse);
    return said.isEmpty() ? status : status + QLatin1Char('\n') + said;
}
