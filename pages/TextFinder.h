// Looking for a text in the rows of a page's editors.
#pragma once

#include "jsoneditor/view/RowSearch.h"

#include <QList>
#include <QObject>
#include <QTimer>

#include <memory>
#include <vector>

class TZORestView;
class TZOViewRow;

/// Goes through the rows of several views as if they were one list, from a place in it to its end and on from
/// its start, a few milliseconds at a time between the events of the user. When rows change it starts anew.
class TZOTextFinder : public QObject {
    Q_OBJECT

public:
    /// The longest that it works without a pause.
    static constexpr int SliceMs = 8;

    explicit TZOTextFinder(QObject* AOwner = nullptr);

    /// AViews must outlive this.
    void SetViews(const QList<TZORestView*>& AViews);
    /// Looks for AText, from ARow of AView on; null for its first row. An empty text ends the search.
    void Start(const QString& AText, TZORestView* AView, TZOViewRow* ARow);
    void Stop();

    const QString& Text() const { return FText; }
    /// Whether every row has been looked at.
    bool IsDone() const { return FIsDone; }
    /// The matching rows found so far.
    int Count() const { return static_cast<int>(FHits.size()); }
    /// The place of the current row among all that match, from 1 at the top; 0 while it is not known.
    int Ordinal() const;
    /// The view and place of the current row; null and -1 when there is none.
    TZORestView* CurrentView() const;
    int CurrentIndex() const;
    TZOViewRow* CurrentRow() const;
    /// Makes the match after or before the current one current; round again at either end. One that is still
    /// to be found comes when it is.
    void GoNext();
    void GoPrevious();

Q_SIGNALS:
    /// Count, Ordinal or IsDone changed.
    void Changed();
    /// Another row is current because the user looks for it: it is to be shown.
    void Moved();

private:
    struct THit {
        int View;
        int Index;
    };

    void Begin(int AView, int AIndex);
    void Restart();
    bool AreRowsSame() const;
    void RunSlice(int AMilliseconds);
    /// Into the next view that has rows, once one is at its end.
    void GoToNextRow();
    void Found();
    void SetCurrent(int AHit);

    QList<TZORestView*> FViews;
    QString FText;
    QTimer FTimer;
    std::vector<std::unique_ptr<TZORowSearch>> FSearches; ///< one for each view; null where there are no rows
    std::vector<quint64> FRevisions;
    std::vector<THit> FHits; ///< in the order in which they were found
    int FWrapHits = -1;      ///< how many of them come from before the end was passed; -1: it was not yet
    int FCurrent = -1;
    int FWanted = 0; ///< 1: the next match is waited for, -1: the last one
    int FView = 0;
    int FIndex = 0;
    TZOViewRow* FRow = nullptr;
    qint64 FRowsLeft = 0;
    bool FIsDone = true;
    bool FIsSilent = false;
};
