#include "jsoneditor/view/ViewRow.h"

#include "jsoneditor/view/DataSource.h"
#include "jsoneditor/view/RestView.h"
#include "jsoneditor/view/RowIndex_p.h"

TZOViewRow::TZOViewRow(int ALevel) : FLevel(ALevel) {}

TZOViewRow::~TZOViewRow() {
    if (TZODataSource* source = Source(); source && source->View())
        source->View()->RowRemoved(this);
}

TZODataSource* TZOViewRow::Source() const { return FBlock ? FBlock->Index->Source : nullptr; }

void TZOViewRow::SetLevel(int ALevel) {
    if (FLevel == ALevel)
        return;
    FLevel = ALevel;
    Changed();
}

void TZOViewRow::Changed() { Source()->View()->InvalidateLayout(this); }
