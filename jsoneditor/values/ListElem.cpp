#include "jsoneditor/values/ListElem_p.h"

#include "jsoneditor/values/EditHistory_p.h"

TZOObjectDataSource::TListElem::TListElem(TDataRow* AParent, int AIndex)
    : TDataRow(AParent, rkLElem), FElemIdx(AIndex) {
    FIsNew = AIndex == -1;
}

const TZOTypeInfo* TZOObjectDataSource::TListElem::Type() const {
    return static_cast<const ZOList::TTypeInfo*>(DataParent()->Type())->ItemType();
}

int TZOObjectDataSource::TListElem::Index() const {
    if (const auto* shifts = DataParent()->ElementShifts()) {
        const int count = static_cast<int>(shifts->size());
        for (; FShiftsSeen < count; ++FShiftsSeen) {
            const TElementShift& shift = (*shifts)[static_cast<std::size_t>(FShiftsSeen)];
            if (FElemIdx >= shift.Position)
                FElemIdx += shift.Inserted ? 1 : -1;
        }
    }
    return FElemIdx;
}

void TZOObjectDataSource::TListElem::SetIndex(int AIndex) {
    const auto* shifts = DataParent()->ElementShifts();
    FElemIdx = AIndex;
    FShiftsSeen = shifts ? static_cast<int>(shifts->size()) : 0;
}

bool TZOObjectDataSource::TListElem::DoGetValue(const void* AParentValue, void*& ARef) const {
    return !FIsNew && static_cast<const ZOList*>(AParentValue)->GetItem(Index(), ARef);
}

bool TZOObjectDataSource::TListElem::DoGetByRef(void* AParentValue, void*& ARef) {
    return DoSetValue(AParentValue, true, ARef);
}

bool TZOObjectDataSource::TListElem::DoSetValue(void* AParentValue, bool AHasValue, void*& ARef) {
    auto* list = static_cast<ZOList*>(AParentValue);
    return FIsNew ? InsertNewElem(list, AHasValue, ARef) : list->SetItem(Index(), AHasValue, ARef);
}

bool TZOObjectDataSource::TListElem::InsertNewElem(ZOList* AList, bool AHasValue, void*& ARef) {
    const TRow* previous = PrevSibling({rkLElem});
    const int position = previous ? static_cast<const TListElem*>(previous)->Index() + 1 : 0;
    if (!AList->Insert(position, AHasValue, ARef))
        return false;
    Parent()->ResetlInsertMode();
    FIsNew = false;
    if (position < AList->Count() - 1)
        DataParent()->AddElementShift(position, true);
    SetIndex(position);
    return true;
}

void TZOObjectDataSource::TListElem::KeyDown(TZORestView*, int&, Qt::KeyboardModifiers) {}

void TZOObjectDataSource::TListElem::DoEditAction(TEditAction AAction) {
    if (AAction == eaDelete)
        Delete();
    else
        TDataRow::DoEditAction(AAction);
}

void TZOObjectDataSource::TListElem::Delete() {
    TDataRow* parent = DataParent();
    void* list = nullptr;
    if (FIsNew) {
        parent->ResetlInsertMode();
    } else if (parent->GetValue(list)) {
        const int index = Index();
        auto change = std::make_unique<TEntryChange>(parent->Path(), PathStep(), Type());
        change->TakeOut(parent->Type(), list);
        GetSource()->AddChange(std::move(change));
        parent->AddElementShift(index, false);
    }
    FreeEntry();
}
