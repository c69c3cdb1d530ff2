// The rows of a view: its data source, the update bracket, and the list with its index.
#include "jsoneditor/view/AccessibleView_p.h"
#include "jsoneditor/view/DataSource.h"
#include "jsoneditor/view/InplaceEditor.h"
#include "jsoneditor/view/RestView.h"
#include "jsoneditor/view/RowIndex_p.h"
#include "platform/ExceptionDisplay.h"

void TZORestView::SetDataSource(TZODataSource* ASource) {
    if (FDataSource == ASource)
        return;
    if (FDataSource) {
        ClearRows();
        TZODataSource* old = std::exchange(FDataSource, nullptr);
        FIndex->Source = nullptr;
        old->FView = nullptr;
        if (FOwnDataSource)
            delete old;
    }
    if (ASource) {
        if (ASource->FView)
            ASource->FView->ReleaseSource();
        FDataSource = ASource;
        FIndex->Source = ASource;
        ASource->FView = this;
    }
    RefreshContent();
}

void TZORestView::ReleaseSource() {
    // Also runs in the source's destructor.
    GuardedCall(this, [this] { ClearRows(); });
    FIndex->Source = nullptr;
    if (FDataSource)
        std::exchange(FDataSource, nullptr)->FView = nullptr;
}

void TZORestView::RefreshContent() {
    CancelEditing();
    Updating([this] {
        if (FDataSource)
            FDataSource->RefreshContent();
        UpdateView();
    });
}

int TZORestView::IndexOfRow(const TZOViewRow* ARow) const {
    return ARow && ARow->List() == &FRows ? FIndex->IndexOf(ARow) : FRows.GetCount();
}

TZOViewRow* TZORestView::RowAt(int AIndex) const { return FIndex->At(AIndex); }

void TZORestView::ClearRows() {
    DoBeginUpdate();
    while (TZOViewRow* first = FRows.GetFirst())
        delete first;
    DoEndUpdate();
}

void TZORestView::Updating(const std::function<void()>& AAction) {
    DoBeginUpdate();
    try {
        AAction();
    } catch (...) {
        // What went wrong first is what the caller hears of; the update that was put off still runs.
        try {
            DoEndUpdate();
        } catch (const std::exception& e) {
            qWarning("%s", e.what());
        }
        throw;
    }
    DoEndUpdate();
}

void TZORestView::TakeFromItsPlace(TZOViewRow* ARow) {
    if (ARow->List() == &FRows)
        FIndex->Removing(ARow);
    else if (TZODataSource* source = ARow->Source(); source && source->FView)
        source->FView->RowRemoved(ARow);
}

void TZORestView::AppendRow(TZOViewRow* ARow) {
    if (ARow->List() || !FIndex->HasRoomAtEnd())
        return PlaceRow(ARow, nullptr, true);
    // Counted first, as the list updates the view at once while no bracket is open.
    FIndex->Appending(ARow);
    FRows.Add(ARow);
}

void TZORestView::PlaceRow(TZOViewRow* ARow, TZOViewRow* AAnchor, bool AAfter) {
    if (ARow->List())
        TakeFromItsPlace(ARow);
    DoBeginUpdate();
    if (!AAnchor)
        FRows.Add(ARow);
    else if (AAfter)
        FRows.InsertAfter(AAnchor, ARow);
    else
        FRows.InsertBefore(AAnchor, ARow);
    FIndex->Inserted(ARow);
    DoEndUpdate();
}

void TZORestView::MoveRows(TZOViewRow* AAnchor, TZOViewRow* AStart, TZOViewRow* AEnd, bool AAfter) {
    if (AStart->List() != &FRows)
        return;
    DoBeginUpdate();
    FIndex->RemovingRun(AStart, AEnd);
    if (AAfter)
        FRows.MoveRangeAfter(AAnchor, AStart, AEnd);
    else
        FRows.MoveRangeBefore(AAnchor, AStart, AEnd);
    FIndex->RunInserted(AStart, AEnd);
    DoEndUpdate();
}

void TZORestView::RowRemoved(TZOViewRow* ARow) {
    DoBeginUpdate();
    for (TZOInplaceEditor* editor : {FEditor, FHover}) {
        if (editor->FRow != ARow)
            continue;
        editor->Hide();
        editor->FRow = nullptr;
    }
    if (FSelected == ARow)
        FSelected = nullptr;
    if (FExposeRow == ARow)
        FExposeRow = nullptr;
    if (FTargetRow == ARow)
        FTargetRow = nullptr;
    if (FFlushingRow == ARow)
        FFlushingRow = nullptr;
    if (FMarkRow == ARow)
        FMarkRow = nullptr;
    InvalidateLayout(ARow);
    FAccessible->Forget(ARow);
    if (ARow->List() == &FRows) {
        FIndex->Removing(ARow);
        FRows.Remove(ARow);
    }
    RequestUpdate();
    // Runs in the row's destructor, so what the update raises can go no further.
    GuardedCall(this, [this] { DoEndUpdate(); });
}
