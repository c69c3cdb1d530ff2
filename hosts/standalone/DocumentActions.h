// What the user does with API documents in the window.
#pragma once

#include "hosts/standalone/OpenDocuments.h"

#include <QObject>

class QBoxLayout;
class QMenu;
class TZOOfferBar;
class TZOProblemWindow;

/// Opens documents from the menu, from files dropped anywhere on the window, and from a list of the recent
/// ones; offers to reload those that change; lists what is wrong with them.
class TZODocumentActions final : public QObject {
    Q_OBJECT

public:
    /// Offers are put at the top of ABars.
    TZODocumentActions(TZOShellFrame* AShell, QWidget* AWindow, QBoxLayout* ABars);
    ~TZODocumentActions() override;

    /// Adds the commands to the window's menus.
    void AddTo(QMenu* AFileMenu, QMenu* AViewMenu);
    /// Opens documents one after the other, until the user cancels one that takes long. What is wrong with
    /// them is shown. While a request runs, they are opened after it.
    void Open(const QStringList& AFileNames);

    const TZOOpenDocuments& Documents() const { return FDocuments; }

Q_SIGNALS:
    /// Something that the user should know.
    void Noticed(const QString& AMessage);

protected:
    bool eventFilter(QObject* AWatched, QEvent* AEvent) override;

private:
    void ChooseFiles();
    TZOOpenDocuments::TOutcome OpenOne(const QString& AFileName);
    void Remember(const QString& APath);
    void FillRecentMenu();
    void FillCloseMenu();
    void Offer(const QString& APath);
    void ShowProblems();

    TZOShellFrame* FShell;
    QWidget* FWindow;
    QBoxLayout* FBars;
    TZOOpenDocuments FDocuments;
    QMenu* FRecentMenu = nullptr;
    QMenu* FCloseMenu = nullptr;
    TZOProblemWindow* FProblemWindow = nullptr;
    QHash<QString, QPointer<TZOOfferBar>> FOffers;
};
