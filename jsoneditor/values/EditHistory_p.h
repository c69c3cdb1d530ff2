// Changes of the value that can be taken back and made again.
#pragma once

#include "jsoneditor/values/DataRow_p.h"

/// One action of the user. Holds what is not in the value at the moment, never a copy of what is, but for
/// the scalar that an edit replaces.
class TZOObjectDataSource::TChange {
public:
    enum TOutcome {
        ocDone,
        ocNothing, ///< concerned rows only, which are not there any more
        ocFailed   ///< the value is not what the change left it as; nothing happened
    };

    TChange() = default;
    TChange(const TChange&) = delete;
    TChange& operator=(const TChange&) = delete;
    virtual ~TChange() = default;

    /// Takes the change back if it is in effect, else makes it again; brings the rows in line and selects
    /// the one it concerns.
    virtual TOutcome Toggle(TZOObjectDataSource* ASource) = 0;
};

/// A value was replaced, came or went in a place that stays.
class TZOObjectDataSource::TSlotChange : public TChange {
public:
    TSlotChange(TZOValuePath APath, const TZOTypeInfo* AType) : FPath(std::move(APath)), FOther(AType) {}

    TZOHeldValue& Other() { return FOther; }
    const TZOValuePath& Path() const { return FPath; }
    TOutcome Toggle(TZOObjectDataSource* ASource) override;

private:
    TZOValuePath FPath;
    TZOHeldValue FOther; // what stood there before, or will again
};

/// An entry came into a list or map, or went.
class TZOObjectDataSource::TEntryChange : public TChange {
public:
    /// The entry that AStep leads to is in the container at APath.
    TEntryChange(TZOValuePath APath, TZOPathStep AStep, const TZOTypeInfo* AType)
        : FPath(std::move(APath)), FStep(std::move(AStep)), FEntry(AType) {}

    /// Takes the entry out of the container, which has it. AStep's Index becomes its place, in maps too.
    void TakeOut(const TZOTypeInfo* AContainerType, void* AContainer);
    TOutcome Toggle(TZOObjectDataSource* ASource) override;

private:
    bool PutBack(const TZOTypeInfo* AContainerType, void* AContainer);

    TZOValuePath FPath;
    TZOPathStep FStep;
    TZOHeldValue FEntry;
    bool FIsOut = false;
};

/// A row was moved among its siblings.
class TZOObjectDataSource::TMoveChange : public TChange {
public:
    TMoveChange(TZOValuePath APath, bool ADown) : FPath(std::move(APath)), FDown(ADown) {}
    TOutcome Toggle(TZOObjectDataSource* ASource) override;

private:
    TZOValuePath FPath;
    bool FDown;
};

/// A new item got its key.
class TZOObjectDataSource::TKeyChange : public TChange {
public:
    /// APath leads to the item's row.
    TKeyChange(TZOValuePath APath, const QString& AOther, const QString& ACurrent)
        : FPath(std::move(APath)), FOther(AOther), FCurrent(ACurrent) {}
    TOutcome Toggle(TZOObjectDataSource* ASource) override;

private:
    TZOValuePath FPath;
    QString FOther;
    QString FCurrent;
};

/// Stands around a change of one row's value, which may make what is missing around it, too, or end half-way
/// with an exception; what came of it is added to the history at the end.
class TZOObjectDataSource::TRecording {
public:
    /// What happens to a value that is there already.
    enum TOld {
        olCopied,   ///< it is a scalar, and written over: a copy is kept
        olTaken,    ///< it is replaced or deleted: it is moved into the history, and an empty one left
        olUntouched ///< it stays as it is
    };
    TRecording(TDataRow* ARow, TOld AOld);
    TRecording(const TRecording&) = delete;
    TRecording& operator=(const TRecording&) = delete;
    ~TRecording();

private:
    bool IsChanged(const TZOValueSlot& ASlot) const;

    TZOObjectDataSource* FSource;
    TOld FOld;
    TDataRow* FEntry = nullptr;           // a placeholder that may become an entry
    std::unique_ptr<TSlotChange> FChange; // null: nothing in a place that stays
};
