#include "jsoneditor/view/ViewRow.h"

#include "jsoneditor/view/DataSource.h"
#include "jsoneditor/view/RestView.h"
#include "jsoneditor/view/RowIndex_p.h"
#include "jsoneditor/view/RowPool_p.h"

TZOViewRow::~TZOViewRow() {
    if (TZODataSource* source = Source(); source && source->View())
        source->View()->RowRemoved(this);
}

void* TZOViewRow::operator new(std::size_t ASize) { return RowPool::Take(ASize); }

void TZOViewRow::operator delete(void* ARow, std::size_t ASize) noexcept { RowPool::Give(ARow, ASize); }

TZODataSource* TZOViewRow::Source() const { return FBlock ? FBlock->Index->Source : nullptr; }

void TZOViewRow::SetLevel(int ALevel) {
    if (FLevel == ALevel)
        return;
    FLevel = ALevel;
    Changed();
}

void TZOViewRow::Changed() { Source()->View()->InvalidateLayout(this); }
