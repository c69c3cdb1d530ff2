// In the place of the desktop's browser and file manager.
#pragma once

#include <QDesktopServices>
#include <QObject>
#include <QUrl>

/// Takes down what the program would have the desktop open, while it lives.
class TOpenedUrls : public QObject {
    Q_OBJECT

public:
    TOpenedUrls() {
        for (const char* scheme : Schemes)
            QDesktopServices::setUrlHandler(QLatin1String(scheme), this, "Open");
    }
    ~TOpenedUrls() override {
        for (const char* scheme : Schemes)
            QDesktopServices::unsetUrlHandler(QLatin1String(scheme));
    }

    QList<QUrl> Urls;

public Q_SLOTS:
    void Open(const QUrl& AUrl) { Urls.append(AUrl); }

private:
    static constexpr const char* Schemes[] = {"http", "https", "file", "mailto", "ftp"};
};
