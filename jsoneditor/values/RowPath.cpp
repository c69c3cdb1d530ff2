// From rows to places in the value and back, and how rows follow a change that did not come from them.
#include "jsoneditor/values/DataRow_p.h"
#include "jsoneditor/values/EndRow_p.h"
#include "jsoneditor/values/ListElem_p.h"
#include "jsoneditor/values/MapItem_p.h"
#include "jsoneditor/values/ObjectProp_p.h"
#include "jsoneditor/values/UnionValue_p.h"
#include "jsoneditor/view/RestView.h"

#include <algorithm>

TZOValuePath TZOObjectDataSource::TDataRow::Path() const {
    TZOValuePath path;
    for (const TDataRow* row = this; row->Parent(); row = row->DataParent())
        path.push_back(row->PathStep());
    std::reverse(path.begin(), path.end());
    return path;
}

TZOObjectDataSource::TDataRow* TZOObjectDataSource::TDataRow::FirstUnstored() {
    if (TDataRow* parent = DataParent()) {
        if (TDataRow* above = parent->FirstUnstored())
            return above;
    }
    void* value = nullptr;
    return GetValue(value) ? nullptr : this;
}

TZOObjectDataSource::TDataRow* TZOObjectDataSource::RootRow() const {
    auto* first = static_cast<TRow*>(GetFirst());
    return first ? first->AsDataRow() : nullptr;
}

TZOObjectDataSource::TDataRow* TZOObjectDataSource::RowAt(const TZOValuePath& APath) const {
    TDataRow* row = RootRow();
    for (auto step = APath.begin(); row && step != APath.end(); ++step)
        row = row->ChildAt(*step);
    return row;
}

TZOObjectDataSource::TListElem* TZOObjectDataSource::TDataRow::ElementAt(int AIndex) {
    const TZORestView* view = GetSource()->View();
    int low = view->IndexOfRow(this) + 1;
    int high = FEof ? view->IndexOfRow(FEof) - 1 : -1;
    while (low <= high) {
        TRow* row = static_cast<TRow*>(view->RowAt(low + (high - low) / 2));
        while (row->Parent() != this)
            row = row->Parent();
        TRow* start = row;
        if (static_cast<TListElem*>(row)->IsNew())
            row = row->SkipChildren();
        if (row != FEof) {
            auto* element = static_cast<TListElem*>(row);
            if (element->Index() == AIndex)
                return element;
            if (element->Index() < AIndex) {
                low = view->IndexOfRow(element->SkipChildren());
                continue;
            }
        }
        high = view->IndexOfRow(start) - 1;
    }
    return nullptr;
}

TZOObjectDataSource::TDataRow* TZOObjectDataSource::TDataRow::ChildAt(const TZOPathStep& AStep) {
    if (AStep.IsNew) {
        const auto mode = GetSource()->FInsertModes.find(this);
        return mode == GetSource()->FInsertModes.end() ? nullptr : mode->second.Placeholder;
    }
    if (Type()->Kind() == vkList)
        return ElementAt(AStep.Index);
    TDataRow* found = nullptr;
    // Not ForEachChild, which would go on to the end.
    for (TRow* child = Next(); child && child->Parent() == this && !found; child = child->SkipChildren()) {
        TDataRow* row = child->AsDataRow();
        if (!row)
            continue;
        const bool isNew = row->Kind() == rkMItem && static_cast<TMapItem*>(row)->IsNew();
        const TZOPathStep step = row->PathStep();
        if (!isNew && step.Prop == AStep.Prop && step.Tag == AStep.Tag && step.Key == AStep.Key)
            found = row;
    }
    return found;
}

TZOObjectDataSource::TDataRow* TZOObjectDataSource::TDataRow::ShowChange() {
    // What insert mode offered belonged to the value as it was.
    ResetlInsertMode();
    UpdateInsertingParents(this);
    return this;
}

TZOObjectDataSource::TDataRow* TZOObjectDataSource::TDataRow::NewEntryRow(const TZOPathStep& AStep) {
    if (Type()->Kind() == vkList)
        return new TListElem(this, AStep.Index);
    return new TMapItem(this, AStep.Key);
}

TZOObjectDataSource::TRow* TZOObjectDataSource::TDataRow::ShowEntryInserted(const TZOPathStep& AStep) {
    void* value = nullptr;
    if (!ShowsStoredEntries() || !GetValue(value)) {
        UpdateInsertingParents(this);
        return ChildAt(AStep);
    }
    const bool isList = Type()->Kind() == vkList;
    TZOPathStep next{.Index = AStep.Index};
    if (!isList)
        next.Key = static_cast<ZOMap*>(value)->Keys().value(AStep.Index + 1);
    TRow* before = ChildAt(next);
    if (isList && before)
        AddElementShift(AStep.Index, true);
    TDataRow* row = NewEntryRow(AStep);
    if (isList)
        static_cast<TListElem*>(row)->SetIndex(AStep.Index);
    GetSource()->InsertBefore(before ? before : FEof, row);
    row->UpdateIn(value);
    return row;
}

TZOObjectDataSource::TRow* TZOObjectDataSource::TDataRow::ShowEntryDeleted(const TZOPathStep& AStep) {
    TDataRow* row = ChildAt(AStep);
    if (!row || !ShowsStoredEntries()) {
        UpdateInsertingParents(this);
        return this;
    }
    if (Type()->Kind() == vkList)
        AddElementShift(AStep.Index, false);
    TRow* next = row->SkipChildren();
    delete row;
    return next;
}
