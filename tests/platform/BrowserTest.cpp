#include "platform/Browser.h"

#include "tests/hosts/OpenedUrls.h"

#include <gtest/gtest.h>

TEST(Browser, GetsAddressesOfTheWeb) {
    const TOpenedUrls opened;
    for (const char* address :
         {"http://a.test", "https://a.test/b?c=%41#d", "HTTP://a.test/", "hTTpS://a.test/"})
        EXPECT_EQ(OpenInBrowser(address), QString()) << address;
    EXPECT_EQ(
        opened.Urls,
        (QList<QUrl>{QUrl(QStringLiteral("http://a.test")), QUrl(QStringLiteral("https://a.test/b?c=A#d")),
                     QUrl(QStringLiteral("http://a.test/")), QUrl(QStringLiteral("https://a.test/"))}));
}

TEST(Browser, GetsNothingElse) {
    const TOpenedUrls opened;
    for (const char* address :
         {"", "a.test", "//a.test/", "/etc/passwd", "file:///etc/passwd", "FILE:///etc/passwd",
          "ftp://a.test/", "mailto:a@a.test", "javascript:alert(1)", "smb://a.test/share", "httpx://a.test/",
          "http:", "http:a.test", "https:///a", " http://a.test/", "http://a.test/ b", "http://[a/",
          "http://a.test:x/"})
        EXPECT_EQ(OpenInBrowser(address),
                  QStringLiteral("The address is not opened, because it is none of http or https."))
            << address;
    EXPECT_EQ(opened.Urls, QList<QUrl>());
}
