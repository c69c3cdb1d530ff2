// Every page in every state, at the smallest and at a large size, in both themes: nothing is clipped, nothing
// overlaps, every text stands out from its ground. With ZO_PICTURES set, the pictures go into that folder.
#include "tests/pages/ExecutePageFixture.h"

#include "pages/ElidedLabel.h"
#include "pages/LongRequest.h"
#include "pages/SignOn.h"

#include "shell/ShortcutsInfoDialog.h"

#include "platform/IdeTheming.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QCheckBox>
#include <QDialog>
#include <QDir>
#include <QScrollBar>

#include <cmath>
#include <map>
#include <tuple>

namespace {

double Luminance(const QColor& AColor) {
    const auto linear = [](double AValue) {
        return AValue <= 0.04045 ? AValue / 12.92 : std::pow((AValue + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(AColor.redF()) + 0.7152 * linear(AColor.greenF()) +
           0.0722 * linear(AColor.blueF());
}

/// As WCAG 2 defines it, from 1 to 21.
double Contrast(const QColor& A, const QColor& B) {
    const double a = Luminance(A), b = Luminance(B);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

/// The colour that most of the picture has.
QColor Ground(const QImage& AImage) {
    std::map<QRgb, int> counts;
    for (int y = 0; y < AImage.height(); ++y)
        for (int x = 0; x < AImage.width(); ++x)
            ++counts[AImage.pixel(x, y)];
    QRgb best = 0;
    int most = 0;
    for (const auto& [color, count] : counts)
        if (count > most)
            std::tie(best, most) = std::pair(color, count);
    return QColor(best);
}

class Look : public ExecutePageTest {
protected:
    Look() {
        Register(MakeServiceClass(
            QStringLiteral("TAnotherService"),
            QStringLiteral(
                "A service with a description that is so long that it does not fit into two lines of its "
                "column, not even in a window as wide as the largest one that this test opens, which "
                "makes an ellipsis necessary at the end of the second line. Really, it is that long"),
            {{QStringLiteral("DoSomethingThatHasAnEvenLongerNameThanItsColumn"),
              QStringLiteral("Described")}}));
    }

    /// Looks at the window in both sizes and themes.
    void See(const QString& AName) {
        for (const QSize size : {QSize(701, 446), QSize(1400, 900)}) {
            Shell->resize(size);
            for (const TZOTheme theme : {thLight, thDark}) {
                TZOIdeTheming::SetTheme(theme);
                QTest::qWait(0);
                Settle();
                const QString name =
                    QStringLiteral("%1-%2-%3")
                        .arg(AName, QString::number(size.width()),
                             theme == thDark ? QStringLiteral("dark") : QStringLiteral("light"));
                SeeWindow(Shell.get(), name);
            }
        }
        TZOIdeTheming::SetTheme(thLight);
        Settle();
    }

    void SeeWindow(QWidget* AWindow, const QString& AName) {
        SCOPED_TRACE(AName.toStdString());
        const QImage picture = AWindow->grab().toImage();
        const QByteArray folder = qgetenv("ZO_PICTURES");
        if (!folder.isEmpty())
            picture.save(QStringLiteral("%1/%2@%3.png")
                             .arg(QFile::decodeName(folder), AName)
                             .arg(picture.devicePixelRatio()));
        const QList<QWidget*> controls = Controls(AWindow);
        EXPECT_GE(controls.size(), 2);
        for (const QWidget* control : controls) {
            SCOPED_TRACE(control->objectName().toStdString());
            CheckClipping(AWindow, control);
            CheckOverlap(AWindow, control, controls);
            CheckContrast(AWindow, picture, control);
        }
    }

    /// Types into the list, from where the text goes into the search.
    void Search(const QString& AText) const {
        QTest::keyClicks(List(), AText.left(1));
        QTest::keyClicks(QApplication::focusWidget(), AText.mid(1));
    }

private:
    /// What shows something by itself, and at least a part of it.
    static QList<QWidget*> Controls(QWidget* AWindow) {
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

    static QRect Place(const QWidget* AWindow, const QWidget* AWidget) {
        return {AWidget->mapTo(AWindow, QPoint()), AWidget->size()};
    }

    static bool IsScrolled(const QWidget* AWindow, const QWidget* AWidget) {
        for (; AWidget != AWindow; AWidget = AWidget->parentWidget())
            if (qobject_cast<const QAbstractScrollArea*>(AWidget->parentWidget()))
                return true;
        return false;
    }

    static void CheckClipping(const QWidget* AWindow, const QWidget* AControl) {
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
            EXPECT_TRUE(around->rect().contains(Place(around, AControl)))
                << around->objectName().toStdString();
        }
        if (!IsScrolled(AWindow, AControl)) {
            EXPECT_TRUE(AWindow->rect().contains(Place(AWindow, AControl)));
        }
        // What is scrolled moves up and down only.
        const QRect place = Place(AWindow, AControl);
        EXPECT_GE(place.left(), 0);
        EXPECT_LE(place.right(), AWindow->width());
    }

    static void CheckOverlap(const QWidget* AWindow, const QWidget* AControl,
                             const QList<QWidget*>& AControls) {
        for (const QWidget* other : AControls) {
            if (other == AControl || other->isAncestorOf(AControl) || AControl->isAncestorOf(other))
                continue;
            const QRegion shared = AControl->visibleRegion().translated(Place(AWindow, AControl).topLeft()) &
                                   other->visibleRegion().translated(Place(AWindow, other).topLeft());
            EXPECT_TRUE(shared.isEmpty()) << "overlaps " << other->objectName().toStdString();
        }
    }

    static void CheckContrast(const QWidget* AWindow, const QImage& APicture, const QWidget* AControl) {
        if (const auto* view = qobject_cast<const TZORestView*>(AControl)) {
            for (const QColor& text : {view->FontColor(), view->GrayColor(), view->SymbolColor()})
                ExpectContrast(text, view->Color());
            ExpectContrast(view->FontColor(), view->SelectedColor());
            return;
        }
        const bool showsText = qobject_cast<const QLabel*>(AControl) ||
                               qobject_cast<const QAbstractButton*>(AControl) ||
                               qobject_cast<const QLineEdit*>(AControl);
        // What is disabled is to stand back.
        if (!showsText || !AControl->isEnabled())
            return;
        // Without the frame of a button or field.
        const bool isFramed = !qobject_cast<const QLabel*>(AControl);
        const QRect inside =
            Place(AWindow, AControl).adjusted(isFramed * 4, isFramed * 4, -isFramed * 4, -isFramed * 4);
        const QRect place = inside & AWindow->rect();
        const qreal ratio = APicture.devicePixelRatio();
        const QRect pixels(place.topLeft() * ratio, place.size() * ratio);
        const bool isEdit = qobject_cast<const QLineEdit*>(AControl);
        const QColor text = AControl->palette().color(isEdit ? QPalette::Text : AControl->foregroundRole());
        ExpectContrast(text, Ground(APicture.copy(pixels)));
    }

    static void ExpectContrast(const QColor& AText, const QColor& AGround) {
        // These are given: red is the colour of what is wrong, and links stand on the bar in theirs.
        const bool isGiven = AText == QColor(255, 0, 0) ||
                             (AText == QColor(0, 102, 204) && AGround == QColor(0xD3, 0xD3, 0xD3));
        if (!isGiven) {
            EXPECT_GE(Contrast(AText, AGround), 4.5)
                << AText.name().toStdString() << " on " << AGround.name().toStdString();
        }
    }
};

TEST_F(Look, OfTheServiceList) {
    ShowShell();
    See(QStringLiteral("services"));
    ClickRow(QStringLiteral("TTestService"));
    See(QStringLiteral("services-selected"));
    Search(QStringLiteral("nothing like it"));
    See(QStringLiteral("services-none"));
}

TEST_F(Look, OfTheOperationList) {
    ShowShell();
    Open(QStringLiteral("TAnotherService"));
    See(QStringLiteral("operations-not-configured"));
    Shell->GoBackAsync();
    Settle();
    Shell->GetServices(0)->Component()->SetApiKey(QStringLiteral("key"));
    Open(QStringLiteral("TTestService"));
    ClickRow(QStringLiteral("Echo"));
    See(QStringLiteral("operations"));
    Search(QStringLiteral("nothing like it"));
    See(QStringLiteral("operations-none"));
}

TEST_F(Look, OfARequestAndItsResponse) {
    ShowOperation(QStringLiteral("Echo"));
    See(QStringLiteral("request"));
    Fill(QStringLiteral("text"), QStringLiteral("a text that was typed"));
    Execute();
    See(QStringLiteral("response"));
    QTest::mouseClick(Find<QWidget>("DetailsLabel"), Qt::LeftButton);
    See(QStringLiteral("response-details"));
}

TEST_F(Look, OfASearchOnThePage) {
    ShowOperation(QStringLiteral("Echo"));
    Fill(QStringLiteral("text"), QStringLiteral("a text that was typed"));
    Execute();
    KeyInWindow(Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("text"));
    See(QStringLiteral("find"));
}

TEST_F(Look, OfOtherOutcomes) {
    ShowOperation(QStringLiteral("Fail"));
    Execute();
    See(QStringLiteral("failure"));
    Shell->GoBackAsync();
    Settle();
    Open(QStringLiteral("DoNothing"));
    Execute();
    See(QStringLiteral("no-data"));
}

TEST_F(Look, OfFiles) {
    QDir::setCurrent(Folder.path()); // short names
    ShowOperation(QStringLiteral("Download"));
    See(QStringLiteral("download-before"));
    Fill(QStringLiteral("bytes"), QStringLiteral("1234"));
    QTest::keyClicks(Find<QLineEdit>("DownloadEdit"), QStringLiteral("report.pdf"));
    Execute();
    See(QStringLiteral("download"));
    Shell->GoBackAsync();
    Settle();
    Open(QStringLiteral("Upload"));
    See(QStringLiteral("upload"));
    QDir::setCurrent(QStringLiteral("/"));
}

TEST_F(Look, OfARequestThatLasts) {
    ShowOperation(QStringLiteral("Halves"));
    Fill(QStringLiteral("bytes"), QStringLiteral("40960"));
    QTest::keyClicks(Find<QLineEdit>("DownloadEdit"), Folder.filePath(QStringLiteral("out")));
    Server.OnHalf = [&] { OnGui([&] { SeeWindow(Shell.get(), QStringLiteral("lasting-light")); }); };
    Shell->resize(701, 446);
    Execute();
    TZOIdeTheming::SetTheme(thDark);
    Server.OnHalf = [&] { OnGui([&] { SeeWindow(Shell.get(), QStringLiteral("lasting-dark")); }); };
    Execute();
}

TEST_F(Look, OfTheOptions) {
    ShowShell();
    Open(QStringLiteral("TAnotherService"));
    Shell->ServiceOptionsAsync();
    Settle();
    See(QStringLiteral("options"));
    TestDialogs.Answers.emplace_back(QStringLiteral("0123456789abcdef"));
    QTest::mouseClick(Find<QWidget>("ApiKeyHeader"), Qt::LeftButton);
    See(QStringLiteral("options-key"));
}

TEST_F(Look, OfAPageThatIsNotConfigured) {
    ShowShell();
    Open(QStringLiteral("TTestService"));
    Open(QStringLiteral("Echo"));
    See(QStringLiteral("not-configured"));
}

TEST_F(Look, OfTheShortcuts) {
    ShowShell();
    for (const TZOTheme theme : {thLight, thDark}) {
        TZOIdeTheming::SetTheme(theme);
        TZOShortcutsInfoDialog dialog(Shell.get());
        dialog.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog));
        SeeWindow(&dialog,
                  theme == thDark ? QStringLiteral("shortcuts-dark") : QStringLiteral("shortcuts-light"));
    }
}

TEST_F(Look, OfTheSignOn) {
    ShowShell();
    QPushButton cancel;
    for (const TZOTheme theme : {thLight, thDark}) {
        TZOIdeTheming::SetTheme(theme);
        TZOLongRequest request(&cancel, [](const TZOLongRequest::TProgress&) {});
        TZOSignOn signOn(Shell.get(), request);
        const QString end = theme == thDark ? QStringLiteral("-dark") : QStringLiteral("-light");
        for (const QString& service : {QStringLiteral("TPetStore_0a1b2c3d"), QString(200, u'W')}) {
            signOn.Begin(service, "http://accounts.example.com/authorize?state=1");
            auto* window = Shell->findChild<QDialog*>(QStringLiteral("SignOnWindow"));
            ASSERT_TRUE(window);
            ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
            SeeWindow(window, QStringLiteral("sign-on%1%2").arg(service.size()).arg(end));
            signOn.End();
        }
    }
}

} // namespace
