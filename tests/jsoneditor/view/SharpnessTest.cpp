// Text of any direction and screens of any density.
#include "tests/jsoneditor/view/TextView.h"

#include <QImage>
#include <QPainter>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>

namespace {

/// AView's own painting on a screen of density ARatio.
QImage Painted(TZORestView& AView, qreal ARatio) {
    QImage image(int(std::ceil(AView.width() * ARatio)), int(std::ceil(AView.height() * ARatio)),
                 QImage::Format_RGB32);
    image.setDevicePixelRatio(ARatio);
    AView.render(&image, QPoint(), QRegion(), {});
    return image;
}

void Plain(TTextView& AText) {
    AText.View.SetFontColor(Qt::black);
    AText.View.SetColor(Qt::white);
}

/// The columns of AImage, in logical pixels, where anything but white is painted within AArea.
std::pair<qreal, qreal> InkColumns(const QImage& AImage, const QRect& AArea) {
    const qreal ratio = AImage.devicePixelRatio();
    qreal left = -1, right = -1;
    for (int x = int(AArea.left() * ratio); x < int((AArea.right() + 1) * ratio); ++x) {
        for (int y = int(AArea.top() * ratio); y < int((AArea.bottom() + 1) * ratio); ++y) {
            if (AImage.pixel(x, y) == QColor(Qt::white).rgb())
                continue;
            left = left < 0 ? x / ratio : left;
            right = x / ratio;
        }
    }
    return {left, right};
}

} // namespace

class Density : public testing::TestWithParam<double> {};

TEST_P(Density, PaintsAsSharpAsTextThatGoesToTheScreenDirectly) {
    TTextView text(QStringLiteral("  [Sharp]\n  [text]\n  [on every]\n  [row]\n"));
    Plain(text);
    const QImage painted = Painted(text.View, GetParam());
    QImage direct(painted.size(), QImage::Format_RGB32);
    direct.setDevicePixelRatio(GetParam());
    direct.fill(Qt::white);
    QPainter painter(&direct);
    painter.setFont(text.View.font());
    const auto device = [](qreal APlace) { return std::lround(APlace * GetParam()); };
    for (int i = 0; i < 4; ++i) {
        const TZOViewRowLayout* layout = text.Row(i)->Layout();
        const TZORowChunk* chunk = layout->GetChunks(0);
        // The row begins at the nearest whole pixel of the screen.
        painter.resetTransform();
        painter.translate(0, double(device(layout->Bounds().top())) / GetParam());
        painter.drawText(
            QPoint(chunk->Bounds().left(), chunk->Bounds().top() + painter.fontMetrics().ascent()),
            chunk->Text());
    }
    painter.end();
    EXPECT_EQ(painted.copy(0, 0, painted.width(), int(device(4 * text.View.RowHeight()))),
              direct.copy(0, 0, painted.width(), int(device(4 * text.View.RowHeight()))));
}

TEST_P(Density, PaintsARowStraightAsByWayOfItsPicture) {
    TTextView text(
        QStringLiteral("[name] : [value]\n> [selected] Wj_|@\n  [a\u00E4] plain\n[\U0001F600] x\n\n[") +
        QString(300, u'w') + QStringLiteral("] end\n"));
    const QImage straight = Painted(text.View, GetParam());
    // Under marks, all rows are painted by way of a picture.
    text.View.SetMarks(QStringLiteral("nowhere"), nullptr);
    EXPECT_EQ(straight, Painted(text.View, GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Of, Density, testing::Values(1.0, 1.25, 1.5, 1.75, 2.0, 3.0));

TEST(Sharpness, PaintsWithinTheMeasuredWidthWhateverTheScript) {
    TTextView text(QStringLiteral("  [שלום עולם] end\n  [مرحبا بالعالم] end\n  [abc שלום 123] end\n"
                                  "  [😀😀] end\n  [👩‍👩‍👧] end\n  [e\u0301a\u0308] end\n"));
    Plain(text);
    const QImage painted = Painted(text.View, 2);
    for (int i = 0; i < text.View.GetRowCount(); ++i) {
        const TZOViewRowLayout* layout = text.Row(i)->Layout();
        const QRect chunk = layout->GetChunks(0)->Bounds();
        const auto [left, right] = InkColumns(painted, layout->Bounds().adjusted(0, 0, -200, 0));
        EXPECT_GE(left, chunk.left() - 1) << i;
        EXPECT_GT(chunk.width(), 8) << i;
        const auto [first, last] = InkColumns(painted, chunk.translated(layout->Bounds().topLeft()));
        EXPECT_LT(first - chunk.left(), 6) << i << ": it begins at the chunk's left edge";
        EXPECT_LT(chunk.right() - last, 6) << i << ": it fills the chunk";
    }
}

TEST(Sharpness, ShowsTheEndOfALongRightToLeftText) {
    // Read from the right, what stands in sight at the left is the end of the text.
    const QString end = QStringLiteral("סוף");
    TTextView text(QStringLiteral("  [") + QString(4000, QChar(0x05d0)) + end + QStringLiteral("]\n  [") +
                   end + QStringLiteral("]\n"));
    Plain(text);
    const QImage painted = Painted(text.View, 1);
    const QRect sample = text.Row(1)->Layout()->GetChunks(0)->Bounds();
    const QRect shown = sample.translated(text.Row(0)->Layout()->Bounds().topLeft());
    const QRect same = sample.translated(text.Row(1)->Layout()->Bounds().topLeft());
    EXPECT_EQ(painted.copy(shown.adjusted(0, 0, -2, 0)), painted.copy(same.adjusted(0, 0, -2, 0)));
}

TEST(Sharpness, DoesNotCutALongTextWithinACharacter) {
    QString emoji;
    for (int i = 0; i < 3000; ++i)
        emoji += QStringLiteral("😀");
    for (const QString& lead : {QString(), QStringLiteral("x")}) {
        TTextView text(QStringLiteral("  [") + lead + emoji + QStringLiteral("]\n"));
        Plain(text);
        TTextView shorter(QStringLiteral("  [") + lead + emoji.left(600) + QStringLiteral("]\n"));
        Plain(shorter);
        EXPECT_EQ(Painted(text.View, 1), Painted(shorter.View, 1));
    }
}
