// The page of one service's credentials.
#pragma once

#include "pages/ServicePage.h"

#include <QList>
#include <QString>

#include <memory>

class QCheckBox;
class QLineEdit;
class TZOIdeTheming;
class TZORestService;
namespace Ui {
class AuthOptionstPage;
}

/// Edits how a service authenticates: by an API key, or by the client and scopes of OAuth. Every change goes
/// to the service at once and is persisted by its item; there is nothing to save or cancel.
class TZOAuthOptionstPage final : public TZOServicePage {
    Q_OBJECT

public:
    static TZOShellPage* Make(TZOShellFrame* AShell, TZOServiceItem* AItem);
    ~TZOAuthOptionstPage() override;
    TPageMaker MakerAgain() override;

    /// Shows what the service has; an API key switches the OAuth section off without clearing it.
    void UpdateView();
    /// Marks the OAuth fields that are needed and empty.
    void UpdateValidation();
    /// The page is open already.
    void ServiceOptions() override;

protected:
    void DoServiceRemoved() override;

private:
    TZOAuthOptionstPage(TZOShellFrame* AShell, TZOServiceItem* AItem);
    void InitFonts();
    void InitHandlers();
    void InitScopeCheckBoxes();
    void Modified();
    void UpdateScopes(const TZORestService* AService, bool AHasKey);
    void UpdateLabelColors(TZOIdeTheming* ATheming);
    void IdeThemeChanged(TZOIdeTheming* ATheming);

    void ApiKeyHeaderClick();
    void EditChange(const QLineEdit* AEdit, void (TZORestService::*ASet)(const QString&));
    void ScopeCheckBoxesClick(const QCheckBox* ASender);
    void DefScopesButtonClick();
    void ResetButtonClick();

    std::unique_ptr<Ui::AuthOptionstPage> FUi;
    TZOIdeTheming* FTheming = nullptr;
    QList<QCheckBox*> FScopes; // in the order of the service's scope table
    bool FUpdating = false;
};
