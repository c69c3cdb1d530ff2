// The choice of a union's tag.
#pragma once

#include "jsoneditor/values/DataRow_p.h"

/// Shows the tag of the union that is its parent, or the one that was picked and still waits for its value;
/// in insert mode the choices stand below it. It is always the row after the union's.
class TZOObjectDataSource::TUnionTag : public TRow {
public:
    explicit TUnionTag(TDataRow* AParent) : TRow(AParent, rkUTag) {}

    /// Null when the union has none.
    PTag Tag() const { return FTag; }
    /// Whether a tag was picked whose value is not stored yet. Ends with the union's insert mode.
    bool IsEditingTag() const { return FEditingTag; }
    void ResetEditingTag() { FEditingTag = false; }
    void Update(const ZOUnion* AUnion);
    /// Opens the choices.
    void InitInsertMode();
    /// Sets ATag, at once if it carries no value, else with the value that is then entered.
    void SelectValue(PTag ATag);
    void KeyDown(TZORestView* AView, int& AKey, Qt::KeyboardModifiers AShift) override;
    void DblClick(TZORestView* AView) override;

protected:
    QString KeyText() const override;
    QString DisplayText() const override { return FTag ? FTag->Name : QString(); }

private:
    const ZOUnion::TTypeInfo* UnionType() const;

    PTag FTag = nullptr;
};

/// One tag to choose. Choosing frees it.
class TZOObjectDataSource::TUnionTagItem : public TRow {
public:
    TUnionTagItem(TUnionTag* AParent, PTag AValue) : TRow(AParent, rkUTagItem), FValue(AValue) {}

    PTag Alternative() const { return FValue; }
    void Offer(PTag AValue);
    void KeyDown(TZORestView* AView, int& AKey, Qt::KeyboardModifiers AShift) override;
    void DblClick(TZORestView* AView) override;

protected:
    QString DisplayText() const override { return QStringLiteral("> ") + FValue->Name; }

private:
    void SelectValue(TZORestView* AView);

    PTag FValue;
};
