#include "jsoneditor/view/DataSource.h"

#include "jsoneditor/view/RestView.h"
#include "jsoneditor/view/ViewRow.h"

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

bool TZODataSource::WantsKey(int AKey, Qt::KeyboardModifiers AShift) const {
    return AKey == Qt::Key_Insert || AKey == Qt::Key_F5 ||
           (AKey == Qt::Key_Delete && AShift.testFlag(Qt::ControlModifier));
}

void TZODataSource::CheckView() const {
    if (!FView)
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
    FView->PlaceRow(ARow, nullptr, false);
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
