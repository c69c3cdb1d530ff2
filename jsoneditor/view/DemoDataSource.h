// A small source of random rows that shows how sources are written.
#pragma once

#include "jsoneditor/view/DataSource.h"
#include "jsoneditor/view/ViewRow.h"

#include <QRandomGenerator>

/// Random name/value rows, three levels deep, editable in both columns. Insert adds a child of the selected
/// row, Ctrl+Delete frees the selected row.
class TZODemoDataSource : public TZODataSource {
public:
    class TDemoRow : public TZOViewRow {
    public:
        using TZOViewRow::TZOViewRow;
        QString FName;
        QString FValue;
    };

    /// Random rows each time.
    TZODemoDataSource();
    /// The same rows for the same seed.
    explicit TZODemoDataSource(quint32 ASeed);

    void RefreshContent() override;
    /// Raises EInvalidCast for a row that is no TDemoRow. Chunks: 1 name, 2 ": ", 3 value.
    void ConfigureRow(TZOViewRow* ARow, TZOViewRowLayout* ALayout) override;
    void RowEdited(TZOViewRow* ARow, int AChunkId, const QString& AText) override;
    void KeyDown(int& AKey, Qt::KeyboardModifiers AShift) override;

private:
    int Random(int ABound);
    QString RandomDigits();
    void FillLevel(int ALevel);
    TDemoRow* MakeRow(int ALevel);

    QRandomGenerator FRandom;
};
