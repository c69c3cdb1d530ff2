// Elements of a list.
#pragma once

#include "jsoneditor/values/DataRow_p.h"

/// Shows one element. Takes no keys.
class TZOObjectDataSource::TListElem : public TDataRow {
public:
    /// AIndex -1 makes the placeholder for a new element.
    TListElem(TDataRow* AParent, int AIndex);

    /// Not stored in the list yet.
    bool IsNew() const { return FIsNew; }
    /// The element's present place in the list, whatever came or went before it since the rows were numbered.
    int Index() const;
    void SetIndex(int AIndex);
    TZOPathStep PathStep() const override { return {.Index = Index(), .IsNew = FIsNew}; }
    const TZOTypeInfo* Type() const override;
    void KeyDown(TZORestView* AView, int& AKey, Qt::KeyboardModifiers AShift) override;
    void DoEditAction(TEditAction AAction) override;

protected:
    bool DoGetValue(const void* AParentValue, void*& ARef) const override;
    bool DoGetByRef(void* AParentValue, void*& ARef) override;
    bool DoSetValue(void* AParentValue, bool AHasValue, void*& ARef) override;
    bool DoGetInserting(bool) const override { return FIsNew; }

private:
    bool InsertNewElem(ZOList* AList, bool AHasValue, void*& ARef);
    void Delete();

    mutable int FElemIdx;
    mutable int FShiftsSeen = 0; // how many of the list's shifts FElemIdx has taken part in
};
