#include "jsoneditor/values/EditHistory_p.h"

#include "jsoneditor/values/MapItem_p.h"
#include "jsoneditor/values/ValueText.h"
#include "jsoneditor/view/RestView.h"

namespace {

bool SameScalar(const TZOTypeInfo* AType, const void* A, const void* B) {
    if (AType->Kind() == vkDownload)
        return static_cast<const ZODownload*>(A)->GetStream() ==
               static_cast<const ZODownload*>(B)->GetStream();
    if (AType->Kind() != vkUpload)
        return ValueText::ToText(AType, A) == ValueText::ToText(AType, B);
    const auto& a = *static_cast<const ZOUpload*>(A);
    const auto& b = *static_cast<const ZOUpload*>(B);
    return a.GetStream() == b.GetStream() && a.GetMimeType() == b.GetMimeType();
}

} // namespace

TZOObjectDataSource::TChange::TOutcome
TZOObjectDataSource::TSlotChange::Toggle(TZOObjectDataSource* ASource) {
    TZOValueSlot slot(ASource->FValue.get());
    if (!slot.Descend(FPath) || slot.Type() != FOther.Type() || !FOther.Exchange(slot))
        return ocFailed;
    TDataRow* row = ASource->RowAt(FPath);
    if (row) {
        row = row->ShowChange();
    } else if (TDataRow* parent = ASource->RowAt({FPath.begin(), FPath.end() - 1})) {
        // The row of a value that went away may have gone with it.
        parent->Update();
        row = ASource->RowAt(FPath);
    }
    if (row)
        ASource->View()->SelectRow(row, seHide);
    return ocDone;
}

void TZOObjectDataSource::TEntryChange::TakeOut(const TZOTypeInfo* AContainerType, void* AContainer) {
    void* ref = nullptr;
    if (AContainerType->Kind() == vkList) {
        auto* list = static_cast<ZOList*>(AContainer);
        if (list->GetItem(FStep.Index, ref))
            FEntry.Take(ref);
        list->Delete(FStep.Index);
    } else {
        auto* map = static_cast<ZOMap*>(AContainer);
        FStep.Index = map->IndexOf(FStep.Key);
        if (map->GetItem(FStep.Key, ref))
            FEntry.Take(ref);
        map->Remove(FStep.Key);
    }
    FIsOut = true;
}

bool TZOObjectDataSource::TEntryChange::PutBack(const TZOTypeInfo* AContainerType, void* AContainer) {
    void* ref = nullptr;
    const bool isIn =
        AContainerType->Kind() == vkList
            ? static_cast<ZOList*>(AContainer)->Insert(FStep.Index, FEntry.HasValue(), ref)
            : static_cast<ZOMap*>(AContainer)->Insert(FStep.Index, FStep.Key, FEntry.HasValue(), ref);
    if (!isIn)
        return false;
    if (FEntry.HasValue())
        FEntry.GiveTo(ref);
    FIsOut = false;
    return true;
}

TZOObjectDataSource::TChange::TOutcome
TZOObjectDataSource::TEntryChange::Toggle(TZOObjectDataSource* ASource) {
    TZOValueSlot slot(ASource->FValue.get());
    void* container = nullptr;
    if (!slot.Descend(FPath) || !slot.Get(container))
        return ocFailed;
    TDataRow* row = ASource->RowAt(FPath);
    if (!row || row->Type() != slot.Type())
        return ocFailed;
    TRow* shown = nullptr;
    if (FIsOut) {
        if (!PutBack(slot.Type(), container))
            return ocFailed;
        shown = row->ShowEntryInserted(FStep);
    } else {
        TZOValueSlot entry = slot;
        if (!entry.Descend(FStep) || entry.Type() != FEntry.Type())
            return ocFailed;
        TakeOut(slot.Type(), container);
        shown = row->ShowEntryDeleted(FStep);
    }
    ASource->View()->SelectRow(shown, seHide);
    return ocDone;
}

TZOObjectDataSource::TChange::TOutcome
TZOObjectDataSource::TMoveChange::Toggle(TZOObjectDataSource* ASource) {
    TDataRow* row = ASource->RowAt(FPath);
    FDown = !FDown;
    if (!row || !row->Move(FDown, {row->Kind()}))
        return ocNothing;
    ASource->View()->SelectRow(row, seHide);
    return ocDone;
}

TZOObjectDataSource::TChange::TOutcome TZOObjectDataSource::TKeyChange::Toggle(TZOObjectDataSource* ASource) {
    TDataRow* row = ASource->RowAt(FPath);
    std::swap(FOther, FCurrent);
    if (!row || row->Kind() != rkMItem || static_cast<TMapItem*>(row)->MapKey() != FOther)
        return ocNothing;
    static_cast<TMapItem*>(row)->SetMapKey(FCurrent);
    ASource->View()->SelectRow(row, seHide);
    return ocDone;
}

TZOObjectDataSource::TRecording::TRecording(TDataRow* ARow, TOld AOld)
    : FSource(ARow->GetSource()), FOld(AOld) {
    TDataRow* place = ARow->FirstUnstored();
    // The value of a union is not stored without its tag: it is the union that changes.
    const bool isUnion = place && place->Kind() == rkUVal;
    if (place && place->PathStep().IsNew) {
        FEntry = place;
        return;
    }
    if (!place && AOld == olUntouched)
        return;
    if (isUnion) {
        place = place->DataParent();
        FOld = olTaken;
    } else if (!place) {
        place = ARow;
    }
    FChange = std::make_unique<TSlotChange>(place->Path(), place->Type());
    void* value = nullptr;
    if (!place->GetValue(value))
        return;
    if (FOld == olTaken)
        FChange->Other().Take(value);
    else
        FChange->Other().Copy(value);
}

TZOObjectDataSource::TRecording::~TRecording() {
    if (FEntry) {
        TZOPathStep step = FEntry->PathStep();
        if (!step.IsNew)
            FSource->AddChange(
                std::make_unique<TEntryChange>(FEntry->DataParent()->Path(), step, FEntry->Type()));
    } else if (FChange) {
        TZOValueSlot slot(FSource->FValue.get());
        if (!slot.Descend(FChange->Path()))
            return;
        if (IsChanged(slot))
            FSource->AddChange(std::move(FChange));
        else if (FOld == olTaken)
            FChange->Other().Exchange(slot);
    }
}

bool TZOObjectDataSource::TRecording::IsChanged(const TZOValueSlot& ASlot) const {
    void* value = nullptr;
    const TZOHeldValue& old = FChange->Other();
    const bool hasValue = ASlot.Get(value);
    if (hasValue != old.HasValue() || !hasValue)
        return hasValue != old.HasValue();
    if (FOld == olCopied)
        return !SameScalar(ASlot.Type(), old.Storage(), value);
    // The empty union that was left there has got a tag, or nothing has happened.
    return ASlot.Type()->Kind() != vkUnion || ZOUnion::TData::GetTag(*static_cast<ZOUnion**>(value));
}

void TZOObjectDataSource::AddChange(std::unique_ptr<TChange> AChange) {
    FUndo.push_back(std::move(AChange));
    FRedo.clear();
}

void TZOObjectDataSource::Undo() { Step(FUndo, FRedo); }

void TZOObjectDataSource::Redo() { Step(FRedo, FUndo); }

void TZOObjectDataSource::Step(TChanges& AFrom, TChanges& ATo) {
    TChange::TOutcome outcome = TChange::ocNothing;
    while (outcome == TChange::ocNothing && !AFrom.empty()) {
        ATo.push_back(std::move(AFrom.back()));
        AFrom.pop_back();
        Updating([&] { outcome = ATo.back()->Toggle(this); });
    }
    if (outcome != TChange::ocFailed)
        return;
    // Somebody else has changed the value: what came before does not fit it any more.
    FUndo.clear();
    FRedo.clear();
    UpdateRows();
}
