#include "jsoneditor/view/DemoDataSource.h"

#include "jsoneditor/view/RestView.h"
#include "jsoneditor/view/ViewRowLayout.h"

namespace {

constexpr int DeepestFilledLevel = 2;

TZODemoDataSource::TDemoRow* AsDemoRow(TZOViewRow* ARow) {
    auto* row = dynamic_cast<TZODemoDataSource::TDemoRow*>(ARow);
    if (!row)
        throw EInvalidCast(QStringLiteral("Invalid class typecast"));
    return row;
}

} // namespace

TZODemoDataSource::TZODemoDataSource() : TZODemoDataSource(QRandomGenerator::global()->generate()) {}

TZODemoDataSource::TZODemoDataSource(quint32 ASeed) : FRandom(ASeed) {}

void TZODemoDataSource::RefreshContent() {
    Clear();
    FillLevel(0);
}

void TZODemoDataSource::ConfigureRow(TZOViewRow* ARow, TZOViewRowLayout* ALayout) {
    const TDemoRow* row = AsDemoRow(ARow);
    ALayout->AddChunk(1, row->FName, true, ctNormal);
    ALayout->AddChunk(2, QStringLiteral(": "), false, ctNormal);
    ALayout->AddChunk(3, row->FValue, true, ctNormal);
}

void TZODemoDataSource::RowEdited(TZOViewRow* ARow, int AChunkId, const QString& AText) {
    TDemoRow* row = AsDemoRow(ARow);
    if (AChunkId == 1)
        row->FName = AText;
    else if (AChunkId == 3)
        row->FValue = AText;
}

void TZODemoDataSource::KeyDown(int& AKey, Qt::KeyboardModifiers AShift) {
    TZOViewRow* selected = View()->Selected();
    if (!selected)
        return;
    if (AKey == Qt::Key_Insert)
        InsertAfter(selected, MakeRow(selected->Level() + 1));
    else if (AKey == Qt::Key_Delete && AShift.testFlag(Qt::ControlModifier))
        Remove(selected);
}

int TZODemoDataSource::Random(int ABound) { return FRandom.bounded(ABound); }

QString TZODemoDataSource::RandomDigits() {
    QString digits;
    for (int count = Random(3) + 1; count > 0; --count)
        digits += QString::number(Random(10));
    return digits;
}

void TZODemoDataSource::FillLevel(int ALevel) {
    for (int count = Random(10 / (ALevel + 1)) + 1; count > 0; --count) {
        Add(MakeRow(ALevel));
        if (ALevel < DeepestFilledLevel)
            FillLevel(ALevel + 1);
    }
}

TZODemoDataSource::TDemoRow* TZODemoDataSource::MakeRow(int ALevel) {
    auto* row = new TDemoRow(ALevel);
    row->FName = QStringLiteral("row_") + RandomDigits();
    row->FValue = QStringLiteral("value_") + RandomDigits();
    return row;
}
