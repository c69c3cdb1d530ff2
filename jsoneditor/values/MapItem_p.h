// Items of a map.
#pragma once

#include "jsoneditor/values/DataRow_p.h"

/// Shows one item. A new one gets its key first, its value then; both are stored together. Alt+Up and
/// Alt+Down move the row among its siblings: what is shown, not the value.
class TZOObjectDataSource::TMapItem : public TDataRow {
public:
    /// The placeholder for a new item.
    explicit TMapItem(TDataRow* AParent);
    /// An item of the map. Even an empty key is one here.
    TMapItem(TDataRow* AParent, const QString& AKey);

    /// Not stored in the map yet.
    bool IsNew() const { return FIsNew; }
    /// Empty for a new item until the user has typed one.
    const QString& MapKey() const { return FMapKey; }
    void SetMapKey(const QString& AKey);
    TZOPathStep PathStep() const override { return {.Key = FMapKey, .IsNew = FIsNew}; }
    const TZOTypeInfo* Type() const override;
    void Edited(int AChunkId, const QString& AText) override;
    void KeyDown(TZORestView* AView, int& AKey, Qt::KeyboardModifiers AShift) override;
    void DoEditAction(TEditAction AAction) override;

protected:
    bool DoGetValue(const void* AParentValue, void*& ARef) const override;
    bool DoGetByRef(void* AParentValue, void*& ARef) override;
    bool DoSetValue(void* AParentValue, bool AHasValue, void*& ARef) override;
    bool DoGetInserting(bool) const override { return FIsNew; }
    QString KeyText() const override;
    bool NeedsKey() const override { return FIsNew && FMapKey.isEmpty(); }

private:
    bool InsertNewItem(ZOMap* AMap, bool AHasValue, void*& ARef);
    void WriteMapKey(const QString& AKey);
    void Delete();

    QString FMapKey;
};
