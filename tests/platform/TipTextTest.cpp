#include "platform/TipText.h"

#include <QTextDocument>

#include <gtest/gtest.h>

TEST(TipText, IsSeenAsItIsWhateverItLooksLike) {
    const std::pair<QString, QString> texts[] = {
        {QStringLiteral("plain"), QStringLiteral("plain")},
        {QStringLiteral("<b>a</b> & \"b\" <img src='x'> %1"),
         QStringLiteral("<b>a</b> & \"b\" <img src='x'> %1")},
        {QStringLiteral("one\ntwo\r\n  three"), QStringLiteral("one\ntwo\n  three")},
        {QString::fromUtf8("a\u202E\a"), QString::fromUtf8("a\\u202E␇")}};
    for (const auto& [text, shown] : texts) {
        const QString tip = TipText(text);
        EXPECT_TRUE(Qt::mightBeRichText(tip)) << tip.toStdString();
        QTextDocument document;
        document.setHtml(tip);
        EXPECT_EQ(document.toPlainText(), shown);
    }
}
