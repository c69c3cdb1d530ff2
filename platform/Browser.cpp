#include "platform/Browser.h"

#include <QDesktopServices>
#include <QUrl>

QString OpenInBrowser(const QByteArray& AAddress) {
    const QUrl url = QUrl::fromEncoded(AAddress, QUrl::StrictMode);
    // Qt writes schemes in lower case.
    const bool isWeb = url.scheme() == QStringLiteral("http") || url.scheme() == QStringLiteral("https");
    if (!url.isValid() || !isWeb || url.host().isEmpty())
        return QStringLiteral("The address is not opened, because it is none of http or https.");
    if (!QDesktopServices::openUrl(url))
        return QStringLiteral(
            "No browser could be opened. Copy the address, and open it in a browser on this "
            "machine.");
    return {};
}
