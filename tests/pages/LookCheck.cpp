#include "tests/pages/LookCheck.h"

#include "pages/ElidedLabel.h"

#include "shell/ShellFrame.h"

#include "jsoneditor/view/RestView.h"
#include "jsoneditor/view/ViewRowLayout.h"

#include "platform/Contrast.h"
#include "platform/IdeTheming.h"
#include "platform/LinkLabel.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListView>

#include <gtest/gtest.h>

#include <map>
#include <tuple>

namespace {

/// The colour that most of the picture has, where shades of it that run into each other count as one: a
/// button's ground is a different one in each line.
QColor Ground(const QImage& AImage) {
    constexpr QRgb shade = 0xFFF0F0F0;
    std::map<QRgb, std::map<QRgb, int>> counts;
    for (int y = 0; y < AImage.height(); ++y)
        for (int x = 0; x < AImage.width(); ++x)
            ++counts[AImage.pixel(x, y) & shade][AImage.pixel(x, y)];
    QRgb best = 0;
    int most = 0;
    for (const auto& [_, colors] : counts) {
        int all = 0, often = 0;
        QRgb usual = 0;
        for (const auto& [color, count] : colors) {
            all += count;
            if (count > often)
                std::tie(usual, often) = std::pair(color, count);
        }
        if (all > most)
            std::tie(best, most) = std::pair(usual, all);
    }
    return QColor(best);
}

void ExpectContrast(const QColor& AText, const QColor& AGround) {
    // These are given: red is the colour of what is wrong, and links stand on the bar in theirs.
    const bool isGiven =
        AText == QColor(255, 0, 0) || (AText == QColor(0, 102, 204) && AGround == QColor(0xD3, 0xD3, 0xD3));
    if (!isGiven) {
        EXPECT_GE(Contrast::Between(AText, AGround), Contrast::Needed)
            << AText.name().toStdString() << " on " << AGround.name().toStdString();
    }
}

/// What shows something by itself, and at least a part of it.
QList<QWidget*> Controls(QWidget* AWindow) {
    QList<QWidget*> controls;
    for (QWidget* widget : AWindow->findChildren<QWidget*>()) {
        const bool isControl = qobject_cast<QLabel*>(widget) || qobject_cast<QAbstractButton*>(widget) ||
                               qobject_cast<QLineEdit*>(widget) || qobject_cast<QListView*>(widget) ||
                               qobject_cast<TZORestView*>(widget);
        const bool isInside = qobject_cast<TZORestView*>(widget->parentWidget());
        if (isControl && !isInside && widget->isVisible() && !widget->visibleRegion().isEmpty())
            controls.append(widget);
    }
    return controls;
}

QRect Place(const QWidget* AWindow, const QWidget* AWidget) {
    return {AWidget->mapTo(AWindow, QPoint()), AWidget->size()};
}

bool IsScrolled(const QWidget* AWindow, const QWidget* AWidget) {
    for (; AWidget != AWindow; AWidget = AWidget->parentWidget())
        if (qobject_cast<const QAbstractScrollArea*>(AWidget->parentWidget()))
            return true;
    return false;
}

void CheckClipping(const QWidget* AWindow, const QWidget* AControl) {
    const bool showsText =
        qobject_cast<const QLabel*>(AControl) || qobject_cast<const QAbstractButton*>(AControl);
    // These end in an ellipsis by themselves, and say all of it in a tool tip.
    const bool isElided =
        qobject_cast<const TZOElidedLabel*>(AControl) || qobject_cast<const TZOLinkLabel*>(AControl);
    if (showsText && !isElided) {
        EXPECT_GE(AControl->width(), AControl->sizeHint().width());
    }
    if (showsText && !qobject_cast<const QAbstractButton*>(AControl)) {
        EXPECT_GE(AControl->width(), std::min(AControl->sizeHint().width(), 60));
        EXPECT_GE(AControl->height(), AControl->fontMetrics().height());
    }
    for (const QWidget* around = AControl->parentWidget(); around != AWindow;
         around = around->parentWidget()) {
        if (qobject_cast<const QAbstractScrollArea*>(around->parentWidget()))
            break; // what is below its edge is scrolled to
        EXPECT_TRUE(around->rect().contains(Place(around, AControl))) << around->objectName().toStdString();
    }
    if (!IsScrolled(AWindow, AControl)) {
        EXPECT_TRUE(AWindow->rect().contains(Place(AWindow, AControl)));
    }
    // What is scrolled moves up and down only.
    const QRect place = Place(AWindow, AControl);
    EXPECT_GE(place.left(), 0);
    EXPECT_LE(place.right(), AWindow->width());
}

void CheckOverlap(const QWidget* AWindow, const QWidget* AControl, const QList<QWidget*>& AControls) {
    for (const QWidget* other : AControls) {
        if (other == AControl || other->isAncestorOf(AControl) || AControl->isAncestorOf(other))
            continue;
        const QRegion shared = AControl->visibleRegion().translated(Place(AWindow, AControl).topLeft()) &
                               other->visibleRegion().translated(Place(AWindow, other).topLeft());
        EXPECT_TRUE(shared.isEmpty()) << "overlaps " << other->objectName().toStdString();
    }
}

void CheckContrast(const QWidget* AWindow, const QImage& APicture, const QWidget* AControl) {
    if (const auto* view = qobject_cast<const TZORestView*>(AControl)) {
        for (const QColor& text : {view->FontColor(), view->GrayColor(), view->SymbolColor()})
            ExpectContrast(text, view->Color());
        ExpectContrast(view->FontColor(), view->SelectedColor());
        const TZOViewRowLayout* selected = view->Selected() ? view->Selected()->Layout() : nullptr;
        for (int i = 0; selected && view->Active() && i < selected->GetChunkCount(); ++i)
            ExpectContrast(view->GetChunkTextColor(selected->GetChunks(i)), view->SelectedColor());
        return;
    }
    if (qobject_cast<const QListView*>(AControl)) {
        const TColor gray = TZOShellFrame::GRAY_COLORS[TZOIdeTheming::IsDarkTheme()];
        const QColor ground = AControl->palette().color(QPalette::Base);
        ExpectContrast(TZOIdeTheming::GetSystemColor(gray), ground);
        ExpectContrast(TZOIdeTheming::GetSystemColor(clWindowText), ground);
        // What marks a selection on this desktop is the desktop's.
        if (TZOIdeTheming::Theme() != thSystem)
            ExpectContrast(TZOIdeTheming::GetSystemColor(clHighlightText),
                           TZOIdeTheming::GetSystemColor(clHighlight));
        return;
    }
    const auto* label = qobject_cast<const QLabel*>(AControl);
    const auto* edit = qobject_cast<const QLineEdit*>(AControl);
    const bool showsText =
        (label && !label->text().isEmpty()) || edit || qobject_cast<const QAbstractButton*>(AControl);
    // What is disabled is to stand back.
    if (!showsText || !AControl->isEnabled())
        return;
    // Without the frame of a button or field.
    const bool isFramed = !label;
    const QRect inside =
        Place(AWindow, AControl).adjusted(isFramed * 4, isFramed * 4, -isFramed * 4, -isFramed * 4);
    const QRect place = inside & AWindow->rect();
    const qreal ratio = APicture.devicePixelRatio();
    const QRect pixels(place.topLeft() * ratio, place.size() * ratio);
    const QPalette& colors = AControl->palette();
    if (edit && edit->hasSelectedText())
        ExpectContrast(colors.color(QPalette::HighlightedText), colors.color(QPalette::Highlight));
    else
        ExpectContrast(colors.color(edit ? QPalette::Text : AControl->foregroundRole()),
                       Ground(APicture.copy(pixels)));
}

QImage Picture(QWidget* AWindow, const QString& AName) {
    const QImage picture = AWindow->grab().toImage();
    const QByteArray folder = qgetenv("ZO_PICTURES");
    if (!folder.isEmpty())
        picture.save(QStringLiteral("%1/%2@%3.png")
                         .arg(QFile::decodeName(folder), AName)
                         .arg(picture.devicePixelRatio()));
    return picture;
}

} // namespace

void LookCheck::Keep(QWidget* AWindow, const QString& AName) { Picture(AWindow, AName); }

void LookCheck::See(QWidget* AWindow, const QString& AName) {
    SCOPED_TRACE(AName.toStdString());
    const QImage picture = Picture(AWindow, AName);
    const QList<QWidget*> controls = Controls(AWindow);
    EXPECT_GE(controls.size(), 2);
    for (const QWidget* control : controls) {
        SCOPED_TRACE(control->objectName().toStdString());
        CheckClipping(AWindow, control);
        CheckOverlap(AWindow, control, controls);
        CheckContrast(AWindow, picture, control);
    }
}
