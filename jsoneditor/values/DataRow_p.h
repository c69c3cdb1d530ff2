// Rows that stand for a value.
#pragma once

#include "jsoneditor/values/Row_p.h"
#include "jsoneditor/values/ValuePath_p.h"
#include "runtime/types/List.h"
#include "runtime/types/Map.h"
#include "runtime/types/Object.h"
#include "runtime/types/Union.h"

/// A row that stands for one value of a type: shows it as text or as an opened container, parses what the
/// user types into it, and runs the edit actions. Deriving rows say where their value lives in the value of
/// their parent.
class TZOObjectDataSource::TDataRow : public TRow {
public:
    TDataRow(TRow* AParent, TRowKind AKind);
    ~TDataRow() override;

    virtual const TZOTypeInfo* Type() const = 0;
    /// The closing row, while the container is shown opened.
    TEOf* Eof() const { return FEof; }

    /// These start at the data source's value and walk down to this row's; false when there is none, or it
    /// could not be made.
    bool GetValue(void*& ARef) const;
    bool GetByRef(void*& ARef);
    bool SetValue(bool AHasValue, void*& ARef);

    /// Brings the row and its subtree up to date with the value.
    void Update();
    /// The same for the value inside AParentValue; null when there is no such value.
    void UpdateIn(const void* AParentValue);

    void Edited(int AChunkId, const QString& AText) override;
    void KeyDown(TZORestView* AView, int& AKey, Qt::KeyboardModifiers AShift) override;
    void DblClick(TZORestView* AView) override;
    virtual void DoEditAction(TEditAction AAction);
    /// Makes the value a new, empty object of the subtype's type (null: of the row's own).
    void InitObjectValue(const ZOObject::TSubtype* ASubtype);
    /// What the Delete key and the menu do: eaDelete, after which the selection stays near.
    void DeleteByUser(TZORestView* AView);
    void ShowUploadDialog();
    /// Replaces the value by what AJson says; null makes it absent. Raises, with nothing changed, what
    /// TZOJson::Decode raises for text that does not fit the type.
    void PasteJson(const QByteArray& AJson);

    // Places in the value (RowPath.cpp)

    /// Leads from the parent's value to this row's.
    virtual TZOPathStep PathStep() const = 0;
    TZOValuePath Path() const;
    /// The JSON pointer (RFC 6901) of the place; "/-" for a new element.
    QString Pointer() const;
    /// Pointer, type and description, in lines.
    QString Hint() const;
    /// The texts that may stand in the value chunk; empty when any may.
    QStringList Choices() const;
    /// The row of a value right below this one, or null. In a list this does not walk the elements.
    TDataRow* ChildAt(const TZOPathStep& AStep);
    /// The first row on the way down to this one without a stored value; null when there is none.
    TDataRow* FirstUnstored();

    // Bring the rows in line with a change of the value that did not come from them (RowPath.cpp). They
    // return the row that stands where the change was.

    TDataRow* ShowChange();
    /// An entry has come to AStep, or is about to be taken away from there.
    TRow* ShowEntryInserted(const TZOPathStep& AStep);
    TRow* ShowEntryDeleted(const TZOPathStep& AStep);

protected:
    friend class TRow;
    friend class TEOf;
    friend class TListElem;
    friend class TObjectTag;
    friend class TSearch;
    friend class TUnionTag;

    virtual bool DoGetValue(const void* AParentValue, void*& ARef) const = 0;
    virtual bool DoGetByRef(void* AParentValue, void*& ARef) = 0;
    virtual bool DoSetValue(void* AParentValue, bool AHasValue, void*& ARef) = 0;
    /// The row to update when this one changed.
    virtual TDataRow* DoGetUpdateBase() { return this; }
    virtual bool DoGetInserting(bool AHasValue) const = 0;
    QString DisplayText() const override;
    /// Alt+Up and Alt+Down for rows that move among their siblings; false for any other key.
    bool MoveByKey(TZORestView* AView, int& AKey, Qt::KeyboardModifiers AShift);
    /// Frees this row, whose entry is gone from the container, and re-shows the container.
    void FreeEntry();
    /// What came and went since this list's rows were numbered, or null.
    const std::vector<TElementShift>* ElementShifts() const;
    void AddElementShift(int APosition, bool AInserted);
    /// The container's value is shown as it is stored: entries may come and go without a new update.
    bool ShowsStoredEntries() const { return FEof && FHasValue; }

private:
    /// Whether rows whose entry is still there are brought up to date as well.
    enum TUpdateDepth { udAll, udNewOnly };

    // Showing (DataRowUpdate.cpp)
    void DoUpdate(bool AHasValue, const void* AValue);
    void DoUpdateChildren(const void* AValue, TUpdateDepth ADepth);
    void DoUpdateList(const ZOList* AList);
    void DoUpdateMap(const ZOMap* AMap);
    void DoUpdateObject(const ZOObject* AObject, TUpdateDepth ADepth);
    void DoUpdateUnion(const ZOUnion* AUnion);
    void UpdateEof();
    void UpdateObjectTag(const ZOObject* AObject);
    void UpdateUnionValue(const ZOUnion* AUnion, TUnionValue* AValueRow, PTag ATag);
    void AddPlaceholder();

    // Editing (DataRow.cpp)
    void WriteValue(const QString& AText);
    void EofAction(TEditAction AAction);
    static void DispatchInsertMode(TRow* ARow, bool ABefore);
    void InitInsertMode(TRow* AInsertBefore);
    void ShowOfferedEntries();
    TListElem* ElementAt(int AIndex);
    TDataRow* NewEntryRow(const TZOPathStep& AStep);

    TEOf* FEof = nullptr;
};
