#include "jsoneditor/values/Row_p.h"

#include "jsoneditor/values/EndRow_p.h"
#include "jsoneditor/view/ViewRowLayout.h"

#include <array>

namespace {

int LevelOf(const TZOObjectDataSource::TRow* AParent, TZOObjectDataSource::TRowKind AKind) {
    if (!AParent)
        return 0;
    return AParent->Level() + (AKind == TZOObjectDataSource::rkEOf ? 0 : 1);
}

} // namespace

TZOObjectDataSource::TRow::TRow(TRow* AParent, TRowKind AKind)
    : TZOViewRow(LevelOf(AParent, AKind)),
      FKind(AKind),
      FInsertMode(false),
      FIsInserting(false),
      FHasValue(false),
      FIsNew(false),
      FHasShifts(false),
      FEditingTag(false),
      FParent(AParent) {}

TZOObjectDataSource::TRow::~TRow() {
    ClearChildren();
    if (!Source())
        return;
    ResetlInsertMode();
    if (FHasShifts)
        GetSource()->FElementShifts.erase(this);
    if (FParent && FParent->FInsertMode) {
        TInsertMode& mode = GetSource()->FInsertModes[FParent];
        if (mode.Before == this)
            mode.Before = nullptr;
        if (mode.Placeholder == this)
            mode.Placeholder = nullptr;
    }
}

TZOObjectDataSource::TDataRow* TZOObjectDataSource::TRow::AsDataRow() {
    return FKind <= rkLElem ? static_cast<TDataRow*>(this) : nullptr;
}

TZOObjectDataSource::TDataRow* TZOObjectDataSource::TRow::DataParent() const {
    return FParent ? FParent->AsDataRow() : nullptr;
}

TZOObjectDataSource::TRow* TZOObjectDataSource::TRow::LastOfSubtree() {
    if (TDataRow* data = AsDataRow()) {
        if (data->FEof)
            return data->FEof;
        return this;
    }
    TRow* last = this;
    for (TRow* row = Next(); row && row->FParent == this; row = row->Next())
        last = row;
    return last;
}

TZOObjectDataSource::TRow* TZOObjectDataSource::TRow::SkipChildren() { return LastOfSubtree()->Next(); }

void TZOObjectDataSource::TRow::ClearChildren() {
    for (TRow* row = Next(); row && row->FParent == this; row = Next())
        delete row;
}

TZOObjectDataSource::TRow* TZOObjectDataSource::TRow::PrevSibling(TRowKinds AKinds) const {
    TRow* row = Prev();
    while (row && !(row->FParent == FParent && AKinds.Contains(row->FKind)))
        row = row->FParent;
    return row;
}

bool TZOObjectDataSource::TRow::Move(bool ADown, TRowKinds AKinds) {
    TRow* last = LastOfSubtree();
    if (!ADown) {
        TRow* sibling = PrevSibling(AKinds);
        if (sibling)
            GetSource()->MoveRangeBefore(sibling, this, last);
        return sibling;
    }
    TRow* sibling = last->Next();
    if (!sibling || sibling->FParent != FParent || !AKinds.Contains(sibling->FKind))
        return false;
    GetSource()->MoveRangeAfter(sibling->LastOfSubtree(), this, last);
    return true;
}

TZOObjectDataSource::TRow* TZOObjectDataSource::TRow::InsertBefore() const {
    return FInsertMode ? GetSource()->FInsertModes[this].Before : nullptr;
}

void TZOObjectDataSource::TRow::SetInsertMode(TRow* AInsertBefore) {
    FInsertMode = true;
    GetSource()->FInsertModes[this].Before = AInsertBefore;
}

void TZOObjectDataSource::TRow::ResetlInsertMode() {
    if (FInsertMode)
        GetSource()->FInsertModes.erase(this);
    FInsertMode = false;
}

QString TZOObjectDataSource::TRow::ValueChunkText() const {
    static constexpr std::array<char, 8> brackets = {'[', '{', '{', '{', ']', '}', '}', '}'};
    if (IsBracket(FValue))
        return QString(QLatin1Char(brackets[static_cast<std::size_t>(FValue - rvLBegin)]));
    return DisplayText();
}

void TZOObjectDataSource::TRow::Configure(TZOViewRowLayout* ALayout) const {
    const bool needsKey = NeedsKey();
    const TZOChunkToken text = FIsInserting ? ctGray : ctNormal;
    const TZOChunkToken symbol = FIsInserting ? ctGray : ctSymbol;
    const QString key = KeyText();
    if (!key.isEmpty()) {
        ALayout->AddChunk(chKey, key, needsKey, text);
        ALayout->AddChunk(chSeparator, QStringLiteral(": "), false, symbol);
    }
    ALayout->AddChunk(chValue, ValueChunkText(), FValue == rvString && !needsKey,
                      IsBracket(FValue) ? symbol : text);
}

void TZOObjectDataSource::TRow::SetDisplayValue(bool AGray, TRowValue AValue) {
    bool same = FIsInserting == AGray && FValue == AValue;
    FIsInserting = AGray;
    FValue = AValue;
    // Out of sight nothing remembers the text, and nothing needs to: it is asked for when it is shown.
    TZORowChunk* chunk = nullptr;
    if (same && !IsBracket(AValue) && Layout() && Layout()->TryGetChunk(chValue, false, chunk))
        same = chunk->Text() == DisplayText();
    if (!same)
        Changed();
}

void TZOObjectDataSource::TRow::UpdateInsertingParents(TRow* ARow) {
    TDataRow* topmost = nullptr;
    for (TRow* row = ARow; row; row = row->FParent) {
        TDataRow* data = row->AsDataRow();
        if (!data)
            continue;
        if (topmost && !data->IsInserting())
            break;
        topmost = data;
    }
    topmost->DoGetUpdateBase()->Update();
}

void TZOObjectDataSource::TRow::Edited(int, const QString&) {}
void TZOObjectDataSource::TRow::KeyDown(TZORestView*, int&, Qt::KeyboardModifiers) {}
void TZOObjectDataSource::TRow::DblClick(TZORestView*) {}
QString TZOObjectDataSource::TRow::KeyText() const { return QString(); }
bool TZOObjectDataSource::TRow::NeedsKey() const { return false; }
QString TZOObjectDataSource::TRow::DisplayText() const { return QString(); }
