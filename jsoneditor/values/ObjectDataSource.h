// Shows one typed value as rows and writes what the user does to them back into the value.
#pragma once

#include "jsoneditor/view/DataSource.h"
#include "runtime/types/Streams.h"
#include "runtime/types/ValueHolder.h"

#include <QPointer>

#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

class TZOChoiceList;
struct TZOPathStep;

/// A typed value in a JSON-like notation: one row for each property, element or item, containers between
/// brackets. Placeholders in grey stand for what is not stored yet; containers offer them in insert mode.
/// The value may be changed from outside at any time; UpdateRows shows it as it is then. Scalars are read
/// when their rows come into sight, so that a large value costs no text.
class TZOObjectDataSource : public TZODataSource {
public:
    class TRow;
    class TDataRow;
    class TRoot;
    class TObjectProp;
    class TListElem;
    class TMapItem;
    class TUnionValue;
    class TObjectTag;
    class TObjectTagItem;
    class TUnionTag;
    class TUnionTagItem;
    class TEOf;

    enum TRowKind : quint8 {
        rkRoot,
        rkOProp,
        rkUVal,
        rkMItem,
        rkLElem,
        rkOTag,
        rkOTagItem,
        rkUTag,
        rkUTagItem,
        rkEOf
    };
    enum TRowValue : quint8 {
        rvString,
        rvStringRO,
        rvLBegin,
        rvMBegin,
        rvOBegin,
        rvUBegin,
        rvLEnd,
        rvMEnd,
        rvOEnd,
        rvUEnd
    };
    enum TEditAction {
        eaDelete,
        eaDblClick,
        eaInsertBefore,
        eaInsertAfter,
        eaDblClickEOf,
        eaInsertBeforeEOf,
        eaInsertAfterEOf
    };
    /// Chunk identifiers of every row.
    enum TChunk { chKey = 0, chSeparator = 1, chValue = 2 };

    /// May replace AText, the text about to be shown for a plain value of AType. AValue is null when
    /// AHasValue is false. Called for rows in sight only, and often: it must answer from what it knows.
    using TZOGetValue = std::function<void(TZOObjectDataSource* ASender, const TZOTypeInfo* AType,
                                           bool AHasValue, const void* AValue, QString& AText)>;
    /// May store AText, as the user typed it, into AValue by itself; then it sets AHandled.
    using TZOSetValue = std::function<void(TZOObjectDataSource* ASender, const TZOTypeInfo* AType,
                                           const QString& AText, void* AValue, bool& AHandled)>;
    /// May let the user choose what AUpload sends; sets AHandled if that is to be stored.
    using TZOUploadDialog =
        std::function<void(TZOObjectDataSource* ASender, ZOUpload& AUpload, bool& AHandled)>;

    /// Shows ASource's value; ASource must outlive this. AHolderFlag: deletes ASource in the end.
    /// AStartInInsertMode: the outermost container opens in insert mode when it is first shown.
    TZOObjectDataSource(TZOValueHolder* ASource, bool AHolderFlag, bool AStartInInsertMode);
    /// Shows the value at AValue, as TZOValueHolder(AType, AValue, AHolderFlag) holds it.
    TZOObjectDataSource(const TZOTypeInfo* AType, const void* AValue, bool AHolderFlag,
                        bool AStartInInsertMode);
    ~TZOObjectDataSource() override;

    const TZOTypeInfo* Type() const { return FType; }
    TZOValueHolder* Value() const { return FValue.get(); }

    TZOGetValue OnGetValue;
    TZOSetValue OnSetValue;
    TZOUploadDialog OnUploadDialog;

    /// Brings the rows up to date with the value. Rows whose entry is still there stay the same rows.
    void UpdateRows();
    /// Takes the latest change of the value by the user back, or makes it again; each of his actions is one.
    /// What insert mode shows is not part of it. Without one to take back nothing happens. A value that was
    /// changed from outside keeps what still fits it; otherwise the history is dropped.
    void Undo();
    void Redo();
    bool CanUndo() const { return !FUndo.empty(); }
    bool CanRedo() const { return !FRedo.empty(); }
    /// Puts the selected row's value into the clipboard as JSON.
    void CopyJson();
    /// Replaces the selected row's value by the JSON in the clipboard. Text that is no JSON goes into a
    /// string as it is. Raises EZOJsonError, which names the place, when it does not fit the type; nothing
    /// has changed then.
    void PasteJson();
    /// Opens the selected row's allowed values as a list below its editor; without such nothing happens.
    void ShowChoices();
    /// The row's JSON pointer (RFC 6901), its type, and what is known about it.
    QString RowHint(TZOViewRow* ARow) override;
    /// Looks at keys and values, not at the brackets and colons around them.
    std::unique_ptr<TZORowSearch> NewSearch(const QString& AText) override;

    /// Leaves insert mode everywhere: placeholders go, and tags that were picked without a value.
    void CancelInsertMode();

    void RefreshContent() override;
    void ConfigureRow(TZOViewRow* ARow, TZOViewRowLayout* ALayout) override;
    void RowEdited(TZOViewRow* ARow, int AChunkId, const QString& AText) override;
    void KeyDown(int& AKey, Qt::KeyboardModifiers AShift) override;
    void DblClick() override;
    bool WantsKey(int AKey, Qt::KeyboardModifiers AShift) const override;
    void FillMenu(QMenu* AMenu) override;

protected:
    virtual void DoGetValue(const TZOTypeInfo* AType, bool AHasValue, const void* AValue, QString& AText);
    virtual bool DoSetValue(const TZOTypeInfo* AType, const QString& AText, void* AValue);
    virtual bool DoUploadDialog(ZOUpload& AUpload);

private:
    class TSearch;

    /// What only the few rows in insert mode have.
    struct TInsertMode {
        TRow* Before = nullptr;          // where the new entry goes; null: to the end
        TDataRow* Placeholder = nullptr; // of a list or map
    };
    /// An element inserted into, or deleted from, a list since its rows were last numbered.
    struct TElementShift {
        int Position;
        bool Inserted;
    };

    class TChange;
    class TSlotChange;
    class TEntryChange;
    class TMoveChange;
    class TKeyChange;
    class TRecording;
    using TChanges = std::vector<std::unique_ptr<TChange>>;

    TRow* SelectedRow() const;
    /// The row that the selected row belongs to: for a closing row the one it closes. Null for rows that
    /// stand for no value.
    TDataRow* SelectedDataRow() const;
    TDataRow* RootRow() const;
    /// The row of the value at APath, or null.
    TDataRow* RowAt(const std::vector<TZOPathStep>& APath) const;
    void AddChange(std::unique_ptr<TChange> AChange);
    void Step(TChanges& AFrom, TChanges& ATo);
    bool EditKey(int AKey, Qt::KeyboardModifiers AShift);
    /// Adds a command for the selected row, which may be another by the time it is chosen.
    void AddCommand(QMenu* AMenu, const QString& ACaption, bool AEnabled, std::function<void()> ADo);
    /// Moves the selection off a placeholder, to the nearest row above that stays.
    void SelectStoredRow();

    const TZOTypeInfo* FType;
    std::unique_ptr<TZOValueHolder> FValue;
    bool FInitialInsMode;
    void CloseChoices();

    QPointer<TZOChoiceList> FChoices;
    TChanges FUndo;
    TChanges FRedo;
    std::unordered_map<const TRow*, TInsertMode> FInsertModes;
    std::unordered_map<const TRow*, std::vector<TElementShift>> FElementShifts;
};
