#include "jsoneditor/values/EndRow_p.h"

#include "jsoneditor/view/RestView.h"

TZOObjectDataSource::TEOf::TEOf(TDataRow* AContainer) : TRow(AContainer, rkEOf) { AContainer->FEof = this; }

TZOObjectDataSource::TEOf::~TEOf() { DataParent()->FEof = nullptr; }

void TZOObjectDataSource::TEOf::Update() {
    static_assert(rvLEnd - rvLBegin == vkUnion - vkList + 1, "containers and their brackets in one order");
    const TDataRow* container = DataParent();
    SetDisplayValue(container->IsInserting(),
                    static_cast<TRowValue>(rvLEnd + (container->Type()->Kind() - vkList)));
}

void TZOObjectDataSource::TEOf::DblClick(TZORestView* AView) {
    if (AView->TryCloseEditor(true))
        DataParent()->DoEditAction(eaDblClickEOf);
}

void TZOObjectDataSource::TEOf::KeyDown(TZORestView* AView, int& AKey, Qt::KeyboardModifiers AShift) {
    if (AKey != Qt::Key_Insert)
        return;
    AKey = 0;
    if (AView->TryCloseEditor(true))
        DataParent()->DoEditAction(AShift.testFlag(Qt::ShiftModifier) ? eaInsertBeforeEOf : eaInsertAfterEOf);
}
