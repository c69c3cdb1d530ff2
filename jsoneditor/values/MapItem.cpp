#include "jsoneditor/values/MapItem_p.h"

#include "jsoneditor/values/EditHistory_p.h"
#include "platform/Exceptions.h"

TZOObjectDataSource::TMapItem::TMapItem(TDataRow* AParent) : TDataRow(AParent, rkMItem) { FIsNew = true; }

TZOObjectDataSource::TMapItem::TMapItem(TDataRow* AParent, const QString& AKey)
    : TDataRow(AParent, rkMItem), FMapKey(AKey) {}

const TZOTypeInfo* TZOObjectDataSource::TMapItem::Type() const {
    return static_cast<const ZOMap::TTypeInfo*>(DataParent()->Type())->ItemType();
}

QString TZOObjectDataSource::TMapItem::KeyText() const {
    return FMapKey.isEmpty() ? QStringLiteral("key") : FMapKey;
}

bool TZOObjectDataSource::TMapItem::DoGetValue(const void* AParentValue, void*& ARef) const {
    return !FIsNew && static_cast<const ZOMap*>(AParentValue)->GetItem(FMapKey, ARef);
}

bool TZOObjectDataSource::TMapItem::DoGetByRef(void* AParentValue, void*& ARef) {
    return DoSetValue(AParentValue, true, ARef);
}

bool TZOObjectDataSource::TMapItem::DoSetValue(void* AParentValue, bool AHasValue, void*& ARef) {
    auto* map = static_cast<ZOMap*>(AParentValue);
    return FIsNew ? InsertNewItem(map, AHasValue, ARef) : map->SetItem(FMapKey, AHasValue, ARef);
}

bool TZOObjectDataSource::TMapItem::InsertNewItem(ZOMap* AMap, bool AHasValue, void*& ARef) {
    if (FMapKey.isEmpty())
        throw EListError(QStringLiteral("Please specify item key"));
    if (AMap->ContainsKey(FMapKey))
        throw EListError(QStringLiteral("Item key should be unique"));
    if (!AMap->SetItem(FMapKey, AHasValue, ARef))
        return false;
    Parent()->ResetlInsertMode();
    FIsNew = false;
    return true;
}

void TZOObjectDataSource::TMapItem::Edited(int AChunkId, const QString& AText) {
    if (AChunkId == chKey)
        WriteMapKey(AText);
    else
        TDataRow::Edited(AChunkId, AText);
}

void TZOObjectDataSource::TMapItem::WriteMapKey(const QString& AKey) {
    if (AKey != FMapKey)
        GetSource()->AddChange(std::make_unique<TKeyChange>(Path(), FMapKey, AKey));
    FMapKey = AKey;
    UpdateInsertingParents(this);
}

void TZOObjectDataSource::TMapItem::SetMapKey(const QString& AKey) {
    FMapKey = AKey;
    Changed();
}

void TZOObjectDataSource::TMapItem::KeyDown(TZORestView* AView, int& AKey, Qt::KeyboardModifiers AShift) {
    if (!MoveByKey(AView, AKey, AShift))
        TDataRow::KeyDown(AView, AKey, AShift);
}

void TZOObjectDataSource::TMapItem::DoEditAction(TEditAction AAction) {
    if (AAction == eaDelete)
        Delete();
    else
        TDataRow::DoEditAction(AAction);
}

void TZOObjectDataSource::TMapItem::Delete() {
    TDataRow* parent = DataParent();
    void* map = nullptr;
    if (FIsNew) {
        parent->ResetlInsertMode();
    } else if (parent->GetValue(map)) {
        auto change = std::make_unique<TEntryChange>(parent->Path(), PathStep(), Type());
        change->TakeOut(parent->Type(), map);
        GetSource()->AddChange(std::move(change));
    }
    FreeEntry();
}
