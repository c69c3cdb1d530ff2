// The choice rows below an open tag row.
#pragma once

#include "jsoneditor/values/Row_p.h"

#include <vector>

/// Brings ATagRow's choice rows (TItem) in line with AAlternatives: one for each while the tag row is in
/// insert mode, else none. Rows that are there are used again, in their order.
template <class TItem, class TTagRow, class TAlternative>
void ZOUpdateTagChoices(TTagRow* ATagRow, const std::vector<TAlternative>& AAlternatives) {
    auto alternative = AAlternatives.begin();
    const auto end = ATagRow->InsertMode() ? AAlternatives.end() : alternative;
    TZOViewRow* last = ATagRow;
    ATagRow->ForEachChild([&](TZOViewRow* AChild) {
        if (alternative == end) {
            delete AChild;
            return;
        }
        static_cast<TItem*>(AChild)->Offer(&*alternative++);
        last = AChild;
    });
    for (; alternative != end; ++alternative) {
        auto* item = new TItem(ATagRow, &*alternative);
        last = ATagRow->GetSource()->InsertAfter(last, item);
        item->Offer(&*alternative);
    }
}
