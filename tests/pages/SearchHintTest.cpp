#include "tests/pages/PagesFixture.h"

#include "pages/SearchList.h"

#include "platform/IdeTheming.h"

namespace {

class SearchHint : public PagesTest {
protected:
    SearchHint() {
        Register(MakeServiceClass(QStringLiteral("TOneService"), {}, {{QStringLiteral("Do"), {}}}));
        Register(MakeServiceClass(QStringLiteral("TBareService"), {}, {}));
        ShowShell();
    }
    const TZOSearchList* SearchList() const { return static_cast<TZOSearchList*>(List()); }
    /// The pixels of the list that are not in its background's colour.
    int Ink() const {
        const QImage image = List()->viewport()->grab().toImage();
        int count = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                count += image.pixelColor(x, y) != List()->palette().color(QPalette::Base);
        return count;
    }
    void Search(const QString& AText) const {
        Find<QLineEdit>("SearchEdit")->setFocus();
        Find<QLineEdit>("SearchEdit")->selectAll();
        QTest::keyClicks(Find<QLineEdit>("SearchEdit"), AText);
    }
};

TEST_F(SearchHint, SaysThatNothingMatches) {
    for (const QString& what : {QStringLiteral("service"), QStringLiteral("operation")}) {
        for (const TZOTheme theme : {thLight, thDark}) {
            TZOIdeTheming::SetTheme(theme);
            Search(QStringLiteral("<b>%1"));
            EXPECT_EQ(Rows(), QStringList());
            EXPECT_EQ(SearchList()->ShownHint(),
                      QStringLiteral("No %1 matches \"<b>%2\".").arg(what, QStringLiteral("%1")));
            EXPECT_GT(Ink(), 100);
            QTest::keyClick(Find<QLineEdit>("SearchEdit"), Qt::Key_Escape);
            EXPECT_EQ(SearchList()->ShownHint(), QString());
        }
        TZOIdeTheming::SetTheme(thLight);
        if (what == QStringLiteral("service"))
            Open(QStringLiteral("TOneService"));
    }
}

TEST_F(SearchHint, IsNotThereWhereNothingWasSearched) {
    Open(QStringLiteral("TBareService"));
    EXPECT_EQ(Rows(), QStringList());
    EXPECT_EQ(SearchList()->ShownHint(), QString());
    EXPECT_EQ(Ink(), 0);
}

} // namespace
