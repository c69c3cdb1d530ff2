// Looking for a text in the rows of a typed value: in the value itself, as rows keep no texts.
#include "jsoneditor/view/RowSearch.h"
#include "jsoneditor/values/DataRow_p.h"
#include "jsoneditor/values/ValueText.h"

#include <array>

class TZOObjectDataSource::TSearch final : public TZORowSearch {
public:
    TSearch(const TZOObjectDataSource* ASource, const QString& AText)
        : FMatcher(AText), FHasHook(ASource->OnGetValue), FIsInNull(FMatcher.Matches(u"null")) {}

    bool Matches(TZOViewRow* ARow) override {
        auto* row = static_cast<TRow*>(ARow);
        return KeyMatches(row) || ValueMatches(row);
    }

private:
    /// What is known about a text that many rows have as their key.
    struct TKnownKey {
        const QChar* Text = nullptr;
        bool Matches = false;
    };

    bool KeyMatches(const TRow* ARow) {
        if (ARow->Kind() == rkLElem || ARow->Kind() == rkEOf)
            return false;
        const QString key = ARow->KeyText();
        if (ARow->Kind() != rkOProp)
            return FMatcher.Matches(key);
        // The rows of a property share its name: its address says all.
        TKnownKey& known = FKnownKeys[reinterpret_cast<quintptr>(key.constData()) / 16 % FKnownKeys.size()];
        if (known.Text != key.constData())
            known = {key.constData(), FMatcher.Matches(key)};
        return known.Matches;
    }

    bool ValueMatches(TRow* ARow) {
        if (TRow::IsBracket(ARow->Value()))
            return false;
        TDataRow* data = ARow->AsDataRow();
        if (!data || FHasHook || (!data->FHasValue && data->IsInserting()))
            return FMatcher.Matches(ARow->DisplayText());
        if (!data->FHasValue)
            return FIsInNull;
        void* value = nullptr;
        if (!FindParent(data->DataParent()) || !data->DoGetValue(FParentValue, value))
            return false;
        return FMatcher.Matches(data->Type(), value);
    }

    /// Rows come one after another: most have the parent of the row before.
    bool FindParent(const TDataRow* AParent) {
        if (!AParent || AParent != FParent) {
            FParent = AParent;
            FParentValue = nullptr;
            FHasParentValue = !AParent || AParent->GetValue(FParentValue);
        }
        return FHasParentValue;
    }

    ValueText::TMatcher FMatcher;
    bool FHasHook;
    bool FIsInNull;
    std::array<TKnownKey, 256> FKnownKeys;
    const TDataRow* FParent = nullptr;
    void* FParentValue = nullptr;
    bool FHasParentValue = false;
};

std::unique_ptr<TZORowSearch> TZOObjectDataSource::NewSearch(const QString& AText) {
    return std::make_unique<TSearch>(this, AText);
}
