// How a data row shows its value, and keeps its child rows in step with it.
#include "jsoneditor/values/DataRow_p.h"
#include "jsoneditor/values/EndRow_p.h"
#include "jsoneditor/values/ListElem_p.h"
#include "jsoneditor/values/MapItem_p.h"
#include "jsoneditor/values/ObjectProp_p.h"
#include "jsoneditor/values/ObjectTag_p.h"
#include "jsoneditor/values/UnionTag_p.h"
#include "jsoneditor/values/UnionValue_p.h"
#include "jsoneditor/values/ValueText.h"

#include <QHash>
#include <QVarLengthArray>

namespace {

template <class T>
const T* InPlace(const void* AValue) {
    return static_cast<const T*>(AValue);
}

template <class T>
const T* Referenced(const void* AValue) {
    return AValue ? *static_cast<const T* const*>(AValue) : nullptr;
}

} // namespace

void TZOObjectDataSource::TDataRow::Update() {
    GetSource()->Updating([this] {
        void* value = nullptr;
        const bool hasValue = GetValue(value);
        DoUpdate(hasValue, value);
    });
}

void TZOObjectDataSource::TDataRow::UpdateIn(const void* AParentValue) {
    void* value = nullptr;
    const bool hasValue = AParentValue && DoGetValue(AParentValue, value);
    DoUpdate(hasValue, value);
}

void TZOObjectDataSource::TDataRow::DoUpdate(bool AHasValue, const void* AValue) {
    const TZOValueKind kind = Type()->Kind();
    const bool isContainer = ValueText::IsContainer(kind);
    const bool openEmpty = !AHasValue && InsertMode() && isContainer;
    const bool gray = DoGetInserting(AHasValue);
    TRowValue shown = rvString;
    if (AHasValue || openEmpty)
        shown = isContainer ? static_cast<TRowValue>(rvLBegin + (kind - vkList)) : rvString;
    else if (!gray || isContainer)
        shown = rvStringRO;
    FHasValue = AHasValue;
    SetDisplayValue(gray, shown);
    if (isContainer && ((AHasValue && !gray) || openEmpty))
        DoUpdateChildren(AHasValue ? AValue : nullptr, udAll);
    else if (FEof)
        ClearChildren();
}

void TZOObjectDataSource::TDataRow::DoUpdateChildren(const void* AValue, TUpdateDepth ADepth) {
    switch (Type()->Kind()) {
    case vkList:
        return DoUpdateList(InPlace<ZOList>(AValue));
    case vkMap:
        return DoUpdateMap(InPlace<ZOMap>(AValue));
    case vkObject:
        return DoUpdateObject(Referenced<ZOObject>(AValue), ADepth);
    case vkUnion:
        return DoUpdateUnion(Referenced<ZOUnion>(AValue));
    default:
        return;
    }
}

void TZOObjectDataSource::TDataRow::UpdateEof() {
    if (!FEof)
        GetSource()->InsertAfter(this, new TEOf(this));
    FEof->Update();
}

void TZOObjectDataSource::TDataRow::DoUpdateList(const ZOList* AList) {
    const int count = AList ? AList->Count() : 0;
    int counter = 0;
    if (FHasShifts)
        GetSource()->FElementShifts.erase(this);
    FHasShifts = false;
    ForEachChild([&](TRow* AChild) {
        if (AChild->Kind() != rkLElem)
            return;
        auto* element = static_cast<TListElem*>(AChild);
        if (element->IsNew() ? !InsertMode() : counter >= count) {
            delete element;
            return;
        }
        if (!element->IsNew())
            element->SetIndex(counter++);
        element->UpdateIn(AList);
    });
    UpdateEof();
    for (; counter < count; ++counter) {
        auto* element = new TListElem(this, counter);
        GetSource()->InsertBefore(FEof, element);
        element->UpdateIn(AList);
    }
    AddPlaceholder();
}

void TZOObjectDataSource::TDataRow::DoUpdateMap(const ZOMap* AMap) {
    const QStringList keys = AMap ? AMap->Keys() : QStringList();
    QHash<QString, int> places; // of the keys without a row, once there are rows at all
    if (FEof) {
        places.reserve(keys.size());
        for (int i = 0; i < keys.size(); ++i)
            places.insert(keys[i], i);
    }
    QVarLengthArray<bool, 64> hasRow(keys.size(), false);
    ForEachChild([&](TRow* AChild) {
        if (AChild->Kind() != rkMItem)
            return;
        auto* item = static_cast<TMapItem*>(AChild);
        if (item->IsNew()) {
            InsertMode() ? item->UpdateIn(AMap) : delete item;
            return;
        }
        const auto place = places.constFind(item->MapKey());
        if (place == places.cend() || hasRow[*place]) {
            delete item;
            return;
        }
        hasRow[*place] = true;
        item->UpdateIn(AMap);
    });
    UpdateEof();
    for (int i = 0; i < keys.size(); ++i) {
        if (hasRow[i])
            continue;
        auto* item = new TMapItem(this, keys[i]);
        GetSource()->InsertBefore(FEof, item);
        item->UpdateIn(AMap);
    }
    AddPlaceholder();
}

void TZOObjectDataSource::TDataRow::AddPlaceholder() {
    if (!InsertMode())
        return;
    TInsertMode& mode = GetSource()->FInsertModes.at(this);
    if (mode.Placeholder)
        return;
    if (Type()->Kind() == vkList)
        mode.Placeholder = new TListElem(this, -1);
    else
        mode.Placeholder = new TMapItem(this);
    GetSource()->InsertBefore(mode.Before ? mode.Before : FEof, mode.Placeholder);
    mode.Placeholder->UpdateIn(nullptr);
}

void TZOObjectDataSource::TDataRow::DoUpdateObject(const ZOObject* AObject, TUpdateDepth ADepth) {
    const auto* declared = static_cast<const ZOObject::TTypeInfo*>(Type());
    const auto* type = AObject ? ZOObject::TData::Type(AObject) : declared;
    // Before its subtype has been picked, an object has no properties to offer.
    const bool offers = InsertMode() && (AObject || !declared->GetHasSubtypes());
    const auto isShown = [&](PProperty AProperty, void*& AValue) {
        return ZOObject::TData::GetProp(AObject, AProperty->Index, AValue) ||
               (offers && !AProperty->ReadOnly);
    };
    QVarLengthArray<bool, 64> hasRow(type->PropertyCount(), false);
    ForEachChild([&](TRow* AChild) {
        if (AChild->Kind() != rkOProp)
            return;
        auto* row = static_cast<TObjectProp*>(AChild);
        void* value = nullptr;
        if (!row->IsOf(type) || !isShown(row->Prop(), value)) {
            delete row;
            return;
        }
        hasRow[row->Prop()->Index] = true;
        if (ADepth == udAll)
            row->DoUpdate(value, value);
    });
    UpdateEof();
    UpdateObjectTag(AObject);
    TRow* before = InsertBefore() ? InsertBefore() : FEof;
    for (int i = 0; i < type->PropertyCount(); ++i) {
        const PProperty property = type->Property(i);
        void* value = nullptr;
        if (hasRow[i] || !isShown(property, value))
            continue;
        auto* row = new TObjectProp(this, property);
        GetSource()->InsertBefore(value ? FEof : before, row);
        row->DoUpdate(value, value);
    }
}

void TZOObjectDataSource::TDataRow::UpdateObjectTag(const ZOObject* AObject) {
    TRow* first = Next();
    TObjectTag* tag = first->Kind() == rkOTag ? static_cast<TObjectTag*>(first) : nullptr;
    if (!static_cast<const ZOObject::TTypeInfo*>(Type())->GetHasSubtypes()) {
        delete tag;
        return;
    }
    if (!tag) {
        tag = new TObjectTag(this);
        GetSource()->InsertAfter(this, tag);
        // An object that does not exist yet can only begin with the choice of its subtype.
        if (!AObject)
            tag->SetInsertMode(nullptr);
    }
    tag->Update(AObject);
}

void TZOObjectDataSource::TDataRow::DoUpdateUnion(const ZOUnion* AUnion) {
    TUnionTag* tagRow = nullptr;
    TUnionValue* valueRow = nullptr;
    ForEachChild([&](TRow* AChild) {
        if (AChild->Kind() == rkUTag)
            tagRow = static_cast<TUnionTag*>(AChild);
        else if (AChild->Kind() == rkUVal)
            valueRow = static_cast<TUnionValue*>(AChild);
    });
    UpdateEof();
    if (!tagRow) {
        tagRow = new TUnionTag(this);
        GetSource()->InsertAfter(this, tagRow);
    }
    tagRow->Update(AUnion);
    UpdateUnionValue(AUnion, valueRow, tagRow->Tag());
}

void TZOObjectDataSource::TDataRow::UpdateUnionValue(const ZOUnion* AUnion, TUnionValue* AValueRow,
                                                     PTag ATag) {
    const bool hasRow = ATag && ATag->Type;
    if (AValueRow && (!hasRow || AValueRow->Tag() != ATag)) {
        delete AValueRow;
        AValueRow = nullptr;
    }
    if (!hasRow)
        return;
    if (!AValueRow) {
        AValueRow = new TUnionValue(this, ATag);
        GetSource()->InsertBefore(FEof, AValueRow);
    }
    AValueRow->UpdateIn(AUnion ? &AUnion : nullptr);
}

void TZOObjectDataSource::TDataRow::ShowOfferedEntries() {
    void* value = nullptr;
    if (!GetValue(value))
        return UpdateInsertingParents(this);
    const TZOValueKind kind = Type()->Kind();
    GetSource()->Updating([&] {
        if (kind == vkObject)
            DoUpdateObject(Referenced<ZOObject>(value), udNewOnly);
        else if (kind != vkUnion)
            AddPlaceholder();
    });
}
