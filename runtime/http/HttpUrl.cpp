#include "runtime/http/HttpUrl_p.h"

#include "runtime/types/Failures.h"

#include <curl/curl.h>

#include <algorithm>

namespace {

/// An address as a message may hold it: user name, password and query may be secrets.
QString Shown(const QByteArray& AUrl) {
    QByteArray text = AUrl.split('?').first();
    const qsizetype host = text.contains("//") ? text.indexOf("//") + 2 : 0;
    const qsizetype slash = text.indexOf('/', host);
    const qsizetype at = text.first(slash < 0 ? text.size() : slash).lastIndexOf('@');
    if (at >= host)
        text.remove(host, at + 1 - host);
    return QString::fromUtf8(text.left(200));
}

QByteArray NameOf(const QByteArray& APiece) {
    return QByteArray::fromPercentEncoding(APiece.split('=').first().replace('+', ' '));
}

} // namespace

void TZOHttpUrl::TRelease::operator()(CURLU* AHandle) const { curl_url_cleanup(AHandle); }

TZOHttpUrl::TZOHttpUrl(std::unique_ptr<CURLU, TRelease> AHandle) : FHandle(std::move(AHandle)) {
    FHost = Part(CURLUPART_HOST).toLower();
}

QByteArray TZOHttpUrl::Origin() const {
    return Part(CURLUPART_SCHEME).toLower() + "://" + FHost + ':' + Part(CURLUPART_PORT, CURLU_DEFAULT_PORT);
}

TZOHttpUrl::TZOHttpUrl(const QByteArray& AUrl)
    : TZOHttpUrl([&] {
          std::unique_ptr<CURLU, TRelease> handle(curl_url());
          const QByteArray scheme = AUrl.left(AUrl.indexOf("//") + 2).toLower();
          // A third slash leaves the server's name out; the parser would take the path for it.
          const bool isHttp =
              (scheme == "http://" || scheme == "https://") && !AUrl.mid(scheme.size()).startsWith('/');
          // Dot segments stay as they are: a path belongs to whoever wrote it.
          if (!isHttp || curl_url_set(handle.get(), CURLUPART_URL, AUrl.constData(), CURLU_PATH_AS_IS))
              throw EZORequestValueError(QStringLiteral("\"%1\" is not an address that starts with "
                                                        "\"http://\" or \"https://\" and names a server.")
                                             .arg(Shown(AUrl)));
          curl_url_set(handle.get(), CURLUPART_FRAGMENT, nullptr, 0);
          return handle;
      }()) {}

TZOHttpUrl TZOHttpUrl::Resolved(const QByteArray& ALocation) const {
    const auto refuse = [&] {
        throw EZORedirectRefusedError(
            QStringLiteral("%1 redirects to \"%2\", which is no http or https address.")
                .arg(Place(), Shown(ALocation)));
    };
    std::unique_ptr<CURLU, TRelease> handle(curl_url_dup(FHandle.get()));
    // The parser would write a blank as "+", which only forms read as one.
    const QByteArray location = QByteArray(ALocation).replace(' ', "%20");
    if (curl_url_set(handle.get(), CURLUPART_URL, location.constData(), CURLU_URLENCODE))
        refuse();
    curl_url_set(handle.get(), CURLUPART_USER, nullptr, 0);
    curl_url_set(handle.get(), CURLUPART_PASSWORD, nullptr, 0);
    curl_url_set(handle.get(), CURLUPART_FRAGMENT, nullptr, 0);
    TZOHttpUrl target(std::move(handle));
    const QByteArray origin = target.Origin();
    if (!origin.startsWith("http://") && !origin.startsWith("https://"))
        refuse();
    return target;
}

QByteArray TZOHttpUrl::Part(int AWhat, unsigned AFlags) const {
    char* text = nullptr;
    if (curl_url_get(FHandle.get(), static_cast<CURLUPart>(AWhat), &text, AFlags))
        return {};
    const QByteArray part(text);
    curl_free(text);
    return part;
}

bool TZOHttpUrl::IsLoopback() const {
    return FHost == "localhost" || FHost == "[::1]" || FHost.startsWith("127.");
}

QString TZOHttpUrl::Place() const {
    const QByteArray origin = Origin();
    return QString::fromUtf8(origin.mid(origin.indexOf("//") + 2));
}

QByteArray TZOHttpUrl::Text() const {
    const QByteArray whole = Part(CURLUPART_URL);
    if (!whole.contains('@'))
        return whole;
    TZOHttpUrl bare(std::unique_ptr<CURLU, TRelease>(curl_url_dup(FHandle.get())));
    curl_url_set(bare.Handle(), CURLUPART_USER, nullptr, 0);
    curl_url_set(bare.Handle(), CURLUPART_PASSWORD, nullptr, 0);
    return bare.Part(CURLUPART_URL);
}

void TZOHttpUrl::AddQuery(const QByteArray& APieces) {
    if (!APieces.isEmpty())
        curl_url_set(FHandle.get(), CURLUPART_QUERY, APieces.constData(), CURLU_APPENDQUERY);
}

void TZOHttpUrl::RemoveQuery(const QByteArray& APieces) {
    const QByteArray query = Part(CURLUPART_QUERY);
    if (APieces.isEmpty() || query.isEmpty())
        return;
    QList<QByteArray> names;
    for (const QByteArray& piece : APieces.split('&'))
        names.append(NameOf(piece));
    QList<QByteArray> kept;
    for (const QByteArray& piece : query.split('&')) {
        if (!names.contains(NameOf(piece)))
            kept.append(piece);
    }
    curl_url_set(FHandle.get(), CURLUPART_QUERY, kept.isEmpty() ? nullptr : kept.join('&').constData(), 0);
}
