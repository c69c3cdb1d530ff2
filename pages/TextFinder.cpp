#include "pages/TextFinder.h"

#include "jsoneditor/view/DataSource.h"
#include "jsoneditor/view/RestView.h"

#include "platform/ExceptionDisplay.h"

#include <QElapsedTimer>

#include <algorithm>
#include <utility>

namespace {

/// The clock is asked no more often than this.
constexpr int RowsAtOnce = 256;
/// What a keystroke waits for: enough for what is near.
constexpr int FirstSliceMs = 4;

} // namespace

TZOTextFinder::TZOTextFinder(QObject* AOwner) : QObject(AOwner) {
    FTimer.setInterval(0);
    connect(&FTimer, &QTimer::timeout, this, [this] { GuardedCall(nullptr, [this] { RunSlice(SliceMs); }); });
}

void TZOTextFinder::SetViews(const QList<TZORestView*>& AViews) {
    FViews = AViews;
    FSearches.resize(static_cast<std::size_t>(AViews.size()));
    for (TZORestView* view : FViews)
        connect(view, &TZORestView::RowsChanged, this, &TZOTextFinder::Restart);
}

void TZOTextFinder::Start(const QString& AText, TZORestView* AView, TZOViewRow* ARow) {
    FText = AText;
    FIsSilent = false;
    FWanted = 0;
    Begin(std::max(0, static_cast<int>(FViews.indexOf(AView))), ARow ? AView->IndexOfRow(ARow) : 0);
}

void TZOTextFinder::Stop() { Start(QString(), nullptr, nullptr); }

void TZOTextFinder::Begin(int AView, int AIndex) {
    FHits.clear();
    FSearches.clear();
    FRevisions.clear();
    FWrapHits = -1;
    FCurrent = -1;
    FRowsLeft = 0;
    for (TZORestView* view : FViews) {
        const bool hasRows = view->DataSource() && view->GetRowCount() > 0 && !FText.isEmpty();
        FSearches.push_back(hasRows ? view->DataSource()->NewSearch(FText) : nullptr);
        FRevisions.push_back(view->Revision());
        FRowsLeft += hasRows ? view->GetRowCount() : 0;
    }
    FIsDone = FRowsLeft == 0;
    FView = AView;
    FIndex = std::clamp(AIndex, 0, std::max(0, FViews[FView]->GetRowCount() - 1));
    FRow = FViews[FView]->RowAt(FIndex);
    if (FIsDone) {
        FTimer.stop();
        Q_EMIT Changed();
        return;
    }
    FTimer.start();
    RunSlice(FirstSliceMs);
}

void TZOTextFinder::Restart() {
    if (FText.isEmpty() || AreRowsSame())
        return;
    // The user has changed something elsewhere: what he looks at stays where it is.
    const THit place = FCurrent >= 0 ? FHits[static_cast<std::size_t>(FCurrent)] : THit{FView, FIndex};
    FIsSilent = true;
    FWanted = 0;
    Begin(place.View, place.Index);
}

bool TZOTextFinder::AreRowsSame() const {
    return std::equal(
        FRevisions.begin(), FRevisions.end(), FViews.begin(),
        [](quint64 ARevision, const TZORestView* AView) { return AView->Revision() == ARevision; });
}

void TZOTextFinder::GoToNextRow() {
    while (!FRow) {
        FView = (FView + 1) % static_cast<int>(FViews.size());
        if (FView == 0)
            FWrapHits = Count();
        FIndex = 0;
        FRow = FSearches[static_cast<std::size_t>(FView)] ? FViews[FView]->GetFirst() : nullptr;
    }
}

void TZOTextFinder::RunSlice(int AMilliseconds) {
    if (!AreRowsSame()) {
        Restart();
        return;
    }
    QElapsedTimer clock;
    clock.start();
    const int before = Count();
    do {
        for (int i = 0; i < RowsAtOnce && FRowsLeft > 0; ++i, --FRowsLeft) {
            GoToNextRow();
            if (FSearches[static_cast<std::size_t>(FView)]->Matches(FRow))
                FHits.push_back({FView, FIndex});
            FRow = FRow->Next();
            ++FIndex;
        }
    } while (FRowsLeft > 0 && clock.elapsed() < AMilliseconds);
    FIsDone = FRowsLeft == 0;
    if (FIsDone)
        FTimer.stop();
    if (Count() != before || FIsDone) {
        Found();
        Q_EMIT Changed();
    }
}

void TZOTextFinder::Found() {
    if (FHits.empty())
        return;
    if (FCurrent < 0)
        SetCurrent(0);
    if (FWanted > 0 && (FCurrent + 1 < Count() || FIsDone))
        GoNext();
    else if (FWanted < 0 && FIsDone)
        GoPrevious();
}

void TZOTextFinder::SetCurrent(int AHit) {
    FCurrent = AHit;
    FWanted = 0;
    if (!std::exchange(FIsSilent, false))
        Q_EMIT Moved();
    Q_EMIT Changed();
}

void TZOTextFinder::GoNext() {
    if (FCurrent < 0)
        return;
    if (FCurrent + 1 < Count())
        SetCurrent(FCurrent + 1);
    else if (FIsDone)
        SetCurrent(0);
    else
        FWanted = 1;
}

void TZOTextFinder::GoPrevious() {
    if (FCurrent < 0)
        return;
    if (FCurrent > 0)
        SetCurrent(FCurrent - 1);
    else if (FIsDone)
        SetCurrent(Count() - 1);
    else
        FWanted = -1;
}

int TZOTextFinder::Ordinal() const {
    if (FCurrent < 0 || !FIsDone)
        return 0;
    const int wrapped = FWrapHits < 0 ? Count() : FWrapHits;
    return FCurrent < wrapped ? Count() - wrapped + FCurrent + 1 : FCurrent - wrapped + 1;
}

TZORestView* TZOTextFinder::CurrentView() const {
    return FCurrent < 0 ? nullptr : FViews[FHits[static_cast<std::size_t>(FCurrent)].View];
}

int TZOTextFinder::CurrentIndex() const {
    return FCurrent < 0 ? -1 : FHits[static_cast<std::size_t>(FCurrent)].Index;
}

TZOViewRow* TZOTextFinder::CurrentRow() const {
    return FCurrent < 0 ? nullptr : CurrentView()->RowAt(CurrentIndex());
}
