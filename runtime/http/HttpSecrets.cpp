#include "runtime/http/HttpSecrets.h"

#include <algorithm>

namespace {

/// "name=(hidden); Path=/" of a cookie that a server sets (RFC 6265, section 4.1).
QByteArray WithoutCookieValue(const QByteArray& ACookie) {
    const qsizetype equals = ACookie.indexOf('=');
    const qsizetype end = ACookie.indexOf(';');
    if (equals < 0 || (end >= 0 && end < equals))
        return TZOHttpSecrets::Hidden;
    return ACookie.left(equals + 1) + TZOHttpSecrets::Hidden + (end < 0 ? QByteArray() : ACookie.mid(end));
}

} // namespace

TZOHttpSecrets::TZOHttpSecrets(const TZOHttpRequest& ARequest) {
    for (const TZOHttpHeader& header : ARequest.Headers) {
        if (header.IsCredential)
            AddHeader(header);
    }
    AddQuery(ARequest.CredentialQuery);
    std::stable_sort(FValues.begin(), FValues.end(),
                     [](const auto& A, const auto& B) { return A.size() > B.size(); });
}

void TZOHttpSecrets::AddHeader(const TZOHttpHeader& AHeader) {
    if (AHeader.Name.compare("Cookie", Qt::CaseInsensitive) == 0) {
        for (const QByteArray& cookie : AHeader.Value.split(';'))
            Add(cookie.mid(cookie.indexOf('=') + 1).trimmed());
        return;
    }
    Add(AHeader.Value);
    const qsizetype blank = AHeader.Value.indexOf(' ');
    if (blank < 0 || AHeader.Name.compare("Authorization", Qt::CaseInsensitive) != 0)
        return;
    const QByteArray credentials = AHeader.Value.mid(blank + 1);
    Add(credentials);
    if (AHeader.Value.startsWith("Basic ")) {
        const QByteArray plain = QByteArray::fromBase64(credentials);
        Add(plain);
        Add(plain.mid(plain.indexOf(':') + 1));
    }
}

void TZOHttpSecrets::AddQuery(const QByteArray& APieces) {
    for (const QByteArray& piece : APieces.split('&')) {
        const qsizetype equals = piece.indexOf('=');
        if (equals <= 0 || equals + 1 == piece.size())
            continue;
        FPieces.push_back(piece);
        Add(QByteArray::fromPercentEncoding(piece.mid(equals + 1)));
    }
}

void TZOHttpSecrets::Add(const QByteArray& AValue) {
    if (AValue.size() < MinSize)
        return;
    FValues.push_back(AValue);
    if (const QByteArray encoded = AValue.toPercentEncoding(); encoded != AValue)
        FValues.push_back(encoded);
}

QByteArray TZOHttpSecrets::Hide(QByteArray AText) const {
    for (const QByteArray& piece : FPieces)
        AText.replace(piece, piece.left(piece.indexOf('=') + 1) + Hidden);
    for (const QByteArray& value : FValues)
        AText.replace(value, Hidden);
    return AText;
}

QString TZOHttpSecrets::Hide(const QString& AText) const {
    return FValues.empty() && FPieces.empty() ? AText : QString::fromUtf8(Hide(AText.toUtf8()));
}

void TZOHttpSecrets::HideIn(QList<TZOHttpHeader>& AHeaders) const {
    for (TZOHttpHeader& header : AHeaders) {
        header.Value = header.Name.compare("Set-Cookie", Qt::CaseInsensitive) == 0
                           ? WithoutCookieValue(header.Value)
                           : Hide(header.Value);
    }
}
