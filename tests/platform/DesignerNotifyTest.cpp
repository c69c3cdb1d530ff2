#include "platform/DesignerNotify.h"
#include "platform/FreeNotification.h"

#include <QObject>

#include <gtest/gtest.h>

#include <memory>

namespace {

struct TDesigner final : IDesignerNotify {
    void Modified() override {}
};

struct TListener final : IZOFreeNotification {
    void Notification(QObject* AComponent, TZOOperation AOperation) override {
        Heard.push_back({AComponent, AOperation});
        if (Other)
            Notifier->Withdraw(Other);
    }
    std::vector<std::pair<QObject*, TZOOperation>> Heard;
    TZOFreeNotifier* Notifier = nullptr;
    IZOFreeNotification* Other = nullptr;
};

} // namespace

TEST(DesignerNotify, EndsTheOwnerChainAtTheFormsRoot) {
    QObject designerWindow;
    auto* form = new QObject(&designerWindow);
    auto* component = new QObject(form);
    TDesigner designer;
    EXPECT_FALSE(IsDesigning(component));
    EXPECT_EQ(ComponentOwner(form), &designerWindow);

    SetDesignRoot(form, &designer);
    EXPECT_TRUE(IsDesigning(component));
    EXPECT_TRUE(IsDesigning(form));
    EXPECT_FALSE(IsDesigning(&designerWindow));
    EXPECT_EQ(ComponentOwner(component), form);
    EXPECT_EQ(ComponentOwner(form), nullptr);
    EXPECT_EQ(DesignerOfRoot(form), &designer);
    EXPECT_EQ(DesignerOfRoot(component), nullptr);

    ClearDesignRoot(form);
    EXPECT_FALSE(IsDesigning(component));
}

TEST(FreeNotification, TellsEveryListenerOnceAndSkipsTheWithdrawn) {
    QObject component;
    TZOFreeNotifier notifier;
    TListener first, second, third;
    notifier.Register(&first);
    notifier.Register(&first);
    notifier.Register(&second);
    notifier.Register(&third);
    notifier.Withdraw(&second);
    first.Notifier = &notifier;
    first.Other = &third;

    notifier.AnnounceRemoval(&component);
    ASSERT_EQ(first.Heard.size(), 1u);
    EXPECT_EQ(first.Heard[0], std::make_pair(&component, opRemove));
    EXPECT_TRUE(second.Heard.empty());
    EXPECT_TRUE(third.Heard.empty());

    notifier.AnnounceRemoval(&component);
    EXPECT_EQ(first.Heard.size(), 1u);
}
