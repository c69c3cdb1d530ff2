#include "tests/pages/PagesFixture.h"

#include "platform/IdeTheming.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QGuiApplication>

namespace {

class OperationListPage : public PagesTest {
protected:
    OperationListPage() {
        Register(MakeServiceClass(QStringLiteral("TMapService"), QStringLiteral("Finds places"),
                                  {{QStringLiteral("Locate"), QStringLiteral("Where a <b>place</b> is.")},
                                   {QStringLiteral("AddPin"), QStringLiteral("Marks a place")},
                                   {QStringLiteral("Reset"), QString()}}));
        Register(MakeServiceClass(QStringLiteral("TEmptyService"), QString(), {}));
    }

    void ShowOperations(const QString& AService) {
        ShowShell();
        Open(AService);
        ASSERT_EQ(Shell->GetNavStackCount(), 2);
    }
    TZOServiceItem* Item() const { return Shell->GetNavStackTop()->Service(); }
};

} // namespace

TEST_F(OperationListPage, ListsTheOperationsInTheOrderOfTheirDeclaration) {
    ShowOperations(QStringLiteral("TMapService"));
    EXPECT_EQ(Rows(),
              (QStringList{QStringLiteral("Locate"), QStringLiteral("AddPin"), QStringLiteral("Reset")}));
    EXPECT_EQ(Find<QLabel>("HeaderLabel")->text(), QStringLiteral("TMapService"));
    EXPECT_EQ(Find<QLabel>("InfoLabel")->text(), QStringLiteral("Finds places."));
    EXPECT_EQ(Find<QLabel>("OperationsLabel")->text(), QStringLiteral("Operations"));
    EXPECT_TRUE(List()->hasFocus());
}

TEST_F(OperationListPage, DescribesOperationsWithAFullStop) {
    ShowOperations(QStringLiteral("TMapService"));
    const auto description = [this](int ARow) {
        return List()->model()->index(ARow, 0).data(Qt::AccessibleDescriptionRole).toString();
    };
    EXPECT_EQ(description(0), QStringLiteral("Where a <b>place</b> is."));
    EXPECT_EQ(description(1), QStringLiteral("Marks a place."));
    EXPECT_EQ(description(2), QString());
}

TEST_F(OperationListPage, IsEmptyForAServiceWithoutOperations) {
    ShowOperations(QStringLiteral("TEmptyService"));
    EXPECT_EQ(Rows(), QStringList());
    EXPECT_TRUE(Find<QLabel>("OperationsLabel")->isVisible());
}

TEST_F(OperationListPage, SearchesNamesOnly) {
    ShowOperations(QStringLiteral("TMapService"));
    QTest::keyClicks(Search(), QStringLiteral("PLACE"));
    EXPECT_EQ(Rows(), QStringList());
    QTest::keyClick(List(), 'E');
    EXPECT_EQ(Search()->text(), QStringLiteral("E"));
    EXPECT_EQ(Rows(), (QStringList{QStringLiteral("Locate"), QStringLiteral("Reset")}));
}

TEST_F(OperationListPage, EscapeInTheSearchListsEverythingAgain) {
    ShowOperations(QStringLiteral("TMapService"));
    QTest::keyClick(List(), 'p');
    EXPECT_EQ(Rows().size(), 1);
    QTest::keyClick(Search(), Qt::Key_Escape);
    EXPECT_EQ(Search()->text(), QString());
    EXPECT_EQ(Rows().size(), 3);
    EXPECT_TRUE(List()->hasFocus());
}

TEST_F(OperationListPage, CopiesTheSelectedNameIfThereIsOne) {
    ShowOperations(QStringLiteral("TMapService"));
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    QTest::keyClick(List(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_FALSE(QGuiApplication::clipboard()->text().contains(QStringLiteral("Locate")));
    QTest::keyClick(List(), Qt::Key_Down);
    QTest::keyClick(List(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("Locate"));
}

TEST_F(OperationListPage, TheFirstDownSelectsTheFirstOperation) {
    ShowOperations(QStringLiteral("TMapService"));
    EXPECT_EQ(List()->currentIndex().row(), -1);
    QTest::keyClick(List(), Qt::Key_Down);
    EXPECT_EQ(List()->currentIndex().row(), 0);
    QTest::keyClick(List(), Qt::Key_Down);
    EXPECT_EQ(List()->currentIndex().row(), 1);
}

TEST_F(OperationListPage, ShowsItsInfoInGrey) {
    ShowOperations(QStringLiteral("TMapService"));
    EXPECT_EQ(TextColor(Find<QLabel>("InfoLabel")), TZOIdeTheming::GetSystemColor(clGrayText));
    TZOIdeTheming::SetTheme(thDark);
    EXPECT_EQ(TextColor(Find<QLabel>("InfoLabel")), QColor(0xB0, 0xB0, 0xB0));
    EXPECT_EQ(Top()->palette().color(QPalette::Window), TZOIdeTheming::GetSystemColor(clWindow));
}

TEST_F(OperationListPage, AnswersWhetherItsServiceIsConfigured) {
    ShowOperations(QStringLiteral("TMapService"));
    EXPECT_EQ(Shell->GetNavStackTop()->AuthState(false), asNotConfigured);
    Item()->Component()->SetApiKey(QStringLiteral("key"));
    EXPECT_EQ(Shell->GetNavStackTop()->AuthState(false), asConfigured);
    EXPECT_EQ(Shell->GetNavStack(0)->AuthState(true), asHidden);
}

TEST_F(OperationListPage, OpensTheOptionsOfItsService) {
    ShowOperations(QStringLiteral("TMapService"));
    QTest::mouseClick(Shell->findChild<QWidget*>(QStringLiteral("AuthOptionsLabel")), Qt::LeftButton);
    EXPECT_EQ(Shell->GetNavStackCount(), 2);
    Settle();
    EXPECT_EQ(Stack(), (QStringList{QStringLiteral("Services"), QStringLiteral("TMapService"),
                                    QStringLiteral("Service options")}));
}

TEST_F(OperationListPage, OpensTheOptionsEvenWithoutItsFrame) {
    ShowOperations(QStringLiteral("TMapService"));
    delete Top();
    Shell->ServiceOptionsAsync();
    Settle();
    EXPECT_EQ(Stack().back(), QStringLiteral("Service options"));
}

TEST_F(OperationListPage, GoesBackToTheServicesWhenItsComponentGoes) {
    ShowShell();
    auto component = std::make_unique<TZORestService>(Classes[0].get());
    component->setObjectName(QStringLiteral("Map1"));
    Shell->ExploreComponent(component.get());
    Settle();
    ASSERT_EQ(Stack().back(), QStringLiteral("Map1"));
    component.reset();
    EXPECT_EQ(Shell->GetNavStackTop()->AuthState(true), asHidden);
    EXPECT_EQ(Rows(), QStringList());
    QTest::keyClicks(Search(), QStringLiteral("L"));
    EXPECT_EQ(Rows(), QStringList());
    Settle();
    EXPECT_EQ(Stack(), QStringList{QStringLiteral("Services")});
}

TEST_F(OperationListPage, FollowsTheNameOfAUsersComponent) {
    ShowShell();
    TZORestService component(Classes[0].get());
    component.setObjectName(QStringLiteral("places"));
    Shell->ExploreComponent(&component);
    Settle();
    const auto inBar = [this] { return Shell->findChild<TZOLinkLabel*>(QStringLiteral("NavTwo"))->text(); };
    EXPECT_EQ(Find<QLabel>("HeaderLabel")->text(), QStringLiteral("places"));
    EXPECT_EQ(inBar(), QStringLiteral("places"));

    component.setObjectName(QStringLiteral("maps"));
    EXPECT_EQ(Find<QLabel>("HeaderLabel")->text(), QStringLiteral("maps"));
    EXPECT_EQ(inBar(), QStringLiteral("maps"));
    EXPECT_EQ(Stack(), (QStringList{QStringLiteral("Services"), QStringLiteral("maps")}));
    component.setObjectName(QString());
    EXPECT_EQ(inBar(), QStringLiteral("<TMapService>"));

    Shell->ShowServiceList();
    Settle();
    component.setObjectName(QStringLiteral("roads"));
    EXPECT_EQ(Rows(), (QStringList{QStringLiteral("Recent User Components"), QStringLiteral("roads"),
                                   QStringLiteral("ZO Bridgework Service Classes"),
                                   QStringLiteral("TMapService"), QStringLiteral("TEmptyService")}));
}

TEST_F(OperationListPage, AnotherServiceMayGoWithoutNotice) {
    ShowOperations(QStringLiteral("TMapService"));
    Shell->ServiceClassRemoved(Classes[1].get());
    Settle();
    EXPECT_EQ(Stack().back(), QStringLiteral("TMapService"));
    EXPECT_EQ(Rows().size(), 3);
}

TEST_F(OperationListPage, FiltersThousandsOfOperationsAtOnce) {
    QList<TTestOper> opers;
    for (int i = 0; i < 5000; ++i)
        opers.append({QStringLiteral("Operation%1").arg(i), QStringLiteral("Does something").repeated(20)});
    Register(MakeServiceClass(QStringLiteral("TLargeService"), QString(), opers));
    ShowOperations(QStringLiteral("TLargeService"));
    EXPECT_EQ(Rows().size(), 5000);
    QElapsedTimer timer;
    timer.start();
    QTest::keyClicks(Search(), QStringLiteral("4999"));
    Settle();
    EXPECT_LT(timer.elapsed(), 1000); // some 10 ms; the rest is for slow machines
    EXPECT_EQ(Rows(), QStringList{QStringLiteral("Operation4999")});
}
