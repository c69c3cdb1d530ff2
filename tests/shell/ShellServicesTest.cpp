#include "tests/shell/ShellFixture.h"

#include <array>
#include <cstddef>
#include <new>

namespace {

using ShellServices = ShellTest;

} // namespace

TEST_F(ShellServices, PutAnExploredComponentFirstAndOpenItsOperations) {
    ShowShell();
    TTestService component(First.get());
    component.setObjectName(QStringLiteral("Mine"));
    Shell->ExploreComponent(&component);
    ASSERT_EQ(Shell->GetServiceCount(), 3);
    EXPECT_EQ(Shell->GetServices(0)->Component(), &component);
    EXPECT_EQ(Shell->FindService(&component), Shell->GetServices(0));
    EXPECT_EQ(Log, QStringList{QStringLiteral("Services added Mine")});
    Settle();
    EXPECT_EQ(Bar(), QStringLiteral("Services > Mine"));
}

TEST_F(ShellServices, ListAComponentOnceHoweverOftenItIsExplored) {
    ShowShell();
    TTestService component(First.get());
    component.setObjectName(QStringLiteral("Mine"));
    Shell->ExploreComponent(&component);
    Settle();
    TZOServiceItem* item = Shell->GetServices(0);
    Log.clear();
    Shell->ExploreComponent(&component);
    EXPECT_EQ(Shell->GetServiceCount(), 3);
    EXPECT_EQ(Shell->GetServices(0), item);
    EXPECT_EQ(Log, (QStringList{QStringLiteral("Mine added Mine"), QStringLiteral("Services added Mine"),
                                QStringLiteral("destroyed Mine")}));
    Settle();
    EXPECT_EQ(Bar(), QStringLiteral("Services > Mine"));
    EXPECT_EQ(Shell->GetNavStackTop()->Service(), item);
}

TEST_F(ShellServices, LeaveTheOpenPagesBeforeAnotherComponentIsExplored) {
    ShowShell();
    Push({QStringLiteral("Operations"), QStringLiteral("Execute")});
    TTestService component(First.get());
    Shell->ExploreComponent(&component);
    EXPECT_EQ(Stack(), QStringList{QStringLiteral("Services")});
    EXPECT_EQ(Log.mid(3),
              (QStringList{QStringLiteral("destroyed Execute"), QStringLiteral("destroyed Operations")}));
    Settle();
    EXPECT_EQ(Bar(), QStringLiteral("Services > <TFirstService>"));
}

TEST_F(ShellServices, ExploreAComponentBeforeThereIsAWindow) {
    MakeShell();
    TTestService component(First.get());
    Shell->ExploreComponent(&component);
    EXPECT_EQ(Stack(), QStringList{QStringLiteral("Services")});
    Shell->show();
    Settle();
    EXPECT_EQ(Bar(), QStringLiteral("Services > <TFirstService>"));
}

TEST_F(ShellServices, DropAUsersComponentThatDies) {
    ShowShell();
    auto component = std::make_unique<TTestService>(First.get());
    component->setObjectName(QStringLiteral("Mine"));
    Shell->ExploreComponent(component.get());
    Settle();
    QObject::connect(Shell->GetServices(0), &QObject::destroyed,
                     [this] { Log.append(QStringLiteral("destroyed item")); });
    Log.clear();
    component.reset();
    // The pages could still ask the item for its name.
    EXPECT_EQ(Log, (QStringList{QStringLiteral("Mine removed Mine"), QStringLiteral("Services removed Mine"),
                                QStringLiteral("destroyed item")}));
    EXPECT_EQ(Shell->GetServiceCount(), 2);
    EXPECT_EQ(Shell->FindService(component.get()), nullptr);
}

TEST_F(ShellServices, ForgetAPageOnItsWayWhoseComponentDies) {
    ShowShell();
    auto component = std::make_unique<TTestService>(First.get());
    Shell->ExploreComponent(component.get());
    component.reset();
    Settle();
    EXPECT_EQ(Bar(), QStringLiteral("Services"));
}

TEST_F(ShellServices, KeepTheItemOfARegisteredClass) {
    ShowShell();
    TZORestService* component = Shell->GetServices(0)->Component();
    component->FreeNotifier().Register(Shell.get());
    Log.clear();
    component->FreeNotifier().AnnounceRemoval(component);
    EXPECT_EQ(Shell->GetServiceCount(), 2);
    EXPECT_EQ(Log, QStringList());
}

TEST_F(ShellServices, LetAComponentOutliveTheShell) {
    ShowShell();
    auto component = std::make_unique<TTestService>(First.get());
    Shell->ExploreComponent(component.get());
    Settle();
    Shell.reset();
    component.reset(); // announces to nobody
}

TEST_F(ShellServices, TellNothingToAShellThatIsGone) {
    alignas(TZOShellFrame) std::array<std::byte, sizeof(TZOShellFrame)> place = {};
    auto component = std::make_unique<TTestService>(First.get());
    auto* shell = new (place.data()) TZOShellFrame(nullptr);
    shell->ExploreComponent(component.get());
    std::destroy_at(shell);
    // Freed memory may look like the shell for long; this does not.
    place.fill(std::byte(0));
    Log.clear();
    component.reset();
    EXPECT_EQ(Log, QStringList());
}

TEST_F(ShellServices, GrowWithAClassThatComesLater) {
    ShowShell();
    Push({QStringLiteral("A")});
    const auto third = MakeServiceClass(QStringLiteral("TThird"), QStringLiteral("Third."));
    Shell->ServiceClassAdded(third.get());
    Shell->ServiceClassAdded(third.get());
    ASSERT_EQ(Shell->GetServiceCount(), 3);
    EXPECT_EQ(Shell->GetServices(2)->Name(), QStringLiteral("TThird"));
    EXPECT_EQ(Log, (QStringList{QStringLiteral("A added TThird"), QStringLiteral("Services added TThird")}));
    Shell->ServiceClassRemoved(third.get());
}

TEST_F(ShellServices, AreToldToAPageThatIsOnItsWay) {
    MakeShell();
    const auto third = MakeServiceClass(QStringLiteral("TThird"), QStringLiteral("Third."));
    Shell->ServiceClassAdded(third.get());
    EXPECT_EQ(Log, QStringList{QStringLiteral("Services added TThird")});
    Shell->ServiceClassRemoved(third.get());
    EXPECT_EQ(Log.back(), QStringLiteral("Services removed TThird"));
    Shell->show();
    Settle();
    EXPECT_EQ(Stack(), QStringList{QStringLiteral("Services")});
}

TEST_F(ShellServices, GoBackToTheListWhenTheClassOfAnOpenPageGoes) {
    ShowShell();
    Shell->NavigateAsync(MakeOperationList(Shell.get(), Shell->GetServices(0)));
    Settle();
    Log.clear();
    Shell->ServiceClassRemoved(First.get());
    EXPECT_EQ(Bar(), QStringLiteral("Services"));
    EXPECT_EQ(Log, (QStringList{QStringLiteral("destroyed TFirstService"),
                                QStringLiteral("Services removed TFirstService")}));
    ASSERT_EQ(Shell->GetServiceCount(), 1);
    EXPECT_EQ(Shell->GetServices(0)->SvcClass(), Second.get());
}

TEST_F(ShellServices, StayOnThePageOfAnotherClass) {
    ShowShell();
    Shell->NavigateAsync(MakeOperationList(Shell.get(), Shell->GetServices(0)));
    Settle();
    Shell->ServiceClassRemoved(Second.get());
    EXPECT_EQ(Bar(), QStringLiteral("Services > TFirstService"));
    EXPECT_EQ(Shell->GetServiceCount(), 1);
}

TEST_F(ShellServices, KeepThePlaceAndThePagesOfAClassThatIsReplaced) {
    ShowShell();
    TZOServiceItem* old = Shell->GetServices(0);
    const auto next = MakeServiceClass(QStringLiteral("TNext"), QStringLiteral("Next."));
    // Three pages: the one on top cannot be made again, nor can what would be above it.
    for (const char* caption : {"list", "gone", "above"}) {
        TZOShellPage* page = MakePage(QLatin1String(caption), false, old);
        FrameOf(page)->Again = [this, caption](TZOServiceItem* AItem) -> TZOShellPage* {
            return QLatin1String(caption) == QLatin1String("gone")
                       ? nullptr
                       : MakePage(QStringLiteral("new ") + QLatin1String(caption), false, AItem);
        };
        Shell->NavigateAsync(page);
        Settle();
    }
    Log.clear();
    Shell->ServiceClassReplaced(First.get(), next.get());
    EXPECT_EQ(Stack(), (QStringList{QStringLiteral("Services"), QStringLiteral("new list")}));
    EXPECT_EQ(Log,
              (QStringList{QStringLiteral("destroyed above"), QStringLiteral("destroyed gone"),
                           QStringLiteral("destroyed list"), QStringLiteral("Services removed TFirstService"),
                           QStringLiteral("Services added TNext")}));
    ASSERT_EQ(Shell->GetServiceCount(), 2);
    EXPECT_EQ(Shell->GetServices(0)->SvcClass(), next.get());
    EXPECT_EQ(Shell->GetNavStackTop()->Service(), Shell->GetServices(0));
    EXPECT_TRUE(Shell->GetNavStackTop()->Frame()->isVisible());
    Settle();
    EXPECT_EQ(Bar(), QStringLiteral("Services > new list"));
    Shell->ServiceClassRemoved(next.get());
}

TEST_F(ShellServices, LeaveThePagesOfOthersWhenAClassIsReplaced) {
    ShowShell();
    const auto next = MakeServiceClass(QStringLiteral("TNext"), QStringLiteral("Next."));
    TTestService component(Second.get());
    Shell->ExploreComponent(&component);
    Settle();
    TZOShellPage* page = Shell->GetNavStackTop();
    Shell->ServiceClassReplaced(First.get(), next.get());
    EXPECT_EQ(Shell->GetNavStackTop(), page);
    EXPECT_EQ(Shell->GetServices(1)->SvcClass(), next.get());
    // A user's component goes with its class, and so does its page.
    Shell->ServiceClassReplaced(Second.get(), First.get());
    Settle();
    EXPECT_EQ(Bar(), QStringLiteral("Services"));
    ASSERT_EQ(Shell->GetServiceCount(), 2);
    EXPECT_EQ(Shell->GetServices(1)->SvcClass(), First.get());
    Shell->ServiceClassRemoved(next.get());
}

TEST_F(ShellServices, LoseAUsersComponentWithItsClass) {
    ShowShell();
    TTestService component(First.get());
    Shell->ExploreComponent(&component);
    Shell->ServiceClassRemoved(First.get());
    Settle();
    EXPECT_EQ(Bar(), QStringLiteral("Services"));
    EXPECT_EQ(Shell->GetServiceCount(), 1);
}

TEST_F(ShellServices, SaveTheirTokensWhenTheShellGoes) {
    MakeShell();
    {
        // A token that came without a report, as from before the item listened.
        const QSignalBlocker blocker(Shell->GetServices(0)->Component());
        Shell->GetServices(0)->Component()->SetToken(QStringLiteral("abc"), QString(), 0);
    }
    EXPECT_FALSE(TRegistry().KeyExists(SettingsKey(QStringLiteral("TFirstService"))));
    Shell.reset();
    MakeShell();
    EXPECT_EQ(Shell->GetServices(0)->Component()->GetToken(), QStringLiteral("abc"));
    EXPECT_FALSE(TRegistry().KeyExists(SettingsKey(QStringLiteral("TSecondService"))));
}

TEST_F(ShellServices, DoNotRaiseWhenTheirTokensCannotBeSaved) {
    MakeShell();
    {
        const QSignalBlocker blocker(Shell->GetServices(0)->Component());
        Shell->GetServices(0)->Component()->SetToken(QStringLiteral("abc"), QString(), 0);
    }
    QDir(Folder.path()).mkpath(QStringLiteral("settings.db"));
    Shell.reset();
    ASSERT_EQ(Reports.size(), 1);
    EXPECT_TRUE(Reports[0].contains(QLatin1String("settings.db")));
}
