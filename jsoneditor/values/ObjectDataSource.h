// Shows one typed value as rows and writes what the user does to them back into the value.
#pragma once

#include "jsoneditor/view/DataSource.h"
#include "runtime/types/Streams.h"
#include "runtime/types/ValueHolder.h"

#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

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
    /// Leaves insert mode everywhere: placeholders go, and tags that were picked without a value.
    void CancelInsertMode();

    void RefreshContent() override;
    void ConfigureRow(TZOViewRow* ARow, TZOViewRowLayout* ALayout) override;
    void RowEdited(TZOViewRow* ARow, int AChunkId, const QString& AText) override;
    void KeyDown(int& AKey, Qt::KeyboardModifiers AShift) override;
    void DblClick() override;

protected:
    virtual void DoGetValue(const TZOTypeInfo* AType, bool AHasValue, const void* AValue, QString& AText);
    virtual bool DoSetValue(const TZOTypeInfo* AType, const QString& AText, void* AValue);
    virtual bool DoUploadDialog(ZOUpload& AUpload);

private:
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

    TRow* SelectedRow() const;
    /// Moves the selection off a placeholder, to the nearest row above that stays.
    void SelectStoredRow();

    const TZOTypeInfo* FType;
    std::unique_ptr<TZOValueHolder> FValue;
    bool FInitialInsMode;
    std::unordered_map<const TRow*, TInsertMode> FInsertModes;
    std::unordered_map<const TRow*, std::vector<TElementShift>> FElementShifts;
};
