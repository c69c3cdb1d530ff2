// The choice of a polymorphic object's subtype.
#pragma once

#include "jsoneditor/values/DataRow_p.h"

/// Shows the subtype of the object that is its parent; in insert mode the choices stand below it.
class TZOObjectDataSource::TObjectTag : public TRow {
public:
    explicit TObjectTag(TDataRow* AParent) : TRow(AParent, rkOTag) {}

    /// Null while there is no object, and for one whose type is no subtype.
    const ZOObject::TSubtype* Subtype() const { return FSubtype; }
    void Update(const ZOObject* AObject);
    /// Opens the choices.
    void InitInsertMode();
    /// Makes the object a new one of ASubtype and offers its properties.
    void SelectValue(const ZOObject::TSubtype* ASubtype);
    void KeyDown(TZORestView* AView, int& AKey, Qt::KeyboardModifiers AShift) override;
    void DblClick(TZORestView* AView) override;

protected:
    QString KeyText() const override;
    QString DisplayText() const override;

private:
    const ZOObject::TTypeInfo* DeclaredType() const;

    const ZOObject::TSubtype* FSubtype = nullptr;
};

/// One subtype to choose. Choosing frees it.
class TZOObjectDataSource::TObjectTagItem : public TRow {
public:
    TObjectTagItem(TObjectTag* AParent, const ZOObject::TSubtype* AValue)
        : TRow(AParent, rkOTagItem), FValue(AValue) {}

    const ZOObject::TSubtype* Alternative() const { return FValue; }
    void Offer(const ZOObject::TSubtype* AValue);
    void KeyDown(TZORestView* AView, int& AKey, Qt::KeyboardModifiers AShift) override;
    void DblClick(TZORestView* AView) override;

protected:
    QString DisplayText() const override { return QStringLiteral("> ") + FValue->Name; }

private:
    void SelectValue(TZORestView* AView);

    const ZOObject::TSubtype* FValue;
};
