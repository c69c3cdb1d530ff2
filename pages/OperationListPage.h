// The page of one service: its operations.
#pragma once

#include "pages/ServicePage.h"

#include "runtime/service/RestService.h"

#include <QString>

#include <memory>
#include <vector>

class TZOIdeTheming;
namespace Ui {
class OperationListPage;
}

/// Name and description of a service, and a searchable list of its operations.
class TZOOperationListPage final : public TZOServicePage {
    Q_OBJECT

public:
    /// One operation that is listed.
    struct TOperationItem {
        POper FOperation;
        QString Name;
        QString FDescription;
    };

    static TZOShellPage* Make(TZOShellFrame* AShell, TZOServiceItem* AItem);
    ~TZOOperationListPage() override;
    TPageMaker MakerAgain() override;

    /// Lists the operations whose names match the search, in the order of their declaration.
    void UpdateView();
    /// Opens the selected operation, if one is selected.
    void OperationSelected();

protected:
    void DoServiceRemoved() override;

private:
    TZOOperationListPage(TZOShellFrame* AShell, TZOServiceItem* AItem);
    void UpdateLabelColors(TZOIdeTheming* ATheming);
    void IdeThemeChanged(TZOIdeTheming* ATheming);

    std::unique_ptr<Ui::OperationListPage> FUi;
    TZOIdeTheming* FTheming = nullptr;
    std::vector<TOperationItem> FOperations;
};
