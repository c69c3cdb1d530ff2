// What all rows of a typed value have in common.
#pragma once

#include "jsoneditor/values/ObjectDataSource.h"
#include "jsoneditor/view/ViewRow.h"

#include <initializer_list>

class TZOTypeInfo;

/// A row of the tree. Children follow their parent directly in the view's row list: a row's subtree is the
/// run of following rows whose parents lead to it. There may be a million rows, so a row keeps neither its
/// texts nor what only few rows need.
class TZOObjectDataSource::TRow : public TZOViewRow {
public:
    /// A set of row kinds.
    class TRowKinds {
    public:
        TRowKinds(std::initializer_list<TRowKind> AKinds) {
            for (TRowKind kind : AKinds)
                FBits |= 1u << kind;
        }
        bool Contains(TRowKind AKind) const { return FBits >> AKind & 1u; }

    private:
        unsigned FBits = 0;
    };

    TRow(TRow* AParent, TRowKind AKind);
    /// Frees the subtree first.
    ~TRow() override;

    TRow* Parent() const { return FParent; }
    TRowKind Kind() const { return FKind; }
    TRowValue Value() const { return FValue; }
    /// Whether the row stands for something that is not stored, and is drawn as a hint.
    bool IsInserting() const { return FIsInserting; }
    /// Null for a row that is no data row.
    TDataRow* AsDataRow();
    /// The row's parent as a data row, or null.
    TDataRow* DataParent() const;
    TZOObjectDataSource* GetSource() const { return static_cast<TZOObjectDataSource*>(Source()); }

    TRow* Next() const { return static_cast<TRow*>(TZOViewRow::Next()); }
    TRow* Prev() const { return static_cast<TRow*>(TZOViewRow::Prev()); }
    /// The first row after the subtree, or null. Costs nothing in the subtree's size.
    TRow* SkipChildren();
    /// Calls ACallback(TRow*) for each direct child, which it may free.
    template <class F>
    void ForEachChild(F&& ACallback) {
        for (TRow* child = Next(); child && child->FParent == this;) {
            TRow* next = child->SkipChildren();
            ACallback(child);
            child = next;
        }
    }
    void ClearChildren();
    /// Moves the subtree behind the next sibling, or before the previous one; false if that is not of AKinds.
    bool Move(bool ADown, TRowKinds AKinds);

    /// Whether this container offers new entries (a tag row: its alternatives).
    bool InsertMode() const { return FInsertMode; }
    /// The child before which the new entry goes; null: at the end.
    TRow* InsertBefore() const;
    void SetInsertMode(TRow* AInsertBefore);
    void ResetlInsertMode();

    /// Adds the row's chunks.
    void Configure(TZOViewRowLayout* ALayout) const;
    virtual void Edited(int AChunkId, const QString& AText);
    virtual void KeyDown(TZORestView* AView, int& AKey, Qt::KeyboardModifiers AShift);
    virtual void DblClick(TZORestView* AView);

protected:
    /// The key chunk's text; empty for a row without key.
    virtual QString KeyText() const;
    /// Whether the key must be typed before the value can be.
    virtual bool NeedsKey() const;
    /// The value chunk's text, unless it is a bracket.
    virtual QString DisplayText() const;
    /// Stores what the value chunk is to show; calls Changed if that differs from what is on screen.
    void SetDisplayValue(bool AGray, TRowValue AValue);

    /// Re-shows the whole chain of placeholders that has come into existence with ARow's value.
    static void UpdateInsertingParents(TRow* ARow);

    static bool IsBracket(TRowValue AValue) { return AValue >= rvLBegin; }

private:
    friend class TDataRow;
    friend class TListElem;
    friend class TMapItem;
    friend class TSearch;

    QString ValueChunkText() const;
    TRow* LastOfSubtree();
    TRow* PrevSibling(TRowKinds AKinds) const;

    // Small members first: they fill the rest that the base leaves.
    TRowKind FKind;
    TRowValue FValue = rvString;
    bool FInsertMode : 1;
    bool FIsInserting : 1;

protected:
    // The bits of deriving rows, here for the sake of size.
    bool FHasValue : 1;   // TDataRow: the value was present at the last update
    bool FIsNew : 1;      // TListElem, TMapItem: not stored in the container yet
    bool FHasShifts : 1;  // TDataRow: a list whose rows are numbered as of an earlier state
    bool FEditingTag : 1; // TUnionTag

private:
    TRow* FParent;
};
