// Plain lines in a row editor.
#pragma once

#include "pages/ExecutePage.h"

#include "jsoneditor/view/DataSource.h"
#include "jsoneditor/view/ViewRow.h"
#include "jsoneditor/view/ViewRowLayout.h"

class TZOExecutePage::TInfoRow final : public TZOViewRow {
public:
    explicit TInfoRow(const QString& ALine) : TZOViewRow(0), FLine(ALine) {}

    const QString FLine;
};

/// Shows a few lines in one colour class. They can be selected and copied; an edit of one goes nowhere.
class TZOExecutePage::TInfoDataSource final : public TZODataSource {
public:
    TInfoDataSource(TZOChunkToken ATextToken, const QStringList& AText)
        : FTextToken(ATextToken), FText(AText) {}

    void RefreshContent() override {
        Clear();
        for (const QString& line : FText)
            Add(new TInfoRow(line));
    }
    void ConfigureRow(TZOViewRow* ARow, TZOViewRowLayout* ALayout) override {
        ALayout->AddChunk(1, static_cast<TInfoRow*>(ARow)->FLine, true, FTextToken);
    }

private:
    TZOChunkToken FTextToken;
    QStringList FText;
};
