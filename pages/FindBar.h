// The bar in which a text is looked for on a page.
#pragma once

#include "pages/TextFinder.h"

#include <QWidget>

class QLabel;
class QLineEdit;
class QToolButton;
class TZOIdeTheming;

/// Looks for what is typed into it in the rows of the page's editors: marks it there, scrolls to the first
/// row that has it, and counts. Enter and Shift+Enter go to the next and previous one, Escape closes the bar.
/// Promote a QWidget to it in a form.
class TZOFindBar : public QWidget {
    Q_OBJECT

public:
    explicit TZOFindBar(QWidget* AParent = nullptr);

    /// The editors to look in, in the order in which they stand on the page.
    void SetViews(const QList<TZORestView*>& AViews);
    void UpdateColors(const TZOIdeTheming* ATheming);
    /// Shows the bar, ready to type into; the search starts at the place where AView is.
    void Open(TZORestView* AView);
    /// Takes the marks away and leaves the focus on what was found.
    void Close();
    /// To the next or previous row that has the text; opens the bar when nothing was looked for yet.
    void GoNext(TZORestView* AView);
    void GoPrevious(TZORestView* AView);
    const TZOTextFinder& Finder() const { return FFinder; }

protected:
    bool eventFilter(QObject* AObject, QEvent* AEvent) override;
    void paintEvent(QPaintEvent* AEvent) override;

private:
    QToolButton* NewButton(Qt::ArrowType AArrow, const QString& AName);
    void Search();
    void ShowCurrent();
    void UpdateMarks();
    void UpdateCount();
    bool Reopen(TZORestView* AView);

    TZOTextFinder FFinder;
    QList<TZORestView*> FViews;
    TZORestView* FFromView = nullptr;
    QLineEdit* FEdit;
    QLabel* FCountLabel;
};
