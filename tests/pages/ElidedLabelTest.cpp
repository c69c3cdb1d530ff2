#include "pages/ElidedLabel.h"

#include <QApplication>
#include <QHelpEvent>
#include <QImage>
#include <QTest>
#include <QToolTip>

#include <gtest/gtest.h>

namespace {

class ElidedLabel : public testing::Test {
protected:
    ElidedLabel() {
        Label.resize(100, 20);
        Label.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&Label));
    }
    ~ElidedLabel() override { QToolTip::hideText(); }

    /// What the tool tip says over the label.
    QString ToolTip() {
        const QPoint place(10, 10);
        QHelpEvent event(QEvent::ToolTip, place, Label.mapToGlobal(place));
        QCoreApplication::sendEvent(&Label, &event);
        return QToolTip::text();
    }
    QImage Image() { return Label.grab().toImage(); }

    TZOElidedLabel Label;
};

} // namespace

TEST_F(ElidedLabel, KeepsItsTextAndGivesWay) {
    Label.setText(QStringLiteral("word ").repeated(100));
    EXPECT_EQ(Label.text().size(), 500);
    EXPECT_EQ(Label.minimumSizeHint().width(), 0);
    EXPECT_LE(Label.sizeHint().width(), 400);
    EXPECT_EQ(Label.sizeHint().height(), Label.fontMetrics().height());
}

TEST_F(ElidedLabel, ShowsTheWholeTextInATipWhereItDoesNotFit) {
    Label.setText(QStringLiteral("short"));
    EXPECT_EQ(ToolTip(), QString());
    Label.setText(QStringLiteral("<i>a & b</i> ").repeated(20));
    EXPECT_TRUE(ToolTip().contains(QStringLiteral("&lt;i&gt;a &amp; b&lt;/i&gt;")));
}

TEST_F(ElidedLabel, EndsInAnEllipsis) {
    Label.setText(QStringLiteral("m").repeated(5));
    const QImage five = Image();
    Label.setText(QStringLiteral("m").repeated(200));
    const QImage many = Image();
    Label.setText(QStringLiteral("m").repeated(300));
    EXPECT_EQ(Image(), many);
    EXPECT_NE(five, many);
}

TEST_F(ElidedLabel, IsOneLineWhateverTheTextHolds) {
    Label.setText(QStringLiteral("a\nb\tc"));
    const QImage image = Image();
    Label.setText(QStringLiteral("a b c"));
    EXPECT_EQ(Image(), image);
    EXPECT_EQ(Label.sizeHint().height(), Label.fontMetrics().height());
}

TEST_F(ElidedLabel, ShowsAllOfItsTextWhereItHasTheSizeItAsksFor) {
    QFont font;
    font.setPixelSize(13);
    Label.setFont(font);
    QString text;
    for (const char letter : QByteArrayLiteral("503 Service Unavailable, 2 ms, 202 bytes")) {
        text += QLatin1Char(letter);
        Label.setText(text);
        Label.resize(Label.sizeHint());
        const QImage shown = Image();
        // The same label with room to spare, cut to the size of the other.
        Label.resize(Label.width() + 40, Label.height());
        EXPECT_EQ(shown, Image().copy(shown.rect())) << text.toStdString();
    }
}
