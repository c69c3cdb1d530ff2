// The row editor as the execute page has it.
#pragma once

#include "jsoneditor/view/RestView.h"

/// Its grey and its symbols are chosen for the ground of the page; on the selected row they come as close to
/// the text's colour as they have to for being read there.
/// To those who ask for its class by name it is the row editor.
class TZOPageRestView final : public TZORestView {
public:
    using TZORestView::TZORestView;

    QColor GetChunkTextColor(const TZORowChunk* AChunk) const override;

private:
    bool IsOnSelectedRow(const TZORowChunk* AChunk) const;
};
