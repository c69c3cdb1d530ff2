#include "pages/PageRestView.h"

#include "jsoneditor/view/ViewRowLayout.h"

#include "platform/Contrast.h"

QColor TZOPageRestView::GetChunkTextColor(const TZORowChunk* AChunk) const {
    const QColor color = TZORestView::GetChunkTextColor(AChunk);
    const TZOChunkToken token = AChunk->TextToken();
    if ((token != ctGray && token != ctSymbol) || !Active() || !IsOnSelectedRow(AChunk))
        return color;
    return Contrast::Readable(color, SelectedColor(), FontColor());
}

bool TZOPageRestView::IsOnSelectedRow(const TZORowChunk* AChunk) const {
    const TZOViewRowLayout* layout = Selected() ? Selected()->Layout() : nullptr;
    for (int i = 0; layout && i < layout->GetChunkCount(); ++i) {
        if (layout->GetChunks(i) == AChunk)
            return true;
    }
    return false;
}
