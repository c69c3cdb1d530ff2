// The start page: all services.
#pragma once

#include "shell/PageFrame.h"

#include <QString>

#include <memory>
#include <vector>

class TZOIdeTheming;
class TZOServiceItem;
class TZOShellFrame;
class TZOShellPage;
namespace Ui {
class ServiceListPage;
}

/// A searchable list of the shell's services in two groups: the components on the user's forms, then the
/// registered service classes.
class TZOServiceListPage final : public TZOPageFrame {
    Q_OBJECT

public:
    /// The heading of one group.
    struct TCategory {
        QString Name;
    };

    static TZOShellPage* Make(TZOShellFrame* AShell);
    ~TZOServiceListPage() override;

    /// Lists the services whose names match the search; none is selected then.
    void UpdateList();
    /// Opens the operations of the selected service, if a service is selected.
    void ServiceSelected();

private:
    explicit TZOServiceListPage(TZOShellFrame* AShell);
    void IdeThemeChanged(TZOIdeTheming* ATheming);

    TZOShellFrame* FShell;
    std::unique_ptr<Ui::ServiceListPage> FUi;
    TCategory FUserCat;
    TCategory FGeneralCat;
    std::vector<TZOServiceItem*> FListed; // one for each row of the list; null for a category
};
