// The services of the shell: which there are, and what happens when one comes or goes.
#include "shell/ShellFrame.h"

#include "ui_ShellFrame.h"

#include "shell/PageFactory.h"
#include "shell/PageFrame.h"
#include "shell/ServiceItem.h"
#include "shell/ShellPage.h"

#include "platform/ExceptionDisplay.h"

#include <algorithm>

void TZOShellFrame::InitServiceList() {
    for (const TZORestServiceClass* svcClass : TZOTypeInfo::Services())
        FServices.push_back(std::make_unique<TZOServiceItem>(this, svcClass));
}

TZOServiceItem* TZOShellFrame::FindService(const QObject* AComponent) const {
    // A dying component is no TZORestService any more: only its address counts.
    const auto found = std::find_if(FServices.begin(), FServices.end(), [&](const auto& AItem) {
        return static_cast<const QObject*>(AItem->Component()) == AComponent;
    });
    return found == FServices.end() ? nullptr : found->get();
}

QList<QPointer<TZOShellPage>> TZOShellFrame::PagesFromTop() const {
    QList<QPointer<TZOShellPage>> pages(FNavStack.rbegin(), FNavStack.rend());
    // A page on its way to the stack has looked at the services already.
    if (FNavTo && !FNavStack.contains(FNavTo))
        pages.prepend(FNavTo);
    return pages;
}

void TZOShellFrame::TellServiceAdded(TZOServiceItem* AItem) {
    for (const auto& page : PagesFromTop())
        if (page)
            page->ServiceAdded(AItem);
}

void TZOShellFrame::ExploreComponent(TZORestService* AComponent) {
    if (HoldCall([this, component = QPointer(AComponent)] {
            if (component)
                ExploreComponent(component);
        }))
        return;
    TZOServiceItem* item = FindService(AComponent);
    if (!item)
        item = FServices.insert(FServices.begin(), std::make_unique<TZOServiceItem>(this, AComponent))->get();
    TellServiceAdded(item);
    PopToServiceList();
    if (FNavStack.isEmpty()) {
        NavigateAsync(PageFactory().MakeServiceList(this));
        ExecNavTask();
    }
    NavigateAsync(PageFactory().MakeOperationList(this, item));
}

void TZOShellFrame::ServiceClassAdded(const TZORestServiceClass* AClass) {
    if (HoldCall([this, AClass] {
            const auto& classes = TZOTypeInfo::Services();
            if (std::find(classes.begin(), classes.end(), AClass) != classes.end())
                ServiceClassAdded(AClass);
        }))
        return;
    const auto isOfClass = [&](const auto& AItem) {
        return AItem->SvcClass() == AClass && !AItem->GetIsUserComp();
    };
    if (std::any_of(FServices.begin(), FServices.end(), isOfClass))
        return;
    TellServiceAdded(FServices.emplace_back(std::make_unique<TZOServiceItem>(this, AClass)).get());
}

void TZOShellFrame::ServiceClassRemoved(const TZORestServiceClass* AClass) {
    const auto isOfClass = [&](const auto& AItem) { return AItem->SvcClass() == AClass; };
    const auto isAbout = [&](const TZOShellPage* APage) {
        return APage->Service() && isOfClass(APage->Service());
    };
    if (FNavTo && isAbout(FNavTo))
        SetNavTo(nullptr);
    if (std::any_of(FNavStack.begin(), FNavStack.end(), isAbout))
        ShowServiceList();
    for (;;) {
        const auto found = std::find_if(FServices.begin(), FServices.end(), isOfClass);
        if (found == FServices.end())
            return;
        RemoveItem(found->get());
    }
}

void TZOShellFrame::ServiceClassReplaced(const TZORestServiceClass* AOld, const TZORestServiceClass* ANew) {
    const auto old = std::find_if(FServices.begin(), FServices.end(), [&](const auto& AItem) {
        return AItem->SvcClass() == AOld && !AItem->GetIsUserComp();
    });
    const auto place = static_cast<std::size_t>(old - FServices.begin());
    std::vector<TZOPageFrame::TPageMaker> makers;
    for (const TZOShellPage* page : FNavStack) {
        if (old != FServices.end() && page->Service() == old->get() && page->Frame())
            makers.push_back(page->Frame()->MakerAgain());
    }
    ServiceClassRemoved(AOld);
    auto item = std::make_unique<TZOServiceItem>(this, ANew);
    TZOServiceItem* added = item.get();
    FServices.insert(FServices.begin() + static_cast<std::ptrdiff_t>(std::min(place, FServices.size())),
                     std::move(item));
    TellServiceAdded(added);
    for (const auto& maker : makers) {
        TZOShellPage* page = maker ? maker(added) : nullptr;
        if (!page)
            return;
        NavigateAsync(page);
        ExecNavTask();
    }
}

void TZOShellFrame::Notification(QObject* AComponent, TZOOperation AOperation) {
    if (AOperation != opRemove)
        return;
    TZOServiceItem* item = FindService(AComponent);
    if (item && item->GetIsUserComp())
        RemoveItem(item);
}

void TZOShellFrame::RemoveItem(TZOServiceItem* AItem) {
    const auto place = std::find_if(FServices.begin(), FServices.end(),
                                    [&](const auto& AOther) { return AOther.get() == AItem; });
    const std::unique_ptr<TZOServiceItem> item = std::move(*place);
    FServices.erase(place);
    // A page on its way to the stack would come up with an item that is gone.
    if (FNavTo && FNavTo->Service() == AItem && !FNavStack.contains(FNavTo))
        SetNavTo(nullptr);
    for (const auto& page : PagesFromTop())
        if (page)
            page->ServiceRemoved(AItem);
}

void TZOShellFrame::OptionsReported() {
    GuardedCall(this, [this] { UpdateOptions(FTheming, false); });
}

void TZOShellFrame::SaveTokens() {
    for (const auto& item : FServices)
        if (!item->Component()->GetToken().isEmpty())
            item->SaveToken();
}
