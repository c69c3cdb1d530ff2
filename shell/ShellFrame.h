// The explorer's frame: services, navigation between pages, and the bar above them.
#pragma once

#include "platform/FreeNotification.h"
#include "platform/IdeTheming.h"

#include <QIcon>
#include <QList>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <array>
#include <functional>
#include <memory>
#include <vector>

class TZOLinkLabel;
class TZORestService;
class TZORestServiceClass;
class TZOServiceItem;
class TZOShellPage;
namespace Ui {
class ShellFrame;
}

/// The explorer: a host makes one, puts it where it likes, and drives it through ExploreComponent and
/// ShowServiceList. It owns the service items and the pages of the navigation stack, of which only the top
/// one is visible.
class TZOShellFrame : public QWidget, public IZOFreeNotification {
    Q_OBJECT

public:
    /// Indexed by whether the theme is dark; TZOIdeTheming::GetSystemColor makes colours of them.
    static constexpr TColor LINK_COLORS[2] = {0x00CC6600, 0x00BCE0FF};
    static constexpr TColor GRAY_COLORS[2] = {clGrayText, 0x00B0B0B0};

    /// The pages' library must have been started. The service list is pushed when the frame gets its window.
    explicit TZOShellFrame(QWidget* AOwner = nullptr);
    /// Saves the tokens of all services; what that raises is reported like other settings problems.
    ~TZOShellFrame() override;

    /// Opens the operations of a user's service component, which becomes the first of the services. Pages
    /// above the service list are destroyed before this returns.
    void ExploreComponent(TZORestService* AComponent);
    /// Goes back to the service list. Pages above it are destroyed before this returns.
    void ShowServiceList();
    /// Adds an item for a class that was registered after the frame was made, at the end; does nothing when
    /// there is one.
    void ServiceClassAdded(const TZORestServiceClass* AClass);
    /// Drops all items of AClass, after going back to the service list if a page of one of them is open. To
    /// be called while the class still lives.
    void ServiceClassRemoved(const TZORestServiceClass* AClass);

    /// Puts ANew into the place of AOld, as when a document was read again: the item keeps its place, and the
    /// open pages of AOld are made again for it, up to the first that has nothing to show any more. Both must
    /// live; otherwise like ServiceClassRemoved and ServiceClassAdded.
    void ServiceClassReplaced(const TZORestServiceClass* AOld, const TZORestServiceClass* ANew);

    /// Asks to show APage, a new one or one of the stack, as soon as the current event has been handled. Only
    /// the last request counts; a new page that is not shown for that reason stays its maker's.
    void NavigateAsync(TZOShellPage* APage);
    /// Asks to show the page below the top one, if there is one.
    void GoBackAsync();
    /// Asks the top page to open the authentication options of its service.
    void ServiceOptionsAsync();

    /// While a page is busy with a request on this thread, navigation and ExploreComponent, ShowServiceList
    /// and ServiceClassAdded wait until it is done. Components and classes must not go meanwhile.
    bool IsBusy() const { return FIsBusy; }
    void SetBusy(bool AIsBusy);
    /// For what takes services away or brings others: while a request runs, answers true and calls ACall when
    /// it is over.
    bool HoldCall(std::function<void()> ACall);

    /// The first item of AComponent, or null.
    TZOServiceItem* FindService(const QObject* AComponent) const;
    int GetServiceCount() const { return static_cast<int>(FServices.size()); }
    /// Raises EListError when AIndex, from 0, is out of range.
    TZOServiceItem* GetServices(int AIndex) const;
    int GetNavStackCount() const { return static_cast<int>(FNavStack.size()); }
    /// The bottom page is 0. Raises EListError when AIndex is out of range.
    TZOShellPage* GetNavStack(int AIndex) const;
    /// Null when the stack is empty.
    TZOShellPage* GetNavStackTop() const;

    /// AText with a full stop at its end, unless it is empty or has one.
    static QString FormatDescription(const QString& AText);

    /// Refreshes the authentication panel from the top page, which also opens its options with AShowOptions.
    void UpdateOptions(TZOIdeTheming* ATheming, bool AShowOptions);
    /// Refreshes it after a user's component was changed in another place than the explorer.
    void OptionsReported();
    /// Raises ERegistryException when the settings cannot be written.
    void SaveTokens();
    /// Called by a page of the stack whose caption is another now.
    void CaptionChanged() { UpdateNavBar(FTheming); }
    /// Called by the destructor of a page of the stack.
    void PageRemoved(TZOShellPage* APage);

    void Notification(QObject* AComponent, TZOOperation AOperation) override;

protected:
    void customEvent(QEvent* AEvent) override;
    void showEvent(QShowEvent* AEvent) override;

private:
    void InitComponents();
    void InitServiceList();
    void SetNavTo(TZOShellPage* APage);
    void ExecNavTask();
    void UpdatePagesShowing();
    void UpdateNavBar(TZOIdeTheming* ATheming);
    void UpdateNavLabel(TZOIdeTheming* ATheming, int APosition);
    void IdeThemeChanged(TZOIdeTheming* ATheming);
    void PopToServiceList();
    void ClearPages();
    void TellServiceAdded(TZOServiceItem* AItem);
    void RemoveItem(TZOServiceItem* AItem);
    QList<QPointer<TZOShellPage>> PagesFromTop() const;

    void BackButtonClick();
    void NavLabelClick(const TZOLinkLabel* ASender);
    void AuthOptionsLabelClick();

    std::unique_ptr<Ui::ShellFrame> FUi;
    std::array<QIcon, 2> FToolImages;
    QPointer<TZOShellPage> FNavTo;
    QList<TZOShellPage*> FNavStack;
    std::vector<std::unique_ptr<TZOServiceItem>> FServices;
    TZOIdeTheming* FTheming = nullptr;
    bool FIsBusy = false;
    std::vector<std::function<void()>> FHeldCalls;
};
