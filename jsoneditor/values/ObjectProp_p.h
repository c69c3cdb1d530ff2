// Properties of an object.
#pragma once

#include "jsoneditor/values/DataRow_p.h"

/// Shows one property. Alt+Up and Alt+Down move the row among its siblings: what is shown, not the value.
class TZOObjectDataSource::TObjectProp : public TDataRow {
public:
    TObjectProp(TDataRow* AParent, PProperty AProp) : TDataRow(AParent, rkOProp), FProp(AProp) {}

    PProperty Prop() const { return FProp; }
    /// Whether objects of the type have exactly this property.
    bool IsOf(const ZOObject::TTypeInfo* AType) const;
    TZOPathStep PathStep() const override { return {.Prop = FProp}; }
    const TZOTypeInfo* Type() const override { return FProp->Type; }
    void KeyDown(TZORestView* AView, int& AKey, Qt::KeyboardModifiers AShift) override;

protected:
    bool DoGetValue(const void* AParentValue, void*& ARef) const override;
    bool DoGetByRef(void* AParentValue, void*& ARef) override;
    bool DoSetValue(void* AParentValue, bool AHasValue, void*& ARef) override;
    bool DoGetInserting(bool AHasValue) const override { return !AHasValue; }
    QString KeyText() const override { return FProp->Name; }

private:
    ZOObject* ObjectOf(const void* AParentValue) const;

    PProperty FProp;
};
