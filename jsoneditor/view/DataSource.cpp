#include "jsoneditor/view/DataSource.h"

#include "jsoneditor/view/RestView.h"
#include "jsoneditor/view/RowSearch.h"
#include "jsoneditor/view/ViewRow.h"
#include "jsoneditor/view/ViewRowLayout.h"

namespace {

/// Looks at what the rows would show if they were in sight.
class TChunkSearch final : public TZORowSearch {
public:
    TChunkSearch(TZODataSource* ASource, const QString& AText) : FSource(ASource), FText(AText) {}

    bool Matches(TZOViewRow* ARow) override {
        if (const TZOViewRowLayout* layout = ARow->Layout())
            return Matches(*layout);
        TZOViewRowLayout scratch(FSource->View(), ARow);
        FSource->ConfigureRow(ARow, &scratch);
        return Matches(scratch);
    }

private:
    bool Matches(const TZOViewRowLayout& ALayout) const {
        for (int i = 0; i < ALayout.GetChunkCount(); ++i)
            if (ALayout.GetChunks(i)->Text().contains(FText, Qt::CaseInsensitive))
                return true;
        return false;
    }

    TZODataSource* FSource;
    QString FText;
};

} // namespace

TZODataSource::~TZODataSource() {
    if (FView)
        FView->ReleaseSource();
}

void TZODataSource::RefreshContent() {}
void TZODataSource::ConfigureRow(TZOViewRow*, TZOViewRowLayout*) {}
void TZODataSource::RowEdited(TZOViewRow*, int, const QString&) {}
void TZODataSource::KeyDown(int&, Qt::KeyboardModifiers) {}
void TZODataSource::DblClick() {}
void TZODataSource::FillMenu(QMenu*) {}
QString TZODataSource::RowHint(TZOViewRow*) { return QString(); }

std::unique_ptr<TZORowSearch> TZODataSource::NewSearch(const QString& AText) {
    return std::make_unique<TChunkSearch>(this, AText);
}

bool TZODataSource::WantsKey(int AKey, Qt::KeyboardModifiers AShift) const {
    return AKey == Qt::Key_Insert || AKey == Qt::Key_F5 ||
           (AKey == Qt::Key_Delete && AShift.testFlag(Qt::ControlModifier));
}

void TZODataSource::RaiseNoView() {
    throw EZORestView(QStringLiteral("DataSource is not connected to view."));
}

void TZODataSource::BeginUpdate() {
    CheckView();
    FView->DoBeginUpdate();
}

void TZODataSource::EndUpdate() {
    CheckView();
    FView->DoEndUpdate();
}

void TZODataSource::Updating(const std::function<void()>& AAction) {
    CheckView();
    FView->Updating(AAction);
}

TZOViewRow* TZODataSource::Add(TZOViewRow* ARow) {
    CheckView();
    FView->AppendRow(ARow);
    return ARow;
}

TZOViewRow* TZODataSource::InsertBefore(TZOViewRow* ABefore, TZOViewRow* ARow) {
    CheckView();
    FView->PlaceRow(ARow, ABefore, false);
    return ARow;
}

TZOViewRow* TZODataSource::InsertAfter(TZOViewRow* AAfter, TZOViewRow* ARow) {
    CheckView();
    FView->PlaceRow(ARow, AAfter, true);
    return ARow;
}

void TZODataSource::MoveRangeBefore(TZOViewRow* ABefore, TZOViewRow* AStart, TZOViewRow* AEnd) {
    CheckView();
    FView->MoveRows(ABefore, AStart, AEnd, false);
}

void TZODataSource::MoveRangeAfter(TZOViewRow* AAfter, TZOViewRow* AStart, TZOViewRow* AEnd) {
    CheckView();
    FView->MoveRows(AAfter, AStart, AEnd, true);
}

void TZODataSource::Remove(TZOViewRow* ARow) {
    CheckView();
    delete ARow;
}

void TZODataSource::Clear() {
    CheckView();
    FView->ClearRows();
}

TZOViewRow* TZODataSource::GetFirst() const {
    CheckView();
    return FView->GetFirst();
}

TZOViewRow* TZODataSource::GetLast() const {
    CheckView();
    return FView->GetLast();
}
