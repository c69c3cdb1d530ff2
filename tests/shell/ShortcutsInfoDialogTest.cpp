#include "shell/ShortcutsInfoDialog.h"

#include "platform/IdeTheming.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

class ShortcutsInfoDialog : public testing::Test {
protected:
    ShortcutsInfoDialog() {
        TZOIdeTheming::SetTheme(thLight);
        Dialog.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&Dialog));
    }
    ~ShortcutsInfoDialog() override { TZOIdeTheming::SetTheme(thSystem); }

    QListWidget* List() const { return Dialog.findChild<QListWidget*>(QStringLiteral("ListBox")); }
    QImage Row(int AIndex) const {
        return List()->viewport()->grab(List()->visualItemRect(List()->item(AIndex))).toImage();
    }
    /// The first and last column and line that hold more than the background, within AColumns.
    static QRect Ink(const QImage& AImage, int AFrom, int ATo) {
        return InkOf(AImage, AImage.pixel(1, 1), AFrom, ATo);
    }
    static QRect InkOf(const QImage& AImage, QRgb AGround, int AFrom = 0, int ATo = 10000) {
        QRect ink;
        for (int x = AFrom; x < std::min(ATo, AImage.width()); ++x)
            for (int y = 0; y < AImage.height(); ++y)
                if (AImage.pixel(x, y) != AGround)
                    ink |= QRect(x, y, 1, 1);
        return ink;
    }
    /// The colour among the gesture's pixels that is nearest to AWanted.
    static QColor Nearest(const QImage& AImage, const QColor& AWanted) {
        QColor best = AImage.pixelColor(1, 1);
        const auto distance = [&](const QColor& AColor) {
            return std::abs(AColor.red() - AWanted.red()) + std::abs(AColor.green() - AWanted.green()) +
                   std::abs(AColor.blue() - AWanted.blue());
        };
        for (int x = 32; x < 120; ++x)
            for (int y = 0; y < AImage.height(); ++y)
                if (distance(AImage.pixelColor(x, y)) < distance(best))
                    best = AImage.pixelColor(x, y);
        return best;
    }

    TZOShortcutsInfoDialog Dialog;
};

bool IsNear(const QColor& A, const QColor& B) {
    return std::abs(A.red() - B.red()) < 48 && std::abs(A.green() - B.green()) < 48 &&
           std::abs(A.blue() - B.blue()) < 48;
}

} // namespace

TEST_F(ShortcutsInfoDialog, ListsTheGestures) {
    EXPECT_EQ(Dialog.windowTitle(), QStringLiteral("Data editor shortcuts"));
    EXPECT_EQ(Dialog.size(), QSize(588, 363));
    EXPECT_EQ(Dialog.findChild<QLabel*>(QStringLiteral("HeaderLabel"))->text(), QStringLiteral("Shortcuts"));
    const QString insert = QStringLiteral("Show available object properties or insert new array element ");
    const QString move = QStringLiteral("Move object property or array element ");
    const std::pair<const char*, QString> gestures[] = {
        {"Intert", insert + "after selected line"},
        {"Shift+Insert", insert + "before selected line"},
        {"DoubleClick", insert + "for object or array lines"},
        {"DoubleClick", "Show file select dialog for upload line"},
        {"Enter", "Accept currently editing value"},
        {"Escape", "Cancel currently editing value"},
        {"Escape", "Hide unspecified properties"},
        {"Ctrl+Delete", "Reset property value to unspecified or remove array element"},
        {"Alt+Up", move + "up inside its parent"},
        {"Alt+Down", move + "down inside its parent"}};
    ASSERT_EQ(List()->count(), 10);
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(List()->item(i)->text(), gestures[i].first + QStringLiteral(" | ") + gestures[i].second);
    EXPECT_EQ(List()->item(4)->data(Qt::AccessibleTextRole).toString(),
              QStringLiteral("Enter: Accept currently editing value"));
}

TEST_F(ShortcutsInfoDialog, DrawsGestureAndMeaningInColumns) {
    const QImage row = Row(4); // Enter
    ASSERT_EQ(row.height(), 42);
    const QRect gesture = Ink(row, 0, 127);
    EXPECT_GE(gesture.left(), 32);
    EXPECT_LE(gesture.left(), 35);
    EXPECT_GE(gesture.top(), 4);
    const QRect meaning = Ink(row, 127, row.width());
    EXPECT_GE(meaning.left(), 128);
    EXPECT_LE(meaning.left(), 131);
    EXPECT_TRUE(IsNear(Nearest(row, QColor(0, 102, 204)), QColor(0, 102, 204)));
}

TEST_F(ShortcutsInfoDialog, DrawsAnItemWithoutABarAsMeaningOnly) {
    List()->item(0)->setText(QStringLiteral("  no gesture  "));
    const QImage row = Row(0);
    EXPECT_TRUE(Ink(row, 0, 127).isEmpty());
    EXPECT_LE(Ink(row, 127, row.width()).left(), 131); // trimmed
}

TEST_F(ShortcutsInfoDialog, WrapsALongMeaningWithinItsRectangle) {
    List()->item(0)->setText(QStringLiteral("Key | ") + QStringLiteral("many words ").repeated(60));
    const QImage row = Row(0);
    const QRect ink = Ink(row, 127, row.width());
    EXPECT_GT(ink.bottom(), 22); // a second line
    EXPECT_LT(ink.bottom(), 38);
    EXPECT_LT(ink.right(), row.width() - 32);
    // The last line ends in dots on its ground line.
    const QImage end = row.copy(ink.right() - 4, 22, 5, 16);
    EXPECT_LE(InkOf(end, row.pixel(1, 1)).height(), 3);
    EXPECT_GE(InkOf(row.copy(ink.right() - 60, 22, 60, 16), row.pixel(1, 1)).height(), 8);
}

TEST_F(ShortcutsInfoDialog, BreaksAMeaningBetweenItsWords) {
    // The second word does not fit beside the first.
    List()->item(0)->setText(QStringLiteral("Key | ") +
                             QStringLiteral("mmmmmmmmmmmmmmmmmmmmmmmmmm ").repeated(2));
    List()->item(1)->setText(QStringLiteral("Key | mmmmmmmmmmmmmmmmmmmmmmmmmm"));
    const QImage both = Row(0).copy(128, 4, 428, 16), one = Row(1).copy(128, 4, 428, 16);
    EXPECT_EQ(both, one);
    EXPECT_FALSE(InkOf(Row(0).copy(128, 22, 428, 16), Row(0).pixel(1, 1)).isEmpty());
}

TEST_F(ShortcutsInfoDialog, DrawsSelectedAndFocusedLinesLikeTheOthers) {
    const QImage before = Row(2);
    QTest::mouseClick(List()->viewport(), Qt::LeftButton, {},
                      List()->visualItemRect(List()->item(2)).center());
    ASSERT_EQ(List()->currentRow(), 2);
    EXPECT_EQ(Row(2), before);
}

TEST_F(ShortcutsInfoDialog, FollowsTheTheme) {
    TZOIdeTheming::SetTheme(thDark);
    QCoreApplication::processEvents(); // palettes reach the widgets by posted events
    const QImage row = Row(4);
    EXPECT_EQ(row.pixelColor(1, 1).rgb(), TZOIdeTheming::GetSystemColor(clWindow).rgb());
    EXPECT_TRUE(IsNear(Nearest(row, QColor(255, 224, 188)), QColor(255, 224, 188)));
    EXPECT_EQ(Dialog.findChild<QWidget*>(QStringLiteral("MainPanel"))->palette().color(QPalette::Window),
              TZOIdeTheming::GetSystemColor(clWindow));
    EXPECT_EQ(List()->palette().color(QPalette::Text), TZOIdeTheming::GetSystemColor(clWindowText));
}

TEST(ShortcutsInfoDialogClose, ByEscapeEnterOrTheButton) {
    const std::function<void(QWidget*)> ways[] = {
        [](QWidget* ADialog) { QTest::keyClick(ADialog, Qt::Key_Escape); },
        [](QWidget* ADialog) { QTest::keyClick(ADialog, Qt::Key_Return); },
        [](QWidget* ADialog) {
            QTest::keyClick(ADialog->findChild<QListWidget*>(QStringLiteral("ListBox")), Qt::Key_Return);
        },
        [](QWidget* ADialog) {
            QTest::mouseClick(ADialog->findChild<QPushButton*>(QStringLiteral("CloseButton")),
                              Qt::LeftButton);
        },
    };
    for (const auto& way : ways) {
        TZOShortcutsInfoDialog dialog;
        QTimer::singleShot(0, [&] { way(&dialog); });
        EXPECT_EQ(dialog.exec(), TZOShortcutsInfoDialog::mrClose);
    }
}
