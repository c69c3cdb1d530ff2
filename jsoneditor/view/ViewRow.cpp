#include "jsoneditor/view/ViewRow.h"

#include "jsoneditor/view/DataSource.h"
#include "jsoneditor/view/RestView.h"

TZOViewRow::TZOViewRow(int ALevel) : FLevel(ALevel) {}

TZOViewRow::~TZOViewRow() {
    if (FSource && FSource->View())
        FSource->View()->RowRemoved(this);
}

void TZOViewRow::SetLevel(int ALevel) {
    if (FLevel == ALevel)
        return;
    FLevel = ALevel;
    Changed();
}

void TZOViewRow::Changed() { FSource->View()->InvalidateLayout(this); }
