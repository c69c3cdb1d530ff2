#include "tests/pages/PagesFixture.h"

#include "platform/IdeTheming.h"

namespace {

const QString ClassesHeader = QStringLiteral("ZO Bridgework Service Classes");
const QString ComponentsHeader = QStringLiteral("Recent User Components");

class ServiceListPage : public PagesTest {
protected:
    ServiceListPage() {
        Register(MakeServiceClass(QStringLiteral("TMapService"), QStringLiteral("Maps"),
                                  {{QStringLiteral("Locate"), QString()}}));
        Register(MakeServiceClass(QStringLiteral("TMailService"),
                                  QStringLiteral("Sends and keeps mail. ").repeated(40), {}));
    }

    /// The columns (x) of the image that hold more than its background, as "first-last".
    static std::pair<int, int> Inked(const QImage& AImage, int AFrom, int ATo) {
        std::pair<int, int> inked(-1, -1);
        const QColor background = AImage.pixelColor(2, 2);
        for (int x = AFrom; x < std::min(ATo, AImage.width()); ++x)
            for (int y = 0; y < AImage.height(); ++y)
                if (AImage.pixelColor(x, y) != background) {
                    inked.first = inked.first < 0 ? x : inked.first;
                    inked.second = x;
                }
        return inked;
    }
    static std::pair<int, int> InkedLines(const QImage& AImage, int AFrom, int ATo) {
        return Inked(
            AImage.copy(AFrom, 0, ATo - AFrom, AImage.height()).transformed(QTransform(0, 1, 1, 0, 0, 0)), 0,
            AImage.height());
    }
};

} // namespace

TEST_F(ServiceListPage, StartsWithTheClassesWhereThereAreNoComponents) {
    ShowShell();
    EXPECT_EQ(Rows(),
              (QStringList{ClassesHeader, QStringLiteral("TMapService"), QStringLiteral("TMailService")}));
    EXPECT_EQ(Stack(), QStringList{QStringLiteral("Services")});
    EXPECT_EQ(Search()->placeholderText(), QStringLiteral("Search"));
    EXPECT_EQ(Search()->width(), 157);
    EXPECT_TRUE(List()->hasFocus());
    EXPECT_EQ(List()->currentIndex().row(), -1);
}

TEST_F(ServiceListPage, ListsComponentsFirstTheLatestOnTop) {
    ShowShell();
    TZORestService one(Classes[0].get());
    one.setObjectName(QStringLiteral("MapOne"));
    TZORestService two(Classes[0].get());
    Shell->ExploreComponent(&one);
    Shell->ExploreComponent(&two);
    Settle();
    Shell->ShowServiceList();
    EXPECT_EQ(Rows(),
              (QStringList{ComponentsHeader, QStringLiteral("<TMapService>"), QStringLiteral("MapOne"),
                           ClassesHeader, QStringLiteral("TMapService"), QStringLiteral("TMailService")}));
}

TEST_F(ServiceListPage, ForgetsAComponentThatGoes) {
    ShowShell();
    auto one = std::make_unique<TZORestService>(Classes[0].get());
    one->setObjectName(QStringLiteral("MapOne"));
    Shell->ExploreComponent(one.get());
    Shell->ShowServiceList();
    EXPECT_TRUE(Rows().contains(QStringLiteral("MapOne")));
    one.reset();
    EXPECT_EQ(Rows().front(), ClassesHeader);
    EXPECT_FALSE(Rows().contains(QStringLiteral("MapOne")));
}

TEST_F(ServiceListPage, FindsLettersAnywhereInAnyCase) {
    ShowShell();
    QTest::keyClicks(Search(), QStringLiteral("AIL"));
    EXPECT_EQ(Rows(), (QStringList{ClassesHeader, QStringLiteral("TMailService")}));
    QTest::keyClick(Search(), Qt::Key_Backspace);
    QTest::keyClick(Search(), Qt::Key_Backspace);
    EXPECT_EQ(Rows().size(), 3);
}

TEST_F(ServiceListPage, IsEmptyWithoutHeadersWhenNothingMatches) {
    ShowShell();
    QTest::keyClicks(Search(), QStringLiteral("keeps")); // in a description only
    EXPECT_EQ(Rows(), QStringList());
    QTest::keyClick(List(), Qt::Key_Return);
    Settle();
    EXPECT_EQ(Shell->GetNavStackCount(), 1);
}

TEST_F(ServiceListPage, TypingInTheListReplacesTheSearch) {
    ShowShell();
    QTest::keyClicks(Search(), QStringLiteral("map"));
    List()->setFocus();
    QTest::keyClick(List(), Qt::Key_Space);
    EXPECT_EQ(Search()->text(), QStringLiteral("map"));
    EXPECT_TRUE(List()->hasFocus());
    QTest::keyClick(List(), 'x');
    EXPECT_EQ(Search()->text(), QStringLiteral("x"));
    EXPECT_TRUE(Search()->hasFocus());
    EXPECT_EQ(Rows(), QStringList());
    QTest::keyClick(Search(), 'y');
    EXPECT_EQ(Search()->text(), QStringLiteral("xy"));
}

TEST_F(ServiceListPage, KeysThatAreNoCharactersSearchNothing) {
    ShowShell();
    ClickRow(QStringLiteral("TMapService"));
    const std::pair<int, Qt::KeyboardModifiers> keys[] = {
        {Qt::Key_Space, Qt::NoModifier},  {Qt::Key_Space, Qt::ControlModifier},
        {Qt::Key_Delete, Qt::NoModifier}, {Qt::Key_Backspace, Qt::NoModifier},
        {Qt::Key_T, Qt::ControlModifier}, {Qt::Key_T, Qt::AltModifier},
        {Qt::Key_F2, Qt::NoModifier}};
    for (const auto& [key, modifiers] : keys) {
        QTest::keyClick(List(), static_cast<Qt::Key>(key), modifiers);
        EXPECT_EQ(Search()->text(), QString()) << key;
        EXPECT_TRUE(List()->hasFocus()) << key;
        EXPECT_EQ(List()->currentIndex().row(), 1) << key;
        EXPECT_TRUE(List()->selectionModel()->isSelected(List()->currentIndex())) << key;
    }
}

TEST_F(ServiceListPage, EscapeInTheListClearsTheSearchAndStays) {
    ShowShell();
    QTest::keyClicks(Search(), QStringLiteral("mail"));
    List()->setFocus();
    QTest::keyClick(List(), Qt::Key_Escape);
    EXPECT_EQ(Search()->text(), QString());
    EXPECT_EQ(Rows().size(), 3);
    EXPECT_TRUE(List()->hasFocus());
}

TEST_F(ServiceListPage, EscapeInTheSearchGoesBackToTheList) {
    ShowShell();
    QTest::keyClick(List(), 'm');
    QTest::keyClick(Search(), Qt::Key_Escape);
    EXPECT_EQ(Search()->text(), QString());
    EXPECT_TRUE(List()->hasFocus());
}

TEST_F(ServiceListPage, DownInTheSearchGoesToTheFirstEntry) {
    ShowShell();
    QTest::keyClick(List(), 'm');
    QTest::keyClick(Search(), Qt::Key_Down);
    EXPECT_TRUE(List()->hasFocus());
    EXPECT_EQ(List()->currentIndex().row(), 1);
    QTest::keyClick(List(), Qt::Key_Return);
    Settle();
    EXPECT_EQ(Stack(), (QStringList{QStringLiteral("Services"), QStringLiteral("TMapService")}));
}

TEST_F(ServiceListPage, EnterOpensTheSelectedServiceOnly) {
    ShowShell();
    QTest::keyClick(List(), Qt::Key_Return); // nothing is selected
    Settle();
    EXPECT_EQ(Shell->GetNavStackCount(), 1);
    QTest::keyClick(List(), Qt::Key_Home);
    EXPECT_EQ(List()->currentIndex().data().toString(), ClassesHeader);
    QTest::keyClick(List(), Qt::Key_Return);
    Settle();
    EXPECT_EQ(Shell->GetNavStackCount(), 1);
    QTest::keyClick(List(), Qt::Key_Down);
    QTest::keyClick(List(), Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(Shell->GetNavStackCount(), 1); // not before the key was handled
    Settle();
    EXPECT_EQ(Stack(), (QStringList{QStringLiteral("Services"), QStringLiteral("TMapService")}));
}

TEST_F(ServiceListPage, OpensByDoubleClickNotByOneClickOrAnotherButton) {
    ShowShell();
    ClickRow(QStringLiteral("TMailService"));
    Settle();
    DoubleClickRow(ClassesHeader);
    DoubleClickRow(QStringLiteral("TMailService"), Qt::RightButton);
    EXPECT_EQ(Shell->GetNavStackCount(), 1);
    Open(QStringLiteral("TMailService"));
    EXPECT_EQ(Stack(), (QStringList{QStringLiteral("Services"), QStringLiteral("TMailService")}));
}

TEST_F(ServiceListPage, KeepsNoSelectionAcrossASearch) {
    ShowShell();
    ClickRow(QStringLiteral("TMapService"));
    QTest::keyClicks(Search(), QStringLiteral("map"));
    EXPECT_EQ(List()->currentIndex().row(), -1);
}

TEST_F(ServiceListPage, DrawsRowsOf42PixelsWithAColumnForTheDescription) {
    ShowShell();
    const QImage row = RowImage(QStringLiteral("TMailService"));
    ASSERT_EQ(row.height(), 42);
    ASSERT_EQ(row.width(), List()->viewport()->width());
    const auto name = Inked(row, 0, 290);
    EXPECT_GE(name.first, 32);
    EXPECT_LE(name.first, 35);
    const auto description = Inked(row, 290, row.width());
    EXPECT_GE(description.first, 300);
    EXPECT_LE(description.first, 303);
    EXPECT_LT(description.second, row.width() - 24); // however long it is
    EXPECT_GT(description.second, row.width() - 90);
    const auto lines = InkedLines(row, 300, row.width());
    EXPECT_GE(lines.first, 4);
    EXPECT_GT(lines.second, 24); // a second line
    EXPECT_LT(lines.second, 38);
}

TEST_F(ServiceListPage, ADescriptionThatIsTooLongEndsInAnEllipsis) {
    ShowShell();
    const QImage row = RowImage(QStringLiteral("TMailService"));
    const QImage secondLine = row.copy(300, 22, row.width() - 324, 16);
    const int end = Inked(secondLine, 0, secondLine.width()).second;
    ASSERT_GT(end, 0);
    // Only dots on the ground line, and no cut letter.
    const auto dots = InkedLines(secondLine, end - 5, end + 1);
    EXPECT_LE(dots.second - dots.first, 2);
    const auto letters = InkedLines(secondLine, end - 60, end + 1);
    EXPECT_GE(letters.second - letters.first, 7);
}

TEST_F(ServiceListPage, ANameLongerThanItsColumnRunsUnderTheDescription) {
    const QString name = QStringLiteral("T").repeated(60);
    Register(MakeServiceClass(name, QString(), {}));
    Register(MakeServiceClass(name + u'x', QStringLiteral("Described"), {}));
    ShowShell();
    const QImage alone = RowImage(name);
    EXPECT_GT(Inked(alone, 0, 800).second, 400);
    const QImage described = RowImage(name + u'x');
    // The name is the same up to the description and behind it.
    EXPECT_EQ(described.copy(0, 0, 300, 42), alone.copy(0, 0, 300, 42));
    EXPECT_EQ(described.copy(400, 0, 80, 42), alone.copy(400, 0, 80, 42));
    EXPECT_NE(described.copy(300, 0, 60, 42), alone.copy(300, 0, 60, 42));
}

TEST_F(ServiceListPage, SelectedServicesShowAndCategoriesDoNot) {
    ShowShell();
    const QColor base = TZOIdeTheming::GetSystemColor(clWindow);
    const QColor highlight = TZOIdeTheming::GetSystemColor(clHighlight);
    ClickRow(QStringLiteral("TMapService"));
    EXPECT_EQ(RowImage(QStringLiteral("TMapService")).pixelColor(2, 2).rgb(), highlight.rgb());
    EXPECT_EQ(RowImage(QStringLiteral("TMailService")).pixelColor(2, 2).rgb(), base.rgb());
    const QImage category = RowImage(ClassesHeader);
    ClickRow(ClassesHeader);
    EXPECT_EQ(List()->currentIndex().row(), 0);
    EXPECT_EQ(RowImage(ClassesHeader), category);
}

TEST_F(ServiceListPage, DrawsNoFocusFrame) {
    ShowShell();
    ClickRow(QStringLiteral("TMapService"));
    const QImage focused = RowImage(QStringLiteral("TMapService"));
    Search()->setFocus();
    EXPECT_EQ(RowImage(QStringLiteral("TMapService")), focused);
}

TEST_F(ServiceListPage, FollowsTheTheme) {
    ShowShell();
    TZOIdeTheming::SetTheme(thDark);
    EXPECT_EQ(Top()->palette().color(QPalette::Window), TZOIdeTheming::GetSystemColor(clWindow));
    const QImage row = RowImage(QStringLiteral("TMailService"));
    EXPECT_EQ(row.pixelColor(2, 2).rgb(), TZOIdeTheming::GetSystemColor(clWindow).rgb());
    int brightest = 0;
    for (int x = 300; x < row.width(); ++x)
        for (int y = 0; y < row.height(); ++y)
            brightest = std::max(brightest, row.pixelColor(x, y).green());
    EXPECT_NEAR(brightest, 0xB0, 24); // the description's grey; smoothing takes some of it
}

TEST_F(ServiceListPage, HasTextsForScreenReaders) {
    ShowShell();
    EXPECT_EQ(List()->accessibleName(), QStringLiteral("Services"));
    EXPECT_EQ(Search()->accessibleName(), QStringLiteral("Search"));
    const QModelIndex row = List()->model()->index(1, 0);
    EXPECT_EQ(row.data(Qt::AccessibleTextRole).toString(), QStringLiteral("TMapService"));
    EXPECT_EQ(row.data(Qt::AccessibleDescriptionRole).toString(), QStringLiteral("Maps."));
}

TEST_F(ServiceListPage, ListsAClassThatComesLater) {
    ShowShell();
    Classes.push_back(MakeServiceClass(QStringLiteral("TLateService"), QString(), {}));
    Shell->ServiceClassAdded(Classes.back().get());
    EXPECT_EQ(Rows().back(), QStringLiteral("TLateService"));
}

TEST_F(ServiceListPage, APageThatIsOvertakenByAnotherGoes) {
    ShowShell();
    ClickRow(QStringLiteral("TMapService"));
    const auto frames = QApplication::topLevelWidgets().size();
    for (int i = 0; i < 5; ++i)
        QTest::keyClick(List(), Qt::Key_Return);
    Settle();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(Shell->GetNavStackCount(), 2);
    EXPECT_EQ(QApplication::topLevelWidgets().size(), frames);
}

TEST_F(ServiceListPage, APageThatWasNeverShownIsFreedAtStop) {
    ShowShell();
    ClickRow(QStringLiteral("TMapService"));
    QTest::keyClick(List(), Qt::Key_Return);
    const auto frames = QApplication::topLevelWidgets().size(); // a page without a parent yet
    QTest::keyClick(List(), Qt::Key_Return);                    // wins
    EXPECT_EQ(QApplication::topLevelWidgets().size(), frames + 1);
    Settle();
    Shell.reset();
    StopPages();
    EXPECT_EQ(QApplication::topLevelWidgets().size(), 0);
    StartPages();
}
