#include "jsoneditor/values/ObjectDataSource.h"

#include "jsoneditor/values/ChoiceList_p.h"
#include "jsoneditor/values/EditHistory_p.h"
#include "jsoneditor/values/RootRow_p.h"
#include "jsoneditor/view/RestView.h"

TZOObjectDataSource::TZOObjectDataSource(TZOValueHolder* ASource, bool AHolderFlag, bool AStartInInsertMode)
    : FType(ASource->Type()),
      FValue(std::make_unique<TZOValueHolder>(ASource, AHolderFlag)),
      FInitialInsMode(AStartInInsertMode) {}

TZOObjectDataSource::TZOObjectDataSource(const TZOTypeInfo* AType, const void* AValue, bool AHolderFlag,
                                         bool AStartInInsertMode)
    : FType(AType),
      FValue(std::make_unique<TZOValueHolder>(AType, AValue, AHolderFlag)),
      FInitialInsMode(AStartInInsertMode) {}

TZOObjectDataSource::~TZOObjectDataSource() {
    CloseChoices();
    // While the rows can still reach what they keep here.
    if (View())
        Clear();
}

void TZOObjectDataSource::UpdateRows() {
    Updating([this] {
        auto* root = dynamic_cast<TRoot*>(GetFirst());
        if (!root) {
            root = new TRoot(FType);
            Add(root);
            if (FInitialInsMode)
                root->SetInsertMode(nullptr);
            FInitialInsMode = false;
        }
        root->Update();
    });
}

void TZOObjectDataSource::CancelInsertMode() {
    while (!FInsertModes.empty())
        const_cast<TRow*>(FInsertModes.begin()->first)->ResetlInsertMode();
    UpdateRows();
}

void TZOObjectDataSource::RefreshContent() { UpdateRows(); }

void TZOObjectDataSource::ConfigureRow(TZOViewRow* ARow, TZOViewRowLayout* ALayout) {
    static_cast<TRow*>(ARow)->Configure(ALayout);
}

void TZOObjectDataSource::RowEdited(TZOViewRow* ARow, int AChunkId, const QString& AText) {
    static_cast<TRow*>(ARow)->Edited(AChunkId, AText);
}

void TZOObjectDataSource::KeyDown(int& AKey, Qt::KeyboardModifiers AShift) {
    if (FChoices && FChoices->TakeKey(AKey, AShift)) {
        AKey = 0;
    } else if (AKey == Qt::Key_Escape) {
        if (!View()->EditorShown()) {
            SelectStoredRow();
            CancelInsertMode();
            AKey = 0;
        }
    } else if (AKey == Qt::Key_F5) {
        UpdateRows();
    } else if (EditKey(AKey, AShift)) {
        AKey = 0;
    } else if (TRow* row = SelectedRow()) {
        row->KeyDown(View(), AKey, AShift);
    }
}

void TZOObjectDataSource::DblClick() {
    if (TRow* row = SelectedRow())
        row->DblClick(View());
}

void TZOObjectDataSource::DoGetValue(const TZOTypeInfo* AType, bool AHasValue, const void* AValue,
                                     QString& AText) {
    if (OnGetValue)
        OnGetValue(this, AType, AHasValue, AValue, AText);
}

bool TZOObjectDataSource::DoSetValue(const TZOTypeInfo* AType, const QString& AText, void* AValue) {
    bool handled = false;
    if (OnSetValue)
        OnSetValue(this, AType, AText, AValue, handled);
    return handled;
}

bool TZOObjectDataSource::DoUploadDialog(ZOUpload& AUpload) {
    bool handled = false;
    if (OnUploadDialog)
        OnUploadDialog(this, AUpload, handled);
    return handled;
}

void TZOObjectDataSource::SelectStoredRow() {
    const auto goes = [](const TRow* ARow) {
        const bool isTag = ARow->Kind() == rkOTag || ARow->Kind() == rkUTag;
        return isTag ? ARow->Parent()->IsInserting() : ARow->IsInserting();
    };
    TRow* row = SelectedRow();
    if (!row || !goes(row))
        return;
    // Upwards there is always one: the outermost row is no placeholder.
    while (goes(row))
        row = row->Prev();
    View()->SelectRow(row, seHide);
}

TZOObjectDataSource::TRow* TZOObjectDataSource::SelectedRow() const {
    return dynamic_cast<TRow*>(View()->Selected());
}
