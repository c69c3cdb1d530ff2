#include "runtime/http/HttpRecord.h"

#include <algorithm>

namespace {

bool IsSameName(const QByteArray& A, const QByteArray& B) { return A.compare(B, Qt::CaseInsensitive) == 0; }

/// Headers that hold credentials whoever has written them: an address may have brought them along.
bool IsSecretName(const QByteArray& AName) {
    static const char* const names[] = {"Authorization", "Proxy-Authorization", "Cookie"};
    return std::any_of(std::begin(names), std::end(names),
                       [&](const char* n) { return IsSameName(AName, n); });
}

} // namespace

void TZOHttpHop::SetRequestHead(QByteArrayView AHead) {
    RequestHeaders.clear();
    const QList<QByteArray> lines = AHead.toByteArray().split('\n');
    RequestLine = lines.first().trimmed();
    for (const QByteArray& line : lines.mid(1)) {
        if (const qsizetype colon = line.indexOf(':'); colon > 0)
            RequestHeaders.append({line.left(colon).trimmed(), line.mid(colon + 1).trimmed()});
    }
}

void TZOHttpHop::HideCredentials(const QList<TZOHttpHeader>& ASent, const TZOHttpSecrets& ASecrets) {
    for (TZOHttpHeader& header : RequestHeaders) {
        header.IsCredential =
            IsSecretName(header.Name) || std::any_of(ASent.begin(), ASent.end(), [&](const auto& s) {
                return s.IsCredential && IsSameName(s.Name, header.Name);
            });
        if (header.IsCredential)
            header.Value = TZOHttpRecord::Hidden;
    }
    ASecrets.HideIn(RequestHeaders);
    RequestLine = ASecrets.Hide(RequestLine);
    // A server may say back what it was asked with.
    StatusLine = ASecrets.Hide(StatusLine);
    ASecrets.HideIn(ResponseHeaders);
}

QByteArray TZOHttpHop::ResponseHeader(const QByteArray& AName) const {
    const auto found = std::find_if(ResponseHeaders.rbegin(), ResponseHeaders.rend(),
                                    [&](const auto& h) { return IsSameName(h.Name, AName); });
    return found == ResponseHeaders.rend() ? QByteArray() : found->Value;
}

qint64 TZOHttpRecord::ContentLength() const {
    if (Hops.isEmpty() || !Hops.last().ResponseHeader("Content-Encoding").isEmpty())
        return -1;
    bool isNumber = false;
    const qint64 length = Hops.last().ResponseHeader("Content-Length").toLongLong(&isNumber);
    return isNumber && length >= 0 ? length : -1;
}
